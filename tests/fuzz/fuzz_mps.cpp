// Fuzz target: any bytes as an MPS file. The reader must end with a model whose parts fit together
// or with an error, and nothing else.

#include "fuzz_support.h"
#include "io/mps/mps_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kelvo::LineReader lines(as_text(data, size));
  kelvo::MpsReaderSettings settings;
  settings.rows = settings.columns = settings.nonzeros = settings.quadratic_nonzeros = 1;
  kelvo::SilentSink sink;
  kelvo::Model model;
  model.num_rows = -1;
  if (kelvo::read_mps(lines, settings, sink, model).ok()) {
    require_sound(model);
  } else {
    require(model.num_rows == -1);
  }
  return 0;
}
