#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>

#include "failure.h"
#include "method.h"
#include "session.h"

namespace kelvo::command {
namespace {

constexpr const char* kDescription =
    "Reads a model, solves it, and prints the log and a summary. The format follows from the\n"
    "name: .lp, .mps or .qps, or .net or .min for a network, each also with .gz or .bz2 behind it.";

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
    "  kelvo params tolerance";

constexpr const char* kHint = " (kelvo --help shows the options)";

class HelpText : public CLI::Formatter {
 public:
  HelpText() {
    column_width(24);
    label("Positionals", "Arguments");
    label("Subcommands", "Other commands");
  }

  std::string make_usage(const CLI::App* app, std::string name) const override {
    if (app->get_parent() == nullptr) {
      return "\nUsage:\n  kelvo MODEL [OPTIONS]\n  kelvo info MODEL\n"
             "  kelvo convert IN OUT\n  kelvo params [TEXT] [OPTIONS]\n";
    }
    std::string usage = "\nUsage:\n  " + name;
    for (const CLI::Option* option : app->get_options()) {
      if (!option->get_positional()) continue;
      const std::string& word = option->get_name(true);
      usage += option->get_required() ? " " + word : " [" + word + "]";
    }
    return usage + (app->get_options().size() > 3 ? " [OPTIONS]\n" : "\n");
  }
};

/// Refuses negative numbers in words of one line.
std::string not_negative(const std::string& text) {
  return !text.empty() && text[0] == '-' ? "'" + text + "' is negative" : std::string();
}

/// The same for all that is no count; an option outside the help has no name in other messages.
std::string is_thread_count(const std::string& text) {
  const bool digits = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
  return digits && text.size() < 10 ? "" : "--threads: '" + text + "' is no number of threads";
}

void add_parameter_options(CLI::App& app, Options& options) {
  app.add_option("--set", options.settings,
                 "set a parameter (kelvo params lists them);\n"
                 "KLV_PARAM_ may be left out, any case will do")
      ->option_text("NAME=VALUE")
      ->allow_extra_args(false);
  app.add_option("--params", options.parameter_file,
                 "read a parameter file; --set comes on top of it")
      ->option_text("FILE");
}

void add_solve_options(CLI::App& app, Options& options) {
  app.add_option("MODEL", options.model, "the model file")->option_text(" ");
  app.add_option("--method", options.method, "how to solve a linear program:\n" + method_names())
      ->option_text("NAME");
  add_parameter_options(app, options);
  app.add_option("--write-params", options.write_parameter_file,
                 "write the parameters that differ from their defaults")
      ->option_text("FILE");
  app.add_option("--basis", options.basis_file, "start from the basis in a file (.bas)")
      ->option_text("FILE");
  app.add_option("--start", options.start_file,
                 "start from the values in a solution or MIP-start file\n(.sol, .mst)")
      ->option_text("FILE")
      ->excludes("--basis");
  app.add_option("--time-limit", options.time_limit, "stop after so many seconds, reading included")
      ->option_text("S")
      ->check(not_negative);
  app.add_option("--threads", options.threads)
      ->group("")  // no optimizer of this version works with several threads
      ->check(is_thread_count);
  app.add_option("--gap", options.gap, "stop an integer search at this relative gap")
      ->option_text("G")
      ->check(not_negative);
  app.add_option("--node-limit", options.node_limit, "stop an integer search after so many nodes")
      ->option_text("N")
      ->check(CLI::NonNegativeNumber);
  app.add_flag("--first", options.first, "stop an integer search at its first solution");
  app.add_flag("--relax", options.relax, "drop integrality and the other discrete parts");
  app.add_flag("--quiet", options.quiet, "no log, the summary alone");
  app.add_option("--log", options.log_file, "write the log to a file too")->option_text("FILE");
  app.add_option("--write", options.write_files,
                 "write what the name says: the model (.lp, .mps), the\n"
                 "solution (.sol), the final basis (.bas), the priority order\n"
                 "(.ord); may be repeated")
      ->option_text("FILE")
      ->allow_extra_args(false);
  app.add_option("--report", options.report_file,
                 "write the basic solution as a table of rows and columns\n"
                 "(binary when the name ends in .bin)")
      ->option_text("FILE");
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
  info->add_option("MODEL", options.model, "the model file")->option_text(" ")->required();
  CLI::App* convert =
      app.add_subcommand("convert", "write a model in the format that the new name says");
  convert->add_option("IN", options.model, "the model file")->option_text(" ")->required();
  convert->add_option("OUT", options.output, "the file to write")->option_text(" ")->required();
  CLI::App* params = app.add_subcommand("params", "list the parameters: value, range and meaning");
  params
      ->add_option("TEXT", options.list.pattern,
                   "part of the name or the meaning, or a name with * and ?;\nany case")
      ->option_text(" ");
  params->add_flag("--changed", options.list.changed, "only those that differ from their defaults");
  params->add_flag("--all", options.list.every, "also those that this version does not use yet");
  add_parameter_options(*params, options);
  app.require_subcommand(0, 1);
  app.footer(kFooter);  // after the subcommands, which would take it over

  if (argc == 1) {
    std::fputs(app.help().c_str(), stdout);
    options.action = Options::Action::done;
    return options;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& request) {  // help and version
    app.exit(request);
    options.action = Options::Action::done;
    return options;
  } catch (const CLI::ExtrasError&) {
    const std::vector<std::string> left = app.remaining(true);
    const auto is_option = [](const std::string& word) { return word[0] == '-'; };
    const auto found = std::find_if(left.begin(), left.end(), is_option);
    const std::string& word = found != left.end() ? *found : left.front();
    throw Failure((is_option(word) ? "no option '" : "one argument too many: '") + word + "'" +
                  kHint);
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
