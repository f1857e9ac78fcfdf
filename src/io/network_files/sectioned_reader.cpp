#include <algorithm>

#include "base/error_code.h"
#include "base/name_index.h"
#include "base/number_text.h"
#include "env/error_table.h"
#include "io/network_files/network_files.h"

namespace kelvo {
namespace {

constexpr std::size_t kLongestLine = 4096;
constexpr int kMostWarnings = 20;

std::string_view trimmed(std::string_view text) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

bool equal_ignoring_case(std::string_view text, std::string_view capitals) {
  const auto upper = [](char c) {
    return static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  };
  return text.size() == capitals.size() &&
         std::equal(text.begin(), text.end(), capitals.begin(),
                    [&](char a, char b) { return upper(a) == b; });
}

/// Splits at a mark with blanks around it or, when there is none, at the mark alone.
bool split(std::string_view text, std::string_view mark, std::string_view& before,
           std::string_view& behind) {
  char spaced[8] = {' '};
  std::copy(mark.begin(), mark.end(), spaced + 1);
  spaced[mark.size() + 1] = ' ';
  std::size_t at = text.find(std::string_view(spaced, mark.size() + 2));
  if (at != std::string_view::npos) {
    ++at;
  } else {
    at = text.find(mark);
  }
  if (at == std::string_view::npos) return false;
  before = trimmed(text.substr(0, at));
  behind = trimmed(text.substr(at + mark.size()));
  return true;
}

/// A number; infinite ones by name.
bool read_number(std::string_view text, double& value) {
  const bool negative = !text.empty() && text.front() == '-';
  const std::string_view digits = text.substr(negative ? 1 : 0);
  if (equal_ignoring_case(digits, "INF") || equal_ignoring_case(digits, "INFINITY")) {
    constexpr double kInfinite = 1e20;
    value = negative ? -kInfinite : kInfinite;
    return true;
  }
  if (text.empty()) return false;
  const ParsedNumber parsed = parse_number(text.data(), text.data() + text.size(), false);
  value = parsed.value;
  return parsed.fault == NumberFault::none;
}

bool is_name(std::string_view text) {
  return !text.empty() && text.find('\0') == std::string_view::npos;
}

class SectionedReader {
 public:
  SectionedReader(LineReader& lines, MessageSink& sink, Network& network)
      : lines_(lines), sink_(sink), network_(network) {}

  Status read() {
    KELVO_TRY(read_header());
    for (;;) {
      KELVO_TRY(next_line());
      if (equal_ignoring_case(line_, "ENDNETWORK")) break;
      if (!enter_section()) KELVO_TRY(read_entry());
    }
    finish();
    return {};
  }

 private:
  enum class Section { none, supply, arcs, objective, bounds };

  /// The next line that is not empty, without the blanks around it.
  Status next_line() {
    do {
      switch (lines_.next(kLongestLine)) {
        case LineReader::Outcome::line:
          break;
        case LineReader::Outcome::piece:
          return Status::failure(error::kInconsistentNetwork);
        case LineReader::Outcome::end:
          return Status::failure(error::kNetworkFileEnds);
        case LineReader::Outcome::failed:
          return Status::failure(error::kCannotReadFile);
      }
      line_ = trimmed(lines_.text());
    } while (line_.empty());
    const auto control = [](char c) { return static_cast<unsigned char>(c) < ' ' && c != '\t'; };
    if (std::any_of(line_.begin(), line_.end(), control)) {
      return report_error(sink_, error::kBadCharacter, lines_.line_number());
    }
    return {};
  }

  Status read_header() {
    KELVO_TRY(next_line());
    std::string_view rest = line_;
    const auto word = [&rest] {
      const std::size_t end = std::min(rest.find_first_of(" \t"), rest.size());
      const std::string_view first = rest.substr(0, end);
      rest = trimmed(rest.substr(end));
      return first;
    };
    const std::string_view sense = word();
    const bool maximize = equal_ignoring_case(sense, "MAXIMIZE");
    if ((!maximize && !equal_ignoring_case(sense, "MINIMIZE")) ||
        !equal_ignoring_case(word(), "NETWORK")) {
      return Status::failure(error::kInconsistentNetwork);
    }
    network_.sense = maximize ? -1 : 1;
    network_.name.assign(rest);
    network_.node_names.create();
    network_.arc_names.create();
    return {};
  }

  bool enter_section() {
    struct Keyword {
      std::string_view text;
      Section section;
    };
    constexpr Keyword kKeywords[] = {{"SUPPLY", Section::supply},
                                     {"ARCS", Section::arcs},
                                     {"OBJECTIVE", Section::objective},
                                     {"BOUNDS", Section::bounds}};
    for (const Keyword& keyword : kKeywords) {
      if (!equal_ignoring_case(line_, keyword.text)) continue;
      section_ = keyword.section;
      return true;
    }
    return false;
  }

  Status read_entry() {
    switch (section_) {
      case Section::supply:
        return read_supply();
      case Section::arcs:
        return read_arc();
      case Section::objective:
        return read_cost();
      case Section::bounds:
        return read_bounds();
      case Section::none:
        break;
    }
    return Status::failure(error::kBadRowIdentifier);
  }

  /// The node of that name, a new one if need be.
  int node_of(std::string_view name) {
    const int known = nodes_.find(name, network_.node_names);
    if (known >= 0) return known;
    const int node = network_.num_nodes();
    network_.node_names.append(name);
    nodes_.insert(name, node, network_.node_names);
    network_.supply.push_back(0.0);
    supplied_.push_back(0);
    return node;
  }

