#include "io/lp_format/lp_characters.h"

#include <string_view>

namespace kelvo {
namespace {

constexpr std::array<std::uint16_t, 256> build_table() {
  std::array<std::uint16_t, 256> table{};
  const auto set = [&table](std::string_view characters, unsigned classes) {
    for (const char c : characters) {
      table[static_cast<unsigned char>(c)] = static_cast<std::uint16_t>(classes);
    }
  };
  for (int c = 0; c < 32; ++c) table[c] = kLpBlank;
  table[127] = kLpBlank;
  for (int c = 128; c < 255; ++c) table[c] = kLpStart | kLpName;
  for (int c = 'a'; c <= 'z'; ++c) table[c] = kLpStart | kLpName;
  for (int c = 'A'; c <= 'Z'; ++c) table[c] = kLpStart | kLpName;
  for (int c = '0'; c <= '9'; ++c) table[c] = kLpNumeric | kLpName | kLpDigit;
  set("!\"#$%&'(),;?@_`{}~", kLpStart | kLpName);
  set("eE", kLpStart | kLpName | kLpNumeric | kLpExponent);
  set(".", kLpNumeric | kLpName);
  set("+", kLpNumeric | kLpName | kLpSign | kLpDelimiter);
  set("-", kLpNumeric | kLpName | kLpSign | kLpDelimiter | kLpArrow);
  set(":|", kLpName | kLpDelimiter);
  set("[]*/^", kLpName | kLpDelimiter | kLpOperator);
  set("<>", kLpRelation | kLpName | kLpDelimiter | kLpArrow);
  set("=", kLpRelation | kLpName | kLpDelimiter);
  set(" ", kLpName | kLpBlank | kLpDelimiter);
  set("\t", kLpName | kLpBlank);
  set(std::string_view("\0\n\r\f", 4), kLpBlank | kLpEnd | kLpDelimiter);
  set("\\", kLpEnd | kLpDelimiter);
  return table;
}

}  // namespace

constexpr std::array<std::uint16_t, 256> kLpCharacters = build_table();

}  // namespace kelvo
