#include "lp/simplex/primal/primal_sections.h"

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

// Length of the candidate list by number of rows.
struct ListSize {
  int rows;
  int size;
};
constexpr ListSize kListSizes[] = {{100, 5},   {500, 10},   {1000, 15},
                                   {5000, 20}, {10000, 25}, {100000, 30}};
constexpr int kListSizeOtherwise = 35;
// A section is this share of the variables, but not fewer than the minimum.
constexpr int kSections = 16;
constexpr int kSmallestSection = 100;
// The list is filled up when its best member has lost this share of what the best one had.
constexpr double kStillGood = 0.25;
// Free variables should become basic early: their merit counts this many times.
constexpr double kFreeBonus = 1e6;

}  // namespace

void SectionPricer::begin(const Vector<double>& weight) {
  weight_ = weight.data();
  list_size_ = state_.run.settings.price_limit;
  if (list_size_ <= 0) {
    list_size_ = kListSizeOtherwise;
    for (const ListSize& row : kListSizes) {
      if (state_.m >= row.rows) continue;
      list_size_ = row.size;
      break;
    }
  }
  section_ = std::max(kSmallestSection, state_.num_vars / kSections);
  cursor_ = 0;
  list_.clear();
  list_.reserve(list_size_);
  listed_.assign(state_.num_vars, 0);
  banned_.clear();
  good_ = 0.0;
}

void SectionPricer::rebuild(double tolerance) {
  tolerance_ = tolerance;
  for (const Candidate& c : list_) listed_[c.variable] = 0;
  for (int j : banned_) listed_[j] = 0;
  list_.clear();
  banned_.clear();
}

void SectionPricer::ban(int variable) {
  for (std::size_t k = 0; k < list_.size(); ++k) {
    if (list_[k].variable != variable) continue;
    list_[k] = list_.back();
    list_.pop_back();
    break;
  }
  listed_[variable] = 2;
  banned_.push_back(variable);
}

double SectionPricer::evaluate(int j) {
  const int move = state_.basis.move[j];
  if (move == Basis::kStays) return 0.0;
  const double* y = state_.duals.row_duals.data();
  double d = state_.program.cost[j];
  if (j >= state_.n) {
    d -= y[j - state_.n];
  } else {
    const SparseMatrix& columns = state_.problem.columns;
    const int end = columns.start[j + 1];
    for (int k = columns.start[j]; k < end; ++k) d -= y[columns.index[k]] * columns.value[k];
    work_ += end - columns.start[j];
  }
  state_.duals.reduced_cost[j] = d;
  const bool free = move == Basis::kAnywhere;
  const double violation = free ? std::fabs(d) : -d * move;
  if (violation <= tolerance_) return 0.0;
  return (free ? kFreeBonus : 1.0) * violation * violation / weight_[j];
}

void SectionPricer::review() {
  std::size_t kept = 0;
  for (const Candidate& c : list_) {
    const double merit = evaluate(c.variable);
    if (merit > 0.0) {
      list_[kept++] = {c.variable, merit};
    } else {
      listed_[c.variable] = 0;
    }
  }
  list_.resize(kept);
}

// Candidates of the next section join the list; when it is full the worst member gives way.
void SectionPricer::scan_section() {
  const int end = std::min(cursor_ + section_, state_.num_vars);
  const auto better = [](const Candidate& a, const Candidate& b) { return a.merit > b.merit; };
  for (int j = cursor_; j < end; ++j) {
    if (listed_[j] != 0) continue;
    const double merit = evaluate(j);
    if (merit <= 0.0) continue;
    if (static_cast<int>(list_.size()) < list_size_) {
      list_.push_back({j, merit});
      listed_[j] = 1;
      continue;
    }
    const auto worst = std::max_element(list_.begin(), list_.end(), better);
    if (merit <= worst->merit) continue;
    listed_[worst->variable] = 0;
    *worst = {j, merit};
    listed_[j] = 1;
  }
  work_ += end - cursor_;
  cursor_ = end == state_.num_vars ? 0 : end;
}

int SectionPricer::choose() {
  review();
  int left = state_.num_vars;
  const auto best_of = [this] {
    const Candidate* best = nullptr;
    for (const Candidate& c : list_) {
      if (best == nullptr || c.merit > best->merit) best = &c;
    }
    return best;
  };
  const Candidate* best = best_of();
  if (best == nullptr || best->merit < good_) {
    // One section at least; more only while nothing was found.
    do {
      const int before = cursor_;
      scan_section();
      left -= (cursor_ == 0 ? state_.num_vars : cursor_) - before;
    } while (list_.empty() && left > 0);
    best = best_of();
    if (best == nullptr) return -1;
    good_ = kStillGood * best->merit;
  }
  return best->variable;
}

}  // namespace kelvo
