#include "lp/sifting/column_subset.h"

#include <algorithm>
#include <cmath>

#include "lp/sifting/row_prices.h"

namespace kelvo {
namespace {

// A part of the columns is worth while from so many columns per row on: with fewer, the dual method
// looks at few enough of them, and the primal method that the later rounds need takes more
// iterations. Few columns are no trouble in any case.
constexpr double kColumnsPerRow = 12.0;
constexpr int kFewestColumns = 10000;
// A row whose limits the slack basis violates gets so many columns that can mend it, chosen by row
// prices that so many passes over the cheapest columns of each row give.
constexpr int kFirstPerRow = 9;
constexpr int kPricedPerRow = 80;
constexpr int kPricePasses = 200;
// A first work program with a larger share of the columns gains nothing.
constexpr double kFirstShare = 0.4;
// So many columns join in a round, and so many may stay in the work program after it.
constexpr int kJoining = 200;
constexpr double kJoiningPerRow = 1.0;
constexpr int kStaying = 1000;
constexpr double kStayingPerRow = 2.0;
constexpr int kRounds = 60;
// Work programs that remain infeasible soon are a sign that columns must fit together, as those of
// set partitioning do; reduced costs of single ones find no such combination.
constexpr int kFailures = 8;
// Iterations: of the first round, of the rounds until one is feasible, of a round after that.
constexpr int kIterations = 100;
constexpr double kFirstIterationsPerRow = 6.0;
constexpr double kFailingIterationsPerRow = 1.0;
constexpr double kRoundIterationsPerRow = 20.0;
// Costs below this count as this much where something is divided by them.
constexpr double kLeastCost = 1e-9;
// Entries of a proof up to this share of its largest one are rounding errors.
constexpr double kProofEntry = 1e-9;

int per_row(double factor, int rows, int constant) {
  return constant + static_cast<int>(std::min(factor * rows, 1e9));
}

bool higher(double merit, int column, double other_merit, int other_column) {
  return merit != other_merit ? merit > other_merit : column < other_column;
}

/// Leaves the `count` candidates of highest merit.
template <class List>
void keep_best(List& list, int count) {
  if (count >= static_cast<int>(list.size())) return;
  std::nth_element(
      list.begin(), list.begin() + count, list.end(),
      [](const auto& a, const auto& b) { return higher(a.merit, a.column, b.merit, b.column); });
  list.resize(count);
}

}  // namespace

bool ColumnSubset::pays(const LpProblem& problem) {
  return !problem.compact && problem.num_rows > 0 && problem.num_cols >= kFewestColumns &&
         problem.num_cols >= kColumnsPerRow * problem.num_rows;
}

ColumnSubset::ColumnSubset(const LpProblem& problem, StopCheck& stop, IterationHook* hook,
                           SubsetObserver* observer)
    : problem_(problem),
      stop_(stop),
      hook_(hook),
      observer_(observer),
      m_(problem.num_rows),
      n_(problem.num_cols) {
  status_.assign(problem.num_vars(), kBasic);
  in_work_.assign(n_, 0);
  norm_.assign(n_, 1.0);
  const SparseMatrix& a = problem.columns;
  for (int j = 0; j < n_; ++j) {
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) norm_[j] += a.value[k] * a.value[k];
  }
}

ColumnSubset::~ColumnSubset() = default;

// --- The first work program ----------------------------------------------------------------------

/// The slack basis with boxed columns on the side that their costs prefer.
void ColumnSubset::place_columns() {
  for (int j = 0; j < n_; ++j) {
    const double lower = problem_.lower[j];
    const double upper = problem_.upper[j];
    const double c = problem_.cost[j];
    const bool prefers_upper = c < 0.0 || (c == 0.0 && std::fabs(upper) < std::fabs(lower));
    if (lower == -kInf) {
      status_[j] = upper < kInf ? kAtUpper : kFreeSuper;
    } else {
      status_[j] = upper < kInf && prefers_upper ? kAtUpper : kAtLower;
    }
  }
}

/// How much the activity of each row has to grow (or, below zero, to shrink) to be within its
/// limits.
Vector<double> ColumnSubset::missing_activity() const {
  Vector<double> missing(m_, 0.0);
  const SparseMatrix& a = problem_.columns;
  for (int j = 0; j < n_; ++j) {
    const double x = status_[j] == kFreeSuper ? 0.0 : place_of(j);
    if (x == 0.0) continue;
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) missing[a.index[k]] -= a.value[k] * x;
  }
  for (int i = 0; i < m_; ++i) {
    // The logical would have to stand at minus the activity.
    const double place = missing[i];
    missing[i] = place - std::clamp(place, problem_.lower[n_ + i], problem_.upper[n_ + i]);
    if (std::fabs(missing[i]) <= settings_.feasibility_tolerance) missing[i] = 0.0;
  }
  return missing;
}

