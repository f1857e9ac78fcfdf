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

bool needs_solve(const std::string& path) {
  return has_extension(path, ".bas") || has_extension(path, ".sol") || has_extension(path, ".mst");
}

void write_file(Session& session, const std::string& path) {
  const char* const name = path.c_str();
  int (*write)(KLVenv, KLVprob, const char*) = [](KLVenv env, KLVprob problem, const char* file) {
    return KLVwriteprob(env, problem, file, nullptr);
  };
  if (has_extension(path, ".bas")) write = KLVmbasewrite;
  if (has_extension(path, ".ord")) write = KLVordwrite;
  if (has_extension(path, ".sol")) write = KLVsolwrite;
  if (has_extension(path, ".mst")) write = KLVmstwrite;
  session.check(write(session.env(), session.problem(), name), "cannot write " + path);
}

void write_report(Session& session, const std::string& path) {
  const char* const type =
      has_extension(path, ".bin") ? KLV_FILETYPE_BINARY_REPORT : KLV_FILETYPE_TEXT_REPORT;
  session.check(KLVwritesol(session.env(), session.problem(), path.c_str(), type),
                "cannot write " + path);
}

}  // namespace kelvo::command
