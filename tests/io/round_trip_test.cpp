// Generated models with every kind of data, written as LP and as MPS, read back to the same model,
// and written again give the same file.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "base/random.h"
#include "io/lp_format/lp_writer.h"
#include "io/lp_format/reader/lp_reader.h"
#include "io/model_description.h"
#include "io/mps/mps_reader.h"
#include "io/mps/mps_writer.h"
#include "io/written.h"
#include "support/recording_sink.h"

namespace kelvo {
namespace {

using test::written;

using test::Description;
using test::difference;
using test::Format;

std::string write(const Model& model, Format format, MessageSink& sink) {
  return written([&](FileStream& stream) {
    // With every column in the objective the LP reader meets the columns in their order.
    return format == Format::lp ? write_lp(model, {false, true, true}, sink, stream)
                                : write_mps(model, {}, sink, stream);
  });
}

Status read(const std::string& text, Format format, MessageSink& sink, Model& model) {
  LineReader lines{std::string_view(text)};
  return format == Format::lp ? LpReader(lines, {}, sink).read(model)
                              : read_mps(lines, {}, sink, model);
}

// --- Models --------------------------------------------------------------------------------------

/// Names that have a meaning somewhere in a file, all of them legal. (The letter e does not begin
/// one in an LP file.)
const char* const kAwkwardNames[] = {
    "st",       "st.",      "s.t.",   "subject",  "such", "user",  "lazy",  "bounds", "fr",
    "min",      "max",      "free",   "inf1",     "RHS",  "rhs",   "bnd",   "rng",    "obj",
    "S1",       "S2",       "UP",     "FR",       "MARK", "#x(1)", "a$b",   "x,y",    "Rgcap",
    "Rgst",     "x1",       "c1",     "bin",      "gen",  "semi",  "semis", "sos",    "int",
    "integers", "to",       "that",   "generals", "q1",   "i1",    "u1",    "l1",     "s1",
    "N",        "minimize", "binary", "ints",     "I",    "NAME",  "boun",  "xfree"};
constexpr int kNumAwkward = sizeof(kAwkwardNames) / sizeof(*kAwkwardNames);

class Generator {
 public:
  explicit Generator(std::uint64_t seed) : random_(seed) {}

  Model model() {
    Model model;
    model.name = "generated";
    model.sense = chance(2) ? 1 : -1;
    model.has_objective_name = true;
    model.objective_name = chance(4) ? "usercut" : "obj";
    model.num_cols = 1 + random_.below(30);
    model.num_rows = random_.below(20);
    give_names(model.col_names, model.num_cols, "col");
    give_names(model.row_names, model.num_rows, "row");
    add_columns(model);
    add_rows(model);
    if (chance(2)) add_quadratic(model);
    if (chance(2)) add_quadratic_constraints(model);
    if (chance(2)) add_indicators(model);
    if (chance(2)) add_extra(model, model.user_cuts, "ucut");
    if (chance(2)) add_extra(model, model.lazy_constraints, "lcon");
    if (chance(2)) add_sets(model);
    return model;
  }

 private:
  bool chance(int n) { return random_.below(n) == 0; }

  /// Different names; all kinds of rows take theirs from one set.
  void give_names(NameStore& names, int count, const char* stem) {
    std::set<std::string>& used = std::string(stem) == "col" ? columns_used_ : rows_used_;
    names.create();
    while (names.size() < count) {
      std::string name = chance(2) ? kAwkwardNames[random_.below(kNumAwkward)]
                                   : stem + std::to_string(names.size());
      if (chance(9)) name += std::string(1 + random_.below(60), 'z');
      if (name == "obj" || name == "usercut" || !used.insert(name).second) continue;
      names.append(name);
    }
  }

  /// A number of at most 15 digits.
  double number() {
    switch (random_.below(4)) {
      case 0:
        return 1 + random_.below(9);
      case 1:
        return 0.25 * (1 + random_.below(4000));
      case 2:
        return rounded(1.0 / (3 + random_.below(1000)), 15);
      default: {
        const double mantissa = 1.0 + 9.0 * random_.uniform() + random_.uniform() / 32768;
        return rounded(mantissa * std::pow(10.0, random_.below(40) - 20), 15);
      }
    }
  }
  static double rounded(double x, int digits) {
    char text[40];
    std::snprintf(text, sizeof text, "%.*e", digits - 1, x);
    return std::strtod(text, nullptr);
  }
  double signed_number() { return chance(2) ? -number() : number(); }

