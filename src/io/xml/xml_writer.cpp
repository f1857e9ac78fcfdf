#include "io/xml/xml_writer.h"

#include <charconv>

namespace kelvo {
namespace {

/// What a character is written as when it is not written as it is.
std::string_view reference(char c) {
  switch (c) {
    case '"':
      return "&quot;";
    case '&':
      return "&amp;";
    case '\'':
      return "&apos;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";
    case '\r':
      return "&#13;";
    default:
      return {};
  }
}

bool is_control(char c) {
  return static_cast<unsigned char>(c) < ' ';
}

}  // namespace

bool is_xml_text(std::string_view text) {
  for (const char c : text) {
    if (is_control(c) && reference(c).empty()) return false;
  }
  return true;
}

void XmlWriter::integer(std::string_view name, int value) {
  char text[16];
  const auto end = std::to_chars(text, text + sizeof text, value).ptr;
  word(name, {text, static_cast<std::size_t>(end - text)});
}

void XmlWriter::number(std::string_view name, double value) {
  char text[kNumberText];
  const auto length = static_cast<std::size_t>(format_general(value, text));
  word(name, {text, length});
}

void XmlWriter::put_escaped(std::string_view text) {
  std::size_t room = kLongestXmlText;
  std::size_t plain = 0;  // characters that wait to be written as they are
  const auto put_plain = [&] {
    line_.put(text.substr(0, plain));
    text.remove_prefix(plain);
    plain = 0;
  };
  while (plain < text.size() && room > 0) {
    const char c = text[plain];
    const std::string_view escaped = reference(c);
    if (escaped.empty() && !is_control(c)) {
      ++plain;
      --room;
      continue;
    }
    put_plain();
    const std::string_view written = escaped.empty() ? std::string_view("?") : escaped;
    if (written.size() > room) return;
    line_.put(written);
    room -= written.size();
    text.remove_prefix(1);
  }
  put_plain();
}

}  // namespace kelvo
