// Speed of readers and writers in bytes of text a second on generated models of 10^5 to 10^6
// columns: per byte it should not depend on the size.
#include <benchmark/benchmark.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "base/random.h"
#include "io/lp_format/lp_writer.h"
#include "io/lp_format/reader/lp_reader.h"
#include "io/mps/mps_reader.h"
#include "io/mps/mps_writer.h"

namespace kelvo {
namespace {

/// `columns` columns with four entries each in half as many rows; every third column is integer.
Model generated_model(int columns) {
  Random random(5);
  Model model;
  model.num_cols = columns;
  model.num_rows = columns / 2;
  SparseMatrix matrix;
  char name[24];
  for (int j = 0; j < columns; ++j) {
    std::snprintf(name, sizeof name, "flow_%d", j);
    model.col_names.append(name);
    model.objective.push_back(j % 3 == 0 ? 0.0 : 0.25 * random.below(1000));
    model.lower.push_back(j % 5 == 0 ? -1.5 : 0.0);
    model.upper.push_back(j % 3 == 0 ? 12.0 : 1e20);
    model.column_type.push_back(j % 3 == 0 ? 'I' : 'C');
    const int first = random.below(model.num_rows);
    for (int k = 0; k < 4; ++k) {
      matrix.index.push_back((first + 7919 * k) % model.num_rows);
      matrix.value.push_back(k == 0 ? 1.0 : random.uniform() - 0.5);
    }
    matrix.start.push_back(static_cast<int>(matrix.index.size()));
  }
  matrix.num_major = columns;
  matrix.num_minor = model.num_rows;
  model.matrix.assign(std::move(matrix));
  for (int i = 0; i < model.num_rows; ++i) {
    std::snprintf(name, sizeof name, "balance_%d", i);
    model.row_names.append(name);
    model.rhs.push_back(random.below(50));
    model.row_sense.push_back("LGE"[i % 3]);
  }
  model.col_names.create();
  model.row_names.create();
  return model;
}

constexpr bool kLp = true;
constexpr bool kMps = false;

std::string as_text(const Model& model, bool lp, int memory) {
  FileStream stream;
  SilentSink sink;
  const std::string name = "/proc/self/fd/" + std::to_string(memory);
  if (!open_output(name.c_str(), false, stream).ok()) return {};
  if (!(lp ? write_lp(model, {}, sink, stream) : write_mps(model, {}, sink, stream)).ok())
    return {};
  if (!close_file(stream).ok()) return {};
  std::string text(static_cast<std::size_t>(lseek(memory, 0, SEEK_END)), '\0');
  return pread(memory, text.data(), text.size(), 0) > 0 ? text : std::string();
}

std::string as_text(const Model& model, bool lp) {
  const int memory = memfd_create("model", 0);
  std::string text = as_text(model, lp, memory);
  ::close(memory);
  return text;
}

void read_model(benchmark::State& state, bool lp) {
  const std::string text = as_text(generated_model(static_cast<int>(state.range(0))), lp);
  for (auto _ : state) {
    LineReader lines{std::string_view(text)};
    SilentSink sink;
    Model model;
    const Status status =
        lp ? LpReader(lines, {}, sink).read(model) : read_mps(lines, {}, sink, model);
    if (!status.ok() || text.empty()) state.SkipWithError("the model is refused");
    benchmark::DoNotOptimize(model);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}

void write_model(benchmark::State& state, bool lp) {
  const Model model = generated_model(static_cast<int>(state.range(0)));
  const std::size_t size = as_text(model, lp).size();
  for (auto _ : state) {
    FileStream stream;
    SilentSink sink;
    if (!open_output("/dev/null", false, stream).ok()) state.SkipWithError("no /dev/null");
    const Status status =
        lp ? write_lp(model, {}, sink, stream) : write_mps(model, {}, sink, stream);
    if (!status.ok() || !close_file(stream).ok()) state.SkipWithError("not written");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

void sizes(benchmark::internal::Benchmark* bench) {
  for (const int columns : {100000, 300000, 1000000}) bench->Arg(columns);
  bench->ArgName("columns")->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(read_model, lp, kLp)->Apply(sizes);
BENCHMARK_CAPTURE(read_model, mps, kMps)->Apply(sizes);
BENCHMARK_CAPTURE(write_model, lp, kLp)->Apply(sizes);
BENCHMARK_CAPTURE(write_model, mps, kMps)->Apply(sizes);

}  // namespace
}  // namespace kelvo
