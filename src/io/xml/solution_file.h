// Solution files (.sol) and MIP-start files (.mst): XML.
//
//   <KELVOSolution version="1.2">
//    <header problemName="" ... writeLevel="1"/>          an attribute a line
//    <quality epRHS="" ... kappa=""/>                     the same
//    <linearConstraints>  <constraint name="" index="" status="" slack="" dual=""/> ...
//    <variables>          <variable name="" index="" status="" value="" reducedCost=""/> ...
//    <quadraticConstraints>, <indicatorConstraints>       the same, when the model has them
//   </KELVOSolution>
//
// A file of several solutions, and every MIP-start file, has them in one element KELVOSolutions; a
// MIP start has a short header and its variables alone. Basis statuses are LL, BS, UL and SB for 0
// to 3.
//
// A reader matches elements by their names when the model has names, else by their indices. Bytes
// above 127 are read back as they were written, whatever encoding the file declares; one in UTF-16
// is read as UTF-8.
#pragma once

#include <limits>
#include <string_view>

#include "base/file_stream.h"
#include "base/messages.h"
#include "base/status.h"
#include "prob/data/mip_starts.h"
#include "prob/problem.h"
#include "prob/solution_access.h"

namespace kelvo {

/// Which variables are written; values of KLV_PARAM_WRITELEVEL.
enum class WriteLevel : int {
  automatic = 0,  // discrete ones of MIP starts, else all
  all = 1,
  discrete = 2,
  nonzero = 3,
  nonzero_discrete = 4
};

// ---- Writing ----

/// Tolerances that the quality element tells; one that is no number is left out.
struct QualityTolerances {
  double integrality = 0.0;
  double feasibility = 0.0;
  double optimality = 0.0;
  double complementarity = std::numeric_limits<double>::quiet_NaN();
  double quadratic_complementarity = std::numeric_limits<double>::quiet_NaN();
};

/// A solution to be written: the stored one of a continuous problem, or a point of a mixed-integer
/// problem.
struct WrittenSolution {
  const char* name = nullptr;  // of a point, with its index; null for a continuous problem
  int index = -1;              // in the pool; -1 for the incumbent
  int status = kNoSolution;
  SolutionInfo info;
  double objective = 0.0;
  const double* x = nullptr;  // [columns]
};

/// The solution that the problem holds; check_values(problem, Needs::primal) has passed.
WrittenSolution stored_solution(const Problem& problem);

/// Writes one solution. Throws std::bad_alloc.
void write_solution(const Problem& problem, const WrittenSolution& solution, WriteLevel level,
                    const QualityTolerances& tolerances, FileStream& stream);

/// Writes starts first..last of a set. Throws std::bad_alloc.
void write_mip_starts(const Model& model, const MipStartSet& set, int first, int last,
                      WriteLevel level, FileStream& stream);

/// Writes a point of a mixed-integer problem as a MIP start. Throws std::bad_alloc.
void write_mip_start(const Model& model, const WrittenSolution& solution, WriteLevel level,
                     FileStream& stream);

/// The older form: a line "name value" for each column, between NAME and ENDATA. Throws
/// std::bad_alloc.
void write_plain_mip_start(const Model& model, const double* x, MessageSink& sink,
                           FileStream& stream);

// ---- Reading ----

/// What one KELVOSolution element says about a model.
struct ReadSolution {
  /// In place of a number that the file does not give.
  static constexpr double kNotGiven = std::numeric_limits<double>::quiet_NaN();

  MipStart start;  // name and effort level of the header; the values

  // Of a solution file only.
  Vector<int> col_status;       // [columns] -1 where there is none
  Vector<int> row_status;       // [rows] the same
  Vector<double> reduced_cost;  // [columns] or kNotGiven
  Vector<double> slack;         // [rows] the same
  Vector<double> dual;          // [rows] the same

  /// Every row and column has a status.
  bool has_basis() const;
};

/// Reads a solution file; only the first solution counts. What the file says about something that
/// the model does not have, or says a second time, is skipped with a warning. `read` is not touched
/// on failure: 1425, reported, for a file that is not well-formed or declares entities; 1423, not
/// reported, when the stream fails. Throws std::bad_alloc.
Status read_solution(FileStream& stream, const Model& model, MessageSink& sink, ReadSolution& read);
/// The same from memory.
Status read_solution(std::string_view text, const Model& model, MessageSink& sink,
                     ReadSolution& read);

/// Reads the values of every solution of a file; those without any are left out. Errors as above.
Status read_mip_starts(FileStream& stream, const Model& model, MessageSink& sink,
                       Vector<MipStart>& starts);
Status read_mip_starts(std::string_view text, const Model& model, MessageSink& sink,
                       Vector<MipStart>& starts);

}  // namespace kelvo
