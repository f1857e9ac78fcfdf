#include "info.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <vector>

#include "model_data.h"
#include "network.h"

namespace kelvo::command {
namespace {

/// Smallest and largest magnitude of the finite non-zero numbers seen.
class Range {
 public:
  void add(double value) {
    const double magnitude = std::fabs(value);
    if (magnitude == 0.0 || !(magnitude < KLV_INFINITY)) return;
    smallest_ = std::min(smallest_, magnitude);
    largest_ = std::max(largest_, magnitude);
  }
  void add(const std::vector<double>& values) {
    for (double value : values) add(value);
  }
  void print(const char* name) const {
    if (largest_ == 0.0) {
      std::printf("  %-15s none but zero\n", name);
    } else {
      std::printf("  %-15s %.4g .. %.4g\n", name, smallest_, largest_);
    }
  }

 private:
  double smallest_ = std::numeric_limits<double>::infinity();
  double largest_ = 0.0;
};

/// "7: 5 bounded, 2 free" of the parts that are not empty.
struct Count {
  const char* name;
  int value;
};

void print_counts(const char* what, int total, const std::vector<Count>& counts) {
  std::printf("%-11s %d", what, total);
  const char* separator = " (";
  for (const Count& count : counts) {
    if (count.value == 0) continue;
    std::printf("%s%d %s", separator, count.value, count.name);
    separator = ", ";
  }
  std::printf("%s\n", *separator == ',' ? ")" : "");
}

void print_rows(const ModelData& data) {
  const auto of = [&](char sense) {
    return static_cast<int>(std::count(data.row_sense.begin(), data.row_sense.end(), sense));
  };
  print_counts("Rows:", data.num_rows,
               {{"<=", of('L')}, {"=", of('E')}, {">=", of('G')}, {"ranged", of('R')}});
}

void print_columns(const ModelData& data) {
  Count lower{"with a lower bound alone", 0}, upper{"with an upper bound alone", 0};
  Count boxed{"bounded on both sides", 0}, fixed{"fixed", 0}, free{"free", 0};
  for (std::size_t j = 0; j < data.lower.size(); ++j) {
    const bool has_lower = data.lower[j] > -KLV_INFINITY;
    const bool has_upper = data.upper[j] < KLV_INFINITY;
    Count& kind = has_lower && has_upper ? (data.lower[j] == data.upper[j] ? fixed : boxed)
                  : has_lower            ? lower
                  : has_upper            ? upper
                                         : free;
    ++kind.value;
  }
  print_counts("Columns:", data.num_cols, {lower, boxed, upper, free, fixed});
}

void print_types(const Session& session) {
  KLVenv env = session.env();
  KLVprob problem = session.problem();
  const Count counts[] = {{"binary", KLVgetnumbin(env, problem)},
                          {"integer", KLVgetnumint(env, problem)},
                          {"semi-continuous", KLVgetnumsemicont(env, problem)},
                          {"semi-integer", KLVgetnumsemiint(env, problem)}};
  int total = 0;
  for (const Count& count : counts) total += count.value;
  if (total > 0) print_counts("Discrete:", total, {std::begin(counts), std::end(counts)});
}

const char* type_name(int type) {
  switch (type) {
    case KLV_PROBTYPE_LP:
      return "linear program";
    case KLV_PROBTYPE_MILP:
      return "mixed-integer linear program";
    case KLV_PROBTYPE_QP:
      return "quadratic program";
    case KLV_PROBTYPE_MIQP:
      return "mixed-integer quadratic program";
    case KLV_PROBTYPE_QCP:
      return "quadratically constrained program";
    case KLV_PROBTYPE_MIQCP:
      return "mixed-integer quadratically constrained program";
    default:
      return "unknown";
  }
}

}  // namespace

void show_info(const std::string& path) {
  Session session;
  session.show_on(stdout);  // what the reader finds worth a warning
  if (is_network_file(path)) {
    show_network_info(session, path);
    return;
  }
  session.read(path);
  const ModelData data = read_model_data(session);
  std::printf("%-11s %s\n", "Model:", path.c_str());
  std::printf("%-11s %s\n", "Type:", type_name(KLVgetprobtype(session.env(), session.problem())));
  std::printf("%-11s %s\n", "Objective:", data.sense < 0 ? "maximize" : "minimize");
  print_rows(data);
  print_columns(data);
  print_types(session);
  std::printf("%-11s %d\n", "Nonzeros:", data.start.back());
  Range matrix, objective, bounds, rhs, ranges;
  for (int k = 0; k < data.start.back(); ++k) matrix.add(data.value[static_cast<std::size_t>(k)]);
  objective.add(data.objective);
  bounds.add(data.lower);
  bounds.add(data.upper);
  rhs.add(data.rhs);
  std::printf("Magnitudes:\n");
  matrix.print("matrix");
  objective.print("objective");
  bounds.print("bounds");
  rhs.print("right-hand side");
  if (!data.range.empty()) {
    ranges.add(data.range);
    ranges.print("ranges");
  }
}

}  // namespace kelvo::command
