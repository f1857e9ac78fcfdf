#include "io/dispatch.h"

#include "base/error_code.h"
#include "base/file_stream.h"
#include "env/error_table.h"
#include "env/params/param_numbers.h"
#include "io/lp_format/lp_writer.h"
#include "io/lp_format/reader/lp_reader.h"
#include "io/mps/mps_reader.h"
#include "io/mps/mps_writer.h"
#include "io/network_files/network_files.h"
#include "prob/network/network_model.h"

namespace kelvo {
namespace {

/// Extensions and types have at most this many characters when a file is written.
constexpr std::size_t kLongestType = 3;

struct FormatName {
  const char* text;  // capitals
  FileFormat format;
};
constexpr FormatName kInputTypes[] = {{"LP", FileFormat::lp},
                                      {"MPS", FileFormat::mps},
                                      {"SAV", FileFormat::sav},
                                      {"MIN", FileFormat::network},
                                      {"NET", FileFormat::network}};
constexpr FormatName kInputExtensions[] = {
    {".LP", FileFormat::lp},   {".MPS", FileFormat::mps},     {".QPS", FileFormat::mps},
    {".SAV", FileFormat::sav}, {".NET", FileFormat::network}, {".MIN", FileFormat::network}};
constexpr FormatName kOutputTypes[] = {
    {"MPS", FileFormat::mps},           {"RMP", FileFormat::rewritten_mps},
    {"REW", FileFormat::rewritten_mps}, {"LP", FileFormat::lp},
    {"RLP", FileFormat::rewritten_lp},  {"SAV", FileFormat::sav}};
constexpr FormatName kNetworkOutputTypes[] = {{"MIN", FileFormat::numbered_network},
                                              {"NET", FileFormat::sectioned_network},
                                              {"MPS", FileFormat::mps},
                                              {"RMP", FileFormat::rewritten_mps},
                                              {"REW", FileFormat::rewritten_mps},
                                              {"LP", FileFormat::lp},
                                              {"SAV", FileFormat::sav}};

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool equal_ignoring_case(std::string_view text, std::string_view capitals) {
  if (text.size() != capitals.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (upper(text[i]) != capitals[i]) return false;
  }
  return true;
}

bool ends_in(std::string_view name, std::string_view capitals) {
  return name.size() >= capitals.size() &&
         equal_ignoring_case(name.substr(name.size() - capitals.size()), capitals);
}

std::string_view without_compressed_suffix(std::string_view name, Compression compression) {
  return compression == Compression::none ? name : name.substr(0, name.rfind('.'));
}

LpReaderSettings lp_settings(const char* name, const Settings& settings) {
  LpReaderSettings result;
  result.capacities = {settings.get_int(param::ROWREADLIM), settings.get_int(param::COLREADLIM),
                       settings.get_int(param::NZREADLIM), settings.get_int(param::QPNZREADLIM)};
  result.source_name = name;
  return result;
}

MpsReaderSettings mps_settings(const Settings& settings) {
  MpsReaderSettings result;
  result.rows = settings.get_int(param::ROWREADLIM);
  result.columns = settings.get_int(param::COLREADLIM);
  result.nonzeros = settings.get_int(param::NZREADLIM);
  result.quadratic_nonzeros = settings.get_int(param::QPNZREADLIM);
  result.show_choices = settings.get_int(param::SHOW_READER_CHOICES) != 0;
  return result;
}

Status read_typed_model(const Settings& settings, MessageSink& sink, Model& model) {
  FileStream stream;
  if (!open_standard_input(stream).ok()) {
    return report_error(sink, error::kCannotReadFile, "<stdin>");
  }
  LineReader lines(stream);
  LpReaderSettings reader_settings = lp_settings("<stdin>", settings);
  reader_settings.interactive = true;
  return LpReader(lines, reader_settings, sink).read(model);
}

const char* default_extension(FileFormat format) {
  if (format == FileFormat::lp) return ".lp";
  return format == FileFormat::mps ? ".mps" : nullptr;
}

}  // namespace

FileFormat input_format_of_type(std::string_view type) {
  for (const FormatName& row : kInputTypes) {
    if (equal_ignoring_case(type, row.text)) return row.format;
  }
  return FileFormat::unknown;
}

FileFormat input_format_of_name(std::string_view name) {
  name = without_compressed_suffix(name, input_compression(name));
  for (const FormatName& row : kInputExtensions) {
    if (ends_in(name, row.text)) return row.format;
  }
  return FileFormat::unknown;
}

FileFormat input_format_of_text(std::string_view first_bytes) {
  if (first_bytes.empty()) return FileFormat::unknown;
  // A binary model begins with a line feed and ten bytes of a signature that no text has.
  constexpr std::size_t kBinaryHead = 11;
  const unsigned char first = static_cast<unsigned char>(first_bytes.front());
  if (first == '\n' && first_bytes.size() >= kBinaryHead) return FileFormat::lp;
  if (first < ' ') return FileFormat::sav;
  switch (first) {
    case '*':
    case 'N':
    case 'n':
      return FileFormat::mps;
    case 'M':
    case 'm':
    case '\\':
    case ' ':
      return FileFormat::lp;
    default:
      return FileFormat::unknown;
  }
}

namespace {

/// The type that a file is to be written as, from the argument or the name.
Status written_type(std::string_view name, const char* type, std::string_view& text) {
  if (type != nullptr) {
    text = type;
  } else {
    name = without_compressed_suffix(name, output_compression(name));
    const std::size_t point = name.rfind('.');
    if (point == std::string_view::npos) return Status::failure(error::kBadFileType);
    text = name.substr(point + 1);
  }
  return text.size() > kLongestType ? Status::failure(error::kBadFileType) : Status();
}

template <std::size_t kRows>
Status find_type(const FormatName (&table)[kRows], std::string_view text, FileFormat& format) {
  for (const FormatName& row : table) {
    if (!equal_ignoring_case(text, row.text)) continue;
    format = row.format;
    return {};
  }
  return Status::failure(error::kBadFileType);
}

}  // namespace

Status output_format(std::string_view name, const char* type, FileFormat& format) {
  std::string_view text;
  KELVO_TRY(written_type(name, type, text));
  return find_type(kOutputTypes, text, format);
}

Status network_output_format(std::string_view name, const char* type, FileFormat& format) {
  std::string_view text;
  KELVO_TRY(written_type(name, type, text));
  return find_type(kNetworkOutputTypes, text, format);
}

Status report_format(std::string_view name, const char* type, ReportFormat& format) {
  std::string_view text;
  KELVO_TRY(written_type(name, type, text));
  format = equal_ignoring_case(text, "BIN") ? ReportFormat::binary : ReportFormat::text;
  const bool known = format == ReportFormat::binary || equal_ignoring_case(text, "TXT");
  return known ? Status() : Status::failure(error::kBadFileType);
}

Status read_model_file(const char* name, const char* type, const Settings& settings,
                       MessageSink& sink, Model& model) {
  FileFormat format = type != nullptr ? input_format_of_type(type) : input_format_of_name(name);
  if (format == FileFormat::lp && name[0] == '\0') return read_typed_model(settings, sink, model);
  if (type != nullptr && format == FileFormat::unknown) {
    return Status::failure(error::kBadFileType);
  }
  FileStream stream;
  if (!open_input(name, default_extension(format), stream).ok()) {
    return report_error(sink, error::kCannotReadFile, name);
  }
  LineReader lines(stream);
  if (format == FileFormat::unknown) {
    constexpr std::size_t kBytesLookedAt = 11;
    format = input_format_of_text(lines.peek(kBytesLookedAt));
  }
  Status status;
  switch (format) {
    case FileFormat::mps:
      status = read_mps(lines, mps_settings(settings), sink, model);
      break;
    case FileFormat::lp:
      status = LpReader(lines, lp_settings(name, settings), sink).read(model);
      break;
    case FileFormat::network: {
      Network network;
      status = read_network(lines, sink, network);
      if (status.ok()) model = network_to_model(network);
      break;
    }
    case FileFormat::unknown:
    case FileFormat::rewritten_lp:
    case FileFormat::rewritten_mps:
    case FileFormat::sav:  // has no reader
    case FileFormat::numbered_network:
    case FileFormat::sectioned_network:
      status = Status::failure(error::kBadFileType);
      break;
  }
  const bool closed = close_file(stream).ok();
  const bool stream_failed = status.code() == error::kCannotReadFile && !status.is_reported();
  if (stream_failed || (status.ok() && !closed)) {
    return report_error(sink, error::kCannotReadFile, name);
  }
  return status;
}

Status write_model_file(const char* name, FileFormat format, const Settings& settings,
                        MessageSink& sink, const Model& model) {
  if (name == nullptr || name[0] == '\0') return Status::failure(error::kNoFileName);
  FileStream stream;
  const auto open = [&]() -> Status {
    const bool opened = open_output(name, true, stream).ok();
    return opened ? Status() : report_error(sink, error::kCannotWriteFile, name);
  };
  Status status;
  switch (format) {
    case FileFormat::mps:
    case FileFormat::rewritten_mps:
      KELVO_TRY(open());
      status = write_mps(
          model, {format == FileFormat::rewritten_mps, settings.get_int(param::MPSLONGNUM) != 0},
          sink, stream);
      break;
    case FileFormat::lp:
    case FileFormat::rewritten_lp:
      KELVO_TRY(open());
      status = write_lp(
          model,
          {format == FileFormat::rewritten_lp, settings.get_int(param::LEGALIZE_NAMES) != 0,
           settings.get_int(param::EVERY_OBJECTIVE_TERM) != 0},
          sink, stream);
      break;
    case FileFormat::unknown:
    case FileFormat::sav:
    case FileFormat::network:
    case FileFormat::numbered_network:
    case FileFormat::sectioned_network:
      return Status::failure(error::kBadFileType);
  }
  const bool closed = close_file(stream).ok();
  if (status.ok() && !closed) return report_error(sink, error::kCannotWriteFile, name);
  return status;
}

}  // namespace kelvo
