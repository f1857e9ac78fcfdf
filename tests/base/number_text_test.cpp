#include "base/number_text.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "base/random.h"

namespace kelvo {
namespace {

ParsedNumber parse(std::string_view text) {
  return parse_number(text.data(), text.data() + text.size(), true);
}

TEST(NumberText, ValuesAndFaults) {
  struct Case {
    const char* text;
    double value;
    NumberFault fault;
  };
  constexpr auto good = NumberFault::none;
  constexpr auto trailing = NumberFault::trailing_characters;
  for (const Case& c : {Case{"0", 0.0, good},
                        Case{"+", 1.0, good},
                        Case{"-", -1.0, good},
                        Case{"+7", 7.0, good},
                        Case{"-.5", -0.5, good},
                        Case{"5.", 5.0, good},
                        Case{"1.5D3", 1500.0, good},
                        Case{"1.5d+3", 1500.0, good},
                        Case{"25e-2", 0.25, good},
                        Case{"1e37", 1e37, good},
                        Case{"1e-37", 1.0 / 1e37, good},
                        Case{"1e-38", 0.0, good},
                        Case{"1e-99999999999999999999", 0.0, good},
                        Case{"9007199254740993000", 9007199254740992000.0, good},
                        Case{"1e+", 1.0, good},
                        Case{"1e38", 0.0, NumberFault::exponent_too_large},
                        Case{"1e99999999999999999999", 0.0, NumberFault::exponent_too_large},
                        Case{"e5", 0.0, NumberFault::exponent_not_started},
                        Case{"-.e5", 0.0, NumberFault::exponent_not_started},
                        Case{"1e", 0.0, NumberFault::exponent_not_ended},
                        Case{"1ex", 0.0, NumberFault::exponent_not_ended},
                        Case{".", 0.0, trailing},
                        Case{"", 0.0, trailing},
                        Case{"abc", 0.0, trailing},
                        Case{"1.2.3", 0.0, trailing},
                        Case{"12x", 0.0, trailing},
                        Case{"--1", 0.0, trailing},
                        Case{"1e5e5", 0.0, trailing},
                        Case{"inf", 0.0, trailing}}) {
    SCOPED_TRACE(c.text);
    const ParsedNumber number = parse(c.text);
    EXPECT_EQ(number.fault, c.fault);
    if (c.fault == good) {
      EXPECT_DOUBLE_EQ(number.value, c.value);
    }
  }
  EXPECT_EQ(parse_number("1d3", "1d3" + 3, false).fault, trailing);
  EXPECT_EQ(parse(std::string(400, '9')).fault, NumberFault::exponent_too_large);
  EXPECT_EQ(parse("0." + std::string(400, '0') + "1").value, 0.0);
}

TEST(NumberText, ShortNumbersAreTheNearestDouble) {
  Random random(12);
  for (int i = 0; i < 200000; ++i) {
    char text[40];
    const double scale = 1.0 / (1 + random.below(30000));
    std::snprintf(text, sizeof(text), "%.*f", random.below(12), random.uniform() * 1000.0 * scale);
    ASSERT_EQ(parse(text).value, std::strtod(text, nullptr)) << text;
  }
}

TEST(NumberText, LongNumbersAreOffByLastBitsOnly) {
  Random random(34);
  for (int i = 0; i < 50000; ++i) {
    char text[60];
    std::snprintf(text, sizeof(text), "%.16e", (random.uniform() + 1e-3) * 1e-6);
    const double exact = std::strtod(text, nullptr);
    ASSERT_NEAR(parse(text).value / exact, 1.0, 1e-15) << text;
  }
}

}  // namespace
}  // namespace kelvo
