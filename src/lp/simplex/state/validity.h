// How far a computed quantity can be relied on.
#pragma once

namespace kelvo {

enum class Validity {
  stale,    // belongs to another basis or to other data
  updated,  // belongs to the basis, by updates: rounding errors of many iterations may be in it
  fresh,    // computed with a factor that had no updates, or verified
};

}  // namespace kelvo
