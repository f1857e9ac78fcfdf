// Rows and columns that join and leave a SimplexState with its basis, factor and values.
//
// New rows come with basic logicals and deleted ones leave with theirs, so that the other basic
// values, all duals and the weights stay what they are; new columns are nonbasic and so are deleted
// ones. Then the next run starts hot. Where a deleted row has a nonbasic logical, or a deleted
// column is basic, the basis is completed from the logicals and factored again.
#include <algorithm>
#include <cassert>

#include "lp/simplex/state/reshape.h"
#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

using reshape::append_lines;
using reshape::erase;
using reshape::erase_lines;

namespace {

template <class T>
void insert(Vector<T>& array, int at, int count, T x) {
  array.insert(array.begin() + at, count, x);
}

/// Erases the entries `base + list[k]`; the list ascends.
}  // namespace

/// After the problem has its new shape: sizes and work space follow.
void SimplexState::resize() {
  m = problem.num_rows;
  n = problem.num_cols;
  num_vars = problem.num_vars();
  for (WorkVector* x : {&row_ep, &entering, &auxiliary, &full, &moves_}) x->resize(m);
  pivot_row.resize(num_vars);
  result_values.resize(num_vars, 0.0);
  farkas.resize(m, 0.0);
  ray.resize(num_vars, 0.0);
  saved_header_.resize(m, 0);
  saved_status_.resize(num_vars, 0);
  saved_weights_.resize(m, 1.0);
  saved_ = false;
  // New keys need not be random: they only have to break ties repeatably.
  while (static_cast<int>(tie_key.size()) < num_vars) {
    tie_key.push_back(static_cast<int>(tie_key.size()));
  }
  tie_key.resize(num_vars);
  given_primal_weights.clear();
  solved = false;
  if (!basis_valid) return;
  for (int p = 0; p < m; ++p) position[header[p]] = p;
}

/// The row-wise copy of a problem with other columns than before.
void SimplexState::copy_rows_again() {
  rows.rebuild();
  if (problem.compact) problem.rows = SparseMatrix();
  if (basis_valid) refresh_partition();
}

void SimplexState::settle_before_reshape() {
  assert(!trail.recording());
  restore_costs();
  restore_bounds();
  if (primals_current && factor_current_) apply_moves();
  for (WorkVector* x : {&row_ep, &entering, &auxiliary, &full, &moves_, &pivot_row}) x->clear();
}

void SimplexState::add_rows(const SparseMatrix& lines, const Vector<double>& least,
                            const Vector<double>& most) {
  settle_before_reshape();
  const int count = lines.num_major;
  SparseMatrix basic_part;
  basic_part.num_minor = m;
  for (int k = 0; k < count; ++k) {
    double activity = 0.0;
    for (int e = lines.start[k]; e < lines.start[k + 1]; ++e) {
      const int j = lines.index[e];
      const bool basic = basis_valid && status[j] == kBasic;
      activity += lines.value[e] * (basic ? basic_value[position[j]] : value[j]);
      if (!basic) continue;
      basic_part.index.push_back(position[j]);
      basic_part.value.push_back(lines.value[e]);
    }
    basic_part.start.push_back(static_cast<int>(basic_part.index.size()));
    ++basic_part.num_major;
    header.push_back(num_vars + k);
    basic_value.push_back(-activity);
    basic_lower.push_back(-most[k]);
    basic_upper.push_back(-least[k]);
    for (Vector<double>* array : {&problem.lower, &lower}) array->push_back(-most[k]);
    for (Vector<double>* array : {&problem.upper, &upper}) array->push_back(-least[k]);
  }
  if (problem.has_rows()) append_lines(problem.rows, lines);
  problem.num_rows += count;
  reshape::append_minor_lines(problem.columns, lines);
  rows.add_rows(lines);
  insert(problem.cost, num_vars, count, 0.0);
  insert(cost, num_vars, count, 0.0);
  insert(status, num_vars, count, static_cast<int>(kBasic));
  insert(move, num_vars, count, static_cast<signed char>(kStays));
  insert(value, num_vars, count, 0.0);
  insert(reduced_cost, num_vars, count, 0.0);
  insert(held, num_vars, count, static_cast<unsigned char>(0));
  insert(position, num_vars, count, 0);
  insert(row_duals, m, count, 0.0);
  // Steepest edge corrects a weight that turns out to be too small when its row is chosen.
  insert(dual_weights, m, count, 1.0);
  if (dual_weights_full) dual_weights_valid = false;
  dual_weights_unit = false;
  resize();
  primals_fresh = false;
  if (factor_current_) factor_current_ = factor_->add_rows(basic_part);
}

