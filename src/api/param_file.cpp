// Parameter files.
#include "env/params/param_file.h"

#include "api/frame/api_frame.h"

using namespace kelvo;

int KLVreadcopyparam(KLVenv env, const char* filename) {
  return api_env(env, [&](Environment& environment) -> Status {
    KELVO_TRY(check_pointers(filename));
    return read_parameter_file(environment, filename);
  });
}

int KLVwriteparam(KLVenv env, const char* filename) {
  return api_env(env, [&](Environment& environment) {
    return write_parameter_file(environment, filename, ParameterFileUse::settings);
  });
}

int KLVEwriteparam(KLVenv env, const char* filename) {
  return api_env(env, [&](Environment& environment) {
    return write_parameter_file(environment, filename, ParameterFileUse::snapshot);
  });
}
