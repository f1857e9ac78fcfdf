#include "mip/tree/branching/branching_rule.h"

#include <cmath>

namespace kelvo {
namespace {

/// The candidate with the largest value of score(candidate); ties by the smaller index.
template <class Score>
BranchChoice largest(const Vector<BranchCandidate>& candidates, Score score) {
  BranchChoice choice;
  double best = -kInf;
  for (const BranchCandidate& candidate : candidates) {
    const double value = score(candidate);
    if (value <= best) continue;
    best = value;
    choice.candidate = candidate;
  }
  return choice;
}

class InfeasibilityRule final : public BranchingRule {
 public:
  explicit InfeasibilityRule(double sign) : sign_(sign) {}
  BranchChoice choose(const Vector<BranchCandidate>& candidates, const BranchingContext&) override {
    return largest(candidates, [this](const BranchCandidate& candidate) {
      return sign_ * std::min(candidate.down(), candidate.up());
    });
  }

 private:
  const double sign_;  // 1: the most infeasible one
};

class PseudocostRule final : public BranchingRule {
 public:
  BranchChoice choose(const Vector<BranchCandidate>& candidates,
                      const BranchingContext& context) override {
    return largest(candidates, [&](const BranchCandidate& candidate) {
      const int j = candidate.column;
      return branching_score(context.pseudocosts.gain(j, false, candidate.down()),
                             context.pseudocosts.gain(j, true, candidate.up()));
    });
  }
};

/// Pseudocosts in which the cost of the column itself stands for what was not yet seen.
class PseudoReducedCostRule final : public BranchingRule {
 public:
  BranchChoice choose(const Vector<BranchCandidate>& candidates,
                      const BranchingContext& context) override {
    return largest(candidates, [&](const BranchCandidate& candidate) {
      const auto gain = [&](bool up, double distance) {
        const int j = candidate.column;
        if (context.pseudocosts.count(j, up) > 0) return context.pseudocosts.gain(j, up, distance);
        return std::abs(context.mip.lp.cost[j]) * distance;
      };
      return branching_score(gain(false, candidate.down()), gain(true, candidate.up()));
    });
  }
};

template <int kSign>
Owned<BranchingRule> make_infeasibility_rule() {
  return make_owned<InfeasibilityRule>(kSign);
}

template <class Rule>
Owned<BranchingRule> make_rule() {
  return make_owned<Rule>();
}

constexpr BranchingRuleRow kRules[] = {
    {VariableSelection::minimum_infeasibility, "minimum infeasibility",
     make_infeasibility_rule<-1>},
    {VariableSelection::automatic, "reliability", make_reliability_rule},
    {VariableSelection::maximum_infeasibility, "maximum infeasibility", make_infeasibility_rule<1>},
    {VariableSelection::pseudo_costs, "pseudo costs", make_rule<PseudocostRule>},
    {VariableSelection::strong, "strong branching", make_strong_rule},
    {VariableSelection::pseudo_reduced_costs, "pseudo reduced costs",
     make_rule<PseudoReducedCostRule>},
};

}  // namespace

double BranchCandidate::down() const {
  return value - std::floor(value);
}

const BranchingRuleRow& branching_rule(VariableSelection selection) {
  return *std::find_if(std::begin(kRules), std::end(kRules),
                       [selection](const auto& row) { return row.selection == selection; });
}

ProbedBranch probe_branch(const BranchCandidate& candidate, int iteration_limit,
                          const BranchingContext& context) {
  const int j = candidate.column;
  const double below = std::floor(candidate.value);
  NodeLp& lp = context.lp;
  ProbedBranch probed;
  probed.down = lp.probe(j, lp.lower(j), below, context.cutoff, iteration_limit, context.run);
  probed.up = lp.probe(j, below + 1.0, lp.upper(j), context.cutoff, iteration_limit, context.run);
  context.probe_iterations += probed.down.iterations + probed.up.iterations;
  const double objective = lp.objective();
  const auto learn = [&](const ProbedSide& side, bool up, double distance) {
    if (side.infeasible) {
      context.pseudocosts.observe_cutoff(j, up);
    } else if (side.solved) {
      context.pseudocosts.observe(j, up, side.bound - objective, distance);
    }
  };
  learn(probed.down, false, candidate.down());
  learn(probed.up, true, candidate.up());
  return probed;
}

}  // namespace kelvo
