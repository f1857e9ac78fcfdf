#include "lp/factor/lu_update.h"

#include <algorithm>

namespace kelvo {
namespace {

/// Share of a file that must be free after its gaps were closed; else it grows.
constexpr double kFreeShare = 0.2;
/// Entries of row room given beyond the need when a row has to move.
constexpr int kRowSlack = 4;
/// Pivots by which the sequence grows.
constexpr int kSequenceRoom = 256;

/// Room for one more, with the usual growth (reserve alone would copy every time).
template <class T>
void reserve_one(Vector<T>& list) {
  if (list.size() == list.capacity()) list.reserve(2 * list.size() + kSequenceRoom);
}

void remove_entry(EntryFile& file, Span& line, int target) {
  int* index = file.index.data();
  int at = line.begin;
  while (index[at] != target) ++at;
  --line.end;
  index[at] = index[line.end];
  file.value[at] = file.value[line.end];
}

/// Entries that the rows of the spike need when those that are full move to the end of the file.
long row_growth(const LuFactors& lu, const PackedVector& spike, int pivot) {
  long needed = 0;
  for (int k = 0; k < spike.count; ++k) {
    const int i = spike.index[k];
    if (i != pivot && lu.u_row[i].end == lu.u_row_limit[i]) {
      needed += 2L * lu.u_row[i].size() + kRowSlack;
    }
  }
  return needed;
}

void append_to_row(LuFactors& lu, int row, int column, double value) {
  Span& line = lu.u_row[row];
  EntryFile& file = lu.u_rows;
  if (line.end == lu.u_row_limit[row]) {
    const int size = line.size();
    std::copy_n(file.index.begin() + line.begin, size, file.index.begin() + file.used);
    std::copy_n(file.value.begin() + line.begin, size, file.value.begin() + file.used);
    line = {file.used, file.used + size};
    file.used += 2 * size + kRowSlack;
    lu.u_row_limit[row] = file.used;
  }
  file.index[line.end] = column;
  file.value[line.end++] = value;
}

}  // namespace

void make_room_in_u(EntryFile& file, Vector<Span>& lines, Vector<int>* limit, int more,
                    Vector<int>& scratch) {
  if (more <= file.capacity() - file.used) return;
  compress_file(file, lines, limit, scratch);
  if (file.capacity() - static_cast<double>(file.used) - more < kFreeShare * file.capacity()) {
    file.enlarge(more);
  }
}

void replace_column(LuFactors& lu, int position, const PackedVector& spike,
                    const PackedVector& row_eta, double diagonal, Vector<int>& scratch) {
  const int t = lu.pivot_of_position[position];
  // Everything that may need memory comes first.
  make_room_in_u(lu.u_columns, lu.u_column, nullptr, spike.count, scratch);
  const long growth = row_growth(lu, spike, t);
  if (growth > lu.u_rows.capacity() - lu.u_rows.used) {
    // Closing the gaps leaves all rows full, so the need is counted anew.
    compress_file(lu.u_rows, lu.u_row, &lu.u_row_limit, scratch);
    const long needed = std::min<long>(row_growth(lu, spike, t), kMaxFileEntries);
    const double free = lu.u_rows.capacity() - static_cast<double>(lu.u_rows.used) - needed;
    if (free < kFreeShare * lu.u_rows.capacity()) lu.u_rows.enlarge(static_cast<int>(needed));
  }
  lu.etas.make_room(row_eta.count);
  reserve_one(lu.eta);
  reserve_one(lu.eta_target);
  if (lu.sequence_size == static_cast<int>(lu.sequence.size())) {
    lu.sequence.resize(lu.sequence.size() + kSequenceRoom);
  }

  if (t >= lu.block_begin() && !lu.moved(t)) lu.dense.clear_upper(t - lu.block_begin());
  Span& old_column = lu.u_column[t];
  for (int e = old_column.begin; e < old_column.end; ++e) {
    remove_entry(lu.u_rows, lu.u_row[lu.u_columns.index[e]], t);
  }
  Span& old_row = lu.u_row[t];
  for (int e = old_row.begin; e < old_row.end; ++e) {
    remove_entry(lu.u_columns, lu.u_column[lu.u_rows.index[e]], t);
  }
  lu.u_nonzeros -= old_column.size() + old_row.size();
  old_row.end = old_row.begin;

  const double inverse = 1.0 / diagonal;
  const int begin = lu.u_columns.used;
  int end = begin;
  for (int k = 0; k < spike.count; ++k) {
    const int i = spike.index[k];
    if (i == t) continue;
    lu.u_columns.index[end] = i;
    lu.u_columns.value[end++] = spike.value[k] * inverse;
    append_to_row(lu, i, t, spike.value[k] * lu.inverse_diagonal[i]);
  }
  lu.u_columns.used = end;
  old_column = {begin, end};
  lu.u_nonzeros += end - begin;

  lu.diagonal[t] = diagonal;
  lu.inverse_diagonal[t] = inverse;
  lu.sequence[lu.place[t]] = -1;
  lu.place[t] = lu.sequence_size;
  lu.sequence[lu.sequence_size++] = t;

  const int eta_begin = lu.etas.used;
  std::copy_n(row_eta.index.begin(), row_eta.count, lu.etas.index.begin() + eta_begin);
  std::copy_n(row_eta.value.begin(), row_eta.count, lu.etas.value.begin() + eta_begin);
  lu.etas.used += row_eta.count;
  lu.eta.push_back({eta_begin, lu.etas.used});
  lu.eta_target.push_back(t);
}

}  // namespace kelvo
