#include "mip/domain/implication_table.h"

#include <cmath>

namespace kelvo {

ImplicationTable::ImplicationTable(const MipProblem& mip)
    : implied_by_(2 * static_cast<std::size_t>(mip.num_cols())),
      variable_bounds_(2 * static_cast<std::size_t>(mip.num_cols())) {}

double ImplicationTable::implied(int literal, int bound, double otherwise) const {
  const auto found = place_.find(key(literal, bound));
  if (found == place_.end()) return otherwise;
  const double value = implied_by_[literal][found->second].value;
  return is_tighter(bound, value, otherwise) ? value : otherwise;
}

void ImplicationTable::add(int literal, int bound, double value, double otherwise) {
  if (!is_tighter(bound, value, otherwise)) return;
  const auto [found, is_new] =
      place_.try_emplace(key(literal, bound), static_cast<int>(implied_by_[literal].size()));
  if (is_new) {
    implied_by_[literal].push_back({bound, value});
    ++size_;
  } else {
    Implication& known = implied_by_[literal][found->second];
    if (!is_tighter(bound, value, known.value)) return;
    known.value = value;
  }
  const int y = variable_of(literal);
  note_variable_bound(y, bound, implied(literal_of(y, false), bound, otherwise),
                      implied(literal_of(y, true), bound, otherwise));
}

void ImplicationTable::note_variable_bound(int column, int bound, double at_zero, double at_one) {
  if (std::isinf(at_zero) || std::isinf(at_one)) return;
  const VariableBound entry{column, at_one - at_zero, at_zero};
  for (VariableBound& known : variable_bounds_[bound]) {
    if (known.binary != column) continue;
    known = entry;
    return;
  }
  variable_bounds_[bound].push_back(entry);
}

}  // namespace kelvo
