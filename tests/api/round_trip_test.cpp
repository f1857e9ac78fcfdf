// Generated problems with every kind of data that the interface can set, written and read back.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <set>

#include "file_fixture.h"

namespace {

constexpr int kEveryObjectiveTerm = 1086;  // 1: an LP file names every column in the objective

/// Everything the query functions say, with names in the place of indices.
struct ProblemImage {
  ModelImage linear;
  std::string types;
  std::vector<std::string> sets, indicators;
  int user_cuts = 0, lazy_constraints = 0;

  bool operator==(const ProblemImage&) const = default;
};

class RoundTripTest : public FileTest {
 protected:
  void set_seed(unsigned seed) { random_.seed(seed); }
  int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  bool chance(int n) { return below(n) == 0; }
  /// A number of at most 14 digits.
  double number() {
    if (chance(3)) return 1 + below(9);
    char text[40];
    std::snprintf(text, sizeof text, "%s%d.%04d%09de%d", chance(2) ? "-" : "", 1 + below(9),
                  below(10000), below(1000000000), below(30) - 15);
    return std::strtod(text, nullptr);
  }
  std::vector<int> some_columns(int count) {
    std::set<int> chosen;
    while (static_cast<int>(chosen.size()) < std::min(count, columns_))
      chosen.insert(below(columns_));
    return {chosen.begin(), chosen.end()};
  }

  void make_problem(bool ranges);
  void add_rows(bool ranges);
  void add_types();
  void add_discrete_parts();
  ProblemImage problem_image();

