// The state of a run of the network simplex; see network_simplex.h.
#pragma once

#include <cstdint>
#include <limits>

#include "net/simplex/network_simplex.h"

namespace kelvo {

class NetworkEngine {
 public:
  NetworkEngine(const NetworkProgram& program, const NetworkSettings& settings,
                NetworkEvents* events, StopCheck& stop)
      : program_(program), settings_(settings), events_(events), stop_(stop) {}

  NetworkAnswer run(const NetworkBasis& start);

 private:
  static constexpr double kUnlimited = std::numeric_limits<double>::infinity();
  // Residuals that differ by less are equal, and below it zero.
  static constexpr double kTie = 1e-10;

  /// What is minimized: costs and a penalty on artificial flow; the artificial flow; costs.
  enum class Goal { penalized, feasibility, costs };
  enum class PhaseEnd { no_entry, feasible, unbounded, stopped };

  /// The arc that limits the step, by its lower node; -1: the entering arc itself, or nothing.
  struct Leaving {
    int node = -1;
    bool on_tail_side = false;
    double step = 0.0;
  };

  // Start (network_start.cpp).
  bool bounds_cross() const;
  char initial_status(int arc) const;
  char valid_status(int arc, char wanted) const;
  double nonbasic_flow(int arc) const;
  void set_up();
  void start_from(const NetworkBasis& start);
  void plant(const NetworkBasis& start);
  void load_flows(Vector<double>& need);
  bool load_tree_arc(int node, double need, double& carried);
  void hang_artificial(int node, double need);
  void measure_infeasibility();

  // Iterations (network_iterations.cpp).
  void set_goal(Goal goal);
  void compute_potentials();
  void fill_entries();
  void set_entry(int arc);
  PhaseEnd iterate();
  bool must_stop();
  void pivot(int entry);
  Leaving ratio_test(int tail, int head, int join, double range) const;
  void send_flow(int tail, int head, int join, double step);
  void release_leaving_arc(const Leaving& leaving);
  void renumber_if_due();
  void clear_artificials();

  // Course and answer (network_answer.cpp).
  NetworkOutcome run_phases();
  bool artificials_are_small() const;
  void give_answer(NetworkAnswer& answer);
  double recompute_flows(Vector<double>& flow, double& infeasibility) const;
  NetworkBasis basis() const;
  double objective(const Vector<double>& flow) const;

  int num_arcs() const { return program_.num_arcs; }
  bool is_artificial(int arc) const { return arc >= program_.num_arcs; }
  double cost_of(int arc) const {
    if (is_artificial(arc)) return goal_ == Goal::costs ? 0.0 : penalty_;
    return goal_ == Goal::feasibility ? 0.0 : program_.sense * program_.cost[arc];
  }
  double artificial_flow(const TreeNode& node) const {
    return node.leads_up() ? node.down : node.up;
  }
  int arc_of_entry(int entry) const {
    return entry < num_arcs() ? entry : free_arcs_[entry - num_arcs()];
  }

  const NetworkProgram& program_;
  const NetworkSettings& settings_;
  NetworkEvents* const events_;
  StopCheck& stop_;

  SpanningTree tree_;
  Vector<int> node_of_;        // [num_nodes + 1] number in the tree of each node of the program
  Vector<int> new_number_;     // [num_nodes + 1] for renumbering
  Vector<char> status_;        // [num_arcs] status codes
  Vector<char> fixed_;         // [num_arcs] 1: the range is below the tolerance
  Vector<int> free_arcs_;      // arcs without bounds; the k-th has the entry num_arcs + k, too
  Vector<PricedArc> entries_;  // [num_arcs + free arcs]
  Owned<NetworkPricing> pricing_;

  Goal goal_ = Goal::costs;
  double penalty_ = 1.0;
  double infeasibility_ = 0.0;  // sum of the artificial flows
  double objective_ = 0.0;      // of the goal, kept up to date by pivots
  int iterations_ = 0;
  int phase_one_iterations_ = 0;
  int last_reported_ = -1;
  std::int64_t work_since_renumbering_ = 0;
  NetworkOutcome stopped_as_ = NetworkOutcome::aborted;
};

}  // namespace kelvo
