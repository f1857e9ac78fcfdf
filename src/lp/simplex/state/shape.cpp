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

}  // namespace

/// After the problem has its new shape: sizes and work space follow.
void SimplexState::resize() {
  m = problem.num_rows;
  n = problem.num_cols;
  num_vars = problem.num_vars();
  for (WorkVector* x : {&row_ep, &entering, &auxiliary, &full, &basics.moves}) x->resize(m);
  pivot_row.resize(num_vars);
  results.resize(problem);
  saved_.forget();
  program.resize();
  weights.given_primal.clear();
  optimum.forget();
  if (basis.is_set()) basis.number_positions();
}

/// The row-wise copy of a problem with other columns than before.
void SimplexState::copy_rows_again() {
  program.copy_rows_again();
  if (basis.is_set()) basis.refresh_partition();
}

void SimplexState::settle_before_reshape() {
  assert(!trail.recording());
  restore_costs();
  restore_bounds();
  if (basics.current() && factor_current()) apply_moves();
  for (WorkVector* x : {&row_ep, &entering, &auxiliary, &full, &basics.moves, &pivot_row})
    x->clear();
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
      const bool basic = basis.is_set() && basis.status[j] == kBasic;
      activity += lines.value[e] * (basic ? basics.value[basis.position[j]] : basis.value[j]);
      if (!basic) continue;
      basic_part.index.push_back(basis.position[j]);
      basic_part.value.push_back(lines.value[e]);
    }
    basic_part.start.push_back(static_cast<int>(basic_part.index.size()));
    ++basic_part.num_major;
    basis.header.push_back(num_vars + k);
    basics.value.push_back(-activity);
    basics.lower.push_back(-most[k]);
    basics.upper.push_back(-least[k]);
    for (Vector<double>* array : {&problem.lower, &program.lower}) array->push_back(-most[k]);
    for (Vector<double>* array : {&problem.upper, &program.upper}) array->push_back(-least[k]);
  }
  if (problem.has_rows()) append_lines(problem.rows, lines);
  problem.num_rows += count;
  reshape::append_minor_lines(problem.columns, lines);
  program.rows.add_rows(lines);
  insert(problem.cost, num_vars, count, 0.0);
  insert(program.cost, num_vars, count, 0.0);
  insert(basis.status, num_vars, count, static_cast<int>(kBasic));
  insert(basis.move, num_vars, count, static_cast<signed char>(Basis::kStays));
  insert(basis.value, num_vars, count, 0.0);
  insert(duals.reduced_cost, num_vars, count, 0.0);
  insert(basis.held, num_vars, count, static_cast<unsigned char>(0));
  insert(basis.position, num_vars, count, 0);
  insert(duals.row_duals, m, count, 0.0);
  // Steepest edge corrects a weight that turns out to be too small when its row is chosen.
  insert(weights.dual, m, count, 1.0);
  weights.follow_shape();
  weights.set_measured();
  resize();
  basics.lose_freshness();
  inverse.add_rows(basic_part);
}

void SimplexState::delete_rows(const Vector<int>& list) {
  settle_before_reshape();
  Vector<int> positions;
  for (const int i : list) {
    if (basis.is_set() && basis.status[n + i] == kBasic) positions.push_back(basis.position[n + i]);
  }
  const bool clean = basis.is_set() && positions.size() == list.size();
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
  by_variable(problem.cost, problem.lower, problem.upper, program.cost, program.lower,
              program.upper, basis.status, basis.move, basis.value, duals.reduced_cost, basis.held,
              basis.position, results.values);
  erase(duals.row_duals, 0, list);
  if (!clean) {
    rebuild_basis_after_reshape();
    return;
  }
  for (Vector<double>* array : {&basics.value, &basics.lower, &basics.upper, &weights.dual}) {
    erase(*array, 0, positions);
  }
  erase(basis.header, 0, positions);
  for (int& v : basis.header) v = v < n ? v : n + row_now[v - n];
  weights.follow_shape();
  inverse.delete_rows(list, positions);
  program.rows.delete_rows(list, entry_now);
  resize();
  basics.lose_freshness();
  duals.lose_freshness();
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
  program.cost = problem.cost;
  program.lower = problem.lower;
  program.upper = problem.upper;
  insert(basis.status, first, count, static_cast<int>(kAtLower));
  insert(basis.move, first, count, static_cast<signed char>(Basis::kStays));
  insert(basis.value, first, count, 0.0);
  insert(duals.reduced_cost, first, count, 0.0);
  insert(basis.held, first, count, static_cast<unsigned char>(0));
  insert(basis.position, first, count, -1);
  for (int& v : basis.header) v += v >= first ? count : 0;
  resize();
  copy_rows_again();
  if (!basis.is_set()) return;
  // As after a change from the bounds [0, 0]: a value off 0 moves the basic variables.
  for (int j = first; j < n; ++j) change_nonbasic_bounds(j);
  weights.follow_shape();
}

void SimplexState::delete_columns(const Vector<int>& list) {
  settle_before_reshape();
  bool clean = basis.is_set() && factor_current();
  for (const int j : list) {
    clean = clean && basis.status[j] != kBasic;
    if (clean && basics.current() && basis.value[j] != 0.0) {
      duals.objective -= duals.priced_out(j) * basis.value[j];
      program.add_column(j, -basis.value[j], basics.moves);
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
  by_variable(problem.cost, problem.lower, problem.upper, program.cost, program.lower,
              program.upper, basis.status, basis.move, basis.value, duals.reduced_cost, basis.held,
              basis.position, results.values);
  if (!clean) {
    n = first - static_cast<int>(list.size());
    rebuild_basis_after_reshape();
    return;
  }
  for (int& v : basis.header) v = now[v];
  resize();
  copy_rows_again();
  weights.follow_shape();
}

/// The statuses of what is left give the basis; missing basic variables are made up by logicals.
void SimplexState::rebuild_basis_after_reshape() {
  const int rows_now = problem.num_rows;
  for (Vector<double>* array : {&basics.value, &basics.lower, &basics.upper, &weights.dual}) {
    array->assign(rows_now, 0.0);
  }
  duals.row_duals.resize(rows_now, 0.0);
  basis.header.assign(rows_now, 0);
  const bool had_basis = basis.is_set();
  basis.forget();
  inverse.invalidate();
  resize();
  copy_rows_again();
  std::fill(weights.dual.begin(), weights.dual.end(), 1.0);
  weights.invalidate();
  if (!had_basis) return;
  const Vector<int> given = basis.status;
  const Vector<double> places = basis.value;
  set_basis(given, places.data());
}

}  // namespace kelvo
