// Running averages of the densities of solve results, one per kind of right-hand side; they
// predict the next one of the kind. In [0, 1].
#pragma once

namespace kelvo {

struct SolveDensities {
  double pivot_btran = 0.0;   // e_p'B^-1
  double pivot_row = 0.0;     // movable entries of e_p'B^-1 [A I]
  double entering = 0.0;      // B^-1 a_q
  double steepest = 0.0;      // B^-1 of a row of the inverse
  double flips = 0.0;         // B^-1 of the flipped columns' sum
  double primal_btran = 0.0;  // transposed solves of primal pricing
  /// Moves an average towards a new observation.
  static void observe(double& average, double density) {
    average += kDensityMemory * (density - average);
  }
  static constexpr double kDensityMemory = 0.05;  // weight of the newest observation
};

}  // namespace kelvo
