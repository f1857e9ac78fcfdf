#include <charconv>
#include <cstdio>

#include "base/error_code.h"
#include "base/file_stream.h"
#include "env/error_table.h"
#include "env/params/param_file.h"
#include "env/params/param_file_format.h"
#include "env/params/param_numbers.h"
#include "env/version.h"

namespace kelvo {
namespace {

constexpr int kRealWidth = 23;
constexpr int kRealDigits = 14;  // after the point

bool left_out_of_snapshots(int number) {
  return number == param::SCRIND || number == param::MIPCBREDLP || number == param::NOT_IN_SNAPSHOT;
}

/// Exponent form whatever the locale of the host says about decimal points.
void print_real(FileStream& stream, double value) {
  char text[64];
  char* const end =
      std::to_chars(text, text + sizeof text - 1, value, std::chars_format::scientific, kRealDigits)
          .ptr;
  *end = '\0';
  stream.print("%-*s\n", kRealWidth, text);
}

void write_parameter(FileStream& stream, const Settings& settings, const ParamRow& param) {
  if (param.is_public()) {
    stream.print("%-32s ", param.name);
  } else {
    stream.print("%-32d ", param.number);
  }
  switch (param.kind) {
    case ParamKind::integer:
      stream.print("%-d\n", settings.get_int(param.number));
      break;
    case ParamKind::real:
      print_real(stream, settings.get_double(param.number));
      break;
    case ParamKind::text:
      stream.print("\"%-s\"\n", settings.get_text(param.number));
      break;
    case ParamKind::none:
      break;
  }
}

}  // namespace

Status write_parameter_file(Environment& environment, const char* name, ParameterFileUse use) {
  if (name == nullptr || name[0] == '\0') return Status::failure(error::kNoFileName);
  const Settings& settings = environment.settings();
  FileStream stream;
  Status status = open_output(name, true, stream);
  if (status.ok()) {
    stream.print("%s %s\n", kParameterFileHeader, kVersion);
    for (int row = 0; row < kNumParams; ++row) {
      const ParamRow& param = param_table()[row];
      if (!settings.is_changed(row)) continue;
      if (use == ParameterFileUse::snapshot && left_out_of_snapshots(param.number)) continue;
      write_parameter(stream, settings, param);
    }
    status = close_file(stream);
  }
  return status.ok() ? status : report_error(environment.messages(), status.code(), name);
}

}  // namespace kelvo
