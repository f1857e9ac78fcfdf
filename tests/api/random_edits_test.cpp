// Random edits of a problem that holds every kind of data, against a plain model kept by the test:
// additions and coefficients that wait and those that were merged, in every order, must give the
// same answers.
#include <random>

#include "prob_fixture.h"

namespace {

class RandomEdits {
 public:
  RandomEdits(KLVenv e, unsigned seed) : env(e), random_(seed) {
    int status = 0;
    lp = KLVcreateprob(env, &status, "random");
    EXPECT_EQ(status, 0);
    new_columns();
  }
  ~RandomEdits() { EXPECT_EQ(KLVfreeprob(env, &lp), 0); }

  void step() {
    using Edit = void (RandomEdits::*)();
    // Some stand twice, so that their effects pile up before the rare ones.
    static constexpr Edit kEdits[] = {&RandomEdits::new_rows,       &RandomEdits::new_columns,
                                      &RandomEdits::add_rows,       &RandomEdits::add_columns,
                                      &RandomEdits::change_one,     &RandomEdits::change_one,
                                      &RandomEdits::change_list,    &RandomEdits::change_vectors,
                                      &RandomEdits::rename,         &RandomEdits::delete_rows,
                                      &RandomEdits::delete_columns, &RandomEdits::change_types,
                                      &RandomEdits::add_sets,       &RandomEdits::delete_sets,
                                      &RandomEdits::add_indicator,  &RandomEdits::delete_indicator,
                                      &RandomEdits::add_quadratic,  &RandomEdits::delete_quadratic,
                                      &RandomEdits::copy_quadratic, &RandomEdits::change_q,
                                      &RandomEdits::change_q,       &RandomEdits::copy_order,
                                      &RandomEdits::change_cuts,    &RandomEdits::change_problem};
    (this->*kEdits[below(std::size(kEdits))])();
    EXPECT_EQ(KLVgetnumrows(env, lp), m());
    EXPECT_EQ(KLVgetnumcols(env, lp), n());
    EXPECT_EQ(KLVgetnumnz(env, lp), static_cast<int>(expected.entries.size()));
  }

  KLVprob problem() const { return lp; }
  ModelImage expected;

 private:
  int m() const { return expected.m(); }
  int n() const { return expected.n(); }
  int below(std::size_t k) { return k == 0 ? 0 : static_cast<int>(random_() % k); }
  bool chance(int k) { return below(k) == 0; }
  double number() { return 1.0 + below(100); }
  std::vector<double> some_numbers(int k) {
    std::vector<double> values(k + 1);
    for (double& v : values) v = number();
    return values;
  }

  // --- Lines of entries, and names ---

  /// `lines` random lines over `width` places, the last one with a spare entry so that no array is
  /// empty.
  struct Lines {
    std::vector<int> begin, index;
    std::vector<double> value;
    int size = 0;
  };
  Terms some_terms(int width) {
    Terms terms;
    for (int j = 0; j < width; ++j) {
      if (chance(3)) terms.push_back({j, number()});
    }
    if (chance(2)) std::shuffle(terms.begin(), terms.end(), random_);
    return terms;
  }
  static Lines as_lines(const std::vector<Terms>& all) {
    Lines lines;
    for (const Terms& terms : all) {
      lines.begin.push_back(static_cast<int>(lines.index.size()));
      for (const auto& [j, v] : terms) {
        lines.index.push_back(j);
        lines.value.push_back(v);
      }
    }
    lines.size = static_cast<int>(lines.index.size());
    lines.begin.push_back(0);
    lines.index.push_back(0);
    lines.value.push_back(0);
    return lines;
  }
  std::vector<Terms> some_lines(int lines, int width) {
    std::vector<Terms> all(lines);
    for (Terms& terms : all) terms = some_terms(width);
    return all;
  }

