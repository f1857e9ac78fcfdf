#include "qp/symmetric_elimination.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "qp/definiteness.h"

namespace kelvo {
namespace {

// The rest is eliminated as a dense matrix once this share of it is filled.
constexpr double kFullShare = 0.5;

}  // namespace

SymmetricElimination::SymmetricElimination(const SparseMatrix& q, double sign) {
  const int n = q.num_major;
  rows_.resize(n);
  diagonal_.assign(n, 0.0);
  left_.assign(n, 0);
  double largest = 0.0;
  for (int j = 0; j < n; ++j) {
    rows_[j].reserve(q.start[j + 1] - q.start[j]);
    for (int k = q.start[j]; k < q.start[j + 1]; ++k) {
      const double value = sign * q.value[k];
      if (q.index[k] == j) {
        diagonal_[j] += value;
      } else {
        rows_[j].push_back({q.index[k], value});
      }
    }
    std::sort(rows_[j].begin(), rows_[j].end(),
              [](const Entry& a, const Entry& b) { return a.column < b.column; });
    largest = std::max(largest, std::fabs(diagonal_[j]));
    if (q.start[j] == q.start[j + 1]) continue;
    left_[j] = 1;
    ++num_left_;
    entries_left_ += static_cast<std::int64_t>(rows_[j].size());
    heap_.push_back({static_cast<int>(rows_[j].size()), j});
  }
  tolerance_ = kZeroPivot * largest;
  std::make_heap(heap_.begin(), heap_.end(), std::greater<>());
}

/// The row left with the fewest entries; entries of the heap whose degree is out of date are put
/// back with the present one.
int SymmetricElimination::choose() {
  for (;;) {
    std::pop_heap(heap_.begin(), heap_.end(), std::greater<>());
    const auto [degree, row] = heap_.back();
    const int present = static_cast<int>(rows_[row].size());
    if (left_[row] != 0 && degree == present) {
      heap_.pop_back();
      return row;
    }
    if (left_[row] == 0) {
      heap_.pop_back();
    } else {
      heap_.back().first = present;
      std::push_heap(heap_.begin(), heap_.end(), std::greater<>());
    }
  }
}

bool SymmetricElimination::is_mostly_full() const {
  return static_cast<double>(entries_left_) >= kFullShare * num_left_ * (num_left_ - 1.0);
}

bool SymmetricElimination::shows_indefiniteness(int row, double pivot,
                                                const Vector<Entry>& entries) {
  if (pivot < -tolerance_) {
    proof_.push_back({row, 1.0});
    return true;
  }
  if (pivot > tolerance_) return false;
  // A vanished pivot: |s|^2 <= pivot * diagonal holds in a semidefinite matrix.
  for (const Entry& s : entries) {
    const double other = diagonal_[s.column];
    if (s.value * s.value <= 4.0 * tolerance_ * std::max(other, tolerance_)) continue;
    const auto [own, its] = negative_direction(pivot, s.value, other);
    proof_.push_back({row, own});
    proof_.push_back({s.column, its});
    return true;
  }
  return false;
}

/// rows_[row] -= factor * pivot_row, without the column of the pivot and the diagonal.
void SymmetricElimination::subtract(int row, double factor, const Vector<Entry>& pivot_row,
                                    int pivot_column) {
  Vector<Entry>& target = rows_[row];
  merged_.clear();
  merged_.reserve(target.size() + pivot_row.size());
  auto own = target.begin();
  for (const Entry& s : pivot_row) {
    if (s.column == row) continue;
    for (; own != target.end() && own->column < s.column; ++own) {
      if (own->column != pivot_column) merged_.push_back(*own);
    }
    double value = -factor * s.value;
    if (own != target.end() && own->column == s.column) value += (own++)->value;
    merged_.push_back({s.column, value});
  }
  for (; own != target.end(); ++own) {
    if (own->column != pivot_column) merged_.push_back(*own);
  }
  entries_left_ +=
      static_cast<std::int64_t>(merged_.size()) - static_cast<std::int64_t>(target.size());
  target.swap(merged_);
}

void SymmetricElimination::eliminate(int row) {
  const double pivot = diagonal_[row];
  Vector<Entry> pivot_row;
  pivot_row.swap(rows_[row]);
  entries_left_ -= static_cast<std::int64_t>(pivot_row.size());
  left_[row] = 0;
  --num_left_;
  for (const Entry& s : pivot_row) {
    const double factor = s.value / pivot;
    diagonal_[s.column] -= factor * s.value;
    subtract(s.column, factor, pivot_row, row);
    heap_.push_back({static_cast<int>(rows_[s.column].size()), s.column});
    std::push_heap(heap_.begin(), heap_.end(), std::greater<>());
  }
  eliminated_.push_back({row, pivot, std::move(pivot_row)});
}

/// Takes a row out whose entries count as zero.
void SymmetricElimination::drop(int row) {
  for (const Entry& s : rows_[row]) {
    Vector<Entry>& other = rows_[s.column];
    const auto at = std::lower_bound(other.begin(), other.end(), row,
                                     [](const Entry& e, int column) { return e.column < column; });
    other.erase(at);
    heap_.push_back({static_cast<int>(other.size()), s.column});
    std::push_heap(heap_.begin(), heap_.end(), std::greater<>());
  }
  entries_left_ -= 2 * static_cast<std::int64_t>(rows_[row].size());
  rows_[row].clear();
  left_[row] = 0;
  --num_left_;
}

bool SymmetricElimination::run() {
  while (num_left_ > 0) {
    if (is_mostly_full()) return run_dense();
    const int row = choose();
    if (shows_indefiniteness(row, diagonal_[row], rows_[row])) return true;
    if (diagonal_[row] > tolerance_) {
      eliminate(row);
    } else {
      drop(row);
    }
  }
  return false;
}

bool SymmetricElimination::run_dense() {
  Vector<int> column;  // of each dense position
  Vector<int> position(rows_.size(), -1);
  for (std::size_t j = 0; j < rows_.size(); ++j) {
    if (left_[j] == 0) continue;
    position[j] = static_cast<int>(column.size());
    column.push_back(static_cast<int>(j));
  }
  const std::size_t size = column.size();
  Vector<double> a(size * size, 0.0);  // upper triangle by row
  for (std::size_t p = 0; p < size; ++p) {
    for (const Entry& s : rows_[column[p]]) {
      const auto at = static_cast<std::size_t>(position[s.column]);
      if (at > p) a[p * size + at] = s.value;
    }
  }
  Vector<Entry> entries;
  for (std::size_t p = 0; p < size; ++p) {
    const double* const row = a.data() + p * size;
    const double pivot = diagonal_[column[p]];
    entries.clear();
    for (std::size_t i = p + 1; i < size; ++i) {
      if (row[i] != 0.0) entries.push_back({column[i], row[i]});
    }
    if (shows_indefiniteness(column[p], pivot, entries)) return true;
    if (pivot <= tolerance_) continue;
    for (std::size_t i = p + 1; i < size; ++i) {
      if (row[i] == 0.0) continue;
      const double factor = row[i] / pivot;
      diagonal_[column[i]] -= factor * row[i];
      double* const target = a.data() + i * size;
      for (std::size_t k = i + 1; k < size; ++k) target[k] -= factor * row[k];
    }
    eliminated_.push_back({column[p], pivot, entries});
  }
  return false;
}

void SymmetricElimination::direction(Vector<double>& x) const {
  std::fill(x.begin(), x.end(), 0.0);
  for (const Entry& part : proof_) x[part.column] = part.value;
  // The best value of an eliminated variable makes its row vanish.
  for (std::size_t k = eliminated_.size(); k-- > 0;) {
    const Eliminated& e = eliminated_[k];
    double sum = 0.0;
    for (const Entry& s : e.entries) sum += s.value * x[s.column];
    x[e.row] = -sum / e.pivot;
  }
}

}  // namespace kelvo
