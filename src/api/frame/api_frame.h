// The frame of every exported function, in the order of its steps:
//
//   1. the environment handle is valid                                       1002, not printed
//   2. its root, and the largest thread number on the way there
//   3. an object passed in belongs to that root                              1806
//   4. no informational callback is running, unless in a worker's call       1804
//   5. the object is valid (the module that owns its kind knows how)         1009, 1023
//   6., 7. the function's own argument checks and its work: the body
//   8. a failure is printed on the error channel, unless that has happened
//   9. the code, or the function's value, is returned
//
// Functions with an environment alone are written with api_env, api_env_value and
// api_env_unguarded; the module of the problem builds its own wrappers from the same pieces. A body
// returns a Status; std::bad_alloc becomes 1001 here and nowhere else.
#pragma once

#include <algorithm>
#include <new>
#include <utility>

#include "base/error_code.h"
#include "base/status.h"
#include "env/environment.h"
#include "env/error_table.h"
#include "kelvo.h"

namespace kelvo {

inline KLVenv to_handle(Environment* environment) {
  return reinterpret_cast<KLVenv>(environment);
}

inline KLVchannel to_handle(MessageChannel* channel) {
  return reinterpret_cast<KLVchannel>(channel);
}

inline MessageChannel* to_channel(KLVchannel channel) {
  return reinterpret_cast<MessageChannel*>(channel);
}

/// Step 1: the environment behind a handle, or null.
inline Environment* to_environment(KLVenv handle) {
  auto* const environment = reinterpret_cast<Environment*>(handle);
  return environment != nullptr && environment->is_valid() ? environment : nullptr;
}

/// Step 2: where a call comes from.
struct Caller {
  Environment* root;
  int thread_number;  // the largest on the way from the handle to the root
};

inline Caller resolve_root(Environment& environment) {
  Caller caller{&environment, environment.thread_number()};
  while (caller.root->parent() != nullptr) {
    caller.root = caller.root->parent();
    caller.thread_number = std::max(caller.thread_number, caller.root->thread_number());
  }
  return caller;
}

/// Step 3, for an object whose root environment is given.
inline Status check_membership(const Caller& caller, const Environment* object_root) {
  return object_root == caller.root ? Status() : Status::failure(error::kForeignProblem);
}

/// Step 4.
inline Status check_callback_guard(const Caller& caller) {
  return caller.root->in_info_callback && caller.thread_number == 0
             ? Status::failure(error::kCallFromInfoCallback)
             : Status();
}

/// Steps 6 and 7: runs a body; running out of memory is a failure like any other.
template <class Body>
Status run_guarded(Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (const std::bad_alloc&) {
    return Status::failure(error::kOutOfMemory);
  }
}

/// Step 8: prints a failure that nobody has printed yet, and returns the code. Outcomes of presolve
/// (1101, 1106, 1117, 1118, 1123) are printed only while parameter 1043 is not 0.
int record_error(Environment& environment, Status status) noexcept;

/// Part of step 6: checks the range begin..end over lowest..n-1 and prints 1205 or 1206 with the
/// exported function's name; the failure is 1200. The empty range end = begin - 1 passes.
Status check_index_range(Environment& environment, const char* function, int begin, int end,
                         int lowest, int n);

/// Part of step 6: 1004 when any of the pointers is null.
template <class... Pointers>
Status check_pointers(const Pointers*... pointers) {
  return ((pointers != nullptr) && ...) ? Status() : Status::failure(error::kNullPointer);
}

/// Prints the text of a code, completed with its arguments, on the environment's error channel.
template <class... Args>
Status report(Environment& environment, int code, Args... args) {
  return report_error(environment.messages(), code, args...);
}

/// The frame of a function with an environment: body(Environment&) -> Status.
template <class Body>
int api_env(KLVenv handle, Body&& body) noexcept {
  Environment* const environment = to_environment(handle);
  if (environment == nullptr) return error::kNoEnvironment;
  return record_error(*environment, run_guarded([&]() -> Status {
    KELVO_TRY(check_callback_guard(resolve_root(*environment)));
    return body(*environment);
  }));
}

/// The frame of a function that returns a value: body(Environment&, T& value) -> Status. The value
/// starts as `failure` and is returned as such when the status is a failure.
template <class T, class Body>
T api_env_value(KLVenv handle, T failure, Body&& body) noexcept {
  T value = failure;
  const int code =
      api_env(handle, [&](Environment& environment) { return body(environment, value); });
  return code == 0 ? value : failure;
}

/// The short frame of functions that check the environment only and print nothing.
template <class Body>
int api_env_unguarded(KLVenv handle, Body&& body) noexcept {
  Environment* const environment = to_environment(handle);
  if (environment == nullptr) return error::kNoEnvironment;
  return run_guarded([&] { return body(*environment); }).code();
}

}  // namespace kelvo
