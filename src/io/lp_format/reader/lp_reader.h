// Reads a model in the algebraic LP format.
//
// The text is a sequence of sections: the objective (Minimize, Maximize), constraints (Subject To,
// User Cuts, Lazy Constraints), Bounds, the type sections (Integers, Binaries, Generals,
// Semi-Continuous), SOS, and End. Lines are classified as keyword or content of the current
// section; content loses its blanks and is cut into tokens by the table of
// io/lp_format/lp_characters.h. Lines before the first keyword do not count.
//
// In interactive reading the text is typed by a person: every line with an error can be typed
// again. The parser is then rebuilt from the lines accepted so far, without their messages.
#pragma once

#include "base/line_reader.h"
#include "base/messages.h"
#include "base/status.h"
#include "io/lp_format/reader/collector.h"
#include "prob/model/model.h"

namespace kelvo {

struct LpReaderSettings {
  /// Room made in advance.
  LpCapacities capacities{30000, 60000, 250000, 5000};
  /// Ask for the text and for lines with errors again.
  bool interactive = false;
  /// Drop integer declarations and quadratic data with a message.
  bool linear_only = false;
  /// The file in messages.
  const char* source_name = "<stdin>";
};

class LpReader {
 public:
  LpReader(LineReader& lines, const LpReaderSettings& settings, MessageSink& sink)
      : lines_(lines), settings_(settings), sink_(sink) {}

  /// Reads up to End and fills a model that was empty. On failure, which has been reported, the
  /// model is not touched. Throws std::bad_alloc.
  Status read(Model& model);

  /// Reads constraints and bounds that a person adds to a model, up to End: their names are those
  /// of the model, default names where it has none, and new variables may come up. On failure the
  /// model is not touched. Throws std::bad_alloc.
  Status read_additions(Model& model);

 private:
  LineReader& lines_;
  const LpReaderSettings settings_;
  MessageSink& sink_;
};

}  // namespace kelvo
