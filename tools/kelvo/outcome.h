// What is known after a solve, and the ways to tell it.
#pragma once

#include <optional>
#include <string>

#include "session.h"

namespace kelvo::command {

struct Outcome {
  std::optional<int> status;  // absent when the solve never ended with one
  std::string status_string;
  // Of a point that satisfies the constraints; a solve that was stopped on its way to one has none.
  std::optional<double> objective;
  std::optional<double> best_bound;  // of a mixed-integer search
  std::optional<double> gap;         // relative
  std::optional<int> nodes;
  std::optional<int> nodes_left;
  std::optional<int> iterations;
  std::optional<int> barrier_iterations;
  std::string start;  // what became of a start file; empty without one
  double time = 0.0;  // seconds since the program started
  std::optional<int> rows, columns, nonzeros;
  std::string error;  // why there is no status
};

/// Sizes of the problem held.
void note_sizes(const Session& session, Outcome& outcome);

/// Status, objective and counts of the last solve. Throws Failure.
void note_solution(Session& session, Outcome& outcome);

/// The summary that ends the output.
std::string summary(const Outcome& outcome);

/// The outcome as a JSON object.
std::string json(const Outcome& outcome);

/// Lines "name value" of the non-zero values of the solution. Columns without names are x1, x2, ...
/// Throws Failure.
std::string values(Session& session);

}  // namespace kelvo::command
