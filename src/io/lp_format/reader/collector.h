// What the LP reader has read so far.
//
// Everything is appended in the order of the file: rows as they come, columns when their name
// comes up first, types as records that are applied later. build() turns it into a model: matrix by
// columns, terms of one variable summed up, zeros dropped.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/status.h"
#include "io/lp_format/reader/diagnostics.h"
#include "io/lp_format/reader/keywords.h"
#include "io/lp_format/reader/names.h"
#include "prob/model/model.h"

namespace kelvo {

/// Linear terms: value[k] * x_index[k].
struct LpLinearTerms {
  Vector<int> index;
  Vector<double> value;

  std::size_t size() const { return index.size(); }
  void add(int column, double coefficient) {
    index.push_back(column);
    value.push_back(coefficient);
  }
  void clear() {
    index.clear();
    value.clear();
  }
};

/// Quadratic terms: value[k] * x_first[k] * x_second[k].
struct LpQuadraticTerms {
  Vector<int> first;
  Vector<int> second;
  Vector<double> value;

  std::size_t size() const { return first.size(); }
  void add(int one, int other, double coefficient) {
    first.push_back(one);
    second.push_back(other);
    value.push_back(coefficient);
  }
  void truncate(std::size_t count) {
    first.resize(count);
    second.resize(count);
    value.resize(count);
  }
};

/// A constraint that has been read to its end.
struct LpConstraint {
  std::string_view label;  // empty: it gets a default name
  int line = 0;            // where errors about its label belong
  char sense = 'E';
  double rhs = 0.0;
  const LpLinearTerms* linear = nullptr;
  const LpQuadraticTerms* quadratic = nullptr;
};

/// How an indicator constraint is switched on.
struct LpIndicator {
  int column = -1;
  int relation = 1;  // 1 "->", 2 "<-", 3 "<->"
  bool complemented = false;
};

/// Room made before reading.
struct LpCapacities {
  int rows = 0;
  int columns = 0;
  int nonzeros = 0;
  int quadratic_nonzeros = 0;
};

/// Constraints of one kind, with names that differ from each other.
struct LpRowGroup {
  const char* kind;  // the word for error messages
  char letter;       // default names are this letter and the number from 1
  ExtraRows data;    // without its names
  LpNames names;
};

class LpCollector {
 public:
  explicit LpCollector(LpDiagnostics& diagnostics) : diagnostics_(diagnostics) {}

  /// Makes room, for a text of about `text_size` bytes (0: not known); fails when a capacity is
  /// beyond what can be indexed.
  Status reserve(const LpCapacities& capacities, std::size_t text_size);
  /// Makes the names of a model known, so that what is read adds to it; append_to() does so.
  void begin_additions(const Model& model);

  int num_cols() const { return columns_.size(); }
  /// The column of that name, added when it is new.
  int column(std::string_view name) { return columns_.find_or_add(name); }
  /// Names of terms are looked up together, which overlaps the waits for memory. This notes the
  /// name for a term that has got the index -1 instead of its column. The terms without a column
  /// are the last ones of the rows, then those that are in no row yet. resolve_columns() must come
  /// before any other look-up of columns, before terms go anywhere but to the rows, and when no
  /// more names can be noted.
  void defer_column(std::string_view name);
  bool can_defer() const { return num_deferred_ < kMostDeferred; }
  /// Fills in the columns of the names noted: in the last rows, then at the end of `terms`.
  void resolve_columns(LpLinearTerms& terms);
  /// The column of that name, or -1.
  int find_column(std::string_view name);

  void set_sense(int sense) { sense_ = sense; }
  void set_objective_name(std::string_view name);
  void add_objective(const LpLinearTerms& linear, const LpQuadraticTerms& quadratic);

  /// Appends to the rows, user cuts or lazy constraints, as the section says.
  Status add_constraint(LpSection section, const LpConstraint& constraint);
  Status add_quadratic_constraint(const LpConstraint& constraint);
  Status add_indicator(const LpIndicator& indicator, const LpConstraint& constraint);

  /// Takes a bound of type 'L', 'U' or 'B'.
  void add_bound(int column, char type, double value);
  /// Leaves the section: says which of the bounds taken since the last call have no meaning.
  void close_bounds();

  void add_type(int column, LpSection section) { types_.push_back({column, section}); }

  Status open_set(std::string_view label, char type);
  bool has_set() const { return !sos_.type.empty(); }
  void add_member(int column, double weight);
  /// Orders the members of the last set by weight; equal weights are an error.
  Status close_set();

  /// Drops integer declarations and quadratic data, each with a message that names the source.
  void drop_nonlinear(const char* source_name);

  /// Fails when there are more rows, columns or coefficients than an index can count.
  Status check_size() const;

  /// Makes the model. The collector is used up afterwards.
  void build(Model& model);
  /// Adds what was read since begin_additions() to a copy of that model. When memory runs out the
  /// copy is of no use.
  void append_to(Model& model);

 private:
  struct TypeRecord {
    int column;
    LpSection section;
  };

  static constexpr int kMostDeferred = 64;

  Status append(LpRowGroup& group, const LpConstraint& constraint);
  void set_lower(int column, double value);
  void set_upper(int column, double value);
  void size_bounds();
  void apply_types(Model& model);
  void build_objective(Model& model);
  void build_matrix(Model& model);
  void append_switches(IndicatorConstraints& indicators);

  LpDiagnostics& diagnostics_;
  int sense_ = 1;
  String objective_name_;
  bool has_objective_name_ = false;
  LpLinearTerms objective_;
  LpQuadraticTerms quadratic_;  // of the objective c'x + 1/2 (sum of these terms)

  LpNames columns_;
  int num_deferred_ = 0;
  std::size_t deferred_end_[kMostDeferred];  // [num_deferred_] where names end in deferred_text_
  Vector<char> deferred_text_;               // the names, one behind the other
  int deferred_terms_ = 0;                   // the last of them, whose terms are in no row yet
  int expected_ = 0;                         // column that find_column() tries first
  int num_unexpected_ = 0;                   // columns found elsewhere since it was right
  bool names_repeat_ = false;                // the model added to has columns of the same name
  Vector<double> lower_, upper_;             // [columns known when a bound was last taken]
  Vector<char> lower_given_, upper_given_;   // alike
  Vector<char> ignored_bounds_;              // 'L' and 'U': infinite on the wrong side
  Vector<TypeRecord> types_;

  LpRowGroup rows_{"Row", 'c', {}, {}};
  LpRowGroup user_cuts_{"User Cut", 'u', {}, {}};
  LpRowGroup lazy_constraints_{"Lazy Constraint", 'l', {}, {}};
  LpRowGroup indicators_{"Indicator", 'i', {}, {}};
  Vector<LpIndicator> indicator_switches_;  // [indicators]

  Vector<QuadraticConstraint> quadratic_constraints_;
  LpNames quadratic_names_;

  SosSets sos_;
  LpNames sos_names_;

  int first_new_row_ = 0;  // names of rows_ before it are those of the model added to
};

}  // namespace kelvo
