#include "mip/solve/mip_conversion.h"

#include <cmath>
#include <numeric>

#include "lp/solve/conversion.h"
#include "prob/data/column_types.h"
#include "prob/data/constraint_values.h"
#include "prob/model/row_limits.h"
#include "prob/solution.h"

namespace kelvo {
namespace {

struct Limits {
  double lower;
  double upper;
};

Limits limits_of(char sense, double rhs) {
  switch (sense) {
    case 'L':
      return {-kInf, rhs};
    case 'G':
      return {rhs, kInf};
    default:
      return {rhs, rhs};
  }
}

/// Appends columns and rows to a program; the matrix is taken apart by rows meanwhile.
class Extension {
 public:
  explicit Extension(const LpProblem& lp) : rows_(transpose(lp.columns)), cols_(lp.num_cols) {}

  /// A binary column without a cost; its index.
  int add_binary() {
    ++new_columns_;
    return cols_ + new_columns_ - 1;
  }
  /// A row  lower <= a x <= upper, its entries from add_entry() so far; its index.
  int finish_row(Limits limits) {
    rows_.start.push_back(static_cast<int>(rows_.index.size()));
    limits_.push_back(limits);
    return rows_.num_major++;
  }
  void add_entry(int column, double value) {
    if (value == 0.0) return;
    rows_.index.push_back(column);
    rows_.value.push_back(value);
  }
  void add_entries(const SparseMatrix& matrix, int line) {
    for (int p = matrix.start[line]; p < matrix.start[line + 1]; ++p) {
      add_entry(matrix.index[p], matrix.value[p]);
    }
  }

  /// Puts everything into the program.
  void apply(MipProblem& mip) {
    LpProblem& lp = mip.lp;
    const int old_rows = lp.num_rows;
    lp.num_cols += new_columns_;
    lp.num_rows = rows_.num_major;
    rows_.num_minor = lp.num_cols;
    const auto insert_columns = [&](Vector<double>& values, double value) {
      values.insert(values.begin() + cols_, new_columns_, value);
    };
    insert_columns(lp.cost, 0.0);
    insert_columns(lp.lower, 0.0);
    insert_columns(lp.upper, 1.0);
    for (int i = old_rows; i < lp.num_rows; ++i) {
      lp.cost.push_back(0.0);
      lp.lower.push_back(-limits_[i - old_rows].upper);
      lp.upper.push_back(-limits_[i - old_rows].lower);
    }
    mip.is_integer.resize(lp.num_cols, 1);
    if (!mip.priority.empty()) {
      mip.priority.resize(lp.num_cols, 0);
      mip.direction.resize(lp.num_cols, 0);
    }
    lp.columns = transpose(rows_);
    lp.rows = transpose(lp.columns);  // sorted, like those of the model
  }

 private:
  SparseMatrix rows_;
  const int cols_;
  int new_columns_ = 0;
  Vector<Limits> limits_;
};

constexpr Limits kFree = {-kInf, kInf};

/// One side of "the row does not hold" where `inactive` says that the binary column has no active
/// value: a row on which a x stays away from the limit.
void add_not_holding(const IndicatorConstraints& indicators, int k, double distance,
                     Extension& extension, Vector<Indicator>& out) {
  const char sense = indicators.rows.sense[k];
  const double rhs = indicators.rows.rhs[k];
  const int column = indicators.column[k];
  const int inactive = indicators.complemented[k] != 0 ? 1 : 0;
  const Limits above{rhs + distance, kInf}, below{-kInf, rhs - distance};
  const auto row = [&](int binary, int value, Limits limits) {
    extension.add_entries(indicators.rows.rows, k);
    const int index = extension.finish_row(kFree);
    out.push_back({binary, value, index, limits.lower, limits.upper});
  };
  if (sense == 'L') return row(column, inactive, above);
  if (sense == 'G') return row(column, inactive, below);
  // An equation is missed on either side: two more binaries say on which.
  const int over = extension.add_binary();
  const int under = extension.add_binary();
  row(over, 1, above);
  row(under, 1, below);
  // over + under >= 1 where the column is inactive.
  extension.add_entry(over, 1.0);
  extension.add_entry(under, 1.0);
  if (inactive == 1) {
    extension.add_entry(column, -1.0);
    extension.finish_row({0.0, kInf});
  } else {
    extension.add_entry(column, 1.0);
    extension.finish_row({1.0, kInf});
  }
}

/// How far a row that must not hold stays from its right-hand side: a whole unit when its activity
/// is whole, otherwise more than a row that counts as holding may miss it by.
double distance_of(const Model& model, int k, const MipTolerances& tolerances) {
  constexpr double kTolerances = 4.0;
  const SparseMatrix& rows = model.indicators.rows.rows;
  for (int p = rows.start[k]; p < rows.start[k + 1]; ++p) {
    if (!is_integer_type(model.column_type.empty() ? 'C' : model.column_type[rows.index[p]]) ||
        rows.value[p] != std::round(rows.value[p])) {
      return kTolerances * tolerances.feasibility;
    }
  }
  const double rhs = model.indicators.rows.rhs[k];
  return rhs == std::round(rhs) ? 1.0 : kTolerances * tolerances.feasibility;
}

void add_indicators(const Model& model, const MipTolerances& tolerances, Extension& extension,
                    MipProblem& mip) {
  constexpr int kRowIfActive = 1, kActiveIfRow = 2;
  const IndicatorConstraints& indicators = model.indicators;
  for (int k = 0; k < indicators.size(); ++k) {
    // Without a column the constraint is inactive for ever.
    if (indicators.column[k] < 0) continue;
    if ((indicators.relation[k] & kRowIfActive) != 0) {
      extension.add_entries(indicators.rows.rows, k);
      const int row = extension.finish_row(kFree);
      const Limits limits = limits_of(indicators.rows.sense[k], indicators.rows.rhs[k]);
      const int active = indicators.complemented[k] != 0 ? 0 : 1;
      mip.indicators.push_back({indicators.column[k], active, row, limits.lower, limits.upper});
    }
    if ((indicators.relation[k] & kActiveIfRow) != 0) {
      add_not_holding(indicators, k, distance_of(model, k, tolerances), extension, mip.indicators);
    }
  }
}

void add_column_types(const Model& model, MipProblem& mip) {
  mip.is_integer.assign(model.num_cols, 0);
  for (std::size_t k = 0; k < model.column_type.size(); ++k) {
    const int j = static_cast<int>(k);
    const char type = model.column_type[j];
    mip.is_integer[j] = is_integer_type(type);
    if (type != 'S' && type != 'N') continue;
    double& lower = mip.lp.lower[j];
    double& upper = mip.lp.upper[j];
    if (lower > 0.0 || upper < 0.0) mip.semis.push_back({j, lower, upper});
    lower = std::min(lower, 0.0);
    upper = std::max(upper, 0.0);
  }
}

void add_sets(const Model& model, MipProblem& mip) {
  const SparseMatrix& members = model.sos.members;
  for (int s = 0; s < model.sos.size(); ++s) {
    Vector<int> order(members.start[s + 1] - members.start[s]);
    std::iota(order.begin(), order.end(), members.start[s]);
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return members.value[a] < members.value[b]; });
    OrderedSet set;
    set.type = model.sos.type[s] == '1' ? 1 : 2;
    for (const int p : order) {
      set.members.push_back(members.index[p]);
      set.weights.push_back(members.value[p]);
    }
    mip.sets.push_back(std::move(set));
  }
}

}  // namespace

