#include "prob/data/generated_order.h"

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

/// Bounds of more than twice this magnitude count as this, so that ranges fit an int.
constexpr double kHalfRange = 1.05e9;
/// Ranges from here on count as infinite.
constexpr double kCountlessRange = 1e17;

double range_of(double lower, double upper) {
  if (lower <= -kInfiniteBound || upper >= kInfiniteBound) return kInfiniteBound;
  if (lower < -2.0 * kHalfRange) lower = -kHalfRange;
  if (upper > 2.0 * kHalfRange) upper = kHalfRange;
  return std::round(upper - lower);
}

bool is_general(char type) {
  return type == 'I' || type == 'N';
}

void set_by_range(const Model& model, PriorityOrder& order) {
  double largest = 0.0;  // of the ranges that can be counted
  for (const int j : order.column) {
    if (!is_general(model.column_type[j])) continue;
    const double range = range_of(model.lower[j], model.upper[j]);
    if (range < kCountlessRange) largest = std::max(largest, range);
  }
  const double most = largest + 2.0;
  const auto priority = [&](int j) {
    if (!is_general(model.column_type[j])) return most;
    const double range = range_of(model.lower[j], model.upper[j]);
    return range >= kCountlessRange ? 1.0 : most - range;
  };
  for (int k = 0; k < order.size(); ++k) {
    order.priority[k] = static_cast<int>(std::clamp(priority(order.column[k]), 0.0, 2.1e9));
  }
}

/// Priorities 1, 2, ... by increasing score; equal scores share one.
void set_by_score(const Vector<double>& score, PriorityOrder& order) {
  Vector<int> place(order.size());
  for (int k = 0; k < order.size(); ++k) place[k] = k;
  std::sort(place.begin(), place.end(), [&](int a, int b) { return score[a] < score[b]; });
  int priority = 0;
  for (int k = 0; k < order.size(); ++k) {
    if (k == 0 || score[place[k]] != score[place[k - 1]]) ++priority;
    order.priority[place[k]] = priority;
  }
}

}  // namespace

PriorityOrder generate_order(const Model& model, OrderRule rule) {
  PriorityOrder order;
  if (model.column_type.empty() || rule == OrderRule::none) return order;
  for (int j = 0; j < model.num_cols; ++j) {
    if (model.column_type[j] != 'C') order.column.push_back(j);
  }
  order.priority.assign(order.column.size(), 0);
  order.direction.assign(order.column.size(), 0);
  if (rule == OrderRule::increasing_range) {
    set_by_range(model, order);
    return order;
  }
  Vector<double> score;
  score.reserve(order.column.size());
  for (const int j : order.column) {
    const double cost = std::fabs(model.objective[j]);
    score.push_back(
        rule == OrderRule::decreasing_cost ? cost : -cost / std::max(1, model.matrix.count[j]));
  }
  set_by_score(score, order);
  return order;
}

}  // namespace kelvo
