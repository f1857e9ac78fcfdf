// The problem object: one model and everything derived from it.
//
// A problem holds the model, the additions to it that wait in the pending batch, the result of the
// last optimization with the basis it ended with, and what the optimizers keep for the next one.
// Every edit goes through this class: it changes the model as a whole or not at all, keeps the
// stored basis in step, and reports its change kind, whose table says what becomes stale.
//
// Counts include what waits in the batch. model() is the merged model, so merge_pending() comes
// before it; the API frame merges before every function that reads.
//
// A problem of type 3, 8 or 13 is a view: its own model is not used, resolve_view() leads to the
// problem it shows, which it owns. Views are never edited.
//
// Functions that need memory throw std::bad_alloc and leave the problem answering as before.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/status.h"
#include "prob/bound_trail.h"
#include "prob/change_kind.h"
#include "prob/data/mip_starts.h"
#include "prob/kept_slot.h"
#include "prob/model/blocks.h"
#include "prob/model/model.h"
#include "prob/model/name_lookup.h"
#include "prob/pending_batch.h"
#include "prob/solution.h"

namespace kelvo {

class Environment;
class PresolvedProblem;
class WorkingLp;
struct ObjectNode;

enum ProblemType : int {
  kTypeLp = 0,
  kTypeMilp = 1,
  kTypeFixedMilp = 3,
  kTypeNodeLp = 4,
  kTypeQp = 5,
  kTypeMiqp = 7,
  kTypeFixedMiqp = 8,
  kTypeNodeQp = 9,
  kTypeQcp = 10,
  kTypeMiqcp = 11,
  kTypeNodeQcp = 12,
  kTypeFixedMiqcp = 13
};

constexpr bool is_view_type(int type) {
  return type == kTypeFixedMilp || type == kTypeFixedMiqp || type == kTypeFixedMiqcp;
}
constexpr bool is_mixed_integer_type(int type) {
  return type == kTypeMilp || type == kTypeMiqp || type == kTypeMiqcp;
}

/// The mixed-integer type a view belongs to, or the type itself.
constexpr int type_behind_view(int type) {
  return type == kTypeFixedMilp    ? kTypeMilp
         : type == kTypeFixedMiqp  ? kTypeMiqp
         : type == kTypeFixedMiqcp ? kTypeMiqcp
                                   : type;
}

/// The type a model has by its content.
ProblemType type_of(const Model& model);
/// The least type that admits what `type` admits and the content of the model too.
int widened_type(int type, const Model& model);
/// Removes from a model what its new type does not admit, and gives it what the type asks for:
/// column types, a quadratic objective. Throws std::bad_alloc, leaving the model as it was.
void adapt_model(Model& model, int type);

/// A new value of one bound.
struct BoundChange {
  int column;
  bool upper;
  double value;
};

class Problem {
 public:
  /// An empty LP that belongs to a root environment.
  explicit Problem(Environment& root) : environment_(&root) {}
  ~Problem();
  Problem(const Problem&) = delete;
  Problem& operator=(const Problem&) = delete;

  /// False once the problem has been destroyed, as far as a stale pointer can tell.
  bool is_valid() const { return self_ == this; }
  Environment& environment() const { return *environment_; }
  int type() const { return type_; }
  bool is_view() const { return is_view_type(type_); }
  /// The problem itself, or the one a view shows; null when that is missing.
  Problem* resolve_view() { return is_view() ? view_target.get() : this; }

  int num_rows() const { return model_.num_rows + batch_.num_rows(); }
  int num_cols() const { return model_.num_cols; }
  int num_sets() const { return model_.sos.size(); }
  int num_indicators() const { return model_.indicators.size(); }
  int num_quadratic_constraints() const {
    return static_cast<int>(model_.quadratic_constraints.size());
  }
  int objective_sense() const { return model_.sense; }
  const String& name() const { return model_.name; }
  /// Merges waiting coefficients, since some of them may replace others.
  std::int64_t num_nonzeros();

  /// Moves what waits in the batch into the model.
  void merge_pending();
  bool has_pending() const { return !batch_.empty(); }
  /// The merged model.
  const Model& model() const;

  /// Discards what a change of this kind makes stale.
  void notify_change(ChangeKind kind) noexcept;
  const Revisions& revisions() const { return revisions_; }
  ModelChanges changes_since(const Revisions& earlier) const noexcept;

