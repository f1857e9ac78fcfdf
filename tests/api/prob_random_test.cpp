// Random sequences of edits against a plain model kept by the test: additions that wait and
// additions that were merged, in every order, must give the same answers.
#include <algorithm>
#include <random>

#include "prob_fixture.h"

namespace {

class RandomModel {
 public:
  RandomModel(KLVenv e, KLVprob p, unsigned seed) : env(e), lp(p), random_(seed) {
    expected.sense = 1;
  }

  void step() {
    switch (below(13)) {
      case 0:
        new_rows(1);
        break;
      case 1:
        new_rows(below(4));
        break;
      case 2:
        new_columns();
        break;
      case 3:
        add_rows(1);
        break;
      case 4:
        add_rows(below(6));
        break;
      case 5:
        add_columns();
        break;
      case 6:
        change_one();
        break;
      case 7:
        change_list();
        break;
      case 8:
        change_vectors();
        break;
      case 9:
        below(3) == 0 ? rename() : change_one();
        break;
      case 10:
        below(3) == 0 ? delete_marked(true) : change_one();
        break;
      case 11:
        below(3) == 0 ? delete_marked(false) : change_one();
        break;
      default:
        change_one();
        break;
    }
    EXPECT_EQ(KLVgetnumrows(env, lp), m());
    EXPECT_EQ(KLVgetnumcols(env, lp), n());
    EXPECT_EQ(KLVgetnumnz(env, lp), static_cast<int>(expected.entries.size()));
  }

  ModelImage expected;

 private:
  int m() const { return static_cast<int>(expected.rhs.size()); }
  int n() const { return static_cast<int>(expected.obj.size()); }
  int below(int k) { return k <= 0 ? 0 : static_cast<int>(random_() % k); }
  double number() { return 1.0 + below(100); }
  std::vector<double> numbers(int k) {
    std::vector<double> values(k);
    for (double& v : values) v = number();
    return values;
  }

  /// Names for `count` new items, some missing or none at all, and what the model must then hold.
  std::vector<const char*> names_for(std::vector<std::string>& names, char letter, int old_count,
                                     int count) {
    static const char* const kTexts[] = {"alpha", "b", "a name that is rather long", "b"};
    std::vector<const char*> given(count + 1, nullptr);
    bool any = false;
    if (below(3) == 0) {
      for (int k = 0; k < count; ++k) {
        if (below(2) == 0) given[k] = kTexts[below(4)];
        any = any || given[k] != nullptr;
      }
    }
    bool& named = letter == 'c' ? rows_named_ : columns_named_;
    named = named || any;
    if (!named) return {};
    for (int k = static_cast<int>(names.size()); k < old_count + count; ++k) {
      const char* name = k < old_count ? nullptr : given[k - old_count];
      names.push_back(name != nullptr ? name : letter + std::to_string(k + 1));
    }
    if (!any) return {};
    return given;
  }
  static const char* const* data(const std::vector<const char*>& names) {
    return names.empty() ? nullptr : names.data();
  }

  void note_rows(const std::vector<double>& rhs, const std::string& senses,
                 const std::vector<double>& ranges) {
    const bool ranged = senses.find('R') != std::string::npos;
    if (ranged && expected.rngval.empty()) expected.rngval.assign(m(), 0.0);
    for (std::size_t k = 0; k < rhs.size(); ++k) {
      expected.rhs.push_back(rhs[k]);
      expected.senses.push_back(senses[k]);
      const bool has_range = senses[k] == 'R' && !ranges.empty();
      if (!expected.rngval.empty() || ranged) expected.rngval.push_back(has_range ? ranges[k] : 0);
    }
  }
  std::string some_senses(int count) {
    std::string senses;
    for (int k = 0; k < count; ++k) senses += "LEGR"[below(4)];
    return senses;
  }

  void new_rows(int count) {
    const std::vector<double> rhs = numbers(count), ranges = numbers(count);
    const std::string senses = some_senses(count);
    const auto names = names_for(expected.row_names, 'c', m(), count);
    EXPECT_EQ(KLVnewrows(env, lp, count, rhs.data(), senses.data(), ranges.data(), data(names)), 0);
    note_rows(rhs, senses, ranges);
  }

