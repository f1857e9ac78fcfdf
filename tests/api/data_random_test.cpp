// Random edits of a problem that holds every kind of data, against a plain model kept by the test.
#include <algorithm>
#include <random>
#include <tuple>

#include "prob_fixture.h"

namespace {

using Terms = std::vector<std::pair<int, double>>;  // column, value

struct PlainSet {
  char type;
  Terms members;
  std::string name;
  bool operator==(const PlainSet&) const = default;
};
struct PlainIndicator {
  int column, complemented;
  double rhs;
  char sense;
  Terms row;
  std::string name;
  bool operator==(const PlainIndicator&) const = default;
};
struct PlainQuadratic {
  double rhs;
  char sense;
  Terms linear;
  std::vector<std::tuple<int, int, double>> terms;
  std::string name;
  bool operator==(const PlainQuadratic&) const = default;
};

struct PlainData {
  int type = 0;
  int rows = 0, columns = 0;
  std::string types;  // empty: not mixed-integer
  std::vector<PlainSet> sets;
  std::vector<PlainIndicator> indicators;
  std::vector<PlainQuadratic> quadratics;
  std::map<std::pair<int, int>, double> q;  // (column, row)
  std::vector<std::tuple<int, int, int>> order;
  int cuts = 0, lazy = 0;
  bool operator==(const PlainData&) const = default;
};

// ---- Reading a problem back ----

constexpr int kRoom = 4000;

class Reader {
 public:
  Reader(KLVenv e, KLVprob p) : env(e), lp(p) {}

  PlainData read() {
    PlainData data;
    data.type = KLVgetprobtype(env, lp);
    data.rows = KLVgetnumrows(env, lp);
    data.columns = KLVgetnumcols(env, lp);
    data.cuts = KLVgetnumusercuts(env, lp);
    data.lazy = KLVgetnumlazyconstraints(env, lp);
    if (KLVgetctype(env, lp, text.data(), 0, data.columns - 1) == 0) {
      data.types.assign(text.data(), data.columns);
    }
    read_sets(data);
    for (int k = 0; k < KLVgetnumindconstrs(env, lp); ++k) read_indicator(data, k);
    for (int k = 0; k < KLVgetnumqconstrs(env, lp); ++k) read_quadratic(data, k);
    if (KLVgetquad(env, lp, &count, begin.data(), index.data(), value.data(), kRoom, &surplus, 0,
                   data.columns - 1) == 0) {
      EXPECT_EQ(count, KLVgetnumqpnz(env, lp));
      for (int j = 0; j < data.columns; ++j) {
        for (const auto& [i, v] : line(j, data.columns)) data.q[{j, i}] = v;
      }
    }
    if (KLVgetorder(env, lp, &count, index.data(), begin.data(), other.data(), kRoom, &surplus) ==
        0) {
      for (int k = 0; k < count; ++k) data.order.push_back({index[k], begin[k], other[k]});
    }
    return data;
  }

 private:
  Terms line(int k, int lines) {
    Terms terms;
    const int end = k + 1 < lines ? begin[k + 1] : count;
    for (int p = begin[k]; p < end; ++p) terms.push_back({index[p], value[p]});
    return terms;
  }
  void read_sets(PlainData& data) {
    const int sets = KLVgetnumsos(env, lp);
    if (sets == 0) return;
    EXPECT_EQ(KLVgetsos(env, lp, &count, text.data(), begin.data(), index.data(), value.data(),
                        kRoom, &surplus, 0, sets - 1),
              0);
    for (int k = 0; k < sets; ++k) data.sets.push_back({text[k], line(k, sets), ""});
    std::vector<char*> names(sets);
    if (KLVgetsosname(env, lp, names.data(), text.data(), kRoom, &surplus, 0, sets - 1) != 0)
      return;
    for (int k = 0; k < sets; ++k) data.sets[k].name = names[k];
  }
  void read_indicator(PlainData& data, int k) {
    PlainIndicator row{};
    EXPECT_EQ(KLVgetindconstr(env, lp, &row.column, &row.complemented, &count, &row.rhs, &row.sense,
                              index.data(), value.data(), kRoom, &surplus, k),
              0);
    begin[0] = 0;
    row.row = line(0, 1);
    if (KLVgetindconstrname(env, lp, text.data(), kRoom, &surplus, k) == 0) row.name = text.data();
    data.indicators.push_back(row);
  }
  void read_quadratic(PlainData& data, int k) {
    PlainQuadratic row{};
    int terms = 0, other_surplus = 0;
    std::vector<double> coefficients(kRoom);
    EXPECT_EQ(KLVgetqconstr(env, lp, &count, &terms, &row.rhs, &row.sense, index.data(),
                            value.data(), kRoom, &surplus, begin.data(), other.data(),
                            coefficients.data(), kRoom, &other_surplus, k),
              0);
    for (int p = 0; p < count; ++p) row.linear.push_back({index[p], value[p]});
    for (int p = 0; p < terms; ++p) row.terms.push_back({begin[p], other[p], coefficients[p]});
    if (KLVgetqconstrname(env, lp, text.data(), kRoom, &surplus, k) == 0) row.name = text.data();
    data.quadratics.push_back(row);
  }

