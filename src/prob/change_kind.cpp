#include "prob/change_kind.h"

#include <array>

namespace kelvo {
namespace {

struct Effect {
  ChangeKind kind;
  unsigned stale;
  unsigned touched;
};

constexpr unsigned kResults = kCachedSolution | kCachedPresolve | kCachedDerived;
constexpr unsigned kShape = kResults | kCachedWorkingLp | kCachedNorms;
constexpr unsigned kOtherLookups =
    kCachedSetLookup | kCachedIndicatorLookup | kCachedQuadraticLookup;
constexpr unsigned kEverything =
    kShape | kCachedBasis | kCachedRowLookup | kCachedColumnLookup | kOtherLookups;
constexpr unsigned kAllAspects = kCosts | kColumnBounds | kRowLimits | kStructure;

// The basis outlives every change but that of the whole model: it stays a good start, and added or
// deleted rows and columns enter or leave it. The working LP outlives changes of costs, bounds and
// row limits, which its owner copies again. The look-ups by name follow additions and renaming. The
// priority order only guides the search.
constexpr Effect kEffects[] = {
    {ChangeKind::bounds, kResults, kColumnBounds},
    {ChangeKind::right_hand_sides, kResults, kRowLimits},
    {ChangeKind::coefficient, kShape, kStructure},
    {ChangeKind::senses, kResults, kRowLimits},
    {ChangeKind::ranges, kResults, kRowLimits},
    {ChangeKind::row_coefficients, kShape, kAllAspects},
    {ChangeKind::objective, kResults, kCosts},
    {ChangeKind::rows_deleted, kShape | kCachedRowLookup, kAllAspects},
    {ChangeKind::model_replaced, kEverything, kAllAspects},
    {ChangeKind::single_right_hand_side, kResults, kRowLimits},
    {ChangeKind::column_types, kShape, kStructure},
    {ChangeKind::objective_sense, kResults, kCosts},
    {ChangeKind::single_objective, kResults, kCosts},
    {ChangeKind::quadratic_objective, kShape, kStructure},
    {ChangeKind::quadratic_constraints, kShape, kStructure},
    {ChangeKind::sets, kShape, kStructure},
    {ChangeKind::rows_added, kShape, kAllAspects},
    {ChangeKind::indicators, kShape, kStructure},
    {ChangeKind::cuts, kShape, kStructure},
    {ChangeKind::sets_deleted, kShape | kCachedSetLookup, kStructure},
    {ChangeKind::indicators_deleted, kShape | kCachedIndicatorLookup, kStructure},
    {ChangeKind::quadratic_constraints_deleted, kShape | kCachedQuadraticLookup, kStructure},
    {ChangeKind::names, kCachedDerived, 0},
    {ChangeKind::problem_type, kShape | kOtherLookups, kStructure},
    {ChangeKind::priority_order, 0, 0},
    {ChangeKind::columns_added, kShape, kAllAspects},
    {ChangeKind::columns_deleted, kShape | kCachedColumnLookup | kCachedIndicatorLookup,
     kAllAspects},
    {ChangeKind::coefficient_list, kShape, kAllAspects},
};

/// The table by number of the kind; a kind without a row makes everything stale.
constexpr std::array<Effect, kNumChangeKinds> effects_by_number() {
  std::array<Effect, kNumChangeKinds> table{};
  for (Effect& effect : table) effect = {ChangeKind::model_replaced, kEverything, kAllAspects};
  for (const Effect& effect : kEffects) table[static_cast<int>(effect.kind)] = effect;
  return table;
}

constexpr std::array<Effect, kNumChangeKinds> kEffectsByNumber = effects_by_number();

}  // namespace

unsigned stale_after(ChangeKind kind) {
  return kEffectsByNumber[static_cast<int>(kind)].stale;
}

unsigned touched_by(ChangeKind kind) {
  return kEffectsByNumber[static_cast<int>(kind)].touched;
}

}  // namespace kelvo
