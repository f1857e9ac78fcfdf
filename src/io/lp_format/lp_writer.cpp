#include "io/lp_format/lp_writer.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/error_code.h"
#include "base/name_index.h"
#include "io/line_writer.h"
#include "io/lp_format/reader/keywords.h"
#include "io/writer_names.h"
#include "prob/bound_rules.h"

namespace kelvo {
namespace {

constexpr int kWidestLabel = 32;
// Coefficients this near to 1 are written without a number.
constexpr double kUnit = 1e-13;
// Names come from all over the memory; it is prefetched so many terms earlier.
constexpr int kPlacesAhead = 24;
constexpr int kTextsAhead = 12;
constexpr std::size_t kLongestRangeName = 253;  // of the row; "Rg" comes before it

/// The reader takes such a bound for infinite or for zero, although it can read the number.
bool is_distorted_bound(double bound) {
  constexpr double kSmallestRead = 1e-37;
  const double magnitude = std::fabs(bound);
  return magnitude >= kInfiniteBoundInput ||
         (magnitude < kZeroBoundInput && magnitude >= kSmallestRead);
}

class LpFileWriter {
 public:
  LpFileWriter(const Model& model, const LpWriterSettings& settings, MessageSink& sink,
               FileStream& stream)
      : model_(model),
        settings_(settings),
        sink_(sink),
        names_(model, settings.generic_names),
        line_(stream) {}

  Status write();

 private:
  void announce_names();
  void legalize();
  void announce_losses();
  void find_ranges();
  void objective();
  void quadratic_objective(bool after_terms);
  void rows();
  void quadratic_constraints();
  void indicators();
  void extra_rows(const char* header, const ExtraRows& rows, const WrittenNames& names);
  void bounds();
  void bound_line(const char* name, char type, double lower, double upper);
  void types();
  void type_list(const char* header, const char* wanted);
  void sets();

  static bool heads_section(const char* name);
  const char* sign_before(const char* name, double coefficient, bool first) const;
  void label(const char* name, int width);
  void term(double coefficient, const char* name, bool& first);
  void product_term(double coefficient, int i, int j, bool& first);
  void sense_and_rhs(char sense, double rhs);
  void signed_number(double x);
  bool infinite_upper(double upper) const { return upper >= kInfiniteBound; }
  bool infinite_lower(double lower) const { return lower <= -kInfiniteBound; }
  char type_of(int j) const { return model_.column_type.empty() ? 'C' : model_.column_type[j]; }

