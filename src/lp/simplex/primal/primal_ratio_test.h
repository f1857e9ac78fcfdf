// Choice of the leaving variable of the primal simplex method.
//
// The entering variable q moves by t >= 0 in direction s (+1 up, -1 down); the basic values follow
// as x_B(t) = x_B - t s alpha with alpha = B^-1 a_q.
//
// Phase two (Harris 1973): a first pass finds the largest step that violates no bound by more than
// the feasibility tolerance, a second one takes the largest pivot among the variables that block
// within that step.
//
// Phase one minimizes the sum of infeasibilities, which is piecewise linear in t: a step passes the
// points where basic variables become feasible or infeasible as long as the sum still decreases
// (Maros 1986), and the largest pivot among the last points passed blocks.
#pragma once

#include "base/containers.h"
#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

struct PrimalStep {
  enum class Kind {
    exchange,   // header[position] leaves at `leaving_at`
    flip,       // the entering variable reaches its own other bound first
    unlimited,  // nothing blocks
    no_pivot,   // something blocks, but with no acceptable pivot
  };
  Kind kind = Kind::unlimited;
  int position = -1;
  BasisStatus leaving_at = kAtLower;
  double length = 0.0;
};

class PrimalRatioTest {
 public:
  explicit PrimalRatioTest(SimplexState& state);

  /// `range`: how far the entering variable may move itself (infinite when it is not bounded on
  /// that side). `tolerance` is the working feasibility tolerance.
  PrimalStep phase_two(int direction, double range, double tolerance);
  /// `slope` > 0 is |d_q|, the rate at which the sum of infeasibilities decreases at t = 0.
  PrimalStep phase_one(int direction, double range, double tolerance, double slope);

 private:
  struct Breakpoint {
    double step;
    double pivot;  // magnitude
    int position;
    BasisStatus at;
  };
  void add_breakpoints(int position, double rate, double tolerance);
  double smallest_pivot() const;

  SimplexState& state_;
  Vector<Breakpoint> breakpoints_;  // scratch; capacity 2 m
};

}  // namespace kelvo
