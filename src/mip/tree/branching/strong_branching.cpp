// Strong branching, always or until the pseudocosts of a column are reliable.
//
// Source: T. Achterberg, T. Koch and A. Martin, "Branching rules revisited" (2005), with the
// look-ahead and the budget of that paper.
#include <cmath>

#include "mip/tree/branching/branching_rule.h"

namespace kelvo {
namespace {

struct Ranked {
  BranchCandidate candidate;
  double score;
};

Vector<Ranked> rank(const Vector<BranchCandidate>& candidates, const BranchingContext& context) {
  constexpr double kCutoffWeight = 1.0;  // a column that always prunes counts twice
  Vector<Ranked> ranked;
  ranked.reserve(candidates.size());
  for (const BranchCandidate& candidate : candidates) {
    const int j = candidate.column;
    const double score = branching_score(context.pseudocosts.gain(j, false, candidate.down()),
                                         context.pseudocosts.gain(j, true, candidate.up())) *
                         (1.0 + kCutoffWeight * context.pseudocosts.cutoff_rate(j));
    ranked.push_back({candidate, score});
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const Ranked& a, const Ranked& b) { return a.score > b.score; });
  return ranked;
}

/// Walks through candidates from the most promising one, probing those that need it.
class StrongRule final : public BranchingRule {
 public:
  explicit StrongRule(bool reliability) : reliability_(reliability) {}
  BranchChoice choose(const Vector<BranchCandidate>& candidates,
                      const BranchingContext& context) override;

 private:
  bool needs_probe(const BranchCandidate& candidate, const BranchingContext& context) const;
  int iteration_limit(const BranchingContext& context) const;
  /// Notes what an infeasible side says; true when it said something.
  static bool tighten(const BranchCandidate& candidate, const ProbedBranch& probed,
                      BranchChoice& choice);

  const bool reliability_;
  double probes_ = 0.0;  // branches probed so far
};

bool StrongRule::needs_probe(const BranchCandidate& candidate,
                             const BranchingContext& context) const {
  if (!reliability_) return true;
  constexpr int kReliable = 8;
  constexpr double kShare = 0.5;      // of the iterations of node LPs
  constexpr double kFloor = 20000.0;  // iterations that are always granted
  const int j = candidate.column;
  const int least =
      std::min(context.pseudocosts.count(j, false), context.pseudocosts.count(j, true));
  if (least >= kReliable) return false;
  const double budget = kShare * context.node_iterations + kFloor;
  // Over the budget only columns of which nothing is known are tried; far over it, none.
  if (context.probe_iterations > 2.0 * budget) return false;
  return context.probe_iterations <= budget || least == 0;
}

int StrongRule::iteration_limit(const BranchingContext& context) const {
  constexpr int kLeast = 10, kMost = 500;
  if (context.settings.strong_iterations > 0) return context.settings.strong_iterations;
  const double average = context.probe_iterations / std::max(1.0, 2.0 * probes_);
  return std::clamp(static_cast<int>(2.0 * average), kLeast, kMost);
}

bool StrongRule::tighten(const BranchCandidate& candidate, const ProbedBranch& probed,
                         BranchChoice& choice) {
  const double below = std::floor(candidate.value);
  if (probed.down.infeasible) {
    choice.tightenings.push_back({candidate.column, false, below + 1.0});
  }
  if (probed.up.infeasible) choice.tightenings.push_back({candidate.column, true, below});
  return probed.down.infeasible || probed.up.infeasible;
}

BranchChoice StrongRule::choose(const Vector<BranchCandidate>& candidates,
                                const BranchingContext& context) {
  constexpr int kLookAhead = 8;  // probes without a better candidate that end the walk
  BranchChoice choice;
  double best = -kInf;
  int since_best = 0;
  int probed_here = 0;
  const double objective = context.lp.objective();
  const int most = reliability_ ? kNoCountLimit : context.settings.strong_candidates;
  for (const Ranked& ranked : rank(candidates, context)) {
    double score = ranked.score;
    double down_bound = objective, up_bound = objective;
    if (probed_here < most && since_best < kLookAhead && needs_probe(ranked.candidate, context)) {
      const ProbedBranch probed = probe_branch(ranked.candidate, iteration_limit(context), context);
      ++probes_;
      ++probed_here;
      if (context.run.stop != nullptr && context.run.stop->requested()) {
        choice.kind = BranchChoice::Kind::stopped;
        return choice;
      }
      if (tighten(ranked.candidate, probed, choice)) {
        if (probed.down.infeasible && probed.up.infeasible) break;
        continue;
      }
      down_bound = probed.down.bound;
      up_bound = probed.up.bound;
      score = branching_score(down_bound - objective, up_bound - objective);
      ++since_best;
    } else if (!reliability_ && choice.candidate.column >= 0) {
      break;
    }
    if (score <= best) continue;
    best = score;
    since_best = 0;
    choice.candidate = ranked.candidate;
    choice.down_bound = down_bound;
    choice.up_bound = up_bound;
  }
  if (!choice.tightenings.empty()) choice.kind = BranchChoice::Kind::tighten;
  return choice;
}

}  // namespace

Owned<BranchingRule> make_reliability_rule() {
  return make_owned<StrongRule>(true);
}

Owned<BranchingRule> make_strong_rule() {
  return make_owned<StrongRule>(false);
}

}  // namespace kelvo
