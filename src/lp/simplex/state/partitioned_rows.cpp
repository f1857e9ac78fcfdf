#include "lp/simplex/state/partitioned_rows.h"

#include <cassert>
#include <cmath>
#include <utility>

namespace kelvo {
namespace {

// Above this predicted density of the result its index list is not kept while it is formed.
constexpr double kListDensity = 0.15;
// Above this density of the weights a dot product per active column is cheaper than running over
// the rows: it reads each entry once and writes each result once.
constexpr double kColumnDensity = 0.2;
// Stands for a cancelled entry, so that a listed place is never mistaken for an unlisted one.
constexpr double kCancelled = 1e-100;

}  // namespace

PartitionedRows::PartitionedRows(const LpProblem& problem) : problem_(problem) {
  rebuild();
}

void PartitionedRows::rebuild() {
  const int m = problem_.num_rows;
  const int n = problem_.num_cols;
  const SparseMatrix& columns = problem_.columns;
  groups_.reset();
  const int nonzeros = columns.num_nonzeros();
  start_.assign(m + 1, 0);
  column_.resize(nonzeros);
  if (!problem_.compact) value_.resize(nonzeros);
  source_.resize(nonzeros);
  place_.resize(nonzeros);
  active_.assign(n, 1);
  for (int k = 0; k < nonzeros; ++k) ++start_[columns.index[k] + 1];
  for (int i = 0; i < m; ++i) start_[i + 1] += start_[i];
  active_end_.assign(start_.begin(), start_.end() - 1);
  for (int j = 0; j < n; ++j) {
    for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
      const int at = active_end_[columns.index[k]]++;
      column_[at] = j;
      if (!problem_.compact) value_[at] = columns.value[k];
      source_[at] = k;
      place_[k] = at;
    }
  }
}

void PartitionedRows::add_rows(const SparseMatrix& lines) {
  const SparseMatrix& columns = problem_.columns;
  groups_.reset();
  Vector<int> more(columns.num_major, 0);  // new entries of each column, not yet written
  for (int e = 0; e < lines.num_nonzeros(); ++e) ++more[lines.index[e]];
  Vector<int> shift(columns.num_major, 0);
  for (int j = 1; j < columns.num_major; ++j) shift[j] = shift[j - 1] + more[j - 1];
  place_.resize(columns.num_nonzeros());
  int at = 0;
  for (; at < static_cast<int>(source_.size()); ++at) {
    source_[at] += shift[column_[at]];
    place_[source_[at]] = at;
  }
  column_.resize(columns.num_nonzeros());
  source_.resize(columns.num_nonzeros());
  if (!problem_.compact) value_.resize(columns.num_nonzeros());
  for (int i = 0; i < lines.num_major; ++i) {
    int active_at = at;
    int inactive_at = at + lines.start[i + 1] - lines.start[i];
    for (int e = lines.start[i]; e < lines.start[i + 1]; ++e) {
      const int j = lines.index[e];
      const int to = is_active(j) ? active_at++ : --inactive_at;
      column_[to] = j;
      if (!problem_.compact) value_[to] = lines.value[e];
      source_[to] = columns.start[j + 1] - more[j]--;
      place_[source_[to]] = to;
    }
    at += lines.start[i + 1] - lines.start[i];
    active_end_.push_back(active_at);
    start_.push_back(at);
  }
}

void PartitionedRows::delete_rows(const Vector<int>& list, const Vector<int>& entry_now) {
  groups_.reset();
  const int rows = static_cast<int>(active_end_.size());
  std::size_t next = 0;
  int lines = 0;
  int kept = 0;
  int begin = 0;
  for (int i = 0; i < rows; ++i) {
    const int from = begin;
    begin = start_[i + 1];
    if (next < list.size() && list[next] == i) {
      ++next;
      continue;
    }
    active_end_[lines] = active_end_[i] - from + kept;
    for (int k = from; k < begin; ++k, ++kept) {
      column_[kept] = column_[k];
      if (!value_.empty()) value_[kept] = value_[k];
      source_[kept] = entry_now[source_[k]];
      place_[source_[kept]] = kept;
    }
    start_[++lines] = kept;
  }
  start_.resize(lines + 1);
  active_end_.resize(lines);
  for (Vector<int>* array : {&column_, &source_, &place_}) array->resize(kept);
  if (!value_.empty()) value_.resize(kept);
}

