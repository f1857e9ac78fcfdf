// Things to be added to a model, as the caller's arrays: views that own nothing.
#pragma once

namespace kelvo {

/// A null array means its default; null names (of the whole block or of one row) mean that
/// the caller gives none.
struct RowBlock {
  int count = 0;
  const double* rhs = nullptr;    // default 0
  const char* sense = nullptr;    // default 'E'
  const double* range = nullptr;  // default 0; used in 'R' rows only
  const char* const* names = nullptr;

  // Row k has the entries begin[k] .. begin[k + 1] - 1, the last one those up to `entries`.
  int entries = 0;
  const int* begin = nullptr;  // null: no entries
  const int* columns = nullptr;
  const double* values = nullptr;
};

struct ColumnBlock {
  int count = 0;
  const double* objective = nullptr;  // default 0
  const double* lower = nullptr;      // default 0
  const double* upper = nullptr;      // default infinite
  const char* type = nullptr;         // default 'C'
  const char* const* names = nullptr;

  // Column k has the entries begin[k] .. begin[k + 1] - 1, the last one those up to `entries`.
  int entries = 0;
  const int* begin = nullptr;  // null: no entries
  const int* rows = nullptr;
  const double* values = nullptr;
};

/// Special ordered sets.
struct SetBlock {
  int count = 0;
  const char* type = nullptr;  // '1' or '2'
  const char* const* names = nullptr;

  // Set k has the members begin[k] .. begin[k + 1] - 1, the last one those up to `entries`.
  int entries = 0;
  const int* begin = nullptr;  // null: no members
  const int* columns = nullptr;
  const double* weights = nullptr;
};

/// One indicator constraint.
struct IndicatorRow {
  int column = 0;
  bool complemented = false;
  double rhs = 0.0;
  char sense = 'L';
  int entries = 0;
  const int* columns = nullptr;
  const double* values = nullptr;
  const char* name = nullptr;
};

/// One quadratic constraint.
struct QuadraticRow {
  double rhs = 0.0;
  char sense = 'L';
  int linear_entries = 0;
  const int* linear_columns = nullptr;
  const double* linear_values = nullptr;
  int quadratic_entries = 0;
  const int* quadratic_rows = nullptr;
  const int* quadratic_columns = nullptr;
  const double* quadratic_values = nullptr;
  const char* name = nullptr;
};

/// A priority order; null priorities and directions are all 0.
struct OrderBlock {
  int count = 0;
  const int* columns = nullptr;
  const int* priorities = nullptr;
  const int* directions = nullptr;
};

}  // namespace kelvo
