// Fuzz target: any bytes as an MPS file. The reader must end with a model whose parts fit together
// or with an error, and nothing else.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "io/mps/mps_reader.h"

namespace {

using kelvo::Model;

void require(bool condition) {
  if (!condition) std::abort();
}

void check_indices(const kelvo::SparseMatrix& matrix, int limit) {
  require(static_cast<int>(matrix.start.size()) == matrix.num_major + 1);
  for (int line = 0; line < matrix.num_major; ++line) {
    require(matrix.start[line] <= matrix.start[line + 1]);
  }
  require(static_cast<int>(matrix.index.size()) == matrix.num_nonzeros());
  require(matrix.value.size() == matrix.index.size());
  for (const int index : matrix.index) require(index >= 0 && index < limit);
}

void check_rows(const kelvo::ExtraRows& rows, int columns) {
  check_indices(rows.rows, columns);
  const auto size = static_cast<std::size_t>(rows.size());
  require(rows.rhs.size() == size && rows.sense.size() == size);
  require(rows.names.size() == rows.size());
}

void check(const Model& model) {
  const auto rows = static_cast<std::size_t>(model.num_rows);
  const auto columns = static_cast<std::size_t>(model.num_cols);
  require(model.rhs.size() == rows && model.row_sense.size() == rows);
  require(model.range.empty() || model.range.size() == rows);
  require(model.row_names.size() == model.num_rows && model.col_names.size() == model.num_cols);
  require(model.objective.size() == columns && model.lower.size() == columns);
  require(model.upper.size() == columns);
  require(model.column_type.empty() || model.column_type.size() == columns);
  require(model.matrix.num_cols() == model.num_cols);
  check_indices(model.matrix.compressed(model.num_rows), model.num_rows);
  if (model.quadratic.num_major > 0) check_indices(model.quadratic, model.num_cols);
  check_indices(model.sos.members, model.num_cols);
  check_rows(model.user_cuts, model.num_cols);
  check_rows(model.lazy_constraints, model.num_cols);
  check_rows(model.indicators.rows, model.num_cols);
  for (const int column : model.indicators.column) require(column >= 0 && column < model.num_cols);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kelvo::LineReader lines(std::string_view(reinterpret_cast<const char*>(data), size));
  kelvo::MpsReaderSettings settings;
  settings.rows = settings.columns = settings.nonzeros = settings.quadratic_nonzeros = 1;
  kelvo::SilentSink sink;
  Model model;
  model.num_rows = -1;
  if (kelvo::read_mps(lines, settings, sink, model).ok()) {
    check(model);
  } else {
    require(model.num_rows == -1);
  }
  return 0;
}
