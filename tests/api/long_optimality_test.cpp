// Every public linear program, solved three ways, is optimal in the caller's own terms: feasible,
// with duals that prove it, in arithmetic that shares nothing with the library. Its basis, written
// to a file and read into a fresh problem, needs no iteration.
//
// KELVO_LONG_NONZEROS="low-high" chooses the models by size, so that the set can be run in parts.
#include <kelvo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "prob_fixture.h"

namespace {

constexpr double kTolerance = 1e-6;      // the library's own default for rows, bounds and costs
constexpr double kSameObjective = 1e-6;  // relative, absolute below 1
constexpr double kSecondsASolve = 300.0;
// A sum of doubles is known to this share of its terms' magnitude: each term is a product of a
// number of the model and a computed one that was rounded.
constexpr double kRounding = 1e-14;
constexpr double kNoBound = 1e20;

/// The data of a linear problem by columns, as the query functions tell them.
struct LpData {
  int m = 0, n = 0, sense = 1;
  std::vector<int> begin, row;
  std::vector<double> value, cost, lower, upper, row_lower, row_upper;
};

LpData read_data(KLVenv env, KLVprob lp) {
  LpData data;
  data.m = KLVgetnumrows(env, lp);
  data.n = KLVgetnumcols(env, lp);
  data.sense = KLVgetobjsen(env, lp);
  int nonzeros = KLVgetnumnz(env, lp), surplus = 0;
  data.begin.resize(data.n + 1);
  data.row.resize(nonzeros);
  data.value.resize(nonzeros);
  EXPECT_EQ(KLVgetcols(env, lp, &nonzeros, data.begin.data(), data.row.data(), data.value.data(),
                       nonzeros, &surplus, 0, data.n - 1),
            0);
  data.begin[data.n] = nonzeros;
  data.cost = numbers(KLVgetobj, env, lp, data.n);
  data.lower = numbers(KLVgetlb, env, lp, data.n);
  data.upper = numbers(KLVgetub, env, lp, data.n);
  data.row_lower = data.row_upper = numbers(KLVgetrhs, env, lp, data.m);
  std::string senses(data.m + 1, ' ');
  EXPECT_EQ(KLVgetsense(env, lp, senses.data(), 0, data.m - 1), 0);
  const bool ranged = senses.find('R') != std::string::npos;
  const std::vector<double> range =
      ranged ? numbers(KLVgetrngval, env, lp, data.m) : std::vector<double>(data.m);
  for (int i = 0; i < data.m; ++i) {
    if (senses[i] == 'L') data.row_lower[i] = -kNoBound;
    if (senses[i] == 'G') data.row_upper[i] = kNoBound;
    if (senses[i] == 'R') (range[i] < 0.0 ? data.row_lower : data.row_upper)[i] += range[i];
  }
  return data;
}

/// What is wrong with a solution, in the worst place.
struct Faults {
  double primal = 0.0;           // outside row limits or bounds
  double dual = 0.0;             // a multiplier for a limit that does not exist
  double complementarity = 0.0;  // distance from the limit that a multiplier speaks for, relative
  double dual_objective = 0.0;
};

/// One quantity that lies in [low, high] and the multiplier that its limits earn in a minimization.
struct Line {
  double value, rounding, low, high, multiplier, multiplier_rounding;
};

void judge(const Line& line, Faults& faults, long double& dual_objective) {
  const double outside = std::max(line.low - line.value, line.value - line.high);
  faults.primal = std::max(faults.primal, outside - line.rounding);
  const double limit = line.multiplier > 0.0 ? line.low : line.high;
  const double size = std::fabs(line.multiplier);
  if (std::fabs(limit) >= kNoBound) {
    faults.dual = std::max(faults.dual, size - line.multiplier_rounding);
    return;
  }
  dual_objective += static_cast<long double>(line.multiplier) * limit;
  if (size <= kTolerance + line.multiplier_rounding) return;
  const double gap = std::fabs(line.value - limit) - line.rounding;
  faults.complementarity = std::max(faults.complementarity, gap / (1.0 + std::fabs(limit)));
}

Faults examine(const LpData& data, const std::vector<double>& x, const std::vector<double>& pi) {
  std::vector<long double> activity(data.m, 0.0L);
  std::vector<double> size(data.m, 0.0);
  Faults faults;
  long double dual_objective = 0.0L;
  for (int j = 0; j < data.n; ++j) {
    long double reduced = data.cost[j];
    double terms = std::fabs(data.cost[j]);
    for (int k = data.begin[j]; k < data.begin[j + 1]; ++k) {
      const int i = data.row[k];
      const long double term = static_cast<long double>(data.value[k]) * x[j];
      activity[i] += term;
      size[i] += std::fabs(static_cast<double>(term));
      reduced -= static_cast<long double>(data.value[k]) * pi[i];
      terms += std::fabs(data.value[k] * pi[i]);
    }
    judge({x[j], 0.0, data.lower[j], data.upper[j], data.sense * static_cast<double>(reduced),
           kRounding * terms},
          faults, dual_objective);
  }
  for (int i = 0; i < data.m; ++i) {
    judge({static_cast<double>(activity[i]), kRounding * size[i], data.row_lower[i],
           data.row_upper[i], data.sense * pi[i], 0.0},
          faults, dual_objective);
  }
  faults.dual_objective = data.sense * static_cast<double>(dual_objective);
  return faults;
}

void expect_same(double a, double b, const char* what) {
  EXPECT_NEAR(a, b, kSameObjective * std::max(1.0, std::fabs(b))) << what;
}

/// A way to solve: parameter settings on top of the defaults.
struct Way {
  const char* name;
  int parameter, value;
  bool same_tolerances = true;  // an optimum of the dual form need not be one to the last digit
};
constexpr Way kWays[] = {{"defaults", KLV_PARAM_LPMETHOD, 0},
                         {"primal", KLV_PARAM_LPMETHOD, 1},
                         {"presolve off", KLV_PARAM_PREIND, 0},
                         {"dual form", KLV_PARAM_PREDUAL, 1, false}};

/// Names of the linear programs in the folder's manifest with low <= nonzeros < high that have an
/// optimum. Columns: class, name, rows, columns, nonzeros, integers, offset, reference, ...
std::vector<std::string> bounded_instances(const std::string& folder, int low, int high) {
  std::ifstream manifest(folder + "/manifest.tsv");
  std::vector<std::string> names;
  for (std::string line; std::getline(manifest, line);) {
    std::istringstream fields(line);
    std::string kind, name, skipped, reference;
    int nonzeros = 0;
    fields >> kind >> name;
    if (kind != "lp") continue;
    fields >> skipped >> skipped >> nonzeros >> skipped >> skipped >> reference;
    if (nonzeros >= low && nonzeros < high && reference != "unbounded") names.push_back(name);
  }
  EXPECT_FALSE(names.empty()) << "no instance of this size in " << folder;
  return names;
}

class LongOptimality : public ProblemTest {
 protected:
  /// An empty problem, or one read from a file.
  KLVprob problem(const std::string& path) {
    int status = 0;
    KLVprob instance = KLVcreateprob(env, &status, "instance");
    EXPECT_EQ(status, 0);
    EXPECT_EQ(KLVreadcopyprob(env, instance, path.c_str(), nullptr), 0);
    return instance;
  }

