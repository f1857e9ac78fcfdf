// Long lines, typed lines, lines added to a model.

#include <gtest/gtest.h>

#include "fault/allocation.h"
#include "io/lp_format/lp_reading.h"
#include "io/lp_format/reader/lp_reader.h"

namespace kelvo {
namespace {

using test::LpReading;
using test::read_lp;
using test::RecordingSink;

/// "+ 2 name1 + 2 name2 ..." of at least `length` characters.
std::string long_sum(std::size_t length, const char* name) {
  std::string text;
  for (int k = 1; text.size() < length; ++k) text += " + 2 " + (name + std::to_string(k));
  return text;
}

TEST(LpReaderLines, LongLinesGiveTheModelOfShortOnes) {
  const std::string sum = long_sum(100000, "x");
  std::string broken = sum;
  for (std::size_t at = 0; (at = broken.find(" +", at)) != std::string::npos; at += 2) {
    broken[at] = '\n';
  }
  const LpReading one = read_lp("min" + sum + "\nst\nr:" + sum + " >= -1e-3\nend\n");
  const LpReading many = read_lp("min" + broken + "\nst\nr:" + broken + " >= -1e-3\nend\n");
  ASSERT_TRUE(one.status.ok()) << one.errors;
  ASSERT_TRUE(many.status.ok()) << many.errors;
  EXPECT_EQ(one.warnings, "");
  EXPECT_EQ(one.model.num_rows, 1);
  EXPECT_EQ(one.model.objective, many.model.objective);
  EXPECT_EQ(one.model.matrix.index, many.model.matrix.index);
  EXPECT_EQ(one.model.rhs, many.model.rhs);
}

TEST(LpReaderLines, CutsSpareExponentsAndArrows) {
  // Blanks move the cut through every token.
  for (std::size_t pad = 490; pad < 545; ++pad) {
    const std::string blanks(pad, ' ');
    const LpReading r = read_lp("min x\nst\n a: x + w" + blanks +
                                "+ 1.5e-3 y - 2.5e+2 z + u >= -3e-1\n i: + b = 1 " + blanks +
                                "-> - 2e-1 y - 3e-1 z <= 4\nend\n");
    ASSERT_TRUE(r.status.ok()) << pad << r.errors;
    EXPECT_EQ(r.warnings, "");
    ASSERT_EQ(r.model.num_rows, 1);
    EXPECT_EQ(r.model.matrix.value, (Vector<double>{1.0, 1.0, 0.0015, -250.0, 1.0}));
    EXPECT_EQ(r.model.rhs[0], -0.3);
    ASSERT_EQ(r.model.indicators.size(), 1);
    EXPECT_EQ(r.model.indicators.rows.rows.value, (Vector<double>{-0.2, -0.3}));
  }
}

TEST(LpReaderLines, LimitOfALineWithoutSigns) {
  const auto line = [](std::size_t length) {
    return "min x\nst\n x" + std::string(length - 6, ' ') + ">= 1\nend\n";
  };
  EXPECT_TRUE(read_lp(line(558)).status.ok());
  EXPECT_EQ(read_lp(line(559)).errors,
            "KELVO Error  1464: Line 3: Identifier/name too long to process.\n");
  const std::string endless(1 << 20, 'q');
  EXPECT_EQ(read_lp(endless).status.code(), 1464);
  EXPECT_EQ(read_lp("min x\n+ " + endless).status.code(), 1464);
}

TEST(LpReaderLines, NothingBehindTheEndOfALongLineCounts) {
  const std::string tail = long_sum(3000, "t") + " >= 7 [[";
  // A comment, and characters behind a right-hand side.
  const LpReading r = read_lp("min x \\" + tail + "\nst\n x >= 1 \\" + tail + "\n y >= 2 u" + tail +
                              "\n z" + std::string(700, ' ') + "- y >= 3\nend\n");
  EXPECT_EQ(r.errors, "KELVO Error  1464: Line 5: Identifier/name too long to process.\n");
  const LpReading without = read_lp("min x \\" + tail + "\nst\n x >= 1 \\" + tail + "\n y >= 2 u" +
                                    tail + "\n z >= 3\nend\n");
  ASSERT_TRUE(without.status.ok()) << without.errors;
  EXPECT_EQ(without.model.num_cols, 3);
  EXPECT_EQ(without.model.num_rows, 3);
  EXPECT_EQ(without.warnings, "Warning, line 4: Characters after RHS value are ignored.\n");
}

TEST(LpReaderLines, PiecesOfALineAreNoKeywords) {
  // The piece behind the cut begins with "st".
  std::string text = "min x\nst\n";
  text += " x" + std::string(500, ' ') + "+ st" + std::string(100, ' ') + ">= 1\nend\n";
  const LpReading r = read_lp(text);
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(r.model.num_rows, 1);
  EXPECT_EQ(r.model.num_cols, 2);
}

LpReading enter(std::string_view text) {
  LpReaderSettings settings;
  settings.interactive = true;
  return read_lp(text, settings);
}

TEST(LpReaderEntry, LinesWithErrorsAreTypedAgain) {
  const LpReading r = enter(
      "hello\n"
      "maximize\n"
      " x + 2 y\n"
      " + + z\n"
      " + z\n"
      "st\n"
      " a: x + wrong >= >= 3\n"
      " a: x + y\n"
      "   + <= 4\n"
      "   + z <= 4\n"
      " a: x <= 3\n"
      " b: x <= 3\n"
      "bounds\n"
      " x 4\n"
      " ghost <= 4\n"
      " x <= 4\n"
      "end\n");
  ASSERT_TRUE(r.status.ok());
  EXPECT_EQ(r.model.num_cols, 3);
  EXPECT_EQ(r.model.num_rows, 2);
  EXPECT_EQ(r.model.objective, (Vector<double>{1.0, 2.0, 1.0}));
  EXPECT_EQ(r.model.matrix.num_nonzeros(), 4);
  EXPECT_EQ(r.model.upper[0], 4.0);
  std::string results = "Enter new problem ['end' on a separate line terminates]:\n";
  for (int k = 0; k < 6; ++k) results += "Please reenter last line:\n";
  EXPECT_EQ(r.results, results);
  EXPECT_EQ(r.errors,
            "KELVO Error  1436: Max or Min missing.\n"
            "KELVO Error  1602: Lines 4,4: Adjacent signs.\n"
            "KELVO Error  1615: Line 7: Expected number, found '>'.\n"
            "KELVO Error  1604: Lines 9,9: Adjacent sign and sense.\n"
            "KELVO Error  1447: Line 11: Row 'a' repeats.\n"
            "KELVO Error  1621: Line 14: No bound sense.\n");
  EXPECT_EQ(r.warnings, "Warning, line 15: Name 'ghost' does not exist.\n");
}

TEST(LpReaderEntry, ConstraintsAndBoundsAreAddedToAModel) {
  LpReading r = read_lp(
      "min x + y + [ x^2 ] / 2\nst\n a: x + y >= 1\n q: [ x^2 ] <= 9\nuser cuts\n x <= 5\n"
      "bounds\n y <= 6\ngen\n y\nend\n");
  ASSERT_TRUE(r.status.ok());
  const auto add = [&r](std::string_view text, std::string& errors) {
    RecordingSink sink;
    LineReader lines(text);
    const Status status = LpReader(lines, {}, sink).read_additions(r.model);
    errors = sink[Channel::error];
    EXPECT_EQ(sink[Channel::results].find("Enter new constraints and bounds ['end' terminates]:\n"),
              0u);
    return status.code();
  };
  std::string errors;
  EXPECT_EQ(add(" a: x <= 3\n y + 2 new + y <= 8\nst\n [ y^2 ] <= 7\n k: y=1 -> x <= 2\n"
                "user cuts\n new <= 3\nbounds\n x <= 4\n new >= 1\nend\n",
                errors),
            0);
  EXPECT_EQ(errors, "KELVO Error  1447: Line 1: Row 'a' repeats.\n");
  const Model& m = r.model;
  ASSERT_EQ(m.num_cols, 3);
  ASSERT_EQ(m.num_rows, 2);
  EXPECT_EQ(m.col_names.view(2), "new");
  EXPECT_EQ(m.row_names.view(1), "c2");
  EXPECT_EQ(m.matrix.coefficient(0, 1), 1.0);
  EXPECT_EQ(m.matrix.coefficient(1, 1), 2.0);
  EXPECT_EQ(m.matrix.coefficient(1, 2), 2.0);
  EXPECT_EQ(m.rhs, (Vector<double>{1.0, 8.0}));
  EXPECT_EQ(m.lower, (Vector<double>{0.0, 0.0, 1.0}));
  EXPECT_EQ(m.upper, (Vector<double>{4.0, 6.0, kInfiniteBound}));
  EXPECT_EQ(m.column_type, (Vector<char>{'C', 'I', 'C'}));
  EXPECT_EQ(m.user_cuts.size(), 2);
  EXPECT_EQ(m.user_cuts.names.view(1), "u2");
  EXPECT_EQ(m.user_cuts.rows.index, (Vector<int>{0, 2}));
  EXPECT_EQ(m.quadratic_constraints.size(), 2u);
  EXPECT_EQ(m.quadratic_names.view(1), "q2");
  EXPECT_EQ(m.indicators.size(), 1);
  EXPECT_EQ(m.quadratic.num_major, 3);
}

TEST(LpReaderEntry, FailingAllocationsOfAdditionsLoseNothing) {
  test::for_each_allocation_failure(
      [] { return read_lp("min a\nst\n r: a >= 1\nend\n"); },
      [](LpReading& target) {
        SilentSink sink;
        LineReader lines("a + b >= 2\nuser cuts\n b <= 3\n c >= >=\nbounds\n a <= 4\nend\n");
        try {
          return LpReader(lines, {}, sink).read_additions(target.model).code();
        } catch (const std::bad_alloc&) {
          return 1001;
        }
      },
      [](const LpReading& target) {
        EXPECT_EQ(target.model.num_cols, 1);
        EXPECT_EQ(target.model.num_rows, 1);
        EXPECT_EQ(target.model.user_cuts.size(), 0);
      });
}

}  // namespace
}  // namespace kelvo
