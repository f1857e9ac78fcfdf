#include "mip/solve/node_log.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace kelvo {
namespace {

constexpr double kNone = 1e75;
constexpr double kNoBound = 1e36;    // bounds from here on are blank
constexpr double kFixedBelow = 1e7;  // values below are printed with a fixed point
constexpr int kFieldSize = 64;

constexpr const char* kCutNames[kNumCutTypes] = {
    "Covers",    "GUBcuts",  "Flowcuts",  "Cliques",  "Fract", "MIRcuts",
    "Flowpaths", "Disjcuts", "Impl Bds",  "ZeroHalf", "MCF",   "Local Cov",
    "Tighten",   "ObjDisj",  "User",      "Table",    "Pool",  "Discard",
    "Local Cut", "GCS",      "EnumCover", "UserSoft", "Cone"};

void print_value(char* field, int size, double value) {
  std::snprintf(field, size, std::abs(value) < kFixedBelow ? "%13.4f" : "%13.5e", value);
}

}  // namespace

const char* cut_type_name(int type) {
  return kCutNames[type];
}

double relative_gap(double incumbent, double bound) {
  constexpr double kNegligible = 1e-10, kNegligibleDifference = 1e-9;
  const double difference = incumbent - bound;
  if (std::abs(difference) <= kNegligibleDifference) return 0.0;
  const double gap = difference / (std::abs(incumbent) + 1e-10);
  return std::abs(gap) <= kNegligible ? 0.0 : gap;
}

void NodeLog::header() {
  if (header_printed_) return;
  header_printed_ = true;
  if (settings_.display < 2) {
    sink_.send(Channel::results, "\nNode log . . .\n");
    return;
  }
  sink_.send(Channel::results,
             "\n        Nodes                                         Cuts/\n"
             "   Node  Left     Objective  IInf  Best Integer     Best Node    ItCnt     Gap");
  if (settings_.traditional) sink_.send(Channel::log, "         Variable B NodeID Parent  Depth");
  sink_.send(Channel::results, "\n\n");
}

void NodeLog::objective_field(char* field, int size, const NodeResult& result,
                              const SearchState& state) const {
  const char* text = "";
  switch (result.kind) {
    case NodeResult::Kind::integral:
      std::snprintf(field, size, "%-13s %5d", "     integral", 0);
      return;
    case NodeResult::Kind::value:
      if (result.objective < kNone) {
        const double value = settings_.sense * result.objective;
        std::snprintf(field, size, std::abs(value) < kFixedBelow ? "%13.4f %5d" : "%13.5e %5d",
                      value, result.infeasibilities);
        return;
      }
      text = state.incumbent < kNone ? "       cutoff" : "   infeasible";
      break;
    case NodeResult::Kind::infeasible:
      text = "   infeasible";
      break;
    case NodeResult::Kind::cutoff:
      text = "       cutoff";
      break;
    case NodeResult::Kind::heuristic:
      break;
  }
  std::snprintf(field, size, "%-19s", text);
}

void NodeLog::best_node_field(char* field, int size, const SearchState& state) {
  field[0] = '\0';
  if (pending_type_ == kSeveralTypes) {
    std::snprintf(field, size, "Cuts: %d", pending_count_);
  } else if (pending_type_ != kNoCuts) {
    std::snprintf(field, size, "%s: %d", kCutNames[pending_type_], pending_count_);
  } else if (std::abs(state.best_bound) < kNoBound) {
    print_value(field, size, settings_.sense * state.best_bound);
  }
  pending_type_ = kNoCuts;
  pending_count_ = 0;
}

void NodeLog::gap_field(char* field, int size, const SearchState& state) const {
  constexpr double kLargest = 999.99;
  field[0] = '\0';
  if (state.incumbent >= kNone) return;
  double gap = 0.0;
  if (std::abs(state.best_bound) < kNoBound) {
    gap = 100.0 * relative_gap(state.incumbent, state.best_bound);
  }
  if (std::abs(gap) < kLargest) {
    std::snprintf(field, size, "%7.2f%%", gap);
  } else {
    std::snprintf(field, size, "--- ");
  }
}

