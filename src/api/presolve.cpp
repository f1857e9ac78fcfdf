// Presolve by itself: the presolved problem, and values and forms between it and the original.
#include <cstring>

#include "api/frame/basis_frame.h"
#include "lp/form/verification.h"
#include "lp/presolve/crush.h"
#include "lp/presolve/reductions/tighten.h"
#include "lp/solve/conversion.h"
#include "lp/solve/presolve_log.h"
#include "lp/solve/presolved_problem.h"
#include "prob/data/column_types.h"
#include "prob/data/data_check.h"

namespace kelvo {
namespace {

/// The presolved problem, up to date with the problem, or null.
PresolvedProblem* presolved_of(Problem& problem) {
  PresolvedProblem* const presolved = problem.presolve.get();
  if (presolved != nullptr && !presolved->catch_up(problem)) problem.presolve.reset();
  return problem.presolve.get();
}

Status status_of(PresolveOutcome outcome) {
  switch (outcome) {
    case PresolveOutcome::infeasible:
      return Status::failure(error::kPresolveInfeasible);
    case PresolveOutcome::dual_infeasible:
      return Status::failure(error::kPresolveInfeasibleOrUnbounded);
    case PresolveOutcome::time_limit:
      return Status::failure(error::kPresolveTimeLimit);
    case PresolveOutcome::aborted:
      return Status::failure(error::kPresolveAborted);
    case PresolveOutcome::reduced:
    case PresolveOutcome::unchanged:
      break;
  }
  return Status();
}

Status presolve_problem(Environment& environment, Problem& problem) {
  problem.merge_pending();
  const PresolveSettings settings = read_presolve_settings(environment.settings());
  const CallContext context{environment.messages(), environment.stop_check()};
  const TimeLimitScope time_limit(environment);
  problem.presolve.reset();
  const LpProblem program = make_lp(problem.model());
  PresolveLog log(context.sink, settings);
  auto presolved =
      make_owned<PresolvedLp>(program, settings, protection_marks(problem), context, log);
  KELVO_TRY(status_of(presolved->outcome()));
  presolved->keep_identity(program);
  problem.presolve.put(make_owned<PresolvedProblem>(std::move(presolved), problem));
  problem.presolve_follows_costs = !settings.dual_reductions;
  return Status();
}

/// The frame of functions on a presolved problem: body(Environment&, Problem&, PresolvedProblem&).
template <class Body, class... Pointers>
int with_presolved(KLVenv env, KLVprob lp, Body body, const Pointers*... pointers) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(pointers...));
    PresolvedProblem* const presolved = presolved_of(problem);
    if (presolved == nullptr || !presolved->has_reduced()) {
      return Status::failure(error::kNoPresolved);
    }
    return body(environment, problem, *presolved);
  });
}

/// c_j - a_j'pi over the columns of a model, in its own sense.
void reduced_costs(const Model& model, const double* pi, double* dj) {
  const ColumnStore& matrix = model.matrix;
  for (int j = 0; j < model.num_cols; ++j) {
    long double sum = model.objective[j];
    const int end = matrix.start[j] + matrix.count[j];
    for (int k = matrix.start[j]; k < end; ++k) {
      sum -= static_cast<long double>(matrix.value[k]) * pi[matrix.index[k]];
    }
    dj[j] = static_cast<double>(sum);
  }
}

Status load_form(Environment& environment, int length, const int* indices, const double* values,
                 int num_cols, LinearForm& form) {
  if (length < 0) return Status::failure(error::kBadArgument);
  KELVO_TRY(check_column_indices(environment, indices, length, num_cols));
  form.weight.assign(num_cols, 0.0);
  for (int k = 0; k < length; ++k) form.weight[indices[k]] += values[k];
  return Status();
}

void warn_of_empty_form(Environment& environment) {
  environment.messages().send(Channel::warning, "Warning: form length is zero.\n");
}

/// The non-zero weights; number_of(j) is the index to write for weight j, negative to skip.
template <class Number>
int store_form(const LinearForm& form, Number number_of, int* indices, double* values) {
  int length = 0;
  for (std::size_t j = 0; j < form.weight.size(); ++j) {
    const int index = number_of(static_cast<int>(j));
    if (form.weight[j] == 0.0 || index < 0) continue;
    indices[length] = index;
    values[length++] = form.weight[j];
  }
  return length;
}

bool is_quadratic(const Problem& problem) {
  return problem.model().quadratic.num_major > 0;
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVpresolve(KLVenv env, KLVprob lp, int method) {
  constexpr int kPrimal = 1, kDual = 2;
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    problem.merge_pending();
    if (is_mixed_integer_type(problem.type())) return Status::failure(error::kNotForMixedInteger);
    if (is_quadratic(problem) || !problem.model().quadratic_constraints.empty()) {
      if (method != kPrimal && method != kDual) return Status::failure(error::kNotForQuadratic);
      environment.messages().send(Channel::results, "No QP presolve or aggregator reductions.\n");
      problem.presolve.reset();
      return Status();
    }
    return presolve_problem(environment, problem);
  });
}

