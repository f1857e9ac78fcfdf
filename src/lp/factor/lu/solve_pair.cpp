// Plain solves for two right-hand sides in one pass: the factor is read from memory once.
#include <cmath>

#include "lp/factor/lu/solve.h"

namespace kelvo {
namespace {

/// Results denser than this get no index list: a plain loop over them is quicker.
constexpr double kListDensity = 0.3;

inline bool negligible(double value) {
  return std::fabs(value) <= kDropTolerance;
}
inline double dropped(double value) {
  return negligible(value) ? 0.0 : value;
}

/// Subtracts a line from one vector or both, as their factors are nonzero; returns its length.
inline int subtract_line(const Span line, const EntryFile& file, double factor_a, double* a,
                         double factor_b, double* b) {
  const int* index = file.index.data();
  const double* value = file.value.data();
  if (factor_b == 0.0) {
    for (int e = line.begin; e < line.end; ++e) a[index[e]] -= value[e] * factor_a;
  } else if (factor_a == 0.0) {
    for (int e = line.begin; e < line.end; ++e) b[index[e]] -= value[e] * factor_b;
  } else {
    for (int e = line.begin; e < line.end; ++e) {
      const int k = index[e];
      const double v = value[e];
      a[k] -= v * factor_a;
      b[k] -= v * factor_b;
    }
    return 2 * line.size();
  }
  return line.size();
}

/// A result vector that is filled entry by entry.
struct Output {
  double* value;
  int* list;
  int count = 0;

  explicit Output(WorkVector& x) : value(x.value.data()), list(x.index.data()) {}
  void put(int at, double x) {
    if (x == 0.0) return;
    value[at] = x;
    list[count++] = at;
  }
  int final_count(int m) const { return count > kListDensity * m ? WorkVector::kDense : count; }
};

}  // namespace

void LuSolver::solve_l_pair(WorkVector& x, WorkVector& y) {
  double* a = x.value.data();
  double* b = y.value.data();
  long touched = static_cast<long>(lu_.l_pivots.size());
  for (const int k : lu_.l_pivots) {
    if (a[k] == 0.0 && b[k] == 0.0) continue;
    a[k] = dropped(a[k]);
    b[k] = dropped(b[k]);
    touched += subtract_line(lu_.l_column[k], lu_.l_columns, a[k], a, b[k], b);
  }
  if (lu_.dense.order > 0) {
    lu_.dense.solve_lower(a + lu_.block_begin());
    lu_.dense.solve_lower(b + lu_.block_begin());
  }
  x.count = y.count = WorkVector::kDense;
  work_ += static_cast<double>(touched);
}

void LuSolver::solve_u_pair(WorkVector& x, WorkVector& y, WorkVector& out_x, WorkVector& out_y) {
  const int m = lu_.m;
  double* a = x.value.data();
  double* b = y.value.data();
  Output out_a(out_x), out_b(out_y);
  long touched = m;
  const int block_end = lu_.dense.order > 0 ? lu_.num_factored - 1 : -1;
  for (int s = lu_.sequence_size - 1; s >= 0; --s) {
    if (s == block_end) {
      lu_.dense.solve_upper(a + lu_.block_begin());
      lu_.dense.solve_upper(b + lu_.block_begin());
    }
    const int k = lu_.sequence[s];
    if (k < 0 || (a[k] == 0.0 && b[k] == 0.0)) continue;
    const double inverse = lu_.inverse_diagonal[k];
    const double ak = a[k], bk = b[k];
    const double xk = dropped(ak * inverse), yk = dropped(bk * inverse);
    a[k] = b[k] = 0.0;
    const int position = lu_.position_of_pivot[k];
    out_a.put(position, xk);
    out_b.put(position, yk);
    touched += subtract_line(lu_.u_column[k], lu_.u_columns, xk == 0.0 ? 0.0 : ak, a,
                             yk == 0.0 ? 0.0 : bk, b);
  }
  x.count = y.count = 0;
  out_x.count = out_a.final_count(m);
  out_y.count = out_b.final_count(m);
  work_ += static_cast<double>(touched);
}

void LuSolver::solve_u_transposed_pair(WorkVector& x, WorkVector& y) {
  double* a = x.value.data();
  double* b = y.value.data();
  long touched = lu_.m;
  const auto pass = [&](int from, int to) {
    for (int s = from; s < to; ++s) {
      const int k = lu_.sequence[s];
      if (k < 0 || (a[k] == 0.0 && b[k] == 0.0)) continue;
      const double inverse = lu_.inverse_diagonal[k];
      const double ak = a[k], bk = b[k];
      a[k] = dropped(ak * inverse);
      b[k] = dropped(bk * inverse);
      touched += subtract_line(lu_.u_row[k], lu_.u_rows, a[k] == 0.0 ? 0.0 : ak, a,
                               b[k] == 0.0 ? 0.0 : bk, b);
    }
  };
  if (lu_.dense.order == 0) {
    pass(0, lu_.sequence_size);
  } else {
    const int begin = lu_.block_begin(), factored = lu_.num_factored;
    const double* inverse = lu_.inverse_diagonal.data() + begin;
    pass(0, begin);
    for (double* c : {a, b}) {
      lu_.dense.solve_upper_transposed(c + begin, inverse, lu_.place.data() + begin, factored);
    }
    for (int k = begin; k < factored; ++k) {
      if (lu_.moved(k)) continue;
      const double diagonal = lu_.diagonal[k];
      touched += subtract_line(lu_.u_row[k], lu_.u_rows, a[k] * diagonal, a, b[k] * diagonal, b);
    }
    pass(factored, lu_.sequence_size);
  }
  x.count = y.count = WorkVector::kDense;
  work_ += static_cast<double>(touched);
}

void LuSolver::solve_l_transposed_pair(WorkVector& x, WorkVector& y, WorkVector& out_x,
                                       WorkVector& out_y) {
  const int m = lu_.m;
  double* a = x.value.data();
  double* b = y.value.data();
  Output out_a(out_x), out_b(out_y);
  long touched = m;
  if (lu_.dense.order > 0) {
    lu_.dense.solve_lower_transposed(a + lu_.block_begin());
    lu_.dense.solve_lower_transposed(b + lu_.block_begin());
  }
  for (int k = m - 1; k >= 0; --k) {
    if (a[k] == 0.0 && b[k] == 0.0) continue;
    const double ak = dropped(a[k]), bk = dropped(b[k]);
    a[k] = b[k] = 0.0;
    const int row = lu_.row_of_pivot[k];
    out_a.put(row, ak);
    out_b.put(row, bk);
    touched += subtract_line(lu_.l_row[k], lu_.l_rows, ak, a, bk, b);
  }
  x.count = y.count = 0;
  out_x.count = out_a.final_count(m);
  out_y.count = out_b.final_count(m);
  work_ += static_cast<double>(touched);
}

}  // namespace kelvo
