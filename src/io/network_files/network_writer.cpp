#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "io/line_writer.h"
#include "io/network_files/network_files.h"
#include "io/writer_names.h"

namespace kelvo {
namespace {

/// Costs up to this are not written, and bounds that differ by no more are equal.
constexpr double kNegligible = 1e-10;

/// Appends lines and hands them over in large pieces.
class Output {
 public:
  explicit Output(FileStream& stream) : stream_(stream) {}
  ~Output() { stream_.write(text_); }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  Output& operator<<(std::string_view text) {
    text_.append(text);
    constexpr std::size_t kPiece = 1 << 17;
    if (text_.size() >= kPiece) {
      stream_.write(text_);
      text_.clear();
    }
    return *this;
  }

 private:
  FileStream& stream_;
  String text_;
};

/// A number with its sign, or a name of at most 255 characters.
class Piece {
 public:
  explicit Piece(double value) {
    WrittenNumbers numbers;
    text_[0] = '-';
    const int start = value < 0.0 ? 1 : 0;
    length_ = static_cast<std::size_t>(start + format_number(value, text_ + start, numbers));
  }
  operator std::string_view() const { return {text_, length_}; }

 private:
  char text_[kNumberText + 1];
  std::size_t length_;
};

std::string_view cut(std::string_view name) {
  constexpr std::size_t kLongestName = 255;
  return name.substr(0, kLongestName);
}

void announce(MessageSink& sink, const WrittenNames& names, const char* kind, char letter) {
  if (!names.generated()) return;
  sink.print(Channel::warning, "Default %-4s names %c1, %c2 ... being created.\n", kind, letter,
             letter);
}

void write_bounds(Output& out, double lower, double upper, std::string_view name) {
  const bool below = lower <= -kInfiniteFlow, above = upper >= kInfiniteFlow;
  if (lower == 0.0 && above) return;
  if (!below && !above && std::fabs(upper - lower) <= kNegligible) {
    out << " " << name << " = " << Piece(lower) << "\n";
  } else if (below && above) {
    out << " " << name << " free\n";
  } else {
    out << (below ? std::string_view("-inf") : std::string_view(Piece(lower))) << " <= " << name;
    if (!above) out << " <= " << Piece(upper);
    out << "\n";
  }
}

}  // namespace

void write_numbered_network(const Network& network, MessageSink& sink, FileStream& stream) {
  Output out(stream);
  int inexact = 0;
  // Six digits, right-justified in 16 places.
  const auto number = [&](double value) {
    constexpr int kRoom = 40;
    char text[kRoom];
    const int length = std::snprintf(text, sizeof text, " %16g", value);
    for (char& c : text) c = c == ',' ? '.' : c;  // whatever the locale writes as the point
    const bool finite = std::fabs(value) < kInfiniteFlow;
    if (finite && std::strtod(text, nullptr) != value) ++inexact;
    out << std::string_view(text, static_cast<std::size_t>(length));
  };
  const auto index = [&](int value) {
    char text[16];
    out << std::string_view(
        text, static_cast<std::size_t>(std::snprintf(text, sizeof text, " %d", value)));
  };
  out << "c network problem";
  if (!network.name.empty()) out << " " << cut(network.name);
  out << "\nc\np min";
  index(network.num_nodes());
  index(network.num_arcs());
  out << "\n";
  if (network.sense < 0) out << "s max\n";
  for (int i = 0; i < network.num_nodes(); ++i) {
    if (network.supply[i] == 0.0) continue;
    out << "n";
    index(i + 1);
    number(network.supply[i]);
    out << "\n";
  }
  for (int a = 0; a < network.num_arcs(); ++a) {
    out << "a";
    index(network.from[a] + 1);
    index(network.to[a] + 1);
    number(network.lower[a]);
    number(network.upper[a]);
    number(network.cost[a]);
    out << "\n";
  }
  if (inexact > 0) {
    sink.print(Channel::warning, "Warning:  %d numbers have more digits than were written.\n",
               inexact);
  }
}

void write_sectioned_network(const Network& network, MessageSink& sink, FileStream& stream) {
  const WrittenNames nodes(network.node_names, network.num_nodes(), 'n', false);
  const WrittenNames arcs(network.arc_names, network.num_arcs(), 'a', false);
  announce(sink, nodes, "node", 'n');
  announce(sink, arcs, "arc", 'a');
  Output out(stream);
  out << (network.sense < 0 ? "MAXIMIZE NETWORK" : "MINIMIZE NETWORK");
  if (!network.name.empty()) out << " " << cut(network.name);
  out << "\n\nSUPPLY\n";
  for (int i = 0; i < network.num_nodes(); ++i) {
    if (network.supply[i] == 0.0) continue;
    out << cut(nodes.view(i)) << " : " << Piece(network.supply[i]) << "\n";
  }
  out << "ARCS\n";
  for (int a = 0; a < network.num_arcs(); ++a) {
    out << cut(arcs.view(a)) << " : " << cut(nodes.view(network.from[a])) << " -> "
        << cut(nodes.view(network.to[a])) << "\n";
  }
  out << "OBJECTIVE\n";
  for (int a = 0; a < network.num_arcs(); ++a) {
    if (std::fabs(network.cost[a]) <= kNegligible) continue;
    out << cut(arcs.view(a)) << " : " << Piece(network.cost[a]) << "\n";
  }
  out << "BOUNDS\n";
  for (int a = 0; a < network.num_arcs(); ++a) {
    write_bounds(out, network.lower[a], network.upper[a], cut(arcs.view(a)));
  }
  out << "ENDNETWORK\n";
}

}  // namespace kelvo
