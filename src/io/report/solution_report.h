// Reports of a basic solution: an entry for the objective, each row and each column, in that order,
// numbered from 1.
//
// As a text they are pages in the classic layout of mathematical-programming systems: a head, a
// section of rows and a section of columns. The binary form holds the same in records, each framed
// by its length as a 4-byte integer before and behind it (in the machine's byte order), all of 64
// bytes:
//
//   head      "HSECTION", "FIELD", "TEXT"; then per record a field of 8 characters and its text of
//             56: PROBLEM, OBJECTIV, SENSE, STATUS, VALUE, ITERATNS; then "$ENDSEC$"
//   rows      "RSECTION", "NUMBER", "STATUS", "ACTIVITY", "SLACK", "LLIMIT", "ULIMIT", "DUALACT";
//             then per entry, as doubles, activity, slack, limits, dual and number, then status
//             and name in 8 characters each; then "$ENDSEC$"
//   columns   the same with "CSECTION", "ICOST", "RCOST"
//
// Texts are padded with blanks; a limit that is not there is -1.01e75 or 1.01e75.
#pragma once

#include "base/file_stream.h"
#include "base/messages.h"
#include "prob/problem.h"

namespace kelvo {

struct ReportTolerances {
  double feasibility;  // violations up to this are not shown
  double optimality;   // multipliers up to this are a sign of other optima
};

/// The problem must hold a basic solution. Tells on the warning channel which names are cut or made
/// up. Throws std::bad_alloc.
void write_text_report(const Problem& problem, const ReportTolerances& tolerances,
                       MessageSink& sink, FileStream& stream);
void write_binary_report(const Problem& problem, const ReportTolerances& tolerances,
                         MessageSink& sink, FileStream& stream);

}  // namespace kelvo
