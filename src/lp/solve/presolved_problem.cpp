#include "lp/solve/presolved_problem.h"

#include <numeric>

#include "lp/solve/conversion.h"

namespace kelvo {

PresolvedProblem::PresolvedProblem(Owned<PresolvedLp>&& lp, const Problem& original)
    : lp_(std::move(lp)),
      sense_(original.objective_sense()),
      cost_revision_(original.revisions().costs) {}

bool PresolvedProblem::catch_up(const Problem& original) {
  if (cost_revision_ == original.revisions().costs) return true;
  if (!lp_->change_costs(ModelNumbers(original.model()).cost)) return false;
  if (shown_ != nullptr) {
    const LpProblem& reduced = lp_->reduced();
    Vector<int> columns(reduced.num_cols);
    std::iota(columns.begin(), columns.end(), 0);
    Vector<double> objective;
    for (const int j : columns) objective.push_back(sense_ * reduced.cost[j] + 0.0);
    shown_->change_objective(columns.data(), objective.data(), reduced.num_cols,
                             ChangeKind::objective);
  }
  cost_revision_ = original.revisions().costs;
  return true;
}

Problem& PresolvedProblem::shown(const Problem& original) {
  if (shown_ != nullptr) return *shown_;
  const Model& model = original.model();
  Model reduced = make_model(lp_->reduced(), sense_);
  reduced.name = model.name;
  const auto copy_names = [](const NameStore& from, const Vector<int>& kept, NameStore& to) {
    if (!from.present()) return;
    to.create();
    for (const int line : kept) to.append(from.view(line));
  };
  copy_names(model.row_names, lp_->presolve().kept_rows(), reduced.row_names);
  copy_names(model.col_names, lp_->presolve().kept_cols(), reduced.col_names);
  Owned<Problem> made = make_owned<Problem>(original.environment());
  made->replace_model(std::move(reduced));
  shown_ = std::move(made);
  return *shown_;
}

Vector<char> protection_marks(const Problem& problem) {
  Vector<char> marks;
  if (problem.protected_columns.empty()) return marks;
  marks.assign(problem.num_cols(), 0);
  for (const int j : problem.protected_columns) marks[j] = 1;
  return marks;
}

}  // namespace kelvo
