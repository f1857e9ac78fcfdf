#include "lp/sifting/sifting.h"

#include <algorithm>
#include <cmath>

#include "lp/sifting/first_columns.h"

namespace kelvo {
namespace {

// Costs below this count as this much where something is divided by them.
constexpr double kLeastCost = 1e-9;
// Entries of a proof up to this share of its largest one are rounding errors.
constexpr double kProofEntry = 1e-9;

}  // namespace

bool Sifting::pays(const LpProblem& problem, const SiftingSettings& settings) {
  return !problem.compact && problem.num_rows > 0 && problem.num_cols >= settings.fewest_columns &&
         problem.num_cols >= settings.columns_per_row * problem.num_rows;
}

Sifting::Sifting(const LpProblem& problem, const SiftingSettings& settings,
                 const RunContext& context)
    : problem_(problem),
      settings_(settings),
      context_{.stop = context.stop != nullptr ? context.stop : &never_, .hook = context.hook},
      log_(problem, settings.simplex, context.sink),
      m_(problem.num_rows),
      n_(problem.num_cols),
      status_(slack_basis_by_costs(problem)),
      sides_(problem_, status_),
      norm_(problem.num_cols, 1.0),
      work_(problem) {
  const SparseMatrix& a = problem.columns;
  for (int j = 0; j < n_; ++j) {
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) norm_[j] += a.value[k] * a.value[k];
  }
}

Sifting::~Sifting() = default;

/// Iterations that the next pass may take before the method is given up.
int Sifting::run_limit() const {
  if (feasible_) return settings_.pass_iterations.of(m_);
  if (passes_ == 0) return settings_.first_iterations.of(m_);
  return settings_.infeasible_iterations.of(m_) + first_iterations_ - iterations_;
}

SimplexOutcome Sifting::solve_work() {
  SimplexSettings run = settings_.simplex;
  run.display = 0;
  run.objective_lower_limit = -kInf;
  run.objective_upper_limit = kInf;
  run.primal_pricing = PrimalPricing::devex;  // the dual weights of the whole are not at hand
  const int left = std::max(0, settings_.simplex.iteration_limit - iterations_);
  run.iteration_limit = std::min(left, std::max(0, run_limit()));
  Simplex& simplex = work_.simplex();
  SimplexOutcome outcome =
      passes_ == 0 ? simplex.run_dual(run, context_) : simplex.run_primal(run, context_);
  // A limit of its own is no reason to stop.
  if (outcome == SimplexOutcome::iteration_limit && run.iteration_limit < left) {
    outcome = SimplexOutcome::non_optimal;
  }
  iterations_ += simplex.iterations();
  phase_one_iterations_ += simplex.phase_one_iterations();
  if (passes_ == 0) first_iterations_ = iterations_;
  work_.copy_statuses(status_);
  return outcome;
}

/// Candidates := the columns left out for which d_j = cost_factor c_j - sign y'a_j is wrong by more
/// than the tolerance; their merit is by how much.
void Sifting::price(const Vector<double>& y, double cost_factor, double sign, double tolerance) {
  candidates_.clear();
  const SparseMatrix& a = problem_.columns;
  for (int j = 0; j < n_; ++j) {
    if (in_work_[j] != 0 || problem_.lower[j] == problem_.upper[j]) continue;
    double product = 0.0;
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) product += y[a.index[k]] * a.value[k];
    const double d = sides_.direction_of(j) * (cost_factor * problem_.cost[j] - sign * product);
    if (d < -tolerance) candidates_.push_back({j, -d});
  }
}

/// Columns of the steepest descent come first.
void Sifting::price_with_duals() {
  price(work_.simplex().row_duals(), 1.0, 1.0, work_.simplex().dual_tolerance());
  for (Candidate& c : candidates_) c.merit *= c.merit / norm_[c.column];
}