int KLVfreepresolve(KLVenv env, KLVprob lp) {
  return api_read(env, lp, [](Environment&, Problem& problem) {
    problem.presolve.reset();
    return Status();
  });
}

int KLVgetredlp(KLVenv env, KLVprob lp, KLVprob* redlp_p) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(redlp_p));
    *redlp_p = nullptr;
    PresolvedProblem* const presolved = presolved_of(problem);
    if (presolved != nullptr && presolved->has_reduced()) {
      *redlp_p = to_handle(&presolved->shown(problem));
    }
    return Status();
  });
}

int KLVcrushx(KLVenv env, KLVprob lp, const double* x, double* prex) {
  return with_presolved(
      env, lp,
      [&](Environment&, Problem&, PresolvedProblem& presolved) {
        crush_x(presolved.lp().presolve(), x, prex);
        return Status();
      },
      x, prex);
}

int KLVuncrushx(KLVenv env, KLVprob lp, double* x, const double* prex) {
  return with_presolved(
      env, lp,
      [&](Environment&, Problem&, PresolvedProblem& presolved) {
        uncrush_x(presolved.lp().presolve(), prex, x);
        return Status();
      },
      x, prex);
}

int KLVcrushpi(KLVenv env, KLVprob lp, const double* pi, double* prepi) {
  return with_presolved(
      env, lp,
      [&](Environment&, Problem& problem, PresolvedProblem& presolved) {
        const int sense = problem.objective_sense();
        Vector<double> y(pi, pi + problem.model().num_rows);
        for (double& value : y) value *= sense;
        crush_y(presolved.lp().presolve(), y.data(), prepi);
        for (int i = 0; i < presolved.lp().reduced().num_rows; ++i) prepi[i] *= sense;
        return Status();
      },
      pi, prepi);
}

int KLVuncrushpi(KLVenv env, KLVprob lp, double* pi, const double* prepi) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (is_quadratic(problem)) return Status::failure(error::kNotForQuadratic);
    KELVO_TRY(check_pointers(pi, prepi));
    PresolvedProblem* const presolved = presolved_of(problem);
    if (presolved == nullptr || !presolved->has_reduced()) {
      return Status::failure(error::kNoPresolved);
    }
    const LpProblem& reduced = presolved->lp().reduced();
    const int sense = problem.objective_sense();
    Vector<double> y(prepi, prepi + reduced.num_rows);
    for (double& value : y) value *= sense;
    const Vector<double> z = reduced_costs(ProgramView(reduced), y);
    uncrush_y(presolved->lp().presolve(), y.data(), z.data(), pi);
    for (int i = 0; i < problem.model().num_rows; ++i) pi[i] = sense * pi[i] + 0.0;
    return Status();
  });
}

int KLVqpuncrushpi(KLVenv env, KLVprob lp, double* pi, const double* prepi, const double* x) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (!is_quadratic(problem)) return Status::failure(error::kNotQuadratic);
    KELVO_TRY(check_pointers(pi, prepi, x));
    return Status::failure(error::kNoPresolved);
  });
}

int KLVcrushform(KLVenv env, KLVprob lp, int len, const int* ind, const double* val, int* plen_p,
                 double* poffset_p, int* pind, double* pval) {
  return with_presolved(
      env, lp,
      [&](Environment& environment, Problem& problem, PresolvedProblem& presolved) -> Status {
        if (len > 0) KELVO_TRY(check_pointers(ind, val));
        LinearForm form;
        KELVO_TRY(load_form(environment, len, ind, val, problem.model().num_cols, form));
        if (!crush_form(presolved.lp().presolve(), form))
          return Status::failure(error::kCannotCrush);
        const Vector<int>& map = presolved.lp().presolve().col_map();
        *plen_p = store_form(
            form, [&map](int j) { return map[j]; }, pind, pval);
        *poffset_p = form.offset;
        if (*plen_p == 0) warn_of_empty_form(environment);
        return Status();
      },
      plen_p, poffset_p, pind, pval);
}

int KLVuncrushform(KLVenv env, KLVprob lp, int plen, const int* pind, const double* pval,
                   int* len_p, double* offset_p, int* ind, double* val) {
  return with_presolved(
      env, lp,
      [&](Environment& environment, Problem& problem, PresolvedProblem& presolved) -> Status {
        if (plen > 0) KELVO_TRY(check_pointers(pind, pval));
        LinearForm reduced, form;
        KELVO_TRY(
            load_form(environment, plen, pind, pval, presolved.lp().reduced().num_cols, reduced));
        form.weight.assign(problem.model().num_cols, 0.0);
        const Vector<int>& kept = presolved.lp().presolve().kept_cols();
        for (std::size_t k = 0; k < kept.size(); ++k) form.weight[kept[k]] = reduced.weight[k];
        uncrush_form(presolved.lp().presolve(), form);
        *len_p = store_form(
            form, [](int j) { return j; }, ind, val);
        *offset_p = 0.0;
        if (*len_p == 0) warn_of_empty_form(environment);
        return Status();
      },
      len_p, offset_p, ind, val);
}

