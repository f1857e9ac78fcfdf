#include <algorithm>
#include <charconv>
#include <cstdlib>

#include "base/error_code.h"
#include "env/error_table.h"
#include "io/basis/basis_file.h"
#include "io/writer_names.h"

namespace kelvo {
namespace {

constexpr int kLongestName = 255;

int surplus_of_basics(const Model& model, const StoredBasis& basis) {
  const auto basics = std::count(basis.col_status.begin(), basis.col_status.end(), kBasic) +
                      std::count(basis.row_status.begin(), basis.row_status.end(), kBasic);
  return static_cast<int>(basics) - model.num_rows;
}

/// A value of a restart file, whatever the locale says about decimal points, and the line's end.
void print_value(FileStream& stream, double value) {
  constexpr int kDigits = 15;  // after the point
  constexpr int kField = 23;
  char text[40];
  *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::scientific, kDigits).ptr =
      '\0';
  stream.print("%*s\n", kField, text);
}

void write_point(const Model& model, const StoredBasis& basis, const RestartPoint& point,
                 const ModelNames& names, int width, FileStream& stream) {
  for (int i = 0; i < model.num_rows; ++i) {
    stream.print(" %s %-*.255s  ", basis.row_status[i] == kBasic ? "BR" : "SR", width,
                 names.rows[i]);
    print_value(stream, model.row_sense[i] == 'G' ? 0.0 - point.activity[i] : point.activity[i]);
  }
  for (int j = 0; j < model.num_cols; ++j) {
    if (basis.col_status[j] == kBasic) continue;
    stream.print(" SC %-*.255s  ", width, names.columns[j]);
    print_value(stream, point.x[j]);
  }
}

}  // namespace

Status check_basis_size(const Model& model, const StoredBasis& basis, MessageSink& sink) {
  const int surplus = surplus_of_basics(model, basis);
  if (surplus == 0) return {};
  return report_error(sink, error::kWrongBasisSize, std::abs(surplus),
                      surplus < 0 ? "too few" : "extra");
}

void write_basis(const Model& model, const StoredBasis& basis, int solution_iterations,
                 MessageSink& sink, FileStream& stream, const RestartPoint* point) {
  const ModelNames names(model, false);
  if (!names.columns.all_are_fields() || !names.rows.all_are_fields()) {
    sink.send(Channel::warning, "Warning:  Names with blanks cannot be read back.\n");
  }
  const int width = std::min(std::max(names.columns.longest(), names.rows.longest()), kLongestName);
  if (solution_iterations >= 0) {
    stream.print("NAME          %.255s  Iterations %d  Rows %d  Cols %d\n", model.name.c_str(),
                 solution_iterations, model.num_rows, model.num_cols);
  } else {
    stream.print("NAME          %.255s\n", model.name.c_str());
  }
  // Each row with a nonbasic slack takes the next basic column.
  int next = 0;
  const auto advance = [&] {
    while (next < model.num_cols && basis.col_status[next] != kBasic) ++next;
    return next < model.num_cols;
  };
  for (int i = 0; i < model.num_rows && advance(); ++i) {
    if (basis.row_status[i] == kBasic) continue;
    const bool at_upper = model.row_sense[i] == 'G' || basis.row_status[i] == kAtUpper;
    stream.print(" X%c %-*.255s  ", at_upper ? 'U' : 'L', width, names.columns[next]);
    if (point != nullptr) {
      stream.print("%-*.255s  ", width, names.rows[i]);
      print_value(stream, point->x[next]);
    } else {
      stream.print("%.255s\n", names.rows[i]);
    }
    ++next;
  }
  for (; advance(); ++next) stream.print(" BS %.255s\n", names.columns[next]);
  for (int j = 0; j < model.num_cols; ++j) {
    if (basis.col_status[j] == kAtUpper) stream.print(" UL %.255s\n", names.columns[j]);
  }
  if (point != nullptr) write_point(model, basis, *point, names, width, stream);
  stream.write("ENDATA\n");
}

}  // namespace kelvo
