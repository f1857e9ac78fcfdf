#include "base/messages.h"

#include <cstdarg>
#include <cstdio>

namespace kelvo {

void MessageSink::print(Channel channel, const char* format, ...) {
  char text[1024];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  send(channel, text);
}

}  // namespace kelvo
