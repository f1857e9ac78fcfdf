// What the fuzz targets share.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "prob/model/model.h"

inline void require(bool condition) {
  if (!condition) std::abort();
}

inline std::string_view as_text(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

inline void require_sound(const kelvo::SparseMatrix& lines, int width) {
  require(static_cast<int>(lines.start.size()) == lines.num_major + 1 && lines.start[0] == 0);
  for (int i = 0; i < lines.num_major; ++i) require(lines.start[i] <= lines.start[i + 1]);
  require(static_cast<int>(lines.index.size()) == lines.num_nonzeros());
  require(lines.value.size() == lines.index.size());
  for (const int j : lines.index) require(j >= 0 && j < width);
  for (const double value : lines.value) require(std::isfinite(value));
}

inline void require_sound(const kelvo::ExtraRows& extra, int width) {
  require_sound(extra.rows, width);
  const auto size = static_cast<std::size_t>(extra.size());
  require(extra.rhs.size() == size && extra.sense.size() == size);
  require(extra.names.size() == extra.size());
}

/// The parts of a model that a reader made fit together.
inline void require_sound(const kelvo::Model& m) {
  const auto rows = static_cast<std::size_t>(m.num_rows);
  const auto columns = static_cast<std::size_t>(m.num_cols);
  require(m.rhs.size() == rows && m.row_sense.size() == rows);
  require(m.range.empty() || m.range.size() == rows);
  require(m.col_names.size() == m.num_cols && m.row_names.size() == m.num_rows);
  require(m.objective.size() == columns && m.lower.size() == columns && m.upper.size() == columns);
  require(m.column_type.empty() || m.column_type.size() == columns);
  require(m.matrix.num_cols() == m.num_cols);
  require_sound(m.matrix.compressed(m.num_rows), m.num_rows);
  for (const double value : m.objective) require(!std::isnan(value));
  for (const double value : m.rhs) require(std::isfinite(value));
  require_sound(m.user_cuts, m.num_cols);
  require_sound(m.lazy_constraints, m.num_cols);
  require_sound(m.indicators.rows, m.num_cols);
  for (const int j : m.indicators.column) require(j >= 0 && j < m.num_cols);
  require_sound(m.sos.members, m.num_cols);
  if (m.quadratic.num_major > 0) require_sound(m.quadratic, m.num_cols);
}
