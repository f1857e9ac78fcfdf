#include "io/lp_format/reader/diagnostics.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "base/error_code.h"
#include "env/error_table.h"

namespace kelvo {
namespace {

constexpr int kMostPrinted = 20;

/// A zero-terminated copy of a word of the file, which is no longer than a line.
struct WordText {
  explicit WordText(std::string_view word) {
    const std::size_t length = std::min(word.size(), sizeof text - 1);
    std::memcpy(text, word.data(), length);
    text[length] = '\0';
  }
  char text[560];
};

}  // namespace

Status LpDiagnostics::error_at(int at_line, int code) {
  return report_error(*sink_, code, at_line);
}

Status LpDiagnostics::error_found(int code, char found) {
  return report_error(*sink_, code, line, found == '\0' ? ' ' : found);
}

Status LpDiagnostics::error_word(int code, std::string_view word) {
  return report_error(*sink_, code, line, WordText(word).text);
}

Status LpDiagnostics::error_pair(int code, int first_line) {
  return report_error(*sink_, code, first_line, line);
}

Status LpDiagnostics::error_exponent(std::string_view word, const char* which) {
  return report_error(*sink_, error::kExponentIncomplete, line, WordText(word).text, which);
}

Status LpDiagnostics::error_repeated(int at_line, const char* kind, std::string_view name) {
  return report_error(*sink_, error::kNameRepeats, at_line, kind, WordText(name).text);
}

const char* const LpDiagnostics::kNotPrinted[kKinds] = {
    "%d character warnings not printed.\n",
    "%d RHS warnings not printed.\n",
    "%d unfinished constraint warnings not printed.\n",
    "%d bracket warnings not printed.\n",
    "%d sense conflict warnings not printed.\n",
    "%d name warnings not printed.\n",
};

bool LpDiagnostics::allowed(Kind kind) {
  return ++counts_[kind] <= kMostPrinted;
}

void LpDiagnostics::warn_unexpected_character(int code) {
  if (!allowed(kCharacter)) return;
  sink_->print(Channel::warning, "Warning, line %d: Unexpected character code %d skipped.\n", line,
               code);
}

void LpDiagnostics::warn_objective_ended() {
  sink_->print(Channel::warning, "Warning, line %d: Objective ended unexpectedly.\n", line);
}

void LpDiagnostics::warn_after_rhs() {
  if (!allowed(kAfterRhs)) return;
  sink_->print(Channel::warning, "Warning, line %d: Characters after RHS value are ignored.\n",
               line);
}

void LpDiagnostics::warn_unfinished_constraint() {
  if (!allowed(kUnfinished)) return;
  sink_->print(Channel::warning, "Warning, line %d: Unfinished constraint is discarded.\n", line);
}

void LpDiagnostics::warn_deprecated_bracket() {
  if (!allowed(kBracket)) return;
  sink_->print(Channel::warning, "Warning, line %d: Deprecated format, expecting '] / 2'.\n", line);
}

void LpDiagnostics::warn_sense_conflict() {
  if (!allowed(kSense)) return;
  sink_->print(Channel::warning, "Warning, line %d: Possible sense conflict.\n", line);
}

void LpDiagnostics::warn_end_missing() {
  sink_->print(Channel::warning, "Warning: 'End' missing.\n");
}

void LpDiagnostics::warn_truncated(std::string_view name) {
  name_warning("Warning, line %d: '%s' truncated.\n", name);
}

void LpDiagnostics::warn_unknown_name(std::string_view name) {
  name_warning("Warning, line %d: Name '%s' does not exist.\n", name);
}

void LpDiagnostics::warn_invalid_name(std::string_view name) {
  name_warning("Warning, line %d: '%s' not valid identifier.\n", name);
}

void LpDiagnostics::name_warning(const char* format, std::string_view found) {
  if (!allowed(kName)) return;
  char text[1024];
  std::snprintf(text, sizeof text, format, line, WordText(found).text);
  sink_->send(Channel::warning, text);
}

void LpDiagnostics::close_warnings() {
  for (std::size_t kind = 0; kind < kKinds; ++kind) {
    const int rest = counts_[kind] - kMostPrinted;
    if (rest > 0) sink_->print(Channel::warning, kNotPrinted[kind], rest);
  }
}

}  // namespace kelvo
