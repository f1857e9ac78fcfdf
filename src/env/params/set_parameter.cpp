#include "env/params/set_parameter.h"

#include "env/params/param_numbers.h"

namespace kelvo {
namespace {

bool echoes(const Environment& environment) {
  return environment.get_int(param::ECHO_SETTINGS) != 0;
}

}  // namespace

Status set_int_parameter(Environment& environment, int number, int value) {
  KELVO_TRY(environment.settings().check_int(number, value));
  if (number == param::SCRIND) environment.set_screen(value != 0);
  KELVO_TRY(environment.settings().set_int(number, value));
  if (echoes(environment)) {
    environment.messages().print(Channel::results, "Parameter %d set to %d.\n", number, value);
  }
  return Status();
}

Status set_double_parameter(Environment& environment, int number, double value) {
  KELVO_TRY(environment.settings().set_double(number, value));
  if (echoes(environment)) {
    environment.messages().print(Channel::results, "Parameter %d set to %g.\n", number, value);
  }
  return Status();
}

Status set_text_parameter(Environment& environment, int number, const char* value) {
  KELVO_TRY(environment.settings().set_text(number, value));
  if (echoes(environment)) {
    environment.messages().print(Channel::results, "Parameter %d set to \"%s\".\n", number,
                                 environment.get_text(number));
  }
  return Status();
}

void set_default_parameters(Environment& environment) {
  environment.settings().reset_parameters();
  environment.set_screen(false);
}

}  // namespace kelvo
