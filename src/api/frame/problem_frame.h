// The frame of exported functions that take an environment and a problem: the steps of
// api/frame/api_frame.h with the membership and validity of the problem between them.
//
//   api_edit     changes the problem: a view is refused with 1023
//   api_read     reads it: a view is followed (1009 when it shows nothing), the batch is merged
//   api_problem  neither: the problem as it was handed in
//   api_count    reads without merging and returns a value
//
// A body is called as body(Environment&, Problem&) -> Status, where the environment is the one the
// caller handed in (its channels take the messages, its parameters count) and the problem may
// belong to the environment's root. api_count's body returns the value.
#pragma once

#include "api/frame/api_frame.h"
#include "prob/problem.h"

namespace kelvo {

inline KLVprob to_handle(Problem* problem) {
  return reinterpret_cast<KLVprob>(problem);
}

/// The problem behind a handle, or null.
inline Problem* to_problem(KLVprob handle) {
  auto* const problem = reinterpret_cast<Problem*>(handle);
  return problem != nullptr && problem->is_valid() ? problem : nullptr;
}

/// Makes a problem an object of the environment through which it was created and hands it out.
KLVprob adopt_problem(Environment& environment, Owned<Problem> problem);

/// Frees a problem with everything it owns and takes it out of its environment's books.
void free_problem(Problem* problem) noexcept;

/// Steps 3 to 5 for a problem; 1009 when it is null.
inline Status check_problem(Environment& environment, const Problem* problem) {
  const Caller caller = resolve_root(environment);
  if (problem != nullptr) KELVO_TRY(check_membership(caller, &problem->environment()));
  KELVO_TRY(check_callback_guard(caller));
  return problem != nullptr ? Status() : Status::failure(error::kNoProblem);
}

template <class Body>
int api_problem(KLVenv env, KLVprob lp, Body&& body) noexcept {
  Environment* const environment = to_environment(env);
  if (environment == nullptr) return error::kNoEnvironment;
  Problem* const problem = to_problem(lp);
  return record_error(*environment, run_guarded([&]() -> Status {
    KELVO_TRY(check_problem(*environment, problem));
    return body(*environment, *problem);
  }));
}

template <class Body>
int api_edit(KLVenv env, KLVprob lp, Body&& body) noexcept {
  return api_problem(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (problem.is_view()) return Status::failure(error::kNotSingleProblem);
    return body(environment, problem);
  });
}

template <class Body>
int api_read(KLVenv env, KLVprob lp, Body&& body) noexcept {
  return api_problem(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    Problem* const shown = problem.resolve_view();
    if (shown == nullptr) return Status::failure(error::kNoProblem);
    shown->merge_pending();
    return body(environment, *shown);
  });
}

/// body(Problem&) -> T; `failure` when a check fails.
template <class T, class Body>
T api_count(KLVenv env, KLVprob lp, T failure, Body&& body) noexcept {
  T value = failure;
  const int code = api_problem(env, lp, [&](Environment&, Problem& problem) -> Status {
    Problem* const shown = problem.resolve_view();
    if (shown == nullptr) return Status::failure(error::kNoProblem);
    value = static_cast<T>(body(*shown));
    return Status();
  });
  return code == 0 ? value : failure;
}

}  // namespace kelvo
