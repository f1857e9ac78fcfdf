// Choice of the column to branch on: the interface of the rules, and their table.
#pragma once

#include "mip/form/mip_problem.h"
#include "mip/form/mip_settings.h"
#include "mip/relaxation/node_lp.h"
#include "mip/tree/branching/pseudocosts.h"
#include "mip/tree/node.h"

namespace kelvo {

/// An integer column whose value in the node's LP is not whole.
struct BranchCandidate {
  int column;
  double value;
  double down() const;  // distance to the next whole number below
  double up() const { return 1.0 - down(); }
};

/// What a rule decides.
struct BranchChoice {
  enum class Kind {
    branch,   // on `candidate`
    tighten,  // `tightenings` hold in the whole node, which is to be solved again
    stopped   // by the limit or the caller
  };
  Kind kind = Kind::branch;
  BranchCandidate candidate{-1, 0.0};
  Vector<Decision> tightenings;
  // Bounds of the children as far as probes know them; the node's own otherwise.
  double down_bound = -kInf, up_bound = -kInf;
};

/// What rules work with.
struct BranchingContext {
  const MipProblem& mip;
  const SearchSettings& settings;
  NodeLp& lp;
  Pseudocosts& pseudocosts;
  double cutoff;
  double node_iterations;    // of node LPs so far, probes not counted
  double& probe_iterations;  // of probes so far
  const RunContext& run;
};

class BranchingRule {
 public:
  virtual ~BranchingRule() = default;
  /// `candidates` are not empty and of the highest priority class.
  virtual BranchChoice choose(const Vector<BranchCandidate>& candidates,
                              const BranchingContext& context) = 0;
};

struct BranchingRuleRow {
  VariableSelection selection;
  const char* name;
  Owned<BranchingRule> (*make)();
};

/// The row of a selection; every selection has one.
const BranchingRuleRow& branching_rule(VariableSelection selection);

/// Both sides of a candidate, tried for at most so many iterations each.
struct ProbedBranch {
  ProbedSide down, up;
};
ProbedBranch probe_branch(const BranchCandidate& candidate, int iteration_limit,
                          const BranchingContext& context);

Owned<BranchingRule> make_reliability_rule();
Owned<BranchingRule> make_strong_rule();

}  // namespace kelvo
