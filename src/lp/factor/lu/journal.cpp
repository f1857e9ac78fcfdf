#include "lp/factor/lu/journal.h"

#include "lp/factor/lu/border.h"

namespace kelvo {
namespace {

/// Puts back the entries that were taken out of lines, last one first, down to `size` records.
void put_back(Vector<LuJournal::Taken>& taken, std::size_t size, int target, EntryFile& file,
              Vector<Span>& lines) {
  while (taken.size() > size) {
    const LuJournal::Taken& entry = taken.back();
    Span& line = lines[entry.line];
    file.index[line.end] = file.index[entry.at];
    file.value[line.end] = file.value[entry.at];
    file.index[entry.at] = target;
    file.value[entry.at] = entry.value;
    ++line.end;
    taken.pop_back();
  }
}

}  // namespace

void LuJournal::clear() {
  updates.clear();
  from_rows.clear();
  from_columns.clear();
  moved_rows.clear();
  dense.clear();
}

void LuJournal::open_update(const LuFactors& lu, int t) {
  updates.push_back({lu.m, t, lu.u_column[t], lu.u_row[t], lu.diagonal[t], lu.place[t],
                     lu.u_columns.used, lu.u_rows.used, lu.etas.used, lu.u_nonzeros,
                     from_rows.size(), from_columns.size(), moved_rows.size(), dense.size()});
}

void LuJournal::open_border(const LuFactors& lu, int etas_used) {
  Update border{};
  border.order = lu.m;
  border.pivot = -1;
  border.etas_used = etas_used;
  updates.push_back(border);
}

namespace {

long undo_border(LuFactors& lu, const LuJournal::Update& border) {
  const long touched = lu.m - border.order;
  lu.eta.resize(lu.eta.size() - touched);
  lu.eta_target.resize(lu.eta.size());
  lu.etas.used = border.etas_used;
  remove_border(lu, border.order);
  return touched;
}

}  // namespace

long undo_update(LuFactors& lu, LuJournal& journal) {
  const LuJournal::Update update = journal.updates.back();
  if (update.pivot < 0) {
    journal.updates.pop_back();
    return undo_border(lu, update);
  }
  const int t = update.pivot;
  const Span spike = lu.u_column[t];
  long touched = spike.size() + update.column.size() + update.row.size();

  lu.eta.pop_back();
  lu.eta_target.pop_back();
  lu.etas.used = update.etas_used;
  lu.sequence[--lu.sequence_size] = -1;
  lu.sequence[update.place] = t;
  lu.place[t] = update.place;
  lu.diagonal[t] = update.diagonal;
  lu.inverse_diagonal[t] = 1.0 / update.diagonal;

  for (int e = spike.begin; e < spike.end; ++e) --lu.u_row[lu.u_columns.index[e]].end;
  for (; journal.moved_rows.size() > update.moved_rows; journal.moved_rows.pop_back()) {
    const LuJournal::Moved& moved = journal.moved_rows.back();
    lu.u_row[moved.row] = moved.span;
    lu.u_row_limit[moved.row] = moved.limit;
  }
  lu.u_column[t] = update.column;
  lu.u_row[t] = update.row;
  lu.u_columns.used = update.columns_used;
  lu.u_rows.used = update.rows_used;
  put_back(journal.from_columns, update.from_columns, t, lu.u_columns, lu.u_column);
  put_back(journal.from_rows, update.from_rows, t, lu.u_rows, lu.u_row);
  lu.u_nonzeros = update.u_nonzeros;

  if (journal.dense.size() > update.dense) {
    lu.dense.restore_upper(t - lu.block_begin(), journal.dense.data() + update.dense);
    touched += lu.dense.order;
    journal.dense.resize(update.dense);
  }
  journal.updates.pop_back();
  return touched;
}

}  // namespace kelvo
