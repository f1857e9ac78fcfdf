// What random edits through the interface (tests/api/random_edits_test.cpp) do not show of the
// matrix: the areas of its columns, a failed append, how much room single insertions take.
#include "prob/model/column_store.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/memory.h"
#include "base/random.h"

namespace kelvo {
namespace {

void expect_sound(const ColumnStore& store) {
  Vector<char> owned(store.index.size(), 0);
  for (int j = 0; j < store.num_cols(); ++j) {
    ASSERT_LE(store.count[j], store.capacity[j]);
    for (int p = store.start[j]; p < store.start[j] + store.capacity[j]; ++p) {
      ASSERT_EQ(owned[p]++, 0) << "areas of columns overlap";
    }
    for (int p = store.start[j]; p < store.start[j] + store.count[j]; ++p) {
      EXPECT_EQ(store.find(store.index[p], j), p);
      if (store.ordered[j] != 0 && p > store.start[j]) {
        ASSERT_LT(store.index[p - 1], store.index[p]);
      }
    }
  }
}

/// Rows, some of them at a time, then an entry here and there.
void append_rows(ColumnStore& store, Random& random, int old_rows, int count) {
  Vector<int> begin, columns;
  for (int k = 0; k < count; ++k) {
    begin.push_back(static_cast<int>(columns.size()));
    for (int j = random.below(3); j < store.num_cols(); j += 1 + random.below(4)) {
      columns.push_back(j);
    }
  }
  const Vector<double> values(columns.size(), 2.5);
  store.append_rows(old_rows, count, begin.data(), static_cast<int>(columns.size()), columns.data(),
                    values.data());
}

TEST(ColumnStore, AreasOfColumnsNeverOverlap) {
  Random random(3);
  ColumnStore store;
  store.append_columns(30, nullptr, 0, nullptr, nullptr);
  for (int round = 0; round < 40; ++round) {
    append_rows(store, random, 10 * round, 10);
    Vector<Coefficient> list;
    for (int k = 0; k < 25; ++k) {
      const int row = random.below(10 * round + 10);
      store.set(row, random.below(30), random.below(3));
      list.push_back({row, random.below(5), 1.0 * random.below(3)});
    }
    store.set_list(list, 10 * round + 10);
    expect_sound(store);
    if (HasFatalFailure()) return;
  }
}

TEST(ColumnStore, AFailedAppendLeavesTheEntriesAsTheyWere) {
  for (const int count : {1, 30}) {
    for (int k = 0;; ++k) {
      Random random(7);
      ColumnStore store;
      store.append_columns(20, nullptr, 0, nullptr, nullptr);
      append_rows(store, random, 0, 20);
      const SparseMatrix before = store.compressed(20);
      fail_allocation_after(k);
      bool thrown = false;
      try {
        append_rows(store, random, 20, count);
      } catch (const std::bad_alloc&) {
        thrown = true;
      }
      fail_allocation_after(-1);
      if (!thrown) break;
      expect_sound(store);
      const SparseMatrix after = store.compressed(20);
      EXPECT_EQ(after.start, before.start);
      EXPECT_EQ(after.index, before.index);
      EXPECT_EQ(after.value, before.value);
    }
  }
}

TEST(ColumnStore, SettingARepeatedEntryLeavesOne) {
  ColumnStore store;
  const int begin[] = {0};
  const int rows[] = {4, 2, 4};
  const double values[] = {1, 2, 3};
  store.append_columns(1, begin, 3, rows, values);
  EXPECT_EQ(store.coefficient(4, 0), 1.0);
  store.set(4, 0, 7.0);
  EXPECT_EQ(store.count[0], 2);
  EXPECT_EQ(store.coefficient(4, 0), 7.0);
  store.set(4, 0, 0.0);
  EXPECT_EQ(store.count[0], 1);
  EXPECT_EQ(store.coefficient(2, 0), 2.0);
}

/// Inserting one by one must not copy the whole matrix again and again: the positions moved stay
/// proportional to the entries.
TEST(ColumnStore, SingleInsertionsAndListsKeepTheArraysSmall) {
  constexpr int kColumns = 50;
  constexpr int kRows = 400;
  ColumnStore store;
  store.append_columns(kColumns, nullptr, 0, nullptr, nullptr);
  for (int i = 0; i < kRows; ++i) {
    for (int j = 0; j < kColumns; ++j) store.set((i * 7) % kRows, j, 1.0 + i);
  }
  EXPECT_EQ(store.num_nonzeros(), kRows * kColumns);
  EXPECT_LE(store.index.size(), 6u * kRows * kColumns);
}

}  // namespace
}  // namespace kelvo
