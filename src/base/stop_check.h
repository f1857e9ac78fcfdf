// The question every optimizer asks between iterations: go on?
#pragma once

namespace kelvo {

class StopCheck {
 public:
  virtual ~StopCheck() = default;
  /// 0 to go on, 11 when the time limit has passed, 13 when the user asked to stop, or a hook's
  /// own result. Cheap enough to be called at every iteration.
  virtual int check() = 0;
};

/// Never stops.
class NeverStop final : public StopCheck {
 public:
  int check() override { return 0; }
};

}  // namespace kelvo