  KLVenv env;
  KLVprob lp;
  int count = 0, surplus = 0;
  std::vector<char> text = std::vector<char>(kRoom);
  std::vector<int> begin = std::vector<int>(kRoom), index = begin, other = begin;
  std::vector<double> value = std::vector<double>(kRoom);
};

// ---- Editing both ----

class RandomData {
 public:
  RandomData(KLVenv e, KLVprob p, unsigned seed) : env(e), lp(p), random_(seed) { new_columns(); }

  void step() {
    switch (below(17)) {
      case 0:
        return new_columns();
      case 1:
        return delete_columns();
      case 2:
        return add_rows();
      case 3:
        return delete_rows();
      case 4:
        return change_types();
      case 5:
        return add_sets(below(3) == 0);
      case 6:
        return delete_sets();
      case 7:
        return add_indicator();
      case 8:
        return delete_range(expected.indicators, KLVdelindconstrs);
      case 9:
        return add_quadratic();
      case 10:
        return delete_range(expected.quadratics, KLVdelqconstrs);
      case 11:
        return below(2) == 0 ? copy_quadratic() : copy_separable();
      case 12:
        return copy_order();
      case 13:
        return change_cuts();
      case 14:
        return below(4) == 0 ? change_problem_type() : copy_clone();
      default:
        return change_quadratic();
    }
  }

  KLVprob problem() const { return lp; }
  PlainData expected;

 private:
  int n() const { return expected.columns; }
  int below(int k) { return static_cast<int>(random_() % static_cast<unsigned>(k)); }
  double number() { return 1.0 + below(50); }
  char sense() { return "LEG"[below(3)]; }

  Terms some_terms() {
    Terms terms;
    for (int j = 0; j < n(); ++j) {
      if (below(3) == 0) terms.push_back({j, number()});
    }
    std::shuffle(terms.begin(), terms.end(), random_);
    return terms;
  }
  static std::pair<std::vector<int>, std::vector<double>> split(const Terms& terms) {
    std::pair<std::vector<int>, std::vector<double>> result;
    for (const auto& [j, v] : terms) {
      result.first.push_back(j);
      result.second.push_back(v);
    }
    // No empty arrays: their addresses would be null.
    result.first.push_back(0);
    result.second.push_back(0);
    return result;
  }
  static int size(const Terms& terms) { return static_cast<int>(terms.size()); }

  /// The name of a new item, or null; `named` says whether the items of its kind have names, and
  /// all present ones get theirs when it is the first.
  template <class Item>
  const char* some_name(std::vector<Item>& items, char letter, bool& named, std::string& stored) {
    static const char* const kNames[] = {"alpha", "a rather long name that needs room", "beta"};
    const char* const name = below(4) == 0 ? kNames[below(3)] : nullptr;
    if (name != nullptr && !named) {
      named = true;
      for (std::size_t k = 0; k < items.size(); ++k) {
        items[k].name = letter + std::to_string(k + 1);
      }
    }
    if (named) stored = name != nullptr ? name : letter + std::to_string(items.size() + 1);
    return name;
  }

