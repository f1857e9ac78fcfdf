// Writer of MPS files, which read_mps() reads back.
//
// Where the format leaves room:
// - A maximization is written as the equivalent minimization (coefficients of the objective change
//   their signs), and the objective gets no OBJSENSE section.
// - A ranged row is an 'E' row with its range value, sign included, in RANGES.
// - A column whose lower bound is 0 and whose upper bound is negative gets its LO line, because
//   without one a reader takes the lower bound for minus infinity.
// - Names that are no fields of the format (blanks, control characters, more than 255 characters)
//   are changed, and those that repeat get numbers, which one warning tells. Numbers with an
//   exponent beyond 37, which readers refuse or take for 0, are counted in another.
// - A semi-integer column is among the integer ones and has an SC line; a non-zero lower bound
//   of it is an LI line, one of a semi-continuous column a LO line.
#pragma once

#include "base/file_stream.h"
#include "base/messages.h"
#include "prob/model/model.h"

namespace kelvo {

struct MpsWriterSettings {
  bool generic_names = false;  // x1, c1, ... instead of the model's names
  bool long_numbers = true;    // up to 15 digits in 23 characters, else 12 characters
};

/// Writes the model. Failures of the stream come out of close_file(). 1650 (unreported) when a
/// number is infinite or not a number (it is written as "?"). Throws std::bad_alloc.
Status write_mps(const Model& model, const MpsWriterSettings& settings, MessageSink& sink,
                 FileStream& stream);

}  // namespace kelvo
