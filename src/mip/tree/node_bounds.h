// The bounds at the node in work, and the way from node to node.
//
// Each branch on the path from the root is a level of the domain; what follows from it is found by
// propagation, so that nodes store their decisions alone. Conflicts that show up on the way become
// clauses, which prune elsewhere.
#pragma once

#include "mip/domain/conflict_analysis.h"
#include "mip/domain/domain.h"
#include "mip/relaxation/node_lp.h"
#include "mip/tree/node.h"

namespace kelvo {

class NodeBounds {
 public:
  /// All references must outlive the object.
  NodeBounds(const MipProblem& mip, const CliqueTable& cliques,
             const ImplicationTable& implications);

  double lower(int variable) const { return domain_.lower(variable); }
  double upper(int variable) const { return domain_.upper(variable); }
  Domain& domain() { return domain_; }

  /// Goes to the node with this path, keeping what it shares with the present one. False when the
  /// node is infeasible.
  bool enter(const NodePath& path);
  /// Further bounds of the present node, with what they imply. False when it is infeasible.
  bool tighten(const Vector<Decision>& bounds);
  /// Bounds that hold everywhere.
  bool tighten_globally(const Vector<Decision>& bounds);
  /// Only points below this count from now on.
  void set_cutoff(double cutoff) { domain_.set_cutoff(cutoff); }
  /// What the reduced costs of the node's LP rule out. False when there is nothing better.
  bool tighten_by_reduced_costs(const NodeLp& lp, double cutoff);
  /// Learns from a node LP that was found infeasible by these multipliers of the rows.
  void learn_from_proof(const Vector<double>& farkas);
  /// Gives the relaxation what has changed since the last call.
  void push_to(NodeLp& lp);
  bool is_infeasible() const { return domain_.is_infeasible(); }

  /// How much a column took part in recent conflicts, relative to others.
  double conflict_score(int column) const { return analysis_.scores().score(column); }

 private:
  bool propagate();

  Domain domain_;
  ConflictAnalysis analysis_;
  Vector<NodePath> present_;  // [depth] from the root down
  Vector<int> changed_;       // work space
  LearnedClause learned_;
};

}  // namespace kelvo
