#include "base/line_reader.h"

#include <algorithm>
#include <cstring>

namespace kelvo {
namespace {

constexpr std::size_t kBlock = 1 << 18;

}  // namespace

LineReader::LineReader(FileStream& stream) : stream_(&stream), buffer_(kBlock + 1) {
  at_ = end_ = buffer_.data();
}

LineReader::LineReader(std::string_view text)
    : at_(text.data()), end_(text.data() + text.size()), exhausted_(true) {}

/// Moves the unread text to the front of the buffer and reads until it has more than `wanted`
/// characters or a new line feed, or the text is exhausted. A line that a person has typed is thus
/// handed out without waiting for the next one.
void LineReader::fill(std::size_t wanted) {
  std::size_t have = static_cast<std::size_t>(end_ - at_);
  if (wanted + kBlock / 2 >= buffer_.size()) {
    Vector<char> larger(std::max(wanted + kBlock, 2 * buffer_.size()));
    std::copy(at_, end_, larger.data());
    buffer_.swap(larger);
  } else if (have > 0) {
    std::memmove(buffer_.data(), at_, have);
  }
  const std::size_t room = buffer_.size() - 1;
  while (have <= wanted) {
    const std::size_t got = stream_->read(buffer_.data() + have, room - have);
    if (got == 0) {
      exhausted_ = true;
      break;
    }
    have += got;
    if (std::memchr(buffer_.data() + have - got, '\n', got) != nullptr) break;
  }
  at_ = buffer_.data();
  end_ = at_ + have;
}

LineReader::Outcome LineReader::next(std::size_t limit) {
  const char* line_feed = nullptr;
  for (;;) {
    const std::size_t have = static_cast<std::size_t>(end_ - at_);
    if (have > 0) {
      line_feed = static_cast<const char*>(std::memchr(at_, '\n', std::min(have, limit + 1)));
    }
    if (line_feed != nullptr || have > limit || exhausted_) break;
    fill(limit);
  }
  if (line_feed == nullptr && exhausted_ && stream_ != nullptr && stream_->failed()) {
    text_ = {};
    return Outcome::failed;
  }
  if (line_feed == nullptr && at_ == end_) {
    if (!inside_line_) text_ = {};
    inside_line_ = false;
    return Outcome::end;
  }
  if (!inside_line_) ++line_number_;
  if (line_feed == nullptr && static_cast<std::size_t>(end_ - at_) > limit) {
    text_ = std::string_view(at_, limit);
    at_ += limit;
    inside_line_ = true;
    return Outcome::piece;
  }
  inside_line_ = false;
  if (line_feed == nullptr) {
    // The last line of the text lacks its line feed: it moves to a buffer with room for one.
    const std::size_t length = static_cast<std::size_t>(end_ - at_);
    if (stream_ == nullptr) {
      buffer_.assign(at_, end_);
      buffer_.push_back('\n');
      at_ = buffer_.data();
    } else {
      buffer_[static_cast<std::size_t>(end_ - buffer_.data())] = '\n';
    }
    text_ = std::string_view(at_, length);
    at_ = end_ = buffer_.data();
    return Outcome::line;
  }
  text_ = std::string_view(at_, static_cast<std::size_t>(line_feed - at_));
  at_ = line_feed + 1;
  return Outcome::line;
}

int LineReader::take_ready(std::string_view* lines, int most, std::size_t limit) {
  int count = 0;
  for (; count < most; ++count) {
    const std::size_t have = static_cast<std::size_t>(end_ - at_);
    if (have == 0) break;
    const void* const found = std::memchr(at_, '\n', std::min(have, limit + 1));
    if (found == nullptr) break;
    const auto line_feed = static_cast<const char*>(found);
    lines[count] = std::string_view(at_, static_cast<std::size_t>(line_feed - at_));
    at_ = line_feed + 1;
  }
  line_number_ += count;
  return count;
}

std::size_t LineReader::size_hint() const {
  const std::size_t ready = static_cast<std::size_t>(end_ - at_);
  return stream_ == nullptr ? ready : std::max(ready, stream_->size_hint());
}

std::string_view LineReader::peek(std::size_t count) {
  std::size_t have = static_cast<std::size_t>(end_ - at_);
  while (have < count && !exhausted_) {
    fill(have);
    have = static_cast<std::size_t>(end_ - at_);
  }
  return std::string_view(at_, std::min(have, count));
}

}  // namespace kelvo
