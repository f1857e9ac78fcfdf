// What the reader and the writer of parameter files share.
#pragma once

namespace kelvo {

/// Beginning of the first line; a blank and the version follow.
inline constexpr const char* kParameterFileHeader = "KELVO Parameter File Version";

}  // namespace kelvo
