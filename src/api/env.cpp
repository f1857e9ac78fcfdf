// Environments: open, close, children, and what the environment knows about itself.
#include "api/frame/api_frame.h"
#include "env/params/override_file.h"
#include "env/version.h"

namespace kelvo {
namespace {

Status close_environment(Environment& environment) {
  if (environment.parent() != nullptr) return Status::failure(error::kCloseOfChild);
  Owned<Environment> owned(&environment);
  return Status();
}

Status make_child(Environment& environment, KLVenv& child) {
  if (environment.parent() != nullptr) return Status::failure(error::kChildOfChild);
  if (environment.num_children() >= environment.thread_cap()) {
    return Status::failure(error::kThreadLimit);
  }
  child = to_handle(environment.add_child());
  return Status();
}

Status free_child(Environment& environment, KLVenv* child_p) {
  KELVO_TRY(check_pointers(child_p));
  if (*child_p == nullptr) return Status();
  Environment* const child = to_environment(*child_p);
  if (child == nullptr || child->parent() != &environment) {
    return Status::failure(error::kBadArgument);
  }
  Owned<Environment> owned(child);
  *child_p = nullptr;
  return Status();
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

KLVenv KLVopenKELVO(int* status_p) {
  KLVenv result = nullptr;
  const Status status = run_guarded([&]() -> Status {
    KELVO_TRY(check_pointers(status_p));
    Owned<Environment> environment = make_owned<Environment>();
    apply_override_file(*environment);
    result = to_handle(environment.release());
    return Status();
  });
  if (status_p != nullptr) *status_p = status.code();
  return result;
}

int KLVcloseKELVO(KLVenv* env_p) {
  Environment* const environment = env_p != nullptr ? to_environment(*env_p) : nullptr;
  if (environment == nullptr) return error::kNoEnvironment;
  Status status = check_callback_guard(resolve_root(*environment));
  if (status.ok()) status = close_environment(*environment);
  if (!status.ok()) return record_error(*environment, status);
  *env_p = nullptr;
  return 0;
}

KLVenv KLVparenv(KLVenv env, int* status_p) {
  KLVenv child = nullptr;
  const int code = api_env(env, [&](Environment& environment) -> Status {
    KELVO_TRY(check_pointers(status_p));
    return make_child(environment, child);
  });
  if (status_p != nullptr) *status_p = code;
  return child;
}

int KLVfreeparenv(KLVenv env, KLVenv* child_p) {
  return api_env(env, [&](Environment& environment) { return free_child(environment, child_p); });
}

const char* KLVversion(KLVenv env) {
  const char* const none = nullptr;
  return api_env_value(env, none, [](Environment&, const char*& version) {
    version = kVersion;
    return Status();
  });
}

char* KLVgeterrorstring(KLVenv, int code, char* buffer) {
  return buffer != nullptr && error_line(code, buffer) ? buffer : nullptr;
}

int KLVEsetJNI(KLVenv env, void* host) {
  return api_env(env, [&](Environment& environment) {
    environment.host = host;
    return Status();
  });
}

void* KLVEgetJNI(KLVenv env) {
  void* const none = nullptr;
  return api_env_value(env, none, [](Environment& environment, void*& host) {
    host = environment.host;
    return Status();
  });
}

int KLVEgetThreadNumber(KLVenv env) {
  return api_env_value(env, 0, [](Environment& environment, int& number) {
    number = environment.thread_number();
    return Status();
  });
}

double KLVEgetbigreal(KLVenv env) {
  return api_env_value(env, 0.0, [](Environment&, double& value) {
    value = kNoLimit;
    return Status();
  });
}
