#include "io/lp_format/reader/lp_reader.h"

#include <cstring>

#include "base/error_code.h"
#include "io/lp_format/reader/expression.h"
#include "io/lp_format/reader/keywords.h"
#include "io/lp_format/reader/lines.h"
#include "io/lp_format/reader/sections.h"

namespace kelvo {
namespace {

/// What compact() does with a character.
enum Action : unsigned char { kDrop, kKeep, kStop };

constexpr std::size_t kNumCharacters = 256;

struct ActionTable {
  ActionTable() {
    for (std::size_t c = 0; c < kNumCharacters; ++c) {
      const unsigned classes = kLpCharacters[c];
      action[c] = (classes & kLpEnd) != 0 ? kStop : (classes & kLpBlank) != 0 ? kDrop : kKeep;
    }
  }
  unsigned char action[kNumCharacters];
};

/// Copies a line without its blanks up to the end of its useful part.
void compact(const char* from, char* to) {
  static const ActionTable table;
  unsigned char action = 0;
  while ((action = table.action[static_cast<unsigned char>(*from)]) != kStop) {
    *to = *from++;
    to += action;
  }
  *to = '\0';
}

/// The sections of one text, fed line by line.
class Parser {
 public:
  enum class Mode {
    file,       // lines before the first keyword do not count
    entry,      // the first line must be an objective keyword
    additions,  // constraints and bounds only, beginning with constraints
  };

  Parser(Mode mode, LpDiagnostics& diagnostics)
      : mode_(mode),
        diagnostics_(diagnostics),
        collector_(diagnostics),
        expression_(collector_, diagnostics),
        sos_(collector_, diagnostics) {
    if (mode == Mode::additions) enter(LpSection::constraints);
  }

  LpCollector& collector() { return collector_; }
  /// True when the End line has been read.
  bool ended() const { return ended_; }
  /// True when the rest of the physical line of the last call does not count.
  bool ignores_rest() const { return ignores_rest_; }

  Status feed(const LpLines::Line& line);
  /// To be called when there is no further line.
  Status finish();

 private:
  LpSection classify(const LpLines::Line& line, const char*& text) const;
  void enter(LpSection section);
  Status leave();
  Status parse_content(const char* text);

  const Mode mode_;
  LpDiagnostics& diagnostics_;
  LpCollector collector_;
  LpExpressionParser expression_;
  LpSosParser sos_;
  LpSection section_ = LpSection::none;
  bool ended_ = false;
  bool ignores_rest_ = false;
  char compacted_[LpLines::kLongestPiece + 1];
};

/// The kind of a line. A piece of a long line belongs to what came before it.
LpSection Parser::classify(const LpLines::Line& line, const char*& text) const {
  if (line.continued) return LpSection::content;
  const LpSection kind = classify_lp_line(section_, text);
  const bool excluded = mode_ == Mode::additions && (is_types(kind) || kind == LpSection::sos);
  return excluded ? LpSection::content : kind;
}

Status Parser::feed(const LpLines::Line& line) {
  ignores_rest_ = false;
  const char* text = line.text;
  const LpSection kind = classify(line, text);
  if (section_ == LpSection::none && !is_objective(kind)) {
    const bool skipped = mode_ == Mode::file && kind == LpSection::content;
    return skipped ? Status() : diagnostics_.error(error::kNoObjectiveSense);
  }
  if (kind == LpSection::content) return parse_content(text);
  if (!(is_objective(section_) && is_objective(kind))) KELVO_TRY(leave());
  if (kind == LpSection::end) {
    ended_ = true;
    return {};
  }
  enter(kind);
  return is_objective(kind) || is_constraints(kind) ? parse_content(text) : Status();
}

Status Parser::finish() {
  if (!ended_) {
    if (section_ == LpSection::none) return diagnostics_.error(error::kNoObjectiveSense);
    KELVO_TRY(leave());
    diagnostics_.warn_end_missing();
  }
  diagnostics_.close_warnings();
  return {};
}

void Parser::enter(LpSection section) {
  section_ = section;
  if (is_objective(section) || is_constraints(section)) expression_.open(section);
}

Status Parser::leave() {
  if (is_objective(section_) || is_constraints(section_)) return expression_.close();
  if (section_ == LpSection::bounds) collector_.close_bounds();
  return section_ == LpSection::sos ? sos_.close() : Status();
}

Status Parser::parse_content(const char* text) {
  if (is_types(section_)) return read_lp_types(text, section_, collector_, diagnostics_);
  compact(text, compacted_);
  if (section_ == LpSection::bounds) return read_lp_bound(compacted_, collector_, diagnostics_);
  if (section_ == LpSection::sos) return sos_.parse(compacted_);
  KELVO_TRY(expression_.parse(compacted_, ignores_rest_));
  return collector_.check_size();
}

/// Lines accepted from a person, to read them again when a later one turns out wrong.
class Transcript {
 public:
  void add(const LpLines::Line& line, int number) {
    const std::size_t length = useful_length(line.text);
    lines_.push_back({text_.size(), number, line.continued});
    text_.insert(text_.end(), line.text, line.text + length);
    text_.push_back('\0');
  }

