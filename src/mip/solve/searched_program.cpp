#include "mip/solve/searched_program.h"

#include "lp/presolve/crush.h"
#include "prob/model/default_names.h"

namespace kelvo {

SearchedProgram::SearchedProgram(MipProblem&& mip, const Model& model)
    : model_(model), mip_(std::move(mip)) {}

PresolveOutcome SearchedProgram::presolve(const PresolveSettings& settings, StopCheck& stop) {
  // Reductions know rows, bounds and integrality; rows that hold only sometimes, and columns that
  // have other requirements, they do not know.
  if (mip_.has_constraint_branches()) return PresolveOutcome::unchanged;
  ColumnMarks marks;
  marks.is_integer = mip_.is_integer;
  auto presolve = make_owned<Presolve>(mip_.lp, settings, marks, stop);
  const PresolveOutcome outcome = presolve->outcome();
  if (outcome != PresolveOutcome::reduced) return outcome;
  MipProblem reduced;
  reduced.lp = with_rows(presolve->take_reduced());
  for (const int j : presolve->kept_cols()) {
    reduced.is_integer.push_back(mip_.is_integer[j]);
    if (mip_.priority.empty()) continue;
    reduced.priority.push_back(mip_.priority[j]);
    reduced.direction.push_back(mip_.direction[j]);
  }
  mip_ = std::move(reduced);
  presolve_ = std::move(presolve);
  return outcome;
}

void SearchedProgram::to_model(const Vector<double>& searched, Vector<double>& x) const {
  if (presolve_ == nullptr) {
    x = searched;
  } else {
    x.resize(presolve_->col_map().size());
    uncrush_x(*presolve_, searched.data(), x.data());
  }
  x.resize(model_.num_cols);  // columns that the conversion added are at the end
}

const char* SearchedProgram::column_name(int column) const {
  const int own = presolve_ == nullptr ? column : presolve_->kept_cols()[column];
  if (own >= model_.num_cols) return "";
  if (model_.col_names.present()) return model_.col_names[own];
  name_ = DefaultName(NameKind::column, own).view();
  return name_.c_str();
}

}  // namespace kelvo
