// Something that a higher floor leaves in a problem and that goes when the problem, or a change of
// it, says so. The problem owns it and knows nothing else about it.
#pragma once

#include "prob/change_kind.h"

namespace kelvo {

class Attachment {
 public:
  Attachment() = default;
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;
  virtual ~Attachment() = default;

  /// Hears of a change of the problem that makes it stale. True when it will catch up with the
  /// change by itself and is to stay.
  virtual bool outlives(ChangeKind) noexcept { return false; }
};

}  // namespace kelvo