  static const char* some_text(int k) {
    static const char* const kTexts[] = {"alpha", "b", "a rather long name that needs room", "b"};
    return kTexts[k];
  }
  /// Names for `count` new rows or columns, some missing or none at all, and what the model must
  /// then hold. A problem that has names keeps having them, even when it has no rows for a while.
  std::vector<const char*> names_for(bool rows, int count) {
    std::vector<std::string>& names = rows ? expected.row_names : expected.col_names;
    const int old_count = rows ? m() : n();
    std::vector<const char*> given(count + 1, nullptr);
    bool any = false;
    for (int k = 0; k < count && seed_names_; ++k) {
      if (chance(6)) given[k] = some_text(below(4));
      any = any || given[k] != nullptr;
    }
    bool& named = rows ? rows_named_ : columns_named_;
    named = named || any;
    for (int k = static_cast<int>(names.size()); named && k < old_count + count; ++k) {
      const char* name = k < old_count ? nullptr : given[k - old_count];
      names.push_back(name != nullptr ? name : (rows ? 'c' : 'x') + std::to_string(k + 1));
    }
    return given;
  }
  /// The name of a new item of another kind, or null; all present ones get theirs when it is the
  /// first.
  template <class Item>
  const char* some_name(std::vector<Item>& items, char letter, bool& named, std::string& stored) {
    const char* const name = chance(4) ? some_text(below(4)) : nullptr;
    if (name != nullptr && !named) {
      named = true;
      for (std::size_t k = 0; k < items.size(); ++k) {
        items[k].name = letter + std::to_string(k + 1);
      }
    }
    if (named) stored = name != nullptr ? name : letter + std::to_string(items.size() + 1);
    return name;
  }

  // --- The type as it follows from what is there ---

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

  // --- Rows and columns ---

  std::string some_senses(int count) {
    std::string senses;
    for (int k = 0; k < count; ++k) senses += "LEGR"[below(4)];
    return senses;
  }
  void note_rows(int count, const std::vector<double>& rhs, const std::string& senses,
                 const std::vector<double>& ranges) {
    const bool ranged = senses.find('R') != std::string::npos || !expected.rngval.empty();
    if (ranged) expected.rngval.resize(m() + count, 0.0);
    for (int k = 0; k < count; ++k) {
      if (senses[k] == 'R' && !ranges.empty()) expected.rngval[m()] = ranges[k];
      expected.rhs.push_back(rhs[k]);
      expected.senses.push_back(senses[k]);
    }
  }
  void note_columns(int count, const std::vector<double>& obj, double upper) {
    expected.obj.insert(expected.obj.end(), obj.begin(), obj.begin() + count);
    expected.lb.insert(expected.lb.end(), count, 0.0);
    expected.ub.insert(expected.ub.end(), count, upper);
    if (is_integer()) expected.types.resize(n(), 'C');
  }

  void new_rows() {
    const int count = chance(2) ? 1 : below(4);
    const std::vector<double> rhs = some_numbers(count), ranges = some_numbers(count);
    const std::string senses = some_senses(count);
    const auto names = names_for(true, count);
    EXPECT_EQ(KLVnewrows(env, lp, count, rhs.data(), senses.data(), ranges.data(), names.data()),
              0);
    note_rows(count, rhs, senses, ranges);
  }
  void new_columns() {
    const int count = 1 + below(4);
    const std::vector<double> obj = some_numbers(count), upper(count, 20.0);
    std::string types;
    for (int k = 0; k < count; ++k) types += "CBISN"[below(5)];
    const bool typed = chance(4);
    const auto names = names_for(false, count);
    EXPECT_EQ(KLVnewcols(env, lp, count, obj.data(), nullptr, upper.data(),
                         typed ? types.data() : nullptr, names.data()),
              0);
    if (typed) make_integer();
    note_columns(count, obj, 20.0);
    if (typed) expected.types.replace(n() - count, count, types);
  }
  void add_rows() {
    const int count = chance(2) ? 1 : below(6), columns = chance(3) ? below(3) : 0;
    const std::vector<Terms> terms = some_lines(count, n() + columns);
    const Lines lines = as_lines(terms);
    const std::vector<double> rhs = some_numbers(count);
    const std::string senses = some_senses(count);
    const auto col_names = names_for(false, columns), row_names = names_for(true, count);
    EXPECT_EQ(KLVaddrows(env, lp, columns, count, lines.size, rhs.data(), senses.data(),
                         lines.begin.data(), lines.index.data(), lines.value.data(),
                         col_names.data(), row_names.data()),
              0);
    for (int k = 0; k < count; ++k) {
      for (const auto& [j, v] : terms[k]) expected.entries[{m() + k, j}] = v;
    }
    note_columns(columns, std::vector<double>(columns, 0.0), 1e20);
    note_rows(count, rhs, senses, {});
  }
  void add_columns() {
    const int count = below(3);
    const std::vector<Terms> terms = some_lines(count, m());
    const Lines lines = as_lines(terms);
    const std::vector<double> obj = some_numbers(count);
    const auto names = names_for(false, count);
    EXPECT_EQ(KLVaddcols(env, lp, count, lines.size, obj.data(), lines.begin.data(),
                         lines.index.data(), lines.value.data(), nullptr, nullptr, names.data()),
              0);
    for (int k = 0; k < count; ++k) {
      for (const auto& [i, v] : terms[k]) expected.entries[{i, n() + k}] = v;
    }
    note_columns(count, obj, 1e20);
  }

