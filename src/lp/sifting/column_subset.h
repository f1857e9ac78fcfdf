// A start basis for a linear program with many more columns than rows, from a part of the columns
// at a time (sifting: Bixby, Gregory, Lustig, Marsten and Shanno 1992, "Very large-scale linear
// programming: a case study in combining interior point and simplex methods", Operations Research
// 40).
//
// A work program holds all rows and some of the columns, at first those that mend what the slack
// basis violates at the least reduced cost by approximate duals (lp/sifting/row_prices.h); the
// others stand at a bound, which shifts the limits of the rows. It is solved by the dual simplex
// method at first and then, with other columns, by the primal one from the basis kept. Its
// multipliers y price the columns left out:
//
//     d_j = c_j - y'a_j     with the duals of an optimum,
//     d_j =     - y'a_j     with a proof of infeasibility whose largest value over the box is < 0,
//
// and the most attractive of them join it (by steepest descent, or by the least cost for their part
// in breaking the proof), while those whose reduced costs are farthest from entering leave it once
// it has grown too large. When no column left out is attractive, the basis of the work program is
// an optimal one of the whole.
#pragma once

#include "lp/form/lp_problem.h"
#include "lp/simplex/simplex.h"

namespace kelvo {

enum class SubsetEnd {
  priced_out,  // the basis is optimal for the whole
  unfinished,  // a feasible basis to go on from: too many rounds, or the program seems unbounded
  given_up,    // no basis better than that of the slacks: such programs take the ordinary way
  stopped      // by the iteration limit, the hook or the stop check; the basis is the last one
};

/// Told after each round whose work program was feasible, with its objective, which is that of a
/// point of the whole program.
class SubsetObserver {
 public:
  virtual ~SubsetObserver() = default;
  virtual void after_round(int iterations, double objective) = 0;
};

class ColumnSubset {
 public:
  /// True when the shape of the program promises that working on a part of the columns is faster.
  static bool pays(const LpProblem& problem);

  /// All arguments must outlive the object; `hook` and `observer` may be null.
  ColumnSubset(const LpProblem& problem, StopCheck& stop, IterationHook* hook,
               SubsetObserver* observer);
  ~ColumnSubset();
  ColumnSubset(const ColumnSubset&) = delete;
  ColumnSubset& operator=(const ColumnSubset&) = delete;

  /// Works until an end is reached. The iteration limit counts the iterations on all work programs;
  /// limits of the objective are not observed.
  SubsetEnd run(const SimplexSettings& settings);

  /// BasisStatus codes [num_vars] of the whole program; not after `given_up`.
  const Vector<int>& status() const { return status_; }
  /// After `stopped`: by what.
  SimplexOutcome stop_outcome() const { return stop_outcome_; }
  int iterations() const { return iterations_; }
  int phase_one_iterations() const { return phase_one_iterations_; }

 private:
  struct Candidate {
    int column;
    double merit;
  };

  void place_columns();
  Vector<double> missing_activity() const;
  double help(const Vector<double>& missing, int j, int k) const;
  void best_of_row(int i, double missing, const Vector<double>& merit, int count,
                   Vector<Candidate>& list) const;
  Vector<double> merit_by_cost(const Vector<double>& missing) const;
  Vector<double> price_rows(const Vector<double>& missing, const Vector<double>& merit) const;
  void choose_first_columns();
  void fill_work();
  void start_work();
  SimplexOutcome solve_work();
  int run_limit() const;
  double proof_sign() const;
  void price(const Vector<double>& y, double cost_factor, double sign, double tolerance);
  void price_with_duals();
  void price_with_proof();
  void add_attractive();
  void drop_unattractive();
  /// Where a column left out stands.
  double place_of(int column) const {
    return status_[column] == kAtUpper ? problem_.upper[column] : problem_.lower[column];
  }
  /// The direction in which a nonbasic column may move.
  double direction_of(int column) const { return status_[column] == kAtUpper ? -1.0 : 1.0; }

  const LpProblem& problem_;
  StopCheck& stop_;
  IterationHook* const hook_;
  SubsetObserver* const observer_;
  SimplexSettings settings_;
  const int m_;
  const int n_;
  Vector<int> status_;            // [num_vars]
  Vector<char> in_work_;          // [n] 1: the column takes part
  Vector<double> norm_;           // [n] 1 + |a_j|^2
  Vector<Candidate> candidates_;  // columns left out that are attractive
  LpProblem work_;
  Vector<int> columns_;     // [columns of work_] which they are, ascending
  Owned<Simplex> simplex_;  // over work_
  SimplexOutcome stop_outcome_ = SimplexOutcome::aborted;
  bool feasible_ = false;  // a work program had a feasible point
  int rounds_ = 0;
  int failures_ = 0;          // infeasible work programs
  int first_iterations_ = 0;  // those of the first round
  int iterations_ = 0;
  int phase_one_iterations_ = 0;
};

}  // namespace kelvo
