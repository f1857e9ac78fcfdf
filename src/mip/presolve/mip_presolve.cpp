#include "mip/presolve/mip_presolve.h"

#include <optional>

#include "lp/presolve/reducer.h"
#include "mip/presolve/mip_presolve_log.h"
#include "mip/presolve/reduction_table.h"
#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

namespace {

// Another round is worth its time when the last one changed this share of the lines.
constexpr double kWorthwhileRound = 0.003;
constexpr int kMostRounds = 30;
// Entries that the reductions of a round may touch, per nonzero, and at least.
constexpr std::int64_t kWorkPerNonzero = 100;
constexpr std::int64_t kLeastWork = 1000000;

/// Runs the reductions over one program.
class MipReducer {
 public:
  MipReducer(PresolveMip& mip, MipPresolveWatch* watch)
      : mip_(mip), lp_(mip.lp), watch_(watch), since_(kNumMipReductions, 0) {}

  void run();

 private:
  void run_linear();
  /// Gives every reduction of a class its turn; true when they gained something worthwhile.
  bool run_class(CostClass cost);
  void tell(const char* name, std::int64_t before) {
    if (watch_ != nullptr && mip_.changes() != before && !mip_.ended()) watch_->after(name, mip_);
  }
  bool worthwhile(std::int64_t gain) const {
    const int left = lp_.num_rows() + lp_.num_cols() - lp_.stats.rows_removed -
                     lp_.stats.cols_removed - 2 * lp_.stats.substitutions;
    return gain > kWorthwhileRound * left;
  }

  PresolveMip& mip_;
  PresolveLp& lp_;
  MipPresolveWatch* const watch_;
  std::optional<Reducer> reducer_;
  int reducer_rows_ = -1;  // that the program had when the reducer was made
  Vector<int> since_;      // [reductions] moment of the last turn
};

void MipReducer::run_linear() {
  const std::int64_t before = mip_.changes();
  const std::int64_t allowed = kWorkPerNonzero * lp_.matrix.num_nonzeros();
  lp_.work_limit = lp_.work + std::max(kLeastWork, allowed);
  if (reducer_rows_ != lp_.num_rows()) {
    reducer_.emplace(lp_);
    reducer_rows_ = lp_.num_rows();
  }
  reducer_->run_passes();
  tell("linear reductions", before);
}

bool MipReducer::run_class(CostClass cost) {
  const std::int64_t start = mip_.changes();
  for (int k = 0; k < kNumMipReductions && !mip_.ended(); ++k) {
    const MipReduction& reduction = kMipReductions[k];
    if (reduction.cost != cost) continue;
    if (reduction.dual ? !lp_.settings.dual_reductions : !lp_.settings.primal_reductions) continue;
    const std::int64_t before = mip_.changes();
    const int now = lp_.moment();
    reduction.run(mip_, since_[k]);
    since_[k] = now;
    tell(reduction.name, before);
  }
  return worthwhile(mip_.changes() - start);
}

void MipReducer::run() {
  const int limit = lp_.settings.pass_limit >= 0 ? lp_.settings.pass_limit : kMostRounds;
  if (limit == 0) return;
  for (int round = 0; round < limit && !mip_.ended(); ++round) {
    const std::int64_t start = mip_.changes();
    run_linear();
    if (mip_.ended()) return;
    run_class(CostClass::cheap);
    if (mip_.ended()) return;
    if (worthwhile(mip_.changes() - start)) continue;
    if (run_class(CostClass::medium)) continue;
    if (mip_.ended() || !run_class(CostClass::expensive)) break;
  }
  if (mip_.ended()) return;
  // The last changes may leave something trivial; and the bounds have served.
  run_class(CostClass::cheap);
  if (!mip_.ended()) run_linear();
  if (!mip_.ended()) mip_.loosen_bounds();
  // What is not linear has to agree with the bounds in the end.
  for (const auto reduce : {reduce_semi_columns, reduce_sets, reduce_indicators}) {
    if (!mip_.ended()) reduce(mip_, 0);
  }
  if (!mip_.ended() && watch_ != nullptr) watch_->after("loosening of bounds", mip_);
}

/// Tells of a row with a single entry that contradicts the bounds of a binary column in its own
/// words.
void name_binary_finding(const PresolveMip& mip, Finding& finding) {
  if (finding.kind != FindingKind::column_bounds || finding.other < 0) return;
  const PresolveLp& lp = mip.lp;
  if (!mip.is_binary(finding.line)) return;
  const int i = finding.other;
  const double a = lp.matrix[lp.matrix.row_first(i)].value;
  const double most = std::max(lp.row_lower[i] / a, lp.row_upper[i] / a);
  finding.kind = most < 0.0 ? FindingKind::binary_negative : FindingKind::binary_above_one;
  std::swap(finding.line, finding.other);
}

}  // namespace