  // The type as it follows from what is there.
  bool is_integer() const {
    return expected.type == 1 || expected.type == 7 || expected.type == 11;
  }
  void make_integer() {
    if (is_integer()) return;
    expected.type = expected.type == 0 ? 1 : expected.type == 5 ? 7 : 11;
    expected.types.assign(n(), 'C');
  }
  void make_quadratic() {
    if (expected.type < 5) expected.type = expected.type == 0 ? 5 : 7;
  }
  void make_quadratically_constrained() {
    if (expected.type < 10) expected.type = is_integer() ? 11 : 10;
  }

  void new_columns() {
    const int count = 1 + below(4);
    const std::vector<double> upper(count, 20.0);
    std::string types;
    for (int k = 0; k < count; ++k) types += "CBISN"[below(5)];
    const bool typed = below(4) == 0;
    EXPECT_EQ(KLVnewcols(env, lp, count, nullptr, nullptr, upper.data(),
                         typed ? types.data() : nullptr, nullptr),
              0);
    if (typed) make_integer();
    expected.columns += count;
    if (is_integer()) expected.types += typed ? types : std::string(count, 'C');
  }

  static void renumber(Terms& terms, const std::vector<int>& place) {
    Terms kept;
    for (const auto& [j, v] : terms) {
      if (place[j] >= 0) kept.push_back({place[j], v});
    }
    terms.swap(kept);
  }

  void delete_columns() {
    if (below(3) != 0) return;
    std::vector<int> place(n());
    for (int j = 1; j < n(); ++j) place[j] = below(5) == 0;
    const bool any = std::count(place.begin(), place.end(), 1) > 0;
    EXPECT_EQ(KLVdelsetcols(env, lp, place.data()), 0);
    if (any) expected.cuts = expected.lazy = 0;
    std::string types;
    for (int j = 0; j < n() && is_integer(); ++j) {
      if (place[j] >= 0) types += expected.types[j];
    }
    expected.types = types;
    expected.columns = *std::max_element(place.begin(), place.end()) + 1;
    for (PlainSet& set : expected.sets) renumber(set.members, place);
    std::vector<PlainIndicator> indicators;
    for (PlainIndicator& row : expected.indicators) {
      if (place[row.column] < 0) continue;
      row.column = place[row.column];
      renumber(row.row, place);
      indicators.push_back(row);
    }
    expected.indicators.swap(indicators);
    for (PlainQuadratic& row : expected.quadratics) {
      renumber(row.linear, place);
      decltype(row.terms) kept;
      for (const auto& [i, j, v] : row.terms) {
        if (place[i] >= 0 && place[j] >= 0) kept.push_back({place[i], place[j], v});
      }
      row.terms.swap(kept);
    }
    decltype(expected.q) q;
    for (const auto& [at, v] : expected.q) {
      if (place[at.first] >= 0 && place[at.second] >= 0) q[{place[at.first], place[at.second]}] = v;
    }
    expected.q.swap(q);
    decltype(expected.order) order;
    for (const auto& [j, priority, direction] : expected.order) {
      if (place[j] >= 0) order.push_back({place[j], priority, direction});
    }
    expected.order.swap(order);
  }

  void add_rows() {
    const int begin = 0;
    const Terms terms = some_terms();
    const auto [columns, values] = split(terms);
    EXPECT_EQ(KLVaddrows(env, lp, 0, 1, size(terms), nullptr, nullptr, &begin, columns.data(),
                         values.data(), nullptr, nullptr),
              0);
    ++expected.rows;
  }
  void delete_rows() {
    if (expected.rows == 0) return;
    const int row = below(expected.rows);
    EXPECT_EQ(KLVdelrows(env, lp, row, row), 0);
    --expected.rows;
  }

  void change_types() {
    if (below(3) != 0 && !is_integer()) return;
    make_integer();
    const int column = below(n());
    const char type = "CBISN"[below(5)];
    EXPECT_EQ(KLVchgctype(env, lp, 1, &column, &type), 0);
    expected.types[column] = type;
    if (below(3) != 0) return;
    std::shuffle(expected.types.begin(), expected.types.end(), random_);
    EXPECT_EQ(KLVcopyctype(env, lp, expected.types.data()), 0);
  }

