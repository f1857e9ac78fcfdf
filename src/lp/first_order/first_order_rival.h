// An approximate solution, found while a simplex run takes long.
//
// The first-order method works in turns: the first when the run has done much work, the next ones
// whenever that work has multiplied. A turn is continued while the errors fall at a pace that
// promises an end soon, and no longer than the run itself has taken. So it costs little where it
// cannot help, and where bases are hard it ends the run early.
#pragma once

#include "lp/first_order/first_order.h"
#include "lp/first_order/first_order_settings.h"
#include "lp/form/scaling.h"
#include "lp/simplex/run_context.h"

namespace kelvo {

class FirstOrderRival final : public Rival {
 public:
  /// `lp` is the program of the run, scaled by `scaling`. All must outlive the object.
  FirstOrderRival(const LpProblem& lp, const Scaling& scaling, const FirstOrderSettings& settings,
                  StopCheck& stop);

  double due() const override { return due_; }
  bool take_turn() override;

  /// After a turn that ended the run: the point, in the units of the unscaled program. The object
  /// is of no further use.
  FirstOrderPoint take_point();

 private:
  bool find_point();
  bool is_promising(double error_at_half) const;

  const LpProblem& lp_;
  const Scaling& scaling_;
  const FirstOrderSettings& settings_;
  StopCheck& stop_;
  double work_per_iteration_ = 0.0;
  double due_;                      // in the run's work
  int trial_;                       // iterations after which the pace is judged next
  Owned<FirstOrderMethod> method_;  // from the first turn on
};

}  // namespace kelvo