Vector<double> crush_into(const PresolveMip& mip, const Vector<double>& x) {
  Vector<double> all(x);
  mip.lp.stack.records.forward([&all](const auto& record) {
    record.crush_values(all);
    return true;
  });
  return all;
}

MipPresolve::MipPresolve(const MipProblem& mip, const MipPresolveSettings& settings,
                         const MipPresolveContext& context) {
  MipPresolveLog log(context.sink, settings);
  PresolveMip work(mip, settings, context.stop, &log);
  if (settings.lp.on && !work.ended()) MipReducer(work, context.watch).run();
  outcome_ = work.lp.outcome();
  finding_ = work.lp.finding;
  name_binary_finding(work, finding_);
  linear_stats_ = work.lp.stats;
  stats_ = work.stats;
  log.probing_end(stats_);
  log.finding(finding_, mip.lp);
  if (outcome_ != PresolveOutcome::reduced && outcome_ != PresolveOutcome::unchanged) return;
  if (work.changes() != 0) outcome_ = PresolveOutcome::reduced;
  reduced_ = work.reduced_form();
  stack_ = std::move(work.lp.stack);
  for (const int j : reduced_.kept_cols) {
    implied_integers_.push_back(work.lp.is_integer(j) && !mip.is_integer[j]);
  }
  take_implications(work);
  components_ = find_components(reduced_.mip);
  if (!settings.lp.on) return;
  if (settings.symmetry != 0) {
    symmetry_ = find_symmetry(reduced_.mip, std::max(settings.symmetry, 1), context.stop, &log);
    log.symmetry(symmetry_);
  }
  log.summary(outcome_, linear_stats_, stats_, reduced_.mip);
}

/// Those whose columns are there still, by their new numbers.
void MipPresolve::take_implications(const PresolveMip& work) {
  const auto renumber = [this](int bound) {
    const int j = reduced_.col_map[bound >> 1];
    return j < 0 ? -1 : 2 * j + (bound & 1);
  };
  for (const FoundImplication& found : work.implications) {
    const int literal = renumber(found.literal), bound = renumber(found.bound);
    if (literal < 0 || bound < 0 || !reduced_.mip.is_binary(literal >> 1)) continue;
    implications_.push_back({literal, bound, found.value});
  }
}

Vector<double> MipPresolve::postsolve(const Vector<double>& reduced_x) const {
  PostsolveState state;
  state.x.assign(num_cols(), 0.0);
  for (std::size_t k = 0; k < reduced_x.size(); ++k) state.x[reduced_.kept_cols[k]] = reduced_x[k];
  stack_.undo_all(state, {true, false, false});
  return std::move(state.x);
}

Vector<double> MipPresolve::crush(const Vector<double>& x) const {
  Vector<double> all(x);
  stack_.records.forward([&all](const auto& record) {
    record.crush_values(all);
    return true;
  });
  Vector<double> reduced_x;
  for (const int j : reduced_.kept_cols) reduced_x.push_back(all[j]);
  return reduced_x;
}

}  // namespace kelvo
