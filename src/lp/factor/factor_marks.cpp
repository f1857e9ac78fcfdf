// Marks: states of the factor to which a caller can return.
#include <algorithm>
#include <utility>

#include "lp/factor/basis_factor_impl.h"

namespace kelvo {

FactorMark BasisFactor::Impl::checkpoint() {
  marks.push_back({++last_serial, num_parked, journal.updates.size(), statistics.updates,
                   statistics.repairs, threshold, update_work});
  return {static_cast<int>(marks.size()) - 1, last_serial};
}

bool BasisFactor::Impl::outstanding(FactorMark mark) const {
  return mark.level >= 0 && mark.level < static_cast<int>(marks.size()) &&
         marks[mark.level].serial == mark.serial;
}

void BasisFactor::Impl::rollback(FactorMark mark) {
  marks.erase(marks.begin() + mark.level + 1, marks.end());
  const Mark& state = marks.back();
  while (num_parked > state.parked) unpark();
  const int order = lu.m;
  long touched = 0;
  while (journal.updates.size() > state.journaled) touched += undo_update(lu, journal);
  row_map.drop_last(order - lu.m);
  position_map.drop_last(order - lu.m);
  statistics.work += static_cast<double>(touched);
  statistics.updates = state.updates;
  statistics.repairs = state.repairs;
  threshold = state.threshold;
  update_work = state.update_work;
  spike.valid = row_eta.valid = false;
  valid = true;
}

void BasisFactor::Impl::release(FactorMark mark) {
  marks.erase(marks.begin() + mark.level, marks.end());
  if (!marked()) journal.clear();
  // Parked factors without a mark are not needed any more; their memory stays as a spare.
  num_parked = marks.empty() ? 0 : std::min(num_parked, marks.back().parked + 1);
}

void BasisFactor::Impl::park() {
  if (static_cast<int>(parked.size()) == num_parked) parked.push_back(make_owned<Parked>());
  Parked& place = *parked[num_parked];
  place.journal.clear();
  std::swap(place.lu, lu);
  std::swap(place.journal, journal);
  std::swap(place.row_map, row_map);
  std::swap(place.position_map, position_map);
  place.statistics = statistics;
  place.factor_work = factor_work;
  ++num_parked;
}

void BasisFactor::Impl::unpark() {
  Parked& place = *parked[--num_parked];
  std::swap(place.lu, lu);
  std::swap(place.journal, journal);
  std::swap(place.row_map, row_map);
  std::swap(place.position_map, position_map);
  const FactorStatistics later = statistics;
  statistics = place.statistics;
  statistics.factorizations = later.factorizations;
  statistics.work = later.work;
  factor_work = place.factor_work;
}

}  // namespace kelvo