  template <class Map, class Place>
  static void note_entry(Map& entries, Place place, double v) {
    if (v == 0.0) {
      entries.erase(place);
    } else {
      entries[place] = v;
    }
  }
  void change_one() {
    if (m() == 0) return;
    const int i = below(m()), j = below(n()), kind = below(4);
    const double v = chance(3) ? 0.0 : number();
    EXPECT_EQ(KLVchgcoef(env, lp, kind == 0 ? -1 : i, kind == 1 ? -1 : j, v), 0);
    if (kind == 0) {
      expected.obj[j] = v;
    } else if (kind == 1) {
      expected.rhs[i] = v;
    } else {
      note_entry(expected.entries, std::pair(i, j), v);
    }
  }
  void change_list() {
    if (m() == 0) return;
    std::vector<int> rows, cols;
    std::vector<double> values;
    for (int k = below(40); k >= 0; --k) {
      rows.push_back(below(m()));
      cols.push_back(below(std::min(n(), 4)));
      values.push_back(chance(3) ? 0.0 : number());
      note_entry(expected.entries, std::pair(rows.back(), cols.back()), values.back());
    }
    EXPECT_EQ(KLVchgcoeflist(env, lp, static_cast<int>(rows.size()), rows.data(), cols.data(),
                             values.data()),
              0);
  }
  void change_vectors() {
    if (m() == 0) return;
    const int i = below(m()), j = below(n());
    const double v = number();
    const char sense = "LEGR"[below(4)];
    EXPECT_EQ(KLVchgbds(env, lp, 1, &j, "L", &v), 0);
    expected.lb[j] = v;
    EXPECT_EQ(KLVchgsense(env, lp, 1, &i, &sense), 0);
    expected.senses[i] = sense;
    if (sense == 'R') {
      EXPECT_EQ(KLVchgrngval(env, lp, 1, &i, &v), 0);
      expected.rngval.resize(m(), 0.0);
      expected.rngval[i] = v;
    } else if (!expected.rngval.empty()) {
      expected.rngval[i] = 0.0;
    }
  }
  void rename() {
    if (m() == 0 || !seed_names_) return;
    const int i = below(m());
    EXPECT_EQ(KLVchgname(env, lp, 'r', i, "renamed row"), 0);
    rows_named_ = true;
    std::vector<std::string>& names = expected.row_names;
    for (int k = static_cast<int>(names.size()); k < m(); ++k) {
      names.push_back("c" + std::to_string(k + 1));
    }
    names[i] = "renamed row";
    int index = -1;
    EXPECT_EQ(KLVgetrowindex(env, lp, "renamed row", &index), 0);
    EXPECT_EQ(index, std::find(names.begin(), names.end(), "renamed row") - names.begin());
  }

  // --- Deleting: place[k] is the new index of k or negative ---

  template <class Container>
  static void keep(Container& values, const std::vector<int>& place) {
    std::size_t kept = 0;
    for (std::size_t k = 0; k < values.size(); ++k) {
      if (place[k] >= 0) values[kept++] = values[k];
    }
    values.resize(kept);
  }
  /// Keeps and renumbers the items for which renumber(item) is true.
  template <class Item, class Renumber>
  static void renumber_all(std::vector<Item>& items, Renumber renumber) {
    items.erase(std::remove_if(items.begin(), items.end(), [&](Item& i) { return !renumber(i); }),
                items.end());
  }
  template <class Map, class NewPlace>
  static void renumber_map(Map& entries, NewPlace new_place) {
    Map old;
    old.swap(entries);
    for (const auto& [place, v] : old) {
      const auto to = new_place(place);
      if (to.first >= 0 && to.second >= 0) entries[to] = v;
    }
  }

