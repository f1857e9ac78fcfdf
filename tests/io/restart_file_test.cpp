// Restart files: a basis and a point, superbasic columns included.
#include <gtest/gtest.h>

#include "io/basis/basis_file.h"
#include "io/lp_format/lp_reading.h"
#include "io/written.h"

namespace kelvo {
namespace {

using test::RecordingSink;
using test::written;

/// Rows cap 'L', low 'G', rng 'R' in [2, 7]; columns x in [0, 3], y in [-2, 5], free z.
Model small_model() {
  Model model = test::read_lp(
                    "min x + y + z\nst\n cap: x + y <= 4\n low: x - z >= -9\n rng: y + z <= 7\n"
                    "bounds\n x <= 3\n -2 <= y <= 5\n z free\nend\n")
                    .model;
  model.name = "small";
  model.row_sense[2] = 'R';
  model.range = {0, 0, -5};
  return model;
}

std::string restart_of(const Model& model, const StoredBasis& basis, const RestartPoint& point) {
  SilentSink sink;
  return written([&](FileStream& stream) { write_basis(model, basis, 12, sink, stream, &point); });
}

TEST(RestartFile, IsWrittenAndReadBack) {
  const Model model = small_model();
  StoredBasis basis;
  basis.present = true;
  basis.col_status = {3, 1, 2};
  basis.row_status = {0, 1, 1};
  const RestartPoint point{{1.25, 2.75, -1.0 / 3}, {4, 19.0 / 12, 2}};
  const std::string text = restart_of(model, basis, point);
  EXPECT_EQ(text,
            "NAME          small  Iterations 12  Rows 3  Cols 3\n"
            " XL y    cap    2.750000000000000e+00\n"
            " UL z\n"
            " SR cap    4.000000000000000e+00\n"
            " BR low   -1.583333333333333e+00\n"
            " BR rng    2.000000000000000e+00\n"
            " SC x      1.250000000000000e+00\n"
            " SC z     -3.333333333333333e-01\n"
            "ENDATA\n");

  RecordingSink sink;
  LineReader lines{std::string_view(text)};
  StoredBasis read;
  RestartPoint at;
  ASSERT_TRUE(read_restart(lines, model, sink, read, at).ok());
  EXPECT_EQ(read.col_status, (Vector<int>{3, 1, 3})) << "z has no bound, so its value decides";
  EXPECT_EQ(read.row_status, basis.row_status);
  for (int j = 0; j < 3; ++j) EXPECT_NEAR(at.x[j], point.x[j], 1e-15);
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(at.activity[i], point.activity[i], 1e-14);
  EXPECT_EQ(sink[Channel::results], "Load of restart from file succeeded.\n");
  EXPECT_EQ(sink[Channel::warning], "");

  // As a plain basis file it has a column between its bounds.
  LineReader again{std::string_view(text)};
  EXPECT_EQ(read_basis(again, model, sink, read).code(), 1554);
}

TEST(RestartFile, ColumnsWithoutAValueAreAtTheirBounds) {
  const Model model = small_model();
  LineReader lines{std::string_view("NAME\n XU x low 2.5\n SR rng 6\nENDATA\n")};
  RecordingSink sink;
  StoredBasis basis;
  RestartPoint point;
  EXPECT_EQ(read_restart(lines, model, sink, basis, point).code(), 1550);
  EXPECT_TRUE(point.x.empty());
  EXPECT_EQ(sink[Channel::results], "Load of restart from file failed.\n");
  LineReader good{std::string_view("NAME\n XU x low 2.5\n XL z rng\n UL y\nENDATA\n")};
  ASSERT_TRUE(read_restart(good, model, sink, basis, point).ok());
  EXPECT_EQ(point.x, (Vector<double>{2.5, 5, 0}));
}

}  // namespace
}  // namespace kelvo
