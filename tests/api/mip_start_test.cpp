// MIP starts as data of a problem.
#include <cmath>
#include <map>
#include <optional>

#include "prob_fixture.h"

namespace {

struct Start {
  std::string name;
  int effort = 0;
  std::map<int, double> values;
  bool operator==(const Start&) const = default;
};

class MipStarts : public ProblemTest {
 protected:
  /// Four columns, the first two of them integer.
  MipStarts() {
    EXPECT_EQ(KLVnewcols(env, lp, 4, nullptr, nullptr, nullptr, "IBCC", nullptr), 0);
    check_data();
  }
  int add(const std::vector<Start>& starts, bool efforts = true) {
    std::vector<int> begin, index, effort;
    std::vector<double> value;
    std::vector<const char*> names;
    for (const Start& start : starts) {
      begin.push_back(static_cast<int>(index.size()));
      for (const auto& [j, x] : start.values) {
        index.push_back(j);
        value.push_back(x);
      }
      effort.push_back(start.effort);
      names.push_back(start.name.c_str());
    }
    return KLVaddmipstarts(env, lp, static_cast<int>(starts.size()), static_cast<int>(index.size()),
                           begin.data(), index.data(), value.data(),
                           efforts ? effort.data() : nullptr, names.data());
  }
  std::vector<Start> stored(KLVprob of = nullptr) {
    if (of == nullptr) of = lp;
    const int count = KLVgetnummipstarts(env, of);
    std::vector<Start> starts(count);
    if (count == 0) return starts;
    int surplus = 0, entries = 0;
    const int room = KLVgetmipstarts(env, of, &entries, nullptr, nullptr, nullptr, nullptr, 0,
                                     &surplus, 0, count - 1);
    EXPECT_EQ(room, surplus < 0 ? 1207 : 0);
    const int space = 1 - surplus;
    std::vector<int> begin(count), index(space), effort(count);
    std::vector<double> value(space);
    EXPECT_EQ(KLVgetmipstarts(env, of, &entries, begin.data(), index.data(), value.data(),
                              effort.data(), space, &surplus, 0, count - 1),
              0);
    EXPECT_EQ(surplus, 1);
    for (int k = 0; k < count; ++k) {
      char text[64] = "";
      char* name = nullptr;
      EXPECT_EQ(KLVgetmipstartname(env, of, &name, text, sizeof text, &surplus, k, k), 0);
      starts[k].name = text;
      starts[k].effort = effort[k];
      for (int p = begin[k]; p < (k + 1 < count ? begin[k + 1] : entries); ++p) {
        starts[k].values[index[p]] = value[p];
      }
    }
    return starts;
  }
};

TEST_F(MipStarts, AreAddedChangedAndDeleted) {
  ASSERT_EQ(add({{"a", 2, {{0, 1}, {3, 2.5}}}, {"", 0, {}}, {"a", 4, {{1, 1}}}}), 0);
  EXPECT_EQ(stored(),
            (std::vector<Start>{{"a", 2, {{0, 1}, {3, 2.5}}}, {"m2", 0, {}}, {"a", 4, {{1, 1}}}}));
  int index = -5;
  EXPECT_EQ(KLVgetmipstartindex(env, lp, "a", &index), 0);
  EXPECT_EQ(index, 0) << "the first of equal names";
  EXPECT_EQ(KLVgetmipstartindex(env, lp, "b", &index), 1210);
  EXPECT_EQ(take(errors), "");

  // Of two replacements of one start the later counts; without levels theirs stay.
  const int which[] = {2, 0, 2}, begin[] = {0, 1, 1}, columns[] = {0, 2};
  const double values[] = {7, 8};
  ASSERT_EQ(KLVchgmipstarts(env, lp, 3, which, 2, begin, columns, values, nullptr), 0);
  EXPECT_EQ(stored(), (std::vector<Start>{{"a", 2, {}}, {"m2", 0, {}}, {"a", 4, {{2, 8}}}}));
  ASSERT_EQ(KLVchgmipstart(env, lp, 2, columns, values), 0);
  EXPECT_EQ(stored()[0].values, (std::map<int, double>{{0, 7}, {2, 8}}));
  int count = 0, surplus = 0, columns_out[1];
  double values_out[1];
  EXPECT_EQ(KLVgetmipstart(env, lp, &count, columns_out, values_out, 1, &surplus), 1207);
  EXPECT_EQ((std::vector<int>{count, surplus, columns_out[0]}), (std::vector<int>{1, -1, 0}));

  int flags[] = {1, 0, 0};
  ASSERT_EQ(KLVdelsetmipstarts(env, lp, flags), 0);
  EXPECT_EQ((std::vector<int>{flags, flags + 3}), (std::vector<int>{-1, 0, 1}));
  EXPECT_EQ(stored(), (std::vector<Start>{{"m2", 0, {}}, {"a", 4, {{2, 8}}}}));
  ASSERT_EQ(KLVdelmipstarts(env, lp, 0, 0), 0);
  EXPECT_EQ(stored(), (std::vector<Start>{{"a", 4, {{2, 8}}}}));
  ASSERT_EQ(KLVcopymipstart(env, lp, 1, columns, values), 0);
  EXPECT_EQ(stored(), (std::vector<Start>{{"m1", 0, {{0, 7}}}}));
}

TEST_F(MipStarts, FollowTheColumns) {
  ASSERT_EQ(add({{"a", 1, {{0, 1}, {1, 2}, {3, 3}}}, {"b", 0, {{1, 1}}}}), 0);
  ASSERT_EQ(KLVnewcols(env, lp, 2, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  KLVprob copy = clone();
  ASSERT_EQ(KLVdelcols(env, lp, 1, 2), 0);
  EXPECT_EQ(stored(), (std::vector<Start>{{"a", 1, {{0, 1}, {1, 3}}}, {"b", 0, {}}}));
  EXPECT_EQ(stored(copy)[0].values.size(), 3u);
  EXPECT_EQ(KLVfreeprob(env, &copy), 0);
  // A type without integers hides them.
  ASSERT_EQ(KLVchgprobtype(env, lp, KLV_PROBTYPE_LP), 0);
  int index = 0;
  EXPECT_EQ(KLVgetmipstartindex(env, lp, "a", &index), 3003);
  ASSERT_EQ(KLVchgprobtype(env, lp, KLV_PROBTYPE_MILP), 0);
  EXPECT_EQ(stored().size(), 2u);
  // Another model ends them.
  ASSERT_EQ(KLVcopylp(env, lp, 0, 0, 1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                      nullptr, nullptr, nullptr, nullptr),
            0);
  EXPECT_EQ(KLVgetnummipstarts(env, lp), 0);
}

TEST_F(MipStarts, WrongArgumentsChangeNothing) {
  const int begin[] = {0, 1}, columns[] = {0, 1}, twice[] = {1, 1}, outside[] = {0, 4};
  const int falling[] = {1, 0}, negative[] = {0, -1}, which[] = {0}, no_start[] = {1};
  const double values[] = {1, 2}, bad[] = {1, std::nan("")};
  const char* const no_name[] = {"x", nullptr};
  const auto add_raw = [&](int count, int entries, const int* from, const int* j, const double* x,
                           const int* effort, const char* const* names) {
    return KLVaddmipstarts(env, lp, count, entries, from, j, x, effort, names);
  };
  const auto change = [&](const int* indices) {
    return KLVchgmipstarts(env, lp, 1, indices, 0, nullptr, nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(KLVchgmipstart(env, lp, 1, columns, values), 3020);
  EXPECT_EQ(KLVdelmipstarts(env, lp, 0, 0), 3020);
  ASSERT_EQ(add({{"a", 1, {{0, 1}}}}), 0);
  const std::vector<Start> before = stored();
  EXPECT_EQ((Codes{add_raw(-1, 0, begin, columns, values, nullptr, nullptr),
                   add_raw(1, -1, begin, columns, values, nullptr, nullptr),
                   add_raw(2, 2, nullptr, columns, values, nullptr, nullptr),
                   add_raw(2, 2, falling, columns, values, nullptr, nullptr),
                   add_raw(2, 2, begin, outside, values, nullptr, nullptr),
                   add_raw(1, 2, begin, twice, values, nullptr, nullptr),
                   add_raw(2, 2, begin, columns, bad, nullptr, nullptr),
                   add_raw(2, 2, begin, columns, values, negative, nullptr),
                   add_raw(2, 2, begin, columns, values, nullptr, no_name), change(no_start),
                   change(negative + 1), change(nullptr), KLVdelmipstarts(env, lp, 0, 1),
                   KLVdelsetmipstarts(env, lp, nullptr), KLVcopymipstart(env, lp, 2, twice, values),
                   KLVgetmipstartindex(env, lp, nullptr, nullptr)}),
            (Codes{1003, 1003, 1004, 1226, 1201, 1222, 1225, 1003, 1224, 1200, 1200, 1004, 1200,
                   1004, 1222, 1004}));
  EXPECT_EQ(add_raw(2, 2, begin, twice, values, nullptr, nullptr), 0) << "one in each start";
  EXPECT_EQ(KLVdelmipstarts(env, lp, 1, 2), 0);
  EXPECT_EQ(stored(), before);
  EXPECT_EQ(change(which), 0) << "no entries are left";
}

}  // namespace