  void note_columns(int count, const std::vector<double>& obj) {
    expected.obj.insert(expected.obj.end(), obj.begin(), obj.end());
    expected.lb.insert(expected.lb.end(), count, 0.0);
    expected.ub.insert(expected.ub.end(), count, 1e20);
  }

  void new_columns() {
    const int count = below(4);
    const std::vector<double> obj = numbers(count);
    const auto names = names_for(expected.col_names, 'x', n(), count);
    EXPECT_EQ(KLVnewcols(env, lp, count, obj.data(), nullptr, nullptr, nullptr, data(names)), 0);
    note_columns(count, obj);
  }

  /// `lines` random lines over `width` places.
  struct Lines {
    std::vector<int> begin, index;
    std::vector<double> value;
    int size() const { return static_cast<int>(index.size()); }
  };
  Lines some_lines(int lines, int width) {
    Lines result;
    for (int k = 0; k < lines; ++k) {
      result.begin.push_back(result.size());
      std::vector<int> places;
      for (int i = 0; i < width; ++i) {
        if (below(4) == 0) places.push_back(i);
      }
      if (below(2) == 0) std::shuffle(places.begin(), places.end(), random_);
      for (const int i : places) {
        result.index.push_back(i);
        result.value.push_back(number());
      }
    }
    return result;
  }
  template <class Visit>
  static void visit(const Lines& lines, Visit visit_entry) {
    for (std::size_t k = 0; k < lines.begin.size(); ++k) {
      const int to = k + 1 < lines.begin.size() ? lines.begin[k + 1] : lines.size();
      for (int p = lines.begin[k]; p < to; ++p) {
        visit_entry(static_cast<int>(k), lines.index[p], lines.value[p]);
      }
    }
  }

  void add_rows(int count) {
    const int columns = below(3) == 0 ? below(3) : 0;
    const Lines lines = some_lines(count, n() + columns);
    const std::vector<double> rhs = numbers(count);
    const std::string senses = some_senses(count);
    const auto col_names = names_for(expected.col_names, 'x', n(), columns);
    const auto row_names = names_for(expected.row_names, 'c', m(), count);
    EXPECT_EQ(KLVaddrows(env, lp, columns, count, lines.size(), rhs.data(), senses.data(),
                         lines.begin.data(), lines.index.data(), lines.value.data(),
                         data(col_names), data(row_names)),
              0);
    visit(lines, [&](int k, int j, double v) { expected.entries[{m() + k, j}] = v; });
    note_columns(columns, std::vector<double>(columns, 0.0));
    note_rows(rhs, senses, {});
  }

  void add_columns() {
    const int count = below(3);
    const Lines lines = some_lines(count, m());
    const std::vector<double> obj = numbers(count);
    const auto names = names_for(expected.col_names, 'x', n(), count);
    EXPECT_EQ(KLVaddcols(env, lp, count, lines.size(), obj.data(), lines.begin.data(),
                         lines.index.data(), lines.value.data(), nullptr, nullptr, data(names)),
              0);
    visit(lines, [&](int k, int i, double v) { expected.entries[{i, n() + k}] = v; });
    note_columns(count, obj);
  }

  void note_entry(int i, int j, double v) {
    if (v == 0.0) {
      expected.entries.erase({i, j});
    } else {
      expected.entries[{i, j}] = v;
    }
  }

  void change_one() {
    if (m() == 0 || n() == 0) return;
    const int i = below(m());
    const int j = below(n());
    const double v = below(3) == 0 ? 0.0 : number();
    switch (below(4)) {
      case 0:
        EXPECT_EQ(KLVchgcoef(env, lp, -1, j, v), 0);
        expected.obj[j] = v;
        break;
      case 1:
        EXPECT_EQ(KLVchgcoef(env, lp, i, -1, v), 0);
        expected.rhs[i] = v;
        break;
      default:
        EXPECT_EQ(KLVchgcoef(env, lp, i, j, v), 0);
        note_entry(i, j, v);
        break;
    }
  }

