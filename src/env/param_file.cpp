#include "env/param_file.h"

#include "base/error_code.h"
#include "env/error_table.h"

namespace kelvo {

Status read_parameter_file(Environment& environment, const char* name) {
  return report_error(environment.messages(), error::kCannotReadFile, name);
}

}  // namespace kelvo
