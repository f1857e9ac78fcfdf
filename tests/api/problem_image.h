// A problem read back through the query functions, in a form that can be compared.
#pragma once

#include <gtest/gtest.h>
#include <kelvo.h>

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using Terms = std::vector<std::pair<int, double>>;  // column, value

struct SetImage {
  char type = '1';
  Terms members;
  std::string name;
  bool operator==(const SetImage&) const = default;
};
struct IndicatorImage {
  int column = 0, complemented = 0;
  double rhs = 0.0;
  char sense = 'L';
  Terms row;
  std::string name;
  bool operator==(const IndicatorImage&) const = default;
};
struct QuadraticImage {
  double rhs = 0.0;
  char sense = 'L';
  Terms linear;
  std::vector<std::tuple<int, int, double>> terms;
  std::string name;
  bool operator==(const QuadraticImage&) const = default;
};

/// Everything the query functions say about a problem.
struct ModelImage {
  int sense = 1;
  std::vector<double> obj = {}, lb = {}, ub = {}, rhs = {}, rngval = {};
  std::string senses = {};
  std::map<std::pair<int, int>, double> entries = {};  // (row, column)
  std::vector<std::string> row_names = {}, col_names = {};
  int type = 0;
  std::string types = {};  // empty: not mixed-integer
  std::vector<SetImage> sets = {};
  std::vector<IndicatorImage> indicators = {};
  std::vector<QuadraticImage> quadratics = {};
  std::map<std::pair<int, int>, double> q = {};  // (column, row)
  std::vector<std::tuple<int, int, int>> order = {};
  int cuts = 0, lazy = 0;

  int m() const { return static_cast<int>(rhs.size()); }
  int n() const { return static_cast<int>(obj.size()); }
  bool operator==(const ModelImage&) const = default;
};

inline void PrintTo(const ModelImage& image, std::ostream* out) {
  *out << image.m() << " rows, " << image.n() << " columns, " << image.entries.size()
       << " entries, senses " << image.senses << ", types " << image.types << ", "
       << image.sets.size() << " sets, " << image.indicators.size() << " indicators, "
       << image.quadratics.size() << " quadratic constraints, " << image.q.size() << " in Q";
}

/// The numbers 0..n-1 of a query of columns (or rows).
template <class Query>
std::vector<double> numbers(Query query, KLVenv env, KLVprob lp, int n) {
  std::vector<double> values(n + 1);
  EXPECT_EQ(query(env, lp, values.data(), 0, n - 1), 0);
  values.resize(n);
  return values;
}

class ImageReader {
 public:
  ImageReader(KLVenv e, KLVprob p)
      : env(e), lp(p), room(4000 + KLVgetnumrows(e, p) + KLVgetnumnz(e, p)) {}

  ModelImage read() {
    ModelImage image;
    const int m = KLVgetnumrows(env, lp), n = KLVgetnumcols(env, lp);
    image.sense = KLVgetobjsen(env, lp);
    image.obj = numbers(KLVgetobj, env, lp, n);
    image.lb = numbers(KLVgetlb, env, lp, n);
    image.ub = numbers(KLVgetub, env, lp, n);
    image.rhs = numbers(KLVgetrhs, env, lp, m);
    EXPECT_EQ(KLVgetsense(env, lp, text.data(), 0, m - 1), 0);
    image.senses.assign(text.data(), m);
    image.rngval.resize(m + 1);
    const int ranges = KLVgetrngval(env, lp, image.rngval.data(), 0, m - 1);
    EXPECT_TRUE(ranges == 0 || ranges == 1216);
    image.rngval.resize(ranges == 0 ? m : 0);
    EXPECT_EQ(KLVgetcols(env, lp, &count, begin.data(), index.data(), value.data(), room, &surplus,
                         0, n - 1),
              0);
    EXPECT_EQ(count, KLVgetnumnz(env, lp));
    for (int j = 0; j < n; ++j) {
      for (const auto& [i, v] : line(j, n)) image.entries[{i, j}] = v;
    }
    EXPECT_EQ(static_cast<int>(image.entries.size()), KLVgetnumnz(env, lp)) << "an entry twice";
    image.row_names = names(KLVgetrowname, m);
    image.col_names = names(KLVgetcolname, n);
    read_other_kinds(image, n);
    return image;
  }

