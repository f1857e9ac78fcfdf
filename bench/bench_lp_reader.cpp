// Throughput of the LP reader over generated texts in memory.

#include <benchmark/benchmark.h>

#include <string>

#include "base/line_reader.h"
#include "io/lp_format/reader/lp_reader.h"

namespace {

using namespace kelvo;

struct Shape {
  int columns;
  int rows;
  int row_length;
  bool scattered;  // columns of a row far apart instead of neighbours
};

std::string make_text(const Shape& shape) {
  std::string text = "Minimize\n obj:";
  const auto name = [](int j) { return "x" + std::to_string(j); };
  for (int j = 0; j < shape.columns; ++j) {
    text += " + " + std::to_string(j % 97 + 1) + " " + name(j);
    if (j % 8 == 7) text += "\n";
  }
  text += "\nSubject To\n";
  unsigned state = 1;
  for (int i = 0; i < shape.rows; ++i) {
    text += " row" + std::to_string(i) + ":";
    for (int k = 0; k < shape.row_length; ++k) {
      state = state * 1103515245u + 12345u;
      const int j = shape.scattered ? static_cast<int>((state >> 8) % shape.columns)
                                    : (i * shape.row_length / 2 + k) % shape.columns;
      text += k % 3 == 1 ? " - " : " + ";
      if (k % 2 == 0) text += std::to_string(k + 2) + ".25 ";
      text += name(j);
      if (k % 8 == 7) text += "\n ";
    }
    text += " <= " + std::to_string(i % 1000) + "\n";
  }
  text += "Bounds\n";
  for (int j = 0; j < shape.columns; j += 2) text += " 0 <= " + name(j) + " <= 10\n";
  text += "Generals\n";
  for (int j = 0; j < shape.columns; j += 4) text += " " + name(j) + (j % 40 == 0 ? "\n" : "");
  return text + "\nEnd\n";
}

void read_text(benchmark::State& state, const Shape& shape) {
  const std::string text = make_text(shape);
  SilentSink sink;
  for (auto _ : state) {
    Model model;
    LineReader lines(text);
    if (!LpReader(lines, {}, sink).read(model).ok()) state.SkipWithError("not read");
    benchmark::DoNotOptimize(model.num_cols);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

BENCHMARK_CAPTURE(read_text, small, Shape{2000, 1000, 20, true});
BENCHMARK_CAPTURE(read_text, neighbours, Shape{100000, 50000, 40, false})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_text, scattered, Shape{100000, 50000, 40, true})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_text, million_columns, Shape{1000000, 1000, 2000, true})
    ->Unit(benchmark::kMillisecond);

}  // namespace
