#include "lp/factor/lu/solve.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace kelvo {
namespace {

/// Results denser than this get no index list: a plain loop over them is quicker.
constexpr double kListDensity = 0.3;
/// A plainly computed L stage is listed for the U stage when the result is expected this sparse.
constexpr double kRelistDensity = 0.1;
/// Stands for zero in a pivot that is listed already, so that it is not listed twice.
constexpr double kListedZero = 1e-100;

/// Entries of the dense block (both triangles) that cost as much as one of a file.
constexpr int kDenseSpeed = 8;

inline bool negligible(double value) {
  return std::fabs(value) <= kDropTolerance;
}

/// Runs over the pivots of a plain pass a block at a time: blocks without a nonzero cost next to
/// nothing, and most blocks are such. What a body stores must lie ahead in the run.
constexpr int kBlock = 8;

inline bool block_is_zero(const double* a) {
  std::uint64_t bits[kBlock];
  std::memcpy(bits, a, sizeof bits);
  std::uint64_t any = 0;
  for (int i = 0; i < kBlock; ++i) any |= bits[i];
  return any == 0;
}

template <class Body>
inline void for_nonzeros_down(const double* a, int begin, int end, Body body) {
  int k = end;
  while (k - begin >= kBlock) {
    if (block_is_zero(a + k - kBlock)) {
      k -= kBlock;
      continue;
    }
    for (const int stop = k - kBlock; k > stop;) {
      --k;
      if (a[k] != 0.0) body(k);
    }
  }
  while (k > begin) {
    --k;
    if (a[k] != 0.0) body(k);
  }
}

template <class Body>
inline void for_nonzeros_up(const double* a, int begin, int end, Body body) {
  int k = begin;
  while (end - k >= kBlock) {
    if (block_is_zero(a + k)) {
      k += kBlock;
      continue;
    }
    for (const int stop = k + kBlock; k < stop; ++k) {
      if (a[k] != 0.0) body(k);
    }
  }
  for (; k < end; ++k) {
    if (a[k] != 0.0) body(k);
  }
}

/// Moves the values of the leading pivots to their places in a result, where nothing is left to be
/// eliminated: without a branch within a block, as which entries are nonzero is as good as random.
inline int move_out(double* a, int end, const int* place, double* result, int* list, int count) {
  int k = 0;
  const auto move = [&](int i) {
    const double x = a[i];
    const bool stays = !negligible(x);
    const int at = place[i];
    a[i] = 0.0;
    // The pivots that an update has moved are zero here and have their results already.
    result[at] = stays ? x : result[at];
    list[count] = at;
    count += stays;
  };
  for (; end - k >= kBlock; k += kBlock) {
    if (block_is_zero(a + k)) continue;
    for (int i = k; i < k + kBlock; ++i) move(i);
  }
  for (; k < end; ++k) move(k);
  return count;
}

/// The arrays of a file, held in registers by the loops.
struct Entries {
  const int* index;
  const double* value;

  explicit Entries(const EntryFile& file) : index(file.index.data()), value(file.value.data()) {}
  void subtract(const Span line, double factor, double* x) const {
    for (int e = line.begin; e < line.end; ++e) x[index[e]] -= value[e] * factor;
  }
};

}  // namespace

void LuSolver::setup(int order) {
  const std::size_t m = order;
  if (resume_.size() >= m) return;
  for (WorkVector& inner : inner_) {
    inner.value.resize(m, 0.0);
    inner.index.resize(m + 1, 0);
  }
  marked_.resize(m, 0);
  reach_.resize(m);
  stack_.resize(m);
  resume_.resize(m);  // last: of its length, all are complete even after memory ran short
}

void LuSolver::enter(WorkVector& from, const Vector<int>& pivot_of_line,
                     const Vector<int>& line_of_pivot, WorkVector& to) {
  double* source = from.value.data();
  double* target = to.value.data();
  if (from.count == WorkVector::kDense) {
    for (int k = 0; k < lu_.m; ++k) target[k] = source[line_of_pivot[k]];
    std::fill(from.value.begin(), from.value.end(), 0.0);
  } else {
    for (int k = 0; k < from.count; ++k) {
      const int line = from.index[k];
      const int pivot = pivot_of_line[line];
      target[pivot] = source[line];
      source[line] = 0.0;
      to.index[k] = pivot;
    }
  }
  to.count = from.count;
  from.count = 0;
}

