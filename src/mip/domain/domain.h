// The domain of a node: local bounds, everything that follows from them, and the way back.
//
// A Domain is told decisions, finds what they imply by propagation, knows for each implied bound
// how to explain it (explainer.h), and returns to earlier states. Presolve's probing, the nodes of
// the tree, dives, strong branching, heuristics and conflict analysis all work on one.
//
// What is propagated: rows of the program by their activities, the limits of a row being the bounds
// of its logical; added rows (cuts, proofs, the objective cutoff); cliques and implications of
// binary literals; clauses; semi-continuous columns, ordered sets and indicators. A change of a
// bound is handled once, in the order of the trail: first the activities of its rows, then cliques,
// implications, clauses and kinds of constraints, which are cheap; rows wait in a queue until
// nothing cheaper is left.
//
//     const DomainMark here = domain.mark();
//     domain.decide(upper_of(j), 0.0);            // starts a level
//     if (!domain.propagate()) { ... domain.conflict() ... }
//     domain.backtrack(here);
//
// Soundness: no point is lost that satisfies decisions, rows, sets and indicators up to the
// tolerances of domain_tolerances.h (and the cutoff, where one is set). Work is counted in nonzeros
// touched; nothing here reads a clock.
//
// Savelsbergh (1994), Preprocessing and probing techniques for mixed integer programming problems.
// ORSA Journal on Computing 6. Achterberg (2007), Constraint Integer Programming, chapters 7
// and 11.
#pragma once

#include "mip/domain/clause_store.h"
#include "mip/domain/clique_table.h"
#include "mip/domain/debug_solution.h"
#include "mip/domain/implication_table.h"
#include "mip/domain/linear_proof.h"
#include "mip/domain/local_bounds.h"
#include "mip/domain/row_system.h"

namespace kelvo {

class Domain {
 public:
  /// All three must outlive the domain, unchanged but for additions to the tables. Nothing is
  /// propagated yet: that wants to be done once before the first decision, as what follows from the
  /// bounds of the program is found then and only then.
  Domain(const MipProblem& mip, const CliqueTable& cliques, const ImplicationTable& implications);
  Domain(const Domain&) = delete;
  Domain& operator=(const Domain&) = delete;

  const MipProblem& mip() const { return mip_; }
  const LocalBounds& bounds() const { return bounds_; }
  const RowSystem& rows() const { return rows_; }
  const ClauseStore& clauses() const { return clauses_; }
  double lower(int v) const { return bounds_.lower(v); }
  double upper(int v) const { return bounds_.upper(v); }
  bool is_fixed(int v) const { return bounds_.is_fixed(v); }
  int level() const { return bounds_.level(); }

  /// Starts a level with a decision; a branch of several bounds continues with tighten(...,
  /// kDecided). The value lies within the bounds.
  Tightening decide(int bound, double value);
  Tightening tighten(int bound, double value, Reason reason);
  /// For what holds everywhere, at whatever level it is found: after a return to level 0 it is
  /// applied there.
  Tightening tighten_globally(int bound, double value);

  /// Follows all changes until nothing more is implied. False: conflict() says why there is no
  /// point. Stops early, without a conflict, once `work_limit` nonzeros have been touched.
  bool propagate(double work_limit = kInf);
  /// Whether the last propagate() came to its end.
  bool is_settled() const { return settled_ == bounds_.size(); }
  bool in_conflict() const { return bounds_.in_conflict(); }
  const Conflict& conflict() const { return bounds_.conflict(); }
  /// The program has no solution better than the cutoff.
  bool is_infeasible() const { return infeasible_; }

  DomainMark mark() const { return bounds_.mark(); }
  /// Takes back all that was changed since the mark, except at level 0; then applies what became
  /// known to hold everywhere, when that is level 0.
  void backtrack(const DomainMark& mark);
  void backtrack_to_level(int level);
  /// See LocalBounds::take_changed.
  void take_changed(Vector<int>& variables) { bounds_.take_changed(variables); }

  /// Adds a row that holds everywhere and returns its number.
  int add_row(const int* index, const double* value, int length, double lower, double upper);
  /// Removes an added row. Its memory is free again after the next return to level 0.
  void remove_row(int row);
  /// How many bounds an added row has tightened; for ageing.
  int uses_of_row(int row) const { return uses_[row]; }
  /// Only points of c'x + offset <= cutoff count from now on. Never raised.
  void set_cutoff(double cutoff);
  double cutoff() const { return cutoff_; }