/// What entry k of the matrix, one of column j, does towards what its row misses.
double ColumnSubset::help(const Vector<double>& missing, int j, int k) const {
  const double need = missing[problem_.columns.index[k]];
  if (need == 0.0) return 0.0;
  const double moved = direction_of(j) * problem_.columns.value[k];
  return need > 0.0 ? moved : -moved;
}

/// The columns of highest merit among those that help in row i.
void ColumnSubset::best_of_row(int i, double missing, const Vector<double>& merit, int count,
                               Vector<Candidate>& list) const {
  list.clear();
  const SparseMatrix& rows = problem_.rows;
  for (int k = rows.start[i]; k < rows.start[i + 1]; ++k) {
    const int j = rows.index[k];
    if (merit[j] == -kInf || direction_of(j) * rows.value[k] * missing <= 0.0) continue;
    list.push_back({j, merit[j]});
  }
  keep_best(list, count);
}

/// Merits by cost alone, shared by all rows that a column helps; -inf for columns that help none.
Vector<double> ColumnSubset::merit_by_cost(const Vector<double>& missing) const {
  const SparseMatrix& a = problem_.columns;
  Vector<double> merit(n_, -kInf);
  for (int j = 0; j < n_; ++j) {
    if (in_work_[j] != 0 || problem_.lower[j] == problem_.upper[j]) continue;
    double sum = 0.0;
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) sum += std::max(0.0, help(missing, j, k));
    if (sum > 0.0) merit[j] = -direction_of(j) * problem_.cost[j] / sum;
  }
  return merit;
}

/// Approximate duals of the rows that miss something, from the columns that are cheapest there.
Vector<double> ColumnSubset::price_rows(const Vector<double>& missing,
                                        const Vector<double>& merit) const {
  Vector<double> prices(m_, 0.0);
  Vector<char> cheap(n_, 0);
  Vector<Candidate> list;
  for (int i = 0; i < m_; ++i) {
    if (missing[i] == 0.0) continue;
    best_of_row(i, missing[i], merit, kPricedPerRow, list);
    double least = kInf;
    for (const Candidate& c : list) {
      cheap[c.column] = 1;
      least = std::min(least, -c.merit);
    }
    prices[i] = list.empty() ? 0.0 : std::max(0.0, least);
  }
  CoveringProgram program;
  for (int i = 0; i < m_; ++i) program.need.push_back(std::fabs(missing[i]));
  const SparseMatrix& a = problem_.columns;
  SparseMatrix& columns = program.columns;
  columns.num_minor = m_;
  for (int j = 0; j < n_; ++j) {
    if (cheap[j] == 0) continue;
    double range = 0.0;  // more than that helps no row any more
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) {
      const double amount = help(missing, j, k);
      if (amount == 0.0) continue;
      columns.index.push_back(a.index[k]);
      columns.value.push_back(amount);
      if (amount > 0.0) range = std::max(range, program.need[a.index[k]] / amount);
    }
    columns.start.push_back(static_cast<int>(columns.index.size()));
    ++columns.num_major;
    program.cost.push_back(direction_of(j) * problem_.cost[j]);
    program.range.push_back(std::min(range, problem_.upper[j] - problem_.lower[j]));
  }
  return improve_row_prices(program, prices, kPricePasses, stop_);
}

/// For each row that misses something those columns that mend it best by approximate reduced costs.
void ColumnSubset::choose_first_columns() {
  for (int j = 0; j < n_; ++j) {
    if (status_[j] == kFreeSuper) in_work_[j] = 1;
  }
  const Vector<double> missing = missing_activity();
  Vector<double> merit = merit_by_cost(missing);
  const Vector<double> prices = price_rows(missing, merit);
  const SparseMatrix& a = problem_.columns;
  for (int j = 0; j < n_; ++j) {
    if (merit[j] == -kInf) continue;
    merit[j] = -direction_of(j) * problem_.cost[j];
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) {
      merit[j] += prices[a.index[k]] * help(missing, j, k);
    }
  }
  Vector<Candidate> list;
  for (int i = 0; i < m_; ++i) {
    if (missing[i] == 0.0) continue;
    best_of_row(i, missing[i], merit, kFirstPerRow, list);
    for (const Candidate& c : list) in_work_[c.column] = 1;
  }
}

