// What the LP reader says about texts that are wrong or doubtful.

#include <gtest/gtest.h>

#include "io/lp_format/lp_reading.h"
#include "io/lp_format/reader/lp_reader.h"

namespace kelvo {
namespace {

using test::LpReading;
using test::read_lp;

struct ErrorCase {
  const char* text;
  const char* message;  // behind "KELVO Error  "
};

void expect_errors(const char* before, std::initializer_list<ErrorCase> cases) {
  for (const ErrorCase& c : cases) {
    SCOPED_TRACE(c.text);
    const LpReading r = read_lp(std::string(before) + c.text);
    EXPECT_FALSE(r.status.ok());
    EXPECT_TRUE(r.status.is_reported());
    EXPECT_EQ(r.status.code(), std::atoi(c.message));
    EXPECT_EQ(r.errors, std::string("KELVO Error  ") + c.message + ".\n");
    EXPECT_EQ(r.model.num_cols, 0);
  }
}

TEST(LpReaderMessages, ExpressionErrors) {
  expect_errors(
      "",
      {
          {"min x +\n\n - y\nend\n", "1602: Lines 1,3: Adjacent signs"},
          {"min x\nst\nx >= - -3\nend\n", "1602: Lines 3,3: Adjacent signs"},
          {"min x >= 3\nend\n", "1603: Line 1: RHS sense in objective"},
          {"min\n 3 >= x\nend\n", "1603: Line 2: RHS sense in objective"},
          {"min x\nst\nx +\n>= 3\nend\n", "1604: Lines 3,4: Adjacent sign and sense"},
          {"min x + ^ 2\nend\n", "1606: Lines 1,1: Adjacent sign and quadratic character"},
          {"min x + [ x^2 + ] / 2\nend\n",
           "1606: Lines 1,1: Adjacent sign and quadratic character"},
          {"min x ^ 2\nend\n", "1607: Line 1: Expected '+' or '-', found '^'"},
          {"min x [ x^2 ] / 2\nend\n", "1607: Line 1: Expected '+' or '-', found '['"},
          {"min [ x^2 >= 2 ] / 2\nend\n", "1607: Line 1: Expected '+' or '-', found '>'"},
          {"min x\nst\na: x * y >= 2\nend\n", "1608: Line 3: Expected '+','-' or sense, found '*'"},
          {"min x\nst\na: b: x >= 2\nend\n", "1608: Line 3: Expected '+','-' or sense, found ':'"},
          {"min x\nst\n [x^2] / 2 <= 1\nend\n",
           "1608: Line 3: Expected '+','-' or sense, found '/'"},
          {"min x\nst\n >= 3\nend\n", "1609: Line 3: Expected identifier first"},
          {"min x\nst\n 3 <= x\nend\n", "1609: Line 3: Expected identifier first"},
          {"min [ ^2 ] / 2\nend\n", "1609: Line 1: Expected identifier first"},
          {"min x\nst\nx >= -\ny\nend\n", "1610: Line 4: Expected RHS coefficient"},
          {"min [ x^y ] / 2\nend\n", "1612: Line 1: Expected quadratic exponent"},
          {"min [ x^3 ] / 2\nend\n", "1613: Line 1: Quadratic exponent must be 2"},
          {"min [ x + y^2 ] / 2\nend\n", "1614: Line 1: Expected '^' or '*'"},
          {"min x\nst\nx >= y\nend\n", "1615: Line 3: Expected number, found 'y'"},
          {"min x\nst\nx == 2\nend\n", "1615: Line 3: Expected number, found '='"},
          {"min x + 3 + y\nend\n", "1616: Line 1: Expected identifier, found '+'"},
          {"min : x\nend\n", "1616: Line 1: Expected identifier, found ':'"},
          {"min [ ] / 2\nend\n", "1616: Line 1: Expected identifier, found ']'"},
          {"min [ x * 2 ] / 2\nend\n", "1616: Line 1: Expected identifier, found '2'"},
          {"min x + e\nend\n", "1617: Line 1: 'e' not valid identifier"},
          {"min\nE12: x\nend\n", "1617: Line 2: 'E12' not valid identifier"},
          {"min [ x^2 ] / 3\nend\n", "1619: Line 1: Missing or incorrect divisor for Q terms"},
          {"min [ x^2 ] /\nst\nx>=1\nend\n",
           "1619: Line 2: Missing or incorrect divisor for Q terms"},
          {"min [ x^2 ] / x\nend\n", "1619: Line 1: Missing or incorrect divisor for Q terms"},
          {"min x\nuser cuts\n[x^2] <= 4\nend\n",
           "1605: Line 3: Illegal quadratic term in a constraint"},
          {"min x\nst\nx=1 -> [x^2] <= 4\nend\n",
           "1605: Line 3: Illegal quadratic term in a constraint"},
          {"min x\nlazy constraints\nx=1 -> x <= 4\nend\n",
           "1438: Line 3: Illegal lazy constraint or user cut"},
          {"min x\nst\nx + y = 1 -> x <= 4\nend\n", "1439: Line 3: Illegal indicator constraint"},
          {"min x\nst\n2 x = 1 -> x <= 4\nend\n", "1439: Line 3: Illegal indicator constraint"},
          {"min x\nst\nx = 2 -> x <= 4\nend\n", "1439: Line 3: Illegal indicator constraint"},
          {"min x\nst\nx <= 1 -> x <= 4\nend\n", "1439: Line 3: Illegal indicator constraint"},
          {"min x\nst\nx = 1 -> y = 1 -> z <= 4\nend\n",
           "1439: Line 3: Illegal indicator constraint"},
      });
}

TEST(LpReaderMessages, NumberErrors) {
  expect_errors("min x\nst\n",
                {
                    {"3 extra >= 1\n", "1618: Line 3: Exponent 'e' not ended with number"},
                    {"3 e + x >= 1\n", "1618: Line 3: Exponent 'e+' not ended with number"},
                    {"x >= e5\n", "1618: Line 3: Exponent 'e5' not started with number"},
                    {"x >= 1e38\n", "1435: Line 3: Exponent 'e38' out of range"},
                    {"x >= 1.2.3\n", "1434: Line 3: Couldn't convert '1.2.3' to a number"},
                    {"x >= 1e5.5\n", "1434: Line 3: Couldn't convert '1e5.5' to a number"},
                    {"x >= .\n", "1434: Line 3: Couldn't convert '.' to a number"},
                });
  const std::string many_digits(400, '9');
  EXPECT_EQ(read_lp("min x\nst\nx >= " + many_digits + "\n").status.code(), 1435);
}

TEST(LpReaderMessages, BoundErrors) {
  expect_errors("min x\nst\nx>=1\nbounds\n",
                {
                    {"x\n", "1621: Line 5: No bound sense"},
                    {"x 3\n", "1621: Line 5: No bound sense"},
                    {"x == 3\n", "1622: Line 5: Invalid bound sense"},
                    {"x >< 3\n", "1622: Line 5: Invalid bound sense"},
                    {"1 <= x <= 3 <= 4\n", "1622: Line 5: Invalid bound sense"},
                    {"x + y <= 3\n", "1622: Line 5: Invalid bound sense"},
                    {"x <=\n", "1623: Line 5: Missing bound number"},
                    {"x <= y\n", "1623: Line 5: Missing bound number"},
                    {"x <= -\n", "1623: Line 5: Missing bound number"},
                    {"1 <= x <=\n", "1623: Line 5: Missing bound number"},
                    {"x <= y <= 3\n", "1611: Line 5: Expected number first"},
                    {"<= 3\n", "1609: Line 5: Expected identifier first"},
                    {"free\n", "1609: Line 5: Expected identifier first"},
                    {"3 <= 4\n", "1616: Line 5: Expected identifier, found '4'"},
                    {"[x <= 4\n", "1616: Line 5: Expected identifier, found '['"},
                    {"1 <= x <= y\n", "1615: Line 5: Expected number, found 'y'"},
                    {"-y <= x\n", "1615: Line 5: Expected number, found 'y'"},
                    {"x <= - -3\n", "1602: Lines 5,5: Adjacent signs"},
                    {"2 x <= 3\n", "1434: Line 5: Couldn't convert '2x' to a number"},
                    {"x <= 3 y\n", "1434: Line 5: Couldn't convert '3y' to a number"},
                    {"x <= 1e99\n", "1435: Line 5: Exponent 'e99' out of range"},
                });
}

TEST(LpReaderMessages, ListErrors) {
  expect_errors("min x + y\n",
                {
                    {"gen\nx + y\n", "1616: Line 3: Expected identifier, found '+'"},
                    {"sos\nx:1\n", "3301: Line 3: Missing SOS type"},
                    {"sos\ns: T1:: x:1\n", "3301: Line 3: Missing SOS type"},
                    {"sos\nS3:: x:1\n", "1442: Line 3: Unrecognized SOS type: S3"},
                    {"sos\ns: S1: x:1\n", "1627: Line 3: Expected ':', found 'x'"},
                    {"sos\ns: S1\n", "1627: Line 3: Expected ':', found ' '"},
                    {"sos\nS1:: x\ny:1\n", "1627: Line 4: Expected ':', found 'y'"},
                    {"sos\nS1:: x:[\n", "1615: Line 3: Expected number, found '['"},
                    {"sos\nS1:: x:1 + y:2\n", "1616: Line 3: Expected identifier, found '+'"},
                    {"sos\ne1: S1:: x:1\n", "1617: Line 3: 'e1' not valid identifier"},
                    {"sos\nS1:: x:1 y:1\n", "3010: Set does not have unique weights"},
                    {"sos\nS1:: x:1\n y\nend\n", "1660: Line 5:  Not enough entries"},
                });
}

TEST(LpReaderMessages, RepeatedNames) {
  expect_errors(
      "min x\n",
      {
          {"st\na: x>=1\na:\nx>=2\n", "1447: Line 4: Row 'a' repeats"},
          {"st\nc2: x>=1\nx>=2\n", "1447: Line 4: Row 'c2' repeats"},
          {"user cuts\na: x>=1\na: x>=2\n", "1447: Line 4: User Cut 'a' repeats"},
          {"lazy constraints\na: x>=1\na: x>=2\n", "1447: Line 4: Lazy Constraint 'a' repeats"},
          {"st\na: x=1->x>=1\na: x=1->x>=2\n", "1447: Line 4: Indicator 'a' repeats"},
          {"st\na:[x^2]<=1\na:[x^2]<=2\n", "1447: Line 4: Quadratic constraint 'a' repeats"},
          {"sos\na:S1::x:1\na:S2::x:1\n", "1447: Line 4: SOS 'a' repeats"},
      });
  // Kinds do not share their names.
  EXPECT_TRUE(read_lp("min a\nst\na: a>=1\na: a=1->a>=1\nuser cuts\na: a>=1\nend\n").status.ok());
}

TEST(LpReaderMessages, Warnings) {
  struct Case {
    const char* text;
    const char* warnings;
    int rows;
  };
  for (const Case& c : {
           Case{"min x +\nst\nx>=1\nend\n", "Warning, line 2: Objective ended unexpectedly.\n", 1},
           Case{"min x + 4\nst\nx>=1\nend\n", "Warning, line 2: Objective ended unexpectedly.\n",
                1},
           Case{"min x + [ x^2\nst\nx>=1\nend\n",
                "Warning, line 2: Objective ended unexpectedly.\n", 1},
           Case{"min x\nst\na: x>=1 b\nx + y\nend\n",
                "Warning, line 3: Characters after RHS value are ignored.\n"
                "Warning, line 5: Unfinished constraint is discarded.\n",
                1},
           Case{"min x\nst\na: x>=1\nb:\n",
                "Warning, line 4: Unfinished constraint is discarded.\n"
                "Warning: 'End' missing.\n",
                1},
       }) {
    const LpReading r = read_lp(c.text);
    EXPECT_TRUE(r.status.ok()) << c.text << r.errors;
    EXPECT_EQ(r.warnings, c.warnings) << c.text;
    EXPECT_EQ(r.model.num_rows, c.rows) << c.text;
    EXPECT_EQ(r.model.quadratic.num_major, 0);
  }
}

TEST(LpReaderMessages, EachKindOfWarningIsCapped) {
  struct Case {
    const char* line;
    const char* rest;
  };
  for (const Case& c : {
           Case{"bounds\nu <= 1\n", "2 name warnings not printed.\n"},
           Case{"st\n\377x >= 1\n", "2 character warnings not printed.\n"},
           Case{"st\nx >= 1 y\n", "2 RHS warnings not printed.\n"},
           Case{"st\nx\n", "2 unfinished constraint warnings not printed.\n"},
           Case{"bounds\n1 <= x >= 1\n", "2 sense conflict warnings not printed.\n"},
       }) {
    const auto warnings = [&c](int count) {
      std::string text = "min x\nst\nx>=1\n";
      for (int k = 0; k < count; ++k) text += c.line;
      return read_lp(text + "end\n").warnings;
    };
    const std::string twenty = warnings(20);
    EXPECT_EQ(std::count(twenty.begin(), twenty.end(), '\n'), 20) << twenty;
    EXPECT_EQ(warnings(22), twenty + c.rest);
  }
}

TEST(LpReaderMessages, LongNamesAreCut) {
  const std::string kept(255, 'n');
  const LpReading r = read_lp("min " + kept + "n\nst\n " + kept + "1 >= 1\nend\n");
  ASSERT_TRUE(r.status.ok());
  ASSERT_EQ(r.model.num_cols, 1);
  EXPECT_EQ(r.model.col_names.view(0), kept);
  EXPECT_EQ(r.warnings, "Warning, line 1: '" + kept + "' truncated.\n" + "Warning, line 3: '" +
                            kept + "' truncated.\n");
}

TEST(LpReaderMessages, Capacities) {
  const auto read_with = [](LpCapacities capacities) {
    LpReaderSettings settings;
    settings.capacities = capacities;
    return read_lp("min x\nst\nx>=1\nend\n", settings).errors;
  };
  const std::string refused = "KELVO Error  1012: Problem size limits too large.\n";
  EXPECT_EQ(read_with({0, 0, 0, 0}), "");
  EXPECT_EQ(read_with({524999999, 262499999, 524999999, 524999999}), "");
  EXPECT_EQ(read_with({1, 262500000, 1, 1}), refused);
  EXPECT_EQ(read_with({525000000, 1, 1, 1}), refused);
}

}  // namespace
}  // namespace kelvo
