#include "lp/factor/lu_solve.h"

#include <cmath>

namespace kelvo {
namespace {

/// Results denser than this get no index list: a plain loop over them is quicker.
constexpr double kListDensity = 0.3;
/// Results expected to be denser than this are computed by the plain form.
constexpr double kSparseDensity = 0.1;
/// The sparse form runs when (m - s) * kSparseWeight * k < m^2.
constexpr double kSparseWeight = 20.0;
/// The search gives up after this share of m positions and entries.
constexpr double kReachShare = 0.25;
/// Stands for zero in a position that is listed already, so that it is not listed twice.
constexpr double kListedZero = 1e-100;

inline void subtract_line(const Span line, const EntryFile& file, double factor, double* x) {
  const int* index = file.index.data();
  const double* value = file.value.data();
  for (int e = line.begin; e < line.end; ++e) x[index[e]] -= value[e] * factor;
}

}  // namespace

void LuSolver::setup() {
  const int m = lu_.m;
  marked_.assign(m, 0);
  reach_.resize(m);
  stack_.resize(m);
  resume_.resize(m);
  zeros_.assign(m, 0.0);
  zeros_b_.assign(m, 0.0);
}

bool LuSolver::worth_sparse(int k, double expected) const {
  if (k == WorkVector::kDense || expected > kSparseDensity) return false;
  const double m = lu_.m;
  return (m - lu_.num_triangular) * kSparseWeight * k < m * m;
}

int LuSolver::reach(const WorkVector& x, const Vector<Span>& lines, const EntryFile& file) {
  const Span* line = lines.data();
  const int* index = file.index.data();
  char* marked = marked_.data();
  int* out = reach_.data();
  int* stack = stack_.data();
  int* resume = resume_.data();
  const int m = lu_.m;
  long budget = static_cast<long>(kReachShare * m) + 16;
  int top = m;
  for (int k = 0; k < x.count; ++k) {
    const int root = x.index[k];
    if (marked[root]) continue;
    marked[root] = 1;
    int depth = 0;
    stack[0] = root;
    resume[0] = line[root].begin;
    budget -= line[root].size() + 1;
    while (depth >= 0) {
      const int i = stack[depth];
      const int end = line[i].end;
      int e = resume[depth];
      int child = -1;
      while (e < end) {
        const int j = index[e++];
        if (marked[j]) continue;
        marked[j] = 1;
        if (line[j].size() == 0) {
          out[--top] = j;
          continue;
        }
        child = j;
        break;
      }
      if (child < 0) {
        out[--top] = i;
        --depth;
        continue;
      }
      resume[depth] = e;
      budget -= line[child].size() + 1;
      if (budget < 0) {
        for (int s = 0; s <= depth; ++s) marked[stack[s]] = 0;
        for (int s = top; s < m; ++s) marked[out[s]] = 0;
        marked[child] = 0;
        work_ += kReachShare * m;
        return -1;
      }
      stack[++depth] = child;
      resume[depth] = line[child].begin;
    }
  }
  work_ += static_cast<double>(static_cast<long>(kReachShare * m) + 16 - budget);
  return top;
}

void LuSolver::finish_plain(WorkVector& x) {
  x.count = WorkVector::kDense;
}

void LuSolver::solve_l(WorkVector& x, double expected) {
  if (lu_.l_pivots.empty()) return;
  double* a = x.value.data();
  if (worth_sparse(x.count, expected)) {
    const int top = reach(x, lu_.l_column, lu_.l_columns);
    if (top >= 0) {
      int count = 0;
      for (int k = top; k < lu_.m; ++k) {
        const int i = reach_[k];
        marked_[i] = 0;
        const double xi = a[i];
        if (std::fabs(xi) <= kDropTolerance) {
          a[i] = 0.0;
          continue;
        }
        x.index[count++] = i;
        const Span line = lu_.l_column[i];
        subtract_line(line, lu_.l_columns, xi, a);
        work_ += line.size();
      }
      x.count = count;
      return;
    }
  }
  for (const int i : lu_.l_pivots) {
    const double xi = a[i];
    if (xi == 0.0) continue;
    if (std::fabs(xi) <= kDropTolerance) {
      a[i] = 0.0;
      continue;
    }
    const Span line = lu_.l_column[i];
    subtract_line(line, lu_.l_columns, xi, a);
    work_ += line.size();
  }
  work_ += static_cast<double>(lu_.l_pivots.size());
  finish_plain(x);
}

void LuSolver::solve_etas(WorkVector& x) {
  double* a = x.value.data();
  const int* index = lu_.etas.index.data();
  const double* value = lu_.etas.value.data();
  const int updates = lu_.num_updates();
  for (int u = 0; u < updates; ++u) {
    const Span line = lu_.eta[u];
    double sum = 0.0;
    for (int e = line.begin; e < line.end; ++e) sum += value[e] * a[index[e]];
    if (sum == 0.0) continue;
    const int target = lu_.eta_target[u];
    const double old = a[target];
    const double now = old - sum;
    if (x.count >= 0 && old == 0.0) x.index[x.count++] = target;
    a[target] = std::fabs(now) <= kDropTolerance ? kListedZero : now;
  }
  work_ += lu_.etas.used + updates;
}

void LuSolver::solve_u(WorkVector& x, double expected) {
  const int m = lu_.m;
  double* a = x.value.data();
  double* y = zeros_.data();
  const int* position = lu_.position_of_row.data();
  const double* inverse = lu_.inverse_pivot.data();
  if (x.count == WorkVector::kDense && expected <= kSparseDensity) {
    // The L stage ran plainly; its result may be sparse all the same.
    int count = 0;
    for (int i = 0; i < m; ++i) {
      if (a[i] != 0.0) x.index[count++] = i;
    }
    x.count = count;
  }
  int count = 0;
  const int top = worth_sparse(x.count, expected) ? reach(x, lu_.u_column, lu_.u_columns) : -1;
  if (top >= 0) {
    for (int k = top; k < m; ++k) {
      const int i = reach_[k];
      marked_[i] = 0;
      const double xi = a[i] * inverse[i];
      a[i] = 0.0;
      if (std::fabs(xi) <= kDropTolerance) continue;
      y[position[i]] = xi;
      x.index[count++] = position[i];
      const Span line = lu_.u_column[i];
      subtract_line(line, lu_.u_columns, xi, a);
      work_ += line.size();
    }
    x.count = count;
    x.value.swap(zeros_);
    return;
  }
  for (int k = lu_.sequence_size - 1; k >= 0; --k) {
    const int i = lu_.sequence[k];
    if (i < 0 || a[i] == 0.0) continue;
    const double xi = a[i] * inverse[i];
    a[i] = 0.0;
    if (std::fabs(xi) <= kDropTolerance) continue;
    y[position[i]] = xi;
    x.index[count++] = position[i];
    const Span line = lu_.u_column[i];
    subtract_line(line, lu_.u_columns, xi, a);
    work_ += line.size();
  }
  work_ += m;
  x.count = count > kListDensity * m ? WorkVector::kDense : count;
  x.value.swap(zeros_);
}

void LuSolver::enter_rows(WorkVector& y) {
  const int* row = lu_.row_of_position.data();
  double* from = y.value.data();
  double* to = zeros_.data();
  if (y.count == WorkVector::kDense) {
    for (int p = 0; p < lu_.m; ++p) {
      to[row[p]] = from[p];
      from[p] = 0.0;
    }
  } else {
    for (int k = 0; k < y.count; ++k) {
      const int p = y.index[k];
      to[row[p]] = from[p];
      from[p] = 0.0;
      y.index[k] = row[p];
    }
  }
  y.value.swap(zeros_);
}

void LuSolver::solve_u_transposed(WorkVector& y, double expected) {
  const int m = lu_.m;
  double* a = y.value.data();
  const double* inverse = lu_.inverse_pivot.data();
  const int top = worth_sparse(y.count, expected) ? reach(y, lu_.u_row, lu_.u_rows) : -1;
  int count = 0;
  if (top >= 0) {
    for (int k = top; k < m; ++k) {
      const int i = reach_[k];
      marked_[i] = 0;
      const double yi = a[i] * inverse[i];
      if (std::fabs(yi) <= kDropTolerance) {
        a[i] = 0.0;
        continue;
      }
      a[i] = yi;
      y.index[count++] = i;
      const Span line = lu_.u_row[i];
      subtract_line(line, lu_.u_rows, yi, a);
      work_ += line.size();
    }
    y.count = count;
    return;
  }
  for (int k = 0; k < lu_.sequence_size; ++k) {
    const int i = lu_.sequence[k];
    if (i < 0 || a[i] == 0.0) continue;
    const double yi = a[i] * inverse[i];
    if (std::fabs(yi) <= kDropTolerance) {
      a[i] = 0.0;
      continue;
    }
    a[i] = yi;
    y.index[count++] = i;
    const Span line = lu_.u_row[i];
    subtract_line(line, lu_.u_rows, yi, a);
    work_ += line.size();
  }
  work_ += m;
  y.count = count > kListDensity * m ? WorkVector::kDense : count;
}

void LuSolver::solve_etas_transposed(WorkVector& y) {
  double* a = y.value.data();
  const int* index = lu_.etas.index.data();
  const double* value = lu_.etas.value.data();
  const int updates = lu_.num_updates();
  for (int u = updates - 1; u >= 0; --u) {
    const double factor = a[lu_.eta_target[u]];
    if (factor == 0.0) continue;
    const Span line = lu_.eta[u];
    if (y.count >= 0) {
      for (int e = line.begin; e < line.end; ++e) {
        const int i = index[e];
        const double old = a[i];
        const double now = old - value[e] * factor;
        if (old == 0.0) y.index[y.count++] = i;
        a[i] = std::fabs(now) <= kDropTolerance ? kListedZero : now;
      }
    } else {
      for (int e = line.begin; e < line.end; ++e) a[index[e]] -= value[e] * factor;
    }
    work_ += line.size();
  }
  work_ += updates;
}

void LuSolver::solve_l_transposed(WorkVector& y, double expected) {
  const int m = lu_.m;
  double* a = y.value.data();
  const bool listed = y.count != WorkVector::kDense;
  const int top = worth_sparse(y.count, expected) ? reach(y, lu_.l_row, lu_.l_rows) : -1;
  if (top >= 0) {
    int count = 0;
    for (int k = top; k < m; ++k) {
      const int i = reach_[k];
      marked_[i] = 0;
      const double yi = a[i];
      if (std::fabs(yi) <= kDropTolerance) {
        a[i] = 0.0;
        continue;
      }
      y.index[count++] = i;
      const Span line = lu_.l_row[i];
      subtract_line(line, lu_.l_rows, yi, a);
      work_ += line.size();
    }
    y.count = count;
    return;
  }
  if (lu_.l_row_order.empty() && listed) {
    y.pack();
    return;
  }
  for (auto it = lu_.l_row_order.rbegin(); it != lu_.l_row_order.rend(); ++it) {
    const double yi = a[*it];
    if (std::fabs(yi) <= kDropTolerance) continue;
    const Span line = lu_.l_row[*it];
    subtract_line(line, lu_.l_rows, yi, a);
    work_ += line.size();
  }
  work_ += m;
  y.count = WorkVector::kDense;
  y.pack();
  if (y.count > kListDensity * m) y.count = WorkVector::kDense;
}

}  // namespace kelvo
