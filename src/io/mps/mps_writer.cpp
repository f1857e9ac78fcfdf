#include "io/mps/mps_writer.h"

#include <algorithm>
#include <cstring>

#include "base/error_code.h"
#include "io/number_format.h"
#include "io/writer_names.h"

namespace kelvo {
namespace {

constexpr int kLongField = 23;
constexpr int kShortField = 12;
constexpr int kLongestName = 255;
// Two entries share a line while three names and the numbers stay within this.
constexpr int kSharedLine = 75;
constexpr int kLastMarker = 9999;
// The memory of names is prefetched so many entries earlier.
constexpr int kPlacesAhead = 24;
constexpr int kTextsAhead = 12;

/// The row indices of a matrix by columns in the order of the writer, from one that lies some way
/// ahead of it.
class RowsAhead {
 public:
  RowsAhead(const ColumnStore& matrix, int distance) : matrix_(matrix) {
    for (int k = 0; k < distance; ++k) next();
  }
  /// The next row, or -1 behind the last.
  int next() {
    while (column_ < matrix_.num_cols() && entry_ >= matrix_.count[column_]) {
      ++column_;
      entry_ = 0;
    }
    return column_ < matrix_.num_cols() ? matrix_.index[matrix_.start[column_] + entry_++] : -1;
  }

 private:
  const ColumnStore& matrix_;
  int column_ = 0;
  int entry_ = 0;
};

class MpsFileWriter {
 public:
  MpsFileWriter(const Model& model, const MpsWriterSettings& settings, MessageSink& sink,
                FileStream& stream)
      : model_(model),
        settings_(settings),
        sink_(sink),
        stream_(stream),
        names_(model, settings.generic_names),
        places_ahead_(model.matrix, kPlacesAhead),
        texts_ahead_(model.matrix, kTextsAhead) {}

  Status write();

 private:
  void announce_names();
  void legalize();
  void measure_names();
  void rows();
  void row_line(char sense, const char* name);
  void extra_section(const char* header, const ExtraRows& extra, const WrittenNames& names);
  void collect_extra_entries();
  void columns();
  void column(int j);
  void marker(const char* kind);
  void right_hand_sides();
  void ranges();
  void bounds();
  void bound(const char* type, int j, const double* value);
  void column_bounds(int j);
  void sets();
  void quadratic();
  void quadratic_rows();
  void indicators();

  void prefetch_names();
  void entry(const char* owner, const char* row, double value);
  void end_entries();
  void send_full();
  void name_field(const char* name);
  void number_field(double x);
  const char* objective_name() const { return names_.objective.c_str(); }
  char type_of(int j) const { return model_.column_type.empty() ? 'C' : model_.column_type[j]; }

