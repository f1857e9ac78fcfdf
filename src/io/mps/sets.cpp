// The section SOS, and what both ways to give special ordered sets share.
#include <cstdio>

#include "io/mps/parser.h"

namespace kelvo {

/// Opens a set of the type that a code says; a missing code is 3301.
Status MpsParser::open_set(std::string_view code, std::string_view name) {
  if (code.empty()) return messages_.error(error::kNoSetType, line_number());
  const char second = code.size() > 1 ? code[1] : ' ';
  if (code.size() != 2 || (code[0] != 'S' && code[0] != 's') || (second != '1' && second != '2')) {
    return messages_.error(error::kUnknownSetType, line_number(), code[0], second);
  }
  SosSets& sets = model_.sos;
  sets.type.push_back(second);
  sets.members.start.push_back(sets.members.start.back());
  ++sets.members.num_major;
  sets.names.append(name);
  return {};
}

/// Data lines are "S1 name" or "S2 name", which open a set, and "column weight".
Status MpsParser::read_sets() {
  constexpr int kNamesBegin = 3;  // a type is in the first three characters of its line
  const int sets_before = model_.sos.size();
  for (;;) {
    KELVO_TRY(fields_.next());
    if (fields_.kind() != MpsLine::data) break;
    const std::string_view first = fields_.raw(0);
    const bool like_type = first.size() == 2 && (first[0] == 'S' || first[0] == 's');
    if (like_type && (fields_.position(0) < kNamesBegin || find_column(first) == kNone)) {
      KELVO_TRY(open_set(first, fields_.name(1)));
      continue;
    }
    const std::string_view name = fields_.name(0);
    if (model_.sos.size() == sets_before) {
      return messages_.error(error::kNoSetType, line_number());
    }
    const int column = find_column(name);
    if (column == kNone) {
      messages_.not_a_variable(line_number(), name);
      continue;
    }
    double weight;
    KELVO_TRY(fields_.number(1, weight));
    SparseMatrix& members = model_.sos.members;
    members.index.push_back(column);
    members.value.push_back(weight);
    ++members.start.back();
  }
  messages_.close(MpsWarning::sos_member);
  return {};
}

/// Sets without a name get the default one, unless none has a name.
void MpsParser::name_unnamed_sets() {
  NameStore& names = model_.sos.names;
  bool any = false;
  for (int set = 0; set < names.size(); ++set) any = any || names[set][0] != '\0';
  if (!any) {
    names.clear();
    return;
  }
  names.create();
  for (int set = 0; set < names.size(); ++set) {
    if (names[set][0] != '\0') continue;
    char text[16];
    std::snprintf(text, sizeof(text), "s%d", set + 1);
    names.rename(set, text);
  }
}

}  // namespace kelvo
