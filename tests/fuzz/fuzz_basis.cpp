// Fuzz target: any bytes as a basis file for a small model. The reader must end with a basis that
// fits the model or with an error that leaves the basis alone.
#include <algorithm>

#include "fuzz_support.h"
#include "io/basis/basis_file.h"
#include "io/lp_format/reader/lp_reader.h"

namespace {

kelvo::Model small_model() {
  kelvo::LineReader lines(
      "min x + y + z\nst\n r: x + y >= 1\n s: x - z <= 4\n t: y + z = 2\nbounds\n x <= 3\n"
      " -2 <= y <= 5\n z free\nend\n");
  kelvo::SilentSink sink;
  kelvo::Model model;
  require(kelvo::LpReader(lines, {}, sink).read(model).ok());
  model.row_sense[1] = 'R';
  model.range = {0, 8, 0};
  return model;
}

}  // namespace

/// The reader of restart files finds the basis that the plain one finds, or a value that is wrong.
void read_as_restart(std::string_view text, const kelvo::Model& model,
                     const kelvo::StoredBasis& plain) {
  kelvo::LineReader lines(text);
  kelvo::SilentSink sink;
  kelvo::StoredBasis basis;
  kelvo::RestartPoint point;
  const bool loaded = kelvo::read_restart(lines, model, sink, basis, point).ok();
  require(loaded == basis.present && (loaded ? 3u : 0u) == point.x.size());
  if (!plain.present || !loaded) return;
  require(basis.row_status == plain.row_status && basis.col_status == plain.col_status);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const kelvo::Model model = small_model();
  kelvo::LineReader lines(as_text(data, size));
  kelvo::SilentSink sink;
  kelvo::StoredBasis basis;
  const bool loaded = kelvo::read_basis(lines, model, sink, basis).ok();
  read_as_restart(as_text(data, size), model, basis);
  if (!loaded) {
    require(!basis.present && basis.col_status.empty() && basis.row_status.empty());
    return 0;
  }
  require(basis.present && basis.col_status.size() == 3 && basis.row_status.size() == 3);
  require(kelvo::check_basis_size(model, basis, sink).ok());
  for (const int status : basis.col_status) require(status >= 0 && status <= 3);
  for (const int status : basis.row_status) require(status >= 0 && status <= 2);
  return 0;
}
