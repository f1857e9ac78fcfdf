// Something that a higher floor leaves in a problem and that goes when the problem, or a change of
// it, says so. The problem owns it and knows nothing else about it.
#pragma once

namespace kelvo {

class Attachment {
 public:
  Attachment() = default;
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;
  virtual ~Attachment() = default;
};

}  // namespace kelvo
