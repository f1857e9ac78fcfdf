// The symbolic part of a sparse solve.
#include "lp/factor/lu/solve.h"

namespace kelvo {
namespace {

/// Results expected to be denser than this are computed by the plain form.
constexpr double kSparseDensity = 0.1;
/// The sparse form runs when (m - s) * kSparseWeight * k < m^2, with s triangular pivots.
constexpr double kSparseWeight = 20.0;
/// The search gives up after this share of m pivots and entries.
constexpr double kReachShare = 0.25;
constexpr int kReachMinimum = 16;

}  // namespace

bool LuSolver::worth_sparse(int k, double expected) const {
  // With a dense block as the bulk of the factor nothing is sparse.
  if (k == WorkVector::kDense || expected > kSparseDensity || lu_.dense.order > 0) return false;
  const double m = lu_.num_factored;
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
  const long allowed = static_cast<long>(kReachShare * m) + kReachMinimum;
  long budget = allowed;
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
      stack[++depth] = child;
      resume[depth] = line[child].begin;
      if (budget < 0) {
        for (int s = 0; s <= depth; ++s) marked[stack[s]] = 0;
        for (int s = top; s < m; ++s) marked[out[s]] = 0;
        work_ += static_cast<double>(allowed);
        return -1;
      }
    }
  }
  work_ += static_cast<double>(allowed - budget);
  return top;
}

}  // namespace kelvo
