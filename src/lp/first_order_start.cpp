#include "lp/first_order_start.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

#include "lp/independent_columns.h"
#include "lp/model_to_lp.h"

namespace kelvo {

namespace {

// The first turn comes when the run has done the work of so many first-order iterations, the next
// ones when it has done this many times as much as at the turn before.
constexpr double kFirstTurn = 1500.0;
constexpr double kTurnGrowth = 4.0;
// Iterations after which the pace is judged for the first time.
constexpr int kFirstTrial = 400;
// A first-order iteration streams through memory where the simplex method jumps: its work takes
// this share of the time.
constexpr double kStreamingShare = 0.3;
// A turn goes on while its end is expected within so many times the iterations made.
constexpr double kPatience = 4.0;
// Errors of a point that is near enough to an optimal basis.
constexpr double kTolerance = 1e-5;
// A variable this near to its bound is taken to be there, relative to the numbers.
constexpr double kRoom = 1e-5;

/// Chooses basic variables for a point.
class BasisOfPoint {
 public:
  BasisOfPoint(const LpProblem& lp, const FirstOrderPoint& point) : lp_(lp) {
    place_.assign(lp.num_vars(), 0.0);
    std::copy(point.x.begin(), point.x.end(), place_.begin());
    for (int i = 0; i < lp.num_rows; ++i) {
      const int v = lp.num_cols + i;
      double activity = 0.0;
      for (int k = lp.rows.start[i]; k < lp.rows.start[i + 1]; ++k) {
        activity += lp.rows.value[k] * point.x[lp.rows.index[k]];
      }
      place_[v] = std::clamp(-activity, lp.lower[v], std::max(lp.lower[v], lp.upper[v]));
    }
  }

  void give(WorkingLp& working) {
    const int size = lp_.num_vars();
    Vector<double> rooms(size, 0.0);
    for (int v = 0; v < size; ++v) {
      if (lp_.lower[v] < lp_.upper[v]) rooms[v] = room(v);
    }
    const Vector<char> basic = choose_independent(lp_, candidates(rooms));
    Vector<int> status(size);
    for (int v = 0; v < size; ++v) {
      status[v] = basic[v] ? kBasic : rooms[v] > kRoom ? kFreeSuper : nearer_bound(v);
      place_[v] *= working.scaling().variable_factor(v, lp_.num_cols);
    }
    working.simplex().set_basis(status, place_.data());
  }

 private:
  /// Distance from the nearer bound, relative to the numbers.
  double room(int v) const {
    const auto distance = [&](double bound) {
      return std::isfinite(bound) ? std::fabs(place_[v] - bound) / (1.0 + std::fabs(bound)) : kInf;
    };
    return std::min(distance(lp_.lower[v]), distance(lp_.upper[v]));
  }

  /// Those off their bounds, slacks first and then the farthest first.
  Vector<int> candidates(const Vector<double>& rooms) const {
    Vector<int> list;
    for (int v = 0; v < lp_.num_vars(); ++v) {
      if (rooms[v] > kRoom) list.push_back(v);
    }
    const auto is_slack = [&](int v) { return v >= lp_.num_cols; };
    std::stable_sort(list.begin(), list.end(), [&](int u, int v) {
      return is_slack(u) != is_slack(v) ? is_slack(u) : rooms[u] > rooms[v];
    });
    return list;
  }

  int nearer_bound(int v) const {
    const bool has_lower = std::isfinite(lp_.lower[v]), has_upper = std::isfinite(lp_.upper[v]);
    if (!has_lower && !has_upper) return kFreeSuper;
    if (!has_lower || !has_upper) return has_lower ? kAtLower : kAtUpper;
    return lp_.upper[v] - place_[v] < place_[v] - lp_.lower[v] ? kAtUpper : kAtLower;
  }

  const LpProblem& lp_;
  Vector<double> place_;
};

}  // namespace

FirstOrderStart::FirstOrderStart(const Model& model, StopCheck& stop)
    : model_(model), stop_(stop), trial_(kFirstTrial) {
  const double nonzeros = model.matrix.num_nonzeros();
  work_per_iteration_ =
      FirstOrderMethod::work_per_iteration(model.num_rows, model.num_cols, nonzeros);
  due_ = kFirstTurn * work_per_iteration_;
}

bool FirstOrderStart::take_turn() {
  try {
    return find_point();
  } catch (const std::bad_alloc&) {  // the run goes on without
    method_.reset();
    due_ = kInf;
    return false;
  }
}

bool FirstOrderStart::find_point() {
  if (method_ == nullptr) method_ = make_owned<FirstOrderMethod>(make_lp_problem(model_), stop_);
  bool found = false;
  bool promising = true;
  for (; !found && promising; trial_ *= 2) {
    found = method_->run(kTolerance, trial_ / 2);
    const double error_at_half = method_->best_error();
    found = found || method_->run(kTolerance, trial_);
    promising = stop_.check() == 0 && is_promising(error_at_half);
  }
  due_ *= kTurnGrowth;
  return found;
}

/// The pace of the last half of the iterations would lead to the end soon.
bool FirstOrderStart::is_promising(double error_at_half) const {
  const double iterations = method_->iterations();
  const double gain = std::log(error_at_half / method_->best_error());
  const double missing = std::log(method_->best_error() / kTolerance);
  if (!(missing <= 2.0 * kPatience * gain)) return false;
  const double total = iterations * (1.0 + 0.5 * missing / gain);
  return total * work_per_iteration_ * kStreamingShare <= due_;
}

void FirstOrderStart::give_basis(WorkingLp& working) {
  const Owned<FirstOrderMethod> method = std::move(method_);
  const FirstOrderPoint point = method->take_point();
  BasisOfPoint(method->problem(), point).give(working);
}

}  // namespace kelvo
