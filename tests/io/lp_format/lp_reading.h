// Reads LP texts from memory and records the messages, for the tests of the LP reader.
#pragma once

#include <string>
#include <string_view>

#include "base/line_reader.h"
#include "io/lp_format/reader/lp_reader.h"

namespace kelvo::test {

/// Keeps what is sent to each channel.
class RecordingSink final : public MessageSink {
 public:
  void send(Channel channel, const char* text) override {
    text_[static_cast<int>(channel)] += text;
  }
  void flush(Channel) override {}
  const std::string& operator[](Channel channel) const { return text_[static_cast<int>(channel)]; }

 private:
  std::string text_[4];
};

struct LpReading {
  Status status;
  Model model;
  std::string errors;  // texts behind "KELVO Error  nnnn: "
  std::string warnings;
  std::string results;
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
