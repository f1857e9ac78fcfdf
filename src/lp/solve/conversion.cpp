#include "lp/solve/conversion.h"

#include <algorithm>

#include "lp/crossover/basis_from_values.h"
#include "lp/form/verification.h"
#include "prob/model/row_limits.h"

namespace kelvo {

namespace {

const char* model_column_name(const void* context, int column) {
  return static_cast<const Model*>(context)->col_names[column];
}

const char* model_row_name(const void* context, int row) {
  return static_cast<const Model*>(context)->row_names[row];
}

void set_names(LpProblem& lp, const Model& model) {
  lp.column_name = model.col_names.present() ? model_column_name : nullptr;
  lp.row_name = model.row_names.present() ? model_row_name : nullptr;
  lp.name_context = &model;
}

/// Appends column j without its zeros; entries of the same row, which an unordered column may hold
/// several times, are added up.
void append_column(const ColumnStore& matrix, int j, SparseMatrix& columns, Vector<int>& place) {
  const int begin = columns.start[j];
  const int end = matrix.start[j] + matrix.count[j];
  for (int k = matrix.start[j]; k < end; ++k) {
    if (matrix.value[k] == 0.0) continue;
    const int row = matrix.index[k];
    if (place[row] >= begin) {
      columns.value[place[row]] += matrix.value[k];
      continue;
    }
    place[row] = static_cast<int>(columns.index.size());
    columns.index.push_back(row);
    columns.value.push_back(matrix.value[k]);
  }
  columns.start.push_back(static_cast<int>(columns.index.size()));
}

int slack_at_end(const Model& model, int row, int logical_status) {
  // The slack of a ranged row runs against its logical.
  if (model.row_sense[row] == 'R') return logical_status == kAtLower ? kAtUpper : kAtLower;
  return kAtLower;
}

int logical_at_end(const Model& model, int row, int slack_status) {
  switch (model.row_sense[row]) {
    case 'R':
      return slack_status == kAtUpper ? kAtLower : kAtUpper;
    case 'G':
      return kAtUpper;
    default:
      return kAtLower;
  }
}

double cost_of(const Model& model, int j) {
  return model.sense * model.objective[j];
}

RowLimits column_bounds(const Model& model, int j) {
  return {finite_or_infinite(model.lower[j]), finite_or_infinite(model.upper[j])};
}

/// Bounds of the logical of row i.
RowLimits logical_bounds(const Model& model, int i) {
  const RowLimits limits = row_limits(model, i);
  return {-limits.upper, -limits.lower};
}

double finite_number(double value) {
  return value == kInf ? kInfiniteBound : value == -kInf ? -kInfiniteBound : value;
}

/// Sense, right-hand side and range of a row with these limits of its activity.
void append_row(double low, double high, Model& model) {
  double range = 0.0;
  char sense = 'E';
  double rhs = low;
  if (low == -kInf) {
    sense = 'L';
    rhs = high;
  } else if (high == kInf) {
    sense = 'G';
  } else if (low != high) {
    sense = 'R';
    range = high - low;
  }
  model.row_sense.push_back(sense);
  model.rhs.push_back(finite_number(rhs));
  if (sense != 'R' && model.range.empty()) return;
  model.range.resize(model.row_sense.size() - 1, 0.0);
  model.range.push_back(range);
}

/// Places of the columns and of the logicals s = -(activity), within their bounds.
Vector<double> places(const Model& model, const LpProblem& lp, const StartValues& values) {
  Vector<double> place;
  if (values.x == nullptr && values.slack == nullptr) return place;
  for (int j = 0; j < lp.num_cols; ++j) {
    place.push_back(values.x == nullptr ? kUnknownValue : values.x[j]);
  }
  Vector<double> activity;
  if (values.slack == nullptr) activity = row_activities(lp, place);
  for (int i = 0; i < lp.num_rows; ++i) {
    if (values.slack == nullptr) {
      place.push_back(-activity[i]);
    } else {
      const double slack = values.slack[i];
      place.push_back(model.row_sense[i] == 'R' ? -model.rhs[i] - slack : slack - model.rhs[i]);
    }
  }
  clamp_places(lp, place);
  return place;
}

/// Multipliers of the minimization.
Vector<double> multipliers(const Model& model, const LpProblem& lp, const StartValues& values) {
  Vector<double> multiplier;
  if (values.dj == nullptr && values.pi == nullptr) return multiplier;
  for (int j = 0; j < lp.num_cols; ++j) {
    double dj = values.dj != nullptr ? values.dj[j] : model.objective[j];
    const int end = values.dj != nullptr ? 0 : lp.columns.start[j + 1];
    for (int k = lp.columns.start[j]; k < end; ++k) {
      dj -= lp.columns.value[k] * values.pi[lp.columns.index[k]];
    }
    multiplier.push_back(model.sense * dj);
  }
  for (int i = 0; i < lp.num_rows; ++i) {
    multiplier.push_back(values.pi != nullptr ? -model.sense * values.pi[i] : kUnknownValue);
  }
  return multiplier;
}

}  // namespace

namespace {

/// The model as a program whose numbers are converted when they are looked at, for a check that
/// looks at few of them.
class ModelLookup {
 public:
  explicit ModelLookup(const Model& model)
      : num_rows(model.num_rows), num_cols(model.num_cols), model_(model) {}

