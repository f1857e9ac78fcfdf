#include "io/writer_names.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "base/name_index.h"
#include "io/lp_format/lp_characters.h"
#include "io/lp_format/reader/keywords.h"

namespace kelvo {
namespace {

/// What the formats carry.
constexpr std::size_t kLongestName = 255;

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

/// A label of this text would be read as the head of a section.
bool is_section_label(std::string_view name) {
  constexpr std::size_t kShortest = 8, kLongest = 15;  // "subjectto", "usercuts", ...
  if (name.size() < kShortest || name.size() > kLongest) return false;
  char line[kLongest + 2];
  std::copy(name.begin(), name.end(), line);
  line[name.size()] = ':';
  line[name.size() + 1] = '\0';
  const char* text = line;
  return classify_lp_line(LpSection::minimize, text) != LpSection::content;
}

bool is_field_character(char c) {
  const unsigned char byte = static_cast<unsigned char>(c);
  return byte > ' ' && byte != 127;
}

bool bad_start(char c) {
  return (lp_classes(c) & kLpStart) == 0 || c == 'e' || c == 'E';
}

}  // namespace

bool is_legal_lp_name(std::string_view name, bool label) {
  if (name.empty() || name.size() > kLongestName || bad_start(name[0])) return false;
  for (const char c : name) {
    if (is_illegal_character(c)) return false;
  }
  return !label || !is_section_label(name);
}

String legal_lp_name(std::string_view name, bool label) {
  String result;
  if (name.empty() || bad_start(name[0]) || (label && is_section_label(name))) result += '_';
  for (const char c : name) result += legal_character(c);
  if (result.size() > kLongestName) result.resize(kLongestName);
  return result;
}

bool is_field(std::string_view name) {
  if (name.empty() || name.size() > kLongestName) return false;
  for (const char c : name) {
    if (!is_field_character(c)) return false;
  }
  return true;
}

String field_name(std::string_view name) {
  String result;
  for (const char c : name.substr(0, kLongestName)) result += is_field_character(c) ? c : '_';
  if (result.empty()) result += '_';
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
  for (int i = 0; i < size(); ++i) {
    if (!is_field(view(i))) return false;
  }
  return true;
}

void WrittenNames::replace(int i, std::string_view name) {
  if (names_ != &own_) {
    own_ = *names_;
    names_ = &own_;
  }
  own_.rename(i, name);
}

bool WrittenNames::make_legal(bool labels) {
  bool legal = true;
  for (int i = 0; i < size() && legal; ++i) legal = is_legal_lp_name(view(i), labels);
  if (legal) return false;
  NameStore copies;
  copies.create();
  for (int i = 0; i < size(); ++i) copies.append(legal_lp_name(view(i), labels));
  own_ = std::move(copies);
  names_ = &own_;
  return true;
}

bool WrittenNames::make_fields() {
  if (all_are_fields()) return false;
  NameStore copies;
  copies.create();
  for (int i = 0; i < size(); ++i) copies.append(field_name(view(i)));
  own_ = std::move(copies);
  names_ = &own_;
  return true;
}

namespace {

/// Several kinds of names as one list.
struct JoinedNames {
  WrittenNames* const* kinds;
  int count;

  std::string_view view(int i) const {
    int kind = 0;
    while (i >= kinds[kind]->size()) i -= kinds[kind++]->size();
    return kinds[kind]->view(i);
  }
};

/// "name_2", "name_3", ...: the first that is not taken.
String numbered(std::string_view name, const NameIndex& taken, const JoinedNames& names) {
  constexpr std::size_t kLongestNumber = 12;
  for (int number = 2;; ++number) {
    char digits[kLongestNumber] = {'_'};
    const char* const end = std::to_chars(digits + 1, digits + kLongestNumber, number).ptr;
    String result(name.substr(0, kLongestName - kLongestNumber));
    result.append(digits, static_cast<std::size_t>(end - digits));
    if (taken.find(result, names) == NameIndex::kNone) return result;
  }
}

}  // namespace

bool make_distinct(WrittenNames* const* kinds, int count, String* last) {
  constexpr int kNamesAhead = 12;  // the table's memory is prefetched so much earlier
  const JoinedNames names{kinds, count};
  int total = 0;
  for (int kind = 0; kind < count; ++kind) total += kinds[kind]->size();
  NameIndex taken;
  taken.reserve(total);
  Vector<int> repeated;  // positions in the joined list
  for (int kind = 0, i = 0; kind < count; ++kind) {
    const WrittenNames& list = *kinds[kind];
    for (int k = 0; k < list.size(); ++k, ++i) {
      if (k + kNamesAhead < list.size()) taken.prefetch(list.view(k + kNamesAhead));
      if (taken.insert(list.view(k), i, names) != i) repeated.push_back(i);
    }
  }
  for (int position : repeated) {
    const int joined = position;
    int kind = 0;
    while (position >= kinds[kind]->size()) position -= kinds[kind++]->size();
    kinds[kind]->replace(position, numbered(names.view(joined), taken, names));
    taken.insert(names.view(joined), joined, names);
  }
  const bool last_repeats = last != nullptr && taken.find(*last, names) != NameIndex::kNone;
  if (last_repeats) *last = numbered(*last, taken, names);
  return last_repeats || !repeated.empty();
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
