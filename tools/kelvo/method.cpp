#include "method.h"

#include "failure.h"
#include "kelvo.h"

namespace kelvo::command {
namespace {

struct Method {
  const char* name;
  int code;
};

constexpr Method kMethods[] = {
    {"auto", KLV_METHOD_AUTOMATIC},
    {"primal", KLV_METHOD_PRIMAL},
    {"dual", KLV_METHOD_DUAL},
};

}  // namespace

std::string method_names() {
  std::string names;
  for (const Method& method : kMethods)
    names += (names.empty() ? "" : ", ") + std::string(method.name);
  return names;
}

int method_code(const std::string& name) {
  for (const Method& method : kMethods) {
    if (name == method.name) return method.code;
  }
  throw Failure("--method: no method '" + name + "'; there are " + method_names());
}

}  // namespace kelvo::command
