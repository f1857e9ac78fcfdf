// Basis status codes, the same in every interface, file and engine of the library.
#pragma once

namespace kelvo {

enum BasisStatus : int {
  kAtLower = 0,  // nonbasic at the lower bound
  kBasic = 1,
  kAtUpper = 2,    // nonbasic at the upper bound
  kFreeSuper = 3,  // nonbasic free, or superbasic: between the bounds
};

}  // namespace kelvo