  /// Feeds the lines to a new parser. They have been accepted before, so this cannot fail.
  void replay(Parser& parser, LpDiagnostics& diagnostics) const {
    const int current_line = diagnostics.line;
    for (const Entry& entry : lines_) {
      diagnostics.line = entry.number;
      const LpLines::Line line = {text_.data() + entry.offset, entry.continued, false};
      if (!parser.feed(line).ok()) break;
    }
    diagnostics.line = current_line;
  }

 private:
  struct Entry {
    std::size_t offset;
    int number;
    bool continued;
  };

  static std::size_t useful_length(const char* text) {
    std::size_t length = 0;
    while ((lp_classes(text[length]) & kLpEnd) == 0) ++length;
    return length;
  }

  Vector<char> text_;  // the lines, each ended by a zero
  Vector<Entry> lines_;
};

/// One run of the reader: from lines to a parser that has taken them all.
class Session {
 public:
  /// `base` is the model that additions go to, or null.
  Session(LineReader& lines, bool interactive, const Model* base, MessageSink& sink)
      : sink_(sink),
        diagnostics_(sink),
        lines_(lines, diagnostics_),
        interactive_(interactive),
        base_(base) {}

  LpCollector& collector() { return parser_->collector(); }

  Status prepare(const LpCapacities& capacities, std::size_t text_size) {
    make_parser();
    return collector().reserve(capacities, text_size);
  }
  Status run();

 private:
  void make_parser();
  void rewind();

  MessageSink& sink_;
  LpDiagnostics diagnostics_;
  LpLines lines_;
  const bool interactive_;
  const Model* const base_;
  Owned<Parser> parser_;
  Transcript transcript_;
};

void Session::make_parser() {
  const Parser::Mode mode = base_ != nullptr ? Parser::Mode::additions
                            : interactive_   ? Parser::Mode::entry
                                             : Parser::Mode::file;
  parser_ = make_owned<Parser>(mode, diagnostics_);
  if (base_ != nullptr) collector().begin_additions(*base_);
}

Status Session::run() {
  while (!parser_->ended()) {
    LpLines::Line line;
    Status status = lines_.next(line);
    if (status.ok() && line.at_end) break;
    if (status.ok()) status = parser_->feed(line);
    if (!status.ok()) {
      if (!interactive_) return status;
      lines_.skip_rest_of_line();
      sink_.send(Channel::results, "Please reenter last line:\n");
      rewind();
      continue;
    }
    if (parser_->ignores_rest()) lines_.skip_rest_of_line();
    if (interactive_) transcript_.add(line, diagnostics_.line);
  }
  return parser_->finish();
}

/// Goes back to the state before the line that turned out wrong.
void Session::rewind() {
  SilentSink silence;
  diagnostics_.set_sink(silence);
  const LpDiagnostics::Counts told = diagnostics_.counts();
  make_parser();
  transcript_.replay(*parser_, diagnostics_);
  diagnostics_.set_sink(sink_);
  diagnostics_.set_counts(told);
}

}  // namespace

Status LpReader::read(Model& model) {
  if (settings_.interactive) {
    sink_.send(Channel::results, "Enter new problem ['end' on a separate line terminates]:\n");
  }
  Session session(lines_, settings_.interactive, nullptr, sink_);
  KELVO_TRY(session.prepare(settings_.capacities, lines_.size_hint()));
  KELVO_TRY(session.run());
  if (settings_.linear_only) session.collector().drop_nonlinear(settings_.source_name);
  Model fresh;
  session.collector().build(fresh);
  model = std::move(fresh);
  return {};
}

Status LpReader::read_additions(Model& model) {
  sink_.send(Channel::results, "Enter new constraints and bounds ['end' terminates]:\n");
  Session session(lines_, true, &model, sink_);
  KELVO_TRY(session.prepare({}, 0));
  KELVO_TRY(session.run());
  Model extended = model;
  session.collector().append_to(extended);
  model = std::move(extended);
  return {};
}

}  // namespace kelvo
