#include "lp/presolve/reductions/parallel_lines.h"

#include "base/random.h"
#include "lp/presolve/presolve_tolerances.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// Numbers that agree to this share may belong to multiples.
constexpr double kSimilar = 1e-10;

}  // namespace

ParallelLines::ParallelLines(PresolveLp& lp, bool rows, int least_count)
    : lp_(lp),
      rows_(rows),
      least_count_(least_count),
      keys_(rows ? lp.num_cols() : lp.num_rows()),
      scattered_(keys_.size(), 0.0) {
  Random random(1);
  for (double& key : keys_) key = 0.5 + random.uniform();
}

void ParallelLines::update() {
  const int num_lines = static_cast<int>(alive().size());
  changed_.clear();
  for (int line = 0; line < num_lines; ++line) {
    if (!alive()[line] || count(line) < least_count_) continue;
    if (list().changed_since(line, moment_)) changed_.push_back({0.0, count(line), line});
  }
  number_lines();
  std::sort(changed_.begin(), changed_.end(), less);
  const auto is_old = [this](const Line& line) {
    return !alive()[line.line] || list().changed_since(line.line, moment_);
  };
  lines_.erase(std::remove_if(lines_.begin(), lines_.end(), is_old), lines_.end());
  merged_.resize(lines_.size() + changed_.size());
  std::merge(lines_.begin(), lines_.end(), changed_.begin(), changed_.end(), merged_.begin(), less);
  lines_.swap(merged_);
  moment_ = lp_.moment();
}

void ParallelLines::number_lines() {
  // Entries lie column by column in memory; all rows together are had in that order.
  if (rows_ && changed_.size() > alive().size() / 4) {
    number_rows_together();
    return;
  }
  for (Line& changed : changed_) {
    int smallest = first(changed.line);
    double sum = 0.0;
    for (int e = smallest; e >= 0; e = next(e)) {
      if (position(e) < position(smallest)) smallest = e;
      sum += keys_[position(e)] * lp_.matrix[e].value;
    }
    changed.number = sum / lp_.matrix[smallest].value;
    lp_.work += changed.count;
  }
}

void ParallelLines::number_rows_together() {
  struct Row {
    double sum = 0.0, leading = 0.0;
  };
  Vector<Row> sums(alive().size());
  for (int j = 0; j < lp_.num_cols(); ++j) {
    for (int e = lp_.matrix.col_first(j); e >= 0; e = lp_.matrix[e].col_next) {
      Row& row = sums[lp_.matrix[e].row];
      if (row.leading == 0.0) row.leading = lp_.matrix[e].value;
      row.sum += keys_[j] * lp_.matrix[e].value;
    }
  }
  for (Line& changed : changed_)
    changed.number = sums[changed.line].sum / sums[changed.line].leading;
  lp_.work += lp_.matrix.num_nonzeros();
}

bool ParallelLines::less(const Line& a, const Line& b) {
  if (a.count != b.count) return a.count < b.count;
  if (a.number != b.number) return a.number < b.number;
  return a.line < b.line;
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

void ParallelLines::gather() {
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
