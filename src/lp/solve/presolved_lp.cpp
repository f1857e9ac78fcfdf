#include "lp/solve/presolved_lp.h"

#include <algorithm>
#include <cmath>

#include "lp/crossover/independent_columns.h"
#include "lp/presolve/crush.h"
#include "lp/solve/model_to_lp.h"
#include "lp/solve/presolve_log.h"
#include "prob/model/row_limits.h"

namespace kelvo {

namespace {

double finite_number(double value) {
  return value == kInf ? kInfiniteBound : value == -kInf ? -kInfiniteBound : value;
}

/// Sense, right-hand side and range of a row with these limits of its activity.
void append_row(double low, double high, Model& model) {
  double range = 0.0;
  char sense = 'E';
  double rhs = low;
  if (low == -kInf) {
    sense = 'L';
    rhs = high;
  } else if (high == kInf) {
    sense = 'G';
  } else if (low != high) {
    sense = 'R';
    range = high - low;
  }
  model.row_sense.push_back(sense);
  model.rhs.push_back(finite_number(rhs));
  if (sense != 'R' && model.range.empty()) return;
  model.range.resize(model.row_sense.size() - 1, 0.0);
  model.range.push_back(range);
}

}  // namespace

namespace {

/// Statuses of a reduced basis that is being made right.
class CrushedStart {
 public:
  CrushedStart(const Model& model, CrushedBasis& crushed) : model_(model), crushed_(crushed) {}

  /// Nonbasic variables that are not where their status says go to the bound they are at; columns
  /// at none are superbasic, logicals basic.
  void move_to_point();
  /// Makes the basic variables independent and as many as there are rows; the others rest.
  void keep_independent(bool at_point);

  bool is_square() const {
    return std::count(crushed_.status.begin(), crushed_.status.end(), kBasic) == model_.num_rows;
  }

 private:
  /// The status of a nonbasic variable with these limits at this place.
  static int status_at(double place, double lower, double upper) {
    constexpr double kSamePlace = 1e-9;  // relative: places are sums and quotients of bounds
    if (std::fabs(place - lower) <= kSamePlace * (1.0 + std::fabs(lower))) return kAtLower;
    if (std::fabs(place - upper) <= kSamePlace * (1.0 + std::fabs(upper))) return kAtUpper;
    return kFreeSuper;
  }
  int column_status(int j) const {
    return status_at(crushed_.value[j], model_.lower[j], model_.upper[j]);
  }