  std::mt19937 random_;
  int columns_ = 0;
  std::vector<std::string> names_;
};

void RoundTripTest::make_problem(bool ranges) {
  columns_ = 1 + below(25);
  names_.clear();
  std::vector<double> objective, lower, upper;
  for (int j = 0; j < columns_; ++j) {
    names_.push_back((chance(2) ? "st" : "X#") + std::to_string(j) +
                     std::string(chance(5) ? 40 : 0, 'l'));
    objective.push_back(chance(2) ? number() : 0.0);
    const double low = chance(3) ? below(100) - 50.25 : 0.0;
    lower.push_back(chance(4) ? -1e20 : low);
    upper.push_back(chance(2) ? 1e20 : low + below(50));
  }
  std::vector<const char*> pointers;
  for (const std::string& name : names_) pointers.push_back(name.c_str());
  ASSERT_EQ(KLVnewcols(env, lp, columns_, objective.data(), lower.data(), upper.data(), nullptr,
                       pointers.data()),
            0);
  ASSERT_EQ(KLVchgobjsen(env, lp, chance(2) ? 1 : -1), 0);
  add_rows(ranges);
  if (chance(2)) {
    add_types();
    add_discrete_parts();
  }
}

void RoundTripTest::add_rows(bool ranges) {
  const int rows = 1 + below(15);
  for (int i = 0; i < rows; ++i) {
    const std::vector<int> index = some_columns(below(10));
    std::vector<double> value;
    for (std::size_t k = 0; k < index.size(); ++k) value.push_back(number());
    const char sense = ranges && chance(3) ? 'R' : "LGE"[below(3)];
    const double rhs = chance(3) ? 0.0 : number(), range = 0.5 * (below(100) - 50);
    const std::string name = "row" + std::to_string(i);
    const char* const pointer = name.c_str();
    const int begin = 0;
    ASSERT_EQ(KLVaddrows(env, lp, 0, 1, static_cast<int>(index.size()), &rhs, &sense, &begin,
                         index.data(), value.data(), nullptr, &pointer),
              0);
    if (sense != 'R') continue;
    ASSERT_EQ(KLVchgrngval(env, lp, 1, &i, &range), 0);
  }
}

void RoundTripTest::add_types() {
  std::string types;
  for (int j = 0; j < columns_; ++j) {
    types += "CCBISN"[below(6)];
    const char both[] = {'L', 'U'};
    double bounds[] = {0.0, 1.0};
    if (types.back() == 'I') {
      bounds[0] = below(9) - 4;
      bounds[1] = bounds[0] + 2 + below(9);
    } else if (types.back() == 'S' || types.back() == 'N') {
      bounds[0] = below(3);
      bounds[1] = 3 + below(9);
    }
    const int index[] = {j, j};
    if (types.back() == 'C') continue;
    ASSERT_EQ(KLVchgbds(env, lp, 2, index, both, bounds), 0);
  }
  ASSERT_EQ(KLVcopyctype(env, lp, types.c_str()), 0);
}

void RoundTripTest::add_discrete_parts() {
  std::string types(static_cast<std::size_t>(columns_) + 1, '\0');
  ASSERT_EQ(KLVgetctype(env, lp, types.data(), 0, columns_ - 1), 0);
  const std::size_t binary = types.find('B');
  for (int k = 0; k < below(4); ++k) {
    const std::vector<int> index = some_columns(1 + below(6));
    const int count = static_cast<int>(index.size()), begin = 0;
    std::vector<double> value;
    for (int e = 0; e < count; ++e) value.push_back(e + 1 + 0.125 * below(8));
    const double rhs = number();
    const std::string text = "part" + std::to_string(k), cut = "cut" + std::to_string(k),
                      lazy = "lzy" + std::to_string(k);
    const char* const set_name = text.c_str();
    const char* const cut_name = cut.c_str();
    const char* const lazy_name = lazy.c_str();
    ASSERT_EQ(KLVaddsos(env, lp, 1, count, chance(2) ? "1" : "2", &begin, index.data(),
                        value.data(), &set_name),
              0);
    ASSERT_EQ(
        KLVaddusercuts(env, lp, 1, count, &rhs, "L", &begin, index.data(), value.data(), &cut_name),
        0);
    ASSERT_EQ(KLVaddlazyconstraints(env, lp, 1, count, &rhs, "G", &begin, index.data(),
                                    value.data(), &lazy_name),
              0);
    if (binary == std::string::npos) continue;
    ASSERT_EQ(
        KLVaddindconstr(env, lp, static_cast<int>(binary), below(2), count, rhs, "LGE"[below(3)],
                        index.data(), value.data(), ("ind" + std::to_string(k)).c_str()),
        0);
  }
}

ProblemImage RoundTripTest::problem_image() {
  ProblemImage result;
  result.linear = image();
  const int columns = KLVgetnumcols(env, lp);
  const std::vector<std::string>& names = result.linear.col_names;
  result.types.assign(static_cast<std::size_t>(columns) + 1, '\0');
  if (KLVgetctype(env, lp, result.types.data(), 0, columns - 1) != 0) {
    result.types.assign(static_cast<std::size_t>(columns) + 1, 'C');
  }
  result.types.resize(static_cast<std::size_t>(columns));
  result.user_cuts = KLVgetnumusercuts(env, lp);
  result.lazy_constraints = KLVgetnumlazyconstraints(env, lp);
  std::vector<int> index(static_cast<std::size_t>(columns) + 1);
  std::vector<double> value(index.size());
  char text[600];
  for (int k = 0; k < KLVgetnumsos(env, lp); ++k) {
    char type = '?', store[256];
    char* name = nullptr;
    int count = 0, begin = 0, surplus = 0;
    EXPECT_EQ(KLVgetsos(env, lp, &count, &type, &begin, index.data(), value.data(), columns,
                        &surplus, k, k),
              0);
    EXPECT_EQ(KLVgetsosname(env, lp, &name, store, sizeof store, &surplus, k, k), 0);
    std::string line = std::string(name) + type;
    for (int e = 0; e < count; ++e) {
      std::snprintf(text, sizeof text, " %s:%.14g", names[index[e]].c_str(), value[e]);
      line += text;
    }
    result.sets.push_back(line);
  }
  for (int k = 0; k < KLVgetnumindconstrs(env, lp); ++k) {
    char sense = '?', name[256];
    double rhs = 0.0;
    int column = -1, complemented = -1, count = 0, surplus = 0;
    EXPECT_EQ(KLVgetindconstr(env, lp, &column, &complemented, &count, &rhs, &sense, index.data(),
                              value.data(), columns, &surplus, k),
              0);
    EXPECT_EQ(KLVgetindconstrname(env, lp, name, sizeof name, &surplus, k), 0);
    std::snprintf(text, sizeof text, "%s: %s = %d -> %c %.14g", name, names[column].c_str(),
                  1 - complemented, sense, rhs);
    std::vector<std::string> terms;
    for (int e = 0; e < count; ++e) {
      terms.push_back(" " + names[index[e]] + "*" + std::to_string(value[e]));
    }
    std::sort(terms.begin(), terms.end());
    std::string line = text;
    for (const std::string& each : terms) line += each;
    result.indicators.push_back(line);
  }
  return result;
}

/// The numbers to 14 digits: readers may be off in the last bits.
ProblemImage rounded(ProblemImage problem) {
  const auto round = [](double& value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.14g", value);
    value = std::strtod(text, nullptr);
  };
  ModelImage& linear = problem.linear;
  for (auto* values : {&linear.obj, &linear.lb, &linear.ub, &linear.rhs, &linear.rngval}) {
    for (double& value : *values) round(value);
  }
  for (auto& entry : linear.entries) round(entry.second);
  return problem;
}

/// What an LP file makes of ranged rows: equations with a column each.
ProblemImage without_ranges(ProblemImage problem) {
  ModelImage& linear = problem.linear;
  for (std::size_t i = 0; i < linear.senses.size(); ++i) {
    if (linear.senses[i] != 'R') continue;
    linear.senses[i] = 'E';
    linear.entries[{static_cast<int>(i), static_cast<int>(linear.obj.size())}] = -1.0;
    linear.col_names.push_back("Rg" + linear.row_names[i]);
    linear.obj.push_back(0.0);
    linear.lb.push_back(std::min(linear.rngval[i], 0.0));
    linear.ub.push_back(std::max(linear.rngval[i], 0.0));
    problem.types += 'C';
  }
  linear.rngval.clear();
  return problem;
}

/// What an MPS file makes of a problem: a minimization, whose binaries are told by their bounds.
ProblemImage as_minimization(ProblemImage problem) {
  ModelImage& linear = problem.linear;
  if (linear.sense < 0) {
    for (double& cost : linear.obj) cost = 0.0 - cost;
  }
  linear.sense = 1;
  if (linear.senses.find('R') == std::string::npos) linear.rngval.clear();
  for (std::size_t j = 0; j < problem.types.size(); ++j) {
    const bool unit = linear.lb[j] == 0.0 && linear.ub[j] == 1.0;
    if (problem.types[j] == 'I' && unit) problem.types[j] = 'B';
  }
  return problem;
}

TEST_F(RoundTripTest, WhatIsWrittenReadsBack) {
  ASSERT_EQ(KLVsetintparam(env, kEveryObjectiveTerm, 1), 0);
  for (unsigned seed = 1; seed <= 150 && !HasFailure(); ++seed) {
    for (const char* type : {"LP", "MPS"}) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " " << type);
      const bool mps = type[0] == 'M';
      ASSERT_EQ(KLVfreeprob(env, &lp), 0);
      int status = -1;
      lp = KLVcreateprob(env, &status, "generated");
      ASSERT_EQ(status, 0);
      set_seed(seed);
      make_problem(seed % 2 == 0);
      const ProblemImage before = problem_image();
      take(warnings);
      ASSERT_EQ(KLVwriteprob(env, lp, path("first").c_str(), type), 0);
      EXPECT_EQ(take(warnings), "") << "something is said to be lost";
      ASSERT_EQ(KLVreadcopyprob(env, lp, path("first").c_str(), type), 0)
          << errors << text_of("first");
      ProblemImage after = problem_image();
      if (mps) after.linear.rngval.resize(before.linear.rngval.size());
      const ProblemImage expected = mps ? as_minimization(before) : without_ranges(before);
      EXPECT_TRUE(rounded(after) == rounded(expected)) << text_of("first");
      ASSERT_EQ(KLVchgprobname(env, lp, "generated"), 0);
      ASSERT_EQ(KLVwriteprob(env, lp, path("second").c_str(), type), 0);
      const bool columns_added = after.types.size() != before.types.size();
      if (columns_added) continue;
      EXPECT_EQ(text_of("second"), text_of("first"));
    }
  }
}

}  // namespace
