#include "env/version.h"

namespace kelvo {

const char* const kVersion = KELVO_VERSION;

}  // namespace kelvo
