// Single exchanges of the basis, for callers that drive the simplex step by step.
//
// Works on the working LP that holds the basis (hold_basis); the caller stores the result
// afterwards (store_basic_solution). Variables are numbered as in the engines: columns 0..n-1,
// slacks n..n+m-1. When a call ends with `singular` the basis has been lost on the way and the
// working LP must be thrown away.
#pragma once

#include "lp/simplex/basis_steps.h"
#include "lp/simplex/simplex_tableau.h"
#include "lp/solve/working_lp.h"

namespace kelvo {

enum class ExchangeOutcome { done, illegal, singular };

class BasisExchange {
 public:
  /// `context` must outlive the object.
  BasisExchange(WorkingLp& working, const SimplexSettings& settings, const RunContext& context);

  /// Makes the slacks of rows basic. Each takes the place of a variable that is not among them:
  /// of those with large enough pivots the one nearest to a bound, so that the solution moves
  /// least. `count` receives the number of exchanges.
  ExchangeOutcome pivot_in(const Vector<int>& rows, int& count);

  /// Makes fixed variables nonbasic. Each makes room for the variable with the smallest ratio of
  /// reduced cost to pivot, so that reduced costs keep their signs. A variable for which nothing
  /// could enter but other variables of the list stays basic and is not counted.
  ExchangeOutcome pivot_out(const Vector<int>& variables, int& count);

  /// One exchange: a nonbasic variable enters at the position of another, which becomes nonbasic at
  /// `leaves_at`. Illegal when the pivot is too small.
  ExchangeOutcome exchange(int entering, int position, BasisStatus leaves_at);

  /// A nonbasic variable moves to its other bound; illegal when it has none.
  ExchangeOutcome move_to(int variable, BasisStatus bound);

  /// Primal and dual values of the basis as it stands now.
  void compute_values();

 private:
  ExchangeOutcome finish_exchange(int entering, int position, BasisStatus leaves_at);
  int largest_pivot(const WorkVector& inverse_row, const Vector<char>& listed) const;
  bool is_basic(int variable) const { return simplex_.status()[variable] == kBasic; }
  int position_to_leave(const Vector<double>& alpha, const Vector<char>& listed) const;
  int variable_to_enter(int position, const Vector<char>& listed);
  BasisStatus nearest_bound(int variable, double value) const;

  const LpProblem& lp_;  // scaled
  const Simplex& simplex_;
  SimplexTableau tableau_;
  BasisSteps steps_;
  const double tolerance_;  // of feasibility
  const int m_;
  const int n_;
};

}  // namespace kelvo
