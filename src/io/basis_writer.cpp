#include <algorithm>
#include <cstdlib>

#include "env/error_table.h"
#include "io/basis_file.h"
#include "io/writer_names.h"

namespace kelvo {
namespace {

constexpr int kWrongBasisSize = 1555;
constexpr int kBasic = 1;
constexpr int kAtUpper = 2;
constexpr int kLongestName = 255;

int surplus_of_basics(const Model& model, const StoredBasis& basis) {
  const auto basics = std::count(basis.col_status.begin(), basis.col_status.end(), kBasic) +
                      std::count(basis.row_status.begin(), basis.row_status.end(), kBasic);
  return static_cast<int>(basics) - model.num_rows;
}

}  // namespace

Status check_basis_size(const Model& model, const StoredBasis& basis, MessageSink& sink) {
  const int surplus = surplus_of_basics(model, basis);
  if (surplus == 0) return {};
  return report_error(sink, kWrongBasisSize, std::abs(surplus), surplus < 0 ? "too few" : "extra");
}

void write_basis(const Model& model, const StoredBasis& basis, int solution_iterations,
                 MessageSink& sink, FileStream& stream) {
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
    stream.print(" X%c %-*.255s  %.255s\n", at_upper ? 'U' : 'L', width, names.columns[next++],
                 names.rows[i]);
  }
  for (; advance(); ++next) stream.print(" BS %.255s\n", names.columns[next]);
  for (int j = 0; j < model.num_cols; ++j) {
    if (basis.col_status[j] == kAtUpper) stream.print(" UL %.255s\n", names.columns[j]);
  }
  stream.write("ENDATA\n");
}

}  // namespace kelvo
