// Writer of LP files, the algebraic format that read_lp() reads.
//
// Names that the format cannot hold are changed, those that repeat get numbers, unless the settings
// forbid it; one warning tells it. Where a name at the start of a line would be read as the head
// of a section, a sign is put before it, or, in the lists of types, it is written twice. What
// cannot be read back all the same (numbers with an exponent beyond 37, finite bounds from 1e17 on
// or nearer to zero than 1e-10, sets with equal weights) is told in warnings.
//
// A ranged row has no form of its own in the format: it is written as an equality with one more
// variable "Rg" + row name, whose bounds span the range ("Rg_Rg" + row name
// when a column has that name). Of a model that is a conflict the last row, the sum of its
// equations, is written as a comment.
#pragma once

#include "base/file_stream.h"
#include "base/messages.h"
#include "prob/model/model.h"

namespace kelvo {

struct LpWriterSettings {
  bool generic_names = false;         // x1, c1, ... instead of the model's names
  bool legalize_names = true;         // change names that the format cannot hold
  bool every_objective_term = false;  // also those with coefficient 0
  bool is_conflict = false;           // the last row is a comment
};

/// Writes the model. Failure: 1650 (unreported) when a coefficient is infinite or not a number (it
/// is written as "?"). Failures of the stream come out of close_file(). Throws std::bad_alloc.
Status write_lp(const Model& model, const LpWriterSettings& settings, MessageSink& sink,
                FileStream& stream);

}  // namespace kelvo
