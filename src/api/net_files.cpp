// Network files and basis files of networks.
#include "api/frame/network_frame.h"
#include "base/file_stream.h"
#include "io/dispatch.h"
#include "io/network_files/network_files.h"
#include "prob/network/network_model.h"

namespace kelvo {
namespace {

bool is_missing(const char* filename) {
  return filename == nullptr || filename[0] == '\0';
}

/// Opens the file and calls read(LineReader&); what comes through a program counts when that has
/// succeeded. `opened` tells whether there was a file.
template <class Read>
Status read_file(const char* filename, const char* extension, MessageSink& sink, bool& opened,
                 Read read) {
  FileStream stream;
  opened = open_input(filename, extension, stream).ok();
  if (!opened) return report_error(sink, error::kCannotReadFile, filename);
  LineReader lines(stream);
  const Status status = read(lines);
  const bool closed = close_file(stream).ok();
  const bool stream_failed = status.code() == error::kCannotReadFile && !status.is_reported();
  if (stream_failed || (status.ok() && !closed)) {
    return report_error(sink, error::kCannotReadFile, filename);
  }
  return status;
}

/// Opens the file, calls write(FileStream&) and closes it.
template <class Write>
Status write_file(const char* filename, MessageSink& sink, Write write) {
  FileStream stream;
  if (!open_output(filename, true, stream).ok()) {
    return report_error(sink, error::kCannotWriteFile, filename);
  }
  write(stream);
  return close_file(stream).ok() ? Status() : report_error(sink, error::kCannotWriteFile, filename);
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVNETreadcopyprob(KLVenv env, KLVnet net, const char* filename) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    KELVO_TRY(check_pointers(filename));
    Network network;
    bool opened = false;
    const Status status = read_file(
        filename, nullptr, environment.messages(), opened,
        [&](LineReader& lines) { return read_network(lines, environment.messages(), network); });
    if (!opened) return status;
    if (!status.ok()) network = {};
    problem.replace(std::move(network));
    return status;
  });
}

int KLVNETwriteprob(KLVenv env, KLVnet net, const char* filename, const char* filetype) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    if (is_missing(filename)) return Status::failure(error::kNoFileName);
    FileFormat format = FileFormat::unknown;
    KELVO_TRY(network_output_format(filename, filetype, format));
    const Network& network = problem.network();
    MessageSink& sink = environment.messages();
    switch (format) {
      case FileFormat::numbered_network:
        return write_file(filename, sink, [&](FileStream& stream) {
          write_numbered_network(network, sink, stream);
        });
      case FileFormat::sectioned_network:
        return write_file(filename, sink, [&](FileStream& stream) {
          write_sectioned_network(network, sink, stream);
        });
      case FileFormat::unknown:
      case FileFormat::lp:
      case FileFormat::rewritten_lp:
      case FileFormat::mps:
      case FileFormat::rewritten_mps:
      case FileFormat::sav:
      case FileFormat::network:
        break;
    }
    return write_model_file(filename, format, environment.settings(), sink,
                            network_to_model(network));
  });
}

int KLVNETreadcopybase(KLVenv env, KLVnet net, const char* filename) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    if (is_missing(filename)) return Status::failure(error::kNoFileName);
    NetworkBasis basis;
    bool opened = false;
    KELVO_TRY(read_file(filename, ".bas", environment.messages(), opened, [&](LineReader& lines) {
      return read_network_basis(lines, problem.network(), environment.messages(), basis);
    }));
    problem.store_basis(std::move(basis));
    return Status();
  });
}

int KLVNETbasewrite(KLVenv env, KLVnet net, const char* filename) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    if (is_missing(filename)) return Status::failure(error::kNoFileName);
    if (!problem.basis.present) return Status::failure(error::kNoBasis);
    return write_file(filename, environment.messages(), [&](FileStream& stream) {
      write_network_basis(problem.network(), problem.basis, problem.solution.iterations, stream);
    });
  });
}
