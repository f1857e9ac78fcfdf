#include "written_file.h"

#include <algorithm>
#include <cctype>

namespace kelvo::command {
namespace {

bool ends_in(const std::string& path, const std::string& ending) {
  return path.size() > ending.size() &&
         std::equal(ending.rbegin(), ending.rend(), path.rbegin(), [](char a, unsigned char b) {
           return a == static_cast<char>(std::tolower(b));
         });
}

/// True when the path has this extension, perhaps with that of a compressed file behind it.
bool has_extension(std::string path, const std::string& extension) {
  for (const char* compressed : {".gz", ".bz2"}) {
    if (ends_in(path, compressed)) path.resize(path.rfind('.'));
  }
  return ends_in(path, extension);
}

}  // namespace

bool holds_basis(const std::string& path) {
  return has_extension(path, ".bas");
}

void write_file(Session& session, const std::string& path) {
  KLVenv env = session.env();
  KLVprob problem = session.problem();
  const char* const name = path.c_str();
  session.check(holds_basis(path)             ? KLVmbasewrite(env, problem, name)
                : has_extension(path, ".ord") ? KLVordwrite(env, problem, name)
                                              : KLVwriteprob(env, problem, name, nullptr),
                "cannot write " + path);
}

}  // namespace kelvo::command
