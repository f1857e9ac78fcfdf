// The table of all parameters: number, name, meaning, type, default and bounds.
//
// Numbers come in five groups (general, mixed integer, barrier, quadratic, network); a number
// inside a group's range need not have a parameter. Public parameters have a name beginning with
// KLV_PARAM_; hidden ones have the empty name and are known by number only. The position of a
// parameter in the table is its slot in every Settings record, so the table is the one place that
// says which parameters there are.
#pragma once

#include <span>

namespace kelvo {

/// The value of double parameters, and of limits on reals, that means "no limit".
inline constexpr double kNoLimit = 1e75;
/// The value of counting parameters that means "no limit".
inline constexpr int kCountLimit = 2100000000;
/// Room of a text parameter, its terminating zero included.
inline constexpr int kParamTextSize = 512;

enum class ParamKind { none = 0, integer = 1, real = 2, text = 3 };

struct ParamRow {
  int number;
  const char* name;     // "" for a hidden parameter
  const char* meaning;  // of a public parameter, in one line; "" for a hidden one
  bool has_effect;      // false: this version has nothing that a public parameter would govern
  ParamKind kind;
  bool up_to_processors;                    // the maximum is the number of processors, not int_max
  int int_default, int_min, int_max;        // kind integer
  double real_default, real_min, real_max;  // kind real; equal bounds mean no bounds
  const char* text_default;                 // kind text

  constexpr bool is_public() const { return name[0] != '\0'; }
  constexpr bool has_bounds() const { return real_min != real_max; }
};

/// Number of parameters, the public ones among them, and the texts among them.
inline constexpr int kNumParams = 275;
inline constexpr int kNumPublicParams = 151;
inline constexpr int kNumTextParams = 3;

/// All parameters in ascending order of their numbers, which is group by group.
std::span<const ParamRow, kNumParams> param_table() noexcept;

/// Position in the table of the parameter with this number, -1 when there is none.
int param_row(int number) noexcept;

/// The same for a parameter of the given kind only.
int param_row(int number, ParamKind kind) noexcept;

/// Position in the table of the public parameter with this name (case counts), or -1.
int param_row_by_name(const char* name) noexcept;

/// True when the number lies in the range of one of the groups.
bool in_param_group(int number) noexcept;

}  // namespace kelvo
