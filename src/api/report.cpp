// Reports of a basic solution.
#include "api/frame/problem_frame.h"
#include "api/frame/text_file.h"
#include "env/params/param_numbers.h"
#include "io/dispatch.h"
#include "io/report/solution_report.h"
#include "prob/solution_access.h"

namespace kelvo {
namespace {

using WriteReport = void (*)(const Problem&, const ReportTolerances&, MessageSink&, FileStream&);

Status write_report(Environment& environment, const Problem& problem, const char* filename,
                    WriteReport write) {
  const bool basic = solution_info(problem).kind == kBasicValues && problem.basis.present;
  if (!basic) return Status::failure(error::kNoBasicSolution);
  KELVO_TRY(check_file_name(filename));
  const ReportTolerances tolerances{environment.get_double(param::EPRHS),
                                    environment.get_double(param::EPOPT)};
  MessageSink& sink = environment.messages();
  return write_text_file(filename, sink,
                         [&](FileStream& stream) { write(problem, tolerances, sink, stream); });
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVwritesol(KLVenv env, KLVprob lp, const char* filename, const char* filetype) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_file_name(filename));
    ReportFormat format = ReportFormat::text;
    KELVO_TRY(report_format(filename, filetype, format));
    const bool text = format == ReportFormat::text;
    return write_report(environment, problem, filename,
                        text ? write_text_report : write_binary_report);
  });
}

int KLVtxtsolwrite(KLVenv env, KLVprob lp, const char* filename) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) {
    return write_report(environment, problem, filename, write_text_report);
  });
}

int KLVbinsolwrite(KLVenv env, KLVprob lp, const char* filename) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) {
    return write_report(environment, problem, filename, write_binary_report);
  });
}
