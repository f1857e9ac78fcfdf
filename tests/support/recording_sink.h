// Keeps what is sent to each channel.
#pragma once

#include <string>

#include "base/messages.h"

namespace kelvo::test {

class RecordingSink final : public MessageSink {
 public:
  void send(Channel channel, const char* text) override {
    text_[static_cast<int>(channel)] += text;
    all_ += text;
  }
  void flush(Channel) override {}
  const std::string& operator[](Channel channel) const { return text_[static_cast<int>(channel)]; }
  /// The messages of all channels in their order, forgotten by the call.
  std::string take() {
    std::string taken;
    taken.swap(all_);
    for (std::string& text : text_) text.clear();
    return taken;
  }
  const std::string& all() const { return all_; }

 private:
  std::string text_[4];
  std::string all_;
};

}  // namespace kelvo::test
