// The sections of the LP format that speak about known variables: bounds, types and special
// ordered sets. A name that the objective and constraints have not brought up is left out with a
// warning.
#pragma once

#include <string_view>

#include "io/lp_format/reader/collector.h"
#include "io/lp_format/reader/tokens.h"

namespace kelvo {

/// The column of a name, or -1 after a warning.
int find_lp_column(std::string_view name, LpCollector& collector, LpDiagnostics& diagnostics);

/// Reads one line of the bounds section, without blanks and ended by a zero:
///   name FREE,  name sense value,  value sense name,  value sense name sense value,
/// a value being a number, INF or INFINITY with an optional sign.
Status read_lp_bound(const char* text, LpCollector& collector, LpDiagnostics& diagnostics);

/// Reads a line of names, blanks between them, of the type section `section`. The line is ended by
/// a character of class kLpEnd.
Status read_lp_types(const char* text, LpSection section, LpCollector& collector,
                     LpDiagnostics& diagnostics);

/// Special ordered sets: "[name:] S1:: member:weight member:weight ...", over any number of lines.
class LpSosParser {
 public:
  LpSosParser(LpCollector& collector, LpDiagnostics& diagnostics)
      : collector_(collector), diagnostics_(diagnostics) {}

  /// Reads a line without blanks, ended by a zero.
  Status parse(const char* text);
  /// Leaves the section.
  Status close();

 private:
  enum class State {
    name,   // of a set, a set type or a member
    colon,  // behind a name
    value,  // behind a name and a colon: a weight or a set type
  };

  Status step(const char*& at);
  Status open_set(std::string_view label, std::string_view type);
  Status add_member(double weight);

  std::string_view saved_name() const { return {name_, static_cast<std::size_t>(name_length_)}; }

  LpCollector& collector_;
  LpDiagnostics& diagnostics_;
  State state_ = State::name;
  int sign_ = 0;  // of the weight being read, 0 before a sign
  int name_length_ = 0;
  char name_[kLpNameLength];  // [name_length_] the name read last
};

}  // namespace kelvo
