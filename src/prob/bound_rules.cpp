#include "prob/bound_rules.h"

#include <cmath>

namespace kelvo {
namespace {

double snapped(double value) {
  return std::fabs(value) < kZeroBoundInput ? 0.0 : value;
}

}  // namespace

Vector<BoundChange> bound_changes(MessageSink& sink, const int* columns, const char* codes,
                                  const double* values, int count) {
  Vector<BoundChange> changes;
  changes.reserve(2 * static_cast<std::size_t>(count));
  for (int k = 0; k < count; ++k) {
    const double value = values[k];
    if (codes[k] == 'L' || codes[k] == 'B') {
      if (value >= kInfiniteBoundInput) {
        sink.send(Channel::warning, "Warning:  Infinity lower bound ignored.\n");
      } else {
        const bool infinite = value <= -kInfiniteBoundInput;
        changes.push_back({columns[k], false, infinite ? -kInfiniteBound : snapped(value)});
      }
    }
    if (codes[k] == 'U' || codes[k] == 'B') {
      if (value <= -kInfiniteBoundInput) {
        sink.send(Channel::warning, "Warning:  -Infinity upper bound ignored.\n");
      } else {
        const bool infinite = value >= kInfiniteBoundInput;
        changes.push_back({columns[k], true, infinite ? kInfiniteBound : snapped(value)});
      }
    }
  }
  return changes;
}

}  // namespace kelvo