int KLVgetprestat(KLVenv env, KLVprob lp, int* prestat_p, int* pcstat, int* prstat, int* ocstat,
                  int* orstat) {
  constexpr int kNone = 0, kExists = 1, kEmpty = 2;
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    PresolvedProblem* const presolved = presolved_of(problem);
    const bool exists = presolved != nullptr && presolved->has_reduced();
    if (prestat_p != nullptr) {
      const bool empty = exists && presolved->lp().reduced().num_cols == 0 &&
                         presolved->lp().reduced().num_rows == 0;
      *prestat_p = !exists ? kNone : empty ? kEmpty : kExists;
    }
    if (!exists) return Status();
    const Presolve& presolve = presolved->lp().presolve();
    const RemovalCodes codes = removal_codes(presolve);
    if (pcstat != nullptr) std::copy(codes.cols.begin(), codes.cols.end(), pcstat);
    if (prstat != nullptr) std::copy(codes.rows.begin(), codes.rows.end(), prstat);
    const Vector<int>& kept_cols = presolve.kept_cols();
    const Vector<int>& kept_rows = presolve.kept_rows();
    if (ocstat != nullptr) std::copy(kept_cols.begin(), kept_cols.end(), ocstat);
    if (orstat != nullptr) std::copy(kept_rows.begin(), kept_rows.end(), orstat);
    return Status();
  });
}

int KLVbasicpresolve(KLVenv env, KLVprob lp, double* redlb, double* redub, int* rstat) {
  constexpr int kKept = 0, kRedundant = -1;
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const PresolveSettings settings = read_presolve_settings(environment.settings());
    const TimeLimitScope time_limit(environment);
    const LpProblem program = with_rows(make_lp(problem.model()));
    Vector<char> may_be_zero;
    for (const char type : problem.model().column_type) may_be_zero.push_back(is_semi_type(type));
    const StrengthenedBounds found =
        strengthen_bounds(program, may_be_zero, settings, environment.stop_check());
    if (found.finding.kind != FindingKind::none) {
      PresolveLog(environment.messages(), settings).finding(found.finding, program);
      return Status::failure(error::kPresolveInfeasible);
    }
    const auto written = [](double bound) {
      return bound == kInf ? kInfiniteBound : bound == -kInf ? -kInfiniteBound : bound;
    };
    for (int j = 0; j < program.num_cols; ++j) {
      if (redlb != nullptr) redlb[j] = written(found.lower[j]);
      if (redub != nullptr) redub[j] = written(found.upper[j]);
    }
    for (int i = 0; i < program.num_rows && rstat != nullptr; ++i) {
      rstat[i] = found.row_is_redundant[i] ? kRedundant : kKept;
    }
    return Status();
  });
}

int KLVcopyprotected(KLVenv env, KLVprob lp, int cnt, const int* indices) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (cnt < 0) return Status::failure(error::kBadArgument);
    if (cnt > 0) KELVO_TRY(check_pointers(indices));
    KELVO_TRY(check_column_indices(environment, indices, cnt, problem.num_cols()));
    Vector<int> marked(indices, indices + cnt);
    problem.protected_columns.swap(marked);
    problem.presolve.reset();
    return Status();
  });
}

int KLVdjfrompi(KLVenv env, KLVprob lp, const double* pi, double* dj) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(pi, dj));
    reduced_costs(problem.model(), pi, dj);
    return Status();
  });
}

int KLVqpdjfrompi(KLVenv env, KLVprob lp, const double* pi, const double* x, double* dj) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(pi, x, dj));
    if (!is_quadratic(problem)) return Status::failure(error::kNotQuadratic);
    const Model& model = problem.model();
    reduced_costs(model, pi, dj);
    const SparseMatrix& quadratic = model.quadratic;
    for (int j = 0; j < quadratic.num_major; ++j) {
      for (int k = quadratic.start[j]; k < quadratic.start[j + 1]; ++k) {
        dj[j] += quadratic.value[k] * x[quadratic.index[k]];
      }
    }
    return Status();
  });
}

int KLVslackfromx(KLVenv env, KLVprob lp, const double* x, double* slack) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(x, slack));
    const Model& model = problem.model();
    Vector<double> activity;
    compute_row_activities(model, x, activity);
    for (int i = 0; i < model.num_rows; ++i) slack[i] = row_slack(model, i, activity[i]);
    return Status();
  });
}

int KLVpreslvwrite(KLVenv env, KLVprob lp, const char* filename, double* objoff_p) {
  KLVprob reduced = nullptr;
  const int code = with_presolved(
      env, lp, [&](Environment&, Problem& problem, PresolvedProblem& presolved) -> Status {
        if (filename == nullptr) return Status::failure(error::kNoFileName);
        reduced = to_handle(&presolved.shown(problem));
        if (objoff_p != nullptr) *objoff_p = presolved.objective_offset();
        return Status();
      });
  // Names that say no format, such as those ending in ".pre", get MPS.
  if (code != 0) return code;
  const char* const dot = std::strrchr(filename, '.');
  return KLVwriteprob(env, reduced, filename,
                      dot != nullptr && std::strcmp(dot, ".pre") != 0 ? nullptr : "MPS");
}
