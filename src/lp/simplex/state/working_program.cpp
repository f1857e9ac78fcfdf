#include "lp/simplex/state/working_program.h"

#include <algorithm>
#include <cassert>
#include <numeric>

namespace kelvo {
namespace {

constexpr double kCancelled = 1e-100;      // a cancelled entry that must stay listed
constexpr std::uint64_t kTieSeed = 20071;  // any number: ties must only be broken repeatably

}  // namespace

WorkingProgram::WorkingProgram(LpProblem& lp)
    : problem(lp),
      random(kTieSeed),
      cost(lp.cost),
      lower(lp.lower),
      upper(lp.upper),
      tie_key(lp.num_vars()),
      rows(lp) {
  std::iota(tie_key.begin(), tie_key.end(), 0);
  for (int j = lp.num_vars() - 1; j > 0; --j) {
    // Two draws, because one has only 15 bits.
    const long draw = 32768L * random.below(32768) + random.below(32768);
    std::swap(tie_key[j], tie_key[static_cast<int>(draw % (j + 1))]);
  }
}

void WorkingProgram::add_column(int j, double factor, WorkVector& x) const {
  const int n = problem.num_cols;
  if (j >= n) {
    const int i = j - n;
    const double before = x.value[i];
    if (before == 0.0 && !x.is_dense()) x.insert(i, 0.0);
    const double after = before + factor;
    x.value[i] = after == 0.0 ? kCancelled : after;
    return;
  }
  const SparseMatrix& columns = problem.columns;
  for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
    const int i = columns.index[k];
    const double before = x.value[i];
    if (before == 0.0 && !x.is_dense()) x.insert(i, 0.0);
    // A cancelled entry keeps a trace, so that its row is not listed twice.
    const double after = before + factor * columns.value[k];
    x.value[i] = after == 0.0 ? kCancelled : after;
  }
}

void WorkingProgram::load_column(int j, WorkVector& x) const {
  assert(x.count == 0);
  const int n = problem.num_cols;
  if (j >= n) {
    x.insert(j - n, 1.0);
    return;
  }
  const SparseMatrix& columns = problem.columns;
  for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
    x.insert(columns.index[k], columns.value[k]);
  }
}

void WorkingProgram::take_shifts_back() {
  for (const int j : shifted_) cost[j] = problem.cost[j];
  shifted_.clear();
}

void WorkingProgram::take_costs() {
  std::copy(problem.cost.begin(), problem.cost.end(), cost.begin());
  shifted_.clear();
  costs_perturbed_ = false;
}

void WorkingProgram::take_bounds() {
  std::copy(problem.lower.begin(), problem.lower.end(), lower.begin());
  std::copy(problem.upper.begin(), problem.upper.end(), upper.begin());
  bounds_perturbed_ = false;
}

void WorkingProgram::return_to(const Mark& mark) noexcept {
  costs_perturbed_ = mark.costs_perturbed;
  bounds_perturbed_ = mark.bounds_perturbed;
  shifted_.resize(mark.num_shifts);
}

void WorkingProgram::resize() {
  // New keys need not be random: they only have to break ties repeatably.
  while (static_cast<int>(tie_key.size()) < problem.num_vars()) {
    tie_key.push_back(static_cast<int>(tie_key.size()));
  }
  tie_key.resize(problem.num_vars());
}

void WorkingProgram::copy_rows_again() {
  rows.rebuild();
  if (problem.compact) problem.rows = SparseMatrix();
}

}  // namespace kelvo
