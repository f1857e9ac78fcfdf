// Quadratic constraints.
#include <algorithm>
#include <utility>

#include "api/frame/output.h"
#include "api/frame/problem_frame.h"
#include "prob/data/constraint_values.h"
#include "prob/data/data_check.h"
#include "prob/model/model_edit.h"
#include "prob/solution_access.h"

using namespace kelvo;

namespace {

Status check_indices(const int* indices, int count, int columns) {
  for (int k = 0; k < count; ++k) {
    if (indices[k] < 0 || indices[k] >= columns) return Status::failure(error::kIndexRange);
  }
  return Status();
}

/// With data checking: a pair that is given twice.
Status check_pairs(Environment& environment, const Problem& problem, const QuadraticRow& row) {
  if (!DataCheck(environment).enabled()) return Status();
  Vector<std::pair<int, int>> pairs(row.quadratic_entries);
  for (int k = 0; k < row.quadratic_entries; ++k) {
    pairs[k] = {row.quadratic_rows[k], row.quadratic_columns[k]};
  }
  std::sort(pairs.begin(), pairs.end());
  const auto twice = std::adjacent_find(pairs.begin(), pairs.end());
  if (twice == pairs.end()) return Status();
  const DefaultName default_name(NameKind::quadratic, problem.num_quadratic_constraints());
  const char* const name = row.name != nullptr ? row.name : default_name.c_str();
  return report_duplicate_pair(environment, problem.model(), name, twice->first, twice->second);
}

Status check_constraint(Environment& environment, const Problem& problem, const QuadraticRow& row) {
  if (row.linear_entries < 0 || row.quadratic_entries < 0) {
    return Status::failure(error::kBadArgument);
  }
  if (row.linear_entries > 0) KELVO_TRY(check_pointers(row.linear_columns, row.linear_values));
  if (row.quadratic_entries > 0) {
    KELVO_TRY(check_pointers(row.quadratic_rows, row.quadratic_columns, row.quadratic_values));
  }
  KELVO_TRY(check_unranged_senses(environment, &row.sense, 1));
  const DataCheck check(environment);
  KELVO_TRY(check.number_at(0, row.rhs));
  KELVO_TRY(check.numbers(row.linear_values, row.linear_entries));
  KELVO_TRY(check.numbers(row.quadratic_values, row.quadratic_entries));
  const int n = problem.num_cols();
  KELVO_TRY(check_indices(row.linear_columns, row.linear_entries, n));
  KELVO_TRY(check_indices(row.quadratic_rows, row.quadratic_entries, n));
  KELVO_TRY(check_indices(row.quadratic_columns, row.quadratic_entries, n));
  KELVO_TRY(check_growth(problem.num_quadratic_constraints(), 1));
  return check_pairs(environment, problem, row);
}

template <class T>
void put(T* out, T value) {
  if (out != nullptr) *out = value;
}

template <class T>
void copy_first(const Vector<T>& from, int space, T* to) {
  std::copy_n(from.begin(), std::min(space, static_cast<int>(from.size())), to);
}

/// Of the two parts of a constraint, each with its own room, the failure that says most: one that
/// has to be printed before one that only tells the room.
Status join(Status first, Status second) {
  if (first.ok()) return second;
  if (second.ok()) return first;
  return first.is_reported() ? second : first;
}

Status put_linear(const QuadraticConstraint& constraint, const OutputRoom& out, int* index,
                  double* value) {
  const auto total = static_cast<std::int64_t>(constraint.linear_index.size());
  if (out.asks_for_room()) return out.room(total);
  KELVO_TRY(out.check(index, value));
  copy_first(constraint.linear_index, out.space, index);
  copy_first(constraint.linear_value, out.space, value);
  return out.finish(total);
}

Status put_quadratic(const QuadraticConstraint& constraint, const OutputRoom& out, int* row,
                     int* column, double* value) {
  const auto total = static_cast<std::int64_t>(constraint.quad_row.size());
  if (out.asks_for_room()) return out.room(total);
  KELVO_TRY(out.check(row, column, value));
  copy_first(constraint.quad_row, out.space, row);
  copy_first(constraint.quad_col, out.space, column);
  copy_first(constraint.quad_value, out.space, value);
  return out.finish(total);
}

/// The frame of a query of one value per constraint of a range at a point (null: the stored one):
/// value(constraint, point).
template <class Value>
int query_range(const char* function, KLVenv env, KLVprob lp, const double* x, double* out,
                int begin, int end, Value value) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const Vector<QuadraticConstraint>& all = problem.model().quadratic_constraints;
    KELVO_TRY(check_pointers(out));
    KELVO_TRY(check_index_range(environment, function, begin, end, 0,
                                problem.num_quadratic_constraints()));
    if (x == nullptr) KELVO_TRY(check_values(problem, Needs::primal));
    const double* const point = x != nullptr ? x : primal_values(problem).data();
    for (int k = begin; k <= end; ++k) out[k - begin] = value(all[k], point);
    return Status();
  });
}

