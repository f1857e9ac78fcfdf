// Basis files.
#include "api/frame/problem_frame.h"
#include "base/file_stream.h"
#include "io/basis/basis_file.h"

using namespace kelvo;

namespace {

/// Reads the file into `basis`; what comes through a program counts when that has succeeded.
Status read_basis_file(const char* filename, const Model& model, MessageSink& sink,
                       StoredBasis& basis) {
  FileStream stream;
  if (!open_input(filename, ".bas", stream).ok()) {
    return report_error(sink, error::kCannotReadFile, filename);
  }
  LineReader lines(stream);
  const Status status = read_basis(lines, model, sink, basis);
  const bool closed = close_file(stream).ok();
  const bool stream_failed = status.code() == error::kCannotReadFile && !status.is_reported();
  if (stream_failed || (status.ok() && !closed)) {
    return report_error(sink, error::kCannotReadFile, filename);
  }
  return status;
}

}  // namespace

extern "C" {

int KLVreadcopybase(KLVenv env, KLVprob lp, const char* filename) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (filename == nullptr || filename[0] == '\0') return Status::failure(error::kNoFileName);
    problem.merge_pending();
    StoredBasis basis;
    KELVO_TRY(read_basis_file(filename, problem.model(), environment.messages(), basis));
    problem.store_start_basis(std::move(basis));
    return {};
  });
}

int KLVmbasewrite(KLVenv env, KLVprob lp, const char* filename) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (filename == nullptr || filename[0] == '\0') return Status::failure(error::kNoFileName);
    if (!problem.basis.present) return Status::failure(error::kNoBasis);
    MessageSink& sink = environment.messages();
    KELVO_TRY(check_basis_size(problem.model(), problem.basis, sink));
    FileStream stream;
    if (!open_output(filename, true, stream).ok()) {
      return report_error(sink, error::kCannotWriteFile, filename);
    }
    const int iterations =
        problem.solution_status != kNoSolution ? problem.solution.iterations : -1;
    write_basis(problem.model(), problem.basis, iterations, sink, stream);
    if (close_file(stream).ok()) return {};
    return report_error(sink, error::kCannotWriteFile, filename);
  });
}

}  // extern "C"
