// What follows from trying both values of binary columns.
//
// Each binary column is fixed to 0 and to 1 in turn, and the consequences are propagated. A side
// without a point fixes the column to the other one. What both sides imply of a bound holds
// always. A column that each side fixes is  x_k = p + (q - p) x_j, with p and q its values on the
// two sides, which becomes an equation for the linear reductions to substitute. What one side
// implies of a binary column is an edge of the conflict graph, of another column an implication;
// both are kept for the search. (Savelsbergh, 1994.)
//
// Columns with the most neighbours in the conflict graph and the longest rows come first, so that
// what is found early serves the later ones. The work is limited; the clock ends it only where a
// time limit says so.
#include "base/clock.h"
#include "mip/domain/clique_rows.h"
#include "mip/presolve/disjoint_sets.h"
#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

namespace {

// Propagation of one side ends after this many nonzeros, per nonzero of the program, and at least.
constexpr double kSideShare = 0.2;
constexpr double kLeastSide = 20000.0;
// Edges and implications kept for the search.
constexpr std::size_t kMostKept = 2000000;
// Equations of two columns with greater ratios are not worth a row.
constexpr double kMostRatio = 1e3;
// The share by which the interval of a continuous column has to shrink.
constexpr double kWorthwhile = 0.05;
constexpr int kStopInterval = 16;  // candidates between two looks at the clock

double work_allowed(const MipPresolveSettings& settings, double columns) {
  if (settings.probing_time < kInf) return kInf;
  if (settings.probing <= 0) return (columns + 1000.0) * 100.0;
  return (columns + 10000.0) * (settings.probing <= 2 ? 10000.0 : 100000.0);
}

class Probing {
 public:
  explicit Probing(PresolveMip& mip)
      : mip_(mip),
        now_(mip.reduced_form()),
        cliques_(now_.mip),
        implications_(now_.mip),
        domain_(now_.mip, cliques_, implications_),
        joined_(now_.mip.num_cols()) {
    for (const int side : {0, 1}) {
      stamp_[side].assign(2 * static_cast<std::size_t>(now_.mip.num_cols()), -1);
      implied_[side].assign(stamp_[side].size(), 0.0);
    }
  }

  void run();

 private:
  struct Change {
    int bound;
    double value;
  };
  /// A bound on one side: implied, or the global one.
  double bound_on(bool side, int bound) const {
    return stamp_[side][bound] == candidate_ ? implied_[side][bound]
                                             : domain_.bounds().global(bound);
  }
  Vector<int> candidates() const;
  bool probe(int j);
  bool try_side(int j, bool side);
  bool settle(int bound, double value) {
    domain_.tighten_globally(bound, value);
    return domain_.propagate();
  }
  bool compare_sides(int j);
  void find_equation(int j, int k);
  void keep_implications(int j, bool side);
  bool proceed(std::size_t done, std::size_t all, double start);
  void apply();
  void apply_bound(int k, bool upper);