MipProblem make_mip(const Model& model, const PriorityOrder& order,
                    const MipTolerances& tolerances) {
  MipProblem mip;
  mip.lp = make_lp(model);
  add_column_types(model, mip);
  add_sets(model, mip);
  if (order.size() > 0) {
    mip.priority.assign(model.num_cols, 0);
    mip.direction.assign(model.num_cols, 0);
    for (int k = 0; k < order.size(); ++k) {
      mip.priority[order.column[k]] = order.priority[k];
      mip.direction[order.column[k]] = static_cast<signed char>(order.direction[k]);
    }
  }
  Extension extension(mip.lp);
  const ExtraRows& lazy = model.lazy_constraints;
  for (int k = 0; k < lazy.size(); ++k) {
    extension.add_entries(lazy.rows, k);
    extension.finish_row(limits_of(lazy.sense[k], lazy.rhs[k]));
  }
  add_indicators(model, tolerances, extension, mip);
  extension.apply(mip);
  return mip;
}

MipResiduals measure_on_model(const Model& model, const double* x,
                              const MipTolerances& tolerances) {
  MipResiduals residuals;
  Vector<double> activity;
  compute_row_activities(model, x, activity);
  for (int j = 0; j < model.num_cols; ++j) {
    residuals.bound = std::max(residuals.bound, std::abs(column_infeasibility(model, j, x[j])));
    if (model.column_type.empty() || !is_integer_type(model.column_type[j])) continue;
    residuals.integrality = std::max(residuals.integrality, std::abs(x[j] - std::round(x[j])));
  }
  for (int i = 0; i < model.num_rows; ++i) {
    residuals.row = std::max(residuals.row, std::abs(row_infeasibility(model, i, activity[i])));
  }
  const ExtraRows& lazy = model.lazy_constraints;
  for (int k = 0; k < lazy.size(); ++k) {
    long double sum = 0.0L;
    for (int p = lazy.rows.start[k]; p < lazy.rows.start[k + 1]; ++p) {
      sum += static_cast<long double>(lazy.rows.value[p]) * x[lazy.rows.index[p]];
    }
    const double value = static_cast<double>(sum);
    const Limits limits = limits_of(lazy.sense[k], lazy.rhs[k]);
    residuals.row = std::max({residuals.row, limits.lower - value, value - limits.upper});
  }
  for (int s = 0; s < model.sos.size(); ++s) {
    residuals.set =
        std::max(residuals.set, set_infeasibility(model.sos, s, x, tolerances.feasibility));
  }
  const IndicatorTolerances indicator{tolerances.integrality, tolerances.feasibility};
  for (int k = 0; k < model.indicators.size(); ++k) {
    residuals.row = std::max(residuals.row,
                             std::abs(indicator_infeasibility(model.indicators, k, x, indicator)));
  }
  return residuals;
}

}  // namespace kelvo
