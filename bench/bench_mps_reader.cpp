// Speed of the MPS reader in bytes of text a second, on a generated model.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "base/random.h"
#include "io/mps/mps_reader.h"

namespace kelvo {
namespace {

/// `rows` rows and ten times as many nonzeros as columns, in fixed columns as most writers do it,
/// one entry a line. Row names come in ascending order within a column, `stride` on average apart.
std::string generated_model(int rows, int columns, int stride) {
  Random random(7);
  std::string text = "NAME          generated\nROWS\n N  cost\n";
  char line[100];
  for (int i = 0; i < rows; ++i) {
    std::snprintf(line, sizeof(line), " L  R%07d\n", i);
    text += line;
  }
  text += "COLUMNS\n";
  for (int j = 0; j < columns; ++j) {
    std::snprintf(line, sizeof(line), "    C%07d  cost      %12.6g\n", j, random.uniform());
    text += line;
    int row = random.below(rows);
    for (int k = 0; k < 10; ++k) {
      row = (row + 1 + random.below(2 * stride - 1)) % rows;
      std::snprintf(line, sizeof(line), "    C%07d  R%07d  %12.6g\n", j, row,
                    20.0 * random.uniform() - 10.0);
      text += line;
    }
  }
  text += "RHS\n";
  for (int i = 0; i < rows; ++i) {
    std::snprintf(line, sizeof(line), "    rhs       R%07d  %12.6g\n", i, 100.0 * random.uniform());
    text += line;
  }
  return text + "ENDATA\n";
}

void read_generated(benchmark::State& state) {
  const std::string text =
      generated_model(static_cast<int>(state.range(0)), 100000, static_cast<int>(state.range(1)));
  for (auto _ : state) {
    LineReader lines(text);
    SilentSink sink;
    Model model;
    if (!read_mps(lines, {}, sink, model).ok()) state.SkipWithError("the model is refused");
    benchmark::DoNotOptimize(model);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK(read_generated)
    ->ArgNames({"rows", "stride"})
    ->Args({20000, 3})
    ->Args({20000, 1000})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kelvo
