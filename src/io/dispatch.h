// Which format a model file has; reading and writing it.
//
// A given type decides alone; otherwise the extension of the name does, behind which a compressed
// suffix (".gz", ".bz2", ".Z") may follow; otherwise, for reading, the first bytes of the file.
#pragma once

#include <string_view>

#include "base/line_reader.h"
#include "base/messages.h"
#include "base/status.h"
#include "env/params/settings.h"
#include "prob/model/model.h"

namespace kelvo {

enum class FileFormat {
  unknown,
  lp,
  rewritten_lp,
  mps,
  rewritten_mps,
  sav,
  network,  // of either kind, as far as names tell
  numbered_network,
  sectioned_network
};

/// The format that a type argument of KLVreadcopyprob asks for.
FileFormat input_format_of_type(std::string_view type);
/// The format that the extension of a file to be read tells.
FileFormat input_format_of_name(std::string_view name);
/// The format that the first bytes of a file tell.
FileFormat input_format_of_text(std::string_view first_bytes);

/// The format in which KLVwriteprob writes; type may be null. Error: 1424 not reported.
Status output_format(std::string_view name, const char* type, FileFormat& format);

/// The same for KLVNETwriteprob.
Status network_output_format(std::string_view name, const char* type, FileFormat& format);

enum class ReportFormat { text, binary };

/// The same for KLVwritesol.
Status report_format(std::string_view name, const char* type, ReportFormat& format);

/// Reads a file into a model that was empty. `type` may be null; an empty name with the type "LP"
/// reads what is typed on the standard input. Errors, reported or without arguments: 1423, 1424 and
/// those of the readers. Throws std::bad_alloc.
Status read_model_file(const char* name, const char* type, const Settings& settings,
                       MessageSink& sink, Model& model);

/// Writes a model in one of the formats that output_format() gives. Errors, reported or without
/// arguments: 1421 no name; 1422; 1424 the format has no writer; 1650. Throws std::bad_alloc.
Status write_model_file(const char* name, FileFormat format, const Settings& settings,
                        MessageSink& sink, const Model& model);

}  // namespace kelvo
