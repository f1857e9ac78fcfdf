#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "base/random.h"
#include "io/lp_format/lp_writer.h"
#include "io/lp_format/reader/lp_reader.h"
#include "io/mps/mps_writer.h"
#include "io/number_format.h"
#include "io/written.h"
#include "support/recording_sink.h"

namespace kelvo {
namespace {

std::string long_number(double x) {
  char text[kNumberText];
  WrittenNumbers numbers;
  format_number(x, text, numbers);
  return text;
}

std::string short_number(double x) {
  char text[kNumberText];
  WrittenNumbers numbers;
  format_short_number(x, text, numbers);
  return text;
}

TEST(NumberFormat, LongNumbers) {
  const std::pair<double, const char*> table[] = {{0, "0"},
                                                  {2, "2"},
                                                  {0.00125, "0.00125"},
                                                  {1e20, "1e+20"},
                                                  {1.5e-7, "1.5e-7"},
                                                  {1e100, "1e+100"},
                                                  {1e15, "1e+15"},
                                                  {1e15 - 1, "999999999999999"},
                                                  {1e-6, "0.000001"},
                                                  {1e-7, "1e-7"},
                                                  {-3.5, "3.5"},
                                                  {1.0 / 3, "0.333333333333333"},
                                                  {0.1, "0.1"},
                                                  {123456789.125, "123456789.125"},
                                                  {5e-324, "4.94065645841247e-324"}};
  for (const auto& [value, text] : table) EXPECT_EQ(long_number(value), text) << value;
  char text[kNumberText];
  WrittenNumbers numbers;
  format_number(std::nan(""), text, numbers);
  EXPECT_STREQ(text, "?");
  EXPECT_FALSE(numbers.finite);
}

TEST(NumberFormat, LongNumbersAreRoundedLikeTheRuntimeDoes) {
  Random random(3);
  for (int k = 0; k < 50000; ++k) {
    double x = (1.0 + 9.0 * random.uniform() + random.uniform() / 32768) *
               std::pow(10.0, random.below(40) - 20);
    // Sixteen digits that end in 5 come near to the middle between two texts.
    char text[40];
    if (k % 3 == 0) {
      std::snprintf(text, sizeof text, "%.13e", x);
      std::string near_half(text);
      near_half.insert(near_half.find('e'), k % 2 == 0 ? "05" : "95");
      x = std::strtod(near_half.c_str(), nullptr);
    }
    std::snprintf(text, sizeof text, "%.14e", x);
    EXPECT_EQ(std::strtod(long_number(x).c_str(), nullptr), std::strtod(text, nullptr)) << text;
  }
}

TEST(NumberFormat, ShortNumbersFitTwelveCharactersAndKeepTheirDigits) {
  EXPECT_EQ(short_number(1.0 / 3), "0.3333333333");
  EXPECT_EQ(short_number(-1.0 / 3), "-0.333333333");
  EXPECT_EQ(short_number(1e-120), "1E-120");
  EXPECT_EQ(short_number(123456789012.0), "1.234568E+11");
  EXPECT_EQ(short_number(0), "0");
  Random random(11);
  for (int k = 0; k < 20000; ++k) {
    const double sign = random.below(2) == 0 ? 1 : -1;
    const double x = sign * (1.0 + 9.0 * random.uniform() + random.uniform() / 4096) *
                     std::pow(10.0, random.below(300) - 150);
    const std::string text = short_number(x);
    EXPECT_LE(text.size(), 12u) << x;
    EXPECT_NEAR(std::stod(text) / x, 1.0, 1e-4) << text;
  }
}

/// A model with every kind of data, some of it awkward.
Model rich_model() {
  Model model;
  model.name = "rich";
  model.sense = -1;
  model.num_cols = 6;
  model.num_rows = 4;
  for (const char* name : {"x", "y", "flow", "open", "lot", "half"}) model.col_names.append(name);
  for (const char* name : {"cap", "bal", "low", "rng"}) model.row_names.append(name);
  model.objective = {1, -2.5, 0, 1e-7, 3, 0};
  model.lower = {0, -1e20, -3, 0, 0, 2};
  model.upper = {1e20, 1e20, 4.25, 1, 10, 8};
  model.column_type = {'C', 'C', 'C', 'B', 'I', 'N'};
  SparseMatrix columns;
  columns.num_major = 6;
  columns.num_minor = 4;
  columns.start = {0, 2, 4, 6, 7, 8, 9};
  columns.index = {0, 1, 0, 3, 1, 2, 0, 3, 2};
  columns.value = {1, -1, 2.5, 1, 1, 7, -100, 3, 1e-9};
  model.matrix.assign(std::move(columns));
  model.rhs = {10, 0, -2, 1};
  model.row_sense = {'L', 'E', 'G', 'R'};
  model.range = {0, 0, 0, 5};
  return model;
}

using test::written;

std::string as_lp(const Model& model, MessageSink& sink, LpWriterSettings settings = {}) {
  return written([&](FileStream& stream) { return write_lp(model, settings, sink, stream); });
}

std::string as_mps(const Model& model, MessageSink& sink, MpsWriterSettings settings = {}) {
  return written([&](FileStream& stream) { return write_mps(model, settings, sink, stream); });
}

TEST(LpWriter, EverySectionToTheByte) {
  test::RecordingSink sink;
  EXPECT_EQ(as_lp(rich_model(), sink),
            "\\Problem name: rich\n\nMaximize\n"
            " obj: x - 2.5 y + 1e-7 open + 3 lot\n"
            "Subject To\n"
            " cap: x + 2.5 y - 100 open <= 10\n"
            " bal: - x + flow  = 0\n"
            " low: 7 flow + 1e-9 half >= -2\n"
            " rng: y + 3 lot - Rgrng  = 1\n"
            "Bounds\n"
            "      y Free\n"
            "-3 <= flow <= 4.25\n"
            " 0 <= open <= 1\n"
            " 0 <= lot <= 10\n"
            " 2 <= half <= 8\n"
            " 0 <= Rgrng <= 5\n"
            "Binaries\n open \n"
            "Generals\n lot  half \n"
            "Semi-Continuous\n half \n"
            "End\n");
  EXPECT_EQ(sink.all(), "");
}

TEST(LpWriter, IntegerColumnsHaveTheirBounds) {
  Model model = rich_model();
  model.upper[4] = 1e20;
  test::RecordingSink sink;
  EXPECT_NE(as_lp(model, sink).find("      lot >= 0\n"), std::string::npos);
}

// A factor is left out only where the reader's 1 differs from it by no more than rounding.
TEST(LpWriter, OnlyOneItselfIsLeftOut) {
  Model model = rich_model();
  model.objective = {1 + 5e-14, -1 + 5e-14, 1 - 2e-13, 1 + 1e-11, -1 + 1e-10, 0};
  test::RecordingSink sink;
  const std::string text = as_lp(model, sink);
  EXPECT_EQ(text.substr(0, text.find("\nSubject")),
            "\\Problem name: rich\n\nMaximize\n"
            " obj: x - y + 0.9999999999998 flow + 1.00000000001 open - "
            "0.9999999999 lot");
}

TEST(LpWriter, TheLastRowOfAConflictIsAComment) {
  Model model = rich_model();
  model.column_type.clear();
  for (int i = 0; i < 3; ++i) model.col_names.rename(i, std::string(30, "xyz"[i]));
  test::RecordingSink sink;
  LpWriterSettings settings;
  settings.is_conflict = true;
  const std::string text = as_lp(model, sink, settings);
  EXPECT_NE(text.find("\n low: 7 " + std::string(30, 'z') +
                      " + 1e-9 half >= -2\n"
                      "\\Sum of equality rows in the conflict:\n"
                      "\\ rng: " +
                      std::string(30, 'y') + " + 3 lot - Rgrng  = 1\nBounds\n"),
            std::string::npos)
      << text;
  Model back;
  LineReader lines{std::string_view(text)};
  ASSERT_TRUE(LpReader(lines, {}, sink).read(back).ok());
  EXPECT_EQ(back.num_rows, model.num_rows - 1);
}

TEST(LpWriter, NamesAreMadeLegalOrDefault) {
  Model model = rich_model();
  model.col_names.rename(0, "e1");
  model.col_names.rename(1, "a+b[1]");
  test::RecordingSink sink;
  const std::string legal = as_lp(model, sink);
  EXPECT_NE(legal.find("_e1 - 2.5 apb(1)"), std::string::npos) << legal;
  EXPECT_EQ(sink.all(), "Warning:  Output names have been modified to conform to LP format.\n");
  sink.take();
  LpWriterSettings generic;
  generic.generic_names = true;
  const std::string plain = as_lp(model, sink, generic);
  EXPECT_NE(plain.find(" c1: x1 + 2.5 x2 - 100 x4 <= 10\n"), std::string::npos) << plain;
  EXPECT_EQ(sink.all(),
            "Default variable names x1, x2 ... being created.\n"
            "Default row names c1, c2 ... being created.\n");
}

TEST(LpWriter, LinesAreWrappedAndBadNumbersReported) {
  Model model;
  model.num_cols = 40;
  model.objective.assign(40, 123.5);
  model.lower.assign(40, 0.0);
  model.upper.assign(40, 1e20);
  SparseMatrix empty;
  empty.num_major = 40;
  empty.start.assign(41, 0);
  model.matrix.assign(std::move(empty));
  test::RecordingSink sink;
  std::istringstream lines(as_lp(model, sink));
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 79u);
  model.objective[3] = std::nan("");
  const std::string text = written(
      [&](FileStream& stream) { EXPECT_EQ(write_lp(model, {}, sink, stream).code(), 1650); });
  EXPECT_NE(text.find(" ? x4"), std::string::npos);
}

TEST(MpsWriter, ShortNumbersShareLines) {
  Model model = rich_model();
  model.col_names.clear();
  test::RecordingSink sink;
  MpsWriterSettings settings;
  settings.long_numbers = false;
  const std::string text = as_mps(model, sink, settings);
  EXPECT_NE(
      text.find("NAME          rich\nROWS\n N  obj\n L  cap\n E  bal\n G  low\n E  rng\nCOLUMNS\n"
                "    x1   obj            -1   cap             1\n"
                "    x1   bal            -1\n"),
      std::string::npos)
      << text;
  EXPECT_NE(text.find("    MARK0000  'MARKER'                 'INTORG'\n"), std::string::npos);
  EXPECT_NE(text.find("RANGES\n    rng  rng             5\nBOUNDS\n FR bnd  x2\n"),
            std::string::npos)
      << text;
  EXPECT_EQ(sink.all(), "Default column names x1, x2 ... being created.\n");
}

}  // namespace
}  // namespace kelvo
