#include "lp/presolve/parallel_lines.h"

#include "base/random.h"
#include "lp/presolve/presolve_tolerances.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// Numbers that agree to this share may belong to multiples.
constexpr double kSimilar = 1e-10;

}  // namespace

ParallelLines::ParallelLines(PresolveLp& lp, bool rows, int least_count)
    : lp_(lp), rows_(rows), scattered_(rows ? lp.num_cols() : lp.num_rows(), 0.0) {
  Random random(1);
  Vector<double> keys(scattered_.size());
  for (double& key : keys) key = 0.5 + random.uniform();
  const int num_lines = rows ? lp.num_rows() : lp.num_cols();
  const Vector<char>& alive = rows ? lp.row_alive : lp.col_alive;
  lines_.reserve(num_lines);
  for (int line = 0; line < num_lines; ++line) {
    const int count = rows ? lp.matrix.row_count(line) : lp.matrix.col_count(line);
    if (!alive[line] || count < least_count) continue;
    int smallest = first(line);
    double sum = 0.0;
    for (int e = smallest; e >= 0; e = next(e)) {
      if (position(e) < position(smallest)) smallest = e;
      sum += keys[position(e)] * lp.matrix[e].value;
    }
    lines_.push_back({sum / lp.matrix[smallest].value, count, line});
    lp.work += count;
  }
  std::sort(lines_.begin(), lines_.end(), [](const Line& a, const Line& b) {
    if (a.count != b.count) return a.count < b.count;
    if (a.number != b.number) return a.number < b.number;
    return a.line < b.line;
  });
}

bool ParallelLines::similar(const Line& a, const Line& b) {
  return a.count == b.count &&
         std::fabs(a.number - b.number) <=
             kSimilar * std::max({1.0, std::fabs(a.number), std::fabs(b.number)});
}

void ParallelLines::scatter(int line) {
  for (int e = first(line); e >= 0; e = next(e)) {
    scattered_[position(e)] = lp_.matrix[e].value;
    places_.push_back(position(e));
  }
}

void ParallelLines::gather(int) {
  for (const int place : places_) scattered_[place] = 0.0;
  places_.clear();
}

double ParallelLines::compare(int other) {
  double ratio = 0.0;
  for (int e = first(other); e >= 0; e = next(e)) {
    const double kept = scattered_[position(e)];
    const double value = lp_.matrix[e].value;
    ++lp_.work;
    if (kept == 0.0) return 0.0;
    if (ratio == 0.0) ratio = value / kept;
    if (std::fabs(value - ratio * kept) > tol::kParallel * std::fabs(value)) return 0.0;
  }
  return ratio;
}

}  // namespace kelvo
