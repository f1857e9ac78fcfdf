#include "prob/data/data_check.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "base/error_code.h"
#include "env/environment.h"
#include "env/error_table.h"
#include "env/params/param_numbers.h"
#include "prob/model/default_names.h"
#include "prob/model/model.h"

namespace kelvo {
namespace {

template <class... Args>
Status report(Environment& environment, int code, Args... args) {
  return report_error(environment.messages(), code, args...);
}

bool is_one_of(const char* letters, char c) {
  return c != '\0' && std::strchr(letters, c) != nullptr;
}

/// Every entry must be one of the letters.
Status check_letters(Environment& environment, const char* letters, const char* entries, int count,
                     int code) {
  if (entries == nullptr) return Status();
  for (int k = 0; k < count; ++k) {
    if (!is_one_of(letters, entries[k])) return report(environment, code, k);
  }
  return Status();
}

/// Every entry must lie in least..most; the position of the first other one is printed.
Status check_values_in(Environment& environment, const int* entries, int count, int least, int most,
                       int code) {
  if (entries == nullptr) return Status();
  for (int k = 0; k < count; ++k) {
    if (entries[k] < least || entries[k] > most) return report(environment, code, k);
  }
  return Status();
}

Status check_indices(Environment& environment, const int* indices, int count, int limit, int code) {
  if (indices == nullptr) return Status();
  for (int k = 0; k < count; ++k) {
    if (indices[k] < 0 || indices[k] >= limit) return report(environment, code, indices[k]);
  }
  return Status();
}

}  // namespace

DataCheck::DataCheck(Environment& environment)
    : environment_(environment), enabled_(environment.get_int(param::DATACHECK) == 1) {}

Status DataCheck::number_at(int position, double value) const {
  if (!enabled_ || std::isfinite(value)) return Status();
  if (std::isnan(value)) return report(environment_, error::kNotANumberEntry, position);
  return report(environment_, error::kEntryTooLarge, position, std::numeric_limits<double>::max());
}

Status DataCheck::numbers(const double* values, int count) const {
  if (!enabled_ || values == nullptr) return Status();
  for (int k = 0; k < count; ++k) KELVO_TRY(number_at(k, values[k]));
  return Status();
}

Status DataCheck::senses(const char* senses, int count) const {
  if (!enabled_) return Status();
  return check_letters(environment_, "LEGR", senses, count, error::kSenseEntry);
}

Status DataCheck::ranges_given(const char* senses, const double* ranges, int count) const {
  if (!enabled_ || senses == nullptr || ranges != nullptr) return Status();
  return std::memchr(senses, 'R', static_cast<std::size_t>(count)) == nullptr
             ? Status()
             : Status::failure(error::kBadArgument);
}

Status DataCheck::objective_sense(int sense) const {
  return !enabled_ || sense == 1 || sense == -1 ? Status() : Status::failure(error::kBadArgument);
}

Status DataCheck::column_types(const char* types, int count) const {
  return enabled_ ? check_column_types(environment_, types, count) : Status();
}

Status DataCheck::bound_codes(const char* codes, int count) const {
  if (!enabled_) return Status();
  return check_letters(environment_, "LUB", codes, count, error::kBoundCodeEntry);
}

Status DataCheck::basis_statuses(const int* statuses, int count) const {
  constexpr int kLastStatus = 3;
  if (!enabled_) return Status();
  return check_values_in(environment_, statuses, count, 0, kLastStatus, error::kBasisStatusEntry);
}

Status DataCheck::names(const char* const* names, int count) const {
  return enabled_ ? check_no_null_name(environment_, names, count) : Status();
}

Status DataCheck::column_areas(const int* begin, const int* count, int columns, int most) const {
  if (!enabled_) return Status();
  for (int j = 0; j < columns; ++j) {
    if (count[j] > most) return report(environment_, error::kCountEntry, j);
  }
  // The areas by start; ascending arrays, the usual case, are in order already.
  Vector<int> order(columns);
  for (int j = 0; j < columns; ++j) order[j] = j;
  const auto starts_before = [&](int i, int j) {
    return begin[i] != begin[j] ? begin[i] < begin[j] : i < j;
  };
  if (!std::is_sorted(order.begin(), order.end(), starts_before)) {
    std::sort(order.begin(), order.end(), starts_before);
  }
  int last = -1;  // the column whose area ends last so far
  for (const int j : order) {
    if (count[j] == 0) continue;
    if (last >= 0 && begin[last] + count[last] > begin[j]) {
      if (last < j) return report(environment_, error::kOverlappingEntries, last);
      return report(environment_, error::kNotAscending, last);
    }
    last = j;
  }
  return Status();
}

Status report_duplicate_pair(Environment& environment, const Model& model, const char* what,
                             int first, int second) {
  const DefaultName first_name(NameKind::column, first);
  const DefaultName second_name(NameKind::column, second);
  const NameStore& names = model.col_names;
  return report(environment, error::kDuplicatePair, what,
                names.present() ? names[first] : first_name.c_str(),
                names.present() ? names[second] : second_name.c_str());
}

Status check_row_indices(Environment& environment, const int* indices, int count, int rows) {
  return check_indices(environment, indices, count, rows, error::kRowIndex);
}

Status check_column_indices(Environment& environment, const int* indices, int count, int columns) {
  return check_indices(environment, indices, count, columns, error::kColumnIndex);
}

Status check_node_indices(Environment& environment, const int* indices, int count, int nodes) {
  return check_indices(environment, indices, count, nodes, error::kNodeIndex);
}

Status check_arc_indices(Environment& environment, const int* indices, int count, int arcs) {
  return check_indices(environment, indices, count, arcs, error::kArcIndex);
}

Status check_growth(int present, int added) {
  return added > std::numeric_limits<int>::max() - present
             ? Status::failure(error::kProblemSizeLimits)
             : Status();
}

Status check_no_null_name(Environment& environment, const char* const* names, int count) {
  if (names == nullptr) return Status();
  for (int k = 0; k < count; ++k) {
    if (names[k] == nullptr) return report(environment, error::kNullName, k);
  }
  return Status();
}

Status check_column_types(Environment& environment, const char* types, int count) {
  return check_letters(environment, "CBISN", types, count, error::kColumnTypeEntry);
}

Status check_set_types(Environment& environment, const char* types, int count) {
  return check_letters(environment, "12", types, count, error::kSetTypeEntry);
}

Status check_unranged_senses(Environment& environment, const char* senses, int count) {
  return check_letters(environment, "LEG", senses, count, error::kSenseEntry);
}

Status check_priorities(Environment& environment, const int* priorities, int count) {
  return check_values_in(environment, priorities, count, 0, std::numeric_limits<int>::max(),
                         error::kNegativePriority);
}

Status check_directions(Environment& environment, const int* directions, int count) {
  return check_values_in(environment, directions, count, -1, 1, error::kDirectionEntry);
}

Status check_starts(Environment& environment, const int* begin, int count, int entries) {
  if (begin == nullptr) return Status();
  int previous = 0;
  for (int k = 0; k < count; ++k) {
    if (begin[k] < previous || begin[k] > entries) {
      return report(environment, error::kNotAscending, k);
    }
    previous = begin[k];
  }
  return Status();
}

Status check_areas(Environment& environment, const int* begin, const int* count, int columns) {
  for (int j = 0; j < columns; ++j) {
    if (begin[j] < 0) return report(environment, error::kNotAscending, j);
    const std::int64_t end = std::int64_t{begin[j]} + count[j];
    if (count[j] < 0 || end > std::numeric_limits<int>::max()) {
      return report(environment, error::kCountEntry, j);
    }
  }
  return Status();
}

}  // namespace kelvo
