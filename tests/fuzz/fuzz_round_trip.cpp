// Fuzz target: any bytes as a model file, LP or MPS by the first of them. What is read is written
// in both formats and must read back to the same model, unless the writer says that it does not.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "../io/model_description.h"
#include "../support/recording_sink.h"
#include "fuzz_support.h"
#include "io/lp_format/lp_writer.h"
#include "io/lp_format/reader/lp_reader.h"
#include "io/mps/mps_reader.h"
#include "io/mps/mps_writer.h"

namespace {

using kelvo::Channel;
using kelvo::Model;
using kelvo::test::Description;
using kelvo::test::Format;

bool read(std::string_view text, Format format, Model& model) {
  kelvo::LineReader lines(text);
  kelvo::SilentSink sink;
  if (format == Format::lp) {
    kelvo::LpReaderSettings settings;
    settings.capacities = {};
    return kelvo::LpReader(lines, settings, sink).read(model).ok();
  }
  kelvo::MpsReaderSettings settings;
  settings.rows = settings.columns = settings.nonzeros = settings.quadratic_nonzeros = 1;
  return kelvo::read_mps(lines, settings, sink, model).ok();
}

/// False when the model holds a number that is none.
bool write(const Model& model, Format format, kelvo::MessageSink& sink, std::string& text) {
  const int memory = memfd_create("model", 0);
  require(memory >= 0);
  kelvo::FileStream stream;
  require(
      kelvo::open_output(("/proc/self/fd/" + std::to_string(memory)).c_str(), false, stream).ok());
  const bool written = format == Format::lp ? kelvo::write_lp(model, {}, sink, stream).ok()
                                            : kelvo::write_mps(model, {}, sink, stream).ok();
  require(kelvo::close_file(stream).ok());
  text.resize(static_cast<std::size_t>(lseek(memory, 0, SEEK_END)));
  require(pread(memory, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()));
  ::close(memory);
  return written;
}

void check_round_trip(const Model& model, Format format) {
  kelvo::test::RecordingSink sink;
  const auto tells = [&](const char* part) {
    return sink[Channel::warning].find(part) != std::string::npos;
  };
  std::string text;
  if (!write(model, format, sink, text)) return;
  if (tells("cannot be read back")) return;
  Model back;
  const bool readable = read(text, format, back);
  // Legal forms of different names may be equal, which the LP writer does not look at.
  const bool renamed = tells("Output names have been modified");
  const std::string lost =
      readable && !renamed
          ? kelvo::test::difference(Description(model, format), Description(back, format))
          : std::string();
  const bool excused = renamed && format == Format::lp;
  if ((readable || excused) && lost.empty()) return;
  std::fprintf(stderr, "%s%s\n", lost.c_str(), text.c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view text = as_text(data, size);
  Model model;
  if (!read(text, text[0] == 'N' ? Format::mps : Format::lp, model)) return 0;
  check_round_trip(model, Format::lp);
  check_round_trip(model, Format::mps);
  return 0;
}
