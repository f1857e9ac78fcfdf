#include "io/xml/xml_parser.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "base/error_code.h"
#include "base/memory.h"
#include "env/error_table.h"

namespace kelvo {
namespace {

constexpr std::size_t kBlock = 1 << 18;
constexpr XML_Memory_Handling_Suite kMemory = {allocate, reallocate, release};

/// True when the text begins in one of the two byte orders of UTF-16, with its mark or with a
/// character of ASCII.
bool is_wide(std::string_view text) {
  if (text.size() < 2) return false;
  const auto first = static_cast<unsigned char>(text[0]);
  const auto second = static_cast<unsigned char>(text[1]);
  constexpr int kMarkLow = 0xff, kMarkHigh = 0xfe;
  return (first == kMarkLow && second == kMarkHigh) || (first == kMarkHigh && second == kMarkLow) ||
         (first == 0) != (second == 0);
}

/// Length of the mark that some programs put before UTF-8.
std::size_t mark_length(std::string_view text) {
  constexpr std::string_view kMark = "\xef\xbb\xbf";
  return text.substr(0, kMark.size()) == kMark ? kMark.size() : 0;
}

/// From UTF-8 to the bytes of ISO-8859-1; what that lacks stays as it is.
void append_bytes(std::string_view utf8, String& bytes) {
  constexpr unsigned kTwoBytes = 0xc0, kFirstBeyond = 0xc4;  // leading bytes of U+0080, of U+0100
  for (std::size_t k = 0; k < utf8.size(); ++k) {
    const auto lead = static_cast<unsigned char>(utf8[k]);
    if (lead >= kTwoBytes && lead < kFirstBeyond && k + 1 < utf8.size()) {
      const auto next = static_cast<unsigned char>(utf8[++k]);
      bytes.push_back(static_cast<char>((lead & 0x03u) << 6 | (next & 0x3fu)));
    } else {
      bytes.push_back(utf8[k]);
    }
  }
}

}  // namespace

int XmlAttributes::size() const {
  int count = 0;
  while (list_[2 * count] != nullptr) ++count;
  return count;
}

std::string_view XmlAttributes::value(int k, String& scratch) const {
  const std::string_view text = list_[2 * k + 1];
  const auto is_ascii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  if (!latin_ || std::all_of(text.begin(), text.end(), is_ascii)) return text;
  scratch.clear();
  append_bytes(text, scratch);
  return scratch;
}

XmlParser::~XmlParser() {
  if (parser_ != nullptr) XML_ParserFree(parser_);
}

void XmlParser::create(std::string_view first_bytes) {
  latin_ = !is_wide(first_bytes);
  parser_ = XML_ParserCreate_MM(latin_ ? "iso-8859-1" : "utf-16", &kMemory, nullptr);
  if (parser_ == nullptr) throw std::bad_alloc();
  XML_SetUserData(parser_, this);
  XML_SetElementHandler(parser_, on_begin, on_end);
  XML_SetEntityDeclHandler(parser_, on_entity);
  XML_SetAttlistDeclHandler(parser_, on_attribute_list);
}

Status XmlParser::feed(std::string_view piece, bool last, MessageSink& sink) {
  const auto parsed = XML_Parse(parser_, piece.data(), static_cast<int>(piece.size()), last);
  if (parsed == XML_STATUS_OK) return {};
  const XML_Error error = XML_GetErrorCode(parser_);
  if (out_of_memory_ || error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
  return report_error(sink, error::kXmlSyntax, line(),
                      refusal_ != nullptr ? refusal_ : XML_ErrorString(error));
}

Status XmlParser::parse(FileStream& stream, MessageSink& sink) {
  Vector<char> block(kBlock);
  for (bool last = false; !last;) {
    std::size_t filled = 0;
    while (filled < kBlock && !last) {
      const std::size_t got = stream.read(block.data() + filled, kBlock - filled);
      filled += got;
      last = got == 0;
    }
    if (stream.failed()) return Status::failure(error::kCannotReadFile);
    std::string_view piece(block.data(), filled);
    if (parser_ == nullptr) {
      create(piece);
      piece.remove_prefix(mark_length(piece));
    }
    KELVO_TRY(feed(piece, last, sink));
  }
  return {};
}

Status XmlParser::parse(std::string_view text, MessageSink& sink) {
  create(text);
  return feed(text.substr(mark_length(text)), true, sink);
}

int XmlParser::line() const {
  return static_cast<int>(XML_GetCurrentLineNumber(parser_));
}

void XmlParser::refuse(const char* reason) noexcept {
  refusal_ = reason;
  XML_StopParser(parser_, XML_FALSE);
}

/// No exception passes through expat.
template <class Call>
void XmlParser::guarded(Call call) noexcept {
  // The end of an element without content is still handed out after the parse was stopped.
  if (out_of_memory_ || refusal_ != nullptr) return;
  try {
    call();
  } catch (const std::bad_alloc&) {
    out_of_memory_ = true;
    XML_StopParser(parser_, XML_FALSE);
  }
}

void XmlParser::on_begin(void* self, const char* element, const char** attributes) noexcept {
  auto& parser = *static_cast<XmlParser*>(self);
  parser.guarded([&] { parser.handler_.begin(element, XmlAttributes(attributes, parser.latin_)); });
}

void XmlParser::on_end(void* self, const char* element) noexcept {
  auto& parser = *static_cast<XmlParser*>(self);
  parser.guarded([&] { parser.handler_.end(element); });
}

void XmlParser::on_entity(void* self, const char*, int, const char*, int, const char*, const char*,
                          const char*, const char*) noexcept {
  static_cast<XmlParser*>(self)->refuse("entity declarations are not accepted");
}

void XmlParser::on_attribute_list(void* self, const char*, const char*, const char*, const char*,
                                  int) noexcept {
  static_cast<XmlParser*>(self)->refuse("attribute declarations are not accepted");
}

}  // namespace kelvo
