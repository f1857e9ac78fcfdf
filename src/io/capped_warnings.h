// Warnings that a file may cause without end: the first 20 are printed, the others are counted, and
// close() says how many there were.
#pragma once

#include <algorithm>
#include <string_view>

#include "base/messages.h"

namespace kelvo {

class CappedWarnings {
 public:
  static constexpr int kMostPrinted = 20;

  explicit CappedWarnings(MessageSink& sink) : sink_(sink) {}

  /// Prints a format that takes the number of a line.
  void warn(const char* format, int line) {
    if (++count_ <= kMostPrinted) sink_.print(Channel::warning, format, line);
  }
  /// Prints a format that takes the number of a line and a name of the file.
  void warn(const char* format, int line, std::string_view name) {
    if (++count_ > kMostPrinted) return;
    constexpr std::size_t kNameSize = 256;
    char text[kNameSize];
    const std::size_t length = std::min(name.size(), kNameSize - 1);
    std::copy_n(name.data(), length, text);
    text[length] = '\0';
    sink_.print(Channel::warning, format, line, text);
  }
  /// Prints a format that takes the number of a line and another number.
  void warn(const char* format, int line, int number) {
    if (++count_ <= kMostPrinted) sink_.print(Channel::warning, format, line, number);
  }
  void close() {
    if (count_ <= kMostPrinted) return;
    sink_.print(Channel::warning, "%d warnings not printed.\n", count_ - kMostPrinted);
  }

 private:
  MessageSink& sink_;
  int count_ = 0;
};

}  // namespace kelvo
