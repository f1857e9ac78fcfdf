// Rows of B^-1 A in plain and in compact storage.
#include "lp/simplex/state/partitioned_rows.h"

#include <gtest/gtest.h>

#include "lp/busy_lp.h"

namespace kelvo {
namespace {

TEST(PartitionedRows, PlainAndCompactAgreeWithTheActiveColumns) {
  Random random(11);
  const int m = 30, n = 60;
  LpProblem plain = test::busy_lp(random, m, n);
  LpProblem compact(plain);
  compact.compact = true;
  PartitionedRows plain_rows(plain), compact_rows(compact);
  for (int round = 0; round < 200; ++round) {
    for (int change = 0; change < 10; ++change) {
      const int j = random.below(n);
      const bool active = random.below(2) == 0;
      for (PartitionedRows* rows : {&plain_rows, &compact_rows}) {
        active ? rows->activate(j) : rows->deactivate(j);
      }
    }
    // Few and many weights, few and many results expected: each way of multiplying.
    WorkVector weights(m);
    const int count = round % 2 == 0 ? 3 : m;
    for (int k = 0; k < count; ++k) {
      const int i = count == m ? k : k * 7 + random.below(7);
      weights.insert(i, random.uniform() - 0.5);
    }
    const double expected_density = round % 4 < 2 ? 0.01 : 0.9;
    WorkVector from_plain(n), from_compact(n);
    plain_rows.multiply(weights, expected_density, from_plain);
    compact_rows.multiply(weights, expected_density, from_compact);
    EXPECT_EQ(from_plain.count, from_compact.count);
    for (int j = 0; j < n; ++j) {
      double sum = 0.0;
      for (int k = plain.columns.start[j]; k < plain.columns.start[j + 1]; ++k) {
        if (!plain_rows.is_active(j)) break;
        sum += weights.value[plain.columns.index[k]] * plain.columns.value[k];
      }
      EXPECT_NEAR(from_plain.value[j], sum, 1e-12);
      EXPECT_NEAR(from_compact.value[j], sum, 1e-12);
    }
  }
}

}  // namespace
}  // namespace kelvo
