// Lines that join and leave sparse matrices and arrays, at the cost of moving what lies behind.
#pragma once

#include <algorithm>

#include "base/containers.h"
#include "base/sparse_matrix.h"

namespace kelvo::reshape {

/// Erases the entries `base + list[k]` of an array; the list ascends.
template <class T>
void erase(Vector<T>& array, int base, const Vector<int>& list) {
  if (list.empty()) return;
  auto kept = array.begin() + base + list.front();
  for (std::size_t k = 0; k < list.size(); ++k) {
    const auto from = array.begin() + base + list[k] + 1;
    const auto to = k + 1 < list.size() ? array.begin() + base + list[k + 1] : array.end();
    kept = std::move(from, to, kept);
  }
  array.erase(kept, array.end());
}

/// Appends major lines.
void append_lines(SparseMatrix& matrix, const SparseMatrix& more);
/// Erases major lines; the list ascends.
void erase_lines(SparseMatrix& matrix, const Vector<int>& list);

/// Appends minor lines, which `lines` holds as its major ones: each new entry is the last one of
/// its major line so far.
void append_minor_lines(SparseMatrix& matrix, const SparseMatrix& lines);
/// Renumbers the minor lines and erases the entries of those that become -1. `entry_now` receives
/// the new place of every entry, -1 for those erased.
void erase_minor_lines(SparseMatrix& matrix, const Vector<int>& line_now, Vector<int>& entry_now);

}  // namespace kelvo::reshape
