// Sparse matrices from dense lines.
#pragma once

#include <vector>

#include "base/sparse_matrix.h"

namespace kelvo::test {

using DenseLines = std::vector<std::vector<double>>;

/// The matrix with these major lines of `width` entries; zeros are not stored.
inline SparseMatrix sparse_lines(const DenseLines& lines, int width) {
  SparseMatrix matrix;
  matrix.num_minor = width;
  for (const std::vector<double>& line : lines) {
    for (std::size_t k = 0; k < line.size(); ++k) {
      if (line[k] == 0.0) continue;
      matrix.index.push_back(static_cast<int>(k));
      matrix.value.push_back(line[k]);
    }
    matrix.start.push_back(static_cast<int>(matrix.index.size()));
    ++matrix.num_major;
  }
  return matrix;
}

}  // namespace kelvo::test
