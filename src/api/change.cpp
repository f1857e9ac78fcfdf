// Changing coefficients, bounds, senses, right-hand sides, ranges and the objective sense.
#include "api/frame/problem_frame.h"
#include "prob/bound_rules.h"
#include "prob/data/data_check.h"

using namespace kelvo;

namespace {

/// Places of KLVchgcoef that are not in the matrix.
constexpr int kObjectiveRow = -1;
constexpr int kRhsColumn = -1;
constexpr int kRangeColumn = -2;

/// The common frame of changes by list: a negative count gives 1003, an empty list changes nothing,
/// a null array gives 1004; then `body`.
template <class Body, class... Pointers>
int change_list(KLVenv env, KLVprob lp, int count, Body body, const Pointers*... pointers) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (count < 0) return Status::failure(error::kBadArgument);
    if (count == 0) return Status();
    KELVO_TRY(check_pointers(pointers...));
    return body(environment, problem, DataCheck(environment));
  });
}

/// Ranges can only be changed in ranged rows.
Status check_ranged(const Model& model, const int* rows, int count) {
  for (int k = 0; k < count; ++k) {
    if (model.row_sense[rows[k]] != 'R') return Status::failure(error::kNoRanges);
  }
  return Status();
}

Status change_coefficient(Problem& problem, int i, int j, double value) {
  if (i == kObjectiveRow && j < 0) return Status::failure(error::kObjectiveHasNoRhs);
  if (i < kObjectiveRow || i >= problem.num_rows() || j < kRangeColumn || j >= problem.num_cols()) {
    return Status::failure(error::kIndexRange);
  }
  if (i == kObjectiveRow) {
    problem.change_objective(&j, &value, 1, ChangeKind::single_objective);
  } else if (j == kRhsColumn) {
    problem.change_right_hand_sides(&i, &value, 1, ChangeKind::single_right_hand_side);
  } else if (j == kRangeColumn) {
    problem.merge_pending();
    KELVO_TRY(check_ranged(problem.model(), &i, 1));
    problem.change_ranges(&i, &value, 1);
  } else {
    problem.change_coefficients(&i, &j, &value, 1, ChangeKind::coefficient);
  }
  return Status();
}

int change_bounds(KLVenv env, KLVprob lp, int count, const int* indices, const char* codes,
                  const double* values) {
  return change_list(
      env, lp, count,
      [&](Environment& environment, Problem& problem, const DataCheck& check) -> Status {
        KELVO_TRY(check.numbers(values, count));
        KELVO_TRY(check_column_indices(environment, indices, count, problem.num_cols()));
        KELVO_TRY(check.bound_codes(codes, count));
        problem.change_bounds(bound_changes(environment.messages(), indices, codes, values, count));
        return Status();
      },
      indices, codes, values);
}

}  // namespace

int KLVchgcoef(KLVenv env, KLVprob lp, int i, int j, double value) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(DataCheck(environment).number_at(0, value));
    return change_coefficient(problem, i, j, value);
  });
}

int KLVchgcoeflist(KLVenv env, KLVprob lp, int numcoefs, const int* rowlist, const int* collist,
                   const double* vallist) {
  return change_list(
      env, lp, numcoefs,
      [&](Environment& environment, Problem& problem, const DataCheck& check) -> Status {
        KELVO_TRY(check.numbers(vallist, numcoefs));
        KELVO_TRY(check_row_indices(environment, rowlist, numcoefs, problem.num_rows()));
        KELVO_TRY(check_column_indices(environment, collist, numcoefs, problem.num_cols()));
        problem.change_coefficients(rowlist, collist, vallist, numcoefs,
                                    ChangeKind::coefficient_list);
        return Status();
      },
      rowlist, collist, vallist);
}

int KLVchgobj(KLVenv env, KLVprob lp, int cnt, const int* indices, const double* values) {
  return change_list(
      env, lp, cnt,
      [&](Environment& environment, Problem& problem, const DataCheck& check) -> Status {
        KELVO_TRY(check.numbers(values, cnt));
        KELVO_TRY(check_column_indices(environment, indices, cnt, problem.num_cols()));
        problem.change_objective(indices, values, cnt, ChangeKind::objective);
        return Status();
      },
      indices, values);
}

int KLVchgrhs(KLVenv env, KLVprob lp, int cnt, const int* indices, const double* values) {
  return change_list(
      env, lp, cnt,
      [&](Environment& environment, Problem& problem, const DataCheck& check) -> Status {
        KELVO_TRY(check.numbers(values, cnt));
        KELVO_TRY(check_row_indices(environment, indices, cnt, problem.num_rows()));
        problem.change_right_hand_sides(indices, values, cnt, ChangeKind::right_hand_sides);
        return Status();
      },
      indices, values);
}

int KLVchgsense(KLVenv env, KLVprob lp, int cnt, const int* indices, const char* senses) {
  return change_list(
      env, lp, cnt,
      [&](Environment& environment, Problem& problem, const DataCheck& check) -> Status {
        KELVO_TRY(check.senses(senses, cnt));
        KELVO_TRY(check_row_indices(environment, indices, cnt, problem.num_rows()));
        problem.change_senses(indices, senses, cnt);
        return Status();
      },
      indices, senses);
}

int KLVchgrngval(KLVenv env, KLVprob lp, int cnt, const int* indices, const double* values) {
  return change_list(
      env, lp, cnt,
      [&](Environment& environment, Problem& problem, const DataCheck& check) -> Status {
        KELVO_TRY(check.numbers(values, cnt));
        KELVO_TRY(check_row_indices(environment, indices, cnt, problem.num_rows()));
        problem.merge_pending();
        KELVO_TRY(check_ranged(problem.model(), indices, cnt));
        problem.change_ranges(indices, values, cnt);
        return Status();
      },
      indices, values);
}

int KLVchgbds(KLVenv env, KLVprob lp, int cnt, const int* indices, const char* codes,
              const double* values) {
  return change_bounds(env, lp, cnt, indices, codes, values);
}

int KLVtightenbds(KLVenv env, KLVprob lp, int cnt, const int* indices, const char* codes,
                  const double* values) {
  return change_bounds(env, lp, cnt, indices, codes, values);
}

int KLVchgobjsen(KLVenv env, KLVprob lp, int sense) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(DataCheck(environment).objective_sense(sense));
    problem.change_objective_sense(sense < 0 ? -1 : 1);
    return Status();
  });
}

int KLVcleanup(KLVenv env, KLVprob lp, double eps) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(DataCheck(environment).number_at(0, eps));
    problem.remove_negligible(eps);
    return Status();
  });
}
