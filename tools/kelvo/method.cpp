#include "method.h"

#include "failure.h"

namespace kelvo::command {
namespace {

struct Method {
  const char* name;
  int code;    // of the parameter LPMETHOD
  bool built;  // this version has it
};

constexpr Method kMethods[] = {
    {"auto", 0, true},     {"primal", 1, true},   {"dual", 2, true},        {"network", 3, false},
    {"barrier", 4, false}, {"sifting", 5, false}, {"concurrent", 6, false},
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
    if (name != method.name) continue;
    if (!method.built) throw Failure("--method " + name + ": this version does not have it yet");
    return method.code;
  }
  throw Failure("--method: no method '" + name + "'; there are " + method_names());
}

}  // namespace kelvo::command