void SimplexState::delete_rows(const Vector<int>& list) {
  settle_before_reshape();
  Vector<int> positions;
  for (const int i : list) {
    if (basis_valid && status[n + i] == kBasic) positions.push_back(position[n + i]);
  }
  const bool clean = basis_valid && positions.size() == list.size();
  std::sort(positions.begin(), positions.end());
  Vector<int> row_now(m, 0);
  for (const int i : list) row_now[i] = -1;
  int kept = 0;
  for (int& row : row_now) row = row < 0 ? -1 : kept++;
  if (problem.has_rows()) erase_lines(problem.rows, list);
  problem.num_rows = kept;
  Vector<int> entry_now;
  reshape::erase_minor_lines(problem.columns, row_now, entry_now);
  const auto by_variable = [&](auto&... arrays) { (erase(arrays, n, list), ...); };
  by_variable(problem.cost, problem.lower, problem.upper, cost, lower, upper, status, move, value,
              reduced_cost, held, position, result_values);
  erase(row_duals, 0, list);
  if (!clean) {
    rebuild_basis_after_reshape();
    return;
  }
  for (Vector<double>* array : {&basic_value, &basic_lower, &basic_upper, &dual_weights}) {
    erase(*array, 0, positions);
  }
  erase(header, 0, positions);
  for (int& v : header) v = v < n ? v : n + row_now[v - n];
  if (dual_weights_full) dual_weights_valid = false;
  if (factor_current_) factor_current_ = factor_->delete_rows(list, positions);
  rows.delete_rows(list, entry_now);
  resize();
  primals_fresh = duals_fresh = false;
}

void SimplexState::add_columns(const SparseMatrix& more, const Vector<double>& costs,
                               const Vector<double>& lowers, const Vector<double>& uppers) {
  settle_before_reshape();
  const int count = more.num_major;
  const int first = n;
  append_lines(problem.columns, more);
  problem.num_cols += count;
  problem.rows = transpose(problem.columns);
  problem.cost.insert(problem.cost.begin() + first, costs.begin(), costs.end());
  problem.lower.insert(problem.lower.begin() + first, lowers.begin(), lowers.end());
  problem.upper.insert(problem.upper.begin() + first, uppers.begin(), uppers.end());
  cost = problem.cost;
  lower = problem.lower;
  upper = problem.upper;
  insert(status, first, count, static_cast<int>(kAtLower));
  insert(move, first, count, static_cast<signed char>(kStays));
  insert(value, first, count, 0.0);
  insert(reduced_cost, first, count, 0.0);
  insert(held, first, count, static_cast<unsigned char>(0));
  insert(position, first, count, -1);
  for (int& v : header) v += v >= first ? count : 0;
  resize();
  copy_rows_again();
  if (!basis_valid) return;
  // As after a change from the bounds [0, 0]: a value off 0 moves the basic variables.
  for (int j = first; j < n; ++j) change_nonbasic_bounds(j);
  if (dual_weights_full) dual_weights_valid = false;
}

void SimplexState::delete_columns(const Vector<int>& list) {
  settle_before_reshape();
  bool clean = basis_valid && factor_current_;
  for (const int j : list) {
    clean = clean && status[j] != kBasic;
    if (clean && primals_current && value[j] != 0.0) {
      dual_objective -= priced_out(j) * value[j];
      add_column(j, -value[j], moves_);
    }
  }
  if (clean) apply_moves();
  const int first = n;
  Vector<int> now(num_vars, 0);
  for (const int j : list) now[j] = -1;
  int kept = 0;
  for (int& v : now) v = v < 0 ? -1 : kept++;
  erase_lines(problem.columns, list);
  problem.num_cols = problem.columns.num_major;
  problem.rows = transpose(problem.columns);
  const auto by_variable = [&](auto&... arrays) { (erase(arrays, 0, list), ...); };
  by_variable(problem.cost, problem.lower, problem.upper, cost, lower, upper, status, move, value,
              reduced_cost, held, position, result_values);
  if (!clean) {
    n = first - static_cast<int>(list.size());
    rebuild_basis_after_reshape();
    return;
  }
  for (int& v : header) v = now[v];
  resize();
  copy_rows_again();
  if (dual_weights_full) dual_weights_valid = false;
}

/// The statuses of what is left give the basis; missing basic variables are made up by logicals.
void SimplexState::rebuild_basis_after_reshape() {
  const int rows_now = problem.num_rows;
  for (Vector<double>* array : {&basic_value, &basic_lower, &basic_upper, &dual_weights}) {
    array->assign(rows_now, 0.0);
  }
  row_duals.resize(rows_now, 0.0);
  header.assign(rows_now, 0);
  const bool had_basis = basis_valid;
  basis_valid = false;
  factor_current_ = false;
  resize();
  copy_rows_again();
  std::fill(dual_weights.begin(), dual_weights.end(), 1.0);
  dual_weights_valid = false;
  if (!had_basis) return;
  const Vector<int> given = status;
  const Vector<double> places = value;
  set_basis(given, places.data());
}

}  // namespace kelvo
