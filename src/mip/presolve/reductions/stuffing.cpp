// Continuous columns that fill what the others leave of a row.
//
// The columns whose only entry is in the row  a x <= b, with c_j < 0 < a_j (or mirrored: c_j > 0 >
// a_j, x_j counted from its upper bound down), compete for the room that the rest leaves: they take
// it in the order of c_j / a_j, the best first. What the first ones can always have they get: x_j
// is at its upper bound when the room left by the greatest activity of the rest holds all columns
// up to x_j; when the room left by the least activity of the rest is used up before x_j, that stays
// at its lower bound. (Gamrath et al., 2015, as for dominated columns.)
#include "lp/presolve/presolve_tolerances.h"
#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

class Stuffing {
 public:
  explicit Stuffing(PresolveMip& mip) : mip_(mip), lp_(mip.lp) {}
  void look_at(int i);

 private:
  struct Competitor {
    double price;  // c_j / a_j, < 0
    double room;   // that the column can take
    int col;
    bool mirrored;
  };
  bool competes(int e, double sign) const;
  void fix(const Competitor& competitor, bool full);

  PresolveMip& mip_;
  PresolveLp& lp_;
  Vector<Competitor> competitors_;
};

bool Stuffing::competes(int e, double sign) const {
  const int j = lp_.matrix[e].col;
  const double a = sign * lp_.matrix[e].value;
  return lp_.matrix.col_count(j) == 1 && !lp_.is_integer(j) && !lp_.is_fixed(j) &&
         lp_.may_remove(j) && std::fabs(a) >= tol::kSmallPivot && lp_.cost[j] * a < 0.0 &&
         std::isfinite(a > 0.0 ? lp_.lower[j] : lp_.upper[j]);
}

void Stuffing::fix(const Competitor& competitor, bool full) {
  const int j = competitor.col;
  const bool to_upper = full != competitor.mirrored;
  lp_.fix_column(j, to_upper ? lp_.upper[j] : lp_.lower[j], to_upper ? kAtUpper : kAtLower);
}

void Stuffing::look_at(int i) {
  if ((lp_.row_lower[i] == -kInf) == (lp_.row_upper[i] == kInf)) return;
  const double sign = lp_.row_lower[i] == -kInf ? 1.0 : -1.0;
  const double limit = sign > 0.0 ? lp_.row_upper[i] : -lp_.row_lower[i];
  competitors_.clear();
  Activity rest;  // with the competitors at their least
  for (int e = lp_.matrix.row_first(i); e >= 0; e = lp_.matrix[e].row_next) {
    const int j = lp_.matrix[e].col;
    const double a = sign * lp_.matrix[e].value;
    if (!competes(e, sign)) {
      rest.add(a, lp_.lower[j], lp_.upper[j]);
      continue;
    }
    const double least = a > 0.0 ? lp_.lower[j] : lp_.upper[j];
    rest.add(a, least, least);
    const double room = std::fabs(a) * (lp_.upper[j] - lp_.lower[j]);
    competitors_.push_back({lp_.cost[j] / a, room, j, a < 0.0});
  }
  lp_.work += lp_.matrix.row_count(i);
  if (competitors_.empty()) return;
  std::sort(competitors_.begin(), competitors_.end(), [](const Competitor& a, const Competitor& b) {
    return a.price != b.price ? a.price < b.price : a.col < b.col;
  });
  const double surely = limit - rest.greatest() - rest.max_error;
  const double possibly = limit - rest.least() + rest.min_error;
  double taken = 0.0;
  for (const Competitor& competitor : competitors_) {
    const double before = taken;
    taken += competitor.room;
    if (taken <= surely) {
      fix(competitor, true);
    } else if (before >= possibly + tol::same_slack(limit)) {
      fix(competitor, false);
    }
  }
}

}  // namespace

void stuff_singletons(PresolveMip& mip, int since) {
  PresolveLp& lp = mip.lp;
  if (!mip.settings.lp.dual_reductions) return;
  Stuffing stuffing(mip);
  for (int i = 0; i < lp.num_rows() && !mip.ended(); ++i) {
    if (!lp.row_alive[i] || !lp.row_list.changed_since(i, since)) continue;
    stuffing.look_at(i);
    lp.poll();
  }
}

}  // namespace kelvo
