// Disjoint sets of 0..n-1 under union, each with a representative.
#pragma once

#include "base/containers.h"

namespace kelvo {

class DisjointSets {
 public:
  explicit DisjointSets(int n) : parent_(n), size_(n, 1) {
    for (int v = 0; v < n; ++v) parent_[v] = v;
  }
  int find(int v) {
    while (parent_[v] != v) {
      parent_[v] = parent_[parent_[v]];
      v = parent_[v];
    }
    return v;
  }
  /// True when they were apart.
  bool join(int v, int w) {
    v = find(v);
    w = find(w);
    if (v == w) return false;
    if (size_[v] < size_[w]) std::swap(v, w);
    parent_[w] = v;
    size_[v] += size_[w];
    return true;
  }
  /// Number of elements of the set of v.
  int size(int v) { return size_[find(v)]; }

 private:
  Vector<int> parent_;  // [n]
  Vector<int> size_;    // [n] of sets, by representative
};

}  // namespace kelvo