  PresolveMip& mip_;
  const ReducedMip now_;
  CliqueTable cliques_;
  ImplicationTable implications_;
  Domain domain_;
  DisjointSets joined_;        // columns that are affine functions of each other
  int candidate_ = -1;         // the column at hand
  Vector<Change> changes_[2];  // what a side implies, each bound once
  Vector<int> stamp_[2];       // [2 columns] candidate for which implied_ is valid
  Vector<double> implied_[2];  // [2 columns] bounds on a side
  struct Equation {
    int column, other;
    double constant, ratio;  // x_column = constant + ratio x_other
  };
  Vector<Equation> equations_;
};

Vector<int> Probing::candidates() const {
  const MipProblem& mip = now_.mip;
  struct Scored {
    double score;
    int column;
  };
  Vector<Scored> scored;
  for (int j = 0; j < mip.num_cols(); ++j) {
    if (!mip.is_binary(j) || domain_.is_fixed(j)) continue;
    double score = mip.lp.columns.start[j + 1] - mip.lp.columns.start[j];
    for (const int literal : {literal_of(j, false), literal_of(j, true)}) {
      score += static_cast<double>(cliques_.edges_of(literal).size());
      for (const int clique : cliques_.cliques_of(literal)) {
        score += cliques_.members(clique).length;
      }
    }
    scored.push_back({score, j});
  }
  std::sort(scored.begin(), scored.end(), [](const Scored& a, const Scored& b) {
    return a.score != b.score ? a.score > b.score : a.column < b.column;
  });
  Vector<int> columns;
  for (const Scored& candidate : scored) columns.push_back(candidate.column);
  return columns;
}

/// False: this side has no point.
bool Probing::try_side(int j, bool side) {
  const DomainMark here = domain_.mark();
  const double limit = std::max(kLeastSide, kSideShare * now_.mip.lp.columns.num_nonzeros());
  domain_.decide(literal_of(j, side), side ? 1.0 : 0.0);
  const bool possible = domain_.propagate(limit);
  changes_[side].clear();
  const LocalBounds& bounds = domain_.bounds();
  for (int p = here.position; possible && p < bounds.size(); ++p) {
    const int bound = bounds.change(p).bound;
    if (variable_of(bound) >= now_.mip.num_cols() || variable_of(bound) == j) continue;
    if (bounds.latest(bound) != p) continue;
    changes_[side].push_back({bound, bounds.bound(bound)});
    stamp_[side][bound] = j;
    implied_[side][bound] = bounds.bound(bound);
  }
  domain_.backtrack(here);
  return possible;
}

void Probing::find_equation(int j, int k) {
  const double zero = bound_on(false, lower_of(k)), one = bound_on(true, lower_of(k));
  if (zero != bound_on(false, upper_of(k)) || one != bound_on(true, upper_of(k))) return;
  const double ratio = one - zero;
  if (std::fabs(ratio) * kMostRatio < 1.0 || std::fabs(ratio) > kMostRatio) return;
  if (joined_.join(j, k)) equations_.push_back({k, j, zero, ratio});
}

/// Bounds that both sides imply, and columns that both sides fix.
bool Probing::compare_sides(int j) {
  Vector<Change> common;
  for (const auto& [bound, value] : changes_[1]) {
    if (stamp_[0][bound] == j) {
      const double other = implied_[0][bound];
      common.push_back({bound, is_tighter(bound, value, other) ? other : value});
    }
    find_equation(j, variable_of(bound));
  }
  for (const auto& [bound, value] : common) {
    if (!is_tighter(bound, value, domain_.bounds().global(bound))) continue;
    if (!settle(bound, value)) return false;
  }
  return true;
}

void Probing::keep_implications(int j, bool side) {
  const int literal = 2 * now_.kept_cols[j] + (literal_of(j, side) & 1);
  for (const auto& [bound, value] : changes_[side]) {
    const int k = variable_of(bound);
    add_implication(domain_, literal_of(j, side), {bound, value}, cliques_, implications_);
    if (mip_.implications.size() < kMostKept) {
      mip_.implications.push_back({literal, 2 * now_.kept_cols[k] + (bound & 1), value});
    }
  }
}

/// False: there is no point at all.
bool Probing::probe(int j) {
  candidate_ = j;
  const bool zero = try_side(j, false);
  const bool one = try_side(j, true);
  if (!zero && !one) return false;
  if (!zero) return settle(lower_of(j), 1.0);
  if (!one) return settle(upper_of(j), 0.0);
  keep_implications(j, false);
  keep_implications(j, true);
  return compare_sides(j);
}

void Probing::apply_bound(int k, bool upper) {
  const LpProblem& lp = now_.mip.lp;
  const double old = upper ? lp.upper[k] : lp.lower[k];
  const double value = domain_.bounds().global(upper ? upper_of(k) : lower_of(k));
  const int j = now_.kept_cols[k];
  const double gain = upper ? old - value : value - old;
  if (!(gain > 0.0) || mip_.ended()) return;
  const int before = mip_.lp.stats.bounds_improved;
  if (now_.mip.is_integer[k] || domain_.is_fixed(k)) {
    mip_.lp.intersect_bounds(j, upper ? -kInf : value, upper ? value : kInf);
  } else {
    const double width = lp.upper[k] - lp.lower[k];
    if (std::isfinite(width) ? gain <= kWorthwhile * width : std::isfinite(old)) return;
    mip_.strengthen_bound(j, value, upper);
  }
  mip_.stats.probing_bounds += mip_.lp.stats.bounds_improved - before;
}

void Probing::apply() {
  for (int k = 0; k < now_.mip.num_cols() && !mip_.ended(); ++k) {
    apply_bound(k, false);
    apply_bound(k, true);
    const bool was_fixed = now_.mip.lp.lower[k] == now_.mip.lp.upper[k];
    if (!was_fixed && mip_.lp.is_fixed(now_.kept_cols[k])) ++mip_.stats.probing_fixed;
  }
  for (const Equation& equation : equations_) {
    if (mip_.ended()) return;
    const int row = mip_.lp.add_row(equation.constant, equation.constant);
    mip_.lp.put_entry(row, now_.kept_cols[equation.column], 1.0);
    mip_.lp.put_entry(row, now_.kept_cols[equation.other], -equation.ratio);
    ++mip_.stats.probing_fixed;
  }
}

bool Probing::proceed(std::size_t done, std::size_t all, double start) {
  if (done % kStopInterval != 0) return true;
  if (mip_.lp.poll_now() != StopReason::none) return false;
  if (mip_.progress != nullptr) {
    mip_.progress->probing(static_cast<double>(done) / static_cast<double>(all),
                           static_cast<int>(equations_.size()));
  }
  return wall_seconds() - start <= mip_.settings.probing_time;
}

void Probing::run() {
  const double start = wall_seconds();
  bool possible = domain_.propagate();
  if (possible) add_cliques_of_rows(domain_, cliques_);
  const Vector<int> columns = possible ? candidates() : Vector<int>();
  const double limit = domain_.work() + work_allowed(mip_.settings, now_.mip.num_cols());
  for (std::size_t k = 0; k < columns.size() && possible; ++k) {
    if (domain_.work() > limit || !proceed(k, columns.size(), start)) break;
    if (!domain_.is_fixed(columns[k])) possible = probe(columns[k]);
  }
  if (possible) {
    apply();
  } else {
    mip_.lp.fail(FindingKind::probing, -1);
  }
  mip_.lp.work += static_cast<std::int64_t>(domain_.work());
  mip_.stats.probing_seconds += wall_seconds() - start;
}

}  // namespace

void probe_binaries(PresolveMip& mip, int) {
  if (mip.settings.probing < 0 || mip.stats.probing_rounds > 0) return;
  ++mip.stats.probing_rounds;
  Probing(mip).run();
}

}  // namespace kelvo
