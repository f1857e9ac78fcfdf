// Lines of a text, handed out as views of a block buffer, without copies.
//
// The text comes from an open stream, read in blocks of 256 KB, or from memory that the caller
// keeps unchanged. A line ends at a line feed, which is not part of it (a carriage return before
// it is). Lines may be longer than a block; the caller sets the length that it is willing to see
// in one piece, and the buffer never grows beyond that.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/containers.h"
#include "base/file_stream.h"

namespace kelvo {

class LineReader {
 public:
  enum class Outcome {
    line,   // a whole line, or the last piece of a long one
    piece,  // `limit` characters of a longer line; the next call continues after them
    end,    // no more text
    failed  // the stream has failed; what it gave since its last line feed is not handed out
  };

  explicit LineReader(FileStream& stream);
  /// Reads from memory that outlives the reader.
  explicit LineReader(std::string_view text);

  /// The next line, or the next piece of a line of more than `limit` >= 1 characters. After
  /// Outcome::line the character at text().end() can be read and is a line feed, so a scan that
  /// stops at line feeds needs no other limit. The text is valid until the next call.
  Outcome next(std::size_t limit);
  std::string_view text() const { return text_; }
  /// Takes up to `most` further lines of at most `limit` characters that are in the buffer with
  /// their ends, so that nothing moves: their texts are valid as long as the one of the last next()
  /// and can be read up to their line feed. Returns how many; only after Outcome::line. text()
  /// stays that of next(), line_number() counts the lines taken.
  int take_ready(std::string_view* lines, int most, std::size_t limit);
  /// The number of the line taken last, from 1 (0 before the first).
  int line_number() const { return line_number_; }
  /// The first bytes of the text, at most `count`, without taking them; fewer only when the text is
  /// shorter. Only before the first next().
  std::string_view peek(std::size_t count);
  /// About how many bytes the text has, for room made in advance; 0 when that is not known.
  std::size_t size_hint() const;

 private:
  void fill(std::size_t wanted);

  FileStream* stream_ = nullptr;  // null: memory
  Vector<char> buffer_;           // [block + 1] text read ahead; room for a final line feed
  const char* at_ = nullptr;      // the text not yet handed out is at_..end_
  const char* end_ = nullptr;
  bool exhausted_ = false;    // nothing comes after end_
  bool inside_line_ = false;  // the last outcome was a piece
  int line_number_ = 0;
  std::string_view text_;
};

}  // namespace kelvo
