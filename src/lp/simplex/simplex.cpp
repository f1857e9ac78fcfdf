#include "lp/simplex/simplex.h"

#include "lp/simplex/dual/dual_simplex.h"
#include "lp/simplex/primal/primal_simplex.h"
#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

Simplex::Simplex(const LpProblem& problem) : state_(make_owned<SimplexState>(problem)) {}
Simplex::~Simplex() = default;

void Simplex::set_slack_basis() {
  state_->set_slack_basis();
}
void Simplex::set_basis(const Vector<int>& status, const double* values) {
  state_->set_basis(status, values);
}

void Simplex::bounds_changed() {
  state_->restore_bounds();
}
void Simplex::costs_changed() {
  state_->restore_costs();
}

SimplexOutcome Simplex::run_dual(const SimplexSettings& settings, const RunContext& context) {
  const LentContext lent(*state_, context);
  state_->begin_run(settings);
  const SimplexOutcome outcome = run_dual_simplex(*state_);
  if (outcome == SimplexOutcome::optimal) polish_optimum(*state_);
  return outcome;
}
SimplexOutcome Simplex::run_primal(const SimplexSettings& settings, const RunContext& context) {
  const LentContext lent(*state_, context);
  state_->begin_run(settings);
  const SimplexOutcome outcome = run_primal_simplex(*state_);
  if (outcome == SimplexOutcome::optimal) polish_optimum(*state_);
  return outcome;
}

const Vector<int>& Simplex::status() const {
  return state_->status;
}
const Vector<int>& Simplex::header() const {
  return state_->header;
}
const Vector<double>& Simplex::values() const {
  return state_->result_values;
}
const Vector<double>& Simplex::reduced_costs() const {
  return state_->reduced_cost;
}
const Vector<double>& Simplex::row_duals() const {
  return state_->row_duals;
}
double Simplex::objective() const {
  return state_->objective;
}
int Simplex::iterations() const {
  return state_->iterations;
}
int Simplex::phase_one_iterations() const {
  return state_->phase_one_iterations;
}
void Simplex::count_iterations(int all, int phase_one) {
  state_->iterations += all;
  state_->phase_one_iterations += phase_one;
}
const Vector<double>& Simplex::farkas_dual() const {
  return state_->farkas;
}
const Vector<double>& Simplex::primal_ray() const {
  return state_->ray;
}
double Simplex::condition_estimate() const {
  return state_->factor().statistics().pivot_ratio;
}
double Simplex::markowitz_threshold() const {
  return state_->factor().markowitz_threshold();
}

SimplexState& Simplex::state() {
  return *state_;
}

}  // namespace kelvo