void PartitionedRows::exchange_entries(int a, int b) {
  if (a == b) return;
  std::swap(column_[a], column_[b]);
  if (!value_.empty()) std::swap(value_[a], value_[b]);
  std::swap(source_[a], source_[b]);
  place_[source_[a]] = a;
  place_[source_[b]] = b;
}

void PartitionedRows::activate(int column) {
  if (active_[column]) return;
  active_[column] = 1;
  const SparseMatrix& columns = problem_.columns;
  for (int k = columns.start[column]; k < columns.start[column + 1]; ++k) {
    exchange_entries(place_[k], active_end_[columns.index[k]]++);
  }
}

void PartitionedRows::deactivate(int column) {
  if (!active_[column]) return;
  active_[column] = 0;
  const SparseMatrix& columns = problem_.columns;
  for (int k = columns.start[column]; k < columns.start[column + 1]; ++k) {
    exchange_entries(place_[k], --active_end_[columns.index[k]]);
  }
}

void PartitionedRows::multiply(const WorkVector& weights, double expected_density,
                               WorkVector& row) const {
  assert(row.count == 0);
  if (weights.density() > kColumnDensity) {
    multiply_columns(weights, row);
  } else if (problem_.compact) {
    const int* source = source_.data();
    const double* value = problem_.columns.value.data();
    multiply_rows(weights, expected_density, row, [=](int k) { return value[source[k]]; });
  } else {
    const double* value = value_.data();
    multiply_rows(weights, expected_density, row, [=](int k) { return value[k]; });
  }
}

template <class Value>
void PartitionedRows::multiply_rows(const WorkVector& weights, double expected_density,
                                    WorkVector& row, Value value) const {
  if (expected_density > kListDensity || weights.is_dense()) {
    multiply_rows_dense(weights, row, value);
  } else {
    multiply_sparse(weights, row, value);
  }
}

template <class Value>
void PartitionedRows::multiply_sparse(const WorkVector& weights, WorkVector& row,
                                      Value value) const {
  const int* column = column_.data();
  const double* weight = weights.value.data();
  double* out = row.value.data();
  int* list = row.index.data();
  int count = 0;
  double touched = 0.0;
  for (int s = 0; s < weights.count; ++s) {
    const int i = weights.index[s];
    const double w = weight[i];
    const int end = active_end_[i];
    touched += end - start_[i];
    for (int k = start_[i]; k < end; ++k) {
      const int j = column[k];
      const double before = out[j];
      if (before == 0.0) list[count++] = j;
      const double after = before + w * value(k);
      out[j] = after == 0.0 ? kCancelled : after;
    }
  }
  row.count = count;
  work_ += touched;
}

template <class Value>
void PartitionedRows::multiply_rows_dense(const WorkVector& weights, WorkVector& row,
                                          Value value) const {
  const int* column = column_.data();
  const double* weight = weights.value.data();
  double* out = row.value.data();
  const int rows = weights.is_dense() ? problem_.num_rows : weights.count;
  double touched = 0.0;
  for (int s = 0; s < rows; ++s) {
    const int i = weights.is_dense() ? s : weights.index[s];
    const double w = weight[i];
    if (w == 0.0) continue;
    const int end = active_end_[i];
    touched += end - start_[i];
    for (int k = start_[i]; k < end; ++k) out[column[k]] += w * value(k);
  }
  row.count = WorkVector::kDense;
  work_ += touched;
}

void PartitionedRows::multiply_columns(const WorkVector& weights, WorkVector& row) const {
  if (problem_.compact) return multiply_compact_columns(weights, row);
  if (groups_ == nullptr) groups_ = make_owned<ColumnGroups>(problem_.columns);
  groups_->multiply(weights, active_.data(), row);
  work_ += problem_.columns.num_nonzeros();
}

void PartitionedRows::multiply_compact_columns(const WorkVector& weights, WorkVector& row) const {
  const SparseMatrix& columns = problem_.columns;
  const double* weight = weights.value.data();
  row.count = 0;
  for (int j = 0; j < columns.num_major; ++j) {
    if (active_[j] == 0) continue;
    double sum = 0.0;
    for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
      sum += weight[columns.index[k]] * columns.value[k];
    }
    if (std::fabs(sum) > kDropTolerance) row.insert(j, sum);
  }
  work_ += columns.num_nonzeros();
}

}  // namespace kelvo
