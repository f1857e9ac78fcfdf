// The numbers that a search depends on, copied once per solve.
#pragma once

namespace kelvo {

inline constexpr int kNoCountLimit = 2100000000;
inline constexpr double kNoValue = 1e75;  // stands for "none" wherever the interface shows it

enum class NodeSelection {
  depth_first = 0,
  best_bound = 1,
  best_estimate = 2,
  alternative_estimate = 3
};

enum class VariableSelection {
  minimum_infeasibility = -1,
  automatic = 0,
  maximum_infeasibility = 1,
  pseudo_costs = 2,
  strong = 3,
  pseudo_reduced_costs = 4
};

enum class DiveType { automatic = 0, traditional = 1, probing = 2, guided = 3 };

enum class MipEmphasis { balance = 0, feasibility = 1, optimality = 2, bound = 3, hidden = 4 };

struct SearchSettings {
  bool dynamic_search = true;  // false: traditional, with the branching columns in the log
  MipEmphasis emphasis = MipEmphasis::balance;
  int branch_direction = 0;  // -1 down first, 1 up first, 0 free
  DiveType dive_type = DiveType::automatic;
  NodeSelection node_selection = NodeSelection::best_bound;
  VariableSelection variable_selection = VariableSelection::automatic;
  double backtrack_tolerance = 0.9999;
  int strong_candidates = 10;
  int strong_iterations = 0;  // 0: automatic
  int node_limit = kNoCountLimit;
  int solution_limit = kNoCountLimit;
  double tree_limit_megabytes = kNoValue;
  int iteration_limit = kNoCountLimit;
  double relative_gap = 1e-4;
  double absolute_gap = 1e-6;
  double relative_improvement = 0.0;  // what a new solution must gain, see Cutoff
  double absolute_improvement = 0.0;
  double cutoff = kNoValue;  // of the minimization, given by the caller
  double integrality = 1e-5;
  double feasibility = 1e-6;

  int display = 2;
  int log_interval = 100;
};

}  // namespace kelvo
