// The settings of an environment: the value of every parameter, and beside them what else travels
// from a parent to its child environments: the callbacks, the termination flag and the log file.
//
// A Settings record is a plain value. Copying it is how a child starts, how a parameter file is
// tried out before it takes effect, and how saved values come back.
#pragma once

#include <cstdio>

#include "base/status.h"
#include "env/params/param_table.h"

struct klv_env;

namespace kelvo {

/// The general callbacks; each kind has one slot.
enum class CallbackKind { lp, network, tuning, info, mip };
inline constexpr int kNumCallbackKinds = 5;

/// (environment, callback data, where-from code, the caller's handle) -> 0 to go on.
using CallbackFunction = int (*)(klv_env*, void*, int, void*);

struct Callback {
  CallbackFunction function = nullptr;
  void* handle = nullptr;
};

class Settings {
 public:
  /// All defaults; no callback, no termination flag, no log file. `processors` is the maximum of
  /// the thread parameters (at least 1).
  explicit Settings(int processors);

  /// Every parameter back to its default. Leaves callbacks, termination flag and log file alone.
  void reset_parameters();

  // Reading by number. The number must belong to a parameter of that kind.
  int get_int(int number) const { return values_[param_row(number)].integer; }
  double get_double(int number) const { return values_[param_row(number)].real; }
  const char* get_text(int number) const { return texts_[values_[param_row(number)].integer]; }

  /// Changes a parameter after the checks: 1013 no such parameter of that kind, 1014/1015 out of
  /// bounds, 1807 in conflict with the polishing parameters. On failure nothing changes.
  Status set_int(int number, int value);
  Status set_double(int number, double value);
  /// At most 511 characters are kept.
  Status set_text(int number, const char* value);
  /// What set_int would answer, without the change.
  Status check_int(int number, int value) const;
  Status check_double(int number, double value) const;

  /// Maximum of an integer parameter.
  int int_max(const ParamRow& row) const {
    return row.up_to_processors ? processors_ : row.int_max;
  }

  /// True when the parameter of this row differs from its default; a NaN always does.
  bool is_changed(int row) const;

  Callback& callback(CallbackKind kind) { return callbacks_[static_cast<int>(kind)]; }
  const Callback& callback(CallbackKind kind) const { return callbacks_[static_cast<int>(kind)]; }

  int* terminate_flag = nullptr;  // the caller's int; another thread may set it at any time
  std::FILE* log_file = nullptr;  // the caller's file, see set_log_file

 private:
  union Value {
    int integer;  // for a text: its place in texts_
    double real;
  };

  bool polish_after_in_use() const;
  bool conflicts_with_polishing(int number, double value) const;

  Value values_[kNumParams];                    // by row of the parameter table
  char texts_[kNumTextParams][kParamTextSize];  // in the order of the table
  Callback callbacks_[kNumCallbackKinds];
  int processors_;
};

}  // namespace kelvo
