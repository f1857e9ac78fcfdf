#include "api/frame/api_frame.h"

#include <cstdio>

#include "env/params/param_numbers.h"

namespace kelvo {
namespace {

bool is_presolve_outcome(int code) {
  return code == error::kPresolveInfeasibleOrUnbounded || code == error::kPresolveAborted ||
         code == error::kPresolveInfeasible || code == error::kPresolveUnbounded ||
         code == error::kPresolveTimeLimit;
}

}  // namespace

int record_error(Environment& environment, Status status) noexcept {
  const int code = status.code();
  if (status.ok() || status.is_reported()) return code;
  if (is_presolve_outcome(code) && environment.get_int(param::PRINT_PRESOLVE_OUTCOMES) == 0) {
    return code;
  }
  char text[kMessageSize];
  if (!error_line(code, text)) {
    std::snprintf(text, sizeof text, "KELVO Error %5d:  Unknown error code.\n", code);
  }
  environment.messages().send(Channel::error, text);
  return code;
}

Status check_index_range(Environment& environment, const char* function, int begin, int end,
                         int lowest, int n) {
  bool legal = true;
  if (begin < lowest) {
    (void)report(environment, error::kBeginTooSmall, function, begin, lowest);
    legal = false;
  }
  if (end > n - 1) {
    (void)report(environment, error::kEndTooBig, function, end, n - 1);
    legal = false;
  }
  return legal ? Status() : Status::failure(error::kIndexRange);
}

}  // namespace kelvo
