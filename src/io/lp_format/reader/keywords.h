// Section keywords of the LP format.
#pragma once

namespace kelvo {

enum class LpSection {
  none = 0,  // before the first keyword
  minimize = 1,
  maximize = 2,
  bounds = 4,
  sos = 5,
  end = 0x10,
  content = 0x11,  // an ordinary line
  constraints = 0x20,
  user_cuts = 0x21,
  lazy_constraints = 0x22,
  integers = 0x41,
  binaries = 0x42,
  generals = 0x43,
  semi_continuous = 0x44,
};

inline bool is_objective(LpSection section) {
  return section == LpSection::minimize || section == LpSection::maximize;
}
inline bool is_constraints(LpSection section) {
  return section == LpSection::constraints || section == LpSection::user_cuts ||
         section == LpSection::lazy_constraints;
}
inline bool is_types(LpSection section) {
  return section == LpSection::integers || section == LpSection::binaries ||
         section == LpSection::generals || section == LpSection::semi_continuous;
}

/// What kind of line this is inside the section `current`: the section that its keyword opens, or
/// LpSection::content. `text` starts with a non-blank and is ended by a character of class kLpEnd;
/// for a keyword that may be followed by content it is moved behind the keyword.
LpSection classify_lp_line(LpSection current, const char*& text);

}  // namespace kelvo
