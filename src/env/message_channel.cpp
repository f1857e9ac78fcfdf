#include "env/message_channel.h"

#include <algorithm>

namespace kelvo {

void MessageChannel::send(const char* text) {
  // A function that is called may detach destinations and attach others, which are too late for
  // this text: numbers, unlike places, say who has heard it.
  std::int64_t last = next_number_;
  for (std::size_t i = destinations_.size();;) {
    i = std::min(i, destinations_.size());
    while (i > 0 && destinations_[i - 1].number >= last) --i;
    if (i == 0) return;
    const Destination destination = destinations_[i - 1];
    last = destination.number;
    switch (destination.kind) {
      case Kind::file:
        std::fputs(text, destination.file);
        break;
      case Kind::file_pointer:
        if (*destination.pointer != nullptr) std::fputs(text, *destination.pointer);
        break;
      case Kind::function:
        destination.function(destination.handle, text);
        break;
    }
  }
}

void MessageChannel::flush() {
  for (const Destination& destination : destinations_) {
    if (destination.kind == Kind::file) {
      std::fflush(destination.file);
    } else if (destination.kind == Kind::file_pointer && *destination.pointer != nullptr) {
      std::fflush(*destination.pointer);
    }
  }
}

void MessageChannel::disconnect() {
  flush();
  destinations_ = Vector<Destination>();
}

void MessageChannel::attach(std::FILE* file) {
  destinations_.push_back({next_number_++, Kind::file, file, nullptr, nullptr, nullptr});
}

void MessageChannel::attach_pointer(std::FILE** file) {
  destinations_.push_back({next_number_++, Kind::file_pointer, nullptr, file, nullptr, nullptr});
}

void MessageChannel::attach(void* handle, MessageFunction function) {
  destinations_.push_back({next_number_++, Kind::function, nullptr, nullptr, handle, function});
}

template <class Matches>
bool MessageChannel::detach_last(Matches matches) {
  for (std::size_t i = destinations_.size(); i-- > 0;) {
    if (!matches(destinations_[i])) continue;
    destinations_.erase(destinations_.begin() + static_cast<std::ptrdiff_t>(i));
    return true;
  }
  return false;
}

bool MessageChannel::detach(std::FILE* file) {
  return detach_last([&](const Destination& d) { return d.kind == Kind::file && d.file == file; });
}

bool MessageChannel::detach(void* handle, MessageFunction function) {
  return detach_last([&](const Destination& d) {
    return d.kind == Kind::function && d.handle == handle && d.function == function;
  });
}

bool MessageChannel::has(std::FILE* file) const {
  for (const Destination& d : destinations_) {
    if (d.kind == Kind::file && d.file == file) return true;
  }
  return false;
}

}  // namespace kelvo
