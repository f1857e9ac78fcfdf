// One JSON object, written member by member.
#pragma once

#include <optional>
#include <string>

namespace kelvo::command {

class JsonObject {
 public:
  void add_text(const char* name, const std::string& text);
  /// Numbers that JSON cannot hold (infinite, not a number) and absent ones are null.
  void add_real(const char* name, std::optional<double> value);
  void add_integer(const char* name, std::optional<int> value);
  void add_null(const char* name);

  /// The finished object with a line break at its end.
  std::string text() const;

 private:
  void begin_member(const char* name);

  std::string members_;
};

/// A text as a JSON string, quotes included. Bytes that are not UTF-8 become U+FFFD.
std::string json_string(const std::string& text);

}  // namespace kelvo::command
