// The state of one reading of an MPS file; read_mps() is its only user.
//
// Every row of the file is a "declared row" with a number of its own: rows of all types, user cuts
// and lazy constraints share one space of names. A declared row is the objective, a free row that
// is dropped, or a line of the matrix. Lines are numbered in the order of declaration; all of them
// are columns' entries in model_.matrix until finish() moves those that are no plain rows (cuts,
// indicator and quadratic rows) to where they belong.
#pragma once

#include "base/name_index.h"
#include "io/mps/fields.h"
#include "io/mps/messages.h"
#include "io/mps/mps_reader.h"

namespace kelvo {

/// A name in a store against a text, which has no zeros inside.
inline bool same_name(const NameStore& names, int i, std::string_view text) {
  const char* stored = names[i];
  for (const char c : text) {
    if (*stored++ != c) return false;
  }
  return *stored == '\0';
}

/// Look-up of names that come more or less in the order of declaration: while that goes well, the
/// name after the one found last is tried before the hash table.
class MpsLookup {
 public:
  int find(std::string_view name, const NameStore& names, const NameIndex& index) {
    const int next = last_ + 1;
    if (in_order_ && next < names.size() && same_name(names, next, name)) return last_ = next;
    const int found = index.find(name, names);
    in_order_ = found == next || found == next + 1;
    if (found != NameIndex::kNone) last_ = found;
    return found;
  }

 private:
  int last_ = -1;
  bool in_order_ = true;
};

/// What a line of the matrix is.
enum class MpsLineKind : char { row, user_cut, lazy_constraint, indicator, quadratic, dropped };

class MpsParser {
 public:
  MpsParser(LineReader& lines, const MpsReaderSettings& settings, MessageSink& sink)
      : settings_(settings),
        text_size_(lines.size_hint()),
        messages_(sink, settings.show_choices),
        fields_(lines, messages_) {}

  Status parse(Model& result);

 private:
  static constexpr int kObjective = -1;  // in DeclaredRow::line
  static constexpr int kFreeRow = -2;
  static constexpr int kNone = -1;

  int line_number() const { return fields_.line_number(); }
  /// Goes to the next line that is a header or the end of the file.
  Status skip_data();
  void make_room();

  // mps_rows.cpp: NAME to LAZYCONS
  Status read_name();
  Status read_preamble();
  Status read_objective_sense();
  Status read_row_name(String& name, bool& given);
  Status read_rows();
  Status declare_row();
  Status choose_objective();
  Status read_cuts(MpsLineKind kind);

  // mps_columns.cpp: COLUMNS
  Status read_columns();
  Status read_column_line();
  Status begin_column(std::string_view name);
  Status read_entry(int field);
  void give_weight(double weight);
  bool is_marker(int& field) const;
  Status read_marker(int field);
  Status open_column_set(int field);

  // mps_rim.cpp: RHS, RANGES
  Status read_rim(bool ranges);
  bool has_blank_set() const;
  Status read_rim_entry(int field, bool ranges, Vector<char>& given);
  Status set_range(int line, double value);

  // mps_bounds.cpp: BOUNDS
  struct BoundType;
  static const BoundType kBoundTypes[];
  static const BoundType* find_bound_type(std::string_view code);
  Status read_bounds();
  Status read_bound_type(const BoundType*& type);
  int bound_column_field(const BoundType& type) const;
  Status apply_bound(const BoundType& type, int column, int value_field);
  void settle_bounds();
  void settle_bound(int column);

  // mps_sets.cpp: SOS
  Status read_sets();
  Status open_set(std::string_view code, std::string_view name);
  void name_unnamed_sets();

  // mps_quadratic.cpp: QMATRIX, QUADOBJ, QCMATRIX, INDICATORS
  Status read_quadratic_objective(bool one_triangle);
  Status read_quadratic_constraint();
  Status read_quadratic_columns(int& first, int& second, double& value);
  Status build_quadratic();
  Status read_indicators();
  Status read_indicator();

  // mps_parser.cpp
  Status read_sections_after_columns();
  Status read_section(int& stage);

  // mps_finish.cpp
  void finish();
  void move_special_lines();
  SparseMatrix split_matrix(const Vector<int>& new_line);
  void append_extra_row(int line, const SparseMatrix& by_line, ExtraRows& rows);

  /// Number of the declared row of this name, or kNone.
  int find_row(std::string_view name) const;
  int find_column(std::string_view name) const;
  /// The same, with 1448 or 1449 when there is none.
  Status require_row(std::string_view name, int& row) const;
  Status require_column(std::string_view name, int& column) const;

  const MpsReaderSettings& settings_;
  const std::size_t text_size_;  // about how many bytes; 0: not known
  mutable MpsMessages messages_;
  MpsFields fields_;
  Model model_;

  // Declared rows.
  NameStore row_names_;
  NameIndex row_index_;
  struct DeclaredRow {
    int line;                 // kObjective, kFreeRow or a line
    int last_column = kNone;  // the last one that has an entry there
  };
  Vector<DeclaredRow> rows_;  // [declared rows]
  mutable MpsLookup row_lookup_;
  int objective_row_ = kNone;  // declared row
  int reference_row_ = kNone;  // declared row of the weights of sets, if any
  String wanted_objective_;    // OBJNAME
  bool objective_wanted_ = false;
  String wanted_reference_;  // REFROW
  bool reference_wanted_ = false;

  // Lines. model_.rhs, row_sense and range have this length, too, until finish().
  Vector<MpsLineKind> line_kind_;  // [lines]
  Vector<int> declared_;           // [lines] the declared row of each
  Vector<int> record_of_;  // [lines] number among indicators or quadratic constraints, or kNone

  // Columns.
  NameIndex column_index_;
  Vector<int> column_start_;  // [columns] into the matrix arrays below
  Vector<int> entry_line_;
  Vector<double> entry_value_;
  mutable MpsLookup column_lookup_;
  int column_ = kNone;  // the one being read
  std::size_t column_name_length_ = 0;
  bool skip_column_ = false;    // it has been read before: its lines are not used
  bool integer_block_ = false;  // between 'INTORG' and 'INTEND'
  bool set_block_ = false;      // between 'SOSORG' and 'SOSEND'

  // The set selected in RHS, RANGES or BOUNDS.
  bool set_selected_ = false;
  String set_name_;
  bool second_set_met_ = false;
  Vector<char> bound_given_;  // [columns] kLowerGiven, kUpperGiven

  // Terms of the quadratic objective; those of QUADOBJ are mirrored into the other triangle.
  struct QuadraticTerm {
    int row, column;
    double value;
  };
  Vector<QuadraticTerm> quadratic_terms_;
  bool constraints_ignored_ = false;
};

}  // namespace kelvo