  void add_columns(Model& model) {
    const bool typed = chance(2);
    for (int j = 0; j < model.num_cols; ++j) {
      model.objective.push_back(chance(2) ? signed_number() : 0.0);
      const char type = typed ? "CCBISN"[random_.below(6)] : 'C';
      double lower = 0.0, upper = 1e20;
      if (type == 'B') {
        upper = 1.0;
        if (chance(4)) lower = upper = random_.below(2);
      } else if (type == 'I') {
        if (chance(2)) lower = random_.below(20) - 10;
        if (chance(2)) upper = lower + random_.below(9);
        if (chance(5)) lower = -1e20;
      } else if (type == 'S' || type == 'N') {
        upper = 1 + random_.below(100);
        if (chance(3)) lower = type == 'N' ? 1.0 : 0.5;
        if (chance(5)) upper = 1e20;
      } else {
        add_bounds(lower, upper);
      }
      model.lower.push_back(lower);
      model.upper.push_back(upper);
      if (typed) model.column_type.push_back(type);
    }
    // A file without types reads back to a model without them.
    if (std::count(model.column_type.begin(), model.column_type.end(), 'C') == model.num_cols) {
      model.column_type.clear();
    }
  }

  void add_bounds(double& lower, double& upper) {
    if (chance(2)) lower = random_.below(100) - 50.25;
    if (chance(2)) upper = lower + random_.below(100);
    if (chance(4)) lower = -1e20;
    if (chance(9)) upper = -random_.below(5);
    if (lower > upper) lower = -1e20;
  }

  /// `count` different columns.
  std::vector<int> some_columns(const Model& model, int count) {
    std::set<int> chosen;
    while (static_cast<int>(chosen.size()) < std::min(count, model.num_cols)) {
      chosen.insert(random_.below(model.num_cols));
    }
    return {chosen.begin(), chosen.end()};
  }

  void add_rows(Model& model) {
    SparseMatrix rows;
    rows.num_minor = model.num_cols;
    for (int i = 0; i < model.num_rows; ++i) {
      const char sense = "LGER"[random_.below(4)];
      model.row_sense.push_back(sense);
      model.rhs.push_back(chance(3) ? 0.0 : signed_number());
      if (sense == 'R' && model.range.empty()) model.range.assign(model.num_rows, 0.0);
      if (sense == 'R') model.range[i] = 0.25 * (random_.below(4000) - 2000);
      for (const int j : some_columns(model, chance(8) ? 0 : random_.below(12))) {
        rows.index.push_back(j);
        rows.value.push_back(chance(3) ? 1.0 : signed_number());
      }
      rows.start.push_back(static_cast<int>(rows.index.size()));
      ++rows.num_major;
    }
    model.matrix.assign(transpose(rows));
  }

  void add_quadratic(Model& model) {
    SparseMatrix q;
    q.num_minor = model.num_cols;
    std::vector<std::vector<double>> full(model.num_cols, std::vector<double>(model.num_cols));
    for (const int i : some_columns(model, 4)) {
      for (const int j : some_columns(model, 3)) {
        full[i][j] = full[j][i] = rounded(signed_number(), 14);  // twice it has 15 digits
      }
    }
    for (int j = 0; j < model.num_cols; ++j) {
      for (int i = 0; i < model.num_cols; ++i) {
        if (full[i][j] == 0.0) continue;
        q.index.push_back(i);
        q.value.push_back(full[i][j]);
      }
      q.start.push_back(static_cast<int>(q.index.size()));
      ++q.num_major;
    }
    model.quadratic = std::move(q);
  }

  void add_quadratic_constraints(Model& model) {
    const int count = 1 + random_.below(3);
    give_names(model.quadratic_names, count, "quad");
    for (int k = 0; k < count; ++k) {
      QuadraticConstraint row;
      row.rhs = signed_number();
      row.sense = "LGE"[random_.below(3)];
      for (const int j : some_columns(model, random_.below(9))) {
        row.linear_index.push_back(j);
        row.linear_value.push_back(signed_number());
      }
      for (const int i : some_columns(model, 1 + random_.below(4))) {
        for (const int j : some_columns(model, 1 + random_.below(3))) {
          row.quad_row.push_back(i);
          row.quad_col.push_back(j);
          row.quad_value.push_back(chance(2) ? 1.0 : signed_number());
        }
      }
      model.quadratic_constraints.push_back(std::move(row));
    }
  }

