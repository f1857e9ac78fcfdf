#include "lp/simplex/dual/leaving_list.h"

#include <gtest/gtest.h>

#include <cmath>

#include "lp/simplex/simplex_support.h"
#include "lp/small_model.h"
#include "lp/solve/conversion.h"

namespace kelvo {
namespace {

/// Many positions of one merit: rounding must not shut all of them out of the short list.
TEST(LeavingList, FindsAPositionAmongManyEqualOnes) {
  constexpr int kRows = 400;
  Model model = test::small_model(1, {1}, {});
  model.num_rows = kRows;
  model.rhs.assign(kRows, 1.0);
  model.row_sense.assign(kRows, 'L');
  LpProblem lp = with_rows(make_lp(model));
  SimplexState state(lp);
  state.set_slack_basis();
  state.basics.lower.assign(kRows, 0.0);
  state.basics.upper.assign(kRows, kInf);
  for (int k = 1; k < 200; ++k) {
    state.basics.value.assign(kRows, -0.1 * k);
    state.weights.dual.assign(kRows, 1.0 + k / 7.0);
    LeavingList list(state);
    list.rebuild();
    ASSERT_GE(list.choose(), 0) << k;
    state.basics.value[17] = -0.1 * k - 1.0;
    list.update(17);
    EXPECT_EQ(list.choose(), 17) << k;
  }
}

/// The short list never hides the best position, however values and weights change.
TEST(LeavingList, ChoosesAsAScanOfAllPositionsDoes) {
  constexpr int kRows = 900;
  LpProblem lp = test::dense_lp({{1, 0, 1}}, std::vector(kRows, std::vector<double>{1.0}),
                                std::vector(kRows, std::pair(0.0, kInf)));
  SimplexState state(lp);
  state.set_slack_basis();
  state.basics.lower.assign(kRows, 0.0);
  state.basics.upper.assign(kRows, kInf);
  Random random(5);
  const auto change = [&](int p) {
    state.basics.value[p] = random.below(4) == 0 ? 1.0 : -std::exp(8.0 * random.uniform());
    state.weights.dual[p] = std::exp(6.0 * random.uniform());
  };
  const auto merit = [&](int p) {
    const double x = std::min(state.basics.value[p], 0.0);
    return x * x / state.weights.dual[p];
  };
  for (int p = 0; p < kRows; ++p) change(p);
  LeavingList list(state);
  list.rebuild();
  for (int k = 0; k < 1000; ++k) {
    const int chosen = list.choose();
    ASSERT_GE(chosen, 0);
    double best = 0.0;
    for (int p = 0; p < kRows; ++p) best = std::max(best, merit(p));
    ASSERT_GE(merit(chosen), best * (1.0 - 1e-10)) << "choice " << k;
    state.basics.value[chosen] = 0.0;
    list.update(chosen);
    for (int change_count = random.below(6); change_count > 0; --change_count) {
      const int p = random.below(kRows);
      change(p);
      list.update(p);
    }
  }
}

}  // namespace
}  // namespace kelvo
