// Checks of the arrays that callers pass in.
//
// Those of DataCheck run only while the parameter DATACHECK is 1; without it bad numbers, senses
// and the like are stored as they are. Indices, column starts and null names are checked always,
// because there is no place where a wrong one could be stored. A failed check prints its line, with
// the offending entry, and returns the failure as reported. Null arrays and empty ones pass.
#pragma once

#include "base/status.h"

namespace kelvo {

class Environment;
struct Model;

class DataCheck {
 public:
  explicit DataCheck(Environment& environment);

  bool enabled() const { return enabled_; }

  /// 1225 for a number that is none, 1233 for one that is not finite.
  Status numbers(const double* values, int count) const;
  /// The same for a single number, with the position to print.
  Status number_at(int position, double value) const;
  /// 1215 for anything but 'L', 'E', 'G', 'R'.
  Status senses(const char* senses, int count) const;
  /// 1003 when a sense is 'R' although no array of ranges comes with it.
  Status ranges_given(const char* senses, const double* ranges, int count) const;
  /// 1003 for anything but 1 and -1.
  Status objective_sense(int sense) const;
  /// 3021 for anything but 'C', 'B', 'I', 'S', 'N'.
  Status column_types(const char* types, int count) const;
  /// 1229 for anything but 'L', 'U', 'B'.
  Status bound_codes(const char* codes, int count) const;
  /// 1253 for anything but 0, 1, 2, 3.
  Status basis_statuses(const int* statuses, int count) const;
  /// 1224 for a null pointer in a given array of names.
  Status names(const char* const* names, int count) const;
  /// 1227 for a count above `most`, 1226 or 1228 for columns whose areas overlap.
  Status column_areas(const int* begin, const int* count, int columns, int most) const;

 private:
  Environment& environment_;
  const bool enabled_;
};

/// Prints 5011 for a pair of columns that occurs twice in the objective or constraint `what`.
Status report_duplicate_pair(Environment& environment, const Model& model, const char* what,
                             int first, int second);

// Always:

/// 1203 for a row outside 0..rows-1.
Status check_row_indices(Environment& environment, const int* indices, int count, int rows);
/// 1201 for a column outside 0..columns-1.
Status check_column_indices(Environment& environment, const int* indices, int count, int columns);
/// 1230 for a node outside 0..nodes-1.
Status check_node_indices(Environment& environment, const int* indices, int count, int nodes);
/// 1231 for an arc outside 0..arcs-1.
Status check_arc_indices(Environment& environment, const int* indices, int count, int arcs);
/// 1012 when a list of `present` items grows beyond the range of 32-bit integers.
Status check_growth(int present, int added);
/// 1224 for a null pointer.
Status check_no_null_name(Environment& environment, const char* const* names, int count);
/// Letters that have a meaning: 3021 for a column type other than 'C', 'B', 'I', 'S', 'N';
/// 3009 for a set type other than '1' and '2'; 1215 for a sense other than 'L', 'E', 'G'.
Status check_column_types(Environment& environment, const char* types, int count);
Status check_set_types(Environment& environment, const char* types, int count);
Status check_unranged_senses(Environment& environment, const char* senses, int count);
/// 3006 for a negative priority.
Status check_priorities(Environment& environment, const int* priorities, int count);
/// 3007 for anything but -1, 0 and 1.
Status check_directions(Environment& environment, const int* directions, int count);
/// Starts that must ascend from at least 0 to at most `entries`: 1226.
Status check_starts(Environment& environment, const int* begin, int count, int entries);
/// Areas of columns that must not have negative starts (1226), negative counts (1227) or ends
/// beyond 32-bit integers (1227).
Status check_areas(Environment& environment, const int* begin, const int* count, int columns);

}  // namespace kelvo
