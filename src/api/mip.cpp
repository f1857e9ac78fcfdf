// The mixed-integer optimizer and what it tells.
#include "api/frame/problem_frame.h"
#include "mip/solve/mip_parameters.h"

namespace kelvo {
namespace {

/// Solutions of mixed-integer problems without quadratic parts.
Status check_mixed_integer_linear(const Problem& problem) {
  switch (problem.type()) {
    case kTypeMilp:
      return Status();
    case kTypeMiqp:
      return Status::failure(error::kNotForQuadratic);
    case kTypeMiqcp:
      return Status::failure(error::kNotForQuadraticConstraints);
    default:
      return Status::failure(error::kNotMixedInteger);
  }
}

MipResult to_result(MipAnswer&& answer) {
  MipResult result;
  result.status = answer.status;
  if (answer.has_incumbent) {
    result.incumbent.present = result.incumbent.has_values = true;
    result.incumbent.primal_feasible = true;
    result.incumbent.objective = answer.objective;
    result.incumbent.x = std::move(answer.x);
  }
  result.search.best_bound = answer.best_bound;
  result.search.cutoff = answer.cutoff;
  result.search.iterations = answer.iterations;
  result.search.nodes = answer.nodes;
  result.search.nodes_left = answer.nodes_left;
  result.search.incumbent_node = answer.incumbent_node;
  result.search.node_status = answer.node_status;
  result.search.node_method = kMethodDual;
  result.search.cuts.assign(kNumCutTypes, 0);
  return result;
}

Status optimize(Environment& environment, Problem& problem) {
  KELVO_TRY(check_mixed_integer_linear(problem));
  const MipSolverSettings settings =
      read_mip_settings(environment.settings(), problem.objective_sense());
  const TimeLimitScope time_limit(environment);
  const CallContext context{environment.messages(), environment.stop_check()};
  problem.store_result(to_result(solve_mip(problem.model(), settings, context)));
  return Status();
}

/// The frame of a count of the last search.
template <class Read>
int search_count(KLVenv env, KLVprob lp, Read read) {
  int value = 0;
  const int code = api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (!is_mixed_integer_type(problem.type())) return Status::failure(error::kNotMixedInteger);
    value = read(problem);
    return Status();
  });
  return code == 0 ? value : 0;
}

/// The frame of a number of the last search.
template <class T, class Read>
int search_value(KLVenv env, KLVprob lp, T* out, Read read) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(out));
    if (!is_mixed_integer_type(problem.type())) return Status::failure(error::kNotMixedInteger);
    if (problem.solution_status == kNoSolution) return Status::failure(error::kNoSolution);
    return read(problem, *out);
  });
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVmipopt(KLVenv env, KLVprob lp) {
  return api_read(env, lp, optimize);
}

int KLVgetnodecnt(KLVenv env, KLVprob lp) {
  return search_count(env, lp, [](const Problem& problem) { return problem.search.nodes; });
}

int KLVgetnodeleftcnt(KLVenv env, KLVprob lp) {
  return search_count(env, lp, [](const Problem& problem) { return problem.search.nodes_left; });
}

int KLVgetmipitcnt(KLVenv env, KLVprob lp) {
  return search_count(env, lp, [](const Problem& problem) { return problem.solution.iterations; });
}

int KLVgetnodeint(KLVenv env, KLVprob lp) {
  return search_count(env, lp,
                      [](const Problem& problem) { return problem.search.incumbent_node; });
}

int KLVgetsubstat(KLVenv env, KLVprob lp) {
  return search_count(env, lp, [](const Problem& problem) { return problem.search.node_status; });
}

int KLVgetsubmethod(KLVenv env, KLVprob lp) {
  return search_count(env, lp, [](const Problem& problem) { return problem.search.node_method; });
}

int KLVgetbestobjval(KLVenv env, KLVprob lp, double* bound_p) {
  return search_value(env, lp, bound_p, [](const Problem& problem, double& value) -> Status {
    value = problem.search.best_bound;
    return Status();
  });
}

int KLVgetmiprelgap(KLVenv env, KLVprob lp, double* gap_p) {
  return search_value(env, lp, gap_p, [](const Problem& problem, double& value) -> Status {
    if (!problem.incumbent.present) return Status::failure(error::kNoSolution);
    const double sense = problem.objective_sense();
    value = relative_gap(sense * problem.incumbent.objective, sense * problem.search.best_bound);
    return Status();
  });
}

int KLVgetcutoff(KLVenv env, KLVprob lp, double* cutoff_p) {
  return search_value(env, lp, cutoff_p, [](const Problem& problem, double& value) -> Status {
    value = problem.search.cutoff;
    return Status();
  });
}

int KLVgetnumcuts(KLVenv env, KLVprob lp, int type, int* count_p) {
  return search_value(env, lp, count_p, [type](const Problem& problem, int& value) -> Status {
    if (type < 0 || type >= kNumCutTypes) return Status::failure(error::kBadArgument);
    value = problem.search.cuts[type];
    return Status();
  });
}