double slack(const QuadraticConstraint& constraint, const double* x) {
  return constraint.rhs - quadratic_activity(constraint, x);
}

}  // namespace

int KLVaddqconstr(KLVenv env, KLVprob lp, int linnzcnt, int quadnzcnt, double rhs, int sense,
                  const int* linind, const double* linval, const int* quadrow, const int* quadcol,
                  const double* quadval, const char* name) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    QuadraticRow row;
    row.rhs = rhs;
    row.sense = static_cast<char>(sense);
    row.linear_entries = linnzcnt;
    row.linear_columns = linind;
    row.linear_values = linval;
    row.quadratic_entries = quadnzcnt;
    row.quadratic_rows = quadrow;
    row.quadratic_columns = quadcol;
    row.quadratic_values = quadval;
    row.name = name;
    problem.merge_pending();
    KELVO_TRY(check_constraint(environment, problem, row));
    problem.edit_model(ChangeKind::quadratic_constraints,
                       [&](Model& model) { append_quadratic_constraint(model, row); });
    return Status();
  });
}

int KLVgetnumqconstrs(KLVenv env, KLVprob lp) {
  return api_count(env, lp, 0,
                   [](Problem& problem) { return problem.num_quadratic_constraints(); });
}

int KLVgetqconstr(KLVenv env, KLVprob lp, int* linnzcnt_p, int* quadnzcnt_p, double* rhs_p,
                  char* sense_p, int* linind, double* linval, int linspace, int* linsurplus_p,
                  int* quadrow, int* quadcol, double* quadval, int quadspace, int* quadsurplus_p,
                  int which) {
  reset_counts(linnzcnt_p, linsurplus_p);
  reset_counts(quadnzcnt_p, quadsurplus_p);
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_index_range(environment, "KLVgetqconstr", which, which, 0,
                                problem.num_quadratic_constraints()));
    const QuadraticConstraint& constraint = problem.model().quadratic_constraints[which];
    put(rhs_p, constraint.rhs);
    put(sense_p, constraint.sense);
    const Status linear =
        put_linear(constraint, {linnzcnt_p, linspace, linsurplus_p}, linind, linval);
    const Status quadratic = put_quadratic(constraint, {quadnzcnt_p, quadspace, quadsurplus_p},
                                           quadrow, quadcol, quadval);
    return join(linear, quadratic);
  });
}

int KLVgetqconstrname(KLVenv env, KLVprob lp, char* buffer, int space, int* surplus_p, int which) {
  reset_counts(nullptr, surplus_p);
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_index_range(environment, "KLVgetqconstrname", which, which, 0,
                                problem.num_quadratic_constraints()));
    const NameStore& names = problem.model().quadratic_names;
    if (!names.present()) return Status::failure(error::kNoNames);
    return put_text(names.view(which), buffer, space, surplus_p);
  });
}

int KLVgetqconstrindex(KLVenv env, KLVprob lp, const char* name, int* index_p) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (!problem.model().quadratic_names.present()) return Status::failure(error::kNoNames);
    KELVO_TRY(check_pointers(name, index_p));
    return put_index(problem.quadratic_constraint_index(name), index_p);
  });
}

int KLVdelqconstrs(KLVenv env, KLVprob lp, int begin, int end) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const int count = problem.num_quadratic_constraints();
    KELVO_TRY(check_index_range(environment, "KLVdelqconstrs", begin, end, 0, count));
    if (begin > end) return Status();
    Vector<char> keep(count, 1);
    std::fill(keep.begin() + begin, keep.begin() + end + 1, 0);
    problem.edit_model(ChangeKind::quadratic_constraints_deleted,
                       [&](Model& model) { keep_quadratic_constraints(model, keep.data()); });
    return Status();
  });
}

int KLVgetxqxax(KLVenv env, KLVprob lp, double* xqxax, int begin, int end) {
  return query_range("KLVgetxqxax", env, lp, nullptr, xqxax, begin, end, quadratic_activity);
}

int KLVgetqconstrslack(KLVenv env, KLVprob lp, double* slackout, int begin, int end) {
  return query_range("KLVgetqconstrslack", env, lp, nullptr, slackout, begin, end, slack);
}

int KLVqconstrslackfromx(KLVenv env, KLVprob lp, const double* x, double* qcslack) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(x, qcslack));
    const Vector<QuadraticConstraint>& all = problem.model().quadratic_constraints;
    for (std::size_t k = 0; k < all.size(); ++k) qcslack[k] = slack(all[k], x);
    return Status();
  });
}

int KLVgetqconstrinfeas(KLVenv env, KLVprob lp, const double* x, double* infeasout, int begin,
                        int end) {
  return query_range("KLVgetqconstrinfeas", env, lp, x, infeasout, begin, end,
                     quadratic_infeasibility);
}