  const Model& model_;
  CrushedBasis& crushed_;
};

void CrushedStart::move_to_point() {
  Vector<int>& status = crushed_.status;
  for (int j = 0; j < model_.num_cols; ++j) {
    if (status[j] != kBasic && model_.lower[j] < model_.upper[j]) status[j] = column_status(j);
  }
  Vector<double> activity;
  compute_row_activities(model_, crushed_.value.data(), activity);
  for (int i = 0; i < model_.num_rows; ++i) {
    int& logical = status[model_.num_cols + i];
    const RowLimits limits = row_limits(model_, i);
    if (logical == kBasic || limits.lower == limits.upper) continue;
    const int there = status_at(-activity[i], -limits.upper, -limits.lower);
    logical = there == kFreeSuper ? kBasic : there;
  }
}

void CrushedStart::keep_independent(bool at_point) {
  Vector<int>& status = crushed_.status;
  const int n = model_.num_cols, variables = static_cast<int>(status.size());
  Vector<int> basic;
  for (int v = n; v < variables; ++v) {
    if (status[v] == kBasic) basic.push_back(v);
  }
  for (int j = 0; j < n; ++j) {
    if (status[j] == kBasic) basic.push_back(j);
  }
  const Vector<char> chosen = choose_independent(make_columnwise_lp(model_), basic);
  // An absent bound gives way to the other one when the basis is used.
  for (const int v : basic) status[v] = at_point && v < n ? column_status(v) : kAtLower;
  for (int v = 0; v < variables; ++v) {
    if (chosen[v]) status[v] = kBasic;
  }
}

}  // namespace

Model make_model(const LpProblem& lp, int sense) {
  Model model;
  model.sense = sense;
  model.num_rows = lp.num_rows;
  model.num_cols = lp.num_cols;
  model.objective.reserve(lp.num_cols);
  model.lower.reserve(lp.num_cols);
  model.upper.reserve(lp.num_cols);
  for (int j = 0; j < lp.num_cols; ++j) {
    model.objective.push_back(sense * lp.cost[j] + 0.0);
    model.lower.push_back(finite_number(lp.lower[j]));
    model.upper.push_back(finite_number(lp.upper[j]));
  }
  model.row_sense.reserve(lp.num_rows);
  model.rhs.reserve(lp.num_rows);
  for (int v = lp.num_cols; v < lp.num_vars(); ++v) {
    append_row(-lp.upper[v] + 0.0, -lp.lower[v] + 0.0, model);
  }
  SparseMatrix columns(lp.columns);
  model.matrix.assign(std::move(columns));
  return model;
}

PresolvedLp::PresolvedLp(const Model& model, const PresolveSettings& settings,
                         const Vector<char>& protected_columns, const CallContext& context)
    : PresolvedLp(model, settings, protected_columns, context,
                  PresolveLog(context.sink, settings)) {}

PresolvedLp::PresolvedLp(const Model& model, const PresolveSettings& settings,
                         const Vector<char>& protected_columns, const CallContext& context,
                         PresolveLog&& log)
    : presolve_(make_columnwise_lp(model), settings, ColumnMarks{protected_columns, {}},
                context.stop, &log),
      sense_(model.sense) {
  if (outcome() == PresolveOutcome::reduced || outcome() == PresolveOutcome::unchanged) {
    const LpProblem lp = presolve_.take_reduced();
    offset_ = lp.offset;
    log.summary(presolve_, lp);
    if (outcome() == PresolveOutcome::reduced) {
      reduced_ = make_model(lp, sense_);
      has_reduced_ = true;
    }
  } else {
    log.finding(presolve_.finding(), model);
  }
}

bool PresolvedLp::outlives(ChangeKind kind) noexcept {
  const bool of_objective = kind == ChangeKind::objective || kind == ChangeKind::single_objective;
  if (!follows_objective_ || !of_objective) return false;
  objective_changed_ = true;
  return true;
}

bool PresolvedLp::catch_up(const Model& original) {
  if (!objective_changed_) return true;
  Vector<double> cost;
  cost.reserve(original.num_cols);
  for (const double c : original.objective) cost.push_back(sense_ * c);
  Vector<double> objective;
  double offset = 0.0;
  Vector<int> columns(reduced_.num_cols);
  for (int k = 0; k < reduced_.num_cols; ++k) columns[k] = k;
  if (!presolve_.reprice(cost, objective, offset)) return false;
  for (double& c : objective) c = sense_ * c + 0.0;
  if (reduced_problem != nullptr) {
    reduced_problem->change_objective(columns.data(), objective.data(), reduced_.num_cols,
                                      ChangeKind::objective);
  }
  reduced_.objective = std::move(objective);
  offset_ = offset;
  objective_changed_ = false;
  return true;
}

void PresolvedLp::keep_identity(const Model& model) {
  if (has_reduced_) return;
  LpProblem lp = make_columnwise_lp(model);
  close_crossed_bounds(lp);
  reduced_ = make_model(lp, sense_);
  has_reduced_ = true;
}

StoredBasis PresolvedLp::crush(const StoredBasis& start, const Model& original) const {
  Vector<int> status;
  stored_to_lp_status(start, original, status);
  // Only where two columns have become one do the values count, those of nonbasic ones.
  Vector<double> x(start.x);
  if (x.empty()) {
    for (int j = 0; j < original.num_cols; ++j) {
      const double place = status[j] == kAtUpper ? original.upper[j] : original.lower[j];
      x.push_back(std::fabs(place) < kInfiniteBound ? place : 0.0);
    }
  }
  CrushedBasis crushed = crush_basis(presolve_, status, x.data());
  CrushedStart reduced_start(reduced_, crushed);
  const bool at_point = !start.x.empty();
  if (at_point) reduced_start.move_to_point();
  if (at_point || !reduced_start.is_square()) reduced_start.keep_independent(at_point);
  StoredBasis basis;
  lp_to_stored_status(crushed.status, reduced_, basis);
  basis.x = std::move(crushed.value);
  return basis;
}

Vector<char> protection_marks(const Problem& problem) {
  Vector<char> marks;
  if (problem.protected_columns.empty()) return marks;
  marks.assign(problem.num_cols(), 0);
  for (const int j : problem.protected_columns) marks[j] = 1;
  return marks;
}

void PresolvedLp::postsolve(const LpAnswer& answer, LpSolution& original) const {
  LpSolution small;
  small.x = answer.record.x;
  small.y.reserve(reduced_.num_rows);
  for (const double pi : answer.record.pi) small.y.push_back(sense_ * pi);
  small.z.reserve(reduced_.num_cols);
  for (const double dj : answer.record.dj) small.z.push_back(sense_ * dj);
  stored_to_lp_status(answer.basis, reduced_, small.status);
  presolve_.postsolve(small, original);
}

}  // namespace kelvo
