#include "lp/factor/lu/factors.h"

#include <algorithm>
#include <new>

namespace kelvo {

void EntryFile::reserve(long entries) {
  if (entries <= capacity()) return;
  if (entries > kMaxFileEntries) throw std::bad_alloc();
  Vector<int> new_index(static_cast<std::size_t>(entries));
  Vector<double> new_value(static_cast<std::size_t>(entries));
  std::copy_n(index.begin(), used, new_index.begin());
  std::copy_n(value.begin(), used, new_value.begin());
  index.swap(new_index);
  value.swap(new_value);
}

void EntryFile::enlarge(int more) {
  const long needed = static_cast<long>(used) + more;
  const long step = static_cast<long>(kFileGrowth * capacity());
  reserve(std::max(needed, std::min<long>(step, kMaxFileEntries)));
}

void EntryFile::release() {
  Vector<int>().swap(index);
  Vector<double>().swap(value);
  used = 0;
}

void compress_file(EntryFile& file, Vector<Span>& lines, Vector<int>* limit, Vector<int>& scratch) {
  scratch.clear();
  for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
    if (lines[i].size() > 0) scratch.push_back(i);
  }
  std::sort(scratch.begin(), scratch.end(),
            [&](int a, int b) { return lines[a].begin < lines[b].begin; });
  int to = 0;
  for (int i : scratch) {
    Span& line = lines[i];
    const int size = line.size();
    std::copy_n(file.index.begin() + line.begin, size, file.index.begin() + to);
    std::copy_n(file.value.begin() + line.begin, size, file.value.begin() + to);
    line = {to, to + size};
    to += size;
  }
  file.used = to;
  for (Span& line : lines) {
    if (line.size() == 0) line = {0, 0};
  }
  if (limit == nullptr) return;
  for (std::size_t i = 0; i < lines.size(); ++i) (*limit)[i] = lines[i].end;
}

void LuFactors::reset(int num_rows, int num_positions) {
  m = num_factored = num_rows;
  num_pivots = num_logical = num_triangular = 0;
  row_of_pivot.resize(m);
  position_of_pivot.resize(m);
  pivot_of_row.assign(m, -1);
  pivot_of_position.assign(num_positions, -1);
  diagonal.resize(m);
  inverse_diagonal.resize(m);
  l_column.assign(m, Span{});
  l_row.resize(m);
  l_pivots.clear();
  u_column.assign(m, Span{});
  u_row.resize(m);
  u_row_limit.resize(m);
  if (static_cast<int>(sequence.size()) < m) sequence.resize(m);
  dense.order = 0;
  place.resize(m);
  sequence_size = 0;
  u_nonzeros = 0;
  l_columns.used = l_rows.used = u_columns.used = u_rows.used = etas.used = 0;
  eta.clear();
  eta_target.clear();
}

void LuFactors::release_files() {
  for (EntryFile* file : {&l_columns, &l_rows, &u_columns, &u_rows, &etas}) file->release();
  Vector<double>().swap(dense.entries);
}

}  // namespace kelvo
