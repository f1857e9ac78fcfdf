// Parameters by number and by name, and parameter files.
#include <cstring>

#include "api/frame/api_frame.h"
#include "env/params/param_file.h"
#include "env/params/set_parameter.h"

namespace kelvo {
namespace {

// Every number of a parameter lies in this range; others are refused before anything else.
constexpr int kLowestNumber = 1001;
constexpr int kEndOfNumbers = 6000;

Status check_number(int number) {
  const bool possible = number >= kLowestNumber && number < kEndOfNumbers;
  return possible ? Status() : Status::failure(error::kBadParameterNumber);
}

/// The frame of the getters: number, result pointer, kind, in this order; then
/// read(Environment&, const ParamRow&).
template <class T, class Read>
int get_param(KLVenv env, int number, ParamKind kind, const T* result, Read read) {
  return api_env(env, [&](Environment& environment) -> Status {
    KELVO_TRY(check_number(number));
    KELVO_TRY(check_pointers(result));
    const int row = param_row(number, kind);
    if (row < 0) return Status::failure(error::kBadParameterNumber);
    read(environment, param_table()[row]);
    return Status();
  });
}

/// The same for the functions whose result pointers may be null.
template <class Read>
int get_param_info(KLVenv env, int number, ParamKind kind, Read read) {
  return get_param(env, number, kind, "", read);
}

template <class T>
void store(T* place, T value) {
  if (place != nullptr) *place = value;
}

Status list_changed(const Settings& settings, int* count_p, int* numbers, int space,
                    int* surplus_p) {
  KELVO_TRY(check_pointers(count_p, surplus_p));
  if (space < 0) return Status::failure(error::kBadArgument);
  if (space > 0) KELVO_TRY(check_pointers(numbers));
  int changed = 0;
  for (int row = 0; row < kNumParams; ++row) {
    if (!param_table()[row].is_public() || !settings.is_changed(row)) continue;
    if (changed < space) numbers[changed] = param_table()[row].number;
    ++changed;
  }
  *count_p = std::min(changed, space);
  *surplus_p = space - changed;
  if (*surplus_p >= 0) return Status();
  // Without space the call asks for the size only; that is no error to print.
  return space == 0 ? Status::reported(error::kInsufficientLength)
                    : Status::failure(error::kInsufficientLength);
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVsetintparam(KLVenv env, int number, int value) {
  return api_env(
      env, [&](Environment& environment) { return set_int_parameter(environment, number, value); });
}

int KLVsetdblparam(KLVenv env, int number, double value) {
  return api_env(env, [&](Environment& environment) {
    return set_double_parameter(environment, number, value);
  });
}

int KLVsetstrparam(KLVenv env, int number, const char* value) {
  return api_env(env, [&](Environment& environment) -> Status {
    KELVO_TRY(check_number(number));
    KELVO_TRY(check_pointers(value));
    return set_text_parameter(environment, number, value);
  });
}

int KLVgetintparam(KLVenv env, int number, int* value_p) {
  return get_param(
      env, number, ParamKind::integer, value_p,
      [&](Environment& environment, const ParamRow&) { *value_p = environment.get_int(number); });
}

int KLVgetdblparam(KLVenv env, int number, double* value_p) {
  return get_param(env, number, ParamKind::real, value_p,
                   [&](Environment& environment, const ParamRow&) {
                     *value_p = environment.get_double(number);
                   });
}

int KLVgetstrparam(KLVenv env, int number, char* value) {
  return get_param(env, number, ParamKind::text, value,
                   [&](Environment& environment, const ParamRow&) {
                     std::strcpy(value, environment.get_text(number));
                   });
}

int KLVinfointparam(KLVenv env, int number, int* default_p, int* min_p, int* max_p) {
  return get_param_info(env, number, ParamKind::integer,
                        [&](Environment& environment, const ParamRow& param) {
                          store(default_p, param.int_default);
                          store(min_p, param.int_min);
                          store(max_p, environment.settings().int_max(param));
                        });
}

int KLVinfodblparam(KLVenv env, int number, double* default_p, double* min_p, double* max_p) {
  return get_param_info(env, number, ParamKind::real, [&](Environment&, const ParamRow& param) {
    store(default_p, param.real_default);
    store(min_p, param.real_min);
    store(max_p, param.real_max);
  });
}

int KLVinfostrparam(KLVenv env, int number, char* default_value) {
  return get_param_info(env, number, ParamKind::text, [&](Environment&, const ParamRow& param) {
    if (default_value != nullptr) std::strcpy(default_value, param.text_default);
  });
}

int KLVgetparamname(KLVenv env, int number, char* name) {
  return api_env(env, [&](Environment&) -> Status {
    KELVO_TRY(check_number(number));
    KELVO_TRY(check_pointers(name));
    if (!in_param_group(number)) return Status::failure(error::kBadParameterNumber);
    const int row = param_row(number);
    std::strcpy(name, row >= 0 ? param_table()[row].name : "");
    return Status();
  });
}

int KLVgetparammeaning(KLVenv env, int number, char* meaning, int* effect_p) {
  return api_env(env, [&](Environment&) -> Status {
    KELVO_TRY(check_number(number));
    KELVO_TRY(check_pointers(meaning));
    const int row = param_row(number);
    if (row < 0) return Status::failure(error::kBadParameterNumber);
    std::strcpy(meaning, param_table()[row].meaning);
    if (effect_p != nullptr) *effect_p = param_table()[row].has_effect ? 1 : 0;
    return Status();
  });
}

int KLVgetparamnum(KLVenv env, const char* name, int* number_p) {
  return api_env(env, [&](Environment&) -> Status {
    KELVO_TRY(check_pointers(number_p));
    *number_p = -1;
    KELVO_TRY(check_pointers(name));
    const int row = param_row_by_name(name);
    if (row < 0) return Status::failure(error::kBadParameterName);
    *number_p = param_table()[row].number;
    return Status();
  });
}

int KLVgetparamtype(KLVenv env, int number, int* type_p) {
  return api_env(env, [&](Environment&) -> Status {
    KELVO_TRY(check_number(number));
    KELVO_TRY(check_pointers(type_p));
    if (!in_param_group(number)) return Status::failure(error::kBadParameterNumber);
    const int row = param_row(number);
    const ParamKind kind = row >= 0 ? param_table()[row].kind : ParamKind::none;
    *type_p = static_cast<int>(kind);
    return Status();
  });
}

int KLVsetdefaults(KLVenv env) {
  return api_env(env, [](Environment& environment) {
    set_default_parameters(environment);
    return Status();
  });
}

int KLVgetchgparam(KLVenv env, int* count_p, int* numbers, int space, int* surplus_p) {
  return api_env(env, [&](Environment& environment) {
    return list_changed(environment.settings(), count_p, numbers, space, surplus_p);
  });
}

int KLVreadcopyparam(KLVenv env, const char* filename) {
  return api_env(env, [&](Environment& environment) -> Status {
    KELVO_TRY(check_pointers(filename));
    return read_parameter_file(environment, filename);
  });
}

int KLVwriteparam(KLVenv env, const char* filename) {
  return api_env(env, [&](Environment& environment) {
    return write_parameter_file(environment, filename, ParameterFileUse::settings);
  });
}

int KLVEwriteparam(KLVenv env, const char* filename) {
  return api_env(env, [&](Environment& environment) {
    return write_parameter_file(environment, filename, ParameterFileUse::snapshot);
  });
}
