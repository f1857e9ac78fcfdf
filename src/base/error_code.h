// Codes of the error table by name, as far as engines and mutators return them.
#pragma once

namespace kelvo::error {

inline constexpr int kOutOfMemory = 1001;
inline constexpr int kNoEnvironment = 1002;
inline constexpr int kBadArgument = 1003;
inline constexpr int kNullPointer = 1004;
inline constexpr int kNoProblem = 1009;
inline constexpr int kBasisSingular = 1256;

}  // namespace kelvo::error
