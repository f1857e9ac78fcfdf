// The texts of the solution status codes.
#pragma once

namespace kelvo {

struct StatusText {
  int code;
  const char* text;        // as callers see it, at most 51 characters
  const char* short_text;  // for logs and reports
};

/// The texts of a code, or null when no status has that code.
const StatusText* find_status_text(int code);

}  // namespace kelvo
