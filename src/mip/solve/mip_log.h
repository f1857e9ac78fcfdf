// What the driver of mixed-integer optimization says beside the node log.
#pragma once

#include "base/messages.h"
#include "mip/form/mip_settings.h"

namespace kelvo {

class MipLog {
 public:
  MipLog(MessageSink& sink, int display) : sink_(sink), display_(display) {}

  void bounds_rounded();
  void crossing_bounds(const char* name);
  void generated_order(int rule);
  void presolve_time(double seconds);
  void root_time(double seconds);
  void banner(const SearchSettings& settings, int threads, bool opportunistic);
  void steepest_edge_selected();

 private:
  MessageSink& sink_;
  const int display_;
};

}  // namespace kelvo
