#include "io/lp_format/reader/collector.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/error_code.h"

namespace kelvo {
namespace {

/// More rows or columns than this cannot be indexed safely with their sums and doubles.
constexpr int kSizeLimit = 524999999;

/// Room made in advance is bounded: the capacities are hints, and no hint may exhaust the memory.
constexpr int kMostReserved = 1 << 22;

/// Bounds of at least this magnitude are infinite, bounds below the other one are 0.
constexpr double kInfiniteInput = 1e17;
constexpr double kZeroInput = 1e-10;

/// Typical length of a name with its final zero, for the room made in advance.
constexpr int kTypicalName = 12;
/// A text has hardly more nonzeros than one for so many of its bytes. Room that is not used costs
/// next to nothing.
constexpr std::size_t kBytesPerNonzero = 24;

std::size_t room(int capacity) {
  return static_cast<std::size_t>(std::min(capacity, kMostReserved));
}

/// Letter and number.
class NumberedName {
 public:
  NumberedName(char letter, int number) {
    text_[0] = letter;
    end_ = std::to_chars(text_ + 1, text_ + sizeof text_, number).ptr;
  }
  std::string_view view() const { return {text_, static_cast<std::size_t>(end_ - text_)}; }

 private:
  char text_[16];
  char* end_;
};

/// Enters the label, or the default name of the entry, as the next name of a list.
Status enter_label(std::string_view label, int line, const char* kind, char letter, LpNames& names,
                   LpDiagnostics& diagnostics) {
  const int next = names.size();
  if (!label.empty()) {
    if (names.find_or_add(label) == next) return {};
    return diagnostics.error_repeated(line, kind, label);
  }
  const NumberedName generated(letter, next + 1);
  if (names.find_or_add(generated.view()) == next) return {};
  return diagnostics.error_repeated(line, kind, generated.view());
}

}  // namespace

Status LpCollector::reserve(const LpCapacities& capacities, std::size_t text_size) {
  for (const int capacity :
       {capacities.rows, capacities.columns, capacities.nonzeros, capacities.quadratic_nonzeros}) {
    if (capacity > kSizeLimit) return diagnostics_.error(error::kProblemSizeLimits);
  }
  if (capacities.columns > kSizeLimit / 2) return diagnostics_.error(error::kProblemSizeLimits);
  deferred_text_.reserve(kMostDeferred * kTypicalName);
  columns_.reserve(room(capacities.columns), kTypicalName * room(capacities.columns));
  rows_.data.rhs.reserve(room(capacities.rows));
  rows_.data.sense.reserve(room(capacities.rows));
  rows_.data.rows.start.reserve(room(capacities.rows) + 1);
  const std::size_t nonzeros = std::max(room(capacities.nonzeros), text_size / kBytesPerNonzero);
  rows_.data.rows.index.reserve(nonzeros);
  rows_.data.rows.value.reserve(nonzeros);
  quadratic_.first.reserve(room(capacities.quadratic_nonzeros));
  quadratic_.second.reserve(room(capacities.quadratic_nonzeros));
  quadratic_.value.reserve(room(capacities.quadratic_nonzeros));
  return {};
}

void LpCollector::begin_additions(const Model& model) {
  const auto know = [](const NameStore& given, int count, char letter, LpNames& names) {
    for (int k = 0; k < count; ++k) {
      const NumberedName generated(letter, k + 1);
      names.append(given.present() ? given.view(k) : generated.view());
    }
  };
  const auto know_rows = [&know](const ExtraRows& rows, LpRowGroup& group) {
    know(rows.names, rows.size(), group.letter, group.names);
  };
  know(model.col_names, model.num_cols, 'x', columns_);
  know(model.row_names, model.num_rows, 'c', rows_.names);
  know(model.quadratic_names, static_cast<int>(model.quadratic_constraints.size()), 'q',
       quadratic_names_);
  know_rows(model.user_cuts, user_cuts_);
  know_rows(model.lazy_constraints, lazy_constraints_);
  know_rows(model.indicators.rows, indicators_);
  names_repeat_ = true;  // perhaps
  lower_ = model.lower;
  upper_ = model.upper;
  lower_given_.assign(lower_.size(), 0);
  upper_given_.assign(upper_.size(), 0);
  first_new_row_ = model.num_rows;
}

void LpCollector::defer_column(std::string_view name) {
  columns_.prefetch(name);
  deferred_text_.insert(deferred_text_.end(), name.begin(), name.end());
  deferred_end_[num_deferred_++] = deferred_text_.size();
  ++deferred_terms_;
}

void LpCollector::resolve_columns(LpLinearTerms& terms) {
  Vector<int>& in_rows = rows_.data.rows.index;
  const int of_rows = num_deferred_ - deferred_terms_;
  int* const row_entry = in_rows.data() + (in_rows.size() - static_cast<std::size_t>(of_rows));
  int* const term = terms.index.data() + (terms.size() - static_cast<std::size_t>(deferred_terms_));
  std::size_t begin = 0;
  for (int k = 0; k < num_deferred_; ++k) {
    const std::string_view name(deferred_text_.data() + begin, deferred_end_[k] - begin);
    begin = deferred_end_[k];
    (k < of_rows ? row_entry[k] : term[k - of_rows]) = columns_.find_or_add(name);
  }
  num_deferred_ = deferred_terms_ = 0;
  deferred_text_.clear();
}

/// Where columns come up again they often do so in their order, with some that do not.
int LpCollector::find_column(std::string_view name) {
  constexpr int kNear = 4;  // to go on behind a gap
  constexpr int kPatience = 8;
  if (expected_ < num_cols() && !names_repeat_ && columns_.view(expected_) == name) {
    num_unexpected_ = 0;
    return expected_++;
  }
  const int found = columns_.find(name);
  if (found < 0) return found;
  const bool near = found > expected_ && found <= expected_ + kNear;
  if (near || ++num_unexpected_ > kPatience) {
    expected_ = found + 1;
    num_unexpected_ = 0;
  }
  return found;
}

void LpCollector::set_objective_name(std::string_view name) {
  objective_name_.assign(name);
  has_objective_name_ = true;
}

void LpCollector::add_objective(const LpLinearTerms& linear, const LpQuadraticTerms& quadratic) {
  objective_.index.insert(objective_.index.end(), linear.index.begin(), linear.index.end());
  objective_.value.insert(objective_.value.end(), linear.value.begin(), linear.value.end());
  for (std::size_t k = 0; k < quadratic.size(); ++k) {
    quadratic_.add(quadratic.first[k], quadratic.second[k], quadratic.value[k]);
  }
}

Status LpCollector::append(LpRowGroup& group, const LpConstraint& constraint) {
  ExtraRows& data = group.data;
  SparseMatrix& rows = data.rows;
  const LpLinearTerms& linear = *constraint.linear;
  if (rows.index.size() + linear.size() > std::numeric_limits<int>::max()) {
    return diagnostics_.error(error::kTooManyCoefficients);
  }
  KELVO_TRY(enter_label(constraint.label, constraint.line, group.kind, group.letter, group.names,
                        diagnostics_));
  rows.index.insert(rows.index.end(), linear.index.begin(), linear.index.end());
  rows.value.insert(rows.value.end(), linear.value.begin(), linear.value.end());
  rows.start.push_back(static_cast<int>(rows.index.size()));
  data.rhs.push_back(constraint.rhs);
  data.sense.push_back(constraint.sense);
  ++rows.num_major;
  return {};
}

Status LpCollector::add_constraint(LpSection section, const LpConstraint& constraint) {
  if (section == LpSection::user_cuts) return append(user_cuts_, constraint);
  if (section == LpSection::lazy_constraints) return append(lazy_constraints_, constraint);
  KELVO_TRY(append(rows_, constraint));
  deferred_terms_ = 0;
  return {};
}

Status LpCollector::add_indicator(const LpIndicator& indicator, const LpConstraint& constraint) {
  indicator_switches_.push_back(indicator);
  return append(indicators_, constraint);
}

Status LpCollector::add_quadratic_constraint(const LpConstraint& constraint) {
  KELVO_TRY(enter_label(constraint.label, constraint.line, "Quadratic constraint", 'q',
                        quadratic_names_, diagnostics_));
  QuadraticConstraint added;
  added.rhs = constraint.rhs;
  added.sense = constraint.sense;
  added.linear_index = constraint.linear->index;
  added.linear_value = constraint.linear->value;
  added.quad_row = constraint.quadratic->first;
  added.quad_col = constraint.quadratic->second;
  added.quad_value = constraint.quadratic->value;
  quadratic_constraints_.push_back(std::move(added));
  return {};
}

void LpCollector::size_bounds() {
  const std::size_t columns = static_cast<std::size_t>(num_cols());
  lower_.resize(columns, 0.0);
  upper_.resize(columns, kInfiniteBound);
  lower_given_.resize(columns, 0);
  upper_given_.resize(columns, 0);
}

void LpCollector::add_bound(int column, char type, double value) {
  if (lower_.size() < static_cast<std::size_t>(num_cols())) size_bounds();
  if (type != 'U') set_lower(column, value);
  if (type != 'L') set_upper(column, value);
}

void LpCollector::close_bounds() {
  for (const char type : ignored_bounds_) {
    diagnostics_.sink().send(Channel::warning, type == 'L'
                                                   ? "Warning:  Infinity lower bound ignored.\n"
                                                   : "Warning:  -Infinity upper bound ignored.\n");
  }
  ignored_bounds_.clear();
}

void LpCollector::set_lower(int column, double value) {
  if (value >= kInfiniteInput) {
    ignored_bounds_.push_back('L');
    return;
  }
  lower_[column] = value <= -kInfiniteInput        ? -kInfiniteBound
                   : std::fabs(value) < kZeroInput ? 0.0
                                                   : value;
  lower_given_[column] = 1;
}

void LpCollector::set_upper(int column, double value) {
  if (value <= -kInfiniteInput) {
    ignored_bounds_.push_back('U');
    return;
  }
  upper_[column] = value >= kInfiniteInput         ? kInfiniteBound
                   : std::fabs(value) < kZeroInput ? 0.0
                                                   : value;
  upper_given_[column] = 1;
}

Status LpCollector::open_set(std::string_view label, char type) {
  KELVO_TRY(enter_label(label, diagnostics_.line, "SOS", 's', sos_names_, diagnostics_));
  sos_.type.push_back(type);
  sos_.members.start.push_back(static_cast<int>(sos_.members.index.size()));
  ++sos_.members.num_major;
  return {};
}

void LpCollector::add_member(int column, double weight) {
  sos_.members.index.push_back(column);
  sos_.members.value.push_back(weight);
  sos_.members.start.back() = static_cast<int>(sos_.members.index.size());
}

Status LpCollector::close_set() {
  if (!has_set()) return {};
  SparseMatrix& members = sos_.members;
  const int begin = members.start[members.num_major - 1];
  const int end = members.start[members.num_major];
  const double* const weight = members.value.data();
  const auto is_lighter = [weight](int a, int b) { return weight[a] < weight[b]; };
  Vector<int> order(end - begin);
  for (int k = begin; k < end; ++k) order[k - begin] = k;
  if (!std::is_sorted(order.begin(), order.end(), is_lighter)) {
    std::sort(order.begin(), order.end(), is_lighter);
    LpLinearTerms sorted;
    for (const int k : order) sorted.add(members.index[k], members.value[k]);
    std::copy(sorted.index.begin(), sorted.index.end(), members.index.begin() + begin);
    std::copy(sorted.value.begin(), sorted.value.end(), members.value.begin() + begin);
  }
  for (int k = begin + 1; k < end; ++k) {
    if (members.value[k] == members.value[k - 1]) return diagnostics_.error(error::kEqualWeights);
  }
  return {};
}

Status LpCollector::check_size() const {
  if (rows_.data.size() > kSizeLimit) return diagnostics_.error(error::kTooManyRows);
  if (num_cols() > kSizeLimit) return diagnostics_.error(error::kTooManyColumns);
  if (quadratic_.size() > kSizeLimit) return diagnostics_.error(error::kTooManyCoefficients);
  return {};
}

}  // namespace kelvo
