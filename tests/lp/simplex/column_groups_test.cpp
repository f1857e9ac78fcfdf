// Products with all columns at a time, in both forms of storage.
#include "lp/simplex/state/column_groups.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/random.h"

namespace kelvo {
namespace {

SparseMatrix random_columns(int rows, int columns, double unit, Random& random) {
  SparseMatrix matrix;
  matrix.num_minor = rows;
  matrix.num_major = columns;
  matrix.start.push_back(0);
  for (int j = 0; j < columns; ++j) {
    for (int i = 0; i < rows; ++i) {
      // Lengths from none to many, in no order.
      if (random.uniform() > 0.1 * (j % 7)) continue;
      matrix.index.push_back(i);
      matrix.value.push_back(unit * std::floor(1.0 + 8.0 * random.uniform()));
    }
    matrix.start.push_back(static_cast<int>(matrix.index.size()));
  }
  return matrix;
}

TEST(ColumnGroups, AgreesWithOneColumnAtATime) {
  Random random(3);
  // Thirds are not exact in single precision; 70,000 rows do not fit 16 bits.
  struct Shape {
    int rows, columns;
    double unit;
  };
  for (const Shape shape : {Shape{9, 1, 1.0}, Shape{12, 37, 0.25}, Shape{12, 38, 1.0 / 3.0},
                            Shape{20, 1500, 1.0}, Shape{70000, 5, 1.0}}) {
    const SparseMatrix columns = random_columns(shape.rows, shape.columns, shape.unit, random);
    const ColumnGroups groups(columns);
    WorkVector weights(shape.rows), row(shape.columns);
    for (int i = 0; i < shape.rows; ++i) weights.insert(i, random.uniform() - 0.5);
    Vector<unsigned char> active(shape.columns);
    for (auto& a : active) a = random.uniform() < 0.8;
    groups.multiply(weights, active.data(), row);
    int nonzeros = 0;
    for (int j = 0; j < shape.columns; ++j) {
      double sum = 0.0;
      for (int k = columns.start[j]; k < columns.start[j + 1] && active[j]; ++k) {
        sum += weights.value[columns.index[k]] * columns.value[k];
      }
      EXPECT_EQ(row.value[j], sum) << "column " << j << " of " << shape.columns;
      nonzeros += sum != 0.0;
    }
    ASSERT_EQ(row.count, nonzeros);
    for (int k = 0; k < row.count; ++k) EXPECT_NE(row.value[row.index[k]], 0.0);
  }
}

}  // namespace
}  // namespace kelvo