  void delete_rows() {
    if (!chance(3)) return;
    std::vector<int> place(m() + 1);
    for (int& mark : place) mark = chance(5);
    EXPECT_EQ(KLVdelsetrows(env, lp, place.data()), 0);
    renumber_map(expected.entries, [&](auto at) { return std::pair(place[at.first], at.second); });
    keep(expected.rhs, place);
    keep(expected.senses, place);
    keep(expected.rngval, place);
    keep(expected.row_names, place);
  }
  void delete_columns() {
    if (!chance(3)) return;
    std::vector<int> place(n());
    for (int j = 1; j < n(); ++j) place[j] = chance(5);
    if (std::count(place.begin(), place.end(), 1) > 0) expected.cuts = expected.lazy = 0;
    EXPECT_EQ(KLVdelsetcols(env, lp, place.data()), 0);
    renumber_map(expected.entries, [&](auto at) { return std::pair(at.first, place[at.second]); });
    renumber_map(expected.q, [&](auto at) { return std::pair(place[at.first], place[at.second]); });
    keep(expected.obj, place);
    keep(expected.lb, place);
    keep(expected.ub, place);
    keep(expected.col_names, place);
    keep(expected.types, place);
    const auto moved = [&](int& j) { return (j = place[j]) >= 0; };
    const auto first_moved = [&](auto& item) { return moved(std::get<0>(item)); };
    for (SetImage& set : expected.sets) renumber_all(set.members, first_moved);
    renumber_all(expected.indicators, [&](IndicatorImage& row) {
      renumber_all(row.row, first_moved);
      return moved(row.column);
    });
    for (QuadraticImage& row : expected.quadratics) {
      renumber_all(row.linear, first_moved);
      renumber_all(row.terms, [&](auto& term) {
        const bool second = moved(std::get<1>(term));
        return first_moved(term) && second;
      });
    }
    renumber_all(expected.order, first_moved);
  }

  // --- The other kinds of data ---

  void change_types() {
    if (!is_integer() && !chance(3)) return;
    make_integer();
    const int column = below(n());
    const char type = "CBISN"[below(5)];
    EXPECT_EQ(KLVchgctype(env, lp, 1, &column, &type), 0);
    expected.types[column] = type;
    if (!chance(3)) return;
    std::shuffle(expected.types.begin(), expected.types.end(), random_);
    EXPECT_EQ(KLVcopyctype(env, lp, expected.types.data()), 0);
  }

  void add_sets() {
    const bool replace = chance(3);
    if (replace) {
      expected.sets.clear();
      sets_named_ = false;
    }
    const int count = 1 + below(2);
    std::vector<Terms> terms;
    std::string types;
    std::vector<const char*> given(2);
    for (int k = 0; k < count; ++k) {
      SetImage set{"12"[below(2)], some_terms(n()), ""};
      double weight = 0;
      for (auto& member : set.members) member.second = ++weight;
      terms.push_back(set.members);
      types += set.type;
      given[k] = some_name(expected.sets, 's', sets_named_, set.name);
      expected.sets.push_back(set);
    }
    const Lines lines = as_lines(terms);
    EXPECT_EQ((replace ? KLVcopysos : KLVaddsos)(env, lp, count, lines.size, types.data(),
                                                 lines.begin.data(), lines.index.data(),
                                                 lines.value.data(), given.data()),
              0);
    make_integer();
  }
  void delete_sets() {
    if (expected.sets.empty()) return;
    std::vector<int> place(expected.sets.size());
    for (int& mark : place) mark = chance(3);
    EXPECT_EQ(KLVdelsetsos(env, lp, place.data()), 0);
    keep(expected.sets, place);
  }
  template <class Item, class Delete>
  void delete_range(std::vector<Item>& items, Delete del) {
    if (items.empty()) return;
    const int begin = below(items.size());
    const int end = std::min(begin + below(2), static_cast<int>(items.size()) - 1);
    EXPECT_EQ(del(env, lp, begin, end), 0);
    items.erase(items.begin() + begin, items.begin() + end + 1);
  }
  void delete_indicator() { delete_range(expected.indicators, KLVdelindconstrs); }
  void delete_quadratic() { delete_range(expected.quadratics, KLVdelqconstrs); }

  void add_indicator() {
    IndicatorImage row{below(n()), below(2), number(), "LEG"[below(3)], some_terms(n()), ""};
    const char* const name = some_name(expected.indicators, 'i', indicators_named_, row.name);
    const Lines lines = as_lines({row.row});
    EXPECT_EQ(KLVaddindconstr(env, lp, row.column, row.complemented, lines.size, row.rhs, row.sense,
                              lines.index.data(), lines.value.data(), name),
              0);
    expected.indicators.push_back(row);
    make_integer();
  }
  void add_quadratic() {
    QuadraticImage row{number(), "LEG" [below(3)], some_terms(n()), {}, ""};
    std::vector<int> first, second;
    std::vector<double> value;
    for (int k = below(5); k > 0; --k) {
      row.terms.push_back({below(n()), below(n()), number()});
      first.push_back(std::get<0>(row.terms.back()));
      second.push_back(std::get<1>(row.terms.back()));
      value.push_back(std::get<2>(row.terms.back()));
    }
    const int terms = static_cast<int>(value.size());
    first.push_back(0), second.push_back(0), value.push_back(0);
    const char* const name = some_name(expected.quadratics, 'q', quadratics_named_, row.name);
    const Lines lines = as_lines({row.linear});
    EXPECT_EQ(KLVaddqconstr(env, lp, lines.size, terms, row.rhs, row.sense, lines.index.data(),
                            lines.value.data(), first.data(), second.data(), value.data(), name),
              0);
    expected.quadratics.push_back(row);
    if (expected.type < 10) expected.type = is_integer() ? 11 : 10;
  }

