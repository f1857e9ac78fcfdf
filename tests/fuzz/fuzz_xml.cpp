// Fuzz target: any bytes as a solution file and as a MIP-start file of a small model. What is read
// must fit the model; both readers must agree on what is XML.
#include <cmath>

#include "fuzz_support.h"
#include "io/lp_format/reader/lp_reader.h"
#include "io/xml/solution_file.h"

namespace {

kelvo::Model small_model() {
  kelvo::LineReader lines(
      "min x + y + n\nst\n r: x + y >= 1\n s: x - n <= 4\nbounds\n x <= 3\ngeneral\n n\nend\n");
  kelvo::SilentSink sink;
  kelvo::Model model;
  require(kelvo::LpReader(lines, {}, sink).read(model).ok());
  return model;
}

void require_start(const kelvo::MipStart& start) {
  require(start.column.size() == start.value.size() && start.size() <= 3 && start.effort >= 0);
  bool seen[3] = {};
  for (int p = 0; p < start.size(); ++p) {
    const int j = start.column[p];
    require(j >= 0 && j < 3 && !seen[j] && std::isfinite(start.value[p]));
    seen[j] = true;
  }
}

void require_solution(const kelvo::ReadSolution& read) {
  require_start(read.start);
  if (read.col_status.empty()) return;
  require(read.col_status.size() == 3 && read.row_status.size() == 2);
  require(read.reduced_cost.size() == 3 && read.dual.size() == 2 && read.slack.size() == 2);
  for (const int status : read.col_status) require(status >= -1 && status <= 3);
  for (const int status : read.row_status) require(status >= -1 && status <= 3);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const kelvo::Model model = small_model();
  const std::string_view text = as_text(data, size);
  kelvo::SilentSink sink;
  kelvo::ReadSolution read;
  const bool loaded = kelvo::read_solution(text, model, sink, read).ok();
  require(loaded || (read.start.column.empty() && read.col_status.empty()));
  require_solution(read);
  kelvo::Vector<kelvo::MipStart> starts;
  require(kelvo::read_mip_starts(text, model, sink, starts).ok() == loaded);
  require(loaded || starts.empty());
  for (const kelvo::MipStart& start : starts) {
    require_start(start);
    require(start.size() > 0);
  }
  return 0;
}
