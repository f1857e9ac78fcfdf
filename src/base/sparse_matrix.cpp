#include "base/sparse_matrix.h"

namespace kelvo {

SparseMatrix transpose(const SparseMatrix& matrix) {
  SparseMatrix result;
  result.num_major = matrix.num_minor;
  result.num_minor = matrix.num_major;
  const int nonzeros = matrix.num_nonzeros();
  result.start.assign(matrix.num_minor + 1, 0);
  result.index.resize(nonzeros);
  result.value.resize(nonzeros);
  for (int k = 0; k < nonzeros; ++k) ++result.start[matrix.index[k] + 1];
  for (int i = 0; i < result.num_major; ++i) result.start[i + 1] += result.start[i];
  Vector<int> next(result.start.begin(), result.start.end() - 1);
  for (int j = 0; j < matrix.num_major; ++j) {
    for (int k = matrix.start[j]; k < matrix.start[j + 1]; ++k) {
      const int to = next[matrix.index[k]]++;
      result.index[to] = j;
      result.value[to] = matrix.value[k];
    }
  }
  return result;
}

}  // namespace kelvo
