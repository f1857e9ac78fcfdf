// Where the engines' texts go. The environment implements it over its four channels; a test or a
// silent sub-solve passes another one.
#pragma once

namespace kelvo {

enum class Channel { error, warning, results, log };

class MessageSink {
 public:
  virtual ~MessageSink() = default;
  /// Sends a finished text (line breaks included) to a channel.
  virtual void send(Channel channel, const char* text) = 0;
  /// Flushes a channel's files.
  virtual void flush(Channel channel) = 0;

  /// Formats with the printf rules and sends; at most 1023 characters are kept.
  void print(Channel channel, const char* format, ...) __attribute__((format(printf, 3, 4)));
};

/// Drops everything.
class SilentSink final : public MessageSink {
 public:
  void send(Channel, const char*) override {}
  void flush(Channel) override {}
};

}  // namespace kelvo
