// LU factorization of a simplex basis, B = L U up to permutations, with updates.
//
// The basis matrix B has one column per basis position p: the column of variable header[p], which
// is column j of A for j < n and the unit column e_{j-n} for a logical. Right-hand sides of B x = a
// are indexed by row, solutions by basis position; for y'B = c' it is the other way round. A call
// never changes the order of the positions; only a repair exchanges variables in the header.
#pragma once

#include "base/containers.h"
#include "base/sparse_matrix.h"
#include "base/status.h"
#include "base/stop_check.h"
#include "base/work_vector.h"

namespace kelvo {

struct FactorSettings {
  double markowitz_threshold = 0.01;  // relative pivot tolerance u at the start
  double absolute_tolerance = 1e-13;  // pivots of smaller magnitude are refused
  double row_file_multiplier = 3.0;   // initial capacity of the row file / nonzeros of B
  double col_file_multiplier = 3.0;   // likewise for the column file
  double dense_switch_density = 0.3;  // active density that ends the sparse phase; 10 disables
  int update_limit = 10000;           // updates after which update() asks for a refactorization
  bool adaptive_refactor = true;      // should_refactor() weighs the cost per iteration
  int singularity_limit = 10;         // repairs allowed in the life of this object
};

/// One exchange made by a repair: at `position` the variable `leaving` was replaced by the logical
/// of `row`.
struct BasisRepair {
  int position;
  int leaving;
  int row;
};

enum class FactorOutcome {
  ok,
  repaired,  // the header was changed: primal and dual values must be recomputed
  singular,  // repair not allowed or its budget is spent
  stopped,   // the stop check said so: there is no valid factor
};

/// Observer of a factorization, for the log.
class FactorEvents {
 public:
  virtual ~FactorEvents() = default;
  virtual void compressing_files() {}
  virtual void no_memory_for_dense() {}
  virtual void repairing() {}
  virtual void threshold_set(double /*threshold*/) {}
};

/// Work counters, in nonzeros touched; deterministic, never a clock.
struct FactorStatistics {
  int factorizations = 0;
  int updates = 0;  // since the last factorization
  int repairs = 0;
  double pivot_ratio = 1.0;  // largest / smallest pivot magnitude of the last factorization
  long basis_nonzeros = 0;   // of B at the last factorization
  long factor_nonzeros = 0;  // of L and U at the last factorization
  double factor_work = 0.0;  // nonzeros touched by the last factorization
  double work = 0.0;         // total nonzeros touched by everything so far
};

/// A state of a factor, as returned by BasisFactor::checkpoint().
struct FactorMark {
  int level = -1;  // its place in the stack of outstanding marks
  int serial = 0;  // tells it from earlier marks at the same place
};

class BasisFactor {
 public:
  /// `columns` (m rows) must outlive the object. `events` may be null.
  BasisFactor(const SparseMatrix& columns, const FactorSettings& settings, FactorEvents* events);
  ~BasisFactor();
  BasisFactor(const BasisFactor&) = delete;
  BasisFactor& operator=(const BasisFactor&) = delete;

  /// Factorizes the basis `header` [m]. On `repaired` the exchanges are appended to `repairs` and
  /// made in `header`. Throws std::bad_alloc only after the retries with smaller files failed.
  /// Given a stop check, which must outlive its use, long factorizations ask it now and then.
  FactorOutcome factorize(Vector<int>& header, bool allow_repair, Vector<BasisRepair>& repairs,
                          StopCheck* stop = nullptr);

  // All solves take vectors of size m. On return the list is exact, or the result so dense that a
  // plain loop is better and the list is invalid.

  /// Solves B x = a in place. `expected_density` of the result (a running average kept by the
  /// caller; 1 when unknown) helps to choose between the sparse and the dense pass. With
  /// `keep_for_update` the partially transformed column is kept for the next update().
  void ftran(WorkVector& x, double expected_density, bool keep_for_update = false);
  /// Two independent solves in one pass over the factor; the first may be kept for the update.
  void ftran_pair(WorkVector& a, double density_a, WorkVector& b, double density_b,
                  bool keep_a_for_update);
  /// Solves y'B = c' in place.
  void btran(WorkVector& y, double expected_density);
  /// Two independent transposed solves in one pass.
  void btran_pair(WorkVector& a, double density_a, WorkVector& b, double density_b);

  /// Replaces the column at `position` by the one of the last ftran(.., keep_for_update).
  /// `pivot` is that solve's entry at `position`; a disagreement with the updated factor beyond
  /// rounding asks for a refactorization. False: refactorize instead (nothing was changed).
  bool update(int position, double pivot);

  // Rows that join and leave while their logicals are basic. The caller changes `columns`, its
  // numbering of logicals and the header in the same way; the factor looks at `columns` again only
  // when it factorizes. A column kept by ftran() is no longer kept. All or nothing.

  /// Appends k rows whose logicals are basic at k new positions behind the others, in the same
  /// order: B' = [B 0; R I]. `rows` holds the k rows of R, its indices are basis positions (each
  /// once a row). Costs one sparse solve a row; later solves cost more by the entries that these
  /// have. False: factorize instead (no memory, or no valid factor).
  bool add_rows(const SparseMatrix& rows);
  /// Deletes rows whose logicals are basic: the rows `rows` and the positions `positions` of their
  /// logicals, both ascending. What remains closes up and keeps its order. Costs O(m); until the
  /// next factorization the deleted rows still cost their share of the solves. False: factorize
  /// instead (a mark of this factorization is outstanding, half of the rows would be deleted ones,
  /// no memory, or no valid factor).
  bool delete_rows(const Vector<int>& rows, const Vector<int>& positions);

  // Checkpoints, for probes and dives. Marks form a stack; as many as one likes may be outstanding.
  // All of these calls work whatever has happened since the mark: updates, refused updates, added
  // rows, further marks, factorizations, also failed ones. The factor does not know the header: the
  // caller puts its own back (entries of the positions updated since the mark, repairs).
  //
  // While a mark is outstanding, an update also writes down what it overwrites, and a factorization
  // leaves the marked factors alone and works on a second set (one set for every factorization to
  // which a mark refers; the sets are kept for the next use).

  /// Marks the present state of a valid factor, in constant time. Throws std::bad_alloc, with
  /// nothing changed.
  FactorMark checkpoint();
  /// Returns to the state at the mark, at a cost in proportion to the updates made since; a
  /// factorization in between adds next to nothing. Solves, updates, the refactorization rule, the
  /// Markowitz threshold and the budget of repairs continue exactly as they would have from the
  /// mark; only the counts of work and factorizations go on. The mark stays outstanding, later ones
  /// end. A column kept by ftran() before this call is no longer kept. False, with nothing
  /// changed: the mark is not outstanding. Never throws.
  bool rollback(FactorMark mark);
  /// Ends the mark and all later ones without changing the factor. A mark that is not outstanding
  /// is ignored. Never throws.
  void release(FactorMark mark);

  /// True when a fresh factorization is cheaper than going on (the adaptive rule), or the update
  /// limit is reached.
  bool should_refactor() const;
  /// Counts work of the caller's iteration (nonzeros touched outside the factor), so that the
  /// adaptive rule weighs a factorization against whole iterations.
  void add_work(double work);

  double markowitz_threshold() const;
  /// Raises the threshold: to 0.1 below that, else by 0.1, at most 0.99999.
  void raise_markowitz();
  const FactorStatistics& statistics() const;
  bool valid() const;

 private:
  struct Impl;
  Owned<Impl> impl_;
};

}  // namespace kelvo
