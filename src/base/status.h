// Failure codes carried through the library.
//
// A Status says whether an operation failed, with which code of the error table, and whether its
// message has been printed already (then the API frame prints nothing more). Results of algorithms
// such as "infeasible" or "limit reached" are values, never statuses.
#pragma once

namespace kelvo {

class [[nodiscard]] Status {
 public:
  /// Success.
  constexpr Status() = default;
  /// A failure that nobody has printed yet.
  static constexpr Status failure(int code) { return Status(code, false); }
  /// A failure whose message is already on the error channel.
  static constexpr Status reported(int code) { return Status(code, true); }

  constexpr bool ok() const { return code_ == 0; }
  constexpr int code() const { return code_; }
  constexpr bool is_reported() const { return reported_; }

 private:
  constexpr Status(int code, bool reported) : code_(code), reported_(reported) {}
  int code_ = 0;
  bool reported_ = false;
};

}  // namespace kelvo

/// Returns from the enclosing function when the expression is a failed Status.
#define KELVO_TRY(expression)                                                           \
  do {                                                                                  \
    if (::kelvo::Status try_status = (expression); !try_status.ok()) return try_status; \
  } while (false)