  void copy_quadratic() {
    expected.q.clear();
    make_quadratic();
    if (chance(2)) {
      std::vector<double> diagonal(n());
      for (int j = 0; j < n(); ++j) {
        diagonal[j] = chance(2) ? number() : 0.0;
        if (diagonal[j] != 0.0) expected.q[{j, j}] = diagonal[j];
      }
      EXPECT_EQ(KLVcopyqpsep(env, lp, diagonal.data()), 0);
      return;
    }
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
  }
  void change_q() {
    const int i = below(n()), j = below(std::min(n(), 3));
    const double v = chance(3) ? 0.0 : number();
    EXPECT_EQ(KLVchgqpcoef(env, lp, i, j, v), 0);
    note_entry(expected.q, std::pair(i, j), v);
    note_entry(expected.q, std::pair(j, i), v);
    make_quadratic();
  }
  void copy_order() {
    if (!is_integer()) return;
    expected.order.clear();
    std::vector<int> columns(1), priorities(1), directions(1);
    for (const auto& [j, v] : some_terms(n())) {
      expected.order.push_back({j, static_cast<int>(v), below(3) - 1});
      columns.push_back(j);
      priorities.push_back(static_cast<int>(v));
      directions.push_back(std::get<2>(expected.order.back()));
    }
    // The first place of a column given twice counts, with the last numbers.
    if (columns.size() > 2) {
      columns[0] = columns[1];
      priorities[0] = directions[0] = 1;
    } else {
      columns.erase(columns.begin()), priorities.erase(priorities.begin());
      directions.erase(directions.begin());
    }
    EXPECT_EQ(KLVcopyorder(env, lp, static_cast<int>(columns.size()), columns.data(),
                           priorities.data(), directions.data()),
              0);
  }
  void change_cuts() {
    const bool lazy = chance(2);
    int& count = lazy ? expected.lazy : expected.cuts;
    if (chance(4)) {
      EXPECT_EQ((lazy ? KLVfreelazyconstraints : KLVfreeusercuts)(env, lp), 0);
      count = 0;
      return;
    }
    const Lines lines = as_lines({some_terms(n())});
    EXPECT_EQ((lazy ? KLVaddlazyconstraints : KLVaddusercuts)(
                  env, lp, 1, lines.size, nullptr, nullptr, lines.begin.data(), lines.index.data(),
                  lines.value.data(), nullptr),
              0);
    ++count;
    make_integer();
  }

  /// Another type, or a copy in the place of the problem.
  void change_problem() {
    if (!chance(4)) {
      int status = -1;
      KLVprob copy = KLVcloneprob(env, lp, &status);
      ASSERT_EQ(status, 0);
      EXPECT_EQ(KLVfreeprob(env, &lp), 0);
      lp = copy;
      return;
    }
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

  KLVenv env;
  KLVprob lp = nullptr;
  std::mt19937 random_;
  const bool seed_names_ = random_() % 3 == 0;
  bool rows_named_ = false, columns_named_ = false;
  bool sets_named_ = false, indicators_named_ = false, quadratics_named_ = false;
};

TEST_F(EnvironmentTest, RandomEditsAgreeWithAPlainModel) {
  for (unsigned seed = 1; seed <= 100; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    RandomEdits edits(env, seed);
    // Reading after every step merges at once; reading rarely lets additions wait.
    const unsigned read_every = 1 + seed % 5;
    for (unsigned step = 0; step < 150; ++step) {
      edits.step();
      if (step % read_every != 0) continue;
      const ModelImage now = read_model(env, edits.problem());
      ASSERT_EQ(now.entries, edits.expected.entries) << "step " << step;
      ASSERT_EQ(now.q, edits.expected.q) << "step " << step;
      ASSERT_EQ(now.order, edits.expected.order) << "step " << step;
      ASSERT_EQ(now.col_names, edits.expected.col_names) << "step " << step;
      ASSERT_EQ(now, edits.expected) << "step " << step;
    }
  }
}

}  // namespace
