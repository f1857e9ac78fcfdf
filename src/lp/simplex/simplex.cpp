#include "lp/simplex/simplex.h"

#include "lp/simplex/dual/dual_engine.h"
#include "lp/simplex/primal/primal_simplex.h"
#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

Simplex::Simplex(LpProblem& problem) : state_(make_owned<SimplexState>(problem)) {}
Simplex::Simplex(const LpProblem& problem)
    : copy_(make_owned<LpProblem>(problem)), state_(make_owned<SimplexState>(*copy_)) {}
Simplex::~Simplex() = default;

DualEngine& Simplex::dual() {
  if (dual_ == nullptr) dual_ = make_owned<DualEngine>(*state_);
  return *dual_;
}

void Simplex::set_slack_basis() {
  state_->set_slack_basis();
}
void Simplex::set_basis(const Vector<int>& status, const double* values) {
  state_->set_basis(status, values);
}

void Simplex::change_bounds(const Vector<VariableBounds>& changes) {
  state_->change_bounds(changes);
}
void Simplex::change_costs(const Vector<VariableCost>& changes) {
  state_->change_costs(changes);
}
void Simplex::add_rows(const SparseMatrix& rows, const Vector<double>& least,
                       const Vector<double>& most) {
  state_->add_rows(rows, least, most);
  if (dual_ != nullptr) dual_->follow_shape();
}
void Simplex::add_columns(const SparseMatrix& columns, const Vector<double>& costs,
                          const Vector<double>& lower, const Vector<double>& upper) {
  state_->add_columns(columns, costs, lower, upper);
  if (dual_ != nullptr) dual_->follow_shape();
}
void Simplex::delete_rows(const Vector<int>& rows) {
  state_->delete_rows(rows);
  if (dual_ != nullptr) dual_->follow_shape();
}
void Simplex::delete_columns(const Vector<int>& columns) {
  state_->delete_columns(columns);
  if (dual_ != nullptr) dual_->follow_shape();
}

SharedBasis Simplex::snapshot(bool with_weights) const {
  const SimplexState& s = *state_;
  Vector<double> weights;
  if (with_weights && s.weights.valid()) {
    for (int j = 0; j < s.num_vars; ++j) {
      if (s.basis.status[j] == kBasic) weights.push_back(s.weights.dual[s.basis.position[j]]);
    }
  }
  return std::allocate_shared<const BasisSnapshot>(Allocator<BasisSnapshot>(), s.basis.status,
                                                   s.basis.value, weights);
}

void Simplex::start_from(const BasisSnapshot& basis) {
  Vector<int> status;
  Vector<double> values;
  basis.unpack(status, values);
  state_->set_basis(status, values.data());
  const Vector<float>& weights = basis.weights();
  if (weights.empty()) return;
  std::size_t next = 0;
  for (int j = 0; j < state_->num_vars; ++j) {
    if (state_->basis.status[j] == kBasic)
      state_->weights.dual[state_->basis.position[j]] = weights[next++];
  }
  state_->weights.set_valid(state_->weights.in_full_space());
}

const LpProblem& Simplex::problem() const {
  return state_->problem;
}

void Simplex::bounds_changed() {
  state_->take_bounds();
}
void Simplex::costs_changed() {
  state_->take_costs();
}

template <class Run>
SimplexOutcome Simplex::run(const SimplexSettings& settings, const RunContext& context, bool dual,
                            Run run) {
  const LentContext lent(*state_, context);
  state_->begin_run(settings);
  if (state_->still_solved()) {
    if (const auto stop = state_->interrupted(dual, false)) return *stop;
    state_->log_optimum(dual);
    return SimplexOutcome::optimal;
  }
  const SimplexOutcome outcome = run();
  if (outcome == SimplexOutcome::optimal) {
    state_->note_optimum(this->dual().polish_optimum());
  }
  return outcome;
}

SimplexOutcome Simplex::run_dual(const SimplexSettings& settings, const RunContext& context) {
  return run(settings, context, true, [this] { return dual().run(); });
}
SimplexOutcome Simplex::run_primal(const SimplexSettings& settings, const RunContext& context) {
  return run(settings, context, false, [this] { return run_primal_simplex(*state_); });
}

ProbeResult Simplex::probe(const Vector<VariableBounds>& changes, const SimplexSettings& settings,
                           const RunContext& context) {
  const LentContext lent(*state_, context);
  state_->begin_run(settings);
  return dual().probe(changes);
}

const Vector<int>& Simplex::status() const {
  return state_->basis.status;
}
const Vector<int>& Simplex::header() const {
  return state_->basis.header;
}
const Vector<double>& Simplex::values() const {
  state_->materialize_results();
  return state_->results.values;
}
const Vector<double>& Simplex::reduced_costs() const {
  return state_->duals.reduced_cost;
}
const Vector<double>& Simplex::row_duals() const {
  return state_->duals.row_duals;
}
double Simplex::objective() const {
  state_->materialize_results();
  return state_->results.objective;
}
int Simplex::iterations() const {
  return state_->run.iterations;
}
int Simplex::phase_one_iterations() const {
  return state_->run.phase_one_iterations;
}
void Simplex::count_iterations(int all, int phase_one) {
  state_->run.iterations += all;
  state_->run.phase_one_iterations += phase_one;
}
const Vector<double>& Simplex::farkas_dual() const {
  return state_->results.farkas;
}
const Vector<double>& Simplex::primal_ray() const {
  return state_->results.ray;
}
double Simplex::condition_estimate() const {
  return state_->factor().statistics().pivot_ratio;
}
double Simplex::markowitz_threshold() const {
  return state_->factor().markowitz_threshold();
}

double Simplex::work() const {
  return state_->work();
}

double Simplex::dual_tolerance() const {
  return state_->run.dual_tolerance;
}

bool Simplex::has_factor() const {
  return state_->factor_current();
}

bool Simplex::compute_basic_solution(const SimplexSettings& settings, const RunContext& context) {
  const LentContext lent(*state_, context);
  state_->begin_run(settings);
  const bool current = state_->factor_current() && state_->basics.fresh() && state_->duals.fresh();
  if (!current && no_factor(state_->refactorize())) return false;
  state_->store_results();
  return true;
}

std::optional<bool> Simplex::known_primal_feasible(const SimplexSettings& settings) {
  SimplexState& s = *state_;
  if (!s.factor_current() || !s.basics.current()) return std::nullopt;
  s.begin_run(settings);
  if (!s.factor_current()) return std::nullopt;
  const double tolerance = settings.feasibility_tolerance;
  for (int p = 0; p < s.m; ++p) {
    const double x = s.basics.value[p];
    if (x < s.basics.lower[p] - tolerance || x > s.basics.upper[p] + tolerance) return false;
  }
  return true;
}

void Simplex::give_dual_weights(const Vector<double>& weights) {
  for (int p = 0; p < state_->m; ++p) state_->weights.dual[p] = weights[state_->basis.header[p]];
  state_->weights.set_valid(false);
}

void Simplex::give_primal_weights(Vector<double> weights) {
  state_->weights.given_primal.swap(weights);
}

int Simplex::bytes_per_entry(bool compact) {
  return PartitionedRows::bytes_per_entry(compact);
}

}  // namespace kelvo
