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

std::string types(const Model& model) {
  return {model.column_type.begin(), model.column_type.end()};
}

/// A text and the model it gives, as the writer puts it.
struct ModelCase {
  const char* text;
  const char* written;
  const char* warnings = "";
};

TEST(LpReader, TextsAndTheirModels) {
  for (const ModelCase& c : std::initializer_list<ModelCase>{
           // Every section of a file.
           {"\\Problem name: sample\n\nMaximize\n profit: 3 x + 2.5 y - z + x \\ comment\n"
            "  + 0 idle\nSubject To\n cap:  x + 2 y\n   + 3 z <= 10\n x - y >= -2\n"
            " bal: x + x - y = .5e1\nUser Cuts\n cut: x + y <= 7\n  y =< 6\nLazy Constraints\n"
            " x => 0.25\nBounds\n x <= 4\n -1 <= y <= 8\n z Free\nGenerals\n y\nSemi-Continuous\n"
            " x y\nSOS\n s: S2:: x:3 y:1 z:2\nEnd\n",
            "Maximize\n profit: 4 x + 2.5 y - z + 0 idle\nSubject To\n"
            " cap: x + 2 y + 3 z <= 10\n c2:  x - y >= -2\n bal: 2 x - y  = 5\nUser Cuts\n"
            " cut: x + y <= 7\n u2:  y <= 6\nLazy Constraints\n l1: x >= 0.25\nBounds\n"
            " 0 <= x <= 4\n-1 <= y <= 8\n      z Free\nGenerals\n y \nSemi-Continuous\n"
            " x  y \nSOS\n s: S2 ::  y : 1  z : 2  x : 3\nEnd\n"},
           // Blanks and control characters do not separate.
           {"min 1 2 a\tb c\x01\n\r\nst\r\n  r 1 : 2 . 5 abc > = 1 0\r\nend\r\n",
            "Minimize\n obj: 12 abc\nSubject To\n r1: 2.5 abc >= 10\nEnd\n"},
           // Coefficients of zero and those that cancel leave no entry.
           {"min x\nst\nc1: x + y - x + 0 z + 2 y >= 1\nnone: <= 3\nend\n",
            "Minimize\n obj: x + 0 z\nSubject To\n c1:   3 y >= 1\n none: <= 3\nEnd\n"},
           // A term may be broken at any token.
           {"min\nobj:\n-\n2\nx\n+\n[\n2\nx\n^\n2\n-\nx\n*\ny\n]\n/\n2\nst\nc:\nx\n-\n3\ny\n"
            ">=\n-\n1\nend\n",
            "Minimize\n obj: - 2 x + [ 2 x ^2 - x * y ] / 2\nSubject To\n c: x - 3 y >= -1\n"
            "End\n"},
           // Quadratic constraints are apart from the rows.
           {"min x\nst\n q: x + 2 y + [ 3 x^2 + 4 x*y - y^2 ] - x <= 8\n [ x^2 ] = 1\n lin: x >= "
            "1\n"
            "end\n",
            "Minimize\n obj: x + 0 y\nSubject To\n lin: x >= 1\n"
            " q: 2 y + [ 3 x ^2 + 4 x * y - y ^2 ] <= 8\n q2: [ x ^2 ]  = 1\nEnd\n"},
           // Indicators of all three directions.
           {"min x\nst\n on: b = 1 -> x + y >= 2\n b = 0 -> x\n  <= 3\n bi: 1 c = 1 <-> x <= 4\n"
            " c = 1 <- y = 5\nend\n",
            "Minimize\n obj: x + 0 b + 0 y + 0 c\nSubject To\n on: b = 1 -> x + y >= 2\n"
            " i2: b = 0 -> x <= 3\n bi: c = 1 <-> x <= 4\n i4: c = 1 <- y  = 5\nEnd\n"},
           // Bounds that cannot be meant.
           {"min x\nst\nx>=1\nbounds\nx >= 1e18\nx <= -inf\n0 <= x >= 5\nx <= 9\nunknown <= 3\n"
            "e5 <= 3\nend\n",
            "Minimize\n obj: x\nSubject To\n c1: x >= 1\nBounds\n 5 <= x <= 9\nEnd\n",
            "Warning, line 7: Possible sense conflict.\n"
            "Warning, line 9: Name 'unknown' does not exist.\n"
            "Warning, line 10: 'e5' not valid identifier.\n"
            "Warning:  Infinity lower bound ignored.\n"
            "Warning:  -Infinity upper bound ignored.\n"},
           // Types.
           {"min a + b + c + d + f + g\nst\na>=0\nbounds\n0 <= f <= 3\nbinaries\na b\tf nobody e7\n"
            "generals\n b c\nints\nd\nsemi\nc\nend\n",
            "Minimize\n obj: a + b + c + d + f + g\nSubject To\n c1: a >= 0\nBounds\n"
            " 0 <= a <= 1\n 0 <= b <= 1\n      d >= 0\n 0 <= f <= 3\nBinaries\n a  b  f \n"
            "Generals\n c  d \nSemi-Continuous\n c \nEnd\n",
            "Warning, line 7: Name 'nobody' does not exist.\n"
            "Warning, line 7: 'e7' not valid identifier.\n"
            "Warning:  Binary variables declared with bounds other than 0 and 1.\n"},
           // Sets.
           {"min x + y + z\nst\nx>=0\nsos\n a: S1 :: x : 1 y : 2.5\n  z : 3\n S2:: y:-1 x:2\nb:\n"
            " s1::\n z\n :\n -\n 4 nobody:7\nend\n",
            "Minimize\n obj: x + y + z\nSubject To\n c1: x >= 0\nSOS\n"
            " a:  S1 ::  x : 1  y : 2.5  z : 3\n s2: S2 ::  y : -1  x : 2\n"
            " b:  S1 ::  z : -4\nEnd\n",
            "Warning, line 13: Name 'nobody' does not exist.\n"},
           // Characters that no file should have are dropped.
           {"min x\xff\xffy\ns\xfft\nxy >= 1 \\ \xff\nend\n",
            "Minimize\n obj: xy\nSubject To\n c1: xy >= 1\nEnd\n",
            "Warning, line 1: Unexpected character code 255 skipped.\n"
            "Warning, line 1: Unexpected character code 255 skipped.\n"
            "Warning, line 2: Unexpected character code 255 skipped.\n"},
       }) {
    const LpReading r = read_lp(c.text);
    EXPECT_TRUE(r.status.ok()) << c.text << r.errors;
    EXPECT_EQ(r.written(), c.written) << c.text;
    EXPECT_EQ(r.warnings, c.warnings) << c.text;
  }
  EXPECT_TRUE(read_lp("min x\nst\nx>=0\ngen\nend\n").model.column_type.empty());
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

TEST(LpReader, EndOfTheUsefulPartOfALine) {
  const std::string text("min x \\ + y\n + z\f + a\n + b\r + c\n + d\0 + e5\nst\nx>=1\nend\n", 55);
  const LpReading r = read_lp(text);
  ASSERT_TRUE(r.status.ok()) << r.errors;
  EXPECT_EQ(r.model.num_cols, 4);
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
