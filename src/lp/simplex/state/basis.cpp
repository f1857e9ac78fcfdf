#include "lp/simplex/state/basis.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace kelvo {
namespace {

BasisStatus present_status(int wanted, double lower, double upper) {
  const bool has_lower = lower > -kInf;
  const bool has_upper = upper < kInf;
  if (wanted == kFreeSuper) return kFreeSuper;
  if (wanted == kAtUpper) return has_upper ? kAtUpper : has_lower ? kAtLower : kFreeSuper;
  return has_lower ? kAtLower : has_upper ? kAtUpper : kFreeSuper;
}

/// The bound of smaller magnitude; a method that cares chooses the side itself.
BasisStatus nearer_to_zero(double lower, double upper) {
  return present_status(std::fabs(upper) < std::fabs(lower) ? kAtUpper : kAtLower, lower, upper);
}

}  // namespace

Basis::Basis(WorkingProgram& program)
    : header(program.problem.num_rows, 0),
      position(program.problem.num_vars(), -1),
      status(program.problem.num_vars(), kAtLower),
      move(program.problem.num_vars(), kStays),
      value(program.problem.num_vars(), 0.0),
      held(program.problem.num_vars(), 0),
      program_(program) {}

bool Basis::all_logicals() const {
  const int n = program_.problem.num_cols;
  return std::all_of(header.begin(), header.end(), [n](int j) { return j >= n; });
}

// --- Whole bases ---------------------------------------------------------------------------------

void Basis::set_slack() {
  const int n = program_.problem.num_cols;
  const int m = program_.problem.num_rows;
  for (int j = 0; j < n; ++j) {
    status[j] = nearer_to_zero(program_.lower[j], program_.upper[j]);
    value[j] = 0.0;
  }
  for (int i = 0; i < m; ++i) {
    header[i] = n + i;
    status[n + i] = kBasic;
  }
  number_positions();
}

bool Basis::set(const Vector<int>& given, const double* values) {
  const int num_vars = program_.problem.num_vars();
  assert(static_cast<int>(given.size()) == num_vars);
  bool same = set_;
  int num_basic = 0;
  for (int j = 0; j < num_vars; ++j) {
    const bool basic = given[j] == kBasic;
    num_basic += basic;
    same = same && basic == is_basic(j);
    status[j] = given[j];
    if (basic) continue;
    value[j] = given[j] != kFreeSuper ? 0.0
               : values != nullptr    ? values[j]
                                      : std::clamp(0.0, program_.lower[j], program_.upper[j]);
  }
  if (!same) {
    complete(num_basic);
    int next = 0;
    for (int j = 0; j < num_vars; ++j) {
      if (is_basic(j)) header[next++] = j;
    }
    number_positions();
  }
  return same;
}

/// Missing logicals enter, surplus variables leave from the end.
void Basis::complete(int num_basic) {
  const int n = program_.problem.num_cols;
  const int m = program_.problem.num_rows;
  for (int i = 0; i < m && num_basic < m; ++i) {
    if (is_basic(n + i)) continue;
    status[n + i] = kBasic;
    ++num_basic;
  }
  for (int j = n + m - 1; j >= 0 && num_basic > m; --j) {
    if (!is_basic(j)) continue;
    status[j] = present_status(kAtLower, program_.lower[j], program_.upper[j]);
    value[j] = 0.0;
    --num_basic;
  }
}

void Basis::number_positions() {
  for (std::size_t p = 0; p < header.size(); ++p) position[header[p]] = static_cast<int>(p);
  set_ = true;
}

void Basis::adopt(const Vector<int>& new_header, const Vector<int>& new_status) {
  std::copy(new_header.begin(), new_header.end(), header.begin());
  std::copy(new_status.begin(), new_status.end(), status.begin());
  number_positions();
}

void Basis::apply_repairs(const Vector<BasisRepair>& repairs, SimplexLog& log) {
  for (const BasisRepair& repair : repairs) {
    const int j = repair.leaving;
    if (j < program_.problem.num_cols) {
      log.variable_held(j);
      held[j] = 1;
    } else {
      log.slack_removed();
    }
    status[j] = nearer_to_zero(program_.lower[j], program_.upper[j]);
    value[j] = 0.0;
  }
  // A variable may leave one position and come back at another, so the header has the last word.
  for (std::size_t j = 0; j < status.size(); ++j) {
    if (status[j] != kBasic) continue;
    status[j] = present_status(kAtLower, program_.lower[j], program_.upper[j]);
  }
  for (const int j : header) {
    status[j] = kBasic;
    held[j] = 0;
  }
  number_positions();
  num_held_ = static_cast<int>(std::count(held.begin(), held.end(), 1));
}

void Basis::refresh_all() {
  const int num_vars = program_.problem.num_vars();
  for (int j = 0; j < num_vars; ++j) {
    if (is_basic(j)) {
      move[j] = kStays;
    } else {
      adjust(j);
    }
  }
  refresh_partition();
}

void Basis::refresh_partition() {
  for (int j = 0; j < program_.problem.num_cols; ++j) follow_movement(j);
}

// --- Single variables ----------------------------------------------------------------------------

void Basis::adjust(int j) {
  const double lower = program_.lower[j];
  const double upper = program_.upper[j];
  if (status[j] == kFreeSuper) {
    value[j] = std::clamp(value[j], lower, upper);
    if (value[j] == lower) {
      status[j] = kAtLower;
    } else if (value[j] == upper) {
      status[j] = kAtUpper;
    }
  }
  status[j] = present_status(status[j], lower, upper);
  if (status[j] == kAtLower) {
    value[j] = lower;
    move[j] = kUp;
  } else if (status[j] == kAtUpper) {
    value[j] = upper;
    move[j] = kDown;
  } else {
    move[j] = kAnywhere;
    if (std::isinf(value[j])) value[j] = 0.0;
  }
  if (held[j] || lower == upper) move[j] = kStays;
}

void Basis::refresh(int j) {
  adjust(j);
  follow_movement(j);
}

void Basis::flip(int j) {
  assert(!is_basic(j) && program_.is_boxed(j));
  status[j] = status[j] == kAtLower ? kAtUpper : kAtLower;
  value[j] = status[j] == kAtLower ? program_.lower[j] : program_.upper[j];
  if (move[j] != kStays) move[j] = status[j] == kAtLower ? kUp : kDown;
}

void Basis::exchange(int at, int entering) {
  header[at] = entering;
  position[entering] = at;
  status[entering] = kBasic;
  move[entering] = kStays;
  follow_movement(entering);
}

int Basis::release_held() {
  if (num_held_ == 0) return 0;
  num_held_ = 0;
  int released = 0;
  for (std::size_t k = 0; k < held.size(); ++k) {
    if (!held[k]) continue;
    const int j = static_cast<int>(k);
    held[j] = 0;
    ++released;
    if (!is_basic(j)) refresh(j);
  }
  return released;
}

}  // namespace kelvo
