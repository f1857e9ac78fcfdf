// The order of rows and columns and their units are accidents: whatever they are, a model has the
// same status and the same optimal value.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "base/random.h"
#include "lp/public_models.h"

namespace kelvo {
namespace {

using test::data_folder;
using test::ModelAnswer;
using test::read_model;
using test::solve_as_it_stands;
using test::solve_presolved;

constexpr int kSeeds = 20;
constexpr int kLargestModel = 20000;     // nonzeros
constexpr int kLargestExponent = 4;      // factors are 2^-4 to 2^4
constexpr double kSameObjective = 1e-6;  // relative, absolute below 1

std::vector<int> random_permutation(Random& random, int size) {
  std::vector<int> order(size);
  for (int k = 0; k < size; ++k) order[k] = k;
  for (int k = size - 1; k > 0; --k) {
    const int draw = random.below(32768) * 32768 + random.below(32768);
    std::swap(order[k], order[draw % (k + 1)]);
  }
  return order;
}

std::vector<double> random_factors(Random& random, int size) {
  std::vector<double> factors(size);
  for (double& factor : factors) {
    factor = std::ldexp(1.0, random.below(2 * kLargestExponent + 1) - kLargestExponent);
  }
  return factors;
}

double scaled_bound(double bound, double factor) {
  return std::fabs(bound) >= kInfiniteBound ? bound : bound / factor;
}

/// The same model with rows and columns in another order and in other units.
Model disguised(const Model& model, std::uint64_t seed) {
  Random random(seed);
  const std::vector<int> row_at = random_permutation(random, model.num_rows);
  const std::vector<int> column_at = random_permutation(random, model.num_cols);
  const std::vector<double> row_factor = random_factors(random, model.num_rows);
  const std::vector<double> column_factor = random_factors(random, model.num_cols);
  std::vector<int> new_row(model.num_rows);
  Model other;
  other.sense = model.sense;
  other.num_rows = model.num_rows;
  other.num_cols = model.num_cols;
  for (int k = 0; k < model.num_rows; ++k) {
    const int i = row_at[k];
    new_row[i] = k;
    other.rhs.push_back(scaled_bound(model.rhs[i], 1.0 / row_factor[i]));
    other.row_sense.push_back(model.row_sense[i]);
    if (!model.range.empty()) other.range.push_back(model.range[i] * row_factor[i]);
  }
  SparseMatrix columns;
  columns.num_major = model.num_cols;
  columns.num_minor = model.num_rows;
  for (const int j : column_at) {
    const double factor = column_factor[j];
    other.objective.push_back(model.objective[j] * factor);
    other.lower.push_back(scaled_bound(model.lower[j], factor));
    other.upper.push_back(scaled_bound(model.upper[j], factor));
    const int end = model.matrix.start[j] + model.matrix.count[j];
    for (int k = model.matrix.start[j]; k < end; ++k) {
      const int i = model.matrix.index[k];
      columns.index.push_back(new_row[i]);
      columns.value.push_back(model.matrix.value[k] * factor * row_factor[i]);
    }
    columns.start.push_back(static_cast<int>(columns.index.size()));
  }
  // Column entries in ascending order of rows, as a reader leaves them.
  other.matrix.assign(transpose(transpose(columns)));
  return other;
}

void expect_same(const ModelAnswer& answer, const ModelAnswer& reference) {
  ASSERT_EQ(answer.status, reference.status);
  if (reference.status != kOptimal) return;
  const double expected = reference.record.objective;
  EXPECT_NEAR(answer.record.objective, expected,
              kSameObjective * std::max(1.0, std::fabs(expected)));
}

TEST(LongRobustness, OrderAndUnitsDoNotChangeTheAnswer) {
  const char* const folder = data_folder();
  if (folder == nullptr) GTEST_SKIP() << "KELVO_BENCH_DATA names no folder of instances";
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator(std::string(folder) + "/lp")) {
    paths.push_back(entry.path().string());
  }
  std::sort(paths.begin(), paths.end());
  for (const std::string& path : paths) {
    SCOPED_TRACE(path);
    const Model model = read_model(path);
    if (model.matrix.num_nonzeros() > kLargestModel) continue;
    const ModelAnswer reference = solve_as_it_stands(model, LpMethod::dual);
    ASSERT_TRUE(reference.status == kOptimal || reference.status == kUnbounded);
    // Presolve need not say which of the two an unbounded model is.
    ModelAnswer presolved_reference = reference;
    if (reference.status == kUnbounded) {
      presolved_reference = solve_presolved(model, LpMethod::dual);
      ASSERT_TRUE(presolved_reference.status == kUnbounded ||
                  presolved_reference.status == kInfeasibleOrUnbounded);
    }
    for (int seed = 1; seed <= kSeeds; ++seed) {
      SCOPED_TRACE(seed);
      const Model other = disguised(model, seed);
      const LpMethod method = seed % 2 == 0 ? LpMethod::primal : LpMethod::dual;
      expect_same(solve_as_it_stands(other, method), reference);
      expect_same(solve_presolved(other, method), presolved_reference);
    }
  }
}

}  // namespace
}  // namespace kelvo
