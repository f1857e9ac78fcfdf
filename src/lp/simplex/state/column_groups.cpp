#include "lp/simplex/state/column_groups.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kelvo {
namespace {

// Columns are sorted within windows of this many, so that whoever runs over the resulting list
// stays within a few pages of the arrays by column.
constexpr std::size_t kWindow = 512;

bool fits_narrow(const SparseMatrix& columns) {
  if (columns.num_minor > std::numeric_limits<std::uint16_t>::max()) return false;
  return std::all_of(columns.value.begin(), columns.value.end(),
                     [](double x) { return static_cast<double>(static_cast<float>(x)) == x; });
}

}  // namespace

ColumnGroups::ColumnGroups(const SparseMatrix& columns) : compact_(fits_narrow(columns)) {
  const int n = columns.num_major;
  const auto length = [&](int j) { return columns.start[j + 1] - columns.start[j]; };
  for (int j = 0; j < n; ++j) {
    if (length(j) > 0) order_.push_back(j);
  }
  for (std::size_t begin = 0; begin < order_.size(); begin += kWindow) {
    const std::size_t end = std::min(order_.size(), begin + kWindow);
    std::sort(order_.begin() + begin, order_.begin() + end,
              [&](int a, int b) { return length(a) != length(b) ? length(a) < length(b) : a < b; });
  }
  while (order_.size() % kWidth != 0) order_.push_back(order_.back());
  for (std::size_t g = 0; g < order_.size(); g += kWidth) {
    int group_length = 0;
    for (int t = 0; t < kWidth; ++t) group_length = std::max(group_length, length(order_[g + t]));
    if (runs_.empty() || runs_.back().length != group_length) runs_.push_back({0, group_length});
    ++runs_.back().num_groups;
  }
  if (compact_) {
    fill(columns, narrow_);
  } else {
    fill(columns, wide_);
  }
}

template <class Index, class Value>
void ColumnGroups::fill(const SparseMatrix& columns, Entries<Index, Value>& entries) {
  std::size_t total = 0;
  for (const Run& run : runs_) total += static_cast<std::size_t>(run.num_groups) * run.length;
  entries.row.assign(total * kWidth, 0);
  entries.value.assign(total * kWidth, 0);
  std::size_t at = 0;
  const int* column = order_.data();
  for (const Run& run : runs_) {
    for (int g = 0; g < run.num_groups; ++g, column += kWidth) {
      for (int t = 0; t < kWidth; ++t) {
        const int begin = columns.start[column[t]];
        const int size = columns.start[column[t] + 1] - begin;
        for (int k = 0; k < size; ++k) {
          entries.row[at + kWidth * k + t] = static_cast<Index>(columns.index[begin + k]);
          entries.value[at + kWidth * k + t] = static_cast<Value>(columns.value[begin + k]);
        }
      }
      at += static_cast<std::size_t>(kWidth) * run.length;
    }
  }
}

template <class Index, class Value>
void ColumnGroups::multiply(const Entries<Index, Value>& entries, const double* weight,
                            const unsigned char* active, WorkVector& row) const {
  const Index* index = entries.row.data();
  const Value* value = entries.value.data();
  const int* column = order_.data();
  double* out = row.value.data();
  int* list = row.index.data();
  int count = 0;
  // Without a branch: which entries stay is as good as random.
  const auto put = [&](int j, double sum) {
    // The repetitions of the last column must not be listed again.
    const bool stays = active[j] != 0 && std::fabs(sum) > kDropTolerance && out[j] == 0.0;
    list[count] = j;
    count += stays;
    out[j] = stays ? sum : out[j];
  };
  for (const Run& run : runs_) {
    const int size = kWidth * run.length;
    for (int g = 0; g < run.num_groups; ++g) {
      double a = 0.0, b = 0.0, c = 0.0, d = 0.0;
      for (int k = 0; k < size; k += kWidth) {
        a += weight[index[k]] * static_cast<double>(value[k]);
        b += weight[index[k + 1]] * static_cast<double>(value[k + 1]);
        c += weight[index[k + 2]] * static_cast<double>(value[k + 2]);
        d += weight[index[k + 3]] * static_cast<double>(value[k + 3]);
      }
      index += size;
      value += size;
      put(column[0], a);
      put(column[1], b);
      put(column[2], c);
      put(column[3], d);
      column += kWidth;
    }
  }
  row.count = count;
}

void ColumnGroups::multiply(const WorkVector& weights, const unsigned char* active,
                            WorkVector& row) const {
  if (compact_) {
    multiply(narrow_, weights.value.data(), active, row);
  } else {
    multiply(wide_, weights.value.data(), active, row);
  }
}

}  // namespace kelvo