 private:
  void read_other_kinds(ModelImage& image, int n) {
    image.type = KLVgetprobtype(env, lp);
    image.cuts = KLVgetnumusercuts(env, lp);
    image.lazy = KLVgetnumlazyconstraints(env, lp);
    // Queries of what a type of problem has not got would print an error.
    const bool integer = image.type == 1 || image.type == 7 || image.type == 11;
    if (integer) {
      EXPECT_EQ(KLVgetctype(env, lp, text.data(), 0, n - 1), 0);
      image.types.assign(text.data(), n);
    }
    if (KLVgetnumsos(env, lp) > 0) read_sets(image);
    for (int k = 0; k < KLVgetnumindconstrs(env, lp); ++k) read_indicator(image, k);
    for (int k = 0; k < KLVgetnumqconstrs(env, lp); ++k) read_quadratic(image, k);
    if (KLVgetnumqpnz(env, lp) > 0) {
      EXPECT_EQ(KLVgetquad(env, lp, &count, begin.data(), index.data(), value.data(), room,
                           &surplus, 0, n - 1),
                0);
      EXPECT_EQ(count, KLVgetnumqpnz(env, lp));
      for (int j = 0; j < n; ++j) {
        for (const auto& [i, v] : line(j, n)) image.q[{j, i}] = v;
      }
    }
    if (integer && KLVgetorder(env, lp, &count, index.data(), begin.data(), other.data(), room,
                               &surplus) == 0) {
      for (int k = 0; k < count; ++k) image.order.push_back({index[k], begin[k], other[k]});
    }
  }
  Terms line(int k, int lines) {
    Terms terms;
    const int end = k + 1 < lines ? begin[k + 1] : count;
    for (int p = begin[k]; p < end; ++p) terms.push_back({index[p], value[p]});
    return terms;
  }
  template <class Get>
  std::vector<std::string> names(Get get, int n) {
    if (get(env, lp, nullptr, nullptr, 0, &surplus, 0, n - 1) != 1207) return {};
    std::vector<char*> pointers(n);
    std::vector<char> store(-surplus);
    EXPECT_EQ(get(env, lp, pointers.data(), store.data(), -surplus, &surplus, 0, n - 1), 0);
    EXPECT_EQ(surplus, 0);
    return {pointers.begin(), pointers.end()};
  }
  void read_sets(ModelImage& image) {
    const int sets = KLVgetnumsos(env, lp);
    EXPECT_EQ(KLVgetsos(env, lp, &count, text.data(), begin.data(), index.data(), value.data(),
                        room, &surplus, 0, sets - 1),
              0);
    const std::vector<std::string> set_names = names(KLVgetsosname, sets);
    for (int k = 0; k < sets; ++k) {
      image.sets.push_back({text[k], line(k, sets), set_names.empty() ? "" : set_names[k]});
    }
  }
  void read_indicator(ModelImage& image, int k) {
    IndicatorImage row;
    EXPECT_EQ(KLVgetindconstr(env, lp, &row.column, &row.complemented, &count, &row.rhs, &row.sense,
                              index.data(), value.data(), room, &surplus, k),
              0);
    begin[0] = 0;
    row.row = line(0, 1);
    if (KLVgetindconstrname(env, lp, text.data(), room, &surplus, k) == 0) row.name = text.data();
    image.indicators.push_back(row);
  }
  void read_quadratic(ModelImage& image, int k) {
    QuadraticImage row;
    int terms = 0, other_surplus = 0;
    std::vector<double> coefficients(room);
    EXPECT_EQ(KLVgetqconstr(env, lp, &count, &terms, &row.rhs, &row.sense, index.data(),
                            value.data(), room, &surplus, begin.data(), other.data(),
                            coefficients.data(), room, &other_surplus, k),
              0);
    for (int p = 0; p < count; ++p) row.linear.push_back({index[p], value[p]});
    for (int p = 0; p < terms; ++p) row.terms.push_back({begin[p], other[p], coefficients[p]});
    if (KLVgetqconstrname(env, lp, text.data(), room, &surplus, k) == 0) row.name = text.data();
    image.quadratics.push_back(row);
  }

  KLVenv env;
  KLVprob lp;
  const int room;
  int count = 0, surplus = 0;
  std::vector<char> text = std::vector<char>(room);
  std::vector<int> begin = std::vector<int>(room), index = begin, other = begin;
  std::vector<double> value = std::vector<double>(room);
};

inline ModelImage read_model(KLVenv env, KLVprob lp) {
  return ImageReader(env, lp).read();
}
