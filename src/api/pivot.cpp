// Functions that change the basis: slacks in, fixed variables out, single exchanges, phase II.
#include <algorithm>
#include <cmath>

#include "api/frame/basis_frame.h"
#include "env/params/param_numbers.h"
#include "lp/tableau/basis_exchange.h"
#include "lp/tableau/tableau_ratios.h"

namespace kelvo {
namespace {

// Exchanges that were not chosen by an optimizer are made with at least this pivot threshold.
constexpr double kCarefulThreshold = 0.1;

bool displayed(const Environment& environment) {
  return environment.get_int(param::SIMDISPLAY) != 0;
}

/// Writes a message of these functions, which KLV_PARAM_SIMDISPLAY silences.
void say(Environment& environment, Channel channel, const char* text) {
  if (displayed(environment)) environment.messages().send(channel, text);
}

void say_count(Environment& environment, int count, const char* one, const char* several) {
  if (!displayed(environment)) return;
  if (count == 1) {
    environment.messages().send(Channel::log, one);
  } else {
    environment.messages().print(Channel::log, several, count);
  }
}

/// Runs change(working, exchange) -> ExchangeOutcome on the working LP that is at the stored basis
/// (the slack basis when there is none) and stores what comes out. Whatever fails leaves the
/// problem as it was.
template <class Change>
Status change_basis(Environment& environment, Problem& problem, bool careful, Change change) {
  DriverSettings settings = read_driver_settings(environment.settings(), problem.objective_sense());
  if (careful) {
    double& threshold = settings.simplex.markowitz_threshold;
    threshold = std::max(threshold, kCarefulThreshold);
  }
  if (hold_basis(problem, settings, environment.messages(), true) == nullptr) {
    return Status::failure(error::kBasisSingular);
  }
  Owned<WorkingLp> working = problem.working_lp.take();
  {
    const RunContext context{.sink = &environment.messages()};
    BasisExchange exchange(*working, settings.simplex, context);
    const ExchangeOutcome outcome = change(*working, exchange);
    if (outcome == ExchangeOutcome::done) exchange.compute_values();
    if (outcome == ExchangeOutcome::singular) return Status::failure(error::kBasisSingular);
    if (outcome == ExchangeOutcome::illegal) {
      problem.working_lp.put(std::move(working));
      return Status::failure(error::kIllegalPivot);
    }
  }
  store_basic_solution(problem, *working, settings.simplex);
  problem.working_lp.put(std::move(working));
  return Status();
}

/// Every index of the list denotes a row; the first bad one is reported with 1203.
Status check_rows(Environment& environment, const int* rows, int count, int num_rows) {
  for (int k = 0; k < count; ++k) {
    if (rows[k] < 0 || rows[k] >= num_rows) {
      return report(environment, error::kRowIndex, rows[k]);
    }
  }
  return Status();
}

bool is_basic(const Problem& problem, int variable) {
  const int n = problem.model().num_cols;
  return variable < n ? problem.basis.col_status[variable] == kBasic
                      : problem.basis.row_status[variable - n] == kBasic;
}

bool is_fixed(const Model& model, int variable) {
  if (variable < model.num_cols) return model.lower[variable] == model.upper[variable];
  const int row = variable - model.num_cols;
  return model.row_sense[row] == 'E' ||
         (model.row_sense[row] == 'R' && (model.range.empty() || model.range[row] == 0.0));
}

Status pivot_in(Environment& environment, Problem& problem, const int* rlist, int rlen) {
  const int m = problem.model().num_rows;
  if (rlen < 0 || rlen > m) return Status::failure(error::kBadArgument);
  if (rlen == 0) {
    say(environment, Channel::log, "No rows to pivot in.\n");
    return Status();
  }
  KELVO_TRY(check_pointers(rlist));
  KELVO_TRY(check_rows(environment, rlist, rlen, m));
  if (!problem.basis.present) return Status::failure(error::kNoBasis);
  const auto slack_is_basic = [&](int row) { return problem.basis.row_status[row] == kBasic; };
  if (std::all_of(rlist, rlist + rlen, slack_is_basic)) {
    say(environment, Channel::log, "All indicated row variables are basic.\n");
    return Status();
  }
  const Vector<int> rows(rlist, rlist + rlen);
  int count = 0;
  KELVO_TRY(change_basis(environment, problem, true, [&](WorkingLp&, BasisExchange& exchange) {
    return exchange.pivot_in(rows, count);
  }));
  say_count(environment, count, "1 row pivoted in.\n", "%d rows pivoted in.\n");
  return Status();
}

Status pivot_out(Environment& environment, Problem& problem, const int* clist, int clen) {
  if (!problem.basis.present) return Status::failure(error::kNoBasis);
  if (clen < 0) return Status::failure(error::kBadArgument);
  if (clen == 0) {
    say(environment, Channel::warning, "No variables to pivot out.\n");
    return Status();
  }
  KELVO_TRY(check_pointers(clist));
  const Model& model = problem.model();
  Vector<int> variables;
  for (int k = 0; k < clen; ++k) {
    const int variable = engine_index(model, clist[k]);
    if (variable < 0) return report(environment, error::kRowIndex, clist[k]);
    if (!is_fixed(model, variable)) return Status::failure(error::kNotFixed);
    if (is_basic(problem, variable)) variables.push_back(variable);
  }
  if (variables.empty()) {
    say(environment, Channel::log, "All indicated variables are nonbasic.\n");
    return Status();
  }
  int count = 0;
  KELVO_TRY(change_basis(environment, problem, true, [&](WorkingLp&, BasisExchange& exchange) {
    return exchange.pivot_out(variables, count);
  }));
  say_count(environment, count, "One variable pivoted out.\n", "%d variables pivoted out.\n");
  return Status();
}

/// A status in terms of the caller's slack as the engines see it: the slack of a ranged row runs
/// against its logical, that of a 'G' row has only an upper bound.
BasisStatus engine_status(const Model& model, int variable, BasisStatus status) {
  const bool ranged =
      variable >= model.num_cols && model.row_sense[variable - model.num_cols] == 'R';
  if (!ranged) return status;
  return status == kAtLower ? kAtUpper : kAtLower;
}

/// The entering variable was given: who leaves, or does it only change its bound?
ExchangeOutcome let_system_choose_leaving(const Model& model, CallerTableau& tableau,
                                          BasisExchange& exchange, int entering) {
  const double d = tableau.reduced_cost(entering);
  const bool up = tableau.may_rise(entering) && (d < 0.0 || !tableau.may_fall(entering));
  const PrimalRatio ratio = primal_ratio(tableau, entering, up ? 1 : -1);
  if (ratio.step == kInf) return ExchangeOutcome::illegal;
  if (ratio.itself) {
    return exchange.move_to(entering, engine_status(model, entering, ratio.leaves_at));
  }
  const int leaving = tableau.head(ratio.position);
  return exchange.exchange(entering, ratio.position,
                           engine_status(model, leaving, ratio.leaves_at));
}

ExchangeOutcome pivot(const Model& model, WorkingLp& working, BasisExchange& exchange, int entering,
                      int leaving, BasisStatus leaves_at) {
  CallerTableau tableau(model, working);
  if (entering >= 0 && tableau.status(entering) == kBasic) return ExchangeOutcome::illegal;
  if (leaving < 0) return let_system_choose_leaving(model, tableau, exchange, entering);
  const BasisStatus at = engine_status(model, leaving, leaves_at);
  if (entering == leaving) return exchange.move_to(entering, at);
  const int position = tableau.position_of(leaving);
  if (position < 0) return ExchangeOutcome::illegal;
  if (entering < 0) {
    // At its lower bound the leaving variable needs a reduced cost >= 0: the test for a variable
    // that was forced up to it.
    entering = dual_ratio(tableau, position, leaves_at == kAtLower ? 1 : -1).entering;
    if (entering < 0) return ExchangeOutcome::illegal;
  }
  return exchange.exchange(entering, position, at);
}

Status set_phase_two(Environment& environment, Problem& problem) {
  return change_basis(environment, problem, false,
                      [](WorkingLp&, BasisExchange&) { return ExchangeOutcome::done; });
}

Status pivot_once(Environment& environment, Problem& problem, int jenter, int jleave,
                  int leavestat) {
  const Model& model = problem.model();
  const int entering = engine_index(model, jenter);
  const int leaving = engine_index(model, jleave);
  if (jenter != KLV_NO_VARIABLE && entering < 0) return Status::failure(error::kIndexRange);
  if (jleave != KLV_NO_VARIABLE && leaving < 0) return Status::failure(error::kIndexRange);
  if (entering < 0 && leaving < 0) return Status::failure(error::kBadArgument);
  if (leaving >= 0 && leavestat != kAtLower && leavestat != kAtUpper) {
    return Status::failure(error::kBadArgument);
  }
  return change_basis(environment, problem, false,
                      [&](WorkingLp& working, BasisExchange& exchange) {
                        return pivot(model, working, exchange, entering, leaving,
                                     static_cast<BasisStatus>(leavestat));
                      });
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVpivotin(KLVenv env, KLVprob lp, const int* rlist, int rlen) {
  return on_linear(env, lp, [&](Environment& environment, Problem& problem) {
    return pivot_in(environment, problem, rlist, rlen);
  });
}

int KLVpivotout(KLVenv env, KLVprob lp, const int* clist, int clen) {
  return on_linear(env, lp, [&](Environment& environment, Problem& problem) {
    return pivot_out(environment, problem, clist, clen);
  });
}

int KLVpivot(KLVenv env, KLVprob lp, int jenter, int jleave, int leavestat) {
  return on_linear(env, lp, [&](Environment& environment, Problem& problem) {
    return pivot_once(environment, problem, jenter, jleave, leavestat);
  });
}

int KLVsetphase2(KLVenv env, KLVprob lp) {
  return on_linear(env, lp, set_phase_two);
}
