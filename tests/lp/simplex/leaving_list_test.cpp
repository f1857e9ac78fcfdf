#include "lp/simplex/dual/leaving_list.h"

#include <gtest/gtest.h>

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
  state.basic_lower.assign(kRows, 0.0);
  state.basic_upper.assign(kRows, kInf);
  for (int k = 1; k < 200; ++k) {
    state.basic_value.assign(kRows, -0.1 * k);
    state.dual_weights.assign(kRows, 1.0 + k / 7.0);
    LeavingList list(state);
    list.rebuild();
    ASSERT_GE(list.choose(), 0) << k;
    state.basic_value[17] = -0.1 * k - 1.0;
    list.update(17);
    EXPECT_EQ(list.choose(), 17) << k;
  }
}

}  // namespace
}  // namespace kelvo