  /// Adds a clause over any literals, of which at most one of each bound; see ClauseStore.
  void add_clause(const Vector<BoundLiteral>& literals);
  ClauseStore& mutable_clauses() { return clauses_; }

  /// Puts a proof on a stack where reasons of kind kProof can refer to it; it leaves when the
  /// domain returns to before this point. Returns its index.
  int push_proof(LinearProof proof);
  const LinearProof& proof(int index) const { return proofs_[index].proof; }

  /// Every change is checked against the solution from now on; null: none.
  void set_debug_solution(DebugSolution* solution);

  // What reasons refer to.
  const SemiColumn& semi(int index) const { return mip_.semis[index]; }
  const Indicator& indicator(int index) const { return mip_.indicators[index]; }
  /// The semi-continuous column's number; -1 for other columns.
  int semi_of(int column) const { return semi_of_.empty() ? -1 : semi_of_[column]; }

  /// Nonzeros, literals and list entries touched since construction.
  double work() const { return work_ + rows_.work(); }

 private:
  enum Kind : unsigned char {
    kLiteral = 1,
    kHasImplications = 2,
    kSemiColumn = 4,
    kSetMember = 8,
    kSwitch = 16,  // binary column of an indicator
  };
  struct StackedProof {
    LinearProof proof;
    int position;
  };
  struct Membership {
    int set;
    int place;
  };

  void find_kinds();
  void check_debug_solution(Tightening result, int bound, double value, ReasonKind kind);
  bool apply_constraints();
  bool handle_change(int position);
  void apply_changes();
  // domain_rows.cpp
  bool propagate_row(int row);
  bool propagate_side(int row, bool at_least);
  bool tighten_by_row(int column, double coefficient, double slack, Reason reason);
  bool tighten_single(int row, bool at_least, double slack);
  bool propagate_indicator_row(int row);
  // domain_kinds.cpp
  bool propagate_literal(int literal);
  bool propagate_semi(int column);
  bool propagate_sets(int column);
  bool propagate_switch(int literal);
  // domain_clauses.cpp
  bool propagate_clauses(int bound);
  bool check_clause(int clause);
  bool propagate_last(int clause, const BoundLiteral& last);
  bool check_fresh_clauses();
  bool is_excluded(const BoundLiteral& literal) const;
  double negation(const BoundLiteral& literal) const;

  bool force(int bound, double value, Reason reason) {
    return tighten(bound, value, reason) != Tightening::kConflict;
  }
  bool make_true(int literal, Reason reason) {
    return bounds_.bound(literal) == literal_value(literal) ||
           force(literal, literal_value(literal), reason);
  }

  const MipProblem& mip_;
  const CliqueTable& cliques_;
  const ImplicationTable& implications_;
  LocalBounds bounds_;
  RowSystem rows_;
  ClauseStore clauses_;
  Vector<unsigned char> kinds_;     // [num_cols] Kind
  Vector<int> semi_of_;             // [num_cols] or empty
  Vector<int> row_indicator_;       // [num_rows] or empty: indicator of the row; -1
  Vector<int> switch_start_;        // [num_cols + 1] or empty
  Vector<int> switched_;            // indicators of a binary column
  Vector<int> member_start_;        // [num_cols + 1] or empty
  Vector<Membership> memberships_;  // sets of a column
  Vector<int> uses_;                // [rows] bounds tightened by each
  Vector<StackedProof> proofs_;
  Vector<BoundLiteral> pending_;  // hold everywhere, found above level 0
  Vector<int> fresh_clauses_;     // may imply something without any change
  DebugSolution* debug_ = nullptr;
  double cutoff_ = kInf;
  int cutoff_row_ = -1;
  int applied_ = 0;   // changes of the trail that the activities have
  int handled_ = 0;   // changes of the trail that have been followed
  int settled_ = -1;  // length of the trail when nothing was left to do
  bool started_ = false;
  bool infeasible_ = false;
  double work_ = 0.0;
};

}  // namespace kelvo
