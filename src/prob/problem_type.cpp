// Problem types: which data they admit, and changing from one to another.
//
// A type is a pair: continuous or mixed-integer, and linear, with a quadratic objective, or with
// quadratic constraints, where each of the three admits what the one before it admits. Types of
// nodes stay as they are whatever the model holds.
#include <algorithm>

#include "prob/fixed_model.h"
#include "prob/model/model_edit.h"
#include "prob/problem.h"

namespace kelvo {
namespace {

enum Degree { kLinear, kQuadraticObjective, kQuadraticConstraints };

constexpr ProblemType kTypes[2][3] = {{kTypeLp, kTypeQp, kTypeQcp},
                                      {kTypeMilp, kTypeMiqp, kTypeMiqcp}};

bool is_integer_model(const Model& model) {
  return !model.column_type.empty() || model.sos.size() > 0 || model.indicators.size() > 0 ||
         model.user_cuts.size() > 0 || model.lazy_constraints.size() > 0;
}

Degree degree_of(const Model& model) {
  if (!model.quadratic_constraints.empty()) return kQuadraticConstraints;
  return model.quadratic.num_major > 0 ? kQuadraticObjective : kLinear;
}

Degree degree_of(int type) {
  if (type == kTypeQcp || type == kTypeMiqcp || type == kTypeFixedMiqcp) {
    return kQuadraticConstraints;
  }
  const bool objective = type == kTypeQp || type == kTypeMiqp || type == kTypeFixedMiqp;
  return objective ? kQuadraticObjective : kLinear;
}

bool is_node_type(int type) {
  return type == kTypeNodeLp || type == kTypeNodeQp || type == kTypeNodeQcp;
}

}  // namespace

ProblemType type_of(const Model& model) {
  return kTypes[is_integer_model(model)][degree_of(model)];
}

int widened_type(int type, const Model& model) {
  if (is_view_type(type) || is_node_type(type)) return type;
  const bool integer = is_mixed_integer_type(type) || is_integer_model(model);
  return kTypes[integer][std::max(degree_of(type), degree_of(model))];
}

void adapt_model(Model& model, int type) {
  const Degree degree = degree_of(type);
  const bool integer = is_mixed_integer_type(type);
  Vector<char> types;
  if (integer && model.column_type.empty()) types.assign(model.num_cols, 'C');
  const bool needs_objective = degree == kQuadraticObjective && model.quadratic.num_major == 0;
  Vector<int> starts;
  if (needs_objective) starts.assign(model.num_cols + 1, 0);
  // From here on nothing throws.
  if (!types.empty()) model.column_type.swap(types);
  if (!integer) clear_integer_data(model);
  if (degree < kQuadraticConstraints) {
    model.quadratic_constraints.clear();
    model.quadratic_names.clear();
  }
  if (degree == kLinear) clear_quadratic(model);
  if (needs_objective) {
    model.quadratic.start.swap(starts);
    model.quadratic.num_major = model.quadratic.num_minor = model.num_cols;
  }
}

void Problem::change_type(int type) {
  merge_pending();
  adapt_model(model_, type);
  type_ = type;
  notify_change(ChangeKind::problem_type);
}

void Problem::show_fixed(int type, const double* x, double tolerance) {
  merge_pending();
  Owned<Problem> shown = make_owned<Problem>(*environment_);
  shown->model_ = fixed_model(model_, x, tolerance);
  shown->type_ = kTypes[0][degree_of(type)];
  if (basis.present) {
    shown->basis = basis;
    shown->basis.forget_norms();
    shown->basis.row_status.resize(shown->model_.num_rows, 1);  // new slacks are basic
  }
  view_target = std::move(shown);
  type_ = type;
}

void Problem::show_itself() noexcept {
  type_ = type_behind_view(type_);
  view_target.reset();
}

}  // namespace kelvo