/// 1 when the proof keeps y'(A x + s) below zero, -1 when above.
double Sifting::proof_sign() const {
  const LpProblem& work = work_.lp();
  const Vector<double>& y = work_.simplex().farkas_dual();
  double negligible = 0.0;
  for (const double yi : y) negligible = std::max(negligible, kProofEntry * std::fabs(yi));
  double largest = 0.0;
  const auto add = [&](double z, int variable) {
    if (std::fabs(z) <= negligible) return;
    largest += z * (z > 0.0 ? work.upper[variable] : work.lower[variable]);
  };
  const SparseMatrix& b = work.columns;
  for (int k = 0; k < work.num_cols; ++k) {
    double z = 0.0;
    for (int p = b.start[k]; p < b.start[k + 1]; ++p) z += y[b.index[p]] * b.value[p];
    add(z, k);
  }
  for (int i = 0; i < m_; ++i) add(y[i], work.num_cols + i);
  return largest < 0.0 ? 1.0 : -1.0;
}

/// Columns that break the proof at the least cost come first.
void Sifting::price_with_proof() {
  const Vector<double>& y = work_.simplex().farkas_dual();
  double largest = 0.0;
  for (const double yi : y) largest = std::max(largest, std::fabs(yi));
  price(y, 0.0, proof_sign(), kProofEntry * largest);
  for (Candidate& c : candidates_) {
    c.merit /= std::max(kLeastCost, sides_.direction_of(c.column) * problem_.cost[c.column]);
  }
}

void Sifting::add_attractive() {
  keep_best(candidates_, settings_.joining.of(m_));
  for (const Candidate& c : candidates_) in_work_[c.column] = 1;
}

void Sifting::drop_unattractive() {
  const LpProblem& work = work_.lp();
  const int surplus = work.num_cols - settings_.staying.of(m_);
  if (surplus <= 0) return;
  const Vector<double>& reduced = work_.simplex().reduced_costs();
  Vector<Candidate> list;
  for (int k = 0; k < work.num_cols; ++k) {
    const int j = work_.columns()[k];
    if (status_[j] != kAtLower && status_[j] != kAtUpper) continue;
    const double d = sides_.direction_of(j) * reduced[k];
    if (d > settings_.simplex.optimality_tolerance) list.push_back({j, d});
  }
  keep_best(list, surplus);
  for (const Candidate& c : list) in_work_[c.column] = 0;
}

SiftingEnd Sifting::run() {
  in_work_ = choose_first_columns(problem_, status_, settings_, *context_.stop);
  const auto chosen = std::count(in_work_.begin(), in_work_.end(), 1);
  if (static_cast<double>(chosen) > settings_.first_share * n_) return SiftingEnd::given_up;
  for (passes_ = 0; passes_ < settings_.pass_limit; ++passes_) {
    work_.take(in_work_, status_);
    const SimplexOutcome outcome = solve_work();
    switch (outcome) {
      case SimplexOutcome::optimal:
        feasible_ = true;
        log_.pass(iterations_, work_.simplex().objective());
        drop_unattractive();
        price_with_duals();
        if (candidates_.empty()) return SiftingEnd::priced_out;
        break;
      case SimplexOutcome::infeasible:
        price_with_proof();
        if (++failures_ > settings_.infeasible_limit || candidates_.empty()) {
          return SiftingEnd::given_up;
        }
        break;
      case SimplexOutcome::unbounded:
        return SiftingEnd::unfinished;
      case SimplexOutcome::iteration_limit:
      case SimplexOutcome::work_limit:
      case SimplexOutcome::time_limit:
      case SimplexOutcome::aborted:
        stop_outcome_ = outcome;
        return SiftingEnd::stopped;
      case SimplexOutcome::objective_limit:
      case SimplexOutcome::superseded:
      case SimplexOutcome::singular:
      case SimplexOutcome::non_optimal:
        return SiftingEnd::given_up;
    }
    add_attractive();
  }
  return feasible_ ? SiftingEnd::unfinished : SiftingEnd::given_up;
}

}  // namespace kelvo
