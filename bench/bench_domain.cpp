// Domain propagation: bound changes per second on random dives, each until it ends in a conflict,
// which is analyzed, or in a point. "changes" are those of the trail, decisions included;
// "nonzeros_per_change" tells how much of the matrix each one touches. Models: generated covering
// and knapsack rows, and, where KELVO_BENCH_DATA names the folder of public models, some of those.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "base/file_stream.h"
#include "base/random.h"
#include "io/mps/mps_reader.h"
#include "lp/solve/conversion.h"
#include "mip/domain/clique_merging.h"
#include "mip/domain/clique_rows.h"
#include "mip/domain/conflict_analysis.h"

namespace kelvo {
namespace {

/// Rows of about eight of 5,000 binary columns: at least one of them (covering), and every third
/// a knapsack.
MipProblem covering_and_knapsacks() {
  constexpr int kColumns = 5000, kRows = 2000, kLength = 8;
  Random random(5);
  MipProblem mip;
  LpProblem& lp = mip.lp;
  lp.num_cols = kColumns;
  lp.num_rows = kRows;
  lp.cost.assign(kColumns + kRows, 0.0);
  lp.lower.assign(kColumns + kRows, 0.0);
  lp.upper.assign(kColumns, 1.0);
  lp.upper.resize(kColumns + kRows, kInf);
  lp.rows.num_minor = kColumns;
  Vector<int> last(kColumns, -1);
  for (int i = 0; i < kRows; ++i) {
    const bool knapsack = i % 3 == 0;
    double total = 0.0;
    for (int k = 0; k < kLength; ++k) {
      const int j = random.below(32768) * 7 % kColumns;
      if (last[j] == i) continue;
      last[j] = i;
      lp.rows.index.push_back(j);
      lp.rows.value.push_back(knapsack ? 1.0 + random.below(20) : 1.0);
      total += lp.rows.value.back();
    }
    lp.rows.start.push_back(static_cast<int>(lp.rows.index.size()));
    lp.lower[kColumns + i] = knapsack ? -0.4 * total : -kInf;
    lp.upper[kColumns + i] = knapsack ? kInf : -1.0;
  }
  lp.rows.num_major = kRows;
  lp.columns = transpose(lp.rows);
  mip.is_integer.assign(kColumns, 1);
  return mip;
}

/// The rows and columns of a public model; an empty program without the folder.
MipProblem public_model(const char* name) {
  MipProblem mip;
  const char* folder = std::getenv("KELVO_BENCH_DATA");
  if (folder == nullptr) return mip;
  Model model;
  FileStream stream;
  const std::string path = std::string(folder) + "/mip/" + name + ".mps.gz";
  if (!open_input(path.c_str(), nullptr, stream).ok()) return mip;
  LineReader lines(stream);
  SilentSink sink;
  if (!read_mps(lines, {}, sink, model).ok()) return mip;
  mip.lp = with_rows(make_lp(model));
  for (const char type : model.column_type) mip.is_integer.push_back(type == 'B' || type == 'I');
  return mip;
}

class Diver {
 public:
  explicit Diver(const MipProblem& mip)
      : mip_(mip),
        cliques_(mip),
        implications_(mip),
        domain_(mip, cliques_, implications_),
        analysis_(domain_),
        random_(1) {
    domain_.propagate();
    if (domain_.is_infeasible()) return;
    add_cliques_of_rows(domain_, cliques_);
    merge_cliques(cliques_);
    for (int j = 0; j < mip.num_cols(); ++j) {
      if (mip.is_integer[j] && !domain_.is_fixed(j)) free_.push_back(j);
    }
  }

  /// One dive; the number of bound changes.
  int dive() {
    if (free_.empty() || domain_.is_infeasible()) return 0;
    const int root = domain_.bounds().size();
    std::size_t next = static_cast<std::size_t>(random_.below(32768)) * 31 % free_.size();
    bool consistent = true;
    for (std::size_t k = 0; k < free_.size() && consistent; ++k) {
      const int j = free_[next];
      if (++next == free_.size()) next = 0;
      if (domain_.is_fixed(j)) continue;
      const bool up = random_.uniform() < 0.3;
      const double value = up ? domain_.lower(j) + 1.0 : domain_.upper(j) - 1.0;
      if (!(std::abs(value) < kInf)) continue;
      domain_.decide(up ? lower_of(j) : upper_of(j), value);
      consistent = domain_.propagate();
    }
    const int changes = domain_.bounds().size() - root;
    LearnedClause learned;
    const bool found = !consistent && analysis_.analyze(ConflictCut::kFirstUip, learned);
    domain_.backtrack_to_level(0);
    if (found) analysis_.learn(learned);
    domain_.propagate();
    return changes;
  }

  double work() const { return domain_.work(); }

 private:
  const MipProblem& mip_;
  CliqueTable cliques_;
  ImplicationTable implications_;
  Domain domain_;
  ConflictAnalysis analysis_;
  Random random_;
  Vector<int> free_;
};

void run_dives(benchmark::State& state, const MipProblem& mip) {
  if (mip.num_cols() == 0) {
    state.SkipWithError("KELVO_BENCH_DATA does not name the folder of models");
    return;
  }
  Diver diver(mip);
  double changes = 0.0;
  const double work = diver.work();
  for (auto round : state) {
    static_cast<void>(round);
    changes += diver.dive();
  }
  state.counters["changes_per_second"] = benchmark::Counter(changes, benchmark::Counter::kIsRate);
  state.counters["changes_per_dive"] = changes / static_cast<double>(state.iterations());
  state.counters["nonzeros_per_change"] = (diver.work() - work) / std::max(changes, 1.0);
}

void generated_dives(benchmark::State& state) {
  run_dives(state, covering_and_knapsacks());
}
void public_dives(benchmark::State& state, const char* name) {
  run_dives(state, public_model(name));
}

BENCHMARK(generated_dives)->MinTime(0.5);
BENCHMARK_CAPTURE(public_dives, mod010, "mod010")->MinTime(0.5);
BENCHMARK_CAPTURE(public_dives, 10teams, "10teams")->MinTime(0.5);
BENCHMARK_CAPTURE(public_dives, mitre, "mitre")->MinTime(0.5);
BENCHMARK_CAPTURE(public_dives, mc11, "mc11")->MinTime(0.5);

}  // namespace
}  // namespace kelvo
