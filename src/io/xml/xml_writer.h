// Elements of an XML file, one a line, indented by a blank for each level.
//
// Texts are bytes: they are written as they are, but for the five characters of the markup, which
// become entities, and for line breaks and tabulators, which become character references; other
// control characters cannot be in an XML file. An escaped text is cut at 255 characters, and never
// within an entity.
#pragma once

#include <string_view>

#include "base/file_stream.h"
#include "io/line_writer.h"

namespace kelvo {

/// True when a text can be given in an XML file.
bool is_xml_text(std::string_view text);

/// The most characters of a text, escaped.
inline constexpr std::size_t kLongestXmlText = 255;

class XmlWriter {
 public:
  /// Begins the file with its declaration.
  explicit XmlWriter(FileStream& stream) : line_(stream) {
    line_.put("<?xml version = \"1.0\" standalone=\"yes\"?>");
    line_.end_line();
  }

  /// Begins an element; attributes may follow.
  void start(std::string_view element) {
    put_blanks(depth_);
    line_.put("<");
    line_.put(element);
  }
  /// The same, with a line for each attribute.
  void start_with_lines(std::string_view element) {
    start(element);
    attribute_lines_ = true;
  }

  void text(std::string_view name, std::string_view value) {
    begin_attribute(name);
    put_escaped(value);
    line_.put("\"");
  }
  /// A text that needs no escapes.
  void word(std::string_view name, std::string_view value) {
    begin_attribute(name);
    line_.put(value);
    line_.put("\"");
  }
  void integer(std::string_view name, int value);
  /// 15 significant digits.
  void number(std::string_view name, double value);

  /// Ends an element without content.
  void end_empty() {
    line_.put("/>");
    line_.end_line();
    attribute_lines_ = false;
  }
  /// Ends the start tag of an element whose content follows.
  void open() {
    line_.put(">");
    line_.end_line();
    ++depth_;
  }
  /// Ends an element with content.
  void close(std::string_view element) {
    --depth_;
    put_blanks(depth_);
    line_.put("</");
    line_.put(element);
    line_.put(">");
    line_.end_line();
  }
  /// Hands the rest over to the stream.
  void finish() { line_.send(); }

 private:
  void begin_attribute(std::string_view name) {
    if (attribute_lines_) {
      line_.end_line();
      put_blanks(depth_);
    }
    line_.put(" ");
    line_.put(name);
    line_.put("=\"");
  }
  void put_blanks(int count) { line_.pad(count); }
  void put_escaped(std::string_view text);

  LineWriter line_;
  int depth_ = 0;
  bool attribute_lines_ = false;
};

}  // namespace kelvo
