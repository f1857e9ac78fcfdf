#include "prob/model/column_store.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

#include "base/memory.h"

namespace kelvo {
namespace {

/// The same matrix as a map from places to values; explicit zeros are entries.
struct Reference {
  int rows = 0;
  int cols = 0;
  std::map<std::pair<int, int>, double> entries;  // (column, row)

  void set(int row, int col, double v) {
    if (v == 0.0) {
      entries.erase({col, row});
    } else {
      entries[{col, row}] = v;
    }
  }
  template <class NewPlace>
  void renumber(NewPlace new_place) {
    std::map<std::pair<int, int>, double> old;
    old.swap(entries);
    for (const auto& [place, v] : old) {
      const std::pair<int, int> to = new_place(place.first, place.second);
      if (to.first >= 0 && to.second >= 0) entries[to] = v;
    }
  }
};

void expect_same(const ColumnStore& store, const Reference& reference) {
  ASSERT_EQ(store.num_cols(), reference.cols);
  ASSERT_EQ(store.num_nonzeros(), static_cast<std::int64_t>(reference.entries.size()));
  std::vector<char> owned(store.index.size(), 0);
  for (int j = 0; j < store.num_cols(); ++j) {
    ASSERT_LE(store.count[j], store.capacity[j]);
    for (int p = store.start[j]; p < store.start[j] + store.capacity[j]; ++p) {
      ASSERT_EQ(owned[p]++, 0) << "areas of columns overlap";
    }
    for (int p = store.start[j]; p < store.start[j] + store.count[j]; ++p) {
      const auto it = reference.entries.find({j, store.index[p]});
      ASSERT_NE(it, reference.entries.end());
      EXPECT_EQ(store.value[p], it->second);
      EXPECT_EQ(store.find(store.index[p], j), p);
      if (store.ordered[j] != 0 && p > store.start[j]) {
        ASSERT_LT(store.index[p - 1], store.index[p]);
      }
    }
  }
}

class RandomEdits {
 public:
  explicit RandomEdits(unsigned seed) : random_(seed) {}

  int below(int n) { return n <= 0 ? 0 : static_cast<int>(random_() % n); }
  double number() { return 1.0 + below(1000); }

  void append_columns() {
    const int columns = below(4);
    std::vector<int> begin, rows;
    std::vector<double> values;
    for (int k = 0; k < columns; ++k) {
      begin.push_back(static_cast<int>(rows.size()));
      for (const int i : some_of(reference.rows)) {
        rows.push_back(i);
        values.push_back(number());
        reference.entries[{reference.cols + k, i}] = values.back();
      }
    }
    store.append_columns(columns, below(5) == 0 && rows.empty() ? nullptr : begin.data(),
                         static_cast<int>(rows.size()), rows.data(), values.data());
    reference.cols += columns;
  }

  void append_rows(int count) {
    std::vector<int> begin, cols;
    std::vector<double> values;
    for (int k = 0; k < count; ++k) {
      begin.push_back(static_cast<int>(cols.size()));
      for (const int j : some_of(reference.cols)) {
        cols.push_back(j);
        values.push_back(below(20) == 0 ? 0.0 : number());
        reference.entries[{j, reference.rows + k}] = values.back();
      }
    }
    store.append_rows(reference.rows, count, begin.data(), static_cast<int>(cols.size()),
                      cols.data(), values.data());
    reference.rows += count;
  }

  void set_one() {
    if (reference.rows == 0 || reference.cols == 0) return;
    const int i = below(reference.rows);
    const int j = below(reference.cols);
    const double v = below(3) == 0 ? 0.0 : number();
    store.set(i, j, v);
    reference.set(i, j, v);
  }

  void set_list(int count) {
    if (reference.rows == 0 || reference.cols == 0) return;
    Vector<Coefficient> list;
    for (int k = 0; k < count; ++k) {
      // Few columns, so that duplicates and long runs occur.
      const Coefficient c{below(reference.rows), below(std::min(reference.cols, 5)),
                          below(3) == 0 ? 0.0 : number()};
      list.push_back(c);
      reference.set(c.row, c.column, c.value);
    }
    store.set_list(list, reference.rows);
  }

  void delete_some(bool columns) {
    const int n = columns ? reference.cols : reference.rows;
    std::vector<int> new_index(n + 1, -1);
    int kept = 0;
    for (int k = 0; k < n; ++k) new_index[k] = below(6) == 0 ? -1 : kept++;
    if (columns) {
      store.delete_columns(new_index.data());
      reference.cols = kept;
      reference.renumber([&](int j, int i) { return std::pair(new_index[j], i); });
    } else {
      store.delete_rows(new_index.data());
      reference.rows = kept;
      reference.renumber([&](int j, int i) { return std::pair(j, new_index[i]); });
    }
  }

  ColumnStore store;
  Reference reference;

 private:
  /// Distinct indices, sometimes ascending.
  std::vector<int> some_of(int n) {
    std::vector<int> all;
    for (int i = 0; i < n; ++i) {
      if (below(3) == 0) all.push_back(i);
    }
    if (below(2) == 0) std::shuffle(all.begin(), all.end(), random_);
    return all;
  }
  std::mt19937 random_;
};

TEST(ColumnStore, RandomEditsAgreeWithAMap) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    RandomEdits edits(seed);
    for (int step = 0; step < 120; ++step) {
      switch (edits.below(7)) {
        case 0:
          edits.append_columns();
          break;
        case 1:
          edits.append_rows(1);
          break;
        case 2:
          edits.append_rows(edits.below(20));
          break;
        case 3:
          edits.set_list(1 + edits.below(60));
          break;
        case 4:
          edits.delete_some(edits.below(2) == 0);
          break;
        default:
          edits.set_one();
          break;
      }
      expect_same(edits.store, edits.reference);
      if (HasFatalFailure()) return;
    }
    const SparseMatrix copy = edits.store.compressed(edits.reference.rows);
    ASSERT_EQ(copy.num_nonzeros(), static_cast<int>(edits.reference.entries.size()));
    ColumnStore again;
    again.assign(SparseMatrix(copy));
    expect_same(again, edits.reference);
  }
}

TEST(ColumnStore, AFailedAppendLeavesTheEntriesAsTheyWere) {
  for (const bool many : {false, true}) {
    for (int k = 0;; ++k) {
      RandomEdits edits(7);
      for (int step = 0; step < 12; ++step) edits.append_columns();
      edits.append_rows(20);
      const Reference before = edits.reference;
      fail_allocation_after(k);
      bool thrown = false;
      try {
        edits.append_rows(many ? 30 : 1);
      } catch (const std::bad_alloc&) {
        thrown = true;
      }
      fail_allocation_after(-1);
      if (!thrown) break;
      expect_same(edits.store, before);
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
