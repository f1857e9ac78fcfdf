#include "lp/solve/first_order_start.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

#include "lp/crossover/basis_from_values.h"

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

}  // namespace

FirstOrderStart::FirstOrderStart(WorkingLp& working, StopCheck& stop)
    : working_(working), stop_(stop), trial_(kFirstTrial) {
  const LpProblem& lp = working.lp();
  work_per_iteration_ = FirstOrderMethod::work_per_iteration(
      lp.num_rows, lp.num_cols, static_cast<double>(lp.columns.index.size()));
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
  if (method_ == nullptr) {
    method_ = make_owned<FirstOrderMethod>(working_.unscaled_copy(), stop_);
  }
  bool found = false;
  bool promising = true;
  for (; !found && promising; trial_ *= 2) {
    found = method_->run(kTolerance, trial_ / 2);
    const double error_at_half = method_->best_error();
    found = found || method_->run(kTolerance, trial_);
    promising = !stop_.requested() && is_promising(error_at_half);
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

void FirstOrderStart::give_basis() {
  FirstOrderPoint point = method_->take_point();
  method_.reset();  // large
  const LpProblem lp = working_.unscaled_copy();
  VariableValues known;
  known.place = places_at(lp, std::move(point.x));
  LpStart start = basis_from_values(lp, known, kRoom);
  start.x.assign(known.place.begin(), known.place.begin() + lp.num_cols);
  working_.start_from(start);
}

}  // namespace kelvo
