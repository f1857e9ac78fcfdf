// Any bytes: the LP reader gives a sound model or a reported error, from a file and typed in.

#include "base/line_reader.h"
#include "fuzz_support.h"
#include "io/lp_format/reader/lp_reader.h"

namespace {

using namespace kelvo;

void read(std::string_view text, bool interactive) {
  SilentSink sink;
  LpReaderSettings settings;
  settings.capacities = {};
  settings.interactive = interactive;
  Model model;
  LineReader lines(text);
  const Status status = LpReader(lines, settings, sink).read(model);
  if (status.ok()) {
    require_sound(model);
    LineReader again(text);
    if (interactive && LpReader(again, settings, sink).read_additions(model).ok())
      require_sound(model);
  } else {
    require(status.is_reported());
    require(model.num_cols == 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = as_text(data, size);
  read(text, false);
  if (size < 400) read(text, true);  // every wrong line makes it start over
  return 0;
}