void LuSolver::solve_l(WorkVector& x, double expected) {
  if (lu_.l_pivots.empty() && lu_.dense.order == 0) return;
  double* a = x.value.data();
  const Entries entries(lu_.l_columns);
  long touched = 0;
  const int top = worth_sparse(x.count, expected) ? reach(x, lu_.l_column, lu_.l_columns) : -1;
  if (top >= 0) {
    int count = 0;
    for (int s = top; s < lu_.m; ++s) {
      const int k = reach_[s];
      marked_[k] = 0;
      const double xk = a[k];
      if (negligible(xk)) {
        a[k] = 0.0;
        continue;
      }
      x.index[count++] = k;
      const Span line = lu_.l_column[k];
      entries.subtract(line, xk, a);
      touched += line.size();
    }
    x.count = count;
  } else {
    for (const int k : lu_.l_pivots) {
      const double xk = a[k];
      if (xk == 0.0) continue;
      if (negligible(xk)) {
        a[k] = 0.0;
        continue;
      }
      const Span line = lu_.l_column[k];
      entries.subtract(line, xk, a);
      touched += line.size();
    }
    touched += static_cast<long>(lu_.l_pivots.size());
    if (lu_.dense.order > 0) {
      lu_.dense.solve_lower(a + lu_.block_begin());
      touched += lu_.dense.size() / kDenseSpeed;
    }
    x.count = WorkVector::kDense;
  }
  work_ += static_cast<double>(touched);
}

void LuSolver::solve_etas(WorkVector& x) {
  double* a = x.value.data();
  const int* index = lu_.etas.index.data();
  const double* value = lu_.etas.value.data();
  const int num_etas = lu_.num_etas();
  for (int u = 0; u < num_etas; ++u) {
    const Span line = lu_.eta[u];
    double sum = 0.0;
    for (int e = line.begin; e < line.end; ++e) sum += value[e] * a[index[e]];
    if (sum == 0.0) continue;
    const int target = lu_.eta_target[u];
    const double old = a[target];
    const double now = old - sum;
    if (x.count >= 0 && old == 0.0) x.index[x.count++] = target;
    a[target] = negligible(now) ? kListedZero : now;
  }
  work_ += lu_.etas.used + num_etas;
}

void LuSolver::solve_u(WorkVector& x, double expected, WorkVector& out) {
  const int m = lu_.m;
  double* a = x.value.data();
  const Entries entries(lu_.u_columns);
  double* y = out.value.data();
  int* list = out.index.data();
  const int* position = lu_.position_of_pivot.data();
  const double* inverse = lu_.inverse_diagonal.data();
  const Span* column = lu_.u_column.data();
  int count = 0;
  long touched = 0;
  if (x.count == WorkVector::kDense && expected <= kRelistDensity) {
    // The L stage ran plainly; its result may be sparse all the same.
    for (int k = 0; k < m; ++k) {
      if (a[k] != 0.0) x.index[count++] = k;
    }
    x.count = count;
    count = 0;
  }
  const int top = worth_sparse(x.count, expected) ? reach(x, lu_.u_column, lu_.u_columns) : -1;
  x.count = 0;
  if (top >= 0) {
    for (int s = top; s < m; ++s) {
      const int k = reach_[s];
      marked_[k] = 0;
      const double ak = a[k];
      const double xk = ak * inverse[k];
      a[k] = 0.0;
      if (negligible(xk)) continue;
      y[position[k]] = xk;
      list[count++] = position[k];
      entries.subtract(column[k], ak, a);
      touched += column[k].size();
    }
    out.count = count;
  } else {
    const auto eliminate = [&](int k) {
      const double ak = a[k];
      const double xk = ak * inverse[k];
      a[k] = 0.0;
      if (negligible(xk)) return;
      y[position[k]] = xk;
      list[count++] = position[k];
      entries.subtract(column[k], ak, a);
      touched += column[k].size();
    };
    // The moved and added pivots come first; after them every pivot is at its own number, and those
    // that moved are zero by then.
    for (int s = lu_.sequence_size - 1; s >= lu_.num_factored; --s) {
      const int k = lu_.sequence[s];
      if (k >= 0 && a[k] != 0.0) eliminate(k);
    }
    if (lu_.dense.order > 0) lu_.dense.solve_upper(a + lu_.block_begin());
    for_nonzeros_down(a, lu_.num_logical, lu_.num_factored, eliminate);
    count = move_out(a, lu_.num_logical, position, y, list, count);
    touched += m + lu_.dense.size() / kDenseSpeed;
    out.count = count > kListDensity * m ? WorkVector::kDense : count;
  }
  work_ += static_cast<double>(touched);
}

