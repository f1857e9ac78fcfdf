// What a model says, line by line, without regard to the order of its columns, to see whether a
// file has kept it.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "base/name_index.h"
#include "prob/model/model.h"

namespace kelvo::test {

enum class Format { lp, mps };

/// A fact: words that name it, and its numbers.
struct Fact {
  std::string words;
  std::array<double, 3> numbers{};

  bool operator<(const Fact& other) const {
    return words != other.words ? words < other.words : numbers < other.numbers;
  }
  std::string text() const {
    char figures[100];
    std::snprintf(figures, sizeof figures, " %.16g %.16g %.16g\n", numbers[0], numbers[1],
                  numbers[2]);
    return words + figures;
  }
};

class Description {
 public:
  /// What `format` carries of the model, whose columns and rows have names.
  Description(const Model& model, Format format) : model_(model), format_(format) {
    const bool mps = format == Format::mps;
    flip_ = mps && model.sense < 0 ? -1.0 : 1.0;
    say(mps || model.sense > 0 ? "minimize" : "maximize");
    for (int j = 0; j < model.num_cols; ++j) describe_column(j);
    describe_rows();
    for (int j = 0; j < model.quadratic.num_major; ++j) {
      for (int k = model.quadratic.start[j]; k < model.quadratic.start[j + 1]; ++k) {
        const double value = model.quadratic.value[k];
        if (value != 0.0) say("q " + name(j) + " " + name(model.quadratic.index[k]), flip_ * value);
      }
    }
    for (std::size_t k = 0; k < model.quadratic_constraints.size(); ++k) {
      describe_quadratic_constraint(static_cast<int>(k));
    }
    describe_extra("cut ", model.user_cuts);
    describe_extra("lazy ", model.lazy_constraints);
    describe_extra("indicator ", model.indicators.rows);
    for (int k = 0; k < model.indicators.size(); ++k) {
      say(std::string("switch ") + name(model.indicators.column[k]) + " " +
              item(model.indicators.rows.names, k, 'i'),
          model.indicators.relation[k], model.indicators.complemented[k]);
    }
    for (int k = 0; k < model.sos.size(); ++k) {
      const std::string set = "set " + item(model.sos.names, k, 's') + " " + model.sos.type[k];
      say(set);
      for (int e = model.sos.members.start[k]; e < model.sos.members.start[k + 1]; ++e) {
        say(set + " " + name(model.sos.members.index[e]), model.sos.members.value[e]);
      }
    }
    std::sort(facts_.begin(), facts_.end());
  }

  const std::vector<Fact>& facts() const { return facts_; }

 private:
  static std::string item(const NameStore& names, int i, char letter) {
    return names.present() ? names[i] : letter + std::to_string(i + 1);
  }
  std::string name(int j) const { return item(model_.col_names, j, 'x'); }
  void say(std::string words, double first = 0.0, double second = 0.0, double third = 0.0) {
    facts_.push_back({std::move(words), {first, second, third}});
  }
  void coefficient(const std::string& row, int j, double value) {
    if (value != 0.0) say(row + " * " + name(j), value);
  }

  void describe_column(int j) {
    char type = model_.column_type.empty() ? 'C' : model_.column_type[j];
    // An MPS file has no types B and I: integers with the bounds 0 and 1 are binary.
    if (format_ == Format::mps && type == 'B') type = 'I';
    say("column " + name(j) + " " + type, model_.lower[j], model_.upper[j],
        flip_ * model_.objective[j]);
  }
  void describe_rows() {
    const NameIndex columns = index_of_columns();
    Vector<String> row_names;
    for (int i = 0; i < model_.num_rows; ++i) {
      const std::string row = "row " + item(model_.row_names, i, 'c');
      char sense = model_.row_sense[i];
      double range = sense == 'R' ? model_.range[i] : 0.0;
      if (format_ == Format::lp && sense == 'R') {
        sense = 'E';
        std::string extra = "Rg" + item(model_.row_names, i, 'c');
        while (columns.find(extra, model_.col_names) != NameIndex::kNone) extra.insert(0, "Rg_");
        say("column " + extra + " C", std::min(range, 0.0), std::max(range, 0.0));
        say(row + " * " + extra, -1.0);
        range = 0.0;
      }
      say(row + " " + sense, model_.rhs[i], range);
    }
    for (int j = 0; j < model_.num_cols; ++j) {
      const int end = model_.matrix.start[j] + model_.matrix.count[j];
      for (int k = model_.matrix.start[j]; k < end; ++k) {
        coefficient("row " + item(model_.row_names, model_.matrix.index[k], 'c'), j,
                    model_.matrix.value[k]);
      }
    }
  }
  NameIndex index_of_columns() const {
    NameIndex index;
    if (model_.col_names.present()) index.build(model_.col_names, model_.num_cols);
    return index;
  }
  void describe_quadratic_constraint(int k) {
    const QuadraticConstraint& row = model_.quadratic_constraints[k];
    const std::string label = "quadratic " + item(model_.quadratic_names, k, 'q');
    say(label + " " + row.sense, row.rhs);
    for (std::size_t t = 0; t < row.linear_index.size(); ++t) {
      coefficient(label, row.linear_index[t], row.linear_value[t]);
    }
    for (std::size_t t = 0; t < row.quad_row.size(); ++t) {
      say(label + " * " + name(row.quad_row[t]) + " * " + name(row.quad_col[t]), row.quad_value[t]);
    }
  }
  void describe_extra(const std::string& kind, const ExtraRows& all) {
    const char letter = kind[0] == 'c' ? 'u' : kind[0];
    for (int k = 0; k < all.size(); ++k) {
      const std::string row = kind + item(all.names, k, letter);
      say(row + " " + all.sense[k], all.rhs[k]);
      for (int e = all.rows.start[k]; e < all.rows.start[k + 1]; ++e) {
        coefficient(row, all.rows.index[e], all.rows.value[e]);
      }
    }
  }

  const Model& model_;
  const Format format_;
  double flip_ = 1.0;
  std::vector<Fact> facts_;
};

/// Numbers agree to the 15 digits that the formats carry; from 1e20 on all are infinite.
inline bool agrees(double a, double b) {
  constexpr double kFifteenDigits = 6e-15;
  if (std::fabs(a) >= 1e20 || std::fabs(b) >= 1e20)
    return (a >= 1e20) == (b >= 1e20) && (a <= -1e20) == (b <= -1e20);
  return std::fabs(a - b) <= kFifteenDigits * std::max(std::fabs(a), std::fabs(b));
}

/// The facts in which two descriptions differ, at most ten of them.
inline std::string difference(const Description& before, const Description& after) {
  constexpr int kMostTold = 10;
  std::string text;
  int told = 0;
  auto a = before.facts().begin();
  auto b = after.facts().begin();
  while ((a != before.facts().end() || b != after.facts().end()) && told < kMostTold) {
    const bool only_a =
        b == after.facts().end() || (a != before.facts().end() && a->words < b->words);
    const bool only_b = !only_a && (a == before.facts().end() || b->words < a->words);
    if (only_a) {
      text += "lost: " + (a++)->text();
    } else if (only_b) {
      text += "new:  " + (b++)->text();
    } else {
      bool same = true;
      for (int k = 0; k < 3; ++k) same = same && agrees(a->numbers[k], b->numbers[k]);
      if (!same) text += "was:  " + a->text() + "is:   " + b->text();
      ++a;
      ++b;
      if (same) continue;
    }
    ++told;
  }
  return text;
}

}  // namespace kelvo::test
