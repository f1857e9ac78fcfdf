// Whole models, and rows and columns appended and deleted.
#include <cstdint>
#include <limits>

#include "api/frame/problem_frame.h"
#include "prob/data/data_check.h"
#include "prob/model/default_names.h"
#include "prob/model/model_edit.h"

namespace kelvo {
namespace {

Status check_counts(std::initializer_list<int> counts) {
  return std::min(counts) < 0 ? Status::failure(error::kBadArgument) : Status();
}

Status check_rows(Environment& environment, const Problem& problem, const RowBlock& block,
                  int columns_after) {
  KELVO_TRY(check_growth(problem.num_rows(), block.count));
  if (block.entries > 0) KELVO_TRY(check_pointers(block.begin, block.columns, block.values));
  const DataCheck check(environment);
  KELVO_TRY(check.senses(block.sense, block.count));
  KELVO_TRY(check.numbers(block.rhs, block.count));
  KELVO_TRY(check.numbers(block.range, block.count));
  KELVO_TRY(check.numbers(block.values, block.entries));
  KELVO_TRY(check_starts(environment, block.begin, block.count, block.entries));
  KELVO_TRY(check_column_indices(environment, block.columns, block.entries, columns_after));
  return check.names(block.names, block.count);
}

Status check_columns(Environment& environment, const Problem& problem, const ColumnBlock& block) {
  KELVO_TRY(check_growth(problem.num_cols(), block.count));
  if (block.entries > 0) KELVO_TRY(check_pointers(block.begin, block.rows, block.values));
  const DataCheck check(environment);
  KELVO_TRY(check.numbers(block.objective, block.count));
  KELVO_TRY(check.numbers(block.lower, block.count));
  KELVO_TRY(check.numbers(block.upper, block.count));
  KELVO_TRY(check.numbers(block.values, block.entries));
  KELVO_TRY(check_starts(environment, block.begin, block.count, block.entries));
  KELVO_TRY(check_row_indices(environment, block.rows, block.entries, problem.num_rows()));
  KELVO_TRY(check.column_types(block.type, block.count));
  return check.names(block.names, block.count);
}

/// A whole LP as the caller's arrays: n columns, m rows, the matrix by columns whose areas may lie
/// anywhere in the arrays of entries.
struct WholeLp {
  int columns, rows, objective_sense;
  const double *objective, *rhs;
  const char* sense;
  const int *begin, *count, *index;
  const double *value, *lower, *upper, *range;
  const char *const *column_names, *const *row_names;
};

Status check_numbers_of(Environment& environment, const WholeLp& lp) {
  const DataCheck check(environment);
  KELVO_TRY(check.numbers(lp.objective, lp.columns));
  KELVO_TRY(check.numbers(lp.lower, lp.columns));
  KELVO_TRY(check.numbers(lp.upper, lp.columns));
  KELVO_TRY(check.numbers(lp.rhs, lp.rows));
  return check.numbers(lp.range, lp.rows);
}

Status check_matrix_of(Environment& environment, const WholeLp& lp) {
  const DataCheck check(environment);
  KELVO_TRY(check_areas(environment, lp.begin, lp.count, lp.columns));
  std::int64_t entries = 0;  // areas may overlap, so that the arrays' lengths are no bound
  for (int j = 0; j < lp.columns; ++j) entries += lp.count[j];
  if (entries > std::numeric_limits<int>::max()) {
    return Status::failure(error::kProblemSizeLimits);
  }
  KELVO_TRY(check.column_areas(lp.begin, lp.count, lp.columns, lp.rows));
  for (int j = 0; j < lp.columns; ++j) {
    if (lp.count[j] == 0) continue;
    KELVO_TRY(check_pointers(lp.index, lp.value));
    for (int p = lp.begin[j]; check.enabled() && p < lp.begin[j] + lp.count[j]; ++p) {
      KELVO_TRY(check.number_at(p, lp.value[p]));
    }
    KELVO_TRY(check_row_indices(environment, lp.index + lp.begin[j], lp.count[j], lp.rows));
  }
  return Status();
}

Status check_whole(Environment& environment, const WholeLp& lp) {
  KELVO_TRY(check_counts({lp.columns, lp.rows}));
  if (lp.columns > 0) {
    KELVO_TRY(check_pointers(lp.objective, lp.lower, lp.upper, lp.begin, lp.count));
  }
  if (lp.rows > 0) KELVO_TRY(check_pointers(lp.rhs, lp.sense));
  const DataCheck check(environment);
  KELVO_TRY(check.objective_sense(lp.objective_sense));
  KELVO_TRY(check.senses(lp.sense, lp.rows));
  KELVO_TRY(check.ranges_given(lp.sense, lp.range, lp.rows));
  KELVO_TRY(check_numbers_of(environment, lp));
  KELVO_TRY(check_matrix_of(environment, lp));
  KELVO_TRY(check.names(lp.column_names, lp.columns));
  return check.names(lp.row_names, lp.rows);
}

/// The entries brought together in column order.
SparseMatrix gather_matrix(const WholeLp& lp) {
  SparseMatrix matrix;
  matrix.num_major = lp.columns;
  matrix.num_minor = lp.rows;
  matrix.start.resize(lp.columns + 1);
  std::int64_t entries = 0;
  for (int j = 0; j < lp.columns; ++j) entries += lp.count[j];
  matrix.index.reserve(entries);
  matrix.value.reserve(entries);
  for (int j = 0; j < lp.columns; ++j) {
    const int from = lp.begin[j];
    const int to = from + lp.count[j];
    if (from < to) {
      matrix.index.insert(matrix.index.end(), lp.index + from, lp.index + to);
      matrix.value.insert(matrix.value.end(), lp.value + from, lp.value + to);
    }
    matrix.start[j + 1] = static_cast<int>(matrix.index.size());
  }
  return matrix;
}

Model make_model(const WholeLp& lp, std::string_view name) {
  Model model;
  model.name.assign(name);
  model.sense = lp.objective_sense < 0 ? -1 : 1;
  RowBlock rows;
  rows.count = lp.rows;
  rows.rhs = lp.rhs;
  rows.sense = lp.sense;
  rows.range = lp.range;
  rows.names = lp.row_names;
  append_rows(model, rows);
  ColumnBlock columns;
  columns.count = lp.columns;
  columns.objective = lp.objective;
  columns.lower = lp.lower;
  columns.upper = lp.upper;
  columns.names = lp.column_names;
  append_columns(model, columns);
  model.matrix.assign(gather_matrix(lp));
  return model;
}

int copy_lp(KLVenv env, KLVprob handle, const WholeLp& lp) {
  return api_edit(env, handle, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_whole(environment, lp));
    problem.replace_model(make_model(lp, problem.name()));
    return Status();
  });
}

