// A file of XML, read piece by piece by expat; the user sees the beginnings and ends of elements.
//
// The bytes of the file count, not the encoding that it declares: expat reads them as ISO-8859-1,
// and attribute values are handed out as the same bytes. Files in UTF-16 are recognized by their
// first two bytes, and their texts handed out as UTF-8. Entities and default attributes can not be
// declared, so that a small file never becomes a large one in memory.
#pragma once

#include <expat.h>

#include <cstddef>
#include <string_view>

#include "base/containers.h"
#include "base/file_stream.h"
#include "base/messages.h"
#include "base/status.h"

namespace kelvo {

/// Attributes of an element, valid during the call that hands them out.
class XmlAttributes {
 public:
  /// `latin`: the file's bytes are handed out, else UTF-8.
  XmlAttributes(const char** list, bool latin) : list_(list), latin_(latin) {}

  int size() const;
  const char* name(int k) const { return list_[2 * k]; }
  /// The value as bytes; `scratch` holds it where it has to be converted. Throws std::bad_alloc.
  std::string_view value(int k, String& scratch) const;

 private:
  const char** list_;  // names and values by turns, null at the end
  bool latin_;
};

class XmlHandler {
 public:
  virtual ~XmlHandler() = default;
  /// Both may throw std::bad_alloc.
  virtual void begin(std::string_view element, const XmlAttributes& attributes) = 0;
  virtual void end(std::string_view element) = 0;
};

class XmlParser {
 public:
  explicit XmlParser(XmlHandler& handler) : handler_(handler) {}
  ~XmlParser();
  XmlParser(const XmlParser&) = delete;
  XmlParser& operator=(const XmlParser&) = delete;

  /// Parses all of a file or text. 1425, reported, with the line; 1423, not reported, when the
  /// stream fails. Throws std::bad_alloc.
  Status parse(FileStream& stream, MessageSink& sink);
  Status parse(std::string_view text, MessageSink& sink);
  /// The line of the element that is handed out.
  int line() const;

 private:
  void create(std::string_view first_bytes);
  Status feed(std::string_view piece, bool last, MessageSink& sink);
  void refuse(const char* reason) noexcept;
  template <class Call>
  void guarded(Call call) noexcept;

  static void on_begin(void* self, const char* element, const char** attributes) noexcept;
  static void on_end(void* self, const char* element) noexcept;
  static void on_entity(void* self, const char*, int, const char*, int, const char*, const char*,
                        const char*, const char*) noexcept;
  static void on_attribute_list(void* self, const char*, const char*, const char*, const char*,
                                int) noexcept;

  XmlHandler& handler_;
  XML_Parser parser_ = nullptr;
  bool latin_ = true;
  bool out_of_memory_ = false;
  const char* refusal_ = nullptr;  // why we ended the parse ourselves
};

}  // namespace kelvo
