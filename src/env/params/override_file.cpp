#include "env/params/override_file.h"

#include <cstdlib>

#include "env/params/param_file.h"
#include "env/params/param_numbers.h"
#include "env/params/set_parameter.h"

namespace kelvo {

void apply_override_file(Environment& environment) {
  const char* const name = std::getenv("ZEPH_KELVO_PARAMETER_FILE");
  if (name == nullptr || name[0] == '\0') return;
  const auto screen = [&](int on) {
    // Neither value can be refused.
    (void)set_int_parameter(environment, param::SCRIND, on);
  };
  MessageSink& messages = environment.messages();
  screen(1);
  messages.print(Channel::warning, "Reading override parameter file '%s' ", name);
  // Silent while the file is read: the reader's own messages are not for the screen.
  screen(0);
  const bool succeeded = read_parameter_file(environment, name).ok();
  screen(1);
  messages.print(Channel::warning, succeeded ? "succeeded.\n" : "failed.\n");
  messages.flush(Channel::warning);
  screen(0);
}

}  // namespace kelvo
