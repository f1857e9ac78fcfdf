// Indicator constraints.
#include "api/frame/output.h"
#include "api/frame/problem_frame.h"
#include "env/params/param_numbers.h"
#include "prob/data/constraint_values.h"
#include "prob/data/data_check.h"
#include "prob/model/model_edit.h"
#include "prob/solution_access.h"

using namespace kelvo;

namespace {

Status check_indicator(Environment& environment, const Problem& problem, const IndicatorRow& row) {
  if (row.entries < 0) return Status::failure(error::kBadArgument);
  if (row.entries > 0) KELVO_TRY(check_pointers(row.columns, row.values));
  KELVO_TRY(check_unranged_senses(environment, &row.sense, 1));
  const DataCheck check(environment);
  KELVO_TRY(check.number_at(0, row.rhs));
  KELVO_TRY(check.numbers(row.values, row.entries));
  KELVO_TRY(check_column_indices(environment, &row.column, 1, problem.num_cols()));
  KELVO_TRY(check_column_indices(environment, row.columns, row.entries, problem.num_cols()));
  const IndicatorConstraints& present = problem.model().indicators;
  KELVO_TRY(check_growth(present.size(), 1));
  return check_growth(present.rows.rows.num_nonzeros(), row.entries);
}

template <class T>
void put(T* out, T value) {
  if (out != nullptr) *out = value;
}

double slack(const IndicatorConstraints& indicators, int k, const double* x) {
  return indicators.rows.rhs[k] - indicator_activity(indicators, k, x);
}

}  // namespace

int KLVaddindconstr(KLVenv env, KLVprob lp, int indvar, int complemented, int nzcnt, double rhs,
                    int sense, const int* linind, const double* linval, const char* indname) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    IndicatorRow row;
    row.column = indvar;
    row.complemented = complemented != 0;
    row.rhs = rhs;
    row.sense = static_cast<char>(sense);
    row.entries = nzcnt;
    row.columns = linind;
    row.values = linval;
    row.name = indname;
    problem.merge_pending();
    KELVO_TRY(check_indicator(environment, problem, row));
    problem.edit_model(ChangeKind::indicators, [&](Model& model) {
      append_indicator(model.indicators, row, model.num_cols);
    });
    return Status();
  });
}

int KLVgetnumindconstrs(KLVenv env, KLVprob lp) {
  return api_count(env, lp, 0, [](Problem& problem) { return problem.num_indicators(); });
}

int KLVgetindconstr(KLVenv env, KLVprob lp, int* indvar_p, int* complemented_p, int* nzcnt_p,
                    double* rhs_p, char* sense_p, int* linind, double* linval, int space,
                    int* surplus_p, int which) {
  reset_counts(nzcnt_p, surplus_p);
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const IndicatorConstraints& all = problem.model().indicators;
    KELVO_TRY(check_index_range(environment, "KLVgetindconstr", which, which, 0, all.size()));
    put(indvar_p, all.column[which]);
    put(complemented_p, static_cast<int>(all.complemented[which]));
    put(rhs_p, all.rows.rhs[which]);
    put(sense_p, all.rows.sense[which]);
    int begin = 0;
    return put_lines(all.rows.rows, {{nzcnt_p, space, surplus_p}, &begin, linind, linval}, which,
                     which);
  });
}

int KLVgetindconstrname(KLVenv env, KLVprob lp, char* buffer, int space, int* surplus_p,
                        int which) {
  reset_counts(nullptr, surplus_p);
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const IndicatorConstraints& all = problem.model().indicators;
    KELVO_TRY(check_index_range(environment, "KLVgetindconstrname", which, which, 0, all.size()));
    if (!all.rows.names.present()) return Status::failure(error::kNoNames);
    return put_text(all.rows.names.view(which), buffer, space, surplus_p);
  });
}

int KLVgetindconstrindex(KLVenv env, KLVprob lp, const char* name, int* index_p) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (!problem.model().indicators.rows.names.present()) return Status::failure(error::kNoNames);
    KELVO_TRY(check_pointers(name, index_p));
    return put_index(problem.indicator_index(name), index_p);
  });
}

int KLVdelindconstrs(KLVenv env, KLVprob lp, int begin, int end) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    problem.merge_pending();
    const int count = problem.model().indicators.size();
    KELVO_TRY(check_index_range(environment, "KLVdelindconstrs", begin, end, 0, count));
    if (begin > end) return Status();
    Vector<char> keep(count, 1);
    std::fill(keep.begin() + begin, keep.begin() + end + 1, 0);
    problem.edit_model(ChangeKind::indicators_deleted,
                       [&](Model& model) { keep_indicators(model.indicators, keep.data()); });
    return Status();
  });
}

int KLVgetindconstrslack(KLVenv env, KLVprob lp, double* slackout, int begin, int end) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const IndicatorConstraints& all = problem.model().indicators;
    KELVO_TRY(check_pointers(slackout));
    KELVO_TRY(check_index_range(environment, "KLVgetindconstrslack", begin, end, 0, all.size()));
    KELVO_TRY(check_values(problem, Needs::primal));
    const double* const x = primal_values(problem).data();
    for (int k = begin; k <= end; ++k) slackout[k - begin] = slack(all, k, x);
    return Status();
  });
}

int KLVindconstrslackfromx(KLVenv env, KLVprob lp, const double* x, double* indslack) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(x, indslack));
    const IndicatorConstraints& all = problem.model().indicators;
    for (int k = 0; k < all.size(); ++k) indslack[k] = slack(all, k, x);
    return Status();
  });
}

int KLVgetindconstrinfeas(KLVenv env, KLVprob lp, const double* x, double* infeasout, int begin,
                          int end) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const IndicatorConstraints& all = problem.model().indicators;
    KELVO_TRY(check_pointers(infeasout));
    KELVO_TRY(check_index_range(environment, "KLVgetindconstrinfeas", begin, end, 0, all.size()));
    if (x == nullptr) KELVO_TRY(check_values(problem, Needs::primal));
    const double* const point = x != nullptr ? x : primal_values(problem).data();
    IndicatorTolerances tolerances;
    tolerances.integrality = environment.get_double(param::EPINT);
    tolerances.feasibility = environment.get_double(param::EPRHS);
    for (int k = begin; k <= end; ++k) {
      infeasout[k - begin] = indicator_infeasibility(all, k, point, tolerances);
    }
    return Status();
  });
}
