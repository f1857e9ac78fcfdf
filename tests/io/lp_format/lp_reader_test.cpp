// The model that a text gives.

#include "io/lp_format/reader/lp_reader.h"

#include <gtest/gtest.h>

#include <cmath>

#include "io/lp_format/lp_reading.h"

namespace kelvo {
namespace {

using test::LpReading;
using test::read_lp;

constexpr double kInf = kInfiniteBound;

double coefficient(const Model& model, int row, int column) {
  return model.matrix.coefficient(row, column);
}

std::string types(const Model& model) {
  return {model.column_type.begin(), model.column_type.end()};
}

std::string senses(const Model& model) {
  return {model.row_sense.begin(), model.row_sense.end()};
}

TEST(LpReader, EverySectionOfAFile) {
  const LpReading r = read_lp(
      "\\Problem name: sample\n"
      "\n"
      "Maximize\n"
      " profit: 3 x + 2.5 y - z + x \\ comment\n"
      "  + 0 idle\n"
      "Subject To\n"
      " cap:  x + 2 y\n"
      "   + 3 z <= 10\n"
      " x - y >= -2\n"
      " bal: x + x - y = .5e1\n"
      "User Cuts\n"
      " cut: x + y <= 7\n"
      "  y =< 6\n"
      "Lazy Constraints\n"
      " x => 0.25\n"
      "Bounds\n"
      " x <= 4\n"
      " -1 <= y <= 8\n"
      " z Free\n"
      "Generals\n"
      " y\n"
      "Semi-Continuous\n"
      " x y\n"
      "SOS\n"
      " s: S2:: x:3 y:1 z:2\n"
      "End\n");
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(r.errors + r.warnings, "");
  const Model& m = r.model;
  EXPECT_EQ(m.sense, -1);
  EXPECT_EQ(m.objective_name, "profit");
  ASSERT_EQ(m.num_cols, 4);
  EXPECT_EQ(m.col_names.view(3), "idle");
  EXPECT_EQ(m.objective, (Vector<double>{4.0, 2.5, -1.0, 0.0}));
  ASSERT_EQ(m.num_rows, 3);
  EXPECT_EQ(senses(m), "LGE");
  EXPECT_EQ(m.rhs, (Vector<double>{10.0, -2.0, 5.0}));
  EXPECT_EQ(m.row_names.view(0), "cap");
  EXPECT_EQ(m.row_names.view(1), "c2");
  EXPECT_EQ(m.matrix.num_nonzeros(), 7);
  EXPECT_EQ(coefficient(m, 0, 2), 3.0);
  EXPECT_EQ(coefficient(m, 2, 0), 2.0);
  EXPECT_EQ(m.lower, (Vector<double>{0.0, -1.0, -kInf, 0.0}));
  EXPECT_EQ(m.upper, (Vector<double>{4.0, 8.0, kInf, kInf}));
  EXPECT_EQ(types(m), "SNCC");
  ASSERT_EQ(m.user_cuts.size(), 2);
  EXPECT_EQ(m.user_cuts.names.view(1), "u2");
  EXPECT_EQ(m.user_cuts.sense[1], 'L');
  ASSERT_EQ(m.lazy_constraints.size(), 1);
  EXPECT_EQ(m.lazy_constraints.names.view(0), "l1");
  EXPECT_EQ(m.lazy_constraints.rhs[0], 0.25);
  ASSERT_EQ(m.sos.size(), 1);
  EXPECT_EQ(m.sos.type[0], '2');
  EXPECT_EQ(m.sos.members.index, (Vector<int>{1, 2, 0}));
  EXPECT_EQ(m.sos.members.value, (Vector<double>{1.0, 2.0, 3.0}));
}

TEST(LpReader, KeywordSpellings) {
  const auto reads = [](const std::string& objective, const std::string& constraints,
                        const std::string& tail) {
    const LpReading r = read_lp(objective + " x\n" + constraints + " x >= 1\n" + tail + "\nend\n");
    return r.status.ok() &&
           r.model.num_rows + r.model.user_cuts.size() + r.model.lazy_constraints.size() == 1;
  };
  for (const char* word :
       {"min", "MINI", "minim", "MINIMI", "Minimiz", "minimize", "MAX", "maxi", "Maximize"}) {
    EXPECT_TRUE(reads(word, "st", "")) << word;
  }
  for (const char* word :
       {"ST", "st.", "s.t", "S.T.", "Subject To", "subject   to:", "SUCH\tTHAT", "subjectto",
        "suchthat:", "User Cuts", "usercuts", "lazy constraints", "LazyConstraints:"}) {
    EXPECT_TRUE(reads("min", word, "")) << word;
  }
  for (const char* word : {"boun", "BOUND", "Bounds \\ comment", "int", "ints", "INTEGER",
                           "integers", "BIN", "bins", "binary", "Binaries", "GEN", "gens",
                           "general", "generals", "semi", "SEMIS", "Semi-Continuous", "SOS"}) {
    EXPECT_TRUE(reads("min", "st", word)) << word;
  }
  // Not in the table, or with something behind them: ordinary content of the constraints.
  for (const char* word : {"bou", "bounds x", "generalss", "semicontinuous", "binaries x"}) {
    const LpReading r = read_lp(std::string("min x\nst\nx>=1\n") + word + "\nend\n");
    EXPECT_NE(r.warnings.find("Unfinished constraint"), std::string::npos) << word;
  }
  EXPECT_EQ(read_lp("minimum x\nst\nx>=1\nend\n").status.code(), 1436);
  EXPECT_EQ(read_lp("mi x\nend\n").status.code(), 1436);
}

TEST(LpReader, KeywordsCountOnlyWhereTheyAreKnown) {
  // A constraint keyword among the bounds is a bound without a sense.
  EXPECT_EQ(read_lp("min x\nbounds\nst\nend\n").status.code(), 1621);
  // Among types and sets, names.
  const LpReading types_first = read_lp("min bounds\nst\nbounds + x >= 1\ngen\nbounds\nst\nend\n");
  ASSERT_TRUE(types_first.status.ok()) << types_first.errors;
  EXPECT_EQ(types(types_first.model), "IC");
  EXPECT_EQ(types_first.warnings, "Warning, line 6: Name 'st' does not exist.\n");
  EXPECT_EQ(read_lp("min x\nsos\nbin\nx\nend\n").status.code(), 1627);
  // The objective keywords inside the constraints are variables.
  EXPECT_EQ(read_lp("min x\nst\nmax + x >= 2\nend\n").model.num_cols, 2);
  // The last objective keyword decides.
  const LpReading twice = read_lp("max\nmin\n x + y\nst\nx>=1\nend\n");
  EXPECT_EQ(twice.model.sense, 1);
  EXPECT_EQ(twice.model.num_cols, 2);
}

TEST(LpReader, TextAroundTheModel) {
  const LpReading r = read_lp("some words\n1 + 2 <= 3\nMax x\nst\nx<=1\nEnd\nx >= nonsense [[\n");
  ASSERT_TRUE(r.status.ok());
  EXPECT_EQ(r.model.num_rows, 1);
  for (const char* text : {"", "\n\n", "End", "st\nx>=1\nend\n", "\xff\xfe binary", "blah blah"}) {
    EXPECT_EQ(read_lp(text).errors, "KELVO Error  1436: Max or Min missing.\n") << text;
  }
  EXPECT_EQ(read_lp("min x\nst\nx>=1").warnings, "Warning: 'End' missing.\n");
  EXPECT_EQ(read_lp("min x\nst\nx>=1\nEND").warnings, "");
  const LpReading empty = read_lp("Minimize\n obj:\nEnd\n");
  ASSERT_TRUE(empty.status.ok());
  EXPECT_EQ(empty.model.num_cols, 0);
  EXPECT_EQ(empty.warnings, "");
}

TEST(LpReader, BlanksAndControlCharactersDoNotSeparate) {
  const LpReading r = read_lp("min 1 2 a\tb c\x01\n\r\nst\r\n  r 1 : 2 . 5 abc > = 1 0\r\nend\r\n");
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(r.warnings, "");
  ASSERT_EQ(r.model.num_cols, 1);
  EXPECT_EQ(r.model.col_names.view(0), "abc");
  EXPECT_EQ(r.model.objective[0], 12.0);
  EXPECT_EQ(r.model.row_names.view(0), "r1");
  EXPECT_EQ(coefficient(r.model, 0, 0), 2.5);
  EXPECT_EQ(r.model.rhs[0], 10.0);
}

TEST(LpReader, EndOfTheUsefulPartOfALine) {
  const std::string text("min x \\ + y\n + z\f + a\n + b\r + c\n + d\0 + e5\nst\nx>=1\nend\n", 55);
  const LpReading r = read_lp(text);
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(r.model.num_cols, 4);
}

TEST(LpReader, UnexpectedCharactersAreDropped) {
  const LpReading r = read_lp("min x\xff\xffy\ns\xfft\nxy >= 1 \\ \xff\nend\n");
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(r.warnings,
            "Warning, line 1: Unexpected character code 255 skipped.\n"
            "Warning, line 1: Unexpected character code 255 skipped.\n"
            "Warning, line 2: Unexpected character code 255 skipped.\n");
  EXPECT_EQ(r.model.num_cols, 1);
  EXPECT_EQ(r.model.num_rows, 1);
}

TEST(LpReader, ZeroAndCancelledCoefficientsLeaveNoEntry) {
  const LpReading r = read_lp("min x\nst\nc1: x + y - x + 0 z + 2 y >= 1\nempty: <= 3\nend\n");
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(r.model.num_cols, 3);
  EXPECT_EQ(r.model.num_rows, 2);
  EXPECT_EQ(r.model.matrix.num_nonzeros(), 1);
  EXPECT_EQ(coefficient(r.model, 0, 1), 3.0);
  EXPECT_EQ(r.model.row_names.view(1), "empty");
}

TEST(LpReader, Numbers) {
  struct Case {
    const char* text;
    double value;
  };
  for (const Case& c :
       {Case{"0", 0.0}, Case{"007", 7.0}, Case{"2.", 2.0}, Case{".5", 0.5}, Case{"0.1", 0.1},
        Case{"1e3", 1000.0}, Case{"2.5E-2", 0.025}, Case{"1e+37", 1e37}, Case{"1e-38", 0.0},
        Case{"-4", -4.0}, Case{"+ 4", 4.0}, Case{"123456789012345", 123456789012345.0}}) {
    const LpReading r = read_lp(std::string("min x\nst\nx >= ") + c.text + "\nend\n");
    ASSERT_TRUE(r.status.ok()) << c.text << r.errors;
    EXPECT_DOUBLE_EQ(r.model.rhs[0], c.value) << c.text;
  }
}

TEST(LpReader, TermsMayBeBrokenAtAnyToken) {
  const LpReading r = read_lp(
      "min\nobj:\n-\n2\nx\n+\n[\n2\nx\n^\n2\n-\nx\n*\ny\n]\n/"
      "\n2\nst\nc:\nx\n-\n3\ny\n>=\n-\n1\nend\n");
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(r.warnings, "");
  EXPECT_EQ(r.model.objective, (Vector<double>{-2.0, 0.0}));
  EXPECT_EQ(r.model.quadratic.value, (Vector<double>{2.0, -0.5, -0.5}));
  EXPECT_EQ(coefficient(r.model, 0, 1), -3.0);
  EXPECT_EQ(r.model.rhs[0], -1.0);
}

TEST(LpReader, QuadraticObjective) {
  struct Case {
    const char* bracket;
    Vector<double> entries;  // of Q, by column: (x,x), (y,x), (x,y), (y,y)
    bool deprecated;
  };
  const Case cases[] = {
      {"[ 4 x^2 + 6 x*y + y^2 ] / 2", {4, 3, 3, 1}, false},
      {"- [ 4 x^2 + 6 x*y + y^2 ] / 2", {-4, -3, -3, -1}, false},
      {"[ 4 x^2 + 6 x*y + y^2 ]", {8, 6, 6, 2}, true},
      {"[ x*y + 2 y*x + x*x + x^2 + y^2 ] / 2", {2, 1.5, 1.5, 1}, false},
      {"[ x*y ] / 2 + [ x^2 + x*y + y^2]/2", {1, 1, 1, 1}, false},
  };
  for (const Case& c : cases) {
    const LpReading r = read_lp(std::string("min x + y + ") + (c.bracket[0] == '-' ? "z " : "") +
                                c.bracket + " + 3 x\nst\nx>=1\nend\n");
    ASSERT_TRUE(r.status.ok()) << c.bracket << r.errors;
    EXPECT_EQ(r.model.objective[0], 4.0);
    EXPECT_EQ(r.model.quadratic.value, c.entries) << c.bracket;
    EXPECT_EQ(r.warnings,
              c.deprecated ? "Warning, line 1: Deprecated format, expecting '] / 2'.\n" : "");
  }
}

TEST(LpReader, QuadraticConstraints) {
  const LpReading r = read_lp(
      "min x\nst\n"
      " q: x + 2 y + [ 3 x^2 + 4 x*y - y^2 ] - x <= 8\n"
      " [ x^2 ] = 1\n"
      " lin: x >= 1\n"
      "end\n");
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(r.model.num_rows, 1);
  EXPECT_EQ(r.model.row_names.view(0), "lin");
  ASSERT_EQ(r.model.quadratic_constraints.size(), 2u);
  const QuadraticConstraint& q = r.model.quadratic_constraints[0];
  EXPECT_EQ(q.linear_index, Vector<int>{1});
  EXPECT_EQ(q.linear_value, Vector<double>{2.0});
  EXPECT_EQ(q.quad_row, (Vector<int>{0, 0, 1}));
  EXPECT_EQ(q.quad_col, (Vector<int>{0, 1, 1}));
  EXPECT_EQ(q.quad_value, (Vector<double>{3.0, 4.0, -1.0}));
  EXPECT_EQ(q.sense, 'L');
  EXPECT_EQ(q.rhs, 8.0);
  EXPECT_EQ(r.model.quadratic_constraints[1].sense, 'E');
  EXPECT_EQ(r.model.quadratic_names.view(1), "q2");
}

TEST(LpReader, Indicators) {
  const LpReading r = read_lp(
      "min x\nst\n"
      " on: b = 1 -> x + y >= 2\n"
      " b = 0 -> x\n  <= 3\n"
      " bi: 1 c = 1 <-> x <= 4\n"
      " c = 1 <- y = 5\n"
      "end\n");
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(r.warnings, "");
  const IndicatorConstraints& indicators = r.model.indicators;
  ASSERT_EQ(indicators.size(), 4);
  EXPECT_EQ(r.model.num_rows, 0);
  EXPECT_EQ(indicators.column, (Vector<int>{1, 1, 3, 3}));
  EXPECT_EQ(indicators.complemented, (Vector<char>{0, 1, 0, 0}));
  EXPECT_EQ(indicators.relation, (Vector<int>{1, 1, 3, 2}));
  EXPECT_EQ(indicators.rows.sense, (Vector<char>{'G', 'L', 'L', 'E'}));
  EXPECT_EQ(indicators.rows.rhs, (Vector<double>{2.0, 3.0, 4.0, 5.0}));
  EXPECT_EQ(indicators.rows.names.view(0), "on");
  EXPECT_EQ(indicators.rows.names.view(1), "i2");
  EXPECT_EQ(indicators.rows.rows.start, (Vector<int>{0, 2, 3, 4, 5}));
}

TEST(LpReader, ASwitchIsZeroOrOneWithinATolerance) {
  const auto read_switch = [](const std::string& condition) {
    return read_lp("min x\nst\n" + condition + " -> x >= 2\nend\n");
  };
  for (const char* one : {"b = 1.00000000005", "b = 0.99999999995", "0.99999999995 b = 1"}) {
    const LpReading r = read_switch(one);
    ASSERT_TRUE(r.status.ok()) << one << r.errors;
    EXPECT_EQ(r.model.indicators.complemented, (Vector<char>{0})) << one;
  }
  EXPECT_EQ(read_switch("b = 0.00000000005").model.indicators.complemented, (Vector<char>{1}));
  for (const char* other : {"b = 1.0000000002", "b = 0.9999999998", "b = 0.0000000002",
                            "1.0000000002 b = 1", "0.9999999998 b = 0"}) {
    EXPECT_EQ(read_switch(other).status.code(), 1439) << other;
  }
}

TEST(LpReader, BoundForms) {
  struct Case {
    const char* line;
    double lower;
    double upper;
  };
  for (const Case& c :
       {Case{"x free", -kInf, kInf}, Case{"x FREE", -kInf, kInf}, Case{"x <= 3", 0, 3},
        Case{"x >= -inf", -kInf, kInf}, Case{"x = 2.5", 2.5, 2.5}, Case{"3 <= x", 3, kInf},
        Case{"3 >= x", 0, 3}, Case{"3 = x", 3, 3}, Case{"-5 <= x <= INF", -5, kInf},
        Case{"-infinity < x =< 7", -kInf, 7}, Case{"9 >= x >= 1", 1, 9}, Case{"x <= +inf", 0, kInf},
        Case{"x <= 5e-11", 0, 0}, Case{"x <= 1e17", 0, kInf}, Case{"x >= -1e17", -kInf, kInf},
        Case{"x <= -4", 0, -4}}) {
    const LpReading r = read_lp(std::string("min x\nst\nx>=1\nbounds\n") + c.line + "\nend\n");
    ASSERT_TRUE(r.status.ok()) << c.line << r.errors;
    EXPECT_EQ(r.model.lower[0], c.lower) << c.line;
    EXPECT_EQ(r.model.upper[0], c.upper) << c.line;
    EXPECT_EQ(r.warnings, "") << c.line;
  }
}

TEST(LpReader, BoundsThatCannotBeMeant) {
  const LpReading r = read_lp(
      "min x\nst\nx>=1\nbounds\nx >= 1e18\nx <= -inf\n0 <= x >= 5\nx <= 9\nunknown <= 3\n"
      "e5 <= 3\nend\n");
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(r.model.lower[0], 5.0);
  EXPECT_EQ(r.model.upper[0], 9.0);
  EXPECT_EQ(r.warnings,
            "Warning, line 7: Possible sense conflict.\n"
            "Warning, line 9: Name 'unknown' does not exist.\n"
            "Warning, line 10: 'e5' not valid identifier.\n"
            "Warning:  Infinity lower bound ignored.\n"
            "Warning:  -Infinity upper bound ignored.\n");
}

TEST(LpReader, Types) {
  const LpReading r = read_lp(
      "min a + b + c + d + f + g\nst\na>=0\nbounds\n0 <= f <= 3\n"
      "binaries\na b\tf nobody e7\ngenerals\n b c\nints\nd\nsemi\nc\nend\n");
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(types(r.model), "BBNIBC");
  EXPECT_EQ(r.model.upper, (Vector<double>{1.0, 1.0, kInf, kInf, 3.0, kInf}));
  EXPECT_EQ(r.warnings,
            "Warning, line 7: Name 'nobody' does not exist.\n"
            "Warning, line 7: 'e7' not valid identifier.\n"
            "Warning:  Binary variables declared with bounds other than 0 and 1.\n");
  EXPECT_TRUE(read_lp("min x\nst\nx>=0\ngen\nend\n").model.column_type.empty());
}

TEST(LpReader, SpecialOrderedSets) {
  const LpReading r = read_lp(
      "min x + y + z\nst\nx>=0\nsos\n a: S1 :: x : 1 y : 2.5\n  z : 3\n S2:: y:-1 x:2\n"
      "b:\n s1::\n z\n :\n -\n 4 nobody:7\nend\n");
  ASSERT_TRUE(r.status.ok()) << r.errors;
  ASSERT_EQ(r.model.sos.size(), 3);
  EXPECT_EQ(r.model.sos.type, (Vector<char>{'1', '2', '1'}));
  EXPECT_EQ(r.model.sos.names.view(0), "a");
  EXPECT_EQ(r.model.sos.names.view(1), "s2");
  EXPECT_EQ(r.model.sos.members.start, (Vector<int>{0, 3, 5, 6}));
  EXPECT_EQ(r.model.sos.members.index, (Vector<int>{0, 1, 2, 1, 0, 2}));
  EXPECT_EQ(r.model.sos.members.value, (Vector<double>{1.0, 2.5, 3.0, -1.0, 2.0, -4.0}));
  EXPECT_EQ(r.warnings, "Warning, line 13: Name 'nobody' does not exist.\n");
}

TEST(LpReader, LinearOnly) {
  LpReaderSettings settings;
  settings.linear_only = true;
  settings.source_name = "dir/m.lp";
  const LpReading r = read_lp("min x + [ x^2 ] / 2\nst\nx>=1\n[x^2] <= 4\ngen\nx\nend\n", settings);
  ASSERT_TRUE(r.status.ok());
  EXPECT_TRUE(r.model.column_type.empty());
  EXPECT_EQ(r.model.quadratic.num_major, 0);
  EXPECT_TRUE(r.model.quadratic_constraints.empty());
  EXPECT_EQ(r.warnings,
            "Problem dir/m.lp contains integer variable declarations, ignored.\n"
            "Problem dir/m.lp contains quadratic objective coefficients, ignored.\n"
            "Problem dir/m.lp contains quadratic constraints, ignored.\n");
}

}  // namespace
}  // namespace kelvo
