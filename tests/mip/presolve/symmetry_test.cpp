// Symmetry: what is found is verified entry by entry, and all of it is found in groups whose order
// is known.
#include "mip/presolve/symmetry/symmetry.h"

#include <gtest/gtest.h>

#include "lp/simplex/simplex_support.h"
#include "mip/presolve/components.h"

namespace kelvo {
namespace {

using test::dense_lp;

NeverStop never;

MipProblem binary_program(const std::vector<std::vector<double>>& rows,
                          const std::vector<std::pair<double, double>>& limits,
                          const std::vector<double>& costs) {
  std::vector<test::ColumnSpec> columns;
  for (const double cost : costs) columns.push_back({cost, 0.0, 1.0});
  MipProblem mip;
  mip.lp = with_rows(dense_lp(columns, rows, limits));
  mip.is_integer.assign(costs.size(), 1);
  return mip;
}

/// The rows of the matrix with permuted columns, as a sorted list.
std::vector<std::vector<double>> permuted_rows(const MipProblem& mip, const Vector<int>& image) {
  std::vector<std::vector<double>> rows;
  for (int i = 0; i < mip.num_rows(); ++i) {
    std::vector<double> row(mip.num_cols(), 0.0);
    const SparseMatrix& matrix = mip.lp.rows;
    for (int k = matrix.start[i]; k < matrix.start[i + 1]; ++k) {
      row[image[matrix.index[k]]] = matrix.value[k];
    }
    row.push_back(mip.lp.lower[mip.num_cols() + i]);
    row.push_back(mip.lp.upper[mip.num_cols() + i]);
    rows.push_back(row);
  }
  std::sort(rows.begin(), rows.end());
  return rows;
}

void verify(const MipProblem& mip, const Symmetry& symmetry) {
  Vector<int> identity(mip.num_cols());
  for (int j = 0; j < mip.num_cols(); ++j) identity[j] = j;
  for (const auto& generator : symmetry.generators) {
    Vector<int> image(identity), hit(mip.num_cols(), 0);
    for (const ColumnMove& move : generator) {
      image[move.from] = move.to;
      ASSERT_EQ(mip.lp.cost[move.from], mip.lp.cost[move.to]);
      ASSERT_EQ(symmetry.orbit[move.from], symmetry.orbit[move.to]);
    }
    for (const int j : image) ASSERT_EQ(hit[j]++, 0);
    ASSERT_EQ(permuted_rows(mip, image), permuted_rows(mip, identity));
  }
}

TEST(Symmetry, GroupsOfKnownOrder) {
  // Items in bins: x[item][bin], each item in one bin, bins of one capacity. Items of equal size
  // and bins may be exchanged.
  const auto packing = [](const std::vector<double>& sizes, int bins) {
    const int items = static_cast<int>(sizes.size());
    std::vector<std::vector<double>> rows;
    std::vector<std::pair<double, double>> limits;
    for (int item = 0; item < items; ++item) {
      std::vector<double> row(items * bins, 0.0);
      for (int bin = 0; bin < bins; ++bin) row[item * bins + bin] = 1.0;
      rows.push_back(row);
      limits.push_back({1, 1});
    }
    for (int bin = 0; bin < bins; ++bin) {
      std::vector<double> row(items * bins, 0.0);
      for (int item = 0; item < items; ++item) row[item * bins + bin] = sizes[item];
      rows.push_back(row);
      limits.push_back({-kInf, 7});
    }
    return binary_program(rows, limits, std::vector<double>(items * bins, 1.0));
  };
  struct Case {
    MipProblem mip;
    double order;
    int orbits;
  };
  const std::vector<std::vector<double>> cycle = {
      {1, 1, 0, 0, 0}, {0, 1, 1, 0, 0}, {0, 0, 1, 1, 0}, {0, 0, 0, 1, 1}, {1, 0, 0, 0, 1}};
  const std::vector<std::pair<double, double>> packed(5, {-kInf, 1.0});
  const Case cases[] = {
      {packing({1, 2, 3}, 3), 6.0, 3},
      {packing({2, 2, 3}, 4), 48.0, 2},
      {packing({3, 3, 3, 3}, 4), 576.0, 1},
      {binary_program(cycle, packed, {1, 1, 1, 1, 1}), 10.0, 1},
      {binary_program(cycle, packed, {1, 1, 1, 1, 2}), 2.0, 3},
      {binary_program({{1, 1, 1, 1, 1, 1, 1}}, {{-kInf, 3.0}}, std::vector<double>(7, -1.0)),
       5040.0, 1},
  };
  for (const Case& given : cases) {
    const Symmetry symmetry = find_symmetry(given.mip, 1, never);
    EXPECT_TRUE(symmetry.is_complete);
    EXPECT_EQ(symmetry.order, given.order);
    verify(given.mip, symmetry);
    Vector<int> representatives(symmetry.orbit);
    std::sort(representatives.begin(), representatives.end());
    const auto end = std::unique(representatives.begin(), representatives.end());
    EXPECT_EQ(end - representatives.begin(), given.orbits);
  }
}

TEST(Symmetry, GeneratorsOfRandomProgramsAreSymmetries) {
  int found = 0;
  for (int seed = 0; seed < 400; ++seed) {
    Random random(seed + 5);
    for (int k = 0; k < 10; ++k) random.uniform();
    const int m = 2 + random.below(6), n = 3 + random.below(8);
    std::vector<std::vector<double>> rows(m, std::vector<double>(n, 0.0));
    std::vector<std::pair<double, double>> limits;
    for (auto& row : rows) {
      for (int k = 2 + random.below(2); k > 0; --k) row[random.below(n)] = 1 + random.below(8) / 7;
      limits.push_back({-kInf, 1.0});
    }
    const MipProblem mip = binary_program(rows, limits, std::vector<double>(n, -1.0));
    const Symmetry symmetry = find_symmetry(mip, 1, never);
    verify(mip, symmetry);
    found += !symmetry.generators.empty();
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
  EXPECT_GT(found, 100);
}

TEST(Symmetry, SetsAndIndicatorsBreakIt) {
  const std::vector<double> costs(4, -1.0);
  MipProblem mip = binary_program({{1, 1, 1, 1}}, {{-kInf, 2.0}}, costs);
  EXPECT_EQ(find_symmetry(mip, 1, never).order, 24.0);
  mip.sets.push_back({1, {0, 1}, {1, 2}});
  EXPECT_EQ(find_symmetry(mip, 1, never).order, 4.0);
  mip.sets[0].type = 2;
  EXPECT_EQ(find_symmetry(mip, 1, never).order, 2.0);
  mip.semis.push_back({3, 1.0, 1.0});
  EXPECT_EQ(find_symmetry(mip, 1, never).order, 1.0);
}

TEST(Components, AreJoinedByRowsSetsAndIndicators) {
  MipProblem mip = binary_program({{1, 1, 0, 0, 0}, {0, 0, 1, 0, 0}, {0, 0, 0, 1, 0}},
                                  {{-kInf, 1}, {-kInf, 1}, {-kInf, kInf}}, {1, 1, 1, 1, 1});
  EXPECT_EQ(find_components(mip).size(), 4u);
  mip.indicators.push_back({4, 1, 2, -kInf, 0.0});
  mip.sets.push_back({1, {1, 2}, {1, 2}});
  const Vector<Component> components = find_components(mip);
  ASSERT_EQ(components.size(), 2u);
  EXPECT_EQ(components[0].cols, (Vector<int>{3, 4}));
  EXPECT_EQ(components[1].rows, (Vector<int>{0, 1}));
  mip.sets[0].members.push_back(4);
  mip.sets[0].weights.push_back(3);
  EXPECT_TRUE(find_components(mip).empty());
}

}  // namespace
}  // namespace kelvo
