// The general callbacks and the termination flag.
#include "api/frame/api_frame.h"

namespace kelvo {
namespace {

int set_callback(KLVenv env, CallbackKind kind, KLVcallback function, void* handle) {
  return api_env_unguarded(env, [&](Environment& environment) {
    environment.settings().callback(kind) = {function, handle};
    return Status();
  });
}

int get_callback(KLVenv env, CallbackKind kind, KLVcallback* function_p, void** handle_p) {
  return api_env_unguarded(env, [&](Environment& environment) {
    const Callback& callback = environment.settings().callback(kind);
    if (function_p != nullptr) *function_p = callback.function;
    if (handle_p != nullptr) *handle_p = callback.handle;
    return Status();
  });
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVsetlpcallbackfunc(KLVenv env, KLVcallback function, void* cbhandle) {
  return set_callback(env, CallbackKind::lp, function, cbhandle);
}

int KLVgetlpcallbackfunc(KLVenv env, KLVcallback* function_p, void** cbhandle_p) {
  return get_callback(env, CallbackKind::lp, function_p, cbhandle_p);
}

int KLVsetnetcallbackfunc(KLVenv env, KLVcallback function, void* cbhandle) {
  return set_callback(env, CallbackKind::network, function, cbhandle);
}

int KLVgetnetcallbackfunc(KLVenv env, KLVcallback* function_p, void** cbhandle_p) {
  return get_callback(env, CallbackKind::network, function_p, cbhandle_p);
}

int KLVsettuningcallbackfunc(KLVenv env, KLVcallback function, void* cbhandle) {
  return set_callback(env, CallbackKind::tuning, function, cbhandle);
}

int KLVgettuningcallbackfunc(KLVenv env, KLVcallback* function_p, void** cbhandle_p) {
  return get_callback(env, CallbackKind::tuning, function_p, cbhandle_p);
}

int KLVsetinfocallbackfunc(KLVenv env, KLVcallback function, void* cbhandle) {
  return set_callback(env, CallbackKind::info, function, cbhandle);
}

int KLVgetinfocallbackfunc(KLVenv env, KLVcallback* function_p, void** cbhandle_p) {
  return get_callback(env, CallbackKind::info, function_p, cbhandle_p);
}

int KLVsetmipcallbackfunc(KLVenv env, KLVcallback function, void* cbhandle) {
  return set_callback(env, CallbackKind::mip, function, cbhandle);
}

int KLVgetmipcallbackfunc(KLVenv env, KLVcallback* function_p, void** cbhandle_p) {
  return get_callback(env, CallbackKind::mip, function_p, cbhandle_p);
}

int KLVsetterminate(KLVenv env, volatile int* terminate) {
  return api_env_unguarded(env, [&](Environment& environment) {
    // The stop check reads the int atomically.
    environment.settings().terminate_flag = const_cast<int*>(terminate);
    return Status();
  });
}
