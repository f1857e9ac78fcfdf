#include "lp/simplex/state/reshape.h"

namespace kelvo::reshape {

void append_lines(SparseMatrix& matrix, const SparseMatrix& more) {
  const int before = matrix.num_nonzeros();
  matrix.index.insert(matrix.index.end(), more.index.begin(), more.index.end());
  matrix.value.insert(matrix.value.end(), more.value.begin(), more.value.end());
  for (int k = 0; k < more.num_major; ++k) matrix.start.push_back(before + more.start[k + 1]);
  matrix.num_major += more.num_major;
}

void erase_lines(SparseMatrix& matrix, const Vector<int>& list) {
  if (list.empty()) return;
  std::size_t next = 0;
  int lines = list.front();
  int kept = matrix.start[lines];
  for (int i = lines; i < matrix.num_major; ++i) {
    const int begin = matrix.start[i];
    const int end = matrix.start[i + 1];
    if (next < list.size() && list[next] == i) {
      ++next;
      continue;
    }
    matrix.start[lines++] = kept;
    for (int k = begin; k < end; ++k, ++kept) {
      matrix.index[kept] = matrix.index[k];
      matrix.value[kept] = matrix.value[k];
    }
  }
  matrix.start[lines] = kept;
  matrix.start.resize(lines + 1);
  matrix.index.resize(kept);
  matrix.value.resize(kept);
  matrix.num_major = lines;
}

void append_minor_lines(SparseMatrix& matrix, const SparseMatrix& lines) {
  Vector<int> more(matrix.num_major, 0);  // new entries of each line, not yet written
  for (int e = 0; e < lines.num_nonzeros(); ++e) ++more[lines.index[e]];
  int shift = lines.num_nonzeros();
  int end = matrix.num_nonzeros();
  matrix.index.resize(end + shift);
  matrix.value.resize(end + shift);
  // From behind; lines without a new entry move together.
  for (int j = matrix.num_major - 1; shift > 0; --j) {
    if (more[j] == 0) continue;
    const int begin = matrix.start[j + 1];
    const auto move = [=](auto& array) {
      std::move_backward(array.begin() + begin, array.begin() + end, array.begin() + end + shift);
    };
    move(matrix.index);
    move(matrix.value);
    end = begin;
    shift -= more[j];
  }
  for (int j = 0; j < matrix.num_major; ++j) {
    shift += more[j];
    matrix.start[j + 1] += shift;
  }
  for (int i = 0; i < lines.num_major; ++i) {
    for (int e = lines.start[i]; e < lines.start[i + 1]; ++e) {
      const int j = lines.index[e];
      const int at = matrix.start[j + 1] - more[j]--;
      matrix.index[at] = matrix.num_minor + i;
      matrix.value[at] = lines.value[e];
    }
  }
  matrix.num_minor += lines.num_major;
}

void erase_minor_lines(SparseMatrix& matrix, const Vector<int>& line_now, Vector<int>& entry_now) {
  entry_now.resize(matrix.num_nonzeros());
  int kept = 0;
  int begin = 0;
  for (int j = 0; j < matrix.num_major; ++j) {
    const int end = matrix.start[j + 1];
    for (int k = begin; k < end; ++k) {
      const int line = line_now[matrix.index[k]];
      entry_now[k] = line < 0 ? -1 : kept;
      if (line < 0) continue;
      matrix.index[kept] = line;
      matrix.value[kept++] = matrix.value[k];
    }
    begin = end;
    matrix.start[j + 1] = kept;
  }
  matrix.index.resize(kept);
  matrix.value.resize(kept);
  matrix.num_minor = static_cast<int>(
      std::count_if(line_now.begin(), line_now.end(), [](int line) { return line >= 0; }));
}

}  // namespace kelvo::reshape
