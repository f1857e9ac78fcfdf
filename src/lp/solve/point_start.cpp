#include "lp/solve/point_start.h"

#include "lp/crossover/basis_from_values.h"

namespace kelvo {

namespace {

// A variable this near to its bound is taken to be there, relative to the numbers.
constexpr double kRoom = 1e-5;

}  // namespace

void start_from_point(WorkingLp& working, Vector<double>&& x) {
  const LpProblem lp = working.unscaled_copy();
  VariableValues known;
  known.place = places_at(lp, std::move(x));
  LpStart start = basis_from_values(lp, known, kRoom);
  start.x.assign(known.place.begin(), known.place.begin() + lp.num_cols);
  working.start_from(start);
}

}  // namespace kelvo
