// Quadratic objectives and quadratic constraints.
#include <cmath>

#include "prob_fixture.h"

namespace {

class QuadraticData : public ProblemTest {
 protected:
  QuadraticData() {
    EXPECT_EQ(KLVnewcols(env, lp, 3, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  }

  /// Q as rows of a dense matrix.
  std::vector<std::vector<double>> dense() {
    std::vector<std::vector<double>> q(3, std::vector<double>(3));
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) EXPECT_EQ(KLVgetqpcoef(env, lp, i, j, &q[i][j]), 0);
    }
    return q;
  }
  int copy(std::vector<int> count, std::vector<int> index, std::vector<double> value) {
    std::vector<int> begin(count.size());
    for (std::size_t j = 1; j < count.size(); ++j) begin[j] = begin[j - 1] + count[j - 1];
    return KLVcopyquad(env, lp, begin.data(), count.data(), index.data(), value.data());
  }
  double form(const std::vector<double>& x) {
    const auto q = dense();
    double sum = 0;
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) sum += x[i] * q[i][j] * x[j];
    }
    return sum;
  }
};

using Matrix = std::vector<std::vector<double>>;

TEST_F(QuadraticData, TheObjectiveIsStoredAndReadBack) {
  double value = 0;
  take(errors);
  EXPECT_EQ(KLVgetqpcoef(env, lp, 0, 0, &value), 5004);
  EXPECT_EQ(take(errors), "KELVO Error  5004: Not a quadratic program.\n");
  EXPECT_EQ(KLVgetnumquad(env, lp) + KLVgetnumqpnz(env, lp), 0);
  EXPECT_EQ(copy({2, 1, 0}, {1, 0, 0}, {2, 8, 2}), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 5);
  EXPECT_EQ(dense(), (Matrix{{8, 2, 0}, {2, 0, 0}, {0, 0, 0}}));
  EXPECT_EQ(KLVgetnumquad(env, lp), 2);
  EXPECT_EQ(KLVgetnumqpnz(env, lp), 3);

  int count = -1, surplus = -1, begin[3], index[3];
  double values[3];
  take(errors);
  EXPECT_EQ(KLVgetquad(env, lp, &count, begin, nullptr, nullptr, 0, &surplus, 0, 2), 1207);
  EXPECT_EQ(surplus, -3);
  EXPECT_EQ(take(errors), "");
  EXPECT_EQ(image().q,
            (std::map<std::pair<int, int>, double>{{{0, 0}, 8}, {{0, 1}, 2}, {{1, 0}, 2}}));
  take(errors);
  EXPECT_EQ(KLVgetquad(env, lp, &count, begin, index, values, 1, &surplus, 0, 0), 1207);
  EXPECT_EQ(take(errors), "KELVO Error  1207: Insufficient array length.\n");
  EXPECT_EQ(KLVgetquad(env, lp, &count, begin, index, values, 3, &surplus, 0, 3), 1200);

  EXPECT_EQ(KLVchgqpcoef(env, lp, 1, 2, -3), 0);
  EXPECT_EQ(KLVchgqpcoef(env, lp, 0, 0, 0), 0);
  EXPECT_EQ(KLVchgqpcoef(env, lp, 2, 1, -4), 0);
  EXPECT_EQ(dense(), (Matrix{{0, 2, 0}, {2, 0, -4}, {0, -4, 0}}));
  EXPECT_EQ(KLVgetnumqpnz(env, lp), 4);
  EXPECT_EQ(KLVchgqpcoef(env, lp, 3, 0, 1), 1200);
  EXPECT_EQ(KLVgetqpcoef(env, lp, 0, -1, &value), 1200);
  EXPECT_EQ(KLVgetqpcoef(env, lp, 0, 0, nullptr), 1004);

  const double diagonal[] = {1, 0, -2};
  EXPECT_EQ(KLVcopyqpsep(env, lp, diagonal), 0);
  EXPECT_EQ(dense(), (Matrix{{1, 0, 0}, {0, 0, 0}, {0, 0, -2}}));
  EXPECT_EQ(KLVgetnumqpnz(env, lp), 2);
  EXPECT_EQ(KLVcopyqpsep(env, lp, nullptr), 1004);
  EXPECT_EQ(KLVnewcols(env, lp, 1, nullptr, nullptr, nullptr, "B", nullptr), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 7);
  EXPECT_EQ(KLVgetqpcoef(env, lp, 3, 3, &value), 0);
  EXPECT_EQ(value, 0.0);
  EXPECT_EQ(KLVchgprobtype(env, lp, 1), 0);
  EXPECT_EQ(KLVgetqpcoef(env, lp, 3, 3, &value), 5004);
}

