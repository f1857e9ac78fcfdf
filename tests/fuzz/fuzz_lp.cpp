// Any bytes: the LP reader gives a sound model or a reported error, from a file and typed in.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/line_reader.h"
#include "io/lp_format/reader/lp_reader.h"

namespace {

using namespace kelvo;

void require(bool condition) {
  if (!condition) std::abort();
}

void check_rows(const SparseMatrix& rows, int columns) {
  require(static_cast<int>(rows.start.size()) == rows.num_major + 1);
  require(rows.start[0] == 0 && rows.num_nonzeros() == static_cast<int>(rows.index.size()));
  for (int i = 0; i < rows.num_major; ++i) require(rows.start[i] <= rows.start[i + 1]);
  for (const int j : rows.index) require(j >= 0 && j < columns);
  for (const double value : rows.value) require(std::isfinite(value));
}

void check_extra(const ExtraRows& extra, int columns) {
  check_rows(extra.rows, columns);
  require(extra.names.size() == extra.size());
  require(static_cast<int>(extra.rhs.size()) == extra.size());
}

void check(const Model& m) {
  require(m.col_names.size() == m.num_cols && m.row_names.size() == m.num_rows);
  require(static_cast<int>(m.lower.size()) == m.num_cols);
  require(static_cast<int>(m.upper.size()) == m.num_cols);
  require(m.column_type.empty() || static_cast<int>(m.column_type.size()) == m.num_cols);
  require(m.matrix.num_cols() == m.num_cols);
  const SparseMatrix matrix = m.matrix.compressed(m.num_rows);
  check_rows(matrix, m.num_rows);
  for (const double value : matrix.value) require(value != 0.0);
  for (const double value : m.objective) require(!std::isnan(value));
  for (const double value : m.rhs) require(std::isfinite(value));
  check_extra(m.user_cuts, m.num_cols);
  check_extra(m.lazy_constraints, m.num_cols);
  check_extra(m.indicators.rows, m.num_cols);
  for (const int j : m.indicators.column) require(j >= 0 && j < m.num_cols);
  check_rows(m.sos.members, m.num_cols);
  if (m.quadratic.num_major > 0) check_rows(m.quadratic, m.num_cols);
}

void read(std::string_view text, bool interactive) {
  SilentSink sink;
  LpReaderSettings settings;
  settings.capacities = {};
  settings.interactive = interactive;
  Model model;
  LineReader lines(text);
  const Status status = LpReader(lines, settings, sink).read(model);
  if (status.ok()) {
    check(model);
    LineReader again(text);
    if (interactive && LpReader(again, settings, sink).read_additions(model).ok()) check(model);
  } else {
    require(status.is_reported());
    require(model.num_cols == 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  read(text, false);
  if (size < 400) read(text, true);  // every wrong line makes it start over
  return 0;
}
