// Model files.
#include "api/frame/problem_frame.h"
#include "io/dispatch.h"

using namespace kelvo;

namespace {

int write_as(KLVenv env, KLVprob lp, const char* filename, FileFormat format) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    return write_model_file(filename, format, environment.settings(), environment.messages(),
                            problem.model());
  });
}

}  // namespace

extern "C" {

int KLVreadcopyprob(KLVenv env, KLVprob lp, const char* filename, const char* filetype) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (filename == nullptr) return Status::failure(error::kNullPointer);
    Model model;
    KELVO_TRY(
        read_model_file(filename, filetype, environment.settings(), environment.messages(), model));
    problem.replace_model(std::move(model));
    return {};
  });
}

int KLVwriteprob(KLVenv env, KLVprob lp, const char* filename, const char* filetype) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (filename == nullptr || filename[0] == '\0') return Status::failure(error::kNoFileName);
    FileFormat format = FileFormat::unknown;
    KELVO_TRY(output_format(filename, filetype, format));
    return write_model_file(filename, format, environment.settings(), environment.messages(),
                            problem.model());
  });
}

int KLVmpswrite(KLVenv env, KLVprob lp, const char* filename) {
  return write_as(env, lp, filename, FileFormat::mps);
}

int KLVmpsrewrite(KLVenv env, KLVprob lp, const char* filename) {
  return write_as(env, lp, filename, FileFormat::rewritten_mps);
}

int KLVlpwrite(KLVenv env, KLVprob lp, const char* filename) {
  return write_as(env, lp, filename, FileFormat::lp);
}

// No function of the library makes a conflict yet.
int KLVclpwrite(KLVenv env, KLVprob lp, const char* filename) {
  return api_read(env, lp, [&](Environment&, Problem&) -> Status {
    const bool named = filename != nullptr && filename[0] != '\0';
    return Status::failure(named ? error::kNoConflict : error::kNoFileName);
  });
}

int KLVlprewrite(KLVenv env, KLVprob lp, const char* filename) {
  return write_as(env, lp, filename, FileFormat::rewritten_lp);
}

}  // extern "C"
