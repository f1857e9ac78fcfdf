#include "options.h"

#include <CLI/CLI.hpp>

#include "failure.h"
#include "method.h"
#include "session.h"

namespace kelvo::command {
namespace {

constexpr const char* kDescription =
    "Reads a model, solves it, and prints the log and a summary. The format follows from the\n"
    "name: .lp, .mps, .qps, .net, .min, each also with .gz or .bz2 behind it.";

constexpr const char* kFooter =
    "The exit code is 0 when the solve ended with a status of its own (infeasible and limits\n"
    "too), otherwise 1. Ctrl-C stops the solve and shows what is known; a second one ends at\n"
    "once. For --values and --json the file - is standard output.\n"
    "\n"
    "Examples:\n"
    "  kelvo model.mps.gz --time-limit 60\n"
    "  kelvo model.lp --method primal --set scaind=-1 --values solution.txt\n"
    "  kelvo model.lp --write end.bas; kelvo changed.lp --basis end.bas\n"
    "  kelvo convert model.mps model.lp.gz\n"
    "  kelvo params lim";

constexpr const char* kHint = " (kelvo --help shows the options)";

class HelpText : public CLI::Formatter {
 public:
  HelpText() { column_width(24); }

  std::string make_usage(const CLI::App* app, std::string name) const override {
    if (app->get_parent() != nullptr) return CLI::Formatter::make_usage(app, name);
    return "\nUsage:\n  kelvo MODEL [OPTIONS]\n  kelvo info MODEL\n"
           "  kelvo convert IN OUT\n  kelvo params [PATTERN]\n";
  }
};

/// Refuses negative numbers in words of one line.
std::string not_negative(const std::string& text) {
  return !text.empty() && text[0] == '-' ? "'" + text + "' is negative" : std::string();
}

void add_solve_options(CLI::App& app, Options& options) {
  app.add_option("MODEL", options.model, "the model file")->option_text(" ");
  app.add_option("--method", options.method, "how to solve a linear program:\n" + method_names())
      ->option_text("NAME");
  app.add_option("--set", options.settings,
                 "set a parameter (kelvo params lists them);\n"
                 "KLV_PARAM_ may be left out, any case will do")
      ->option_text("NAME=VALUE")
      ->allow_extra_args(false);
  app.add_option("--params", options.parameter_file,
                 "read a parameter file; --set comes on top of it")
      ->option_text("FILE");
  app.add_option("--write-params", options.write_parameter_file,
                 "write the parameters that differ from their defaults")
      ->option_text("FILE");
  app.add_option("--basis", options.basis_file, "start from the basis in a file (.bas)")
      ->option_text("FILE");
  app.add_option("--time-limit", options.time_limit, "stop after so many seconds, reading included")
      ->option_text("S")
      ->check(not_negative);
  app.add_option("--threads", options.threads, "use at most N threads (0: the library's choice)")
      ->option_text("N")
      ->check(not_negative);
  app.add_flag("--relax", options.relax, "drop integrality and the other discrete parts");
  app.add_flag("--quiet", options.quiet, "no log, the summary alone");
  app.add_option("--log", options.log_file, "write the log to a file too")->option_text("FILE");
  app.add_option("--write", options.write_files,
                 "write what the name says: the model (.lp, .mps), the final\n"
                 "basis (.bas), the priority order (.ord); may be repeated")
      ->option_text("FILE")
      ->allow_extra_args(false);
  app.add_option("--values", options.values_file,
                 "write the non-zero values of the solution,\n"
                 "a line 'name value' each")
      ->option_text("FILE");
  app.add_option("--json", options.json_file, "write the outcome as a JSON object")
      ->option_text("FILE");
}

}  // namespace

Options parse_options(int argc, char** argv) {
  Options options;
  CLI::App app(kDescription, "kelvo");
  app.formatter(std::make_shared<HelpText>());
  app.set_version_flag(
      "--version", [] { return "Kelvo " + library_version(); }, "show the version and end");
  app.set_help_flag("-h,--help", "show this help and end");
  add_solve_options(app, options);

  CLI::App* info = app.add_subcommand("info", "show what a model holds, without solving it");
  info->add_option("MODEL", options.model, "the model file")->option_text(" ");
  CLI::App* convert =
      app.add_subcommand("convert", "write a model in the format that the new name says");
  convert->add_option("IN", options.model, "the model file")->option_text(" ")->required();
  convert->add_option("OUT", options.output, "the file to write")->option_text(" ")->required();
  CLI::App* params = app.add_subcommand("params", "list the parameters");
  params
      ->add_option("PATTERN", options.pattern,
                   "a part of the name, or a pattern with * and ?; any case")
      ->option_text(" ");
  app.require_subcommand(0, 1);
  app.footer(kFooter);  // after the subcommands, which would take it over

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& request) {  // help and version
    app.exit(request);
    options.action = Options::Action::done;
    return options;
  } catch (const CLI::ParseError& error) {
    throw Failure(error.what() + std::string(kHint));
  }
  if (info->parsed()) {
    options.action = Options::Action::info;
  } else if (convert->parsed()) {
    options.action = Options::Action::convert;
  } else if (params->parsed()) {
    options.action = Options::Action::params;
    return options;
  }
  if (options.model.empty()) throw Failure(std::string("no model file given") + kHint);
  return options;
}

}  // namespace kelvo::command