  // ---- Edits. Arguments have been checked; indices are those of the merged model. ----

  /// Replaces the model and sets the type that belongs to it.
  void replace_model(Model&& model) noexcept;
  /// Appends rows; `columns` new columns without entries, which the rows may refer to, come first.
  void add_rows(const RowBlock& rows, const ColumnBlock& columns = {});
  void add_columns(const ColumnBlock& block);
  /// new_index as in model_edit.h, for all rows (columns).
  void delete_rows(const int* new_index);
  void delete_columns(const int* new_index);

  void change_coefficients(const int* rows, const int* columns, const double* values, int count,
                           ChangeKind kind);
  /// q(i, j) = q(j, i) = value; the first coefficient makes the objective quadratic.
  void change_quadratic_coefficient(int i, int j, double value);
  void change_objective(const int* columns, const double* values, int count, ChangeKind kind);
  void change_right_hand_sides(const int* rows, const double* values, int count, ChangeKind kind);
  void change_senses(const int* rows, const char* senses, int count);
  /// The rows must be ranged.
  void change_ranges(const int* rows, const double* values, int count);
  void change_bounds(const Vector<BoundChange>& changes);
  void change_objective_sense(int sense);
  void rename_rows(const int* rows, const char* const* names, int count);
  void rename_columns(const int* columns, const char* const* names, int count);
  void change_name(std::string_view name);
  void change_objective_name(std::string_view name);
  void delete_names();
  void remove_negligible(double eps);

  /// Edits of kinds that have no function here: `edit(Model&)` works on the merged model, all or
  /// nothing, and the change is reported. The stored basis is not touched. Data that the type of
  /// the problem does not admit widen it.
  template <class Edit>
  void edit_model(ChangeKind kind, Edit edit) {
    merge_pending();
    edit(model_);
    type_ = widened_type(type_, model_);
    notify_change(kind);
  }
  void set_type(int type) { type_ = type; }
  /// Stores what an optimizer found, in place of the last result.
  void store_result(SolveResult&& result) noexcept;
  void store_result(MipResult&& result) noexcept;
  /// Puts a basis in place of the stored one; a stored solution loses its basis.
  void store_start_basis(StoredBasis&& start) noexcept;
  /// Changes the type, one that is neither a view nor that of a node, and with it the model.
  void change_type(int type);
  /// Makes the problem a view of its model fixed at an integer point `x` [columns], or makes the
  /// view again; the problem's own type is `type_behind_view(type)`.
  void show_fixed(int type, const double* x, double tolerance);
  /// Ends a view: the problem is the mixed-integer one again.
  void show_itself() noexcept;

  // ---- Look-up by name: the first index with that name, or -1. ----

  int row_index(std::string_view name);
  int column_index(std::string_view name);
  int set_index(std::string_view name);
  int indicator_index(std::string_view name);
  int quadratic_constraint_index(std::string_view name);

  /// A copy of everything except what the optimizers keep: model, type, results and basis.
  Owned<Problem> clone();

  // ---- Results of optimizations and what belongs to them. ----

  int solution_status = kNoSolution;
  SolutionRecord solution;
  Incumbent incumbent;
  SearchRecord search;             // of the last mixed-integer optimization
  StoredBasis basis;               // kept in step by edits, see change_kind.cpp
  KeptSlot<WorkingLp> working_lp;  // the optimizers' own copy of the model; see revisions()
  KeptSlot<PresolvedProblem> presolve;
  bool presolve_follows_costs = false;  // it outlives changes of the objective
  Vector<int> protected_columns;  // that presolve must leave in the model; kept in step by edits
  MipStartSet mip_starts;         // the same
  Owned<Problem> view_target;
  Owned<Problem> derived;
  ObjectNode* node = nullptr;  // where an environment's object list holds this problem

 private:
  void discard_solution() noexcept;

  const Problem* self_ = this;
  Environment* environment_;
  int type_ = kTypeLp;
  Model model_;
  PendingBatch batch_;
  Revisions revisions_;
  BoundTrail bound_trail_;
  NameLookup row_lookup_;
  NameLookup column_lookup_;
  NameLookup set_lookup_;
  NameLookup indicator_lookup_;
  NameLookup quadratic_lookup_;
};

/// For readers: swaps a complete new model in. Never fails.
inline void replace_model(Problem& problem, Model&& model) noexcept {
  problem.replace_model(std::move(model));
}

}  // namespace kelvo
