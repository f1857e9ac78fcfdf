// Column types, problem types, special ordered sets, indicator constraints, cuts and orders.
#include "prob_fixture.h"

namespace {

class IntegerData : public ProblemTest {
 protected:
  /// Columns with bounds 0..10.
  void load_columns(int count) {
    const std::vector<double> upper(count, 10.0);
    ASSERT_EQ(KLVnewcols(env, lp, count, nullptr, nullptr, upper.data(), nullptr, nullptr), 0);
  }
  std::string types() {
    std::string text(KLVgetnumcols(env, lp) + 1, '\0');
    const int code = KLVgetctype(env, lp, text.data(), 0, KLVgetnumcols(env, lp) - 1);
    text.pop_back();
    return code == 0 ? text : std::to_string(code);
  }
  /// Index of a named set, or the code of the failure, negative.
  int index_of(const char* name) {
    int at = -1;
    const int code = KLVgetsosindex(env, lp, name, &at);
    return code == 0 ? at : -code;
  }
};

TEST_F(IntegerData, TypesMakeAProblemMixedInteger) {
  load_columns(5);
  EXPECT_EQ(types(), "3003");
  EXPECT_EQ(take(errors), "KELVO Error  3003: Not a mixed-integer problem.\n");
  EXPECT_EQ(KLVgetnumbin(env, lp) + KLVgetnumbin(env, nullptr), 0);
  EXPECT_EQ(KLVcopyctype(env, lp, "CBISN"), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 1);
  EXPECT_EQ(types(), "CBISN");
  for (const auto count : {&KLVgetnumbin, &KLVgetnumint, &KLVgetnumsemicont, &KLVgetnumsemiint}) {
    EXPECT_EQ(count(env, lp), 1);
  }
  std::string part(3, '?');
  EXPECT_EQ(KLVgetctype(env, lp, part.data(), 1, 3), 0);
  EXPECT_EQ(part, "BIS");
  EXPECT_EQ(KLVgetctype(env, lp, part.data(), 0, 5), 1200);
  EXPECT_EQ(KLVgetctype(env, lp, nullptr, 0, 1), 1004);
  const int columns[] = {4, 0};
  EXPECT_EQ(KLVchgctype(env, lp, 2, columns, "BI"), 0);
  EXPECT_EQ(types(), "IBISB");
  take(errors);
  EXPECT_EQ(KLVchgctype(env, lp, 2, columns, "Bx"), 3021);
  EXPECT_EQ(KLVcopyctype(env, lp, "CCCCc"), 3021);
  const int bad[] = {0, 5};
  EXPECT_EQ(KLVchgctype(env, lp, 2, bad, "BB"), 1201);
  EXPECT_EQ(take(errors),
            "KELVO Error  3021: Illegal ctype entry 1.\n"
            "KELVO Error  3021: Illegal ctype entry 4.\n"
            "KELVO Error  1201: Column index 5 out of range.\n");
  EXPECT_EQ(KLVchgctype(env, lp, -1, columns, "B"), 1003);
  EXPECT_EQ(KLVchgctype(env, lp, 0, nullptr, nullptr), 0);
  EXPECT_EQ(KLVchgctype(env, lp, 1, columns, nullptr), 1004);
  EXPECT_EQ(KLVcopyctype(env, lp, nullptr), 1004);
  EXPECT_EQ(KLVcopyctype(env, nullptr, "C"), 1009);
  EXPECT_EQ(types(), "IBISB");
}

TEST_F(IntegerData, BoundsOfIntegerColumnsAreRoundedInward) {
  const double lower[] = {0.5, 2.0000000001, 0.5, -0.4, -1e20},
               upper[] = {3.7, 4, 3.7, 0, 2.0000000001};
  ASSERT_EQ(KLVnewcols(env, lp, 5, nullptr, lower, upper, nullptr, nullptr), 0);
  const int second = 1, third = 2;
  EXPECT_EQ(KLVchgctype(env, lp, 1, &second, "I"), 0);
  EXPECT_EQ(image().lb[1], 2.0);
  EXPECT_EQ(take(warnings), "") << "the bound moved by less than 1e-9";
  EXPECT_EQ(KLVcopyctype(env, lp, "IICBN"), 0);
  EXPECT_EQ(take(warnings), "Warning:  Non-integral bounds for integer variables rounded.\n");
  EXPECT_EQ(image().lb, (std::vector<double>{1, 2, 0.5, 0, -1e20}));
  EXPECT_EQ(image().ub, (std::vector<double>{3, 4, 3.7, 0, 2}));
  EXPECT_EQ(KLVchgctype(env, lp, 1, &third, "S"), 0);
  EXPECT_EQ(image().lb[2], 0.5);
  EXPECT_EQ(take(warnings), "");
}

TEST_F(IntegerData, SetsAreStoredAndReadBack) {
  load_columns(4);
  const int begin[] = {0, 2}, members[] = {3, 0, 1, 2, 0};
  const double weights[] = {2, 1, 1, 2, 3};
  const char* names[] = {"first", nullptr};
  EXPECT_EQ(KLVaddsos(env, lp, 2, 5, "12", begin, members, weights, names), 0);
  EXPECT_EQ(KLVaddsos(env, lp, 1, 2, "2", begin, members, weights, nullptr), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 1);
  EXPECT_EQ(types(), "CCCC");
  EXPECT_EQ(image().sets, (std::vector<SetImage>{{'1', {{3, 2}, {0, 1}}, "first"},
                                                 {'2', {{1, 1}, {2, 2}, {0, 3}}, "s2"},
                                                 {'2', {{3, 2}, {0, 1}}, "s3"}}));

  int count = -1, surplus = -1, starts[3], index[8], at = -1;
  double value[8];
  char type[4] = "";
  take(errors);
  EXPECT_EQ(KLVgetsos(env, lp, &count, nullptr, starts, nullptr, nullptr, 0, &surplus, 0, 2), 1207);
  EXPECT_EQ(surplus, -7);
  EXPECT_EQ(take(errors), "");
  EXPECT_EQ(KLVgetsos(env, lp, &count, type, starts, index, value, 2, &surplus, 1, 1), 1207);
  EXPECT_EQ(std::pair(count, surplus), std::pair(2, -1));
  EXPECT_EQ(KLVgetsos(env, lp, &count, type, starts, index, value, 7, &surplus, 1, 3), 1200);
  EXPECT_EQ(take(errors),
            "KELVO Error  1207: Insufficient array length.\n"
            "KELVO Error  1206: KLVgetsos: 'end' value 3 is greater than 2.\n"
            "KELVO Error  1200: Index is outside range of valid values.\n");

  EXPECT_EQ(index_of("s3"), 2);
  int marks[] = {0, 1, 0};
  EXPECT_EQ(KLVdelsetsos(env, lp, marks), 0);
  EXPECT_EQ(std::vector<int>(marks, marks + 3), (std::vector<int>{0, -1, 1}));
  EXPECT_EQ(index_of("s3"), 1) << "the look-up follows deletion";
  EXPECT_EQ(index_of("s2"), -1210);
  EXPECT_EQ(take(errors), "");
  EXPECT_EQ(KLVcopysos(env, lp, 1, 2, "1", begin, members, weights, nullptr), 0);
  EXPECT_EQ(KLVgetnumsos(env, lp), 1);
  EXPECT_EQ(KLVgetsosindex(env, lp, "s3", &at), 1219) << "the new sets have no names";
}

TEST_F(IntegerData, SetsAreChecked) {
  load_columns(3);
  const int begin[] = {0, 2}, members[] = {0, 1, 2, 1}, outside[] = {0, 1, 2, 3}, twice[] = {0, 0};
  const int falling[] = {2, 0};
  const double weights[] = {1, 2, 1, 2}, equal[] = {1, 2, 3, 3};
  EXPECT_EQ(KLVaddsos(env, lp, 2, 4, "13", begin, members, weights, nullptr), 3009);
  EXPECT_EQ(KLVaddsos(env, lp, 2, 4, "11", begin, members, equal, nullptr), 3010);
  EXPECT_EQ(KLVaddsos(env, lp, 2, 4, "11", begin, outside, weights, nullptr), 1201);
  EXPECT_EQ(KLVaddsos(env, lp, 1, 2, "1", begin, twice, weights, nullptr), 1222);
  EXPECT_EQ(KLVaddsos(env, lp, 2, 4, "11", falling, members, weights, nullptr), 1226);
  EXPECT_EQ(take(errors),
            "KELVO Error  3009: Illegal sostype entry 1.\n"
            "KELVO Error  3010: Set does not have unique weights.\n"
            "KELVO Error  1201: Column index 3 out of range.\n"
            "KELVO Error  1222: Duplicate entry.\n"
            "KELVO Error  1226: Array entry 1 not ascending.\n");
  EXPECT_EQ(KLVaddsos(env, lp, -1, 0, "1", begin, members, weights, nullptr), 1003);
  EXPECT_EQ(KLVaddsos(env, lp, 1, 2, nullptr, begin, members, weights, nullptr), 1004);
  EXPECT_EQ(KLVaddsos(env, lp, 1, 2, "1", begin, members, nullptr, nullptr), 1004);
  EXPECT_EQ(KLVgetprobtype(env, lp), 0) << "nothing was stored";

  int at;
  double infeasibility;
  EXPECT_EQ(KLVgetsosindex(env, lp, "s1", &at), 3003);
  EXPECT_EQ(KLVcopyctype(env, lp, "CCC"), 0);
  take(errors);
  EXPECT_EQ(KLVgetsosindex(env, lp, "s1", &at), 3015);
  EXPECT_EQ(take(errors), "KELVO Error  3015: No user-defined SOSs exist.\n");
  EXPECT_EQ(KLVdelsetsos(env, lp, &at), 3015);
  EXPECT_EQ(KLVgetsosinfeas(env, lp, weights, &infeasibility, 0, 0), 3015);
}

TEST_F(IntegerData, InfeasibilityOfSets) {
  load_columns(4);
  const int begin[] = {0, 4}, members[] = {0, 1, 2, 3, 0, 1, 2, 3};
  // In the second set the columns stand by weight as 0, 2, 1, 3.
  const double weights[] = {1, 2, 3, 4, 1, 3, 2, 4};
  ASSERT_EQ(KLVaddsos(env, lp, 2, 8, "12", begin, members, weights, nullptr), 0);
  const auto infeasibility = [&](std::vector<double> x) {
    double out[2];
    EXPECT_EQ(KLVgetsosinfeas(env, lp, x.data(), out, 0, 1), 0);
    return std::pair(out[0], out[1]);
  };
  EXPECT_EQ(infeasibility({0, 0, 0, 0}), std::pair(0.0, 0.0));
  EXPECT_EQ(infeasibility({0, -7, 0, 0}), std::pair(0.0, 0.0));
  EXPECT_EQ(infeasibility({3, 0, 5, 0}), std::pair(3.0, 0.0));
  EXPECT_EQ(infeasibility({3, 5, 0, 0}), std::pair(3.0, 3.0)) << "no neighbours in the second set";
  EXPECT_EQ(infeasibility({1, 2, -4, 8}), std::pair(7.0, 5.0));
  EXPECT_EQ(infeasibility({1e-7, 2, 0, 0}), std::pair(0.0, 0.0)) << "an integral zero";
  double out;
  EXPECT_EQ(KLVgetsosinfeas(env, lp, nullptr, &out, 0, 0), 1217);
}

TEST_F(IntegerData, IndicatorConstraints) {
  load_columns(3);
  const int columns[] = {1, 2};
  const double values[] = {1, -2};
  EXPECT_EQ(KLVaddindconstr(env, lp, 0, 0, 2, 4.0, 'L', columns, values, nullptr), 0);
  EXPECT_EQ(KLVaddindconstr(env, lp, 2, 1, 1, 3.0, 'G', columns, values, "named"), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 1);
  EXPECT_EQ(image().indicators,
            (std::vector<IndicatorImage>{{0, 0, 4, 'L', {{1, 1}, {2, -2}}, "i1"},
                                         {2, 1, 3, 'G', {{1, 1}}, "named"}}));
  int count = -1, surplus = -1, at = -1;
  EXPECT_EQ(KLVgetindconstr(env, lp, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr,
                            0, &surplus, 0),
            1207);
  EXPECT_EQ(surplus, -2);
  EXPECT_EQ(KLVgetindconstrindex(env, lp, "named", &at), 0);
  EXPECT_EQ(at, 1);

  // The first row: x1 - 2 x2 <= 4 while x0 = 1. The second one: x1 >= 3 while x2 = 0.
  const double x[] = {1, 10, 0};
  double out[2];
  EXPECT_EQ(KLVindconstrslackfromx(env, lp, x, out), 0);
  EXPECT_EQ(std::pair(out[0], out[1]), std::pair(-6.0, -7.0));
  EXPECT_EQ(KLVgetindconstrinfeas(env, lp, x, out, 0, 1), 0);
  EXPECT_EQ(std::pair(out[0], out[1]), std::pair(6.0, 0.0));
  const auto infeasibility = [&](std::vector<double> point) {
    EXPECT_EQ(KLVgetindconstrinfeas(env, lp, point.data(), out, 0, 1), 0);
    return std::pair(out[0], out[1]);
  };
  EXPECT_EQ(infeasibility({0, 10, 0}).first, 0.0) << "its binary column is 0";
  EXPECT_EQ(infeasibility({1, 1, 0}).second, -2.0);
  EXPECT_EQ(infeasibility({1, 1, 1}).second, 0.0);
  EXPECT_EQ(KLVgetindconstrslack(env, lp, out, 0, 1), 1217);

  take(errors);
  EXPECT_EQ(KLVaddindconstr(env, lp, 3, 0, 2, 4.0, 'L', columns, values, nullptr), 1201);
  EXPECT_EQ(KLVaddindconstr(env, lp, 0, 0, 2, 4.0, 'R', columns, values, nullptr), 1215);
  EXPECT_EQ(take(errors),
            "KELVO Error  1201: Column index 3 out of range.\n"
            "KELVO Error  1215: Illegal sense entry 0.\n");
  EXPECT_EQ(KLVaddindconstr(env, lp, 0, 0, 2, 4.0, 'L', nullptr, values, nullptr), 1004);
  EXPECT_EQ(KLVaddindconstr(env, lp, 0, 0, -2, 4.0, 'L', columns, values, nullptr), 1003);
  EXPECT_EQ(KLVdelindconstrs(env, lp, 0, 2), 1200);
  EXPECT_EQ(KLVdelindconstrs(env, lp, 0, 0), 0);
  EXPECT_EQ(KLVgetindconstrindex(env, lp, "named", &at), 0);
  EXPECT_EQ(at, 0);
}

TEST_F(IntegerData, PriorityOrders) {
  load_columns(4);
  const int columns[] = {2, 0, 2}, priorities[] = {5, 1, 7}, directions[] = {1, 0, -1};
  using Order = std::vector<std::tuple<int, int, int>>;
  int count = -1, surplus = -1, index[4], priority[4], direction[4];
  EXPECT_EQ(KLVcopyorder(env, lp, 3, columns, priorities, directions), 3003);
  ASSERT_EQ(KLVcopyctype(env, lp, "IIII"), 0);
  take(errors);
  EXPECT_EQ(KLVgetorder(env, lp, &count, index, priority, direction, 4, &surplus), 3016);
  EXPECT_EQ(take(errors), "KELVO Error  3016: No priority order exists.\n");
  EXPECT_EQ(KLVcopyorder(env, lp, 3, columns, priorities, directions), 0);
  EXPECT_EQ(KLVgetorder(env, lp, &count, nullptr, nullptr, nullptr, 0, &surplus), 1207);
  EXPECT_EQ(surplus, -2) << "a column has one place";
  EXPECT_EQ(image().order, (Order{{2, 7, -1}, {0, 1, 0}}));
  const int negative[] = {1, -1, 0}, sideways[] = {0, 0, 2};
  take(errors);
  EXPECT_EQ(KLVcopyorder(env, lp, 3, columns, negative, directions), 3006);
  EXPECT_EQ(KLVcopyorder(env, lp, 3, columns, priorities, sideways), 3007);
  EXPECT_EQ(take(errors),
            "KELVO Error  3006: Negative priority entry 1.\n"
            "KELVO Error  3007: Illegal direction entry 2.\n");
  EXPECT_EQ(KLVcopyorder(env, lp, 1, nullptr, priorities, directions), 1004);
  EXPECT_EQ(KLVdelcols(env, lp, 1, 1), 0);
  EXPECT_EQ(KLVgetorder(env, lp, &count, index, priority, direction, 1, &surplus), 1207);
  EXPECT_EQ(index[0], 1) << "the place of a column follows deletion";
  EXPECT_EQ(count, 1);
  EXPECT_EQ(KLVcopyorder(env, lp, 1, columns, nullptr, nullptr), 0);
  EXPECT_EQ(image().order, (Order{{2, 0, 0}}));
  EXPECT_EQ(KLVcopyorder(env, lp, 0, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(KLVgetorder(env, lp, &count, index, priority, direction, 4, &surplus), 3016);
}

TEST_F(IntegerData, UserCutsAndLazyConstraints) {
  load_columns(3);
  const int begin[] = {0, 2}, columns[] = {0, 1, 2}, outside[] = {0, 1, 3};
  const double rhs[] = {1, 2}, values[] = {1, 1, 1};
  EXPECT_EQ(KLVaddusercuts(env, lp, 2, 3, rhs, "LG", begin, columns, values, nullptr), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 1) << "a linear optimizer would not look at them";
  EXPECT_EQ(KLVaddlazyconstraints(env, lp, 2, 3, rhs, "EL", begin, columns, values, nullptr), 0);
  EXPECT_EQ(KLVaddlazyconstraints(env, lp, 1, 3, rhs, "E", begin, columns, values, nullptr), 0);
  EXPECT_EQ(KLVgetnumusercuts(env, lp), 2);
  EXPECT_EQ(KLVgetnumlazyconstraints(env, lp), 3);
  take(errors);
  EXPECT_EQ(KLVaddusercuts(env, lp, 2, 3, rhs, "LR", begin, columns, values, nullptr), 1215);
  EXPECT_EQ(KLVaddusercuts(env, lp, 2, 3, rhs, "LG", begin, outside, values, nullptr), 1201);
  EXPECT_EQ(take(errors),
            "KELVO Error  1215: Illegal sense entry 1.\n"
            "KELVO Error  1201: Column index 3 out of range.\n");
  EXPECT_EQ(KLVaddusercuts(env, lp, 2, 3, rhs, "LG", begin, nullptr, values, nullptr), 1004);
  EXPECT_EQ(KLVgetnumusercuts(env, lp), 2);
  EXPECT_EQ(KLVfreeusercuts(env, lp), 0);
  EXPECT_EQ(KLVgetnumusercuts(env, lp), 0);
  EXPECT_EQ(KLVgetnumlazyconstraints(env, lp), 3);
  EXPECT_EQ(KLVdelcols(env, lp, 0, 0), 0);
  EXPECT_EQ(take(warnings), "Warning:  Lazy constraints freed during column deletion.\n");
  EXPECT_EQ(KLVgetnumlazyconstraints(env, lp), 0);
}

TEST_F(IntegerData, ChangingTheTypeOfTheProblem) {
  load_columns(2);
  const int begin = 0, members[] = {0, 1};
  const double weights[] = {1, 2};
  take(errors);
  EXPECT_EQ(KLVchgprobtype(env, lp, 3), 1024);
  EXPECT_EQ(KLVchgprobtype(env, lp, 8), 1029);
  EXPECT_EQ(KLVchgprobtype(env, lp, 13), 1030);
  for (const int unknown : {-1, 2, 4, 6, 9, 12, 14}) {
    EXPECT_EQ(KLVchgprobtype(env, lp, unknown), 1022) << unknown;
  }
  EXPECT_EQ(take(errors).rfind("KELVO Error  1024: Not a MILP or fixed MILP.\n"
                               "KELVO Error  1029: Not a MIQP or fixed MIQP.\n"
                               "KELVO Error  1030: Not a MIQCP or fixed MIQCP.\n"
                               "KELVO Error  1022: Unknown problem type.  Problem not changed.\n",
                               0),
            0u);
  EXPECT_EQ(KLVgetprobtype(env, lp), 0);
  EXPECT_EQ(KLVchgprobtype(env, lp, 1), 0);
  EXPECT_EQ(types(), "CC");
  EXPECT_EQ(KLVcopyctype(env, lp, "BI"), 0);
  EXPECT_EQ(KLVaddsos(env, lp, 1, 2, "1", &begin, members, weights, nullptr), 0);
  EXPECT_EQ(KLVaddindconstr(env, lp, 0, 0, 2, 1.0, 'L', members, weights, nullptr), 0);
  EXPECT_EQ(KLVaddlazyconstraints(env, lp, 1, 2, nullptr, "L", &begin, members, weights, nullptr),
            0);
  EXPECT_EQ(KLVchgprobtype(env, lp, 1), 0);
  EXPECT_EQ(types(), "BI") << "the current type changes nothing";
  EXPECT_EQ(KLVchgprobtype(env, lp, 3), 1217);
  EXPECT_EQ(KLVchgprobtypesolnpool(env, lp, 3, 0), 3024);
  EXPECT_EQ(KLVchgprobtypesolnpool(env, lp, 3, -1), 1217);
  EXPECT_EQ(KLVchgprobtype(env, lp, 0), 0);
  EXPECT_EQ(types(), "3003");
  EXPECT_EQ(KLVchgprobtype(env, lp, 1), 0);
  EXPECT_EQ(types(), "CC");
  EXPECT_EQ(KLVgetnumsos(env, lp), 0);
  EXPECT_EQ(KLVgetnumindconstrs(env, lp), 0);
  EXPECT_EQ(KLVgetnumlazyconstraints(env, lp), 0);
}

}  // namespace
