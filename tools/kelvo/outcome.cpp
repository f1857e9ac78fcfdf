#include "outcome.h"

#include <cstdarg>
#include <vector>

#include "failure.h"
#include "json.h"
#include "model_data.h"

namespace kelvo::command {
namespace {

/// The status texts are shorter, as the library promises.
constexpr int kStatusLength = 64;

__attribute__((format(printf, 1, 2))) std::string format(const char* text, ...) {
  char buffer[512];
  va_list arguments;
  va_start(arguments, text);
  std::vsnprintf(buffer, sizeof buffer, text, arguments);
  va_end(arguments);
  return buffer;
}

/// True when the stored point satisfies the constraints.
bool has_feasible_point(Session& session) {
  int feasible = 0;
  session.check(KLVsolninfo(session.env(), session.problem(), nullptr, nullptr, &feasible, nullptr),
                "cannot read the solution");
  return feasible != 0;
}

void note_search(Session& session, Outcome& outcome) {
  constexpr double kNone = 1e75;
  KLVenv env = session.env();
  KLVprob problem = session.problem();
  outcome.nodes = KLVgetnodecnt(env, problem);
  outcome.nodes_left = KLVgetnodeleftcnt(env, problem);
  double value = 0.0;
  if (KLVgetbestobjval(env, problem, &value) == 0 && value > -kNone && value < kNone) {
    outcome.best_bound = value;
    if (outcome.objective && KLVgetmiprelgap(env, problem, &value) == 0) outcome.gap = value;
  }
}

}  // namespace

void note_sizes(const Session& session, Outcome& outcome) {
  outcome.rows = KLVgetnumrows(session.env(), session.problem());
  outcome.columns = KLVgetnumcols(session.env(), session.problem());
  outcome.nonzeros = KLVgetnumnz(session.env(), session.problem());
}

void note_solution(Session& session, Outcome& outcome) {
  KLVenv env = session.env();
  KLVprob problem = session.problem();
  outcome.status = KLVgetstat(env, problem);
  char text[kStatusLength] = "";
  KLVgetstatstring(env, *outcome.status, text);
  outcome.status_string = text;
  outcome.iterations = KLVgetitcnt(env, problem);
  if (const int count = KLVgetbaritcnt(env, problem); count > 0) outcome.barrier_iterations = count;
  if (has_feasible_point(session)) {
    double objective = 0.0;
    session.check(KLVgetobjval(env, problem, &objective), "cannot read the objective");
    outcome.objective = objective;
  }
  if (KLVgetprobtype(env, problem) == KLV_PROBTYPE_MILP) note_search(session, outcome);
}

std::string summary(const Outcome& outcome) {
  std::string text = "\n";
  text += format("Status:      %s\n", outcome.status_string.c_str());
  text += outcome.objective ? format("Objective:   %.10g\n", *outcome.objective)
                            : std::string("Objective:   none (no feasible point)\n");
  if (outcome.best_bound) text += format("Best bound:  %.10g\n", *outcome.best_bound);
  if (outcome.gap) text += format("Gap:         %.4g %%\n", 100.0 * *outcome.gap);
  if (outcome.nodes) {
    text += format("Nodes:       %d", *outcome.nodes);
    if (*outcome.nodes_left > 0) text += format(" (%d open)", *outcome.nodes_left);
    text += "\n";
  }
  if (outcome.iterations) text += format("Iterations:  %d\n", *outcome.iterations);
  if (outcome.barrier_iterations)
    text += format("Barrier:     %d iterations\n", *outcome.barrier_iterations);
  if (!outcome.start.empty()) text += "Start:       " + outcome.start + "\n";
  text += format("Time:        %.2f s\n", outcome.time);
  return text;
}

std::string json(const Outcome& outcome) {
  JsonObject object;
  object.add_integer("status", outcome.status);
  if (outcome.status) {
    object.add_text("status_string", outcome.status_string);
  } else {
    object.add_null("status_string");
  }
  object.add_real("objective", outcome.objective);
  object.add_real("best_bound", outcome.best_bound);
  object.add_real("gap", outcome.gap);
  object.add_integer("nodes", outcome.nodes);
  object.add_integer("nodes_left", outcome.nodes_left);
  object.add_integer("iterations", outcome.iterations);
  object.add_real("time", outcome.time);
  object.add_integer("rows", outcome.rows);
  object.add_integer("columns", outcome.columns);
  object.add_integer("nonzeros", outcome.nonzeros);
  if (!outcome.error.empty()) object.add_text("error", outcome.error);
  return object.text();
}

std::string values(Session& session) {
  const int count = KLVgetnumcols(session.env(), session.problem());
  std::vector<double> x(static_cast<std::size_t>(count));
  if (count > 0) {
    session.check(KLVgetx(session.env(), session.problem(), x.data(), 0, count - 1),
                  "cannot read the values");
  }
  const std::vector<std::string> names = column_names(session);
  std::string text;
  for (int j = 0; j < count; ++j) {
    const double value = x[static_cast<std::size_t>(j)];
    if (value == 0.0) continue;
    text += names.empty() ? "x" + std::to_string(j + 1) : names[static_cast<std::size_t>(j)];
    text += format(" %.17g\n", value);
  }
  return text;
}

}  // namespace kelvo::command
