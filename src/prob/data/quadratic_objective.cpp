#include "prob/data/quadratic_objective.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <numeric>

namespace kelvo {
namespace {

SparseMatrix gather(const QuadraticColumns& given) {
  SparseMatrix q;
  q.num_major = q.num_minor = given.columns;
  q.start.resize(given.columns + 1);
  std::int64_t entries = 0;
  for (int j = 0; j < given.columns; ++j) entries += given.count[j];
  // The symmetric matrix may need twice the room.
  if (entries > std::numeric_limits<int>::max() / 2) throw std::bad_alloc();
  q.index.reserve(entries);
  q.value.reserve(entries);
  for (int j = 0; j < given.columns; ++j) {
    if (given.count[j] > 0) {
      const int* const index = given.index + given.begin[j];
      const double* const value = given.value + given.begin[j];
      q.index.insert(q.index.end(), index, index + given.count[j]);
      q.value.insert(q.value.end(), value, value + given.count[j]);
    }
    q.start[j + 1] = static_cast<int>(q.index.size());
  }
  return q;
}

/// Adds up equal indices, which are adjacent, and drops zeros.
void add_up_neighbours(SparseMatrix& q) {
  int kept = 0;
  for (int j = 0; j < q.num_major; ++j) {
    const int begin = q.start[j];
    const int end = q.start[j + 1];
    q.start[j] = kept;
    for (int k = begin; k < end;) {
      const int index = q.index[k];
      double sum = 0.0;
      for (; k < end && q.index[k] == index; ++k) sum += q.value[k];
      if (sum == 0.0) continue;
      q.index[kept] = index;
      q.value[kept++] = sum;
    }
  }
  q.start[q.num_major] = kept;
  q.index.resize(kept);
  q.value.resize(kept);
}

void find_duplicate(const SparseMatrix& q, QuadraticFlaws& flaws) {
  for (int j = 0; j < q.num_major; ++j) {
    for (int k = q.start[j] + 1; k < q.start[j + 1]; ++k) {
      if (q.index[k] != q.index[k - 1]) continue;
      flaws.duplicate_row = q.index[k];
      flaws.duplicate_column = j;
      return;
    }
  }
}

bool nearly_equal(double a, double b) {
  return std::fabs(a - b) <= kSymmetryTolerance * std::max(std::fabs(a), std::fabs(b));
}

/// (q + transposed) / 2.
SparseMatrix mean(const SparseMatrix& q, const SparseMatrix& transposed) {
  SparseMatrix both;
  both.num_major = both.num_minor = q.num_major;
  both.start.resize(q.num_major + 1);
  both.index.reserve(2 * q.index.size());
  both.value.reserve(2 * q.index.size());
  for (int j = 0; j < q.num_major; ++j) {
    for (const SparseMatrix* part : {&q, &transposed}) {
      for (int k = part->start[j]; k < part->start[j + 1]; ++k) {
        both.index.push_back(part->index[k]);
        both.value.push_back(0.5 * part->value[k]);
      }
    }
    both.start[j + 1] = static_cast<int>(both.index.size());
  }
  both = transpose(transpose(both));
  add_up_neighbours(both);
  return both;
}

}  // namespace

SparseMatrix symmetric_matrix(const QuadraticColumns& given, QuadraticFlaws& flaws) {
  // Two transpositions sort the columns, which brings equal places together.
  SparseMatrix q = transpose(transpose(gather(given)));
  find_duplicate(q, flaws);
  add_up_neighbours(q);
  const SparseMatrix transposed = transpose(q);
  if (q.start == transposed.start && q.index == transposed.index) {
    if (q.value == transposed.value) return q;
    flaws.asymmetric =
        !std::equal(q.value.begin(), q.value.end(), transposed.value.begin(), nearly_equal);
  } else {
    flaws.asymmetric = true;
  }
  return mean(q, transposed);
}

SparseMatrix diagonal_matrix(const double* values, int columns) {
  SparseMatrix q;
  q.num_major = q.num_minor = columns;
  q.start.resize(columns + 1);
  q.index.reserve(columns);
  q.value.reserve(columns);
  for (int j = 0; j < columns; ++j) {
    if (values[j] != 0.0) {
      q.index.push_back(j);
      q.value.push_back(values[j]);
    }
    q.start[j + 1] = static_cast<int>(q.index.size());
  }
  return q;
}

void set_quadratic_coefficients(SparseMatrix& q, const Vector<Coefficient>& list) {
  Vector<int> order(list.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&](int a, int b) {
    if (list[a].column != list[b].column) return list[a].column < list[b].column;
    return list[a].row != list[b].row ? list[a].row < list[b].row : a < b;
  });
  SparseMatrix merged;
  merged.num_major = q.num_major;
  merged.num_minor = q.num_minor;
  merged.start.resize(q.num_major + 1);
  merged.index.reserve(q.index.size() + list.size());
  merged.value.reserve(q.index.size() + list.size());
  const auto put = [&](int row, double value) {
    if (value == 0.0) return;
    merged.index.push_back(row);
    merged.value.push_back(value);
  };
  std::size_t next = 0;  // in `order`
  for (int j = 0; j < q.num_major; ++j) {
    int k = q.start[j];
    while (next < order.size() && list[order[next]].column == j) {
      const int row = list[order[next]].row;
      double value = 0.0;
      for (; next < order.size(); ++next) {
        const Coefficient& change = list[order[next]];
        if (change.column != j || change.row != row) break;
        value = change.value;
      }
      for (; k < q.start[j + 1] && q.index[k] < row; ++k) put(q.index[k], q.value[k]);
      if (k < q.start[j + 1] && q.index[k] == row) ++k;
      put(row, value);
    }
    for (; k < q.start[j + 1]; ++k) put(q.index[k], q.value[k]);
    merged.start[j + 1] = static_cast<int>(merged.index.size());
  }
  std::swap(q, merged);
}

double quadratic_coefficient(const SparseMatrix& q, int row, int column) {
  const auto begin = q.index.begin() + q.start[column];
  const auto end = q.index.begin() + q.start[column + 1];
  const auto at = std::lower_bound(begin, end, row);
  return at != end && *at == row ? q.value[at - q.index.begin()] : 0.0;
}

int num_quadratic_columns(const SparseMatrix& q) {
  int count = 0;
  for (int j = 0; j < q.num_major; ++j) count += q.start[j + 1] > q.start[j];
  return count;
}

bool is_diagonal(const SparseMatrix& q) {
  for (int j = 0; j < q.num_major; ++j) {
    for (int k = q.start[j]; k < q.start[j + 1]; ++k) {
      if (q.index[k] != j) return false;
    }
  }
  return true;
}

}  // namespace kelvo
