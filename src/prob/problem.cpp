#include "prob/problem.h"

#include <cassert>
#include <utility>

namespace kelvo {
namespace {

template <class T>
void release_memory(Vector<T>& vector) noexcept {
  Vector<T>().swap(vector);
}

}  // namespace

Problem::~Problem() {
  self_ = nullptr;
}

std::int64_t Problem::num_nonzeros() {
  if (batch_.has_coefficients()) merge_pending();
  return model_.matrix.num_nonzeros() + batch_.num_row_entries();
}

const Model& Problem::model() const {
  assert(batch_.empty());
  return model_;
}

void Problem::notify_change(ChangeKind kind) noexcept {
  const unsigned stale = stale_after(kind);
  if ((stale & kCachedSolution) != 0) discard_solution();
  if ((stale & kCachedBasis) != 0) basis = StoredBasis();
  if ((stale & kCachedWorkingLp) != 0) {
    working_lp.reset();
    basis.factored = false;
  }
  const bool of_objective = kind == ChangeKind::objective || kind == ChangeKind::single_objective;
  if ((stale & kCachedPresolve) != 0 && !(presolve_follows_costs && of_objective)) presolve.reset();
  if ((stale & kCachedDerived) != 0) {
    view_target.reset();
    derived.reset();
  }
  if ((stale & kCachedRowLookup) != 0) row_lookup_.forget();
  if ((stale & kCachedColumnLookup) != 0) column_lookup_.forget();
  if ((stale & kCachedSetLookup) != 0) set_lookup_.forget();
  if ((stale & kCachedIndicatorLookup) != 0) indicator_lookup_.forget();
  if ((stale & kCachedQuadraticLookup) != 0) quadratic_lookup_.forget();
  if ((stale & kCachedNorms) != 0) basis.forget_norms();
  const unsigned touched = touched_by(kind);
  revisions_.costs += (touched & kCosts) != 0;
  if ((touched & kColumnBounds) != 0) {
    ++revisions_.column_bounds;
    // A change of bounds alone lists its columns itself.
    if (kind != ChangeKind::bounds) bound_trail_.forget(revisions_.column_bounds);
  }
  revisions_.row_limits += (touched & kRowLimits) != 0;
  revisions_.structure += (touched & kStructure) != 0;
}

ModelChanges Problem::changes_since(const Revisions& earlier) const noexcept {
  ModelChanges changes{.structure = earlier.structure != revisions_.structure,
                       .costs = earlier.costs != revisions_.costs,
                       .column_bounds = earlier.column_bounds != revisions_.column_bounds,
                       .row_limits = earlier.row_limits != revisions_.row_limits};
  if (changes.column_bounds) bound_trail_.list_since(earlier.column_bounds, changes);
  return changes;
}

void Problem::store_result(SolveResult&& result) noexcept {
  solution_status = result.status;
  solution = std::move(result.solution);
  if (!result.basis.present) return;
  basis = std::move(result.basis);
  basis.factored = true;
}

void Problem::store_result(MipResult&& result) noexcept {
  discard_solution();
  solution_status = result.status;
  incumbent = std::move(result.incumbent);
  search = std::move(result.search);
  solution.iterations = static_cast<int>(std::min(search.iterations, 2147483647.0));
  solution.phase_one_iterations = solution.barrier_iterations = 0;
}

void Problem::discard_solution() noexcept {
  if (solution_status == kNoSolution && !solution.has_primal && !incumbent.present) return;
  solution_status = kNoSolution;
  // The counts describe the last optimization, whether or not its values still hold.
  solution.method = kMethodNone;
  solution.primal_feasible = solution.dual_feasible = false;
  solution.has_primal = solution.has_dual = solution.has_basis = false;
  solution.objective = 0.0;
  solution.condition = 0.0;
  release_memory(solution.x);
  release_memory(solution.activity);
  release_memory(solution.pi);
  release_memory(solution.dj);
  release_memory(solution.farkas);
  release_memory(solution.ray);
  incumbent = Incumbent();
}

int Problem::row_index(std::string_view name) {
  merge_pending();
  return row_lookup_.find(name, model_.row_names);
}

int Problem::column_index(std::string_view name) {
  return column_lookup_.find(name, model_.col_names);
}

int Problem::set_index(std::string_view name) {
  return set_lookup_.find(name, model_.sos.names);
}

int Problem::indicator_index(std::string_view name) {
  return indicator_lookup_.find(name, model_.indicators.rows.names);
}

int Problem::quadratic_constraint_index(std::string_view name) {
  return quadratic_lookup_.find(name, model_.quadratic_names);
}

Owned<Problem> Problem::clone() {
  merge_pending();
  Owned<Problem> copy = make_owned<Problem>(*environment_);
  copy->type_ = type_;
  copy->model_ = model_;
  copy->solution_status = solution_status;
  copy->solution = solution;
  copy->incumbent = incumbent;
  copy->basis = basis;
  copy->protected_columns = protected_columns;
  copy->mip_starts = mip_starts;
  return copy;
}

}  // namespace kelvo
