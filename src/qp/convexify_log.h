// What the repair of a quadratic objective says.
#pragma once

#include "base/messages.h"

namespace kelvo {

class ConvexifyLog {
 public:
  explicit ConvexifyLog(MessageSink& sink) : sink_(sink) {}
  void begins() { sink_.send(Channel::log, "Repairing indefinite Q in the objective.\n"); }
  void shifted(double shift) {
    sink_.print(Channel::warning, "\nWarning:  diagonal perturbation of %.1e ", shift);
    sink_.send(Channel::log, "required to create PSD Q.\n\n");
  }

 private:
  MessageSink& sink_;
};

}  // namespace kelvo
