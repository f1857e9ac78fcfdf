// kelvo: solves a model from the command line.
#include <cstdio>
#include <exception>

#include "convert.h"
#include "failure.h"
#include "info.h"
#include "options.h"
#include "parameters.h"
#include "session.h"
#include "solve.h"

int main(int argc, char** argv) {
  using namespace kelvo::command;
  try {
    const Options options = parse_options(argc, argv);
    switch (options.action) {
      case Options::Action::solve:
        solve(options);
        break;
      case Options::Action::info:
        show_info(options.model);
        break;
      case Options::Action::convert:
        convert(options.model, options.output);
        break;
      case Options::Action::params: {
        Session session;
        read_parameters(session, options.parameter_file, options.settings);
        list_parameters(session, options.list);
        break;
      }
      case Options::Action::done:
        break;
    }
    return 0;
  } catch (const std::exception& failure) {
    std::fflush(stdout);
    std::fprintf(stderr, "kelvo: %s\n", failure.what());
    return 1;
  }
}
