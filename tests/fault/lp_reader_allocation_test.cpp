// Every allocation of the LP reader may fail: the model stays as it was.

#include <new>

#include "fault/allocation.h"
#include "io/lp_format/lp_reading.h"

namespace kelvo {
namespace {

using test::for_each_allocation_failure;
using test::LpReading;

constexpr std::string_view kText =
    "max profit: 3 x + 2.5 y - z + [ x^2 + x*y ] / 2\nst\n cap: x + 2 y + x <= 10\n"
    " q: [ x^2 ] + y <= 4\n on: b = 1 -> x >= 1\nuser cuts\n x <= 5\nlazy constraints\n y <= 6\n"
    "bounds\n x <= 4\nbin\n b\nsos\n s: S1:: y:2 x:1\nend\n";

struct Target {
  Model model;
};

template <class Operation>
int status_of(Operation operation) {
  try {
    return operation().code();
  } catch (const std::bad_alloc&) {
    return 1001;
  }
}

LpReaderSettings small_settings(bool interactive) {
  LpReaderSettings settings;
  settings.capacities = {};
  settings.interactive = interactive;
  return settings;
}

Target prepared() {
  Target target;
  SilentSink sink;
  LineReader lines("min a\nst\n r: a >= 1\nend\n");
  EXPECT_TRUE(LpReader(lines, small_settings(false), sink).read(target.model).ok());
  return target;
}

void expect_unchanged(const Target& target) {
  EXPECT_EQ(target.model.num_cols, 1);
  EXPECT_EQ(target.model.num_rows, 1);
  EXPECT_EQ(target.model.col_names.view(0), "a");
  EXPECT_EQ(target.model.matrix.coefficient(0, 0), 1.0);
  EXPECT_EQ(target.model.user_cuts.size(), 0);
}

TEST(LpReaderAllocation, Read) {
  for (const bool interactive : {false, true}) {
    for_each_allocation_failure(
        prepared,
        [interactive](Target& target) {
          return status_of([&] {
            SilentSink sink;
            LineReader lines(kText);
            return LpReader(lines, small_settings(interactive), sink).read(target.model);
          });
        },
        expect_unchanged);
  }
}

TEST(LpReaderAllocation, Additions) {
  for_each_allocation_failure(
      prepared,
      [](Target& target) {
        return status_of([&] {
          SilentSink sink;
          LineReader lines("a + b >= 2\nuser cuts\n b <= 3\n c >= >=\nbounds\n a <= 4\nend\n");
          return LpReader(lines, {}, sink).read_additions(target.model);
        });
      },
      expect_unchanged);
}

}  // namespace
}  // namespace kelvo
