// What a change of a problem makes stale.
//
// Every mutator reports one change kind. One table says, for each kind, which cached things are
// discarded and which aspects of the model count as touched; nothing else in the library decides
// that. Discarded things are gone at once. Touched aspects only advance a counter, by which the
// owner of a working copy sees what it has to copy again.
#pragma once

#include <cstdint>

namespace kelvo {

enum class ChangeKind : int {
  bounds = 1,
  right_hand_sides = 2,
  coefficient = 3,
  senses = 4,
  ranges = 5,
  row_coefficients = 6,  // of a block of rows, or cleaned
  objective = 7,
  rows_deleted = 8,
  model_replaced = 9,
  single_right_hand_side = 10,
  column_types = 11,
  objective_sense = 12,
  single_objective = 13,
  quadratic_objective = 14,
  quadratic_constraints = 15,
  sets = 16,
  rows_added = 17,
  indicators = 18,
  cuts = 19,
  sets_deleted = 20,  // or replaced
  indicators_deleted = 21,
  quadratic_constraints_deleted = 22,
  names = 23,
  problem_type = 24,
  priority_order = 25,
  columns_added = 29,
  columns_deleted = 32,
  coefficient_list = 34,  // or a block of columns, or cleaned
};
inline constexpr int kNumChangeKinds = 64;  // kinds are 1..63

/// Things a problem keeps beside its model.
enum Cached : unsigned {
  kCachedSolution = 1u << 0,         // solution status, solution record, incumbent
  kCachedBasis = 1u << 1,            // the basis to start from
  kCachedWorkingLp = 1u << 2,        // the optimizers' own copy of the model, with its factor
  kCachedPresolve = 1u << 3,         // the presolved problem and the maps back
  kCachedDerived = 1u << 4,          // view target and derived problem
  kCachedRowLookup = 1u << 5,        // from row names to indices
  kCachedColumnLookup = 1u << 6,     // from column names to indices
  kCachedSetLookup = 1u << 7,        // from names of sets to indices
  kCachedIndicatorLookup = 1u << 8,  // the same
  kCachedQuadraticLookup = 1u << 9,  // from names of quadratic constraints to indices
  kCachedNorms = 1u << 10            // steepest-edge norms beside the start basis
};

/// How often each aspect of the model has changed since the problem was created.
struct Revisions {
  std::uint64_t costs = 0;          // linear objective, objective sense
  std::uint64_t column_bounds = 0;  // lower and upper bounds
  std::uint64_t row_limits = 0;     // right-hand sides, senses, ranges
  std::uint64_t structure = 0;      // number of rows and columns, matrix, everything else

  bool operator==(const Revisions&) const = default;
};

/// What has changed since certain revisions; by default everything may have.
struct ModelChanges {
  bool structure = true;
  bool costs = true;
  bool column_bounds = true;
  bool row_limits = true;
  // The columns whose bounds have changed, some perhaps more than once; null: any of them may have.
  const int* columns = nullptr;
  int num_columns = 0;

  bool any() const { return structure || costs || column_bounds || row_limits; }
};

enum Aspect : unsigned {
  kCosts = 1u << 0,
  kColumnBounds = 1u << 1,
  kRowLimits = 1u << 2,
  kStructure = 1u << 3
};

/// Mask of Cached that a change of this kind makes stale.
unsigned stale_after(ChangeKind kind);
/// Mask of Aspect that a change of this kind touches.
unsigned touched_by(ChangeKind kind);

}  // namespace kelvo
