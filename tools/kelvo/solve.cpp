#include "solve.h"

#include <algorithm>
#include <cstdio>

#include "clock.h"
#include "failure.h"
#include "interrupt.h"
#include "method.h"
#include "network.h"
#include "outcome.h"
#include "output_file.h"
#include "parameters.h"
#include "relaxation.h"
#include "session.h"
#include "written_file.h"

namespace kelvo::command {
namespace {

void apply_options(Session& session, const Options& options) {
  read_parameters(session, options.parameter_file, options.settings);
  if (!options.method.empty()) set_integer(session, "LPMETHOD", method_code(options.method));
  if (options.gap) set_real(session, "EPGAP", *options.gap);
  if (options.node_limit) set_integer(session, "NODELIM", *options.node_limit);
  if (options.first) set_integer(session, "INTSOLLIM", 1);
  if (options.threads) set_at_most(session, "THREADS", *options.threads);
  if (!options.write_parameter_file.empty()) {
    session.check(KLVwriteparam(session.env(), options.write_parameter_file.c_str()),
                  "cannot write " + options.write_parameter_file);
  }
}

void read_model(Session& session, const Options& options, Outcome& outcome) {
  session.read(options.model);
  note_sizes(session, outcome);
  char line[128];
  std::snprintf(line, sizeof line, ": %d rows, %d columns, %d nonzeros, read in %.2f s\n",
                *outcome.rows, *outcome.columns, *outcome.nonzeros, seconds_since_start());
  session.say(options.model + line);
}

/// Writes the files that can be written now; that the others can be is found out at once.
void write_files(Session& session, const Options& options, bool solved) {
  for (const std::string& path : options.write_files) {
    if (needs_solve(path) == solved) {
      write_file(session, path);
    } else if (!solved) {
      const OutputFile probe(path);
    }
  }
  if (options.report_file.empty()) return;
  if (solved) {
    write_report(session, options.report_file);
  } else {
    const OutputFile probe(options.report_file);
  }
}

/// Loads a start. Its values become the basis of a linear problem; MIP starts only wait, since the
/// optimizer does not take them yet.
void read_start(Session& session, const std::string& path, Outcome& outcome) {
  KLVenv env = session.env();
  KLVprob problem = session.problem();
  const int before = KLVgetnummipstarts(env, problem);
  session.check(KLVreadcopysol(env, problem, path.c_str()), "cannot read " + path);
  const bool integer = is_mixed_integer(session);
  const bool loaded = integer ? KLVgetnummipstarts(env, problem) > before
                              : KLVgetbase(env, problem, nullptr, nullptr) == 0;
  session.take_errors();  // that there is no basis
  outcome.start = path + (!loaded ? " has no values" : integer ? " loaded, not used" : " loaded");
  session.say("Start: " + outcome.start + "\n");
}

void optimize(Session& session, const Options& options) {
  if (options.time_limit) {
    set_real(session, "TILIM", std::max(0.0, *options.time_limit - seconds_since_start()));
  }
  const bool mixed_integer = is_mixed_integer(session);
  session.check(mixed_integer ? KLVmipopt(session.env(), session.problem())
                              : KLVlpopt(session.env(), session.problem()),
                "cannot solve " + options.model);
}

/// Solves a linear problem; returns the lines of the values file.
std::string solve_problem(Session& session, const Options& options, Outcome& outcome) {
  read_model(session, options, outcome);
  if (options.relax) relax(session);
  if (!options.basis_file.empty()) {
    session.check(KLVreadcopybase(session.env(), session.problem(), options.basis_file.c_str()),
                  "cannot read " + options.basis_file);
  }
  if (!options.start_file.empty()) read_start(session, options.start_file, outcome);
  write_files(session, options, false);
  optimize(session, options);
  note_solution(session, outcome);
  outcome.time = seconds_since_start();
  write_files(session, options, true);
  return outcome.objective ? values(session) : std::string();
}

void run(Session& session, const Options& options, Outcome& outcome,
         const OutputFile& values_file) {
  if (!options.log_file.empty()) session.open_log(options.log_file);
  if (!options.quiet) session.show_on(stdout);
  session.say("Kelvo " + std::string(KLVversion(session.env())) + "\n");
  session.check(KLVsetterminate(session.env(), watch_for_interrupt()), "cannot watch for Ctrl-C");
  apply_options(session, options);
  // A network is solved as one unless a method for linear problems is named.
  const bool network = is_network_file(options.model) && options.method.empty();
  const std::string found =
      network ? solve_network(session, options, outcome) : solve_problem(session, options, outcome);
  const std::string text = summary(outcome);
  session.say(text);
  if (options.quiet) std::fputs(text.c_str() + 1, stdout);
  if (const std::string errors = session.take_errors(); !errors.empty()) {
    std::fprintf(stderr, "kelvo: %s\n", errors.c_str());
  }
  values_file.write(found);
}

}  // namespace

void solve(const Options& options) {
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  const OutputFile json_file(options.json_file);
  const OutputFile values_file(options.values_file);
  Outcome outcome;
  try {
    Session session;
    run(session, options, outcome, values_file);
  } catch (const Failure& failure) {
    outcome.time = seconds_since_start();
    outcome.error = failure.what();
    json_file.write(json(outcome));
    throw;
  }
  json_file.write(json(outcome));
}

}  // namespace kelvo::command
