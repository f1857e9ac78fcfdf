// Priority orders that follow from the model alone, for callers that give none.
#pragma once

#include "prob/model/model.h"

namespace kelvo {

/// Values of KLV_PARAM_MIPORDTYPE.
enum class OrderRule : int {
  none = 0,
  decreasing_cost = 1,           // larger |c_j| first
  increasing_range = 2,          // binaries first, then integers with few values
  increasing_cost_per_count = 3  // smaller |c_j| / (entries of the column) first
};

/// The order of a rule, in which every column that is not continuous occurs once, in index order,
/// without a direction. Under the rules 1 and 3 columns of equal rank have equal priorities, the
/// last rank having 1. Under rule 2, with M the largest range of an integer column plus 2, binary
/// and semi-continuous columns have M and an integer column with range r has M - r, or 1 when r is
/// beyond counting. Throws std::bad_alloc.
PriorityOrder generate_order(const Model& model, OrderRule rule);

}  // namespace kelvo