  void add_extra(Model& model, ExtraRows& extra, const char* stem) {
    const int count = 1 + random_.below(4);
    give_names(extra.names, count, stem);
    extra.rows.num_minor = model.num_cols;
    for (int k = 0; k < count; ++k) {
      extra.rhs.push_back(chance(3) ? 0.0 : signed_number());
      extra.sense.push_back("LGE"[random_.below(3)]);
      for (const int j : some_columns(model, 1 + random_.below(12))) {
        extra.rows.index.push_back(j);
        extra.rows.value.push_back(chance(2) ? 1.0 : signed_number());
      }
      extra.rows.start.push_back(static_cast<int>(extra.rows.index.size()));
      ++extra.rows.num_major;
    }
  }

  void add_indicators(Model& model) {
    std::vector<int> binaries;
    for (int j = 0; j < static_cast<int>(model.column_type.size()); ++j) {
      if (model.column_type[j] == 'B') binaries.push_back(j);
    }
    if (binaries.empty()) return;
    add_extra(model, model.indicators.rows, "ind");
    for (int k = 0; k < model.indicators.rows.size(); ++k) {
      model.indicators.column.push_back(binaries[random_.below(static_cast<int>(binaries.size()))]);
      model.indicators.complemented.push_back(chance(2) ? 1 : 0);
      model.indicators.relation.push_back(chance(4) ? 3 : 1);
    }
  }

  void add_sets(Model& model) {
    const int count = 1 + random_.below(3);
    give_names(model.sos.names, count, "set");
    model.sos.members.num_minor = model.num_cols;
    for (int k = 0; k < count; ++k) {
      model.sos.type.push_back(chance(2) ? '1' : '2');
      double weight = signed_number();
      for (const int j : some_columns(model, 1 + random_.below(10))) {
        model.sos.members.index.push_back(j);
        model.sos.members.value.push_back(weight);
        weight = weight * (weight > 0 ? 1.5 : 0.5) + 1;
      }
      model.sos.members.start.push_back(static_cast<int>(model.sos.members.index.size()));
      ++model.sos.members.num_major;
    }
  }