TEST_F(QuadraticData, TheFirstCoefficientMakesAnObjectiveQuadratic) {
  EXPECT_EQ(KLVchgqpcoef(env, lp, 2, 0, 7), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 5);
  EXPECT_EQ(dense(), (Matrix{{0, 0, 7}, {0, 0, 0}, {7, 0, 0}}));
  EXPECT_EQ(KLVlpopt(env, lp), 1018);
}

TEST_F(QuadraticData, FlawsOfAMatrixAreFoundOrMended) {
  const char* names[] = {"u", "v", "w"};
  const int columns[] = {0, 1, 2};
  EXPECT_EQ(copy({1, 0, 0}, {3}, {1}), 1200) << "an index is always checked";
  EXPECT_EQ(copy({-1, 0, 0}, {0}, {1}), 1227);
  // Without data checking the matrix with the same form is stored.
  EXPECT_EQ(copy({3, 0, 1}, {1, 0, 0, 0}, {6, 1, 2, 4}), 0);
  EXPECT_EQ(dense(), (Matrix{{3, 3, 2}, {3, 0, 0}, {2, 0, 0}}));
  check_data();
  take(errors);
  EXPECT_EQ(copy({2, 1, 0}, {1, 1, 0}, {6, 1, 6}), 5011);
  EXPECT_EQ(copy({1, 1, 0}, {1, 0}, {6, 5}), 5012);
  ASSERT_EQ(KLVchgcolname(env, lp, 3, columns, names), 0);
  EXPECT_EQ(copy({2, 0, 0}, {2, 2}, {1, 1}), 5011);
  EXPECT_EQ(copy({1, 1, 0}, {1, 0}, {6, NAN}), 1225);
  EXPECT_EQ(take(errors),
            "KELVO Error  5011: Duplicate entry in 'objective' for pair 'x2' and 'x1'.\n"
            "KELVO Error  5012: Q in objective is not symmetric.\n"
            "KELVO Error  5011: Duplicate entry in 'objective' for pair 'w' and 'u'.\n"
            "KELVO Error  1225: Numeric entry 1 is not a double precison number (NAN).\n");
  EXPECT_EQ(dense(), (Matrix{{3, 3, 2}, {3, 0, 0}, {2, 0, 0}}));
  EXPECT_EQ(KLVcopyquad(env, lp, nullptr, columns, columns, nullptr), 1004);
}

TEST_F(QuadraticData, CertificatesOfIndefiniteness) {
  double x[3];
  EXPECT_EQ(KLVqpindefcertificate(env, lp, x), 5004);
  const double diagonal[] = {1, 2, 3};
  ASSERT_EQ(KLVcopyqpsep(env, lp, diagonal), 0);
  take(errors);
  EXPECT_EQ(KLVqpindefcertificate(env, lp, x), 5014);
  EXPECT_EQ(take(errors), "KELVO Error  5014: Q in objective is not indefinite.\n");
  EXPECT_EQ(KLVqpindefcertificate(env, lp, nullptr), 1004);
  ASSERT_EQ(KLVchgobjsen(env, lp, -1), 0);
  EXPECT_EQ(KLVqpindefcertificate(env, lp, x), 0) << "a convex objective cannot be maximized";
  EXPECT_EQ(std::vector<double>(x, x + 3), (std::vector<double>{1, 0, 0}));
  ASSERT_EQ(KLVchgobjsen(env, lp, 1), 0);
  ASSERT_EQ(KLVchgqpcoef(env, lp, 0, 1, 2), 0);  // the minor 1 * 2 - 4
  EXPECT_EQ(KLVqpindefcertificate(env, lp, x), 0);
  EXPECT_LT(form({x[0], x[1], x[2]}), 0.0);
  // All minors of two columns are positive, the determinant is not.
  for (const auto& [i, j] : {std::pair(0, 1), {0, 2}, {1, 2}}) {
    ASSERT_EQ(KLVchgqpcoef(env, lp, i, j, -0.6), 0);
  }
  const int all[] = {0, 1, 2};
  for (const int j : all) ASSERT_EQ(KLVchgqpcoef(env, lp, j, j, 1), 0);
  EXPECT_EQ(KLVqpindefcertificate(env, lp, x), 0);
  EXPECT_LT(form({x[0], x[1], x[2]}), 0.0);
}

