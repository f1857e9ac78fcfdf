// The edits of a problem. Each makes room for everything first (which may throw), then changes
// model, basis and batch (which may not), then reports the change.
#include <limits>

#include "prob/model/default_names.h"
#include "prob/model/model_edit.h"
#include "prob/problem.h"

namespace kelvo {
namespace {

/// Entries are counted in 32-bit integers.
constexpr std::int64_t kMostEntries = std::numeric_limits<int>::max();

/// Where a new column rests while it is nonbasic.
int resting_status(double lower, double upper) {
  if (lower > -kInfiniteBound) return 0;
  return upper < kInfiniteBound ? 2 : 3;
}

void keep_statuses(Vector<int>& status, const int* new_index) noexcept {
  int kept = 0;
  for (std::size_t k = 0; k < status.size(); ++k) {
    if (new_index[k] >= 0) status[kept++] = status[k];
  }
  status.resize(kept);
}

/// Renames some of `total` items, which get default names first when they have none.
void rename(NameStore& names, NameLookup& lookup, NameKind kind, int total, const int* indices,
            const char* const* new_names, int count) {
  NameStore fresh;
  if (!names.present()) fresh = default_names(kind, total);
  NameStore& target = names.present() ? names : fresh;
  std::int64_t characters = 0;
  for (int k = 0; k < count; ++k) {
    characters += static_cast<std::int64_t>(std::string_view(new_names[k]).size());
  }
  target.make_room(count, characters);
  // From here on nothing throws.
  for (int k = 0; k < count; ++k) {
    lookup.before_rename(indices[k], target);
    target.rename(indices[k], new_names[k]);
    lookup.after_rename(indices[k], target);
  }
  if (!names.present()) names = std::move(fresh);
}

}  // namespace

void Problem::merge_pending() {
  if (batch_.empty()) return;
  if (basis.present) make_room(basis.row_status, batch_.num_rows());
  batch_.merge_into(model_);
  // A slack that enters with its row is basic.
  if (basis.present) basis.row_status.resize(model_.num_rows, 1);
}

void Problem::replace_model(Model&& model) noexcept {
  batch_.clear();
  model_ = std::move(model);
  type_ = type_of(model_);
  protected_columns.clear();
  mip_starts.start.clear();
  notify_change(ChangeKind::model_replaced);
}

void Problem::add_rows(const RowBlock& rows, const ColumnBlock& columns) {
  const bool named = model_.row_names.present() || gives_names(rows.names, rows.count);
  const std::int64_t entries = std::int64_t{batch_.num_row_entries()} + rows.entries;
  if (!batch_.accepts_rows(named) || entries > kMostEntries) merge_pending();
  batch_.make_room_for_rows(rows, named);
  if (columns.count > 0) add_columns(columns);
  batch_.add_rows(rows, named, num_rows());
  if (rows.count > 0) notify_change(ChangeKind::rows_added);
}

void Problem::add_columns(const ColumnBlock& block) {
  // The entries of the block may lie in rows that wait.
  if (block.entries > 0) merge_pending();
  if (basis.present) make_room(basis.col_status, block.count);
  append_columns(model_, block);
  if (basis.present) {
    for (int j = model_.num_cols - block.count; j < model_.num_cols; ++j) {
      basis.col_status.push_back(resting_status(model_.lower[j], model_.upper[j]));
    }
  }
  type_ = widened_type(type_, model_);
  notify_change(ChangeKind::columns_added);
}

void Problem::delete_rows(const int* new_index) {
  merge_pending();
  kelvo::delete_rows(model_, new_index);
  if (basis.present) keep_statuses(basis.row_status, new_index);
  notify_change(ChangeKind::rows_deleted);
}

void Problem::delete_columns(const int* new_index) {
  merge_pending();
  kelvo::delete_columns(model_, new_index);
  if (basis.present) keep_statuses(basis.col_status, new_index);
  int kept = 0;
  for (const int j : protected_columns) {
    if (new_index[j] >= 0) protected_columns[kept++] = new_index[j];
  }
  protected_columns.resize(kept);
  mip_starts.delete_columns(new_index);
  notify_change(ChangeKind::columns_deleted);
}

void Problem::change_coefficients(const int* rows, const int* columns, const double* values,
                                  int count, ChangeKind kind) {
  if (batch_.is_full()) merge_pending();
  batch_.add_coefficients(rows, columns, values, count);
  notify_change(kind);
}

void Problem::change_quadratic_coefficient(int i, int j, double value) {
  if (batch_.is_full()) merge_pending();
  batch_.make_room_for_quadratic();
  if (model_.quadratic.num_major == 0) {
    Vector<int> starts(model_.num_cols + 1, 0);
    model_.quadratic.start.swap(starts);
    model_.quadratic.num_major = model_.quadratic.num_minor = model_.num_cols;
  }
  batch_.add_quadratic(i, j, value);
  type_ = widened_type(type_, model_);
  notify_change(ChangeKind::quadratic_objective);
}

void Problem::store_start_basis(StoredBasis&& start) noexcept {
  basis = std::move(start);
  solution.has_basis = false;
  working_lp.reset();
}

void Problem::change_objective(const int* columns, const double* values, int count,
                               ChangeKind kind) {
  for (int k = 0; k < count; ++k) model_.objective[columns[k]] = values[k];
  notify_change(kind);
}

void Problem::change_right_hand_sides(const int* rows, const double* values, int count,
                                      ChangeKind kind) {
  merge_pending();
  for (int k = 0; k < count; ++k) model_.rhs[rows[k]] = values[k];
  notify_change(kind);
}

void Problem::change_senses(const int* rows, const char* senses, int count) {
  merge_pending();
  for (int k = 0; k < count && model_.range.empty(); ++k) {
    if (senses[k] == 'R') ensure_ranges(model_);
  }
  for (int k = 0; k < count; ++k) change_sense(model_, rows[k], senses[k]);
  notify_change(ChangeKind::senses);
}

void Problem::change_ranges(const int* rows, const double* values, int count) {
  merge_pending();
  ensure_ranges(model_);
  for (int k = 0; k < count; ++k) model_.range[rows[k]] = values[k];
  notify_change(ChangeKind::ranges);
}

void Problem::change_bounds(const Vector<BoundChange>& changes) {
  for (const BoundChange& change : changes) {
    (change.upper ? model_.upper : model_.lower)[change.column] = change.value;
  }
  notify_change(ChangeKind::bounds);
  for (const BoundChange& change : changes) {
    bound_trail_.note(revisions_.column_bounds, change.column);
  }
}

void Problem::change_objective_sense(int sense) {
  if (model_.sense == sense) return;
  model_.sense = sense;
  notify_change(ChangeKind::objective_sense);
}

void Problem::rename_rows(const int* rows, const char* const* names, int count) {
  merge_pending();
  rename(model_.row_names, row_lookup_, NameKind::row, model_.num_rows, rows, names, count);
  notify_change(ChangeKind::names);
}

void Problem::rename_columns(const int* columns, const char* const* names, int count) {
  rename(model_.col_names, column_lookup_, NameKind::column, model_.num_cols, columns, names,
         count);
  notify_change(ChangeKind::names);
}

void Problem::change_name(std::string_view name) {
  model_.name.assign(name);
}

void Problem::change_objective_name(std::string_view name) {
  model_.objective_name.assign(name);
  model_.has_objective_name = true;
}

void Problem::delete_names() {
  merge_pending();
  model_.row_names.clear();
  model_.col_names.clear();
  row_lookup_.forget();
  column_lookup_.forget();
  notify_change(ChangeKind::names);
}

void Problem::remove_negligible(double eps) {
  merge_pending();
  kelvo::remove_negligible(model_, eps);
  notify_change(ChangeKind::coefficient_list);
  notify_change(ChangeKind::row_coefficients);
}

}  // namespace kelvo
