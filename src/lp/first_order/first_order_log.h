// What the first-order method says.
#pragma once

#include "base/messages.h"
#include "lp/first_order/first_order_settings.h"

namespace kelvo {

class FirstOrderLog {
 public:
  FirstOrderLog(const FirstOrderSettings& settings, MessageSink& sink)
      : sink_(sink), display_(settings.display) {}

  /// The run that it took turns with continues from its point.
  void restart() {
    if (display_ != 0) sink_.send(Channel::log, "Restarting from an approximate solution.\n");
  }

 private:
  MessageSink& sink_;
  const int display_;
};

}  // namespace kelvo
