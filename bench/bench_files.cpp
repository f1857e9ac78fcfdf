// Speed of readers and writers in bytes of text a second on generated models of 10^5 to 10^6
// columns: per byte it should not depend on the size.
#include <benchmark/benchmark.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "api/frame/problem_frame.h"
#include "base/random.h"
#include "io/lp_format/lp_writer.h"
#include "io/lp_format/reader/lp_reader.h"
#include "io/mps/mps_reader.h"
#include "io/mps/mps_writer.h"
#include "io/xml/solution_file.h"

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

/// What `write(stream) -> bool` writes.
template <class Write>
std::string text_of(Write write) {
  const int memory = memfd_create("file", 0);
  const std::string name = "/proc/self/fd/" + std::to_string(memory);
  FileStream stream;
  std::string text;
  if (open_output(name.c_str(), false, stream).ok() && write(stream) && close_file(stream).ok()) {
    text.resize(static_cast<std::size_t>(lseek(memory, 0, SEEK_END)));
    if (pread(memory, text.data(), text.size(), 0) <= 0) text.clear();
  }
  ::close(memory);
  return text;
}

std::string as_text(const Model& model, bool lp) {
  return text_of([&](FileStream& stream) {
    SilentSink sink;
    return (lp ? write_lp(model, {}, sink, stream) : write_mps(model, {}, sink, stream)).ok();
  });
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

/// A solved problem as far as its solution file is concerned, without integer columns.
class SolvedProblem {
 public:
  explicit SolvedProblem(int columns) {
    int status = 0;
    env_ = KLVopenKELVO(&status);
    problem_ = to_problem(KLVcreateprob(env_, &status, "solved"));
    Model model = generated_model(columns);
    model.column_type.clear();
    problem_->replace_model(std::move(model));
    problem_->solution_status = kOptimal;
    SolutionRecord& solution = problem_->solution;
    solution.method = kMethodDual;
    solution.has_primal = solution.has_dual = solution.has_basis = true;
    Random random(7);
    const auto numbers = [&](int count) {
      Vector<double> values(count);
      for (double& value : values) value = random.below(3) == 0 ? random.uniform() * 100.0 : 0.0;
      return values;
    };
    solution.x = numbers(columns);
    solution.dj = numbers(columns);
    solution.pi = numbers(columns / 2);
    solution.activity = numbers(columns / 2);
    problem_->basis.present = true;
    problem_->basis.col_status.assign(columns, kAtLower);
    problem_->basis.row_status.assign(columns / 2, kBasic);
  }
  ~SolvedProblem() { KLVcloseKELVO(&env_); }
  SolvedProblem(const SolvedProblem&) = delete;
  SolvedProblem& operator=(const SolvedProblem&) = delete;

  const Model& model() const { return problem_->model(); }
  bool write(FileStream& stream) const {
    write_solution(*problem_, stored_solution(*problem_), WriteLevel::all, {}, stream);
    return true;
  }
  std::string text() const {
    return text_of([this](FileStream& stream) { return write(stream); });
  }

 private:
  KLVenv env_ = nullptr;
  Problem* problem_ = nullptr;
};

void read_solution_file(benchmark::State& state) {
  const SolvedProblem problem(static_cast<int>(state.range(0)));
  const std::string text = problem.text();
  for (auto _ : state) {
    SilentSink sink;
    ReadSolution read;
    const Status status = read_solution(std::string_view(text), problem.model(), sink, read);
    if (!status.ok() || !read.has_basis()) state.SkipWithError("not read");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}

void write_solution_file(benchmark::State& state) {
  const SolvedProblem problem(static_cast<int>(state.range(0)));
  const std::size_t size = problem.text().size();
  for (auto _ : state) {
    FileStream stream;
    if (!open_output("/dev/null", false, stream).ok()) state.SkipWithError("no /dev/null");
    if (!problem.write(stream) || !close_file(stream).ok()) state.SkipWithError("not written");
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
BENCHMARK(read_solution_file)->Apply(sizes);
BENCHMARK(write_solution_file)->Apply(sizes);

}  // namespace
}  // namespace kelvo