void LuSolver::solve_u_transposed(WorkVector& y, double expected) {
  const int m = lu_.m, factored = lu_.num_factored;
  double* a = y.value.data();
  const Entries entries(lu_.u_rows);
  const double* inverse = lu_.inverse_diagonal.data();
  const Span* row = lu_.u_row.data();
  const int top = worth_sparse(y.count, expected) ? reach(y, lu_.u_row, lu_.u_rows) : -1;
  int count = 0;
  long touched = 0;
  if (top >= 0) {
    for (int s = top; s < m; ++s) {
      const int k = reach_[s];
      marked_[k] = 0;
      const double ak = a[k];
      const double yk = ak * inverse[k];
      a[k] = negligible(yk) ? 0.0 : yk;
      if (a[k] == 0.0) continue;
      y.index[count++] = k;
      entries.subtract(row[k], ak, a);
      touched += row[k].size();
    }
    y.count = count;
  } else {
    const auto eliminate = [&](int k) {
      const double ak = a[k];
      const double yk = ak * inverse[k];
      a[k] = negligible(yk) ? 0.0 : yk;
      if (a[k] == 0.0) return;
      y.index[count++] = k;
      entries.subtract(row[k], ak, a);
      touched += row[k].size();
    };
    // Pivots that have not moved are at their own numbers; the moved ones follow.
    const auto pass_in_place = [&](int from, int to) {
      for_nonzeros_up(a, from, to, [&](int k) {
        if (!lu_.moved(k)) eliminate(k);
      });
    };
    const auto pass_moved = [&] {
      for (int s = factored; s < lu_.sequence_size; ++s) {
        const int k = lu_.sequence[s];
        if (k >= 0 && a[k] != 0.0) eliminate(k);
      }
    };
    if (lu_.dense.order == 0) {
      pass_in_place(0, factored);
      pass_moved();
    } else {
      const int begin = lu_.block_begin();
      pass_in_place(0, begin);
      lu_.dense.solve_upper_transposed(a + begin, inverse + begin, lu_.place.data() + begin,
                                       factored);
      for (int k = begin; k < factored; ++k) {
        if (lu_.moved(k) || a[k] == 0.0) continue;
        y.index[count++] = k;
        entries.subtract(row[k], a[k] * lu_.diagonal[k], a);
        touched += row[k].size();
      }
      pass_moved();
      touched += lu_.dense.size() / kDenseSpeed;
    }
    touched += m;
    y.count = count > kListDensity * m ? WorkVector::kDense : count;
  }
  work_ += static_cast<double>(touched);
}

void LuSolver::solve_etas_transposed(WorkVector& y) {
  double* a = y.value.data();
  const int* index = lu_.etas.index.data();
  const double* value = lu_.etas.value.data();
  const int num_etas = lu_.num_etas();
  long touched = num_etas;
  for (int u = num_etas - 1; u >= 0; --u) {
    const double factor = a[lu_.eta_target[u]];
    if (factor == 0.0) continue;
    const Span line = lu_.eta[u];
    if (y.count >= 0) {
      for (int e = line.begin; e < line.end; ++e) {
        const int k = index[e];
        const double old = a[k];
        const double now = old - value[e] * factor;
        if (old == 0.0) y.index[y.count++] = k;
        a[k] = negligible(now) ? kListedZero : now;
      }
    } else {
      for (int e = line.begin; e < line.end; ++e) a[index[e]] -= value[e] * factor;
    }
    touched += line.size();
  }
  work_ += static_cast<double>(touched);
}

void LuSolver::solve_l_transposed(WorkVector& y, double expected, WorkVector& out) {
  const int m = lu_.m;
  double* a = y.value.data();
  const Entries entries(lu_.l_rows);
  double* x = out.value.data();
  int* list = out.index.data();
  const int* row_of_pivot = lu_.row_of_pivot.data();
  const Span* row = lu_.l_row.data();
  const int top = worth_sparse(y.count, expected) ? reach(y, lu_.l_row, lu_.l_rows) : -1;
  int count = 0;
  long touched = 0;
  y.count = 0;
  if (top >= 0) {
    for (int s = top; s < m; ++s) {
      const int k = reach_[s];
      marked_[k] = 0;
      const double yk = a[k];
      a[k] = 0.0;
      if (negligible(yk)) continue;
      x[row_of_pivot[k]] = yk;
      list[count++] = row_of_pivot[k];
      entries.subtract(row[k], yk, a);
      touched += row[k].size();
    }
    out.count = count;
  } else {
    if (lu_.dense.order > 0) {
      lu_.dense.solve_lower_transposed(a + lu_.block_begin());
      touched += lu_.dense.size() / kDenseSpeed;
    }
    for_nonzeros_down(a, lu_.num_logical, m, [&](int k) {
      const double yk = a[k];
      a[k] = 0.0;
      if (negligible(yk)) return;
      x[row_of_pivot[k]] = yk;
      list[count++] = row_of_pivot[k];
      entries.subtract(row[k], yk, a);
      touched += row[k].size();
    });
    count = move_out(a, lu_.num_logical, row_of_pivot, x, list, count);
    touched += m;
    out.count = count > kListDensity * m ? WorkVector::kDense : count;
  }
  work_ += static_cast<double>(touched);
}

}  // namespace kelvo