// --- A round -------------------------------------------------------------------------------------

void ColumnSubset::fill_work() {
  simplex_.reset();
  const SparseMatrix& a = problem_.columns;
  columns_.clear();
  for (int j = 0; j < n_; ++j) {
    if (in_work_[j] != 0) columns_.push_back(j);
  }
  work_.num_rows = m_;
  work_.num_cols = static_cast<int>(columns_.size());
  work_.cost.assign(work_.num_vars(), 0.0);
  work_.lower.assign(work_.num_vars(), 0.0);
  work_.upper.assign(work_.num_vars(), 0.0);
  work_.offset = problem_.offset;
  SparseMatrix& b = work_.columns;
  b.num_major = work_.num_cols;
  b.num_minor = m_;
  b.start.assign(1, 0);
  b.index.clear();
  b.value.clear();
  for (int k = 0; k < work_.num_cols; ++k) {
    const int j = columns_[k];
    b.index.insert(b.index.end(), a.index.begin() + a.start[j], a.index.begin() + a.start[j + 1]);
    b.value.insert(b.value.end(), a.value.begin() + a.start[j], a.value.begin() + a.start[j + 1]);
    b.start.push_back(static_cast<int>(b.index.size()));
    work_.cost[k] = problem_.cost[j];
    work_.lower[k] = problem_.lower[j];
    work_.upper[k] = problem_.upper[j];
  }
  work_.rows = transpose(b);
  double* const lower = work_.lower.data() + work_.num_cols;
  double* const upper = work_.upper.data() + work_.num_cols;
  std::copy(problem_.lower.begin() + n_, problem_.lower.end(), lower);
  std::copy(problem_.upper.begin() + n_, problem_.upper.end(), upper);
  for (int j = 0; j < n_; ++j) {
    const double x = in_work_[j] != 0 ? 0.0 : place_of(j);
    if (x == 0.0) continue;
    work_.offset += problem_.cost[j] * x;
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) {
      lower[a.index[k]] += a.value[k] * x;
      upper[a.index[k]] += a.value[k] * x;
    }
  }
}

void ColumnSubset::start_work() {
  simplex_ = make_owned<Simplex>(work_);
  Vector<int> start(work_.num_vars());
  for (int k = 0; k < work_.num_cols; ++k) start[k] = status_[columns_[k]];
  std::copy(status_.begin() + n_, status_.end(), start.begin() + work_.num_cols);
  simplex_->set_basis(start);
}

/// Iterations that the next round may take before the method is given up.
int ColumnSubset::run_limit() const {
  if (feasible_) return per_row(kRoundIterationsPerRow, m_, kIterations);
  if (rounds_ == 0) return per_row(kFirstIterationsPerRow, m_, kIterations);
  return per_row(kFailingIterationsPerRow, m_, kIterations) + first_iterations_ - iterations_;
}

SimplexOutcome ColumnSubset::solve_work() {
  SimplexSettings run = settings_;
  run.display = 0;
  run.objective_lower_limit = -kInf;
  run.objective_upper_limit = kInf;
  run.primal_pricing = PrimalPricing::devex;  // the dual weights of the whole are not at hand
  const int left = std::max(0, settings_.iteration_limit - iterations_);
  run.iteration_limit = std::min(left, std::max(0, run_limit()));
  const RunContext context{.stop = &stop_, .hook = hook_};
  SimplexOutcome outcome =
      rounds_ == 0 ? simplex_->run_dual(run, context) : simplex_->run_primal(run, context);
  // A limit of its own is no reason to stop.
  if (outcome == SimplexOutcome::iteration_limit && run.iteration_limit < left) {
    outcome = SimplexOutcome::non_optimal;
  }
  iterations_ += simplex_->iterations();
  phase_one_iterations_ += simplex_->phase_one_iterations();
  if (rounds_ == 0) first_iterations_ = iterations_;
  const Vector<int>& found = simplex_->status();
  for (int k = 0; k < work_.num_cols; ++k) status_[columns_[k]] = found[k];
  std::copy(found.begin() + work_.num_cols, found.end(), status_.begin() + n_);
  return outcome;
}

/// Candidates := the columns left out for which d_j = cost_factor c_j - sign y'a_j is wrong by more
/// than the tolerance; their merit is by how much.
void ColumnSubset::price(const Vector<double>& y, double cost_factor, double sign,
                         double tolerance) {
  candidates_.clear();
  const SparseMatrix& a = problem_.columns;
  for (int j = 0; j < n_; ++j) {
    if (in_work_[j] != 0 || problem_.lower[j] == problem_.upper[j]) continue;
    double product = 0.0;
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) product += y[a.index[k]] * a.value[k];
    const double d = direction_of(j) * (cost_factor * problem_.cost[j] - sign * product);
    if (d < -tolerance) candidates_.push_back({j, -d});
  }
}