  void change_list() {
    if (m() == 0 || n() == 0) return;
    std::vector<int> rows, cols;
    std::vector<double> values;
    for (int k = below(40); k >= 0; --k) {
      rows.push_back(below(m()));
      cols.push_back(below(std::min(n(), 4)));
      values.push_back(below(3) == 0 ? 0.0 : number());
      note_entry(rows.back(), cols.back(), values.back());
    }
    EXPECT_EQ(KLVchgcoeflist(env, lp, static_cast<int>(rows.size()), rows.data(), cols.data(),
                             values.data()),
              0);
  }

  void change_vectors() {
    if (m() == 0 || n() == 0) return;
    const int i = below(m());
    const int j = below(n());
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
    if (m() == 0) return;
    const int i = below(m());
    EXPECT_EQ(KLVchgname(env, lp, 'r', i, "renamed row"), 0);
    rows_named_ = true;
    for (int k = static_cast<int>(expected.row_names.size()); k < m(); ++k) {
      expected.row_names.push_back("c" + std::to_string(k + 1));
    }
    expected.row_names[i] = "renamed row";
    int index = -1;
    EXPECT_EQ(KLVgetrowindex(env, lp, "renamed row", &index), 0);
    const auto first =
        std::find(expected.row_names.begin(), expected.row_names.end(), "renamed row");
    EXPECT_EQ(index, first - expected.row_names.begin());
  }

  template <class Container>
  static void keep(Container& values, const std::vector<int>& marks) {
    std::size_t kept = 0;
    for (std::size_t k = 0; k < values.size(); ++k) {
      if (marks[k] >= 0) values[kept++] = values[k];
    }
    values.resize(kept);
  }

  void delete_marked(bool rows) {
    std::vector<int> marks(rows ? m() : n());
    for (int& mark : marks) mark = below(5) == 0 ? 1 : 0;
    marks.push_back(0);
    EXPECT_EQ((rows ? KLVdelsetrows : KLVdelsetcols)(env, lp, marks.data()), 0);
    decltype(expected.entries) old;
    old.swap(expected.entries);
    for (const auto& [place, v] : old) {
      const int i = rows ? marks[place.first] : place.first;
      const int j = rows ? place.second : marks[place.second];
      if (i >= 0 && j >= 0) expected.entries[{i, j}] = v;
    }
    if (rows) {
      keep(expected.rhs, marks);
      keep(expected.senses, marks);
      keep(expected.rngval, marks);
      keep(expected.row_names, marks);
    } else {
      keep(expected.obj, marks);
      keep(expected.lb, marks);
      keep(expected.ub, marks);
      keep(expected.col_names, marks);
    }
  }

  KLVenv env;
  KLVprob lp;
  std::mt19937 random_;
  // A problem that has names keeps having them, even when it has no rows for a while.
  bool rows_named_ = false;
  bool columns_named_ = false;
};

TEST_F(ProblemTest, RandomEditsAgreeWithAPlainModel) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    int status = 0;
    KLVprob fresh = KLVcreateprob(env, &status, "random");
    RandomModel model(env, fresh, seed);
    // Reading after every step merges at once; reading rarely lets additions wait.
    const unsigned read_every = 1 + seed % 5;
    for (unsigned step = 0; step < 120; ++step) {
      model.step();
      if (step % read_every != 0) continue;
      const ModelImage now = read_model(env, fresh);
      ASSERT_EQ(now.entries, model.expected.entries) << "step " << step;
      ASSERT_EQ(now.senses, model.expected.senses) << "step " << step;
      ASSERT_EQ(now.rngval, model.expected.rngval) << "step " << step;
      ASSERT_EQ(now.row_names, model.expected.row_names) << "step " << step;
      ASSERT_EQ(now.col_names, model.expected.col_names) << "step " << step;
      ASSERT_TRUE(now == model.expected) << "step " << step;
    }
    EXPECT_EQ(KLVfreeprob(env, &fresh), 0);
  }
}

}  // namespace
