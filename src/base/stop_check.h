// The question every optimizer asks between iterations: go on?
#pragma once

namespace kelvo {

/// Why a computation is to stop.
enum class StopReason {
  none,
  time_limit,
  user_abort,  // the caller's flag, callback or host
};

class StopCheck {
 public:
  virtual ~StopCheck() = default;
  /// StopReason::none to go on. Cheap enough to be called at every iteration.
  virtual StopReason check() = 0;
  bool requested() { return check() != StopReason::none; }
};

/// Never stops.
class NeverStop final : public StopCheck {
 public:
  StopReason check() override { return StopReason::none; }
};

}  // namespace kelvo
