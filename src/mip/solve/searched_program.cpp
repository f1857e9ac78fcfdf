#include "mip/solve/searched_program.h"

#include "prob/model/default_names.h"

namespace kelvo {

SearchedProgram::SearchedProgram(MipProblem&& mip, const Model& model)
    : model_(model), mip_(std::move(mip)) {}

PresolveOutcome SearchedProgram::presolve(const MipPresolveSettings& settings,
                                          const MipPresolveContext& context) {
  auto presolve = make_owned<MipPresolve>(mip_, settings, context);
  const PresolveOutcome outcome = presolve->outcome();
  if (outcome != PresolveOutcome::reduced) return outcome;
  mip_ = presolve->take_reduced();
  if (!mip_.lp.has_rows()) mip_.lp = with_rows(mip_.lp);
  presolve_ = std::move(presolve);
  return outcome;
}

void SearchedProgram::to_model(const Vector<double>& searched, Vector<double>& x) const {
  x = presolve_ == nullptr ? searched : presolve_->postsolve(searched);
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
