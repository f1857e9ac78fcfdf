// The version of the library. Its one source is project() in CMakeLists.txt.
#pragma once

namespace kelvo {

extern const char* const kVersion;  // such as "12.1.0"

}  // namespace kelvo
