// The tree search: nodes in, incumbents out.
//
//   run          nodes until none is left or a limit ends it (search.cpp)
//   next         the child, the sibling, or the first node of the queue (node_selection.cpp)
//   process      bounds, LP, integral point or branching of one node (search.cpp)
//   branch       the choice and the children (search_branching.cpp)
//
// Nodes of the present dive, a child and its sibling, wait beside the queue; going on with one of
// them continues in the simplex that is hot. Every bound is a lower bound of the minimization.
#pragma once

#include <optional>

#include "mip/tree/branching/branching_rule.h"
#include "mip/tree/branching/constraint_branch.h"
#include "mip/tree/cutoff.h"
#include "mip/tree/node_bounds.h"
#include "mip/tree/node_queue.h"
#include "mip/tree/search_observer.h"
#include "mip/tree/solution_sink.h"

namespace kelvo {

/// Why a search ended.
enum class SearchEnd {
  exhausted,
  gap,
  solution_limit,
  node_limit,
  iteration_limit,
  time_limit,
  memory_limit,
  aborted,
  failed  // a node's LP gave no answer, and no branch was left
};

class Search {
 public:
  /// `root`: the relaxation with its optimal basis. `incumbent`: the objective of the best point
  /// known, kNoValue for none. All references must outlive the object.
  Search(const MipProblem& mip, const SearchSettings& settings, NodeLp& lp, NodeBounds& bounds,
         Cutoff& cutoff, SolutionSink& sink, SearchObserver& observer, double incumbent);

  /// Searches from the root, whose LP is solved again from its basis.
  SearchEnd run(StopCheck& stop);

  double incumbent() const { return incumbent_; }
  /// No point is better; kNoValue after an exhausted search without any.
  double best_bound() const;
  int nodes() const { return nodes_; }
  int nodes_left() const { return queue_.size() + (child_ ? 1 : 0) + (sibling_ ? 1 : 0); }
  double iterations() const { return lp_.iterations(); }
  std::size_t tree_bytes() const { return queue_.bytes(); }
  int solutions() const { return solutions_; }

 private:
  enum class Verdict { done, stopped };

  // Selection.
  std::optional<Node> next();
  bool continues_with(const Node& node) const;
  bool continues_with_sibling() const;
  void flush_dive();
  std::optional<SearchEnd> limit_reached() const;

  // A node.
  Verdict process(Node& node);
  NodeLpOutcome solve(Node& node);
  Verdict conclude(Node& node, NodeLpOutcome outcome);
  void learn(const Node& node, double objective);
  void learn_from(NodeLpOutcome outcome);
  bool beats_cutoff(double bound) const { return bound < cutoff_.value(); }
  void offer_integral(Node& node);
  void close(const Node& node, NodeResult::Kind kind);
  SearchState state() const;
  NodeOrigin origin(const Node& node) const;

  // Branching.
  enum class Branched { children, again, stopped, none };
  Branched branch(Node& node);
  Branched branch_on_column(Node& node);
  void collect_candidates();
  void make_children(const Node& node, const BranchChoice& choice);
  void make_children(const Node& node, const ConstraintBranch& branch);
  bool split_unfixed(const Node& node);
  bool prefers_up(const BranchCandidate& candidate) const;
  Node child_of(const Node& node, const Vector<Decision>& decisions, double bound);
  void place_children(Node&& first, Node&& second);
  double estimate(double objective) const;

  const MipProblem& mip_;
  const SearchSettings& settings_;
  NodeLp& lp_;
  Cutoff& cutoff_;
  SolutionSink& sink_;
  SearchObserver& observer_;
  StopCheck* stop_ = nullptr;

  NodeBounds& bounds_;
  NodeQueue queue_;
  Pseudocosts pseudocosts_;
  Owned<BranchingRule> rule_;
  std::optional<Node> child_, sibling_;
  bool hot_ = false;  // the relaxation is at the node's parent
  Vector<BranchCandidate> candidates_;
  Vector<double> proof_;        // work space
  Vector<double> incumbent_x_;  // in the searched program; or empty
  double incumbent_;
  double current_bound_ = -kNoValue;    // of the node in work; kNoValue between nodes
  double unresolved_bound_ = kNoValue;  // of nodes that had to be given up
  double node_iterations_ = 0.0;
  double probe_iterations_ = 0.0;
  int nodes_ = 0;
  int next_id_ = 0;
  int backtracks_ = 0;
  int solutions_ = 0;
};

}  // namespace kelvo
