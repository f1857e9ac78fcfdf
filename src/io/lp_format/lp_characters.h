// Character classes of the algebraic LP format.
//
// One table of 256 bit sets says what a byte may be part of. The reader cuts its tokens by it, and
// the writer decides by it which names are legal.
#pragma once

#include <array>
#include <cstdint>

namespace kelvo {

enum LpCharacterClass : std::uint16_t {
  kLpStart = 0x001,      // may begin a name
  kLpRelation = 0x002,   // part of a sense
  kLpNumeric = 0x004,    // may occur in a number
  kLpExponent = 0x008,   // exponent letter
  kLpName = 0x010,       // may occur in a name
  kLpEnd = 0x020,        // ends the useful part of a line
  kLpDigit = 0x040,      // decimal digit
  kLpSign = 0x080,       // sign
  kLpBlank = 0x100,      // white space
  kLpDelimiter = 0x200,  // ends a name
  kLpOperator = 0x400,   // quadratic or bracket operator
  kLpArrow = 0x800,      // may form an arrow or a two-character sense
};

/// The classes of each byte, 0 for byte 255 alone.
extern const std::array<std::uint16_t, 256> kLpCharacters;

/// The classes of a character.
inline unsigned lp_classes(char c) {
  return kLpCharacters[static_cast<unsigned char>(c)];
}

}  // namespace kelvo