  const int num_rows;
  const int num_cols;

  double cost(int j) const { return cost_of(model_, j); }
  double lower(int v) const { return bounds(v).lower; }
  double upper(int v) const { return bounds(v).upper; }
  double row_lower(int i) const { return row_limits(model_, i).lower; }
  double row_upper(int i) const { return row_limits(model_, i).upper; }

  template <class Visit>
  void for_column(int j, Visit visit) const {
    const ColumnStore& matrix = model_.matrix;
    const int end = matrix.start[j] + matrix.count[j];
    for (int k = matrix.start[j]; k < end; ++k) visit(matrix.index[k], matrix.value[k]);
  }

 private:
  RowLimits bounds(int v) const {
    return v < num_cols ? column_bounds(model_, v) : logical_bounds(model_, v - num_cols);
  }

  const Model& model_;
};

/// The last check of a solution; see to_result() for the last two.
Violations measure(const Model& model, LpSolution& solution, Owned<MeasuredSolution>* measured,
                   const ModelChanges& changes) {
  if (measured == nullptr) return complete_and_measure(ModelProgram(model).view(), solution);
  Violations violations;
  const bool basic = solution.layers.basis;
  if (*measured == nullptr || !basic || !(*measured)->solution.layers.basis) {
    *measured = make_owned<MeasuredSolution>();
    violations = complete_and_measure(ModelProgram(model).view(), solution);
  } else {
    violations = measure_changes(ModelLookup(model), **measured, changes.columns,
                                 changes.num_columns, solution);
  }
  (*measured)->solution = solution;
  (*measured)->violations = violations;
  return violations;
}

bool proofs_hold(const Model& model, LpAnswer& answer) {
  if (answer.farkas.empty() && answer.ray.empty()) return true;
  const ModelProgram program(model);
  return (answer.farkas.empty() || verify_farkas(program.view(), answer.farkas)) &&
         (answer.ray.empty() || verify_ray(program.view(), answer.ray));
}

}  // namespace

LpProblem make_lp(const Model& model) {
  LpProblem lp;
  lp.num_rows = model.num_rows;
  lp.num_cols = model.num_cols;
  set_names(lp, model);
  const ColumnStore& matrix = model.matrix;
  SparseMatrix& columns = lp.columns;
  columns.num_major = model.num_cols;
  columns.num_minor = model.num_rows;
  columns.start.reserve(model.num_cols + 1);
  columns.index.reserve(matrix.num_nonzeros());
  columns.value.reserve(matrix.num_nonzeros());
  Vector<int> place(model.num_rows, -1);  // of the row's last entry seen
  for (int j = 0; j < model.num_cols; ++j) append_column(matrix, j, columns, place);
  ModelNumbers numbers(model);
  lp.cost = std::move(numbers.cost);
  lp.lower = std::move(numbers.lower);
  lp.upper = std::move(numbers.upper);
  return lp;
}

ModelNumbers::ModelNumbers(const Model& model) {
  const int variables = model.num_cols + model.num_rows;
  cost.reserve(variables);
  lower.reserve(variables);
  upper.reserve(variables);
  for (int v = 0; v < variables; ++v) {
    const bool column = v < model.num_cols;
    const RowLimits bounds =
        column ? column_bounds(model, v) : logical_bounds(model, v - model.num_cols);
    cost.push_back(column ? cost_of(model, v) : 0.0);
    lower.push_back(bounds.lower);
    upper.push_back(bounds.upper);
  }
}

ModelProgram::ModelProgram(const Model& model) : numbers_(model), ends_(model.matrix.start) {
  for (int j = 0; j < model.num_cols; ++j) ends_[j] += model.matrix.count[j];
  matrix_ = &model.matrix;
  num_rows_ = model.num_rows;
}

ProgramView ModelProgram::view() const {
  return ProgramView(num_rows_, matrix_->num_cols(), matrix_->start.data(), ends_.data(),
                     matrix_->index.data(), matrix_->value.data(), numbers_.cost.data(),
                     numbers_.lower.data(), numbers_.upper.data());
}

bool copy_changes(const Model& model, const ModelChanges& changes, double tolerance,
                  WorkingLp& working) {
  if (changes.any()) working.keep_measured(nullptr);
  LpProblem names;
  set_names(names, model);
  working.name_like(names);
  bool empty = false;
  const auto put = [&](int v, const RowLimits& bounds) {
    empty = empty || bounds.lower > bounds.upper + tolerance || bounds.lower == kInf ||
            bounds.upper == -kInf;
    working.put_bounds(v, bounds.lower, bounds.upper);
  };
  if (changes.costs) {
    for (int j = 0; j < model.num_cols; ++j) working.put_cost(j, cost_of(model, j));
  }
  if (changes.column_bounds && changes.columns == nullptr) {
    for (int j = 0; j < model.num_cols; ++j) put(j, column_bounds(model, j));
  } else if (changes.column_bounds) {
    for (int k = 0; k < changes.num_columns; ++k) {
      put(changes.columns[k], column_bounds(model, changes.columns[k]));
    }
  }
  for (int i = 0; i < model.num_rows && changes.row_limits; ++i) {
    put(model.num_cols + i, logical_bounds(model, i));
  }
  working.finish_changes();
  return !empty;
}

void stored_to_lp_status(const StoredBasis& basis, const Model& model, Vector<int>& status) {
  status.assign(basis.col_status.begin(), basis.col_status.end());
  status.reserve(model.num_cols + model.num_rows);
  for (int i = 0; i < model.num_rows; ++i) {
    const int code = basis.row_status[i];
    status.push_back(code == kAtLower || code == kAtUpper ? logical_at_end(model, i, code) : code);
  }
}

void lp_to_stored_status(const Vector<int>& status, const Model& model, StoredBasis& basis) {
  const int n = model.num_cols;
  basis.col_status.assign(status.begin(), status.begin() + n);
  basis.row_status.resize(model.num_rows);
  for (int i = 0; i < model.num_rows; ++i) {
    const int code = status[n + i];
    basis.row_status[i] =
        code == kAtLower || code == kAtUpper ? slack_at_end(model, i, code) : code;
  }
  basis.present = true;
}

LpStart to_start(const StoredBasis& basis, const Model& model) {
  LpStart start;
  start.present = basis.present;
  if (!basis.present) return start;
  stored_to_lp_status(basis, model, start.status);
  start.x = basis.x;
  const int n = model.num_cols, variables = n + model.num_rows;
  if (!basis.head.empty()) start.dual_norm.assign(variables, 0.0);
  for (std::size_t k = 0; k < basis.head.size(); ++k) {
    const int v = basis.head[k] >= 0 ? basis.head[k] : n - 1 - basis.head[k];
    start.dual_norm[v] = basis.head_norm[k];
  }
  if (!basis.row_norm.empty()) {
    start.primal_norm.assign(variables, 0.0);
    std::copy(basis.col_norm.begin(), basis.col_norm.end(), start.primal_norm.begin());
    std::copy(basis.row_norm.begin(), basis.row_norm.end(), start.primal_norm.begin() + n);
  }
  return start;
}

StoredBasis basis_from_values(const Model& model, const StartValues& values, double tolerance) {
  const LpProblem lp = make_lp(model);
  VariableValues known;
  known.place = places(model, lp, values);
  known.multiplier = multipliers(model, lp, values);
  StoredBasis basis;
  lp_to_stored_status(basis_from_values(lp, known, tolerance).status, model, basis);
  if (values.x != nullptr) basis.x.assign(known.place.begin(), known.place.begin() + lp.num_cols);
  return basis;
}

int status_code(LpOutcome outcome) {
  switch (outcome) {
    case LpOutcome::optimal:
      return kOptimal;
    case LpOutcome::unbounded:
      return kUnbounded;
    case LpOutcome::infeasible:
      return kInfeasible;
    case LpOutcome::infeasible_or_unbounded:
      return kInfeasibleOrUnbounded;
    case LpOutcome::optimal_unscaled_infeasible:
      return kOptimalUnscaledInfeasible;
    case LpOutcome::non_optimal:
      return kNonOptimal;
    case LpOutcome::iteration_limit:
      return kIterationLimit;
    case LpOutcome::time_limit:
      return kTimeLimit;
    case LpOutcome::objective_limit:
      return kObjectiveLimit;
    case LpOutcome::aborted:
      return kUserAborted;
  }
  return kNonOptimal;
}

SolveResult to_result(const Model& model, LpAnswer&& answer, const SimplexSettings& settings,
                      Owned<MeasuredSolution>* measured, const ModelChanges& changes) {
  SolveResult result;
  SolutionRecord& record = result.solution;
  record.iterations = answer.iterations;
  record.phase_one_iterations = answer.phase_one_iterations;
  record.condition = answer.condition;
  result.status = status_code(answer.outcome);
  if (!answer.has_solution) {
    if (measured != nullptr) measured->reset();
    return result;
  }
  LpSolution& solution = answer.solution;
  const Violations violations = measure(model, solution, measured, changes);
  record.primal_feasible =
      answer.primal_feasible && violations.primal <= settings.feasibility_tolerance;
  record.dual_feasible = answer.dual_feasible && violations.dual <= settings.optimality_tolerance &&
                         violations.gap <= settings.optimality_tolerance;
  if (answer.outcome == LpOutcome::optimal && !(record.primal_feasible && record.dual_feasible)) {
    result.status = kOptimalUnscaledInfeasible;
  }
  if (!proofs_hold(model, answer)) {
    result.status = kNonOptimal;
  } else {
    record.farkas = std::move(answer.farkas);
    record.ray = std::move(answer.ray);
  }
  record.has_primal = true;
  record.has_dual = solution.layers.duals;
  record.has_basis = solution.layers.basis;
  record.objective = model.sense * solution.objective + 0.0;
  record.x = std::move(solution.x);
  record.activity = std::move(solution.activity);
  record.pi = std::move(solution.y);
  record.dj = std::move(solution.z);
  for (double& pi : record.pi) pi = model.sense * pi + 0.0;
  for (double& dj : record.dj) dj = model.sense * dj + 0.0;
  if (record.has_basis) lp_to_stored_status(solution.status, model, result.basis);
  return result;
}

Model make_model(const LpProblem& lp, int sense) {
  Model model;
  model.sense = sense;
  model.num_rows = lp.num_rows;
  model.num_cols = lp.num_cols;
  model.objective.reserve(lp.num_cols);
  model.lower.reserve(lp.num_cols);
  model.upper.reserve(lp.num_cols);
  for (int j = 0; j < lp.num_cols; ++j) {
    model.objective.push_back(sense * lp.cost[j] + 0.0);
    model.lower.push_back(finite_number(lp.lower[j]));
    model.upper.push_back(finite_number(lp.upper[j]));
  }
  model.row_sense.reserve(lp.num_rows);
  model.rhs.reserve(lp.num_rows);
  for (int v = lp.num_cols; v < lp.num_vars(); ++v) {
    append_row(-lp.upper[v] + 0.0, -lp.lower[v] + 0.0, model);
  }
  SparseMatrix columns(lp.columns);
  model.matrix.assign(std::move(columns));
  return model;
}

}  // namespace kelvo
