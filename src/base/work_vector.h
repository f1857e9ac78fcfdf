// A sparse work vector: a dense array of values and the list of positions that may be non-zero.
//
// Invariant: value[i] == 0 for every i that is not listed, unless the list is invalid
// (count == kDense), in which case any value may be non-zero. A listed position may hold 0
// (cancellation). Its user returns a vector with clear() when done.
#pragma once

#include <algorithm>
#include <cmath>

#include "base/containers.h"

namespace kelvo {

/// Entries of this magnitude or less that a solve computes are set to exactly zero.
inline constexpr double kDropTolerance = 1e-13;

struct WorkVector {
  static constexpr int kDense = -1;

  Vector<double> value;  // [size]
  // [size + 1]; the first `count` are valid unless count == kDense. One place more than entries:
  // loops without branches write behind the last one.
  Vector<int> index;
  int count = 0;

  WorkVector() = default;
  explicit WorkVector(int size) { setup(size); }

  void setup(int size) {
    value.assign(size, 0.0);
    index.assign(static_cast<std::size_t>(size) + 1, 0);
    count = 0;
  }
  /// Another size for a cleared vector, which stays cleared.
  void resize(int size) {
    value.resize(size, 0.0);
    index.resize(static_cast<std::size_t>(size) + 1, 0);
  }
  int size() const { return static_cast<int>(value.size()); }
  bool is_dense() const { return count == kDense; }

  /// Sets everything to zero, touching only the listed entries when they are few.
  void clear() {
    if (count == kDense || 3 * static_cast<long>(count) > size()) {
      std::fill(value.begin(), value.end(), 0.0);
    } else {
      for (int k = 0; k < count; ++k) value[static_cast<std::size_t>(index[k])] = 0.0;
    }
    count = 0;
  }

  /// Lists a position that was zero so far and gives it a value.
  void insert(int i, double x) {
    index[static_cast<std::size_t>(count++)] = i;
    value[i] = x;
  }

  /// Adds to a position of a listed vector. A cancelled entry keeps a trace, so that it is not
  /// listed twice.
  void add(int i, double x) {
    constexpr double kCancelled = 1e-100;
    const double before = value[static_cast<std::size_t>(i)];
    if (before == 0.0) index[static_cast<std::size_t>(count++)] = i;
    const double after = before + x;
    value[static_cast<std::size_t>(i)] = after == 0.0 ? kCancelled : after;
  }

  /// Makes the list valid and exact: only entries above the drop tolerance stay.
  void pack() { pack(size()); }
  /// The same, when all entries from `end` on are known to be zero.
  void pack(int end) {
    int kept = 0;
    if (count == kDense) {
      for (int i = 0; i < end; ++i) keep(i, kept);
    } else {
      for (int k = 0; k < count; ++k) keep(index[k], kept);
    }
    count = kept;
  }

  /// Share of listed entries, 1 when the list is invalid.
  double density() const {
    return count == kDense || size() == 0 ? 1.0 : static_cast<double>(count) / size();
  }

 private:
  // Without a branch: which entries stay is as good as random.
  void keep(int i, int& kept) {
    const double x = value[i];
    const bool stays = std::fabs(x) > kDropTolerance;
    index[static_cast<std::size_t>(kept)] = i;
    kept += stays;
    value[i] = stays ? x : 0.0;
  }
};

}  // namespace kelvo
