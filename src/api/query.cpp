// Reading the model back.
#include "api/frame/output.h"
#include "api/frame/problem_frame.h"

using namespace kelvo;

namespace {

enum class Item { row, column };

/// A slice of an array that holds one element per row (column): `select(model)` gives the array.
template <class T, class Select>
int get_slice(KLVenv env, KLVprob lp, const char* function, Item item, T* out, int begin, int end,
              Select select) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const int n = item == Item::row ? problem.num_rows() : problem.num_cols();
    KELVO_TRY(check_index_range(environment, function, begin, end, 0, n));
    KELVO_TRY(check_pointers(out));
    const Vector<T>& values = select(problem.model());
    for (int k = begin; k <= end; ++k) out[k - begin] = values[k];
    return Status();
  });
}

Status get_columns(const ColumnStore& matrix, const MatrixOutput& out, int begin, int end) {
  std::int64_t total = 0;
  if (out.asks_for_room()) {
    for (int j = begin; j <= end; ++j) total += matrix.count[j];
    return out.room(total, end - begin + 1);
  }
  KELVO_TRY(out.check());
  for (int j = begin; j <= end; ++j) {
    out.start_line(j - begin, total);
    for (int p = matrix.start[j]; p < matrix.start[j] + matrix.count[j]; ++p) {
      out.put(total++, matrix.index[p], matrix.value[p]);
    }
  }
  return out.finish(total);
}

Status get_one_row(const ColumnStore& matrix, const MatrixOutput& out, int row) {
  std::int64_t total = 0;
  const bool asks = out.asks_for_room();
  if (!asks) KELVO_TRY(out.check());
  for (int j = 0; j < matrix.num_cols(); ++j) {
    const int p = matrix.find(row, j);
    if (p < 0) continue;
    if (!asks) out.put(total, j, matrix.value[p]);
    ++total;
  }
  if (asks) return out.room(total, 1);
  out.begin[0] = 0;
  return out.finish(total);
}

/// Calls visit(row, column, value) for the entries in rows begin..end, column by column.
template <class Visit>
void visit_rows(const ColumnStore& matrix, int begin, int end, Visit visit) {
  for (int j = 0; j < matrix.num_cols(); ++j) {
    for (int p = matrix.start[j]; p < matrix.start[j] + matrix.count[j]; ++p) {
      const int row = matrix.index[p];
      if (row >= begin && row <= end) visit(row, j, matrix.value[p]);
    }
  }
}

Status get_rows(const ColumnStore& matrix, const MatrixOutput& out, int begin, int end) {
  if (begin == end) return get_one_row(matrix, out, begin);
  const int lines = std::max(end - begin + 1, 0);
  if (!out.asks_for_room()) KELVO_TRY(out.check());
  Vector<std::int64_t> place(lines + 1, 0);  // where the next entry of each row goes
  visit_rows(matrix, begin, end, [&](int row, int, double) { ++place[row - begin + 1]; });
  for (int k = 0; k < lines; ++k) place[k + 1] += place[k];
  const std::int64_t total = place[lines];
  if (out.asks_for_room()) return out.room(total, lines);
  for (int k = 0; k < lines; ++k) out.start_line(k, place[k]);
  visit_rows(matrix, begin, end,
             [&](int row, int j, double v) { out.put(place[row - begin]++, j, v); });
  return out.finish(total);
}

/// One coefficient by the places of KLVgetcoef.
Status get_coefficient(const Model& model, int i, int j, double& value) {
  constexpr int kObjectiveRow = -1;
  constexpr int kRhsColumn = -1;
  constexpr int kRangeColumn = -2;
  const bool is_row = i >= 0 && i < model.num_rows;
  const bool is_column = j >= 0 && j < model.num_cols;
  if (is_row && is_column) {
    value = model.matrix.coefficient(i, j);
  } else if (i == kObjectiveRow && is_column) {
    value = model.objective[j];
  } else if (is_row && j == kRhsColumn) {
    value = model.rhs[i];
  } else if (is_row && j == kRangeColumn) {
    if (model.range.empty()) return Status::failure(error::kNoRanges);
    value = model.range[i];
  } else {
    return Status::failure(error::kIndexRange);
  }
  return Status();
}

}  // namespace