  /// False when the solve ran out of its time; anything but an optimum is a failure.
  bool solve(KLVprob instance) {
    EXPECT_EQ(KLVlpopt(env, instance), 0);
    const int status = KLVgetstat(env, instance);
    if (status == KLV_STATUS_TIME_LIMIT) return false;
    EXPECT_EQ(status, KLV_STATUS_OPTIMAL);
    return status == KLV_STATUS_OPTIMAL;
  }

  void check_solution(KLVprob instance) {
    const LpData data = read_data(env, instance);
    const Faults faults = examine(data, columns(KLVgetx, instance), rows(KLVgetpi, instance));
    EXPECT_LE(faults.primal, kTolerance);
    EXPECT_LE(faults.dual, kTolerance);
    EXPECT_LE(faults.complementarity, kTolerance);
    expect_same(faults.dual_objective, objective(instance), "dual objective");
  }

  /// The basis of `solved` by way of a file into a fresh problem.
  void check_basis(KLVprob solved, const std::string& path, bool same_tolerances) {
    const std::string file = ::testing::TempDir() + "long_optimality.bas";
    ASSERT_EQ(KLVmbasewrite(env, solved, file.c_str()), 0);
    ASSERT_EQ(KLVsetdefaults(env), 0);
    ASSERT_EQ(KLVsetdblparam(env, KLV_PARAM_TILIM, kSecondsASolve), 0);
    KLVprob fresh = problem(path);
    EXPECT_EQ(KLVreadcopybase(env, fresh, file.c_str()), 0);
    // As it is, then by way of presolve.
    for (const int advance : {1, 2}) {
      EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, advance), 0);
      if (!solve(fresh)) continue;
      if (advance == 1 && same_tolerances) {
        EXPECT_EQ(KLVgetitcnt(env, fresh), 0) << "from an optimal basis";
      }
      if (KLVgetitcnt(env, fresh) > 0) {
        std::printf("  %s: %d iterations from the crushed basis\n", path.c_str(),
                    KLVgetitcnt(env, fresh));
      }
      expect_same(objective(fresh), objective(solved), "objective from the basis file");
    }
    EXPECT_EQ(KLVfreeprob(env, &fresh), 0);
    std::remove(file.c_str());
  }

  void check_instance(const std::string& path) {
    for (const Way& way : kWays) {
      SCOPED_TRACE(way.name);
      ASSERT_EQ(KLVsetdefaults(env), 0);
      ASSERT_EQ(KLVsetdblparam(env, KLV_PARAM_TILIM, kSecondsASolve), 0);
      ASSERT_EQ(KLVsetintparam(env, way.parameter, way.value), 0);
      KLVprob instance = problem(path);
      if (solve(instance)) {
        check_solution(instance);
        check_basis(instance, path, way.same_tolerances);
      } else {
        std::printf("  %s, %s: not solved\n", path.c_str(), way.name);
      }
      EXPECT_EQ(KLVfreeprob(env, &instance), 0);
    }
  }
};

TEST_F(LongOptimality, AnswersHoldOnTheModelAndTheirBasesAreOptimal) {
  const char* const folder = std::getenv("KELVO_BENCH_DATA");
  if (folder == nullptr) GTEST_SKIP() << "KELVO_BENCH_DATA names no folder of instances";
  int low = 0, high = 30000;
  if (const char* const range = std::getenv("KELVO_LONG_NONZEROS")) {
    ASSERT_EQ(std::sscanf(range, "%d-%d", &low, &high), 2) << "KELVO_LONG_NONZEROS: low-high";
  }
  for (const std::string& name : bounded_instances(folder, low, high)) {
    SCOPED_TRACE(name);
    check_instance(std::string(folder) + "/lp/" + name + ".mps.gz");
  }
}

}  // namespace
