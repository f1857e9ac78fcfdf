// Rows and columns to be added, as the caller's arrays: views that own nothing.
#pragma once

namespace kelvo {

/// A null array stands for its default; null names (of the whole block or of one row) mean that
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

}  // namespace kelvo
