// The table of error codes and their texts, and its index.
//
// A text is at the same time the printf format with which the error is reported, so a text with
// conversions has to be completed by the routine that detects the error (report_error). The whole
// line is "KELVO Error %5d: " with the code, the text, and ".\n".
//
// The index is a hash table of 479 slots (a prime): code c starts at slot c mod 479 and advances by
// 477 - (c mod 477), taken modulo 479, until a slot holds c or is empty. It is computed at compile
// time, once for all environments.
#pragma once

#include "base/messages.h"
#include "base/status.h"

namespace kelvo {

/// Room that an error line or any other message needs, its terminating zero included.
inline constexpr int kMessageSize = 1024;

/// The text of a code, or null when the table has none.
const char* error_message(int code) noexcept;

/// Writes the whole line of `code` into `buffer` (kMessageSize characters) and returns true. For a
/// code of 1..99999 without text the line says "Unknown error code" and the result is false; for
/// any other code the buffer stays as it is and the result is false.
bool error_line(int code, char* buffer) noexcept;

/// Prints the line of `code`, completed with the arguments that its text asks for, on the error
/// channel, and returns the code as reported.
Status report_error(MessageSink& sink, int code, ...);

}  // namespace kelvo
