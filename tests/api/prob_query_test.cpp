#include "prob_fixture.h"

namespace {

using ProblemQuery = ProblemTest;

/// Calls KLVgetrows or KLVgetcols with `space`, keeping what it stored.
struct MatrixCall {
  int count = -9, surplus = -9;
  int begin[3] = {-9, -9, -9}, index[8];
  double value[8];
};

TEST_F(ProblemQuery, MatricesFollowTheSurplusConvention) {
  load_small();
  for (const auto get : {KLVgetcols, KLVgetrows}) {
    MatrixCall c;
    take(errors);
    EXPECT_EQ(get(env, lp, &c.count, c.begin, nullptr, nullptr, 0, &c.surplus, 0, 2), 1207);
    EXPECT_EQ(errors, "") << "asking for the room prints nothing";
    EXPECT_EQ(c.surplus, -6);
    EXPECT_EQ(c.count, 0);
    EXPECT_EQ(std::vector<int>(c.begin, c.begin + 3), (std::vector<int>{0, 0, 0}));

    EXPECT_EQ(get(env, lp, &c.count, c.begin, c.index, c.value, 5, &c.surplus, 0, 2), 1207);
    EXPECT_EQ(take(errors), "KELVO Error  1207: Insufficient array length.\n");
    EXPECT_EQ(c.surplus, -1);
    EXPECT_EQ(c.count, 5);
    EXPECT_EQ(std::vector<int>(c.begin, c.begin + 3), (std::vector<int>{0, 2, 4}));

    EXPECT_EQ(get(env, lp, &c.count, c.begin, c.index, c.value, 3, &c.surplus, 0, 2), 1207);
    EXPECT_EQ(std::vector<int>(c.begin, c.begin + 3), (std::vector<int>{0, 2, 3}))
        << "starts count what was written";

    EXPECT_EQ(get(env, lp, &c.count, c.begin, c.index, c.value, 0, nullptr, 0, 2), 1004);
    EXPECT_EQ(get(env, lp, &c.count, c.begin, nullptr, c.value, 8, &c.surplus, 0, 2), 1004);
    EXPECT_EQ(get(env, lp, &c.count, c.begin, c.index, c.value, -1, &c.surplus, 0, 2), 1003);
    EXPECT_EQ(get(env, lp, &c.count, c.begin, nullptr, nullptr, 0, &c.surplus, 1, 0), 0);
    EXPECT_EQ(get(env, lp, &c.count, c.begin, c.index, c.value, 8, &c.surplus, 1, 3), 1200);
    EXPECT_EQ(c.surplus, 0);
  }
}

TEST_F(ProblemQuery, RowsComeInColumnOrder) {
  load_small();
  ASSERT_EQ(KLVchgcoef(env, lp, 1, 0, 4.0), 0);
  MatrixCall c;
  EXPECT_EQ(KLVgetrows(env, lp, &c.count, c.begin, c.index, c.value, 8, &c.surplus, 1, 1), 0);
  EXPECT_EQ(c.count, 3);
  EXPECT_EQ(c.surplus, 5);
  EXPECT_EQ(std::vector<int>(c.index, c.index + 3), (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(std::vector<double>(c.value, c.value + 3), (std::vector<double>{4, 1, -1}));
  EXPECT_EQ(KLVgetrows(env, lp, &c.count, c.begin, c.index, c.value, 8, &c.surplus, 1, 2), 0);
  EXPECT_EQ(c.count, 5);
  EXPECT_EQ(std::vector<int>(c.begin, c.begin + 2), (std::vector<int>{0, 3}));
  EXPECT_EQ(std::vector<int>(c.index, c.index + 5), (std::vector<int>{0, 1, 2, 0, 2}));
  EXPECT_EQ(std::vector<double>(c.value, c.value + 5), (std::vector<double>{4, 1, -1, 1, 5}));
}

TEST_F(ProblemQuery, VectorsCheckTheRangeThenThePointer) {
  load_small();
  double values[3] = {-9, -9, -9};
  EXPECT_EQ(KLVgetub(env, lp, values, 1, 2), 0);
  EXPECT_EQ(values[0], 1e20);
  EXPECT_EQ(values[1], 7.0);
  EXPECT_EQ(values[2], -9.0);
  take(errors);
  EXPECT_EQ(KLVgetub(env, lp, nullptr, -1, 0), 1200);
  EXPECT_EQ(take(errors),
            "KELVO Error  1205: KLVgetub: 'begin' value -1 is less than 0.\n"
            "KELVO Error  1200: Index is outside range of valid values.\n");
  EXPECT_EQ(KLVgetub(env, lp, nullptr, 0, 0), 1004);
  EXPECT_EQ(KLVgetrhs(env, lp, values, 0, 3), 1200);
  EXPECT_EQ(KLVgetlb(env, lp, values, 1, 0), 0);
}

TEST_F(ProblemQuery, OneCoefficientByPlace) {
  load_small();
  double v = 0;
  const auto get = [&](int i, int j) {
    EXPECT_EQ(KLVgetcoef(env, lp, i, j, &v), 0);
    return v;
  };
  EXPECT_EQ(get(2, 2), 5.0);
  EXPECT_EQ(get(0, 2), 0.0);
  EXPECT_EQ(get(-1, 1), 2.0);
  EXPECT_EQ(get(1, -1), 1.0);
  EXPECT_EQ(get(2, -2), 6.0);
  EXPECT_EQ(KLVgetcoef(env, lp, -2, 0, &v), 1200);
  EXPECT_EQ(KLVgetcoef(env, lp, -1, -1, &v), 1200);
  EXPECT_EQ(KLVgetcoef(env, lp, 0, 3, &v), 1200);
  EXPECT_EQ(KLVgetcoef(env, lp, 0, 0, nullptr), 1004);
}

TEST_F(ProblemQuery, NamesAndTheirRoom) {
  char buffer[16];
  char* names[3];
  int surplus = 0;
  EXPECT_EQ(KLVgetrowname(env, lp, names, buffer, 16, &surplus, 0, -1), 1219);
  EXPECT_EQ(KLVgetprobname(env, lp, nullptr, 0, &surplus), 1207);
  EXPECT_EQ(surplus, -5);
  EXPECT_EQ(KLVgetprobname(env, lp, buffer, 3, &surplus), 1207);
  EXPECT_EQ(surplus, -2);
  EXPECT_EQ(std::string(buffer, 3), "tes");
  EXPECT_EQ(KLVgetprobname(env, lp, nullptr, 9, &surplus), 1004);
  EXPECT_EQ(KLVgetobjname(env, lp, buffer, 16, &surplus), 1219);
  EXPECT_EQ(KLVcopyobjname(env, lp, "cost"), 0);
  EXPECT_EQ(KLVgetobjname(env, lp, buffer, 16, &surplus), 0);
  EXPECT_STREQ(buffer, "cost");

  load_small();
  take(errors);
  EXPECT_EQ(KLVgetrowname(env, lp, nullptr, nullptr, 0, &surplus, 0, 2), 1207);
  EXPECT_EQ(surplus, -19);
  EXPECT_EQ(errors, "");
  EXPECT_EQ(KLVgetrowname(env, lp, names, buffer, 8, &surplus, 0, 2), 1207);
  EXPECT_EQ(surplus, -11);
  EXPECT_STREQ(names[0], "first");
  EXPECT_EQ(std::string(names[1], 2), "se");
  EXPECT_EQ(names[2], nullptr) << "it does not start within the store";
}

TEST_F(ProblemQuery, LookingUpNames) {
  int index = -9;
  EXPECT_EQ(KLVgetcolindex(env, lp, "a", &index), 1219);
  load_small();
  EXPECT_EQ(KLVgetcolindex(env, lp, "c", &index), 0);
  EXPECT_EQ(index, 2);
  take(errors);
  EXPECT_EQ(KLVgetcolindex(env, lp, "C", &index), 1210);
  EXPECT_EQ(errors, "");
  EXPECT_EQ(KLVgetrowindex(env, lp, nullptr, &index), 1004);

  // Look-ups see every change of names; the first of equal names counts.
  EXPECT_EQ(KLVchgname(env, lp, 'c', 1, "new"), 0);
  EXPECT_EQ(KLVgetcolindex(env, lp, "b", &index), 1210);
  EXPECT_EQ(KLVgetcolindex(env, lp, "new", &index), 0);
  EXPECT_EQ(index, 1);
  EXPECT_EQ(KLVchgname(env, lp, 'c', 0, "c"), 0);
  EXPECT_EQ(KLVgetcolindex(env, lp, "c", &index), 0);
  EXPECT_EQ(index, 0);
  EXPECT_EQ(KLVgetcolindex(env, lp, "a", &index), 1210);
  EXPECT_EQ(KLVdelcols(env, lp, 0, 0), 0);
  EXPECT_EQ(KLVgetcolindex(env, lp, "c", &index), 0);
  EXPECT_EQ(index, 1);
  const char* more[] = {"later"};
  EXPECT_EQ(KLVgetrowindex(env, lp, "later", &index), 1210);
  EXPECT_EQ(KLVnewrows(env, lp, 1, nullptr, nullptr, nullptr, more), 0);
  EXPECT_EQ(KLVgetrowindex(env, lp, "later", &index), 0);
  EXPECT_EQ(index, 3);
  EXPECT_EQ(KLVdelnames(env, lp), 0);
  EXPECT_EQ(KLVgetrowindex(env, lp, "later", &index), 1219);
}

TEST_F(ProblemQuery, RenamingGivesTheOthersDefaultNames) {
  ASSERT_EQ(KLVnewcols(env, lp, 3, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(KLVchgname(env, lp, 'x', 0, "y"), 0);
  EXPECT_TRUE(image().col_names.empty());
  EXPECT_EQ(KLVchgname(env, lp, 'x', 0, nullptr), 1004);
  EXPECT_EQ(KLVchgname(env, lp, 'c', 1, "y"), 0);
  EXPECT_EQ(image().col_names, (std::vector<std::string>{"x1", "y", "x3"}));
  const int columns[] = {2, 0};
  const char* names[] = {"a much longer name than before", ""};
  EXPECT_EQ(KLVchgcolname(env, lp, 2, columns, names), 0);
  EXPECT_EQ(image().col_names, (std::vector<std::string>{"", "y", names[0]}));
  take(errors);
  EXPECT_EQ(KLVchgname(env, lp, 'r', 0, "z"), 1203);
  EXPECT_EQ(take(errors), "KELVO Error  1203: Row index 0 out of range.\n");
}

}  // namespace
