#include "json.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace kelvo::command {
namespace {

/// Length of the well-formed UTF-8 sequence at a position, or 0.
std::size_t utf8_length(const std::string& text, std::size_t at) {
  const auto byte = [&](std::size_t i) -> unsigned {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
  };
  const auto continues = [&](std::size_t i) { return (byte(i) & 0xc0u) == 0x80u; };
  const unsigned first = byte(at);
  if (first < 0x80) return 1;
  if (first >= 0xc2 && first <= 0xdf) return continues(at + 1) ? 2 : 0;
  if (first >= 0xe0 && first <= 0xef) {
    const unsigned second = byte(at + 1);
    // No longer form than needed, and no surrogates.
    if ((first == 0xe0 && second < 0xa0) || (first == 0xed && second > 0x9f)) return 0;
    return continues(at + 1) && continues(at + 2) ? 3 : 0;
  }
  if (first >= 0xf0 && first <= 0xf4) {
    const unsigned second = byte(at + 1);
    if ((first == 0xf0 && second < 0x90) || (first == 0xf4 && second > 0x8f)) return 0;
    return continues(at + 1) && continues(at + 2) && continues(at + 3) ? 4 : 0;
  }
  return 0;
}

}  // namespace

std::string json_string(const std::string& text) {
  std::string result = "\"";
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    const std::size_t length = utf8_length(text, at);
    if (length == 0) {
      result += "\\ufffd";
      ++at;
      continue;
    }
    if (c == '"' || c == '\\') {
      result += '\\';
      result += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
      result += escape;
    } else {
      result += text.substr(at, length);
    }
    at += length;
  }
  return result + '"';
}

void JsonObject::begin_member(const char* name) {
  members_ += members_.empty() ? "\n  " : ",\n  ";
  members_ += json_string(name) + ": ";
}

void JsonObject::add_text(const char* name, const std::string& text) {
  begin_member(name);
  members_ += json_string(text);
}

void JsonObject::add_real(const char* name, std::optional<double> value) {
  if (!value || !std::isfinite(*value)) return add_null(name);
  begin_member(name);
  char buffer[32];  // the shortest text that reads back to the same number
  members_.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, *value).ptr);
}

void JsonObject::add_integer(const char* name, std::optional<int> value) {
  if (!value) return add_null(name);
  begin_member(name);
  members_ += std::to_string(*value);
}

void JsonObject::add_null(const char* name) {
  begin_member(name);
  members_ += "null";
}

std::string JsonObject::text() const {
  return "{" + members_ + (members_.empty() ? "}\n" : "\n}\n");
}

}  // namespace kelvo::command
