#include "lp/first_order_start.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

#include "lp/basis_of_values.h"
#include "lp/model_to_lp.h"

namespace kelvo {

namespace {

// The first turn comes when the run has done the work of so many first-order iterations, the next
// ones when it has done this many times as much as at the turn before.
constexpr double kFirstTurn = 1500.0;
constexpr double kTurnGrowth = 4.0;
// Iterations after which the pace is judged for the first time.
constexpr int kFirstTrial = 400;
// A first-order iteration streams through memory where the simplex method jumps: its work takes
// this share of the time.
constexpr double kStreamingShare = 0.3;
// A turn goes on while its end is expected within so many times the iterations made.
constexpr double kPatience = 4.0;
// Errors of a point that is near enough to an optimal basis.
constexpr double kTolerance = 1e-5;
// A variable this near to its bound is taken to be there, relative to the numbers.
constexpr double kRoom = 1e-5;

/// Places of the columns and of the logicals s = -(activity), within their bounds.
Vector<double> places(const LpProblem& lp, const Vector<double>& x) {
  Vector<double> place(lp.num_vars(), 0.0);
  for (int j = 0; j < lp.num_cols; ++j) {
    place[j] = std::clamp(x[j], lp.lower[j], std::max(lp.lower[j], lp.upper[j]));
    for (int k = lp.columns.start[j]; k < lp.columns.start[j + 1]; ++k) {
      place[lp.num_cols + lp.columns.index[k]] -= lp.columns.value[k] * place[j];
    }
  }
  for (int v = lp.num_cols; v < lp.num_vars(); ++v) {
    place[v] = std::clamp(place[v], lp.lower[v], std::max(lp.lower[v], lp.upper[v]));
  }
  return place;
}

}  // namespace

FirstOrderStart::FirstOrderStart(const Model& model, StopCheck& stop)
    : model_(model), stop_(stop), trial_(kFirstTrial) {
  const double nonzeros = model.matrix.num_nonzeros();
  work_per_iteration_ =
      FirstOrderMethod::work_per_iteration(model.num_rows, model.num_cols, nonzeros);
  due_ = kFirstTurn * work_per_iteration_;
}

bool FirstOrderStart::take_turn() {
  try {
    return find_point();
  } catch (const std::bad_alloc&) {  // the run goes on without
    method_.reset();
    due_ = kInf;
    return false;
  }
}

bool FirstOrderStart::find_point() {
  if (method_ == nullptr) method_ = make_owned<FirstOrderMethod>(make_columnwise_lp(model_), stop_);
  bool found = false;
  bool promising = true;
  for (; !found && promising; trial_ *= 2) {
    found = method_->run(kTolerance, trial_ / 2);
    const double error_at_half = method_->best_error();
    found = found || method_->run(kTolerance, trial_);
    promising = stop_.check() == 0 && is_promising(error_at_half);
  }
  due_ *= kTurnGrowth;
  return found;
}

/// The pace of the last half of the iterations would lead to the end soon.
bool FirstOrderStart::is_promising(double error_at_half) const {
  const double iterations = method_->iterations();
  const double gain = std::log(error_at_half / method_->best_error());
  const double missing = std::log(method_->best_error() / kTolerance);
  if (!(missing <= 2.0 * kPatience * gain)) return false;
  const double total = iterations * (1.0 + 0.5 * missing / gain);
  return total * work_per_iteration_ * kStreamingShare <= due_;
}

void FirstOrderStart::give_basis(WorkingLp& working) {
  const FirstOrderPoint point = method_->take_point();
  method_.reset();  // large
  const LpProblem lp = make_columnwise_lp(model_);
  VariableValues values;
  values.place = places(lp, point.x);
  const Vector<int> status = basis_of_values(lp, values, kRoom);
  for (int v = 0; v < lp.num_vars(); ++v) {
    values.place[v] *= working.scaling().variable_factor(v, lp.num_cols);
  }
  working.simplex().set_basis(status, values.place.data());
}

}  // namespace kelvo