void NodeLog::line(char marker, char plus, const SearchState& state, const NodeResult& result,
                   const NodeOrigin& origin) {
  constexpr double kManyIterations = 1e9;
  header();
  char objective[kFieldSize], integer[kFieldSize] = " ", bound[kFieldSize], gap[kFieldSize];
  objective_field(objective, kFieldSize, result, state);
  if (state.incumbent < kNone) print_value(integer, kFieldSize, settings_.sense * state.incumbent);
  best_node_field(bound, kFieldSize, state);
  gap_field(gap, kFieldSize, state);
  sink_.print(Channel::results,
              state.iterations < kManyIterations ? "%c%6d%c%5d %19s %13s %13s %8.0f %8s"
                                                 : "%c%6d%c%5d %19s %13s %13s %8g %8s",
              marker, state.nodes, plus, state.nodes_left, objective, integer, bound,
              state.iterations, gap);
  if (settings_.traditional) {
    const bool root = origin.direction == ' ';
    if (root) {
      sink_.print(Channel::log, "%-16s %c %6d %6s %6d", "", ' ', origin.node, "", origin.depth);
    } else {
      sink_.print(Channel::log, "%-16s %c %6d %6d %6d", names_.column_name(origin.column),
                  origin.direction, origin.node, origin.parent, origin.depth);
    }
  }
  sink_.send(Channel::results, "\n");
  first_line_done_ = true;
  last_line_node_ = state.nodes;
  last_incumbent_ = state.incumbent;
  last_bound_ = state.best_bound;
  last_left_ = state.nodes_left;
}

void NodeLog::incumbent(const SearchState& state, const NodeResult& result, bool heuristic,
                        const NodeOrigin& origin) {
  constexpr double kInfiniteBest = 1e74;
  if (settings_.silent || settings_.display == 0) return;
  if (settings_.display >= 2) {
    line('*', heuristic ? '+' : ' ', state, result, origin);
    return;
  }
  header();
  sink_.print(Channel::results,
              "Best integer = %14.6le  Node = %7d  Best node = ", settings_.sense * state.incumbent,
              state.nodes);
  const double bound = settings_.sense * state.best_bound;
  if (std::abs(bound) >= kInfiniteBest) {
    sink_.send(Channel::results, bound < 0.0 ? "-inf\n" : "+inf\n");
  } else {
    sink_.print(Channel::results, "%14.6le\n", bound);
  }
}

void NodeLog::root(const SearchState& state, const NodeResult& result) {
  if (settings_.silent || settings_.display < 2) return;
  line(' ', ' ', state, result, NodeOrigin{});
}

void NodeLog::node(const SearchState& state, const NodeResult& result, const NodeOrigin& origin) {
  if (settings_.silent || settings_.display < 2) return;
  if (state.nodes % settings_.interval != 0 || state.nodes == last_line_node_) return;
  line(' ', ' ', state, result, origin);
}

void NodeLog::count_cuts(int type, int count) {
  if (count == 0) return;
  pending_type_ = pending_type_ == kNoCuts || pending_type_ == type ? type : kSeveralTypes;
  pending_count_ += count;
}

void NodeLog::progress(int nodes, double seconds, double tree_bytes, int solutions) {
  constexpr double kMegabyte = 1048576.0;
  constexpr double kPatience = 10.0;
  constexpr int kLeastNodes = 20, kNever = 210000000, kManySolutions = 99999;
  if (settings_.silent || settings_.display < 2 || settings_.interval > kNever) return;
  const int period = std::max(10 * settings_.interval, kLeastNodes);
  if (nodes == 0 && seconds - last_progress_ <= kPatience) return;
  if (nodes - last_progress_node_ < period && (nodes > 0 || seconds <= kPatience)) return;
  last_progress_node_ = nodes;
  last_progress_ = seconds;
  sink_.print(Channel::results, "Elapsed %stime = %6.2f sec. (tree size = %5.2f MB",
              settings_.processor_time ? "" : "real ", seconds, tree_bytes / kMegabyte);
  if (solutions > 0) {
    if (solutions < kManySolutions) {
      sink_.print(Channel::results, ", solutions = %d", solutions);
    } else {
      sink_.print(Channel::results, ", solutions = %.1e", static_cast<double>(solutions));
    }
  }
  sink_.send(Channel::results, ")\n");
}

void NodeLog::first_solution(double seconds, int node, double objective) {
  constexpr int kLeastDisplay = 3;
  if (settings_.silent || settings_.display < kLeastDisplay) return;
  const double value = settings_.sense * objective;
  sink_.print(Channel::results,
              std::abs(value) < kFixedBelow
                  ? "First solution time = %6.2f sec.  Node = %6d  Objective = %14.5f\n"
                  : "First solution time = %6.2f sec.  Node = %6d  Objective = %14.5e\n",
              seconds, node, value);
}

}  // namespace kelvo
