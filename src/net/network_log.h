// The iteration log of the network simplex, on the results channel, and the caller's callback.
#pragma once

#include "base/messages.h"
#include "net/simplex/network_simplex.h"

namespace kelvo {

/// Called at each iteration that is due for a line; a result other than 0 ends the run.
class NetworkCallback {
 public:
  virtual ~NetworkCallback() = default;
  virtual int call() = 0;
};

class NetworkLog final : public NetworkEvents {
 public:
  /// `display` 0: no lines, 1: the sum of infeasibilities in phase one, 2: the objective with the
  /// penalties. `callback` may be null.
  NetworkLog(MessageSink& sink, int display, int num_arcs, double sense, NetworkCallback* callback);

  bool due(int iteration) override { return iteration % interval_ == 0; }
  int iteration(int iteration, bool phase_one, double objective, double infeasibility) override;

  /// What the outcome has to say.
  void end(NetworkOutcome outcome);

 private:
  void line(int iteration, bool phase_one, double objective, double infeasibility);

  MessageSink& sink_;
  const int display_;
  const int interval_;
  const double sense_;
  NetworkCallback* const callback_;
  const double start_;
  int lines_ = 0;
};

}  // namespace kelvo