int KLVgetprobtype(KLVenv env, KLVprob lp) {
  int type = -1;
  const int code = api_problem(env, lp, [&](Environment&, Problem& problem) {
    type = problem.type();
    return Status();
  });
  return code == 0 ? type : -1;
}

int KLVgetnumrows(KLVenv env, KLVprob lp) {
  return api_count(env, lp, 0, [](Problem& problem) { return problem.num_rows(); });
}

int KLVgetnumcols(KLVenv env, KLVprob lp) {
  return api_count(env, lp, 0, [](Problem& problem) { return problem.num_cols(); });
}

int KLVgetnumnz(KLVenv env, KLVprob lp) {
  return api_count(env, lp, 0, [](Problem& problem) { return problem.num_nonzeros(); });
}

int KLVgetobjsen(KLVenv env, KLVprob lp) {
  return api_count(env, lp, 0, [](Problem& problem) { return problem.objective_sense(); });
}

int KLVgetobj(KLVenv env, KLVprob lp, double* obj, int begin, int end) {
  return get_slice(
      env, lp, "KLVgetobj", Item::column, obj, begin, end,
      [](const Model& model) -> const auto& { return model.objective; });
}

int KLVgetlb(KLVenv env, KLVprob lp, double* lb, int begin, int end) {
  return get_slice(
      env, lp, "KLVgetlb", Item::column, lb, begin, end,
      [](const Model& model) -> const auto& { return model.lower; });
}

int KLVgetub(KLVenv env, KLVprob lp, double* ub, int begin, int end) {
  return get_slice(
      env, lp, "KLVgetub", Item::column, ub, begin, end,
      [](const Model& model) -> const auto& { return model.upper; });
}

int KLVgetrhs(KLVenv env, KLVprob lp, double* rhs, int begin, int end) {
  return get_slice(
      env, lp, "KLVgetrhs", Item::row, rhs, begin, end,
      [](const Model& model) -> const auto& { return model.rhs; });
}

int KLVgetsense(KLVenv env, KLVprob lp, char* sense, int begin, int end) {
  return get_slice(
      env, lp, "KLVgetsense", Item::row, sense, begin, end,
      [](const Model& model) -> const auto& { return model.row_sense; });
}

int KLVgetrngval(KLVenv env, KLVprob lp, double* rngval, int begin, int end) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_index_range(environment, "KLVgetrngval", begin, end, 0, problem.num_rows()));
    KELVO_TRY(check_pointers(rngval));
    const Vector<double>& range = problem.model().range;
    if (range.empty()) return Status::failure(error::kNoRanges);
    for (int i = begin; i <= end; ++i) rngval[i - begin] = range[i];
    return Status();
  });
}

int KLVgetcoef(KLVenv env, KLVprob lp, int i, int j, double* value_p) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(value_p));
    return get_coefficient(problem.model(), i, j, *value_p);
  });
}

int KLVgetrows(KLVenv env, KLVprob lp, int* nzcnt_p, int* rmatbeg, int* rmatind, double* rmatval,
               int rmatspace, int* surplus_p, int begin, int end) {
  reset_counts(nzcnt_p, surplus_p);
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_index_range(environment, "KLVgetrows", begin, end, 0, problem.num_rows()));
    return get_rows(problem.model().matrix,
                    {{nzcnt_p, rmatspace, surplus_p}, rmatbeg, rmatind, rmatval}, begin, end);
  });
}

int KLVgetcols(KLVenv env, KLVprob lp, int* nzcnt_p, int* cmatbeg, int* cmatind, double* cmatval,
               int cmatspace, int* surplus_p, int begin, int end) {
  reset_counts(nzcnt_p, surplus_p);
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_index_range(environment, "KLVgetcols", begin, end, 0, problem.num_cols()));
    return get_columns(problem.model().matrix,
                       {{nzcnt_p, cmatspace, surplus_p}, cmatbeg, cmatind, cmatval}, begin, end);
  });
}