enum class Item { row, column };

int count_of(const Problem& problem, Item item) {
  return item == Item::row ? problem.num_rows() : problem.num_cols();
}

/// Deletes what new_index marks with -1; the others hold their new indices.
void delete_marked(Environment& environment, Problem& problem, Item item, const int* new_index) {
  if (item == Item::row) {
    problem.delete_rows(new_index);
    return;
  }
  problem.merge_pending();
  // Cuts refer to columns by index, so they cannot stay.
  const bool had_user_cuts = problem.model().user_cuts.size() > 0;
  const bool had_lazy_constraints = problem.model().lazy_constraints.size() > 0;
  problem.delete_columns(new_index);
  MessageSink& sink = environment.messages();
  if (had_user_cuts) {
    sink.send(Channel::warning, "Warning:  User cuts freed during column deletion.\n");
  }
  if (had_lazy_constraints) {
    sink.send(Channel::warning, "Warning:  Lazy constraints freed during column deletion.\n");
  }
}

int delete_range(KLVenv env, KLVprob lp, const char* function, Item item, int begin, int end) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const int n = count_of(problem, item);
    KELVO_TRY(check_index_range(environment, function, begin, end, 0, n));
    if (begin > end) return Status();
    Vector<int> new_index(n);
    for (int k = 0; k < n; ++k) {
      new_index[k] = k < begin ? k : (k <= end ? -1 : k - (end - begin + 1));
    }
    delete_marked(environment, problem, item, new_index.data());
    return Status();
  });
}

int delete_set(KLVenv env, KLVprob lp, Item item, int* delstat) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(delstat));
    problem.merge_pending();
    const int n = count_of(problem, item);
    int kept = 0;
    for (int k = 0; k < n; ++k) delstat[k] = delstat[k] == 1 ? -1 : kept++;
    if (kept < n) delete_marked(environment, problem, item, delstat);
    return Status();
  });
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVcopylpwnames(KLVenv env, KLVprob lp, int numcols, int numrows, int objsense,
                    const double* obj, const double* rhs, const char* sense, const int* matbeg,
                    const int* matcnt, const int* matind, const double* matval, const double* lb,
                    const double* ub, const double* rngval, const char* const* colname,
                    const char* const* rowname) {
  return copy_lp(env, lp,
                 {numcols, numrows, objsense, obj, rhs, sense, matbeg, matcnt, matind, matval, lb,
                  ub, rngval, colname, rowname});
}

