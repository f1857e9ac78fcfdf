// A message channel: a list of destinations to which every message of the channel goes.
//
// A destination is an open file, a file found through a pointer (written only while that is set),
// or a function. The destination attached last receives a message first. The same destination may
// be attached several times and then receives every message as often. Files belong to the caller:
// a channel neither opens nor closes them, and flushes them only when told to.
#pragma once

#include <cstdint>
#include <cstdio>

#include "base/containers.h"
#include "base/status.h"

namespace kelvo {

struct ObjectNode;

using MessageFunction = void (*)(void* handle, const char* text);

class MessageChannel {
 public:
  /// Sends a text once to every destination. A function may attach and detach destinations
  /// meanwhile; new ones do not receive it.
  void send(const char* text);
  /// Flushes every file.
  void flush();
  /// Flushes every file, then removes all destinations.
  void disconnect();

  // Attaching throws std::bad_alloc when there is no memory, leaving the channel as it was.
  void attach(std::FILE* file);
  void attach_pointer(std::FILE** file);
  void attach(void* handle, MessageFunction function);
  /// Makes sure that the next attachment finds its memory.
  void reserve_one() { destinations_.reserve(destinations_.size() + 1); }

  // Detaching removes the attachment made last of those that match; false when none does.
  bool detach(std::FILE* file);
  bool detach(void* handle, MessageFunction function);
  bool has(std::FILE* file) const;

  /// Where the environment's object list holds this channel; null for the standard channels.
  ObjectNode* node = nullptr;

 private:
  enum class Kind { file = 1, file_pointer = 2, function = 3 };
  struct Destination {
    std::int64_t number;  // grows with every attachment
    Kind kind;
    std::FILE* file;           // kind file
    std::FILE** pointer;       // kind file_pointer
    void* handle;              // kind function
    MessageFunction function;  // kind function
  };

  template <class Matches>
  bool detach_last(Matches matches);

  Vector<Destination> destinations_;  // in the order of attachment
  std::int64_t next_number_ = 0;
};

}  // namespace kelvo
