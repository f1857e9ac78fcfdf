// An approximate solution of a linear program by a first-order method.
//
// The restarted Halpern iteration of the primal-dual hybrid gradient method, with reflection:
//
//     T(x, y):  x' = proj_X( x - tau (c - A'y) ),
//               y' = y - sigma A(2x' - x), moved by the rows' bounds (prox of their support
//               function)
//     z_{k+1} = (k+1)/(k+2) (2 T(z_k) - z_k) + 1/(k+2) z_0
//
// restarted from z_0 = T(z_k) when the fixed-point residual ||z - T(z)|| has fallen enough; at a
// restart the weight that balances tau against sigma follows the distances travelled. An iteration
// costs one product with A and one with A', whatever the basis would look like: the method suits
// problems whose bases are hard (highly degenerate, dense factors) and answers with few digits.
// After H. Lu, J. Yang: "Restarted Halpern PDHG for linear programming", 2024; A. Chambolle,
// T. Pock, J. Math. Imaging Vision 40 (2011); the scaling after D. Ruiz (2001) and T. Pock,
// A. Chambolle (2011).
#pragma once

#include <algorithm>

#include "base/containers.h"
#include "base/stop_check.h"
#include "lp/form/lp_problem.h"

namespace kelvo {

struct FirstOrderPoint {
  Vector<double> x;  // [num_cols] within the bounds, but for rounding
  Vector<double> y;  // [num_rows] duals; reduced costs are c - A'y
  // Relative errors: primal and dual residual (2-norms, of the equilibrated problem), duality gap.
  double primal_error = kInf;
  double dual_error = kInf;
  double gap = kInf;

  double worst() const { return std::max({primal_error, dual_error, gap}); }
};

class FirstOrderMethod {
 public:
  /// Equilibrates the problem, whose row-wise matrix is not looked at. Starts from the point
  /// nearest to 0.
  FirstOrderMethod(LpProblem&& lp, StopCheck& stop);

  /// Goes on until the errors of a point are within the tolerance (true) or so many iterations have
  /// been made since the construction. False, too, when the stop check says so.
  bool run(double tolerance, int iteration_limit);

  int iterations() const { return iterations_; }
  /// Nonzeros and vector elements touched in an iteration.
  static double work_per_iteration(int rows, int columns, double nonzeros);
  /// Least worst() of all points so far.
  double best_error() const { return best_.worst(); }
  /// The point that has it; takes it out of the object. Empty when nothing was found.
  FirstOrderPoint take_point();

 private:
  /// A point with its images.
  struct Point {
    Vector<double> x, y, ax, aty;  // [n], [m], A x, A'y
  };

  bool stopped();
  void divide_by_norms(bool by_largest);
  void equilibrate();
  void normalize();
  void choose_step();
  void apply_operator();
  void halpern_step();
  double fixed_point_residual();
  void measure();
  bool should_restart(double residual);
  void restart();
  void keep_best();

  StopCheck& stop_;
  const int n_, m_;
  // The problem in use: x = col_factor x~ / bound_scale, y = row_factor y~ / cost_scale.
  SparseMatrix columns_, rows_;
  Vector<double> cost_, lower_, upper_;     // [n]
  Vector<double> row_lower_, row_upper_;    // [m] bounds of A x
  Vector<double> col_factor_, row_factor_;  // [n], [m]
  double cost_scale_ = 1.0, bound_scale_ = 1.0;
  double cost_norm_ = 0.0, bound_norm_ = 0.0;
  double step_ = 0.0;    // sqrt(tau sigma)
  double weight_ = 1.0;  // sqrt(sigma / tau)
  double first_weight_ = 1.0;
  Point z_, t_, anchor_;
  bool stopped_ = false;
  int inner_ = 0, iterations_ = 0;
  double residual_at_restart_ = kInf, last_residual_ = kInf;
  FirstOrderPoint now_, best_;
};

}  // namespace kelvo
