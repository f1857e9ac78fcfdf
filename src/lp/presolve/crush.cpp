#include "lp/presolve/crush.h"

#include <algorithm>

namespace kelvo {

namespace {

void gather(const Vector<double>& all, const Vector<int>& kept, double* out) {
  for (std::size_t k = 0; k < kept.size(); ++k) out[k] = all[kept[k]];
}

}  // namespace

void crush_x(const Presolve& presolve, const double* x, double* reduced_x) {
  Vector<double> all(x, x + presolve.num_cols());
  presolve.stack().records.forward([&all](const auto& record) {
    record.crush_values(all);
    return true;
  });
  gather(all, presolve.kept_cols(), reduced_x);
}

void uncrush_x(const Presolve& presolve, const double* reduced_x, double* x) {
  LpSolution reduced, original;
  reduced.layers = {true, false, false};
  reduced.x.assign(reduced_x, reduced_x + presolve.kept_cols().size());
  presolve.postsolve(reduced, original);
  std::copy(original.x.begin(), original.x.end(), x);
}

void crush_y(const Presolve& presolve, const double* y, double* reduced_y) {
  Vector<double> all(y, y + presolve.num_rows());
  presolve.stack().records.forward([&all](const auto& record) {
    record.crush_duals(all);
    return true;
  });
  gather(all, presolve.kept_rows(), reduced_y);
}

void uncrush_y(const Presolve& presolve, const double* reduced_y, const double* reduced_z,
               double* y) {
  LpSolution reduced, original;
  reduced.layers = {false, true, false};
  reduced.y.assign(reduced_y, reduced_y + presolve.kept_rows().size());
  reduced.z.assign(reduced_z, reduced_z + presolve.kept_cols().size());
  presolve.postsolve(reduced, original);
  std::copy(original.y.begin(), original.y.end(), y);
}

bool crush_form(const Presolve& presolve, LinearForm& form) {
  const PostsolveStack& stack = presolve.stack();
  return stack.records.forward(
      [&](const auto& record) { return record.crush_form(stack.entries, form); });
}

void uncrush_form(const Presolve& presolve, LinearForm& form) {
  presolve.stack().records.backward([&form](const auto& record) { record.uncrush_form(form); });
}

RemovalCodes removal_codes(const Presolve& presolve) {
  RemovalCodes codes{presolve.col_map(), presolve.row_map()};
  const PostsolveStack& stack = presolve.stack();
  stack.records.forward([&](const auto& record) {
    record.mark_removed(stack.entries, codes);
    return true;
  });
  return codes;
}

CrushedBasis crush_basis(const Presolve& presolve, const Vector<int>& status, const double* x) {
  const int n = presolve.num_cols(), m = presolve.num_rows();
  BasisState all;
  all.cols.assign(status.begin(), status.begin() + n);
  all.rows.reserve(m);
  // The logical of a row is at the other end than its activity.
  for (int i = 0; i < m; ++i) all.rows.push_back(side_times(status[n + i], -1.0));
  presolve.stack().records.forward([&all](const auto& record) {
    record.crush_basis(all);
    return true;
  });
  CrushedBasis crushed;
  crushed.status.reserve(presolve.kept_cols().size() + presolve.kept_rows().size());
  for (const int j : presolve.kept_cols()) crushed.status.push_back(all.cols[j]);
  for (const int i : presolve.kept_rows()) {
    crushed.status.push_back(side_times(all.rows[i], -1.0));
  }
  crushed.num_basic =
      static_cast<int>(std::count(crushed.status.begin(), crushed.status.end(), kBasic));
  crushed.value.resize(presolve.kept_cols().size());
  crush_x(presolve, x, crushed.value.data());
  return crushed;
}

}  // namespace kelvo