  Random random_;
  std::set<std::string> columns_used_, rows_used_;
};

// --- The property --------------------------------------------------------------------------------

void check_round_trip(Format format, int first_seed, int seeds) {
  for (int seed = first_seed; seed < first_seed + seeds && !::testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const Model model = Generator(static_cast<std::uint64_t>(seed) * 7919).model();
    test::RecordingSink sink;
    const std::string text = write(model, format, sink);
    EXPECT_EQ(sink.all(), "");
    Model back;
    ASSERT_TRUE(read(text, format, sink, back).ok()) << sink.all() << text;
    EXPECT_EQ(difference(Description(model, format), Description(back, format)), "") << text;

    back.name = model.name;
    std::string first = text, second = write(back, format, sink);
    if (format == Format::lp && !model.range.empty()) {
      // The columns of the ranged rows have become columns like others.
      Model again;
      ASSERT_TRUE(read(second, format, sink, again).ok()) << sink.all() << second;
      again.name = model.name;
      first = std::exchange(second, write(again, format, sink));
    }
    EXPECT_EQ(second, first);
  }
}

TEST(RoundTrip, LpFiles) {
  check_round_trip(Format::lp, 1, 400);
}

TEST(RoundTrip, MpsFiles) {
  check_round_trip(Format::mps, 1, 400);
}

/// A model with `names` as columns in one row, of the types given.
Model named_model(std::initializer_list<const char*> names, const char* types) {
  Model model;
  model.num_cols = static_cast<int>(names.size());
  model.num_rows = 1;
  model.objective.assign(names.size(), 0.0);
  model.lower.assign(names.size(), 0.0);
  model.upper.assign(names.size(), 1.0);
  SparseMatrix rows;
  for (const char* name : names) {
    model.col_names.append(name);
    rows.index.push_back(static_cast<int>(rows.index.size()));
    rows.value.push_back(1.0);
  }
  model.col_names.create();
  model.column_type.assign(types, types + names.size());
  rows.num_major = 1;
  rows.num_minor = model.num_cols;
  rows.start.push_back(model.num_cols);
  model.matrix.assign(transpose(rows));
  model.rhs = {1};
  model.row_sense = {'L'};
  model.row_names.append("row");
  model.row_names.create();
  return model;
}

void expect_same_back(const Model& model, Format format, const char* messages) {
  test::RecordingSink sink;
  const std::string text = write(model, format, sink);
  EXPECT_EQ(sink.all(), messages);
  Model back;
  ASSERT_TRUE(read(text, format, sink, back).ok()) << sink.all() << text;
  back.objective_name = model.objective_name;
  EXPECT_EQ(difference(Description(model, format), Description(back, format)), "") << text;
}

TEST(RoundTrip, KeywordsMayBeNamesOfColumns) {
  for (const char* name :
       {"st", "s.t.", "bin", "semi", "sos", "gen", "usercuts", "bounds", "max"}) {
    SCOPED_TRACE(name);
    for (const char* types : {"CC", "BI", "IS", "SB", "NC"}) {
      Model model = named_model({name, "other"}, types);
      expect_same_back(model, Format::lp, "");
      // The first term does not fit behind the label.
      const std::string label(70, 'z');
      model.row_names.rename(0, label);
      model.col_names.rename(1, std::string(60, 'y'));
      expect_same_back(model, Format::lp, "");
      QuadraticConstraint row;
      row.quad_row = {0, 0};
      row.quad_col = {0, 1};
      row.quad_value = {1, 1};
      model.quadratic_constraints = {row};
      model.quadratic_names.append(label.substr(0, 68));
      model.quadratic_names.create();
      expect_same_back(model, Format::lp, "");
    }
  }
}

TEST(RoundTrip, NamesThatTheFormatsCannotHoldAreChangedWithAWarning) {
  const char* const in_lp = "Warning:  Output names have been modified to conform to LP format.\n";
  const char* const in_mps =
      "Warning:  Output names have been modified to conform to MPS format.\n";
  struct Case {
    std::initializer_list<const char*> columns;
    const char* row;
    Format format;
    const char* columns_back[2];
    const char* row_back;
  };
  for (const Case& c : std::initializer_list<Case>{
           {{"a", "a"}, "r", Format::lp, {"a", "a_2"}, "r"},
           {{"a", "b"}, "usercuts", Format::lp, {"a", "b"}, "_usercuts"},
           {{"e1", "b c"}, "r", Format::lp, {"_e1", "b_c"}, "r"},
           {{"a", "a"}, "r", Format::mps, {"a", "a_2"}, "r"},
           {{"a b", "a_b"}, "r", Format::mps, {"a_b", "a_b_2"}, "r"},
           {{"", "x"}, "two words", Format::mps, {"_", "x"}, "two_words"},
       }) {
    Model model = named_model(c.columns, "CC");
    model.row_names.rename(0, c.row);
    SCOPED_TRACE(c.columns_back[0]);
    test::RecordingSink sink;
    const std::string text = write(model, c.format, sink);
    EXPECT_EQ(sink.all(), c.format == Format::lp ? in_lp : in_mps);
    Model back;
    ASSERT_TRUE(read(text, c.format, sink, back).ok()) << text;
    ASSERT_EQ(back.num_cols, 2) << text;
    EXPECT_STREQ(back.col_names[0], c.columns_back[0]);
    EXPECT_STREQ(back.col_names[1], c.columns_back[1]);
    EXPECT_STREQ(back.row_names[0], c.row_back);
  }
  // A row may have the name that the objective gets by default.
  Model model = named_model({"a", "b"}, "CC");
  model.row_names.rename(0, "obj");
  expect_same_back(model, Format::mps, in_mps);
}

TEST(RoundTrip, WhatCannotBeReadBackIsTold) {
  Model model = named_model({"a", "b"}, "CC");
  model.objective[0] = 1e40;
  model.lower[0] = 1e-200;
  test::RecordingSink sink;
  write(model, Format::mps, sink);
  EXPECT_EQ(sink.all(), "Warning:  2 numbers cannot be read back from an MPS file.\n");
  sink.take();
  model.upper[1] = 1e18;
  model.sos.type = {'1'};
  model.sos.members.num_major = 1;
  model.sos.members.start = {0, 2};
  model.sos.members.index = {0, 1};
  model.sos.members.value = {1, 1};
  model.sos.names.append("s");
  model.sos.names.create();
  write(model, Format::lp, sink);
  EXPECT_EQ(sink.all(),
            "Warning:  3 numbers cannot be read back from an LP file.\n"
            "Warning:  1 sets with equal weights cannot be read back from an LP file.\n");
}

}  // namespace
}  // namespace kelvo
