#include <charconv>
#include <limits>

#include "base/error_code.h"
#include "base/number_text.h"
#include "env/error_table.h"
#include "io/network_files/network_files.h"

namespace kelvo {
namespace {

/// Lines that say something are shorter; comments may have any length.
constexpr std::size_t kLongestLine = 4096;

bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

/// The fields of a line, one after the other.
class Fields {
 public:
  explicit Fields(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

  std::string_view next() {
    while (at_ < end_ && is_blank(*at_)) ++at_;
    const char* const begin = at_;
    while (at_ < end_ && !is_blank(*at_)) ++at_;
    return {begin, static_cast<std::size_t>(at_ - begin)};
  }
  bool integer(int& value) {
    const std::string_view text = next();
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return !text.empty() && result.ec == std::errc() && result.ptr == text.data() + text.size();
  }
  bool number(double& value) {
    const std::string_view text = next();
    if (text.empty()) return false;
    const ParsedNumber parsed = parse_number(text.data(), text.data() + text.size(), false);
    value = parsed.value;
    return parsed.fault == NumberFault::none;
  }
  bool ended() { return next().empty(); }

 private:
  const char* at_;
  const char* end_;
};

class NumberedReader {
 public:
  NumberedReader(LineReader& lines, MessageSink& sink, Network& network)
      : lines_(lines), sink_(sink), network_(network) {}

  Status read() {
    KELVO_TRY(find_problem());
    for (;;) {
      KELVO_TRY(next_line());
      if (ended_) break;
      KELVO_TRY(read_line());
    }
    if (network_.num_arcs() < arcs_) return Status::failure(error::kNetworkFileEnds);
    sink_.print(Channel::results, "Nodes %d  Arcs %d\n", network_.num_nodes(), network_.num_arcs());
    return {};
  }

 private:
  /// The next line in line_; of a comment only its beginning.
  Status next_line() {
    const LineReader::Outcome outcome = lines_.next(kLongestLine);
    line_ = lines_.text();
    switch (outcome) {
      case LineReader::Outcome::line:
        return {};
      case LineReader::Outcome::failed:
        return Status::failure(error::kCannotReadFile);
      case LineReader::Outcome::end:
        ended_ = true;
        return {};
      case LineReader::Outcome::piece:
        break;
    }
    const bool matters = started_ && Fields(line_).next().substr(0, 1) != "c";
    if (matters) return Status::failure(error::kInconsistentNetwork);
    LineReader::Outcome rest = outcome;
    while (rest == LineReader::Outcome::piece) rest = lines_.next(kLongestLine);
    if (rest == LineReader::Outcome::failed) return Status::failure(error::kCannotReadFile);
    line_ = {};
    return {};
  }

  Status find_problem() {
    do {
      KELVO_TRY(next_line());
      if (ended_) return Status::failure(error::kNetworkFileEnds);
    } while (line_.empty() || line_.front() != 'p');
    started_ = true;
    Fields fields(line_);
    if (fields.next() != "p" || fields.next() != "min") {
      return Status::failure(error::kNotANetworkProblem);
    }
    int nodes = 0;
    if (!fields.integer(nodes) || !fields.integer(arcs_) || !fields.ended() || nodes < 0 ||
        arcs_ < 0) {
      return Status::failure(error::kInconsistentNetwork);
    }
    network_.supply.assign(nodes, 0.0);
    // A line of an arc has some ten characters at least: what the file cannot hold needs no room.
    constexpr std::size_t kShortestArc = 10;
    const std::size_t room = lines_.size_hint() / kShortestArc;
    const std::size_t arcs =
        std::min(static_cast<std::size_t>(arcs_), std::max<std::size_t>(room, 1000));
    for (Vector<int>* ends : {&network_.from, &network_.to}) ends->reserve(arcs);
    for (Vector<double>* data : {&network_.lower, &network_.upper, &network_.cost}) {
      data->reserve(arcs);
    }
    return {};
  }

  Status read_line() {
    Fields fields(line_);
    const std::string_view letter = fields.next();
    if (letter.empty() || letter.front() == 'c') return {};
    bool good = letter.size() == 1;
    switch (letter.front()) {
      case 'n':
        good = good && read_supply(fields);
        break;
      case 'a':
        good = good && read_arc(fields);
        break;
      case 's':
        good = good && read_sense(fields);
        break;
      case 'p':
        good = false;
        break;
      default:
        return report_error(sink_, error::kBadCharacter, lines_.line_number());
    }
    return good && fields.ended() ? Status() : Status::failure(error::kInconsistentNetwork);
  }

  bool read_node(Fields& fields, int& node) {
    if (!fields.integer(node) || node < 1 || node > network_.num_nodes()) return false;
    --node;
    return true;
  }

  bool read_supply(Fields& fields) {
    int node = 0;
    double supply = 0.0;
    if (!read_node(fields, node) || !fields.number(supply)) return false;
    network_.supply[node] = supply;
    return true;
  }

  bool read_arc(Fields& fields) {
    int from = 0, to = 0;
    double lower = 0.0, upper = 0.0, cost = 0.0;
    if (!read_node(fields, from) || !read_node(fields, to) || !fields.number(lower) ||
        !fields.number(upper) || !fields.number(cost) || network_.num_arcs() == arcs_) {
      return false;
    }
    network_.from.push_back(from);
    network_.to.push_back(to);
    network_.lower.push_back(lower);
    network_.upper.push_back(upper);
    network_.cost.push_back(cost);
    return true;
  }

  bool read_sense(Fields& fields) {
    const std::string_view sense = fields.next();
    if (sense != "max" && sense != "min") return false;
    if (sense_given_) {
      sink_.send(Channel::warning, "Multiple definitions of objective sense\n");
    }
    sense_given_ = true;
    network_.sense = sense == "max" ? -1 : 1;
    return true;
  }

  LineReader& lines_;
  MessageSink& sink_;
  Network& network_;
  std::string_view line_;
  int arcs_ = 0;  // as announced
  bool started_ = false;
  bool ended_ = false;
  bool sense_given_ = false;
};

}  // namespace

Status read_numbered_network(LineReader& lines, MessageSink& sink, Network& network) {
  return NumberedReader(lines, sink, network).read();
}

Status read_network(LineReader& lines, MessageSink& sink, Network& network) {
  // The sectioned format begins with a word of its own.
  constexpr std::size_t kWord = 8;
  std::string_view start = lines.peek(256);
  while (!start.empty() && (is_blank(start.front()) || start.front() == '\n')) {
    start.remove_prefix(1);
  }
  char word[kWord] = {};
  const std::size_t length = start.copy(word, kWord);
  for (char& c : word) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  const std::string_view found(word, length);
  return found == "MINIMIZE" || found == "MAXIMIZE" ? read_sectioned_network(lines, sink, network)
                                                    : read_numbered_network(lines, sink, network);
}

}  // namespace kelvo
