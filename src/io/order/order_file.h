// Priority order files: which columns the search branches on first and in which direction.
//
//   NAME          the problem's name   Priority Order
//    UP column     priority     branch up first; DN: down first; two blanks: no preference
//   ENDATA
//
// The code is in the second and third character of a line, the column's name begins at the
// fifth character or behind it. Small letters will do for the codes. Names with blanks do not
// survive.
#pragma once

#include "base/file_stream.h"
#include "base/line_reader.h"
#include "base/messages.h"
#include "base/name_index.h"
#include "base/status.h"
#include "prob/model/model.h"

namespace kelvo {

/// Priorities are at most this.
inline constexpr int kLargestPriority = 2100000000;

/// The columns that a file is read against: `find(name)` is the index of a name, or -1.
class ColumnLookup {
 public:
  virtual ~ColumnLookup() = default;
  virtual int find(std::string_view name) const = 0;
  virtual int num_columns() const = 0;
};

/// Reads an order. Unknown and repeated columns are told in warnings; of a repeated one the later
/// line counts, at the place of the earlier one. On failure `order` is as it was; the error has
/// been reported, except 1423 (the stream failed). Errors: 1441, 3012, 3006, 1463, 1434, 1435,
/// 1618, 1465. Throws std::bad_alloc.
Status read_order(LineReader& lines, const ColumnLookup& columns, MessageSink& sink,
                  PriorityOrder& order);

/// Writes an order with the names of the model's columns, default ones where it has none. Throws
/// std::bad_alloc.
void write_order(const Model& model, const PriorityOrder& order, MessageSink& sink,
                 FileStream& stream);

}  // namespace kelvo