  Status find_arc(std::string_view name, int& arc) {
    arc = arcs_.find(name, network_.arc_names);
    return arc >= 0 ? Status() : Status::failure(error::kBadRowIdentifier);
  }

  void overridden(const char* format, std::string_view name) {
    constexpr std::size_t kNameSize = 256;
    char text[kNameSize] = {};
    name.copy(text, kNameSize - 1);
    sink_.print(Channel::warning, format, text, lines_.line_number());
  }

  Status read_supply() {
    std::string_view name, text;
    double supply = 0.0;
    if (!split(line_, ":", name, text) || !is_name(name) || !read_number(text, supply)) {
      return Status::failure(error::kInconsistentNetwork);
    }
    const int node = node_of(name);
    if (supplied_[node])
      overridden("Supply value for node %.255s overridden near line %d.\n", name);
    supplied_[node] = 1;
    network_.supply[node] = supply;
    return {};
  }

  Status read_arc() {
    std::string_view name, ends, from, to;
    if (!split(line_, ":", name, ends) || !is_name(name) || !split(ends, "->", from, to) ||
        !is_name(from) || !is_name(to)) {
      return Status::failure(error::kInconsistentNetwork);
    }
    int arc = arcs_.find(name, network_.arc_names);
    if (arc >= 0) {
      overridden("Nodes for arc %.255s overridden near line %d.\n", name);
    } else {
      arc = network_.num_arcs();
      network_.arc_names.append(name);
      arcs_.insert(name, arc, network_.arc_names);
      network_.from.push_back(0);
      network_.to.push_back(0);
      network_.lower.push_back(0.0);
      network_.upper.push_back(1e20);
      network_.cost.push_back(0.0);
      bounded_.push_back(0);
      priced_.push_back(0);
    }
    network_.from[arc] = node_of(from);
    network_.to[arc] = node_of(to);
    return {};
  }

  Status read_cost() {
    std::string_view name, text;
    double cost = 0.0;
    if (!split(line_, ":", name, text) || !is_name(name) || !read_number(text, cost)) {
      return Status::failure(error::kInconsistentNetwork);
    }
    int arc = -1;
    KELVO_TRY(find_arc(name, arc));
    if (priced_[arc] && ++repeated_ <= kMostWarnings) {
      sink_.print(Channel::warning, "%s '%s' repeats.\n", "Arc", network_.arc_names[arc]);
    }
    priced_[arc] = 1;
    network_.cost[arc] = cost;
    return {};
  }

  Status read_bounds() {
    constexpr double kInfinite = 1e20;
    std::string_view name, first, rest;
    double lower = 0.0, upper = kInfinite;
    bool sets_lower = true, sets_upper = true;
    bool good = true;
    if (split(line_, "<=", first, rest)) {
      std::string_view last;
      if (split(rest, "<=", name, last)) {
        good = read_number(first, lower) && read_number(last, upper);
      } else if (read_number(first, lower)) {
        name = rest;
        sets_upper = false;
      } else {
        name = first;
        sets_lower = false;
        good = read_number(rest, upper);
      }
    } else if (split(line_, "=", name, rest)) {
      good = read_number(rest, lower);
      upper = lower;
    } else {
      constexpr std::size_t kFree = 4;
      good = line_.size() > kFree + 1 &&
             equal_ignoring_case(line_.substr(line_.size() - kFree), "FREE");
      if (good) name = trimmed(line_.substr(0, line_.size() - kFree));
      lower = -kInfinite;
    }
    if (!good || !is_name(name)) return Status::failure(error::kInconsistentNetwork);
    int arc = -1;
    KELVO_TRY(find_arc(name, arc));
    constexpr char kLower = 1, kUpper = 2;
    const char sets = static_cast<char>((sets_lower ? kLower : 0) | (sets_upper ? kUpper : 0));
    if ((bounded_[arc] & sets) != 0) {
      overridden("Bounds for arc %.255s overridden near line %d.\n", name);
    }
    bounded_[arc] = static_cast<char>(bounded_[arc] | sets);
    if (sets_lower) network_.lower[arc] = lower;
    if (sets_upper) network_.upper[arc] = upper;
    return {};
  }

  void finish() {
    for (int a = 0; a < network_.num_arcs(); ++a) {
      if (network_.lower[a] <= network_.upper[a]) continue;
      sink_.print(Channel::warning, "Warning:  Bounds on '%.255s' contradictory.\n",
                  network_.arc_names[a]);
    }
    if (repeated_ > kMostWarnings) {
      sink_.print(Channel::warning, "%d repeated %c%s warnings not printed.\n",
                  repeated_ - kMostWarnings, 'a', "rc");
    }
    sink_.print(Channel::results, "Nodes %d  Arcs %d\n", network_.num_nodes(), network_.num_arcs());
  }

  LineReader& lines_;
  MessageSink& sink_;
  Network& network_;
  std::string_view line_;
  Section section_ = Section::none;
  NameIndex nodes_;
  NameIndex arcs_;
  Vector<char> supplied_;  // [nodes] 1: a supply was given
  Vector<char> bounded_;   // [arcs] bits: 1 the lower, 2 the upper bound was given
  Vector<char> priced_;    // [arcs] 1: a cost was given
  int repeated_ = 0;
};

}  // namespace

Status read_sectioned_network(LineReader& lines, MessageSink& sink, Network& network) {
  return SectionedReader(lines, sink, network).read();
}

}  // namespace kelvo
