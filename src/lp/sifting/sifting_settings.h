// What sifting depends on, beside the program.
#pragma once

#include <algorithm>

#include "lp/simplex/simplex.h"

namespace kelvo {

/// A number that grows with the number of rows.
struct PerRow {
  double factor;
  int constant;
  int of(int rows) const { return constant + static_cast<int>(std::min(factor * rows, 1e9)); }
};

struct SiftingSettings {
  /// Tolerances of the work programs; the iteration limit counts the iterations on all of them.
  /// Limits of the objective are not observed.
  SimplexSettings simplex;

  // A part of the columns is worth while from so many columns per row on: with fewer, the dual
  // method looks at few enough of them, and the primal method that the later passes need takes more
  // iterations. Few columns are no trouble in any case.
  double columns_per_row = 12.0;
  int fewest_columns = 10000;

  // A row whose limits the slack basis violates gets so many columns that can mend it, chosen by
  // row prices that so many passes over the cheapest columns of each row give.
  int first_per_row = 9;
  int priced_per_row = 80;
  int price_passes = 200;
  /// A first work program with a larger share of the columns gains nothing.
  double first_share = 0.4;

  // So many columns join in a pass, and so many may stay in the work program after it.
  PerRow joining{1.0, 200};
  PerRow staying{2.0, 1000};

  int pass_limit = 60;
  /// Work programs that remain infeasible soon are a sign that columns must fit together, as those
  /// of set partitioning do; reduced costs of single ones find no such combination.
  int infeasible_limit = 8;
  // Iterations: of the first pass, of the passes until one is feasible, of a pass after that.
  PerRow first_iterations{6.0, 100};
  PerRow infeasible_iterations{1.0, 100};
  PerRow pass_iterations{20.0, 100};
};

}  // namespace kelvo
