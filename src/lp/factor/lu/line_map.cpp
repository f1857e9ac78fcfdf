#include "lp/factor/lu/line_map.h"

#include <numeric>

namespace kelvo {

void LineMap::clear() {
  inner_of_.clear();
  outer_of_.clear();
}

void LineMap::activate(int size) {
  if (active()) return;
  Vector<int> alike(size);
  std::iota(alike.begin(), alike.end(), 0);
  inner_of_ = alike;
  outer_of_.swap(alike);
}

void LineMap::remove(const Vector<int>& outer) {
  std::size_t next = 0;
  int to = 0;
  for (int k = 0; k < static_cast<int>(inner_of_.size()); ++k) {
    const int inner = inner_of_[k];
    if (next < outer.size() && outer[next] == k) {
      outer_of_[inner] = -1;
      ++next;
    } else {
      inner_of_[to] = inner;
      outer_of_[inner] = to++;
    }
  }
  inner_of_.resize(to);
}

void LineMap::prepare(int more) {
  if (!active()) return;
  make_room(inner_of_, more);
  make_room(outer_of_, more);
}

void LineMap::append(int more) {
  if (!active()) return;
  for (int k = 0; k < more; ++k) {
    const int inner = static_cast<int>(outer_of_.size());
    outer_of_.push_back(static_cast<int>(inner_of_.size()));
    inner_of_.push_back(inner);
  }
}

void LineMap::drop_last(int count) {
  if (!active()) return;
  inner_of_.resize(inner_of_.size() - count);
  outer_of_.resize(outer_of_.size() - count);
}

void LineMap::enter(WorkVector& from, WorkVector& to) const {
  if (from.is_dense()) {
    for (std::size_t k = 0; k < inner_of_.size(); ++k) to.value[inner_of_[k]] = from.value[k];
    to.count = WorkVector::kDense;
  } else {
    for (int e = 0; e < from.count; ++e) {
      const int k = from.index[e];
      to.insert(inner_of_[k], from.value[k]);
    }
  }
  from.clear();
}

void LineMap::leave(WorkVector& from, WorkVector& to) const {
  if (from.is_dense()) {
    for (std::size_t k = 0; k < inner_of_.size(); ++k) to.value[k] = from.value[inner_of_[k]];
    to.count = WorkVector::kDense;
  } else {
    for (int e = 0; e < from.count; ++e) {
      const int i = from.index[e];
      if (outer_of_[i] >= 0) to.insert(outer_of_[i], from.value[i]);
    }
  }
  from.clear();
}

}  // namespace kelvo
