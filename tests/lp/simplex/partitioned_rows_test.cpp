// Rows of B^-1 A in plain and in compact storage.
#include "lp/simplex/state/partitioned_rows.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "lp/busy_lp.h"
#include "lp/simplex/state/reshape.h"

namespace kelvo {
namespace {

/// Three new rows, then three old ones leave, the first among them now and then.
void change_rows(Random& random, LpProblem& lp, PartitionedRows& rows, bool join) {
  if (join) {
    SparseMatrix lines;
    for (int k = 0; k < 3; ++k) {
      for (int j = random.below(9); j < lp.num_cols; j += 1 + random.below(9)) {
        lines.index.push_back(j);
        lines.value.push_back(random.uniform() + 0.1);
      }
      lines.start.push_back(static_cast<int>(lines.index.size()));
      ++lines.num_major;
    }
    reshape::append_minor_lines(lp.columns, lines);
    lp.num_rows += 3;
    rows.add_rows(lines);
    return;
  }
  Vector<int> list(1, random.below(3)), line_now, entry_now;
  list.push_back(list[0] + 1 + random.below(10));
  list.push_back(list[1] + 1 + random.below(10));
  for (int i = 0, kept = 0; i < lp.num_rows; ++i) {
    const bool leaves = std::find(list.begin(), list.end(), i) != list.end();
    line_now.push_back(leaves ? -1 : kept++);
  }
  reshape::erase_minor_lines(lp.columns, line_now, entry_now);
  lp.num_rows -= 3;
  rows.delete_rows(list, entry_now);
}

TEST(PartitionedRows, PlainAndCompactAgreeWithTheActiveColumns) {
  Random random(11);
  const int n = 60;
  int m = 30;
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
    if (round % 10 == 9) {
      const bool join = round % 20 == 9;
      Random same(random);
      change_rows(random, plain, plain_rows, join);
      change_rows(same, compact, compact_rows, join);
      m = plain.num_rows;
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
