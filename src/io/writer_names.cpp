#include "io/writer_names.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "io/lp_characters.h"

namespace kelvo {
namespace {

constexpr unsigned kIllegalInside = kLpBlank | kLpSign | kLpEnd | kLpOperator | kLpRelation;

bool is_illegal_character(char c) {
  const unsigned classes = lp_classes(c);
  return (classes & kIllegalInside) != 0 || c == ':' || c == '|' || classes == 0;
}

char legal_character(char c) {
  switch (c) {
    case '[':
      return '(';
    case ']':
      return ')';
    case '|':
      return 'b';
    case '*':
      return 'a';
    case '/':
      return 'd';
    case '^':
      return 'c';
    case ':':
      return '.';
    case '<':
      return 'l';
    case '>':
      return 'g';
    case '=':
      return 'e';
    case '+':
      return 'p';
    case '-':
      return 'm';
    default:
      return is_illegal_character(c) ? '_' : c;
  }
}

bool bad_start(char c) {
  return (lp_classes(c) & kLpStart) == 0 || c == 'e' || c == 'E';
}

}  // namespace

bool is_legal_lp_name(const char* name) {
  if (bad_start(*name)) return false;
  for (const char* c = name; *c != '\0'; ++c) {
    if (is_illegal_character(*c)) return false;
  }
  return true;
}

String legal_lp_name(const char* name) {
  String result;
  if (bad_start(*name)) result += '_';
  for (const char* c = name; *c != '\0'; ++c) result += legal_character(*c);
  return result;
}

WrittenNames::WrittenNames(const NameStore& store, int count, char letter, bool generic)
    : names_(&store) {
  if (store.present() && !generic && store.size() == count) return;
  generated_ = true;
  names_ = &own_;
  own_.create();
  own_.reserve(count, 9L * count);
  for (int i = 0; i < count; ++i) {
    char text[16] = {letter};
    const char* end = std::to_chars(text + 1, text + sizeof text, i + 1).ptr;
    own_.append(std::string_view(text, static_cast<std::size_t>(end - text)));
  }
}

int WrittenNames::longest() const {
  std::size_t result = 0;
  for (int i = 0; i < size(); ++i) result = std::max(result, std::strlen((*this)[i]));
  return static_cast<int>(result);
}

bool WrittenNames::all_are_fields() const {
  constexpr std::size_t kLongestField = 255;
  for (int i = 0; i < size(); ++i) {
    const std::string_view name = view(i);
    if (name.empty() || name.size() > kLongestField) return false;
    for (const char c : name) {
      const unsigned char byte = static_cast<unsigned char>(c);
      if (byte <= ' ' || byte == 127) return false;
    }
  }
  return true;
}

bool WrittenNames::make_legal() {
  bool legal = true;
  for (int i = 0; i < size() && legal; ++i) legal = is_legal_lp_name((*this)[i]);
  if (legal) return false;
  NameStore copies;
  copies.create();
  for (int i = 0; i < size(); ++i) copies.append(legal_lp_name((*this)[i]));
  own_ = std::move(copies);
  names_ = &own_;
  return true;
}

ModelNames::ModelNames(const Model& model, bool generic)
    : objective(model.has_objective_name && !generic ? model.objective_name : String()),
      columns(model.col_names, model.num_cols, 'x', generic),
      rows(model.row_names, model.num_rows, 'c', generic),
      sets(model.sos.names, model.sos.size(), 's', generic),
      quadratics(model.quadratic_names, static_cast<int>(model.quadratic_constraints.size()), 'q',
                 generic),
      indicators(model.indicators.rows.names, model.indicators.size(), 'i', generic),
      user_cuts(model.user_cuts.names, model.user_cuts.size(), 'u', generic),
      lazy_constraints(model.lazy_constraints.names, model.lazy_constraints.size(), 'l', generic) {}

}  // namespace kelvo