int KLVcopylp(KLVenv env, KLVprob lp, int numcols, int numrows, int objsense, const double* obj,
              const double* rhs, const char* sense, const int* matbeg, const int* matcnt,
              const int* matind, const double* matval, const double* lb, const double* ub,
              const double* rngval) {
  return copy_lp(env, lp,
                 {numcols, numrows, objsense, obj, rhs, sense, matbeg, matcnt, matind, matval, lb,
                  ub, rngval, nullptr, nullptr});
}

int KLVnewrows(KLVenv env, KLVprob lp, int rcnt, const double* rhs, const char* sense,
               const double* rngval, const char* const* rowname) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_counts({rcnt}));
    if (rcnt == 0) return Status();
    RowBlock block;
    block.count = rcnt;
    block.rhs = rhs;
    block.sense = sense;
    block.range = rngval;
    block.names = rowname;
    KELVO_TRY(DataCheck(environment).ranges_given(sense, rngval, rcnt));
    KELVO_TRY(check_rows(environment, problem, block, problem.num_cols()));
    problem.add_rows(block);
    return Status();
  });
}

int KLVaddrows(KLVenv env, KLVprob lp, int ccnt, int rcnt, int nzcnt, const double* rhs,
               const char* sense, const int* rmatbeg, const int* rmatind, const double* rmatval,
               const char* const* colname, const char* const* rowname) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_counts({ccnt, rcnt, nzcnt}));
    if (ccnt == 0 && rcnt == 0) return Status();
    ColumnBlock columns;
    columns.count = ccnt;
    columns.names = colname;
    KELVO_TRY(check_columns(environment, problem, columns));
    RowBlock rows;
    rows.count = rcnt;
    rows.rhs = rhs;
    rows.sense = sense;
    rows.names = rowname;
    if (rcnt > 0 && nzcnt > 0) {
      rows.entries = nzcnt;
      rows.begin = rmatbeg;
      rows.columns = rmatind;
      rows.values = rmatval;
    }
    KELVO_TRY(check_rows(environment, problem, rows, problem.num_cols() + ccnt));
    problem.add_rows(rows, columns);
    return Status();
  });
}

int KLVnewcols(KLVenv env, KLVprob lp, int ccnt, const double* obj, const double* lb,
               const double* ub, const char* ctype, const char* const* colname) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_counts({ccnt}));
    if (ccnt == 0) return Status();
    ColumnBlock block;
    block.count = ccnt;
    block.objective = obj;
    block.lower = lb;
    block.upper = ub;
    block.type = ctype;
    block.names = colname;
    KELVO_TRY(check_columns(environment, problem, block));
    problem.add_columns(block);
    return Status();
  });
}

int KLVaddcols(KLVenv env, KLVprob lp, int ccnt, int nzcnt, const double* obj, const int* cmatbeg,
               const int* cmatind, const double* cmatval, const double* lb, const double* ub,
               const char* const* colname) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_counts({ccnt, nzcnt}));
    if (ccnt == 0) return Status();
    ColumnBlock block;
    block.count = ccnt;
    block.objective = obj;
    block.lower = lb;
    block.upper = ub;
    block.names = colname;
    if (nzcnt > 0) {
      block.entries = nzcnt;
      block.begin = cmatbeg;
      block.rows = cmatind;
      block.values = cmatval;
    }
    KELVO_TRY(check_columns(environment, problem, block));
    problem.add_columns(block);
    return Status();
  });
}

int KLVdelrows(KLVenv env, KLVprob lp, int begin, int end) {
  return delete_range(env, lp, "KLVdelrows", Item::row, begin, end);
}

int KLVdelcols(KLVenv env, KLVprob lp, int begin, int end) {
  return delete_range(env, lp, "KLVdelcols", Item::column, begin, end);
}

int KLVdelsetrows(KLVenv env, KLVprob lp, int* delstat) {
  return delete_set(env, lp, Item::row, delstat);
}

int KLVdelsetcols(KLVenv env, KLVprob lp, int* delstat) {
  return delete_set(env, lp, Item::column, delstat);
}