  const Model& model_;
  const LpWriterSettings& settings_;
  MessageSink& sink_;
  ModelNames names_;
  LineWriter line_;
  TokenText token_;
  SparseMatrix by_row_;
  Vector<int> ranged_rows_;
  NameStore range_names_;  // "Rg" + row name, one per ranged row
};

Status LpFileWriter::write() {
  announce_names();
  if (settings_.legalize_names && !settings_.generic_names) legalize();
  find_ranges();
  by_row_ = transpose(model_.matrix.compressed(model_.num_rows));
  token_ << "\\Problem name: ";
  token_.name(model_.name.c_str()) << "\n\n";
  token_ << (model_.sense < 0 ? "Maximize\n" : "Minimize\n");
  line_.put_lines(token_.view());
  objective();
  if (model_.num_rows > 0 || !model_.quadratic_constraints.empty() ||
      model_.indicators.size() > 0) {
    line_.put_lines("Subject To\n");
  }
  rows();
  quadratic_constraints();
  indicators();
  extra_rows("User Cuts\n", model_.user_cuts, names_.user_cuts);
  extra_rows("Lazy Constraints\n", model_.lazy_constraints, names_.lazy_constraints);
  bounds();
  types();
  sets();
  line_.put_lines("End\n");
  line_.send();
  announce_losses();
  return token_.numbers().finite ? Status() : Status::failure(error::kNotRepresentable);
}

// --- Names ---------------------------------------------------------------------------------------

void LpFileWriter::announce_names() {
  const auto announce = [&](const WrittenNames& names, bool exists, const char* kind, char letter) {
    if (!names.generated() || !exists) return;
    sink_.print(Channel::warning, "Default %s names %c1, %c2 ... being created.\n", kind, letter,
                letter);
  };
  announce(names_.columns, true, "variable", 'x');
  announce(names_.rows, true, "row", 'c');
  announce(names_.sets, names_.sets.size() > 0, "sos", 's');
  announce(names_.quadratics, names_.quadratics.size() > 0, "quadratic constraint", 'q');
  announce(names_.indicators, names_.indicators.size() > 0, "indicator", 'i');
  announce(names_.user_cuts, names_.user_cuts.size() > 0, "user cut", 'u');
  announce(names_.lazy_constraints, names_.lazy_constraints.size() > 0, "lazy constraint", 'l');
}

void LpFileWriter::legalize() {
  bool changed = false;
  if (!names_.objective.empty() && !is_legal_lp_name(names_.objective, true)) {
    names_.objective = legal_lp_name(names_.objective, true);
    changed = true;
  }
  for (WrittenNames* kind : {&names_.columns, &names_.rows, &names_.sets, &names_.quadratics,
                             &names_.indicators, &names_.user_cuts, &names_.lazy_constraints}) {
    if (kind->generated()) continue;
    changed |= make_distinct(&kind, 1, nullptr);
    changed |= kind->make_legal(kind != &names_.columns && kind != &names_.sets);
  }
  if (changed) {
    sink_.send(Channel::warning,
               "Warning:  Output names have been modified to conform to LP format.\n");
  }
}

/// Says what the file has lost although it was written.
void LpFileWriter::announce_losses() {
  const auto tell = [&](const char* text, int count) {
    if (count > 0) sink_.print(Channel::warning, text, count);
  };
  tell("Warning:  %d numbers cannot be read back from an LP file.\n", token_.numbers().unreadable);
  int sets = 0;
  for (int k = 0; k < model_.sos.size(); ++k) {
    const double* const weight = model_.sos.members.value.data();
    Vector<double> sorted(weight + model_.sos.members.start[k],
                          weight + model_.sos.members.start[k + 1]);
    std::sort(sorted.begin(), sorted.end());
    if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end()) ++sets;
  }
  tell("Warning:  %d sets with equal weights cannot be read back from an LP file.\n", sets);
}

void LpFileWriter::find_ranges() {
  for (int i = 0; i < model_.num_rows; ++i) {
    if (model_.row_sense[i] == 'R') ranged_rows_.push_back(i);
  }
  if (ranged_rows_.empty()) return;
  NameIndex columns;
  columns.build(names_.columns, names_.columns.size());
  for (const int i : ranged_rows_) {
    String name("Rg");
    name += names_.rows.view(i).substr(0, kLongestRangeName);
    while (columns.find(name, names_.columns) != NameIndex::kNone) name.insert(0, "Rg_");
    range_names_.append(name);
  }
}

/// A name that would head a section at the start of a line, alone or with more behind it.
bool LpFileWriter::heads_section(const char* name) {
  return classify_lp_line(LpSection::minimize, name) != LpSection::content;
}

/// A name is to begin the next token; at the start of a line it may need a sign before it.
const char* LpFileWriter::sign_before(const char* name, double coefficient, bool first) const {
  if (coefficient < 0.0) return " -";
  if (!first) return " +";
  constexpr std::size_t kMostBeside = 40;  // number, blanks, "^2" or an arrow
  const bool may_wrap = line_.wraps(2 * std::strlen(name) + kMostBeside) || line_.length() == 0;
  return may_wrap && heads_section(name) ? " +" : "";
}

// --- Expressions ---------------------------------------------------------------------------------

void LpFileWriter::label(const char* name, int width) {
  token_.clear();
  token_ << " ";
  token_.name(name) << ":";
  line_.put(token_.view());
  line_.pad(width);
}

void LpFileWriter::term(double coefficient, const char* name, bool& first) {
  token_.clear();
  token_ << sign_before(name, coefficient, first);
  if (!(std::fabs(std::fabs(coefficient) - 1.0) <= kUnit)) {
    token_ << " ";
    token_.number(coefficient);
  }
  token_ << " ";
  token_.name(name);
  line_.token(token_.view());
  first = false;
}

/// coefficient * x_i * x_j, or coefficient * x_i ^2.
void LpFileWriter::product_term(double coefficient, int i, int j, bool& first) {
  token_.clear();
  token_ << sign_before(names_.columns[i], coefficient, first);
  if (!(std::fabs(std::fabs(coefficient) - 1.0) <= kUnit)) {
    token_ << " ";
    token_.number(coefficient);
  }
  token_ << " ";
  token_.name(names_.columns[i]);
  if (i == j) {
    token_ << " ^2";
  } else {
    token_ << " * ";
    token_.name(names_.columns[j]);
  }
  line_.token(token_.view());
  first = false;
}

void LpFileWriter::signed_number(double x) {
  if (x < 0.0) token_ << "-";
  if (x == 0.0) {
    token_ << "0";
  } else {
    token_.number(x);
  }
}

void LpFileWriter::sense_and_rhs(char sense, double rhs) {
  token_.clear();
  switch (sense) {
    case 'L':
      token_ << " <= ";
      break;
    case 'G':
      token_ << " >= ";
      break;
    case 'E':
    case 'R':
      token_ << "  = ";
      break;
    default:
      token_ << "  ? ";
  }
  signed_number(rhs);
  line_.token(token_.view());
  line_.end_line();
}

// --- Sections ------------------------------------------------------------------------------------

void LpFileWriter::objective() {
  label(names_.objective.empty() ? "obj" : names_.objective.c_str(), 0);
  line_.set_indent(line_.length());
  bool first = true;
  for (int j = 0; j < model_.num_cols; ++j) {
    const double c = model_.objective[j];
    if (c == 0.0 && model_.matrix.count[j] > 0 && !settings_.every_objective_term) continue;
    term(c, names_.columns[j], first);
  }
  if (model_.quadratic.num_major > 0) quadratic_objective(!first);
  line_.end_line();
}

void LpFileWriter::quadratic_objective(bool after_terms) {
  if (model_.quadratic.num_nonzeros() == 0) return;
  line_.token(after_terms ? " + [" : " [");
  bool first = true;
  const SparseMatrix& q = model_.quadratic;
  for (int i = 0; i < q.num_major; ++i) {
    for (int k = q.start[i]; k < q.start[i + 1]; ++k) {
      const int j = q.index[k];
      if (j < i) continue;
      product_term(j == i ? q.value[k] : 2.0 * q.value[k], i, j, first);
    }
  }
  line_.token(" ] / 2");
}

void LpFileWriter::rows() {
  const int width = std::min(names_.rows.longest() + 2, kWidestLabel);
  const int nonzeros = by_row_.num_nonzeros();
  std::size_t next_range = 0;
  for (int i = 0; i < model_.num_rows; ++i) {
    const bool is_comment = settings_.is_conflict && i == model_.num_rows - 1;
    if (is_comment) line_.put_lines("\\Sum of equality rows in the conflict:\n");
    line_.set_comment(is_comment);
    label(names_.rows[i], width);
    line_.set_indent(width);
    bool first = true;
    for (int k = by_row_.start[i]; k < by_row_.start[i + 1]; ++k) {
      if (k + kPlacesAhead < nonzeros) {
        names_.columns.prefetch_place(by_row_.index[k + kPlacesAhead]);
        names_.columns.prefetch_text(by_row_.index[k + kTextsAhead]);
      }
      term(by_row_.value[k], names_.columns[by_row_.index[k]], first);
    }
    if (model_.row_sense[i] == 'R') {
      term(-1.0, range_names_[static_cast<int>(next_range++)], first);
    }
    sense_and_rhs(model_.row_sense[i], model_.rhs[i]);
  }
  line_.set_comment(false);
}

void LpFileWriter::quadratic_constraints() {
  for (std::size_t k = 0; k < model_.quadratic_constraints.size(); ++k) {
    const QuadraticConstraint& row = model_.quadratic_constraints[k];
    label(names_.quadratics[static_cast<int>(k)], 0);
    line_.set_indent(line_.length());
    bool first = true;
    for (std::size_t t = 0; t < row.linear_index.size(); ++t) {
      term(row.linear_value[t], names_.columns[row.linear_index[t]], first);
    }
    line_.token(first ? " [" : " + [");
    first = true;
    for (std::size_t t = 0; t < row.quad_row.size(); ++t) {
      product_term(row.quad_value[t], row.quad_row[t], row.quad_col[t], first);
    }
    // Readers want a term in the bracket.
    if (first && model_.num_cols > 0) product_term(0.0, 0, 0, first);
    line_.token(" ]");
    sense_and_rhs(row.sense, row.rhs);
  }
}

void LpFileWriter::indicators() {
  const IndicatorConstraints& all = model_.indicators;
  for (int k = 0; k < all.size(); ++k) {
    label(names_.indicators[k], 0);
    line_.set_indent(line_.length());
    token_.clear();
    if (all.column[k] >= 0) {
      token_ << sign_before(names_.columns[all.column[k]], 1.0, true) << " ";
      token_.name(names_.columns[all.column[k]]);
    }
    token_ << (all.complemented[k] ? " = 0 " : " = 1 ");
    token_ << (all.relation[k] == 1   ? "->"
               : all.relation[k] == 2 ? "<-"
               : all.relation[k] == 3 ? "<->"
                                      : "?");
    line_.token(token_.view());
    bool first = true;
    for (int e = all.rows.rows.start[k]; e < all.rows.rows.start[k + 1]; ++e) {
      term(all.rows.rows.value[e], names_.columns[all.rows.rows.index[e]], first);
    }
    sense_and_rhs(all.rows.sense[k], all.rows.rhs[k]);
  }
}

void LpFileWriter::extra_rows(const char* header, const ExtraRows& all, const WrittenNames& names) {
  if (all.size() == 0) return;
  line_.put_lines(header);
  const int width = std::min(names.longest() + 2, kWidestLabel);
  for (int k = 0; k < all.size(); ++k) {
    label(names[k], width);
    line_.set_indent(width);
    bool first = true;
    for (int e = all.rows.start[k]; e < all.rows.start[k + 1]; ++e) {
      term(all.rows.value[e], names_.columns[all.rows.index[e]], first);
    }
    sense_and_rhs(all.sense[k], all.rhs[k]);
  }
}

void LpFileWriter::bounds() {
  bool needed = !model_.column_type.empty() || !ranged_rows_.empty();
  for (int j = 0; j < model_.num_cols && !needed; ++j) {
    needed = model_.lower[j] != 0.0 || !infinite_upper(model_.upper[j]);
  }
  if (!needed) return;
  line_.put_lines("Bounds\n");
  line_.set_indent(0);
  for (int j = 0; j < model_.num_cols; ++j) {
    const char type = type_of(j);
    if (model_.lower[j] == 0.0 && infinite_upper(model_.upper[j]) && type != 'I' && type != 'B') {
      continue;
    }
    bound_line(names_.columns[j], type, model_.lower[j], model_.upper[j]);
  }
  for (std::size_t k = 0; k < ranged_rows_.size(); ++k) {
    const double range = model_.range.empty() ? 0.0 : model_.range[ranged_rows_[k]];
    bound_line(range_names_[static_cast<int>(k)], 'C', std::min(range, 0.0), std::max(range, 0.0));
  }
}

void LpFileWriter::bound_line(const char* name, char type, double lower, double upper) {
  token_.clear();
  const bool below = infinite_lower(lower);
  const bool above = infinite_upper(upper);
  if (!below && is_distorted_bound(lower)) token_.count_unreadable();
  if (!above && is_distorted_bound(upper)) token_.count_unreadable();
  if (below && above) {
    token_ << "      ";
    token_.name(name) << " Free";
  } else if (above && type != 'B') {
    token_ << "      ";
    token_.name(name) << " >= ";
    signed_number(lower);
  } else if (below) {
    token_ << " -Inf <= ";
    token_.name(name) << " <= ";
    signed_number(upper);
  } else if (lower == upper) {
    token_ << "      ";
    token_.name(name) << " = ";
    signed_number(lower);
  } else {
    if (!(lower < 0.0)) token_ << " ";
    signed_number(lower);
    token_ << " <= ";
    token_.name(name) << " <= ";
    if (above) {
      token_ << "Inf";
    } else {
      signed_number(upper);
    }
  }
  line_.put(token_.view());
  line_.end_line();
}

void LpFileWriter::types() {
  if (model_.column_type.empty()) return;
  type_list("Binaries\n", "B");
  type_list("Generals\n", "IN");
  type_list("Semi-Continuous\n", "SN");
}

void LpFileWriter::type_list(const char* header, const char* wanted) {
  line_.set_indent(0);
  bool any = false;
  int on_line = 0;  // entries of the current line
  String only;      // the entry to repeat should the line get no other
  for (int j = 0; j < model_.num_cols; ++j) {
    if (std::strchr(wanted, model_.column_type[j]) == nullptr) continue;
    if (!any) line_.put_lines(header);
    any = true;
    token_.clear();
    token_ << " ";
    token_.name(names_.columns[j]) << " ";
    const std::size_t length = token_.view().size();
    if (line_.wraps(length) && on_line == 1) line_.put(only);
    on_line = line_.wraps(length) ? 1 : on_line + 1;
    line_.token(token_.view());
    only.clear();
    if (on_line == 1 && heads_section(names_.columns[j])) only.assign(token_.view());
  }
  if (!any) return;
  if (on_line == 1) line_.put(only);
  line_.end_line();
}

void LpFileWriter::sets() {
  const SosSets& sos = model_.sos;
  if (sos.size() == 0) return;
  line_.put_lines("SOS\n");
  const int width = std::min(names_.sets.longest() + 2, kWidestLabel);
  for (int k = 0; k < sos.size(); ++k) {
    label(names_.sets[k], width);
    line_.set_indent(width);
    const char type[] = {' ', 'S', sos.type[k], ' ', ':', ':', '\0'};
    line_.put(type);
    for (int e = sos.members.start[k]; e < sos.members.start[k + 1]; ++e) {
      token_.clear();
      token_ << "  ";
      token_.name(names_.columns[sos.members.index[e]]) << " : ";
      signed_number(sos.members.value[e]);
      line_.token(token_.view());
    }
    line_.end_line();
  }
}

}  // namespace

Status write_lp(const Model& model, const LpWriterSettings& settings, MessageSink& sink,
                FileStream& stream) {
  return LpFileWriter(model, settings, sink, stream).write();
}

}  // namespace kelvo