  void add_sets(bool replace) {
    if (replace) {
      expected.sets.clear();
      sets_named_ = false;
    }
    std::vector<int> begin;
    Terms all;
    std::string types;
    std::vector<std::string> names(2);
    std::vector<const char*> given(2);
    const std::size_t count = 1 + below(2);
    for (std::size_t k = 0; k < count; ++k) {
      PlainSet set{"12"[below(2)], some_terms(), ""};
      for (std::size_t p = 0; p < set.members.size(); ++p) {
        set.members[p].second = static_cast<double>(p + 1);
      }
      begin.push_back(size(all));
      all.insert(all.end(), set.members.begin(), set.members.end());
      types += set.type;
      given[k] = some_name(expected.sets, 's', sets_named_, set.name);
      expected.sets.push_back(set);
    }
    const auto [columns, weights] = split(all);
    EXPECT_EQ((replace ? KLVcopysos : KLVaddsos)(env, lp, static_cast<int>(count), size(all),
                                                 types.data(), begin.data(), columns.data(),
                                                 weights.data(), given.data()),
              0);
    make_integer();
  }
  void delete_sets() {
    if (expected.sets.empty()) return;
    std::vector<int> marks(expected.sets.size());
    std::vector<PlainSet> kept;
    for (std::size_t k = 0; k < marks.size(); ++k) {
      marks[k] = below(3) == 0;
      if (marks[k] == 0) kept.push_back(expected.sets[k]);
    }
    EXPECT_EQ(KLVdelsetsos(env, lp, marks.data()), 0);
    expected.sets.swap(kept);
  }

  void add_indicator() {
    PlainIndicator row{below(n()), below(2), number(), sense(), some_terms(), ""};
    const char* const name = some_name(expected.indicators, 'i', indicators_named_, row.name);
    const auto [columns, values] = split(row.row);
    EXPECT_EQ(KLVaddindconstr(env, lp, row.column, row.complemented, size(row.row), row.rhs,
                              row.sense, columns.data(), values.data(), name),
              0);
    expected.indicators.push_back(row);
    make_integer();
  }

  void add_quadratic() {
    PlainQuadratic row{number(), sense(), some_terms(), {}, ""};
    std::vector<int> first(1), second(1);
    std::vector<double> value(1);
    for (int k = below(5); k > 0; --k) {
      row.terms.push_back({below(n()), below(n()), number()});
    }
    first.clear(), second.clear(), value.clear();
    for (const auto& [i, j, v] : row.terms) {
      first.push_back(i);
      second.push_back(j);
      value.push_back(v);
    }
    const char* const name = some_name(expected.quadratics, 'q', quadratics_named_, row.name);
    const auto [columns, values] = split(row.linear);
    EXPECT_EQ(KLVaddqconstr(env, lp, size(row.linear), static_cast<int>(row.terms.size()), row.rhs,
                            row.sense, columns.data(), values.data(), first.data(), second.data(),
                            value.data(), name),
              0);
    expected.quadratics.push_back(row);
    make_quadratically_constrained();
  }

  template <class Item, class Delete>
  void delete_range(std::vector<Item>& items, Delete del) {
    if (items.empty()) return;
    const int begin = below(static_cast<int>(items.size()));
    const int end = std::min(begin + below(2), static_cast<int>(items.size()) - 1);
    EXPECT_EQ(del(env, lp, begin, end), 0);
    items.erase(items.begin() + begin, items.begin() + end + 1);
  }

  void copy_quadratic() {
    expected.q.clear();
    for (int k = below(8); k > 0; --k) {
      const int i = below(n()), j = below(n());
      expected.q[{i, j}] = expected.q[{j, i}] = number();
    }
    std::vector<int> begin(n()), count(n()), index(1);
    std::vector<double> value(1);
    // The areas stand in the order of the columns turned round.
    for (int j = n() - 1; j >= 0; --j) {
      begin[j] = static_cast<int>(index.size());
      for (const auto& [at, v] : expected.q) {
        if (at.first != j) continue;
        index.push_back(at.second);
        value.push_back(v);
      }
      count[j] = static_cast<int>(index.size()) - begin[j];
    }
    EXPECT_EQ(KLVcopyquad(env, lp, begin.data(), count.data(), index.data(), value.data()), 0);
    make_quadratic();
  }
  void copy_separable() {
    std::vector<double> diagonal(n());
    expected.q.clear();
    for (int j = 0; j < n(); ++j) {
      diagonal[j] = below(2) == 0 ? number() : 0.0;
      if (diagonal[j] != 0.0) expected.q[{j, j}] = diagonal[j];
    }
    EXPECT_EQ(KLVcopyqpsep(env, lp, diagonal.data()), 0);
    make_quadratic();
  }
  void change_quadratic() {
    const int i = below(n()), j = below(n());
    const double v = below(3) == 0 ? 0.0 : number();
    EXPECT_EQ(KLVchgqpcoef(env, lp, i, j, v), 0);
    for (const auto& at : {std::pair(i, j), std::pair(j, i)}) {
      if (v == 0.0) {
        expected.q.erase(at);
      } else {
        expected.q[at] = v;
      }
    }
    make_quadratic();
  }

