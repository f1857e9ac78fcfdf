#include "lp/factor/lu/update.h"

#include <algorithm>

namespace kelvo {
namespace {

/// Share of a file that must be free after its gaps were closed; else it grows.
constexpr double kFreeShare = 0.2;
/// Entries of row room given beyond the need when a row has to move.
constexpr int kRowSlack = 4;
/// Pivots by which the sequence grows.
constexpr int kSequenceRoom = 256;

/// Takes the entry of `target` out of a line and reports its place and value.
LuJournal::Taken remove_entry(EntryFile& file, Vector<Span>& lines, int which, int target) {
  Span& line = lines[which];
  int* index = file.index.data();
  int at = line.begin;
  while (index[at] != target) ++at;
  const LuJournal::Taken taken{which, at, file.value[at]};
  --line.end;
  index[at] = index[line.end];
  file.value[at] = file.value[line.end];
  return taken;
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

void append_to_row(LuFactors& lu, int row, int column, double value, LuJournal* journal) {
  Span& line = lu.u_row[row];
  EntryFile& file = lu.u_rows;
  if (line.end == lu.u_row_limit[row]) {
    if (journal != nullptr) journal->moved_rows.push_back({row, line, lu.u_row_limit[row]});
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

/// Room for the new column of U and for the rows it enters. Lines keep their places when there is a
/// journal: it refers to them.
void make_room_in_u(LuFactors& lu, const PackedVector& spike, int pivot, bool keep_places,
                    Vector<int>& scratch) {
  const auto few_left = [](const EntryFile& file, long needed) {
    return file.capacity() - static_cast<double>(file.used) - static_cast<double>(needed) <
           kFreeShare * file.capacity();
  };
  if (keep_places) {
    lu.u_columns.make_room(spike.count);
    lu.u_rows.make_room(
        static_cast<int>(std::min<long>(row_growth(lu, spike, pivot), kMaxFileEntries)));
    return;
  }
  if (spike.count > lu.u_columns.capacity() - lu.u_columns.used) {
    compress_file(lu.u_columns, lu.u_column, nullptr, scratch);
    if (few_left(lu.u_columns, spike.count)) lu.u_columns.enlarge(spike.count);
  }
  if (row_growth(lu, spike, pivot) > lu.u_rows.capacity() - lu.u_rows.used) {
    // Closing the gaps leaves all rows full, so the need is counted again.
    compress_file(lu.u_rows, lu.u_row, &lu.u_row_limit, scratch);
    const long needed = std::min<long>(row_growth(lu, spike, pivot), kMaxFileEntries);
    if (few_left(lu.u_rows, needed)) lu.u_rows.enlarge(static_cast<int>(needed));
  }
}

/// Everything of an update that may need memory.
void prepare(LuFactors& lu, int pivot, const PackedVector& spike, const PackedVector& row_eta,
             LuJournal* journal, Vector<int>& scratch) {
  make_room_in_u(lu, spike, pivot, journal != nullptr, scratch);
  lu.etas.make_room(row_eta.count);
  make_room(lu.eta, 1);
  make_room(lu.eta_target, 1);
  if (lu.sequence_size == static_cast<int>(lu.sequence.size())) {
    lu.sequence.resize(lu.sequence.size() + kSequenceRoom);
  }
  if (journal == nullptr) return;
  make_room(journal->updates, 1);
  make_room(journal->from_rows, lu.u_column[pivot].size());
  make_room(journal->from_columns, lu.u_row[pivot].size());
  make_room(journal->moved_rows, spike.count);
  make_room(journal->dense, lu.dense.order);
}

/// Takes the old column and row of the pivot out of U.
void clear_lines(LuFactors& lu, int t, LuJournal* journal) {
  if (t >= lu.block_begin() && !lu.moved(t)) {
    const int k = t - lu.block_begin();
    if (journal != nullptr) lu.dense.save_upper(k, journal->dense);
    lu.dense.clear_upper(k);
  }
  const Span column = lu.u_column[t];
  for (int e = column.begin; e < column.end; ++e) {
    const auto taken = remove_entry(lu.u_rows, lu.u_row, lu.u_columns.index[e], t);
    if (journal != nullptr) journal->from_rows.push_back(taken);
  }
  Span& row = lu.u_row[t];
  for (int e = row.begin; e < row.end; ++e) {
    const auto taken = remove_entry(lu.u_columns, lu.u_column, lu.u_rows.index[e], t);
    if (journal != nullptr) journal->from_columns.push_back(taken);
  }
  lu.u_nonzeros -= column.size() + row.size();
  // The journal needs the entries where they are, so the row continues behind them.
  if (journal != nullptr) {
    row.begin = row.end;
  } else {
    row.end = row.begin;
  }
}

}  // namespace

void replace_column(LuFactors& lu, int position, const PackedVector& spike,
                    const PackedVector& row_eta, double diagonal, LuJournal* journal,
                    Vector<int>& scratch) {
  const int t = lu.pivot_of_position[position];
  prepare(lu, t, spike, row_eta, journal, scratch);
  if (journal != nullptr) journal->open_update(lu, t);
  clear_lines(lu, t, journal);

  const double inverse = 1.0 / diagonal;
  const int begin = lu.u_columns.used;
  int end = begin;
  for (int k = 0; k < spike.count; ++k) {
    const int i = spike.index[k];
    if (i == t) continue;
    lu.u_columns.index[end] = i;
    lu.u_columns.value[end++] = spike.value[k] * inverse;
    append_to_row(lu, i, t, spike.value[k] * lu.inverse_diagonal[i], journal);
  }
  lu.u_columns.used = end;
  lu.u_column[t] = {begin, end};
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
