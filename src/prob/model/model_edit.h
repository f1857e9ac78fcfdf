// Edits of a model that keep all of its parts in step: linear data, column types, names, ranges,
// quadratic terms, sets, indicators, priority order and cuts.
//
// Arguments have been checked by the caller. Functions that need memory throw std::bad_alloc and
// leave the model as it was; the others never fail.
#pragma once

#include "prob/model/blocks.h"
#include "prob/model/default_names.h"
#include "prob/model/model.h"

namespace kelvo {

/// Appends rows. Names appear when the block gives some or the model has some: rows that nobody
/// named get default names.
void append_rows(Model& model, const RowBlock& block);

/// Appends columns, as above. A block with types gives the model types.
void append_columns(Model& model, const ColumnBlock& block);

/// Deletes the rows i with new_index[i] < 0; the others carry their new indices, which ascend.
void delete_rows(Model& model, const int* new_index) noexcept;

/// Deletes the columns j with new_index[j] < 0, as above, with their places in quadratic terms,
/// sets, indicator rows and the priority order. An indicator constraint whose binary column goes is
/// deleted too. User cuts and lazy constraints are all deleted.
void delete_columns(Model& model, const int* new_index) noexcept;

/// Appends special ordered sets, indicator constraints, cuts or quadratic constraints. Names appear
/// as with rows.
void append_sets(SosSets& sets, const SetBlock& block, int num_cols);
void append_indicator(IndicatorConstraints& indicators, const IndicatorRow& row, int num_cols);
void append_extra_rows(ExtraRows& rows, NameKind kind, const RowBlock& block, int num_cols);
void append_quadratic_constraint(Model& model, const QuadraticRow& row);

/// Replaces the priority order. Of several entries of a column the first one keeps its position and
/// takes what the last one says.
void assign_order(PriorityOrder& order, const OrderBlock& block, int num_cols);

/// Keeps the items k with keep[k] != 0.
void keep_sets(SosSets& sets, const char* keep) noexcept;
void keep_indicators(IndicatorConstraints& indicators, const char* keep) noexcept;
void keep_quadratic_constraints(Model& model, const char* keep) noexcept;

/// Removes everything of a kind.
void clear(ExtraRows& rows) noexcept;
void clear(SosSets& sets) noexcept;
void clear(IndicatorConstraints& indicators) noexcept;
void clear(PriorityOrder& order) noexcept;
/// The quadratic objective.
void clear_quadratic(Model& model) noexcept;
/// What makes a model mixed-integer: types, sets, indicators, order, user cuts, lazy constraints.
void clear_integer_data(Model& model) noexcept;

/// Makes the array of ranges exist.
void ensure_ranges(Model& model);

/// Changes the sense of a row. The range of a row that is not ranged is 0; ensure_ranges() must
/// have been called before a row becomes ranged.
void change_sense(Model& model, int row, char sense) noexcept;

/// Removes matrix coefficients of magnitude below `eps` and sets such entries of the objective,
/// the right-hand sides, the ranges and the bounds to 0.
void remove_negligible(Model& model, double eps) noexcept;

}  // namespace kelvo
