// Solving a linear program with many more columns than rows by a part of its columns at a time
// (sifting: Bixby, Gregory, Lustig, Marsten and Shanno 1992, "Very large-scale linear programming:
// a case study in combining interior point and simplex methods", Operations Research 40).
//
// A work program holds all rows and some of the columns, at first those that first_columns.h
// chooses; the others are at a bound. It is solved by the dual simplex method at first and then,
// with other columns, by the primal one from the basis kept. Its multipliers y price the columns
// left out:
//
//     d_j = c_j - y'a_j     with the duals of an optimum,
//     d_j =     - y'a_j     with a proof of infeasibility whose largest value over the box is < 0,
//
// and the most attractive of them join it (by steepest descent, or by the least cost for their part
// in breaking the proof), while those whose reduced costs are farthest from entering leave it once
// it has grown too large. When no column left out is attractive, the basis of the work program is
// an optimal one of the whole.
#pragma once

#include "lp/sifting/candidates.h"
#include "lp/sifting/sifting_log.h"
#include "lp/sifting/sifting_settings.h"
#include "lp/sifting/work_program.h"

namespace kelvo {

enum class SiftingEnd {
  priced_out,  // the basis is optimal for the whole
  unfinished,  // a feasible basis to continue from: too many passes, or the program seems unbounded
  given_up,    // no basis better than that of the slacks: such programs take the ordinary way
  stopped      // by the iteration limit, the hook or the stop check; the basis is the last one
};

class Sifting {
 public:
  /// True when the shape of the program promises that working on a part of the columns is faster.
  static bool pays(const LpProblem& problem, const SiftingSettings& settings);

  /// Problem, settings and what the context lends must outlive the object.
  Sifting(const LpProblem& problem, const SiftingSettings& settings, const RunContext& context);
  ~Sifting();
  Sifting(const Sifting&) = delete;
  Sifting& operator=(const Sifting&) = delete;

  /// Works until an end is reached; once.
  SiftingEnd run();

  /// BasisStatus codes [num_vars] of the whole program; not after `given_up`.
  const Vector<int>& status() const { return status_; }
  /// After `stopped`: by what.
  SimplexOutcome stop_outcome() const { return stop_outcome_; }
  int iterations() const { return iterations_; }
  int phase_one_iterations() const { return phase_one_iterations_; }

 private:
  SimplexOutcome solve_work();
  int run_limit() const;
  double proof_sign() const;
  void price(const Vector<double>& y, double cost_factor, double sign, double tolerance);
  void price_with_duals();
  void price_with_proof();
  void add_attractive();
  void drop_unattractive();

  const LpProblem& problem_;
  const SiftingSettings& settings_;
  NeverStop never_;
  RunContext context_;  // of the runs on work programs: they say nothing
  SiftingLog log_;
  const int m_;
  const int n_;
  Vector<int> status_;  // [num_vars]
  const ColumnSides sides_;
  Vector<char> in_work_;          // [n] 1: the column takes part
  Vector<double> norm_;           // [n] 1 + |a_j|^2
  Vector<Candidate> candidates_;  // columns left out that are attractive
  WorkProgram work_;
  SimplexOutcome stop_outcome_ = SimplexOutcome::aborted;
  bool feasible_ = false;  // a work program had a feasible point
  int passes_ = 0;
  int failures_ = 0;          // infeasible work programs
  int first_iterations_ = 0;  // those of the first pass
  int iterations_ = 0;
  int phase_one_iterations_ = 0;
};

}  // namespace kelvo