  const Model& model_;
  const MpsWriterSettings& settings_;
  MessageSink& sink_;
  FileStream& stream_;
  ModelNames names_;
  RowsAhead places_ahead_;
  RowsAhead texts_ahead_;
  int width_ = 0;  // of every name field
  bool two_a_line_ = false;
  bool line_open_ = false;  // one entry is on the current line
  WrittenNumbers numbers_;
  int marker_ = 0;
  String text_;  // what is not yet sent to the stream
  // Entries of rows outside the matrix, by column: linear parts of quadratic and indicator
  // constraints, user cuts, lazy constraints. Row names are looked up by running number.
  SparseMatrix extra_by_column_;
  Vector<const char*> extra_names_;
  Vector<double> extra_rhs_;
};

Status MpsFileWriter::write() {
  announce_names();
  legalize();
  measure_names();
  collect_extra_entries();
  text_ += "NAME          ";
  text_.append(model_.name.c_str(), strnlen(model_.name.c_str(), kLongestName));
  text_ += '\n';
  rows();
  columns();
  right_hand_sides();
  ranges();
  bounds();
  sets();
  quadratic();
  quadratic_rows();
  indicators();
  text_ += "ENDATA\n";
  stream_.write(text_);
  if (numbers_.unreadable > 0) {
    sink_.print(Channel::warning, "Warning:  %d numbers cannot be read back from an MPS file.\n",
                numbers_.unreadable);
  }
  return numbers_.finite ? Status() : Status::failure(error::kNotRepresentable);
}

// --- Names and fields ----------------------------------------------------------------------------

void MpsFileWriter::announce_names() {
  const auto announce = [&](const WrittenNames& names, const char* kind, char letter) {
    if (!names.generated() || names.size() == 0) return;
    sink_.print(Channel::warning, "Default %-6s names %c1, %c2 ... being created.\n", kind, letter,
                letter);
  };
  announce(names_.columns, "column", 'x');
  announce(names_.rows, "row", 'c');
  announce(names_.sets, "SOS", 's');
  announce(names_.quadratics, "quadratic constraint", 'q');
  announce(names_.indicators, "indicator constraint", 'i');
  announce(names_.user_cuts, "user cut", 'u');
  announce(names_.lazy_constraints, "lazy constraints", 'l');
}

/// Rows of all kinds and the objective share one space of names.
void MpsFileWriter::legalize() {
  if (names_.objective.empty()) names_.objective = "obj";
  WrittenNames* const rows[] = {&names_.rows, &names_.quadratics, &names_.indicators,
                                &names_.user_cuts, &names_.lazy_constraints};
  WrittenNames* const columns = &names_.columns;
  bool changed = !is_field(names_.objective);
  if (changed) names_.objective = field_name(names_.objective);
  for (WrittenNames* const kind : rows) changed |= kind->make_fields();
  changed |= names_.columns.make_fields();
  changed |= names_.sets.make_fields();
  changed |= make_distinct(rows, std::size(rows), &names_.objective);
  if (!columns->generated()) changed |= make_distinct(&columns, 1, nullptr);
  if (changed) {
    sink_.send(Channel::warning,
               "Warning:  Output names have been modified to conform to MPS format.\n");
  }
}

void MpsFileWriter::measure_names() {
  width_ = std::max<int>(3, static_cast<int>(std::strlen(objective_name())));
  for (const WrittenNames* kind :
       {&names_.columns, &names_.rows, &names_.quadratics, &names_.indicators, &names_.user_cuts,
        &names_.lazy_constraints}) {
    width_ = std::max(width_, kind->longest());
  }
  width_ = std::min(width_, kLongestName);
  const int numbers = settings_.long_numbers ? 92 : 48;
  two_a_line_ = 3 * width_ + numbers < kSharedLine;
}

void MpsFileWriter::name_field(const char* name) {
  const std::size_t length = strnlen(name, kLongestName);
  text_.append(name, length);
  if (static_cast<int>(length) < width_) text_.append(width_ - length, ' ');
}

void MpsFileWriter::number_field(double x) {
  char digits[kNumberText];
  int width = kShortField;
  int length = 0;
  if (settings_.long_numbers) {
    width = kLongField;
    const int sign = x < 0.0 ? 1 : 0;
    digits[0] = '-';
    length = sign + format_number(x, digits + sign, numbers_);
  } else {
    length = format_short_number(x, digits, numbers_);
  }
  if (length < width) text_.append(width - length, ' ');
  text_.append(digits, length);
}

void MpsFileWriter::entry(const char* owner, const char* row, double value) {
  if (line_open_) {
    text_ += "   ";
  } else {
    text_ += "    ";
    name_field(owner);
    text_ += "  ";
  }
  name_field(row);
  text_ += "  ";
  number_field(value);
  if (!two_a_line_ || line_open_) {
    text_ += '\n';
    line_open_ = false;
    send_full();
  } else {
    line_open_ = true;
  }
}

/// Hands the text over to the stream when there is enough of it.
void MpsFileWriter::send_full() {
  constexpr std::size_t kBlock = 1 << 17;  // more than the stream keeps back
  if (text_.size() < kBlock) return;
  stream_.write(text_);
  text_.clear();
}

void MpsFileWriter::end_entries() {
  if (line_open_) text_ += '\n';
  line_open_ = false;
}

// --- Rows ----------------------------------------------------------------------------------------

void MpsFileWriter::row_line(char sense, const char* name) {
  text_ += ' ';
  text_ += sense;
  text_ += "  ";
  text_.append(name, strnlen(name, kLongestName));
  text_ += '\n';
  send_full();
}

void MpsFileWriter::rows() {
  text_ += "ROWS\n";
  row_line('N', objective_name());
  for (int i = 0; i < model_.num_rows; ++i) {
    const char sense = model_.row_sense[i];
    row_line(sense == 'R' ? 'E' : sense, names_.rows[i]);
  }
  for (int k = 0; k < names_.quadratics.size(); ++k) {
    row_line(model_.quadratic_constraints[k].sense, names_.quadratics[k]);
  }
  for (int k = 0; k < names_.indicators.size(); ++k) {
    row_line(model_.indicators.rows.sense[k], names_.indicators[k]);
  }
  extra_section("USERCUTS\n", model_.user_cuts, names_.user_cuts);
  extra_section("LAZYCONS\n", model_.lazy_constraints, names_.lazy_constraints);
}

void MpsFileWriter::extra_section(const char* header, const ExtraRows& extra,
                                  const WrittenNames& names) {
  if (extra.size() == 0) return;
  text_ += header;
  for (int k = 0; k < extra.size(); ++k) row_line(extra.sense[k], names[k]);
}

/// Transposes the rows that are outside the matrix.
void MpsFileWriter::collect_extra_entries() {
  SparseMatrix by_row;
  by_row.num_minor = model_.num_cols;
  const auto close_row = [&](const char* name, double rhs) {
    by_row.start.push_back(static_cast<int>(by_row.index.size()));
    ++by_row.num_major;
    extra_names_.push_back(name);
    extra_rhs_.push_back(rhs);
  };
  for (int k = 0; k < names_.quadratics.size(); ++k) {
    const QuadraticConstraint& row = model_.quadratic_constraints[k];
    by_row.index.insert(by_row.index.end(), row.linear_index.begin(), row.linear_index.end());
    by_row.value.insert(by_row.value.end(), row.linear_value.begin(), row.linear_value.end());
    close_row(names_.quadratics[k], row.rhs);
  }
  const auto add_rows = [&](const ExtraRows& extra, const WrittenNames& names) {
    for (int k = 0; k < extra.size(); ++k) {
      for (int e = extra.rows.start[k]; e < extra.rows.start[k + 1]; ++e) {
        by_row.index.push_back(extra.rows.index[e]);
        by_row.value.push_back(extra.rows.value[e]);
      }
      close_row(names[k], extra.rhs[k]);
    }
  };
  add_rows(model_.indicators.rows, names_.indicators);
  add_rows(model_.user_cuts, names_.user_cuts);
  add_rows(model_.lazy_constraints, names_.lazy_constraints);
  extra_by_column_ = transpose(by_row);
}

// --- Columns -------------------------------------------------------------------------------------

void MpsFileWriter::marker(const char* kind) {
  char line[80];
  std::snprintf(line, sizeof line, "    MARK%04d  'MARKER'                 '%s'\n", marker_, kind);
  marker_ = marker_ + 1 == kLastMarker ? 0 : marker_ + 1;
  text_ += line;
}

void MpsFileWriter::columns() {
  text_ += "COLUMNS\n";
  bool block_open = false;
  for (int j = 0; j < model_.num_cols; ++j) {
    const char type = type_of(j);
    const bool integer = type != 'C' && type != 'S';
    if (integer != block_open) marker(integer ? "INTORG" : "INTEND");
    block_open = integer;
    column(j);
  }
  if (block_open) marker("INTEND");
}

/// Names of rows come from all over the memory; to be called once for each entry.
void MpsFileWriter::prefetch_names() {
  const int place = places_ahead_.next(), text = texts_ahead_.next();
  if (place >= 0) names_.rows.prefetch_place(place);
  if (text >= 0) names_.rows.prefetch_text(text);
}

void MpsFileWriter::column(int j) {
  const char* const name = names_.columns[j];
  const ColumnStore& matrix = model_.matrix;
  const int extra_begin = extra_by_column_.start[j];
  const int extra_end = extra_by_column_.start[j + 1];
  const double* const values = matrix.value.data() + matrix.start[j];
  const bool empty = extra_begin == extra_end && std::all_of(values, values + matrix.count[j],
                                                             [](double x) { return x == 0.0; });
  if (model_.objective[j] != 0.0 || empty) {
    entry(name, objective_name(),
          model_.sense < 0 ? 0.0 - model_.objective[j] : model_.objective[j]);
  }
  for (int k = matrix.start[j]; k < matrix.start[j] + matrix.count[j]; ++k) {
    prefetch_names();
    if (matrix.value[k] != 0.0) entry(name, names_.rows[matrix.index[k]], matrix.value[k]);
  }
  for (int k = extra_begin; k < extra_end; ++k) {
    entry(name, extra_names_[extra_by_column_.index[k]], extra_by_column_.value[k]);
  }
  end_entries();
}

void MpsFileWriter::right_hand_sides() {
  text_ += "RHS\n";
  for (int i = 0; i < model_.num_rows; ++i) {
    if (model_.rhs[i] != 0.0) entry("rhs", names_.rows[i], model_.rhs[i]);
  }
  for (std::size_t k = 0; k < extra_rhs_.size(); ++k) {
    if (extra_rhs_[k] != 0.0) entry("rhs", extra_names_[k], extra_rhs_[k]);
  }
  end_entries();
}

void MpsFileWriter::ranges() {
  bool any = false;
  for (int i = 0; i < model_.num_rows; ++i) {
    if (model_.row_sense[i] != 'R') continue;
    if (!any) text_ += "RANGES\n";
    any = true;
    entry("rng", names_.rows[i], model_.range.empty() ? 0.0 : model_.range[i]);
  }
  end_entries();
}

// --- Bounds --------------------------------------------------------------------------------------

void MpsFileWriter::bounds() {
  text_ += "BOUNDS\n";
  for (int j = 0; j < model_.num_cols; ++j) column_bounds(j);
}

void MpsFileWriter::bound(const char* type, int j, const double* value) {
  text_ += ' ';
  text_ += type;
  text_ += ' ';
  name_field("bnd");
  text_ += "  ";
  if (value != nullptr) {
    name_field(names_.columns[j]);
    text_ += "  ";
    number_field(*value);
  } else {
    const char* const name = names_.columns[j];
    text_.append(name, strnlen(name, kLongestName));
  }
  text_ += '\n';
  send_full();
}

void MpsFileWriter::column_bounds(int j) {
  const double lower = model_.lower[j];
  const double upper = model_.upper[j];
  const bool below = lower <= -kInfiniteBound;
  const bool above = upper >= kInfiniteBound;
  const char type = type_of(j);
  if (type == 'S' || type == 'N') {
    bound("SC", j, &upper);
    if (lower != 0.0 || upper < 0.0) bound(type == 'N' ? "LI" : "LO", j, &lower);
  } else if (below && above) {
    bound("FR", j, nullptr);
  } else if (below) {
    bound("MI", j, nullptr);
    bound("UP", j, &upper);
  } else if (lower == upper) {
    bound("FX", j, &lower);
  } else {
    if (lower != 0.0 || upper < 0.0) bound("LO", j, &lower);
    if (!above) bound("UP", j, &upper);
  }
}

// --- The rest ------------------------------------------------------------------------------------

void MpsFileWriter::sets() {
  const SosSets& sos = model_.sos;
  if (sos.size() == 0) return;
  text_ += "SOS\n";
  for (int k = 0; k < sos.size(); ++k) {
    text_ += " S";
    text_ += sos.type[k];
    text_ += ' ';
    text_ += names_.sets[k];
    text_ += '\n';
    for (int e = sos.members.start[k]; e < sos.members.start[k + 1]; ++e) {
      text_ += "    ";
      name_field(names_.columns[sos.members.index[e]]);
      text_ += "  ";
      number_field(sos.members.value[e]);
      text_ += '\n';
    }
  }
}

void MpsFileWriter::quadratic() {
  const SparseMatrix& q = model_.quadratic;
  if (q.num_major == 0 || q.num_nonzeros() == 0) return;
  text_ += "QMATRIX\n";
  for (int j = 0; j < q.num_major; ++j) {
    for (int k = q.start[j]; k < q.start[j + 1]; ++k) {
      const double value = model_.sense < 0 ? -q.value[k] : q.value[k];
      entry(names_.columns[j], names_.columns[q.index[k]], value);
      end_entries();
    }
  }
}

void MpsFileWriter::quadratic_rows() {
  for (std::size_t k = 0; k < model_.quadratic_constraints.size(); ++k) {
    const QuadraticConstraint& row = model_.quadratic_constraints[k];
    text_ += "QCMATRIX   ";
    text_ += names_.quadratics[static_cast<int>(k)];
    text_ += '\n';
    for (std::size_t t = 0; t < row.quad_row.size(); ++t) {
      entry(names_.columns[row.quad_row[t]], names_.columns[row.quad_col[t]], row.quad_value[t]);
      end_entries();
    }
  }
}

void MpsFileWriter::indicators() {
  const IndicatorConstraints& all = model_.indicators;
  if (all.size() == 0) return;
  text_ += "INDICATORS\n";
  for (int k = 0; k < all.size(); ++k) {
    text_ += all.relation[k] == 1   ? " IF "
             : all.relation[k] == 2 ? " OI "
             : all.relation[k] == 3 ? " FF "
                                    : " ?? ";
    name_field(names_.indicators[k]);
    text_ += "  ";
    name_field(all.column[k] >= 0 ? names_.columns[all.column[k]] : "");
    text_ += "  ";
    number_field(all.complemented[k] ? 0.0 : 1.0);
    text_ += '\n';
  }
}

}  // namespace

Status write_mps(const Model& model, const MpsWriterSettings& settings, MessageSink& sink,
                 FileStream& stream) {
  return MpsFileWriter(model, settings, sink, stream).write();
}

}  // namespace kelvo
