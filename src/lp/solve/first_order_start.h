// A start basis from an approximate solution, found while a simplex run takes long.
//
// The first-order method works in turns: the first when the run has done much work, the next ones
// whenever that work has multiplied. A turn goes on while the errors fall at a pace that promises
// an end soon, and no longer than the run itself has taken. So it costs little where it cannot
// help, and where bases are hard it ends the run early. The primal method finishes from the point
// found: variables off their bounds are basic, as far as they are independent, and superbasic
// otherwise.
#pragma once

#include "lp/first_order/first_order.h"
#include "lp/solve/working_lp.h"

namespace kelvo {

class FirstOrderStart final : public Rival {
 public:
  /// Working LP and stop check must outlive the object.
  FirstOrderStart(WorkingLp& working, StopCheck& stop);

  double due() const override { return due_; }
  bool take_turn() override;

  /// After a turn that ended the run: gives basis and point to the working LP.
  void give_basis();

 private:
  bool find_point();
  bool is_promising(double error_at_half) const;

  WorkingLp& working_;
  StopCheck& stop_;
  double work_per_iteration_ = 0.0;
  double due_ = kInf;               // in the run's work
  int trial_;                       // iterations after which the pace is judged next
  Owned<FirstOrderMethod> method_;  // from the first turn on
};

}  // namespace kelvo
