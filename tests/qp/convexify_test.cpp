#include "qp/convexify.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "prob/data/quadratic_objective.h"
#include "prob/model/model_edit.h"
#include "qp/definiteness.h"
#include "support/recording_sink.h"

namespace kelvo {
namespace {

Model binary_model(int columns, int sense) {
  Model model;
  model.sense = sense;
  model.objective.assign(columns, 1.0);
  model.lower.assign(columns, 0.0);
  model.upper.assign(columns, 1.0);
  model.column_type.assign(columns, 'B');
  model.num_cols = columns;
  model.quadratic = diagonal_matrix(Vector<double>(columns, 0.0).data(), columns);
  return model;
}

struct Result {
  Convexity convexity;
  Vector<double> cost;
  SparseMatrix q;
};

Result convexify(const Model& model, MessageSink& sink, ConvexifySettings settings = {}) {
  Result result;
  result.convexity = make_convex(model, settings, sink, result.cost, result.q);
  return result;
}

/// c'x + 1/2 x'Qx at a 0-1 point.
double value(const Vector<double>& cost, const SparseMatrix& q, const Vector<double>& x) {
  double sum = 0.5 * quadratic_form(q, x.data());
  for (std::size_t j = 0; j < x.size(); ++j) sum += cost[j] * x[j];
  return sum;
}

TEST(Convexify, ADiagonalGetsTheRightSigns) {
  test::RecordingSink sink;
  Model model = binary_model(2, -1);
  const double two[] = {2, 2};
  model.quadratic = diagonal_matrix(two, 2);
  const Result result = convexify(model, sink);
  ASSERT_EQ(result.convexity, Convexity::repaired);
  EXPECT_EQ(result.cost, (Vector<double>{2.5, 2.5}));
  EXPECT_EQ(result.q.value, (Vector<double>{-1, -1}));
  EXPECT_EQ(sink.all(), "");
}

TEST(Convexify, OnlyBinaryColumnsCanBeRepaired) {
  test::RecordingSink sink;
  Model model = binary_model(2, 1);
  const double values[] = {-1, 0};
  model.quadratic = diagonal_matrix(values, 2);
  model.column_type = {'C', 'B'};
  EXPECT_EQ(convexify(model, sink).convexity, Convexity::not_convex);
  model.column_type = {'I', 'C'};
  EXPECT_EQ(convexify(model, sink).convexity, Convexity::repaired);
  EXPECT_EQ(convexify(model, sink, {.repair = false}).convexity, Convexity::not_convex);
  model.upper[0] = 2;
  EXPECT_EQ(convexify(model, sink).convexity, Convexity::not_convex);
  model.sense = -1;
  EXPECT_EQ(convexify(model, sink).convexity, Convexity::convex);
}

/// The repaired objective is convex and has the same value at every 0-1 point.
TEST(Convexify, AShiftKeepsTheObjective) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const int n = 2 + static_cast<int>(random() % 7);
    Model model = binary_model(n, seed % 2 == 0 ? 1 : -1);
    Vector<Coefficient> list;
    for (int k = 0; k < 2 * n; ++k) {
      const int i = static_cast<int>(random() % n), j = static_cast<int>(random() % n);
      const double v = static_cast<double>(random() % 21) - 10.0;
      list.push_back({i, j, v});
      list.push_back({j, i, v});
    }
    list.push_back({0, 1, 3.0});
    list.push_back({1, 0, 3.0});
    set_quadratic_coefficients(model.quadratic, list);
    test::RecordingSink sink;
    const Result result = convexify(model, sink);
    if (result.convexity == Convexity::convex) continue;
    ASSERT_EQ(result.convexity, Convexity::repaired);
    EXPECT_TRUE(is_semidefinite(result.q, model.sense));
    EXPECT_EQ(sink[Channel::log],
              "Repairing indefinite Q in the objective.\nrequired to create PSD Q.\n\n");
    EXPECT_EQ(sink[Channel::warning].rfind("\nWarning:  diagonal perturbation of ", 0), 0u);
    for (int point = 0; point < 1 << n; ++point) {
      Vector<double> x(n);
      for (int j = 0; j < n; ++j) x[j] = (point >> j) & 1;
      EXPECT_NEAR(value(result.cost, result.q, x), value(model.objective, model.quadratic, x),
                  1e-9);
    }
  }
}

}  // namespace
}  // namespace kelvo
