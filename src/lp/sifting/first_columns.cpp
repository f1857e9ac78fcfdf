#include "lp/sifting/first_columns.h"

#include <cmath>

#include "lp/sifting/candidates.h"
#include "lp/sifting/row_prices.h"

namespace kelvo {
namespace {

class FirstColumns {
 public:
  FirstColumns(const LpProblem& lp, const Vector<int>& status, const SiftingSettings& settings,
               StopCheck& stop)
      : lp_(lp),
        sides_(lp, status),
        settings_(settings),
        stop_(stop),
        m_(lp.num_rows),
        n_(lp.num_cols),
        in_work_(lp.num_cols, 0) {}

  Vector<char> choose();

 private:
  Vector<double> missing_activity() const;
  double help(const Vector<double>& missing, int j, int k) const;
  void best_of_row(int i, double missing, const Vector<double>& merit, int count,
                   Vector<Candidate>& list) const;
  Vector<double> merit_by_cost(const Vector<double>& missing) const;
  Vector<double> price_rows(const Vector<double>& missing, const Vector<double>& merit) const;

  const LpProblem& lp_;
  const ColumnSides sides_;
  const SiftingSettings& settings_;
  StopCheck& stop_;
  const int m_;
  const int n_;
  Vector<char> in_work_;  // [n]
};

/// How much the activity of each row has to grow (or, below zero, to shrink) to be within its
/// limits.
Vector<double> FirstColumns::missing_activity() const {
  Vector<double> missing(m_, 0.0);
  const SparseMatrix& a = lp_.columns;
  for (int j = 0; j < n_; ++j) {
    const double x = sides_.is_free(j) ? 0.0 : sides_.place_of(j);
    if (x == 0.0) continue;
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) missing[a.index[k]] -= a.value[k] * x;
  }
  for (int i = 0; i < m_; ++i) {
    // The logical would have to be at minus the activity.
    const double place = missing[i];
    missing[i] = place - std::clamp(place, lp_.lower[n_ + i], lp_.upper[n_ + i]);
    if (std::fabs(missing[i]) <= settings_.simplex.feasibility_tolerance) missing[i] = 0.0;
  }
  return missing;
}

/// What entry k of the matrix, one of column j, does towards what its row misses.
double FirstColumns::help(const Vector<double>& missing, int j, int k) const {
  const double need = missing[lp_.columns.index[k]];
  if (need == 0.0) return 0.0;
  const double moved = sides_.direction_of(j) * lp_.columns.value[k];
  return need > 0.0 ? moved : -moved;
}

/// The columns of highest merit among those that help in row i.
void FirstColumns::best_of_row(int i, double missing, const Vector<double>& merit, int count,
                               Vector<Candidate>& list) const {
  list.clear();
  const SparseMatrix& rows = lp_.rows;
  for (int k = rows.start[i]; k < rows.start[i + 1]; ++k) {
    const int j = rows.index[k];
    if (merit[j] == -kInf || sides_.direction_of(j) * rows.value[k] * missing <= 0.0) continue;
    list.push_back({j, merit[j]});
  }
  keep_best(list, count);
}

/// Merits by cost alone, shared by all rows that a column helps; -inf for columns that help none.
Vector<double> FirstColumns::merit_by_cost(const Vector<double>& missing) const {
  const SparseMatrix& a = lp_.columns;
  Vector<double> merit(n_, -kInf);
  for (int j = 0; j < n_; ++j) {
    if (in_work_[j] != 0 || lp_.lower[j] == lp_.upper[j]) continue;
    double sum = 0.0;
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) sum += std::max(0.0, help(missing, j, k));
    if (sum > 0.0) merit[j] = -sides_.direction_of(j) * lp_.cost[j] / sum;
  }
  return merit;
}

/// Approximate duals of the rows that miss something, from the columns that are cheapest there.
Vector<double> FirstColumns::price_rows(const Vector<double>& missing,
                                        const Vector<double>& merit) const {
  Vector<double> prices(m_, 0.0);
  Vector<char> cheap(n_, 0);
  Vector<Candidate> list;
  for (int i = 0; i < m_; ++i) {
    if (missing[i] == 0.0) continue;
    best_of_row(i, missing[i], merit, settings_.priced_per_row, list);
    double least = kInf;
    for (const Candidate& c : list) {
      cheap[c.column] = 1;
      least = std::min(least, -c.merit);
    }
    prices[i] = list.empty() ? 0.0 : std::max(0.0, least);
  }
  CoveringProgram program;
  for (int i = 0; i < m_; ++i) program.need.push_back(std::fabs(missing[i]));
  const SparseMatrix& a = lp_.columns;
  SparseMatrix& columns = program.columns;
  columns.num_minor = m_;
  for (int j = 0; j < n_; ++j) {
    if (cheap[j] == 0) continue;
    double range = 0.0;  // more than that helps no row any more
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) {
      const double amount = help(missing, j, k);
      if (amount == 0.0) continue;
      columns.index.push_back(a.index[k]);
      columns.value.push_back(amount);
      if (amount > 0.0) range = std::max(range, program.need[a.index[k]] / amount);
    }
    columns.start.push_back(static_cast<int>(columns.index.size()));
    ++columns.num_major;
    program.cost.push_back(sides_.direction_of(j) * lp_.cost[j]);
    program.range.push_back(std::min(range, lp_.upper[j] - lp_.lower[j]));
  }
  return improve_row_prices(program, prices, settings_.price_passes, stop_);
}

/// For each row that misses something those columns that mend it best by approximate reduced costs.
Vector<char> FirstColumns::choose() {
  for (int j = 0; j < n_; ++j) {
    if (sides_.is_free(j)) in_work_[j] = 1;
  }
  const Vector<double> missing = missing_activity();
  Vector<double> merit = merit_by_cost(missing);
  const Vector<double> prices = price_rows(missing, merit);
  const SparseMatrix& a = lp_.columns;
  for (int j = 0; j < n_; ++j) {
    if (merit[j] == -kInf) continue;
    merit[j] = -sides_.direction_of(j) * lp_.cost[j];
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) {
      merit[j] += prices[a.index[k]] * help(missing, j, k);
    }
  }
  Vector<Candidate> list;
  for (int i = 0; i < m_; ++i) {
    if (missing[i] == 0.0) continue;
    best_of_row(i, missing[i], merit, settings_.first_per_row, list);
    for (const Candidate& c : list) in_work_[c.column] = 1;
  }
  return std::move(in_work_);
}

}  // namespace

Vector<int> slack_basis_by_costs(const LpProblem& lp) {
  Vector<int> status(lp.num_vars(), kBasic);
  for (int j = 0; j < lp.num_cols; ++j) {
    const double lower = lp.lower[j];
    const double upper = lp.upper[j];
    const double c = lp.cost[j];
    const bool prefers_upper = c < 0.0 || (c == 0.0 && std::fabs(upper) < std::fabs(lower));
    if (lower == -kInf) {
      status[j] = upper < kInf ? kAtUpper : kFreeSuper;
    } else {
      status[j] = upper < kInf && prefers_upper ? kAtUpper : kAtLower;
    }
  }
  return status;
}

Vector<char> choose_first_columns(const LpProblem& lp, const Vector<int>& status,
                                  const SiftingSettings& settings, StopCheck& stop) {
  return FirstColumns(lp, status, settings, stop).choose();
}

}  // namespace kelvo