  void copy_order() {
    if (!is_integer()) return;
    expected.order.clear();
    std::vector<int> columns, priorities, directions;
    for (const auto& [j, v] : some_terms()) {
      expected.order.push_back({j, static_cast<int>(v), below(3) - 1});
      columns.push_back(j);
      priorities.push_back(static_cast<int>(v));
      directions.push_back(std::get<2>(expected.order.back()));
    }
    EXPECT_EQ(KLVcopyorder(env, lp, static_cast<int>(columns.size()), columns.data(),
                           priorities.data(), directions.data()),
              0);
  }

  void change_cuts() {
    const bool lazy = below(2) == 0;
    int& count = lazy ? expected.lazy : expected.cuts;
    if (below(4) == 0) {
      EXPECT_EQ((lazy ? KLVfreelazyconstraints : KLVfreeusercuts)(env, lp), 0);
      count = 0;
      return;
    }
    const int begin = 0;
    const Terms terms = some_terms();
    const auto [columns, values] = split(terms);
    EXPECT_EQ((lazy ? KLVaddlazyconstraints : KLVaddusercuts)(env, lp, 1, size(terms), nullptr,
                                                              nullptr, &begin, columns.data(),
                                                              values.data(), nullptr),
              0);
    ++count;
    make_integer();
  }

  void change_problem_type() {
    const int type = std::vector<int>{0, 1, 5, 7, 10, 11}[below(6)];
    const int before = expected.type;
    EXPECT_EQ(KLVchgprobtype(env, lp, type), 0);
    if (type == before) return;
    make_integer();
    expected.type = type;
    if (!is_integer()) {
      expected.types.clear();
      expected.sets.clear();
      expected.indicators.clear();
      expected.order.clear();
      expected.cuts = expected.lazy = 0;
      sets_named_ = indicators_named_ = false;
    }
    if (type < 10) {
      expected.quadratics.clear();
      quadratics_named_ = false;
    }
    if (type < 5) expected.q.clear();
  }

  void copy_clone() {
    int status = -1;
    KLVprob copy = KLVcloneprob(env, lp, &status);
    ASSERT_EQ(status, 0);
    EXPECT_EQ(KLVfreeprob(env, &lp), 0);
    lp = copy;
  }

  KLVenv env;
  KLVprob lp;
  std::mt19937 random_;
  bool sets_named_ = false;
  bool indicators_named_ = false;
  bool quadratics_named_ = false;
};

TEST_F(ProblemTest, RandomEditsOfAllKindsOfDataAgreeWithAPlainModel) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    int status = 0;
    RandomData data(env, KLVcreateprob(env, &status, "random"), seed);
    // Reading after every step merges at once; reading rarely lets coefficients wait.
    const unsigned read_every = 1 + seed % 5;
    for (unsigned step = 0; step < 150; ++step) {
      data.step();
      if (step % read_every != 0) continue;
      const PlainData now = Reader(env, data.problem()).read();
      ASSERT_EQ(now.type, data.expected.type) << "step " << step;
      ASSERT_EQ(now.types, data.expected.types) << "step " << step;
      ASSERT_EQ(now.q, data.expected.q) << "step " << step;
      ASSERT_TRUE(now.sets == data.expected.sets) << "step " << step;
      ASSERT_TRUE(now.indicators == data.expected.indicators) << "step " << step;
      ASSERT_TRUE(now.quadratics == data.expected.quadratics) << "step " << step;
      ASSERT_TRUE(now == data.expected) << "step " << step;
    }
    KLVprob last = data.problem();
    EXPECT_EQ(KLVfreeprob(env, &last), 0);
  }
}

}  // namespace
