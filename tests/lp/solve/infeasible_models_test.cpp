// Every claim of infeasibility comes with multipliers that prove it on the model as stated.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "base/random.h"
#include "lp/public_models.h"
#include "prob/model/row_limits.h"
#include "support/sparse_lines.h"

namespace kelvo {
namespace {

using test::data_folder;
using test::ModelAnswer;
using test::read_model;
using test::solve_as_it_stands;

/// How far the proof keeps the rows from being satisfied: min y'a - max (A'y)'x over the limits,
/// by the share of its terms. Written without the library's own check.
double relative_gap(const Model& model, const Vector<double>& y) {
  long double gap = 0.0L;
  long double size = 0.0L;
  const auto add = [&](double weight, double lower, double upper) {
    if (weight == 0.0) return;
    const long double term = static_cast<long double>(weight) * (weight > 0.0 ? lower : upper);
    gap += term;
    size += std::fabs(term);
  };
  for (int i = 0; i < model.num_rows; ++i) {
    const RowLimits limits = row_limits(model, i);
    add(y[i], limits.lower, limits.upper);
  }
  for (int j = 0; j < model.num_cols; ++j) {
    long double sum = 0.0L;
    long double terms = 0.0L;
    for (int k = model.matrix.start[j]; k < model.matrix.start[j] + model.matrix.count[j]; ++k) {
      const long double term =
          static_cast<long double>(model.matrix.value[k]) * y[model.matrix.index[k]];
      sum += term;
      terms += std::fabs(term);
    }
    const double weight = std::fabs(sum) <= 1e-10L * terms ? 0.0 : static_cast<double>(sum);
    add(-weight, finite_or_infinite(model.lower[j]), finite_or_infinite(model.upper[j]));
  }
  return static_cast<double>(gap / std::max(size, 1e-300L));
}

void expect_proof(const Model& model, LpMethod method) {
  const ModelAnswer answer = solve_as_it_stands(model, method);
  ASSERT_EQ(answer.status, kInfeasible);
  ASSERT_EQ(static_cast<int>(answer.record.farkas.size()), model.num_rows);
  EXPECT_GT(relative_gap(model, answer.record.farkas), 1e-12);
}

/// Rows of a random matrix, and one that contradicts a combination of the others by `gap`.
Model contradictory(Random& random, int rows, int columns, double gap) {
  Model model;
  model.num_cols = columns;
  model.num_rows = rows + 1;
  model.row_sense.assign(rows + 1, 'E');
  test::DenseLines lines(rows + 1, std::vector<double>(columns));
  double combined = 0.0;
  for (int i = 0; i < rows; ++i) {
    const double weight = std::ldexp(random.uniform() - 0.5, random.below(12));
    for (int j = 0; j < columns; ++j) {
      if (random.uniform() > 0.4) continue;
      lines[i][j] = std::ldexp(random.uniform() - 0.5, random.below(10));
      lines[rows][j] += weight * lines[i][j];
    }
    model.rhs.push_back(10.0 * random.uniform());
    combined += weight * model.rhs[i];
  }
  model.rhs.push_back(combined + gap);
  model.matrix.assign(transpose(test::sparse_lines(lines, columns)));
  for (int j = 0; j < columns; ++j) {
    model.objective.push_back(random.uniform());
    model.lower.push_back(random.uniform() < 0.5 ? 0.0 : -kInfiniteBound);
    model.upper.push_back(kInfiniteBound);
  }
  return model;
}

TEST(InfeasibleModels, ContradictionsAreProven) {
  for (int seed = 0; seed < 40; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    const Model model = contradictory(random, 12, 20, seed % 2 == 0 ? 1.0 : 0.01);
    expect_proof(model, LpMethod::dual);
    expect_proof(model, LpMethod::primal);
  }
}

TEST(InfeasibleModels, PublicModelsAreProven) {
  const char* const folder = data_folder();
  if (folder == nullptr) GTEST_SKIP() << "KELVO_BENCH_DATA names no folder of instances";
  // Those whose dual bases become nearly singular on the way are the touchstones.
  for (const char* name : {"galenetbnds", "woodinfe", "ex72a", "ex73a", "box1", "klein1", "klein2",
                           "chemcom", "qual", "pang", "reactor"}) {
    SCOPED_TRACE(name);
    const std::string path = std::string(folder) + "/lp-infeas/" + name + ".mps.gz";
    const Model model = read_model(path);
    expect_proof(model, LpMethod::dual);
    expect_proof(model, LpMethod::primal);
  }
}

}  // namespace
}  // namespace kelvo
