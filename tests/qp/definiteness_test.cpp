#include "qp/definiteness.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "prob/data/quadratic_objective.h"

namespace kelvo {
namespace {

using Dense = std::vector<std::vector<double>>;

SparseMatrix sparse(const Dense& a) {
  SparseMatrix q;
  q.num_major = q.num_minor = static_cast<int>(a.size());
  for (const auto& column : a) {
    for (std::size_t i = 0; i < column.size(); ++i) {
      if (column[i] == 0.0) continue;
      q.index.push_back(static_cast<int>(i));
      q.value.push_back(column[i]);
    }
    q.start.push_back(static_cast<int>(q.index.size()));
  }
  return q;
}

/// The sum of outer products of `rank` random vectors with entries in few places: semidefinite, and
/// singular when the rank is small.
Dense semidefinite(std::mt19937& random, int n, int rank, double density) {
  std::uniform_real_distribution<double> value(-1.0, 1.0), chance(0.0, 1.0);
  Dense a(n, std::vector<double>(n));
  for (int r = 0; r < rank; ++r) {
    std::vector<double> v(n);
    for (double& e : v) e = chance(random) < density ? value(random) : 0.0;
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) a[i][j] += v[i] * v[j];
    }
  }
  return a;
}

void expect_indefinite(const SparseMatrix& q, double sign) {
  EXPECT_FALSE(is_semidefinite(q, sign));
  Vector<double> x;
  ASSERT_TRUE(find_indefinite_direction(q, sign, x));
  EXPECT_LT(sign * quadratic_form(q, x.data()), 0.0);
}

TEST(Definiteness, SmallMatrices) {
  EXPECT_TRUE(is_semidefinite(sparse({}), 1));
  EXPECT_TRUE(is_semidefinite(sparse({{0, 0}, {0, 0}}), 1));
  EXPECT_TRUE(is_semidefinite(sparse({{1, 1}, {1, 1}}), 1));
  EXPECT_TRUE(is_semidefinite(sparse({{-1, 1}, {1, -1}}), -1));
  expect_indefinite(sparse({{1, 1}, {1, 1}}), -1);
  expect_indefinite(sparse({{0, 1}, {1, 0}}), 1);    // no diagonal at all
  expect_indefinite(sparse({{0, -1}, {-1, 5}}), 1);  // a zero pivot in a row that is not zero
  expect_indefinite(sparse({{1, -0.6, -0.6}, {-0.6, 1, -0.6}, {-0.6, -0.6, 1}}), 1);
  // The size of the numbers does not matter.
  expect_indefinite(sparse({{1e-9, 2e-9}, {2e-9, 1e-9}}), 1);
  EXPECT_TRUE(is_semidefinite(sparse({{1e9, 1e9}, {1e9, 1e9}}), 1));
}

/// Semidefinite matrices, singular ones among them, and the same moved down along a direction.
TEST(Definiteness, RandomMatrices) {
  for (unsigned seed = 1; seed <= 80; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const int n = 2 + static_cast<int>(random() % 30);
    const int rank = 1 + static_cast<int>(random() % (2 * n));
    const double density = seed % 3 == 0 ? 1.0 : 0.25;
    Dense a = semidefinite(random, n, rank, density);
    const double sign = seed % 2 == 0 ? 1.0 : -1.0;
    const auto signed_matrix = [&] {
      Dense b = a;
      for (auto& column : b) {
        for (double& v : column) v *= sign;
      }
      return sparse(b);
    };
    const SparseMatrix q = signed_matrix();
    EXPECT_TRUE(is_semidefinite(q, sign));
    Vector<double> x;
    EXPECT_FALSE(find_indefinite_direction(q, sign, x));
    // v'(A - (v'Av + 1/10) vv')v < 0 for a unit vector v.
    std::vector<double> v(n);
    double square = 0;
    for (double& e : v) {
      e = std::uniform_real_distribution<double>(-1, 1)(random);
      square += e * e;
    }
    double form = 0;
    for (double& e : v) e /= std::sqrt(square);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) form += v[i] * a[i][j] * v[j];
    }
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) a[i][j] -= (form + 0.1) * v[i] * v[j];
    }
    expect_indefinite(signed_matrix(), sign);
  }
}

/// A large sparse matrix: the Laplacian of a grid, singular, and with one diagonal entry lowered.
TEST(Definiteness, GridLaplacian) {
  const int side = 40, n = side * side;
  Vector<Coefficient> list;
  std::vector<double> degree(n);
  const auto connect = [&](int i, int j) {
    list.push_back({i, j, -1.0});
    list.push_back({j, i, -1.0});
    degree[i] += 1;
    degree[j] += 1;
  };
  for (int i = 0; i < n; ++i) {
    if (i % side + 1 < side) connect(i, i + 1);
    if (i + side < n) connect(i, i + side);
  }
  for (int i = 0; i < n; ++i) list.push_back({i, i, degree[i]});
  SparseMatrix q = diagonal_matrix(degree.data(), n);
  set_quadratic_coefficients(q, list);
  EXPECT_TRUE(is_semidefinite(q, 1.0));
  set_quadratic_coefficients(q, {{n / 2, n / 2, degree[n / 2] - 0.01}});
  expect_indefinite(q, 1.0);
}

}  // namespace
}  // namespace kelvo
