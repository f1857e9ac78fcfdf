// What the first-order method and its turns depend on.
#pragma once

namespace kelvo {

struct FirstOrderSettings {
  /// Errors of a point that is near enough to an optimal basis.
  double tolerance = 1e-5;

  // Turns beside a simplex run. The first comes when the run has done the work of so many
  // first-order iterations, the next ones when it has done this many times as much as at the turn
  // before.
  double first_turn = 1500.0;
  double turn_growth = 4.0;
  /// Iterations after which the pace is judged for the first time.
  int first_trial = 400;
  /// A first-order iteration streams through memory where the simplex method jumps: its work takes
  /// this share of the time.
  double streaming_share = 0.3;
  /// A turn is continued while its end is expected within so many times the iterations made.
  double patience = 4.0;

  int display = 0;  // 0: it says nothing
};

}  // namespace kelvo