TEST_F(QuadraticData, Constraints) {
  const int linear[] = {2, 0}, first[] = {0, 0, 1}, second[] = {0, 1, 0};
  const double values[] = {1, 2, 3};
  // x2 + 2 x0 + x0^2 + 5 x0 x1 <= 10
  EXPECT_EQ(KLVaddqconstr(env, lp, 2, 3, 10.0, 'L', linear, values, first, second, values, nullptr),
            0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 10);
  EXPECT_EQ(KLVaddqconstr(env, lp, 0, 1, 4.0, 'G', nullptr, nullptr, second, second, values, "b"),
            0);
  EXPECT_EQ(image().quadratics,
            (std::vector<QuadraticImage>{
                {10, 'L', {{2, 1}, {0, 2}}, {{0, 0, 1}, {0, 1, 2}, {1, 0, 3}}, "q1"},
                {4, 'G', {}, {{0, 0, 1}}, "b"}}));
  int linear_count, terms, linear_surplus, surplus, row[3], column[3];
  double value[3];
  take(errors);
  EXPECT_EQ(KLVgetqconstr(env, lp, &linear_count, &terms, nullptr, nullptr, nullptr, nullptr, 0,
                          &linear_surplus, nullptr, nullptr, nullptr, 0, &surplus, 0),
            1207);
  EXPECT_EQ(std::pair(linear_surplus, surplus), std::pair(-2, -3));
  EXPECT_EQ(take(errors), "");
  EXPECT_EQ(KLVgetqconstr(env, lp, &linear_count, &terms, nullptr, nullptr, nullptr, nullptr, 0,
                          &linear_surplus, row, column, value, 1, &surplus, 0),
            1207);
  EXPECT_EQ(take(errors), "KELVO Error  1207: Insufficient array length.\n");
  EXPECT_EQ(terms, 1);

  const double x[] = {1, 2, 3};
  double out[2];
  EXPECT_EQ(KLVqconstrslackfromx(env, lp, x, out), 0);
  EXPECT_EQ(std::pair(out[0], out[1]), std::pair(-6.0, 3.0));
  EXPECT_EQ(KLVgetqconstrinfeas(env, lp, x, out, 0, 1), 0);
  EXPECT_EQ(std::pair(out[0], out[1]), std::pair(6.0, -3.0));
  EXPECT_EQ(KLVgetxqxax(env, lp, out, 0, 1), 1217);
  EXPECT_EQ(KLVgetqconstrslack(env, lp, out, 0, 1), 1217);
  EXPECT_EQ(KLVgetqconstrinfeas(env, lp, x, out, 0, 2), 1200);

  int at = -1;
  EXPECT_EQ(KLVgetqconstrindex(env, lp, "b", &at), 0);
  EXPECT_EQ(at, 1);
  EXPECT_EQ(KLVdelqconstrs(env, lp, 0, 0), 0);
  EXPECT_EQ(KLVgetqconstrindex(env, lp, "b", &at), 0);
  EXPECT_EQ(at, 0);
  EXPECT_EQ(KLVgetqconstrindex(env, lp, "q1", &at), 1210);
  EXPECT_EQ(KLVdelqconstrs(env, lp, 0, 1), 1200);
}

TEST_F(QuadraticData, ConstraintsAreChecked) {
  const int columns[] = {0, 1}, outside[] = {0, 3}, twice[] = {1, 1};
  const double values[] = {1, 2};
  EXPECT_EQ(KLVaddqconstr(env, lp, 2, 0, 1, 'R', columns, values, nullptr, nullptr, nullptr, "q"),
            1215);
  EXPECT_EQ(KLVaddqconstr(env, lp, 2, 0, 1, 'L', outside, values, nullptr, nullptr, nullptr, "q"),
            1200);
  EXPECT_EQ(KLVaddqconstr(env, lp, 0, 2, 1, 'L', nullptr, nullptr, columns, outside, values, "q"),
            1200);
  EXPECT_EQ(KLVaddqconstr(env, lp, 0, 2, 1, 'L', nullptr, nullptr, columns, nullptr, values, "q"),
            1004);
  EXPECT_EQ(KLVaddqconstr(env, lp, -1, 2, 1, 'L', nullptr, nullptr, columns, columns, values, "q"),
            1003);
  check_data();
  take(errors);
  EXPECT_EQ(KLVaddqconstr(env, lp, 0, 2, 1, 'L', nullptr, nullptr, twice, twice, values, nullptr),
            5011);
  EXPECT_EQ(take(errors), "KELVO Error  5011: Duplicate entry in 'q1' for pair 'x2' and 'x2'.\n");
  EXPECT_EQ(KLVgetnumqconstrs(env, lp), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 0);
}

}  // namespace