/// Columns of the steepest descent come first.
void ColumnSubset::price_with_duals() {
  price(simplex_->row_duals(), 1.0, 1.0, simplex_->dual_tolerance());
  for (Candidate& c : candidates_) c.merit *= c.merit / norm_[c.column];
}

/// 1 when the proof keeps y'(A x + s) below zero, -1 when above.
double ColumnSubset::proof_sign() const {
  const Vector<double>& y = simplex_->farkas_dual();
  double negligible = 0.0;
  for (const double yi : y) negligible = std::max(negligible, kProofEntry * std::fabs(yi));
  double largest = 0.0;
  const auto add = [&](double z, int variable) {
    if (std::fabs(z) <= negligible) return;
    largest += z * (z > 0.0 ? work_.upper[variable] : work_.lower[variable]);
  };
  const SparseMatrix& b = work_.columns;
  for (int k = 0; k < work_.num_cols; ++k) {
    double z = 0.0;
    for (int p = b.start[k]; p < b.start[k + 1]; ++p) z += y[b.index[p]] * b.value[p];
    add(z, k);
  }
  for (int i = 0; i < m_; ++i) add(y[i], work_.num_cols + i);
  return largest < 0.0 ? 1.0 : -1.0;
}

/// Columns that break the proof at the least cost come first.
void ColumnSubset::price_with_proof() {
  const Vector<double>& y = simplex_->farkas_dual();
  double largest = 0.0;
  for (const double yi : y) largest = std::max(largest, std::fabs(yi));
  price(y, 0.0, proof_sign(), kProofEntry * largest);
  for (Candidate& c : candidates_) {
    c.merit /= std::max(kLeastCost, direction_of(c.column) * problem_.cost[c.column]);
  }
}

void ColumnSubset::add_attractive() {
  keep_best(candidates_, per_row(kJoiningPerRow, m_, kJoining));
  for (const Candidate& c : candidates_) in_work_[c.column] = 1;
}

void ColumnSubset::drop_unattractive() {
  const int surplus = work_.num_cols - per_row(kStayingPerRow, m_, kStaying);
  if (surplus <= 0) return;
  const Vector<double>& reduced = simplex_->reduced_costs();
  Vector<Candidate> list;
  for (int k = 0; k < work_.num_cols; ++k) {
    const int j = columns_[k];
    if (status_[j] != kAtLower && status_[j] != kAtUpper) continue;
    const double d = direction_of(j) * reduced[k];
    if (d > settings_.optimality_tolerance) list.push_back({j, d});
  }
  keep_best(list, surplus);
  for (const Candidate& c : list) in_work_[c.column] = 0;
}

SubsetEnd ColumnSubset::run(const SimplexSettings& settings) {
  settings_ = settings;
  place_columns();
  choose_first_columns();
  for (rounds_ = 0; rounds_ < kRounds; ++rounds_) {
    fill_work();
    if (rounds_ == 0 && work_.num_cols > kFirstShare * n_) return SubsetEnd::given_up;
    start_work();
    const SimplexOutcome outcome = solve_work();
    switch (outcome) {
      case SimplexOutcome::optimal:
        feasible_ = true;
        if (observer_ != nullptr) observer_->after_round(iterations_, simplex_->objective());
        drop_unattractive();
        price_with_duals();
        if (candidates_.empty()) return SubsetEnd::priced_out;
        break;
      case SimplexOutcome::infeasible:
        price_with_proof();
        if (++failures_ > kFailures || candidates_.empty()) return SubsetEnd::given_up;
        break;
      case SimplexOutcome::unbounded:
        return SubsetEnd::unfinished;
      case SimplexOutcome::iteration_limit:
      case SimplexOutcome::work_limit:
      case SimplexOutcome::time_limit:
      case SimplexOutcome::aborted:
        stop_outcome_ = outcome;
        return SubsetEnd::stopped;
      case SimplexOutcome::objective_limit:
      case SimplexOutcome::superseded:
      case SimplexOutcome::singular:
      case SimplexOutcome::non_optimal:
        return SubsetEnd::given_up;
    }
    add_attractive();
  }
  return feasible_ ? SubsetEnd::unfinished : SubsetEnd::given_up;
}

}  // namespace kelvo
