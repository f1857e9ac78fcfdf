#include "lp/simplex/dual/leaving_list.h"

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

// Length of a new list: long enough that lists are rare, short enough that a scan is cheap.
int target_length(int m) {
  return std::max(50, static_cast<int>(3.0 * std::sqrt(m)));
}

// A list that has grown beyond this many target lengths is made anew once the scans since the last
// time have cost as much as that.
constexpr int kLongList = 4;

// A merit and the product that the cutoff is compared with are rounded differently; the cutoff must
// not shut out the very position it was taken from.
constexpr double kCutoffSlack = 1.0 - 1e-12;

}  // namespace

LeavingList::LeavingList(SimplexState& state) : state_(state) {
  follow_shape();
}

void LeavingList::follow_shape() {
  m_ = state_.m;
  value_ = state_.basics.value.data();
  lower_ = state_.basics.lower.data();
  upper_ = state_.basics.upper.data();
  weight_ = state_.weights.dual.data();
  infeasibility_.resize(m_, 0.0);
  list_.resize(m_, 0);
  listed_.resize(m_, 0);
  merits_.resize(m_, 0.0);
  size_ = 0;
}

void LeavingList::rebuild() {
  tolerance_ = state_.run.primal_tolerance;
  banned_any_ = false;
  for (int p = 0; p < m_; ++p) {
    const double violation = std::max(lower_[p] - value_[p], value_[p] - upper_[p]);
    infeasibility_[p] = violation > tolerance_ ? violation * violation : 0.0;
  }
  relist();
}

void LeavingList::relist() {
  std::fill(listed_.begin(), listed_.end(), static_cast<unsigned char>(0));
  size_ = 0;
  int count = 0;
  for (int p = 0; p < m_; ++p) {
    if (infeasibility_[p] > 0.0) merits_[count++] = infeasibility_[p] / weight_[p];
  }
  const int target = target_length(m_);
  cutoff_ = 0.0;
  if (count > 2 * target) {
    std::nth_element(merits_.begin(), merits_.begin() + target, merits_.begin() + count,
                     [](double a, double b) { return a > b; });
    cutoff_ = merits_[target] * kCutoffSlack;
  }
  // Of those that are equal to the one at the cutoff a few are as good as all.
  const double above = cutoff_ / (kCutoffSlack * kCutoffSlack);
  int equal = 0;
  for (int p = 0; p < m_; ++p) {
    if (!(infeasibility_[p] > 0.0) || infeasibility_[p] < cutoff_ * weight_[p]) continue;
    if (cutoff_ > 0.0 && infeasibility_[p] <= above * weight_[p] && ++equal > target) continue;
    add(p);
  }
  scanned_ = 0;
}

int LeavingList::choose() {
  const int target = target_length(m_);
  if (size_ > kLongList * target && scanned_ > m_) relist();
  while (true) {
    scanned_ += size_;
    int best = -1;
    double best_square = 0.0;
    double best_weight = 1.0;
    int kept = 0;
    for (int s = 0; s < size_; ++s) {
      const int p = list_[s];
      const double square = infeasibility_[p];
      const double weight = weight_[p];
      if (square <= 0.0 || square < cutoff_ * weight) {
        listed_[p] = 0;
        continue;
      }
      list_[kept++] = p;
      if (square * best_weight > best_square * weight) {
        best = p;
        best_square = square;
        best_weight = weight;
      }
    }
    size_ = kept;
    if (best >= 0 || cutoff_ == 0.0) return best;
    relist();
  }
}

double LeavingList::sum_infeasibilities(int& count) const {
  double sum = 0.0;
  count = 0;
  for (int p = 0; p < m_; ++p) {
    if (infeasibility_[p] <= 0.0) continue;
    sum += std::sqrt(infeasibility_[p]);
    ++count;
  }
  return sum;
}

}  // namespace kelvo
