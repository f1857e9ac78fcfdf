#include "network.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

#include "clock.h"
#include "failure.h"
#include "parameters.h"

namespace kelvo::command {
namespace {

using Query = int (*)(KLVenv, KLVnet, double*, int, int);

std::vector<double> read_numbers(Session& session, Query query, int count) {
  std::vector<double> values(static_cast<std::size_t>(count));
  if (count > 0) {
    session.check(query(session.env(), session.network(), values.data(), 0, count - 1),
                  "cannot read the network");
  }
  return values;
}

/// Names of all arcs, in order; empty when the network has none.
std::vector<std::string> arc_names(Session& session, int count) {
  int surplus = 0;
  if (count == 0 || KLVNETgetarcname(session.env(), session.network(), nullptr, nullptr, 0,
                                     &surplus, 0, count - 1) != KLV_ERROR_INSUFFICIENT_LENGTH) {
    (void)session.take_errors();
    return {};
  }
  std::vector<char> store(static_cast<std::size_t>(-surplus));
  std::vector<char*> names(static_cast<std::size_t>(count));
  session.check(KLVNETgetarcname(session.env(), session.network(), names.data(), store.data(),
                                 -surplus, &surplus, 0, count - 1),
                "cannot read the names of the arcs");
  return {names.begin(), names.end()};
}

std::string flows(Session& session) {
  const int count = KLVNETgetnumarcs(session.env(), session.network());
  const std::vector<double> x = read_numbers(session, KLVNETgetx, count);
  const std::vector<std::string> names = arc_names(session, count);
  std::string text;
  for (std::size_t a = 0; a < x.size(); ++a) {
    if (x[a] == 0.0) continue;
    char value[40];
    std::snprintf(value, sizeof value, " %.17g\n", x[a]);
    text += names.empty() ? "a" + std::to_string(a + 1) : names[a];
    text += value;
  }
  return text;
}

void write(Session& session, const std::string& path) {
  const bool basis = path.size() > 4 && path.compare(path.size() - 4, 4, ".bas") == 0;
  session.check(basis ? KLVNETbasewrite(session.env(), session.network(), path.c_str())
                      : KLVNETwriteprob(session.env(), session.network(), path.c_str(), nullptr),
                "cannot write " + path);
}

void note_solution_of_network(Session& session, Outcome& outcome) {
  KLVenv env = session.env();
  KLVnet network = session.network();
  outcome.status = KLVNETgetstat(env, network);
  char text[64] = "";
  KLVgetstatstring(env, *outcome.status, text);
  outcome.status_string = text;
  outcome.iterations = KLVNETgetitcnt(env, network);
  int feasible = 0;
  double objective = 0.0;
  session.check(KLVNETsolninfo(env, network, &feasible, nullptr), "cannot read the solution");
  if (feasible == 0) return;
  session.check(KLVNETgetobjval(env, network, &objective), "cannot read the objective");
  outcome.objective = objective;
}

/// "name  least .. largest magnitude" of the numbers that are finite and not zero.
void print_range(const char* name, const std::vector<std::vector<double>>& groups) {
  double least = std::numeric_limits<double>::infinity(), largest = 0.0;
  for (const std::vector<double>& values : groups) {
    for (const double value : values) {
      const double magnitude = std::fabs(value);
      if (magnitude == 0.0 || !(magnitude < KLV_INFINITY)) continue;
      least = std::min(least, magnitude);
      largest = std::max(largest, magnitude);
    }
  }
  if (largest == 0.0) {
    std::printf("  %-15s none but zero\n", name);
  } else {
    std::printf("  %-15s %.4g .. %.4g\n", name, least, largest);
  }
}

}  // namespace

bool is_network_file(const std::string& path) {
  std::string name = path;
  for (char& c : name) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  const auto ends_in = [&name](const std::string& ending) {
    return name.size() > ending.size() &&
           name.compare(name.size() - ending.size(), ending.size(), ending) == 0;
  };
  for (const char* packed : {".gz", ".bz2", ".z"}) {
    if (!ends_in(packed)) continue;
    name.resize(name.rfind('.'));
    break;
  }
  return ends_in(".net") || ends_in(".min");
}

std::string solve_network(Session& session, const Options& options, Outcome& outcome) {
  if (!options.start_file.empty() || !options.report_file.empty()) {
    throw Failure("--start and --report are for linear problems: name a --method to solve " +
                  options.model + " as one");
  }
  session.read_network(options.model);
  KLVenv env = session.env();
  KLVnet network = session.network();
  outcome.rows = KLVNETgetnumnodes(env, network);
  outcome.columns = KLVNETgetnumarcs(env, network);
  char line[128];
  std::snprintf(line, sizeof line, ": %d nodes, %d arcs, read in %.2f s\n", *outcome.rows,
                *outcome.columns, seconds_since_start());
  session.say(options.model + line);
  if (!options.basis_file.empty()) {
    session.check(KLVNETreadcopybase(env, network, options.basis_file.c_str()),
                  "cannot read " + options.basis_file);
  }
  if (options.time_limit) {
    set_real(session, "TILIM", std::max(0.0, *options.time_limit - seconds_since_start()));
  }
  session.check(KLVNETprimopt(env, network), "cannot solve " + options.model);
  note_solution_of_network(session, outcome);
  outcome.time = seconds_since_start();
  for (const std::string& path : options.write_files) write(session, path);
  return outcome.objective && !options.values_file.empty() ? flows(session) : std::string();
}

void show_network_info(Session& session, const std::string& path) {
  session.read_network(path);
  KLVenv env = session.env();
  KLVnet network = session.network();
  const int nodes = KLVNETgetnumnodes(env, network), arcs = KLVNETgetnumarcs(env, network);
  const std::vector<double> supply = read_numbers(session, KLVNETgetsupply, nodes);
  const auto sources =
      std::count_if(supply.begin(), supply.end(), [](double value) { return value > 0.0; });
  const auto sinks =
      std::count_if(supply.begin(), supply.end(), [](double value) { return value < 0.0; });
  std::printf("%-11s %s\n", "Model:", path.c_str());
  std::printf("%-11s minimum-cost network flow\n", "Type:");
  std::printf("%-11s %s\n",
              "Objective:", KLVNETgetobjsen(env, network) < 0 ? "maximize" : "minimize");
  std::printf("%-11s %d (%d with a supply, %d with a demand)\n", "Nodes:", nodes,
              static_cast<int>(sources), static_cast<int>(sinks));
  std::printf("%-11s %d\n", "Arcs:", arcs);
  std::printf("Magnitudes:\n");
  print_range("costs", {read_numbers(session, KLVNETgetobj, arcs)});
  print_range("bounds",
              {read_numbers(session, KLVNETgetlb, arcs), read_numbers(session, KLVNETgetub, arcs)});
  print_range("supplies", {supply});
}

void convert_network(Session& session, const std::string& input, const std::string& output) {
  session.read_network(input);
  write(session, output);
}

}  // namespace kelvo::command
