#include "mip/tree/branching/pseudocosts.h"

namespace kelvo {

void Pseudocosts::observe(int column, bool up, double gain, double distance) {
  const double per_unit = std::max(gain, 0.0) / distance;
  Side& side = sides_[up][column];
  side.sum += per_unit;
  ++side.count;
  total_[up] += per_unit;
  ++observations_[up];
}

double Pseudocosts::per_unit(int column, bool up) const {
  const Side& side = sides_[up][column];
  if (side.count > 0) return side.sum / side.count;
  return observations_[up] > 0 ? total_[up] / observations_[up] : 1.0;
}

double Pseudocosts::cutoff_rate(int column) const {
  const Side& down = sides_[0][column];
  const Side& up = sides_[1][column];
  const int cutoffs = down.cutoffs + up.cutoffs;
  const int branches = down.count + up.count + cutoffs;
  return branches == 0 ? 0.0 : static_cast<double>(cutoffs) / branches;
}

double branching_score(double down_gain, double up_gain) {
  constexpr double kLeastGain = 1e-6;  // so that one side without any gain does not hide the other
  return std::max(down_gain, kLeastGain) * std::max(up_gain, kLeastGain);
}

}  // namespace kelvo
