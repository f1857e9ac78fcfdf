// Reads LP texts from memory and records the messages, for the tests of the LP reader.
#pragma once

#include <string>
#include <string_view>

#include "base/line_reader.h"
#include "io/lp_format/lp_writer.h"
#include "io/lp_format/reader/lp_reader.h"
#include "io/written.h"
#include "support/recording_sink.h"

namespace kelvo::test {

struct LpReading {
  Status status;
  Model model;
  std::string errors;  // texts behind "KELVO Error  nnnn: "
  std::string warnings;
  std::string results;

  /// The model as an LP file, without the line of its name.
  std::string written() const {
    SilentSink sink;
    const std::string text =
        test::written([&](FileStream& stream) { return write_lp(model, {}, sink, stream); });
    return text.substr(text.find("\n\n") + 2);
  }
};

inline LpReading read_lp(std::string_view text, const LpReaderSettings& settings = {}) {
  LpReading reading;
  RecordingSink sink;
  LineReader lines(text);
  reading.status = LpReader(lines, settings, sink).read(reading.model);
  reading.errors = sink[Channel::error];
  reading.warnings = sink[Channel::warning];
  reading.results = sink[Channel::results];
  return reading;
}

}  // namespace kelvo::test
