#include "lp/solve/lp_solver.h"

#include <algorithm>

#include "lp/solve/driver_log.h"
#include "lp/solve/start_quality.h"
#include "lp/solve/trivial_lp.h"

namespace kelvo {

namespace {

// A start basis with at most so many wrong variables, and this share of the rows, is kept as it is.
constexpr int kFewWrong = 10;
constexpr double kShareWrong = 0.01;
constexpr double kShareWrongOfFeasible = 0.1;  // of a primal or dual feasible one

}  // namespace

bool wants_presolve(const LpProblem& lp, const DriverSettings& settings) {
  return settings.presolve.on && lp.num_rows > 0 && lp.num_cols > 0 &&
         find_empty_interval(lp, settings.simplex.feasibility_tolerance) < 0;
}

Owned<WorkingLp> make_working_lp(LpProblem&& lp, const DriverSettings& settings,
                                 MessageSink& sink) {
  DriverLog log(sink, settings.simplex.display);
  lp.compact = settings.compact_matrix;
  auto working = make_owned<WorkingLp>(std::move(lp), settings.scaling, sink);
  if (settings.compact_matrix) {
    const int nonzeros = working->lp().columns.num_nonzeros();
    log.compression(WorkingLp::matrix_bytes(nonzeros, false),
                    WorkingLp::matrix_bytes(nonzeros, true));
  }
  return working;
}

void put_at_start(WorkingLp& working, const LpStart& start, const DriverSettings& settings) {
  if (!settings.use_basis || !start.present) {
    if (settings.crash) working.simplex().set_basis(crash_basis(working.lp(), *settings.crash));
    return;
  }
  working.start_from(start);
  working.give_norms(start);
}

StartPlan plan_start(WorkingLp& working, bool has_norms, const DriverSettings& settings,
                     const CallContext& context) {
  if (has_norms && !settings.always_crush) return StartPlan::keep;
  const StartQuality quality = judge_start(working, settings.simplex, context.for_run());
  if (!quality.factored) return StartPlan::crush;
  const bool feasible = quality.primal_wrong == 0 || quality.dual_wrong == 0;
  const double share = feasible ? kShareWrongOfFeasible : kShareWrong;
  const int few = kFewWrong + static_cast<int>(share * working.lp().num_rows);
  if (!settings.always_crush && quality.primal_wrong + quality.dual_wrong <= few) {
    return StartPlan::keep;
  }
  return quality.primal_wrong == 0 ? StartPlan::crush_with_point : StartPlan::crush;
}

LpAnswer solve_from_start(Owned<WorkingLp>& working, const LpStart& start,
                          const LpAlgorithm& algorithm, const DriverSettings& settings,
                          const CallContext& context) {
  const bool given = settings.use_basis && start.present;
  if (given) {
    const auto basic = std::count(start.status.begin(), start.status.end(), kBasic);
    DriverLog(context.sink, settings.simplex.display)
        .start_basis(static_cast<int>(basic), working->lp().num_rows, working->has_factor());
  }
  const bool own_start = !given && !settings.crash;
  return algorithm.run({working, own_start, false, settings, context});
}

LpAnswer solve_without_presolve(LpProblem lp, Owned<WorkingLp>& working, const LpStart& start,
                                const LpAlgorithm& algorithm, const DriverSettings& settings,
                                const CallContext& context) {
  LpAnswer answer;
  if (solve_trivial_lp(lp, settings.simplex.feasibility_tolerance, answer)) {
    working.reset();
    return answer;
  }
  if (working == nullptr) {
    working = make_working_lp(std::move(lp), settings, context.sink);
  } else if (!settings.use_basis || !start.present) {
    working->start_afresh();
  }
  put_at_start(*working, start, settings);
  return solve_from_start(working, start, algorithm, settings, context);
}

}  // namespace kelvo
