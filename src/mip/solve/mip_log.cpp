#include "mip/solve/mip_log.h"

namespace kelvo {

void MipLog::bounds_rounded() {
  sink_.send(Channel::warning, "Warning:  Non-integral bounds for integer variables rounded.\n");
}

void MipLog::crossing_bounds(const char* name) {
  sink_.print(Channel::warning, "Warning:  Bound infeasibility column '%s'.\n", name);
}

void MipLog::generated_order(int rule) {
  constexpr int kByCost = 1, kByRange = 2, kByCostPerCount = 3;
  const char* text = nullptr;
  if (rule == kByCost) text = "Generated priority order by decreasing cost.\n";
  if (rule == kByRange) text = "Generated priority order by increasing bound range.\n";
  if (rule == kByCostPerCount) {
    text = "Generated priority order by increasing cost per coefficient count.\n";
  }
  if (text != nullptr) sink_.send(Channel::results, text);
}

void MipLog::presolve_time(double seconds) {
  if (display_ > 0) sink_.print(Channel::results, "Presolve time = %7.2f sec.\n", seconds);
}

void MipLog::root_time(double seconds) {
  constexpr int kLeastDisplay = 2;
  if (display_ < kLeastDisplay) return;
  sink_.print(Channel::results, "Root relaxation solution time = %7.2f sec.\n", seconds);
}

void MipLog::steepest_edge_selected() {
  constexpr int kLeastDisplay = 3;
  if (display_ < kLeastDisplay) return;
  sink_.send(Channel::results, "Dual steepest-edge pricing selected.\n");
}

void MipLog::banner(const SearchSettings& settings, int threads, bool opportunistic) {
  if (display_ < 1) return;
  const auto emphasis = [&] {
    switch (settings.emphasis) {
      case MipEmphasis::balance:
        return "MIP emphasis: balance optimality and feasibility.\n";
      case MipEmphasis::feasibility:
        return "MIP emphasis: integer feasibility.\n";
      case MipEmphasis::optimality:
        return "MIP emphasis: optimality.\n";
      case MipEmphasis::bound:
        return "MIP emphasis: best bound.\n";
      case MipEmphasis::hidden:
        break;
    }
    return "MIP emphasis: hidden feasible solutions.\n";
  };
  sink_.send(Channel::results, emphasis());
  sink_.send(Channel::results, settings.dynamic_search
                                   ? "MIP search method: dynamic search.\n"
                                   : "MIP search method: traditional branch-and-cut.\n");
  if (threads == 1) {
    sink_.send(Channel::results, "Parallel mode: none, using 1 thread.\n");
  } else {
    sink_.print(Channel::results, "Parallel mode: %s, using up to %d threads.\n",
                opportunistic ? "opportunistic" : "deterministic", threads);
  }
}

}  // namespace kelvo
