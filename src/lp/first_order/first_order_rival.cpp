#include "lp/first_order/first_order_rival.h"

#include <cmath>
#include <new>

namespace kelvo {

FirstOrderRival::FirstOrderRival(const LpProblem& lp, const Scaling& scaling,
                                 const FirstOrderSettings& settings, StopCheck& stop)
    : lp_(lp),
      scaling_(scaling),
      settings_(settings),
      stop_(stop),
      work_per_iteration_(FirstOrderMethod::work_per_iteration(
          lp.num_rows, lp.num_cols, static_cast<double>(lp.columns.index.size()))),
      due_(settings.first_turn * work_per_iteration_),
      trial_(settings.first_trial) {}

bool FirstOrderRival::take_turn() {
  try {
    return find_point();
  } catch (const std::bad_alloc&) {  // the run continues without
    method_.reset();
    due_ = kInf;
    return false;
  }
}

bool FirstOrderRival::find_point() {
  if (method_ == nullptr) {
    LpProblem copy(lp_);
    Scaling factors(scaling_);
    unscale_problem(copy, factors);
    method_ = make_owned<FirstOrderMethod>(std::move(copy), stop_);
  }
  bool found = false;
  bool promising = true;
  for (; !found && promising; trial_ *= 2) {
    found = method_->run(settings_.tolerance, trial_ / 2);
    const double error_at_half = method_->best_error();
    found = found || method_->run(settings_.tolerance, trial_);
    promising = !stop_.requested() && is_promising(error_at_half);
  }
  due_ *= settings_.turn_growth;
  return found;
}

/// The pace of the last half of the iterations would lead to the end soon.
bool FirstOrderRival::is_promising(double error_at_half) const {
  const double iterations = method_->iterations();
  const double gain = std::log(error_at_half / method_->best_error());
  const double missing = std::log(method_->best_error() / settings_.tolerance);
  if (!(missing <= 2.0 * settings_.patience * gain)) return false;
  const double total = iterations * (1.0 + 0.5 * missing / gain);
  return total * work_per_iteration_ * settings_.streaming_share <= due_;
}

FirstOrderPoint FirstOrderRival::take_point() {
  FirstOrderPoint point = method_->take_point();
  method_.reset();  // large
  due_ = kInf;
  return point;
}

}  // namespace kelvo
