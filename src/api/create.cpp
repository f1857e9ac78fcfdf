// Creating, copying and freeing problems.
#include "api/frame/problem_frame.h"

using namespace kelvo;

KLVprob KLVcreateprob(KLVenv env, int* status_p, const char* name) {
  KLVprob result = nullptr;
  const int code = api_env(env, [&](Environment& environment) -> Status {
    KELVO_TRY(check_pointers(status_p, name));
    Owned<Problem> problem = make_owned<Problem>(environment.root());
    problem->change_name(name);
    result = adopt_problem(environment, std::move(problem));
    return Status();
  });
  if (status_p != nullptr) *status_p = code;
  return result;
}

KLVprob KLVcloneprob(KLVenv env, KLVprob lp, int* status_p) {
  KLVprob result = nullptr;
  const int code = api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(status_p));
    result = adopt_problem(environment, problem.clone());
    return Status();
  });
  if (status_p != nullptr) *status_p = code;
  return result;
}

int KLVfreeprob(KLVenv env, KLVprob* lp_p) {
  if (lp_p == nullptr || *lp_p == nullptr) {
    return api_env(env, [&](Environment&) { return check_pointers(lp_p); });
  }
  return api_problem(env, *lp_p, [&](Environment&, Problem& problem) {
    free_problem(&problem);
    *lp_p = nullptr;
    return Status();
  });
}
