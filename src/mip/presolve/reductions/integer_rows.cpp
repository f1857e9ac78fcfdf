// Rows over integer columns in units of their greatest common divisor.
//
// With all entries multiples of g, the row is divided by g and its limits are rounded inwards. An
// equation whose right-hand side is then not whole admits no point.
//
// Columns whose entries are small beside the others may say nothing: let the entries of the large
// ones be multiples of g, and let the activity of the small ones move in an interval of length s
// from l on. With  U - l = q g + r,  0 <= r < g,  and s <= r the row  T + S <= U  is  T <= q g: for
// T <= q g the small ones fit, whatever they are, and for T >= (q + 1) g they never do. The small
// ones, which may be continuous, leave the row.
#include "lp/presolve/presolve_tolerances.h"
#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// Greater whole numbers are not told from their neighbours after a few operations.
constexpr double kMostUnits = 1e9;
// Distance of a quotient from a whole number that is rounding, relative.
constexpr double kQuotient = 1e-12;
// Multiples of the smallest entry that are tried as the unit: entries like 0.75 and 1.5, or thirds.
constexpr int kMostParts = 12;

double gcd_of(double a, double b) {
  while (b > 0.5) {
    const double rest = std::fmod(a, b);
    a = b;
    b = rest;
  }
  return a;
}

bool is_whole_number(double v) {
  return std::fabs(v) <= kMostUnits && std::fabs(v - std::round(v)) <= kQuotient * std::fabs(v);
}

class IntegerRow {
 public:
  explicit IntegerRow(PresolveMip& mip) : mip_(mip), lp_(mip.lp) {}
  void look_at(int i);

 private:
  /// The greatest unit of which the first `count` entries are multiples; 0 when there is none.
  double common_unit(std::size_t count) const;
  /// True when the row changed.
  bool divide(int i, double unit);
  bool drop_small_entries(int i);
  void drop(int i, std::size_t first_small, double unit, double excess, double sign);

  PresolveMip& mip_;
  PresolveLp& lp_;
  struct Entry {
    double size;
    int place;
    bool integer;
  };
  /// By how much a limit may miss a multiple of the unit, in units, and still be that multiple: a
  /// row may be violated by its tolerance.
  double slack(double unit) const {
    return std::max(tol::kSame, lp_.settings.feasibility_tolerance / unit);
  }
  // Units so small against the tolerance say nothing.
  static constexpr double kMostSlack = 0.1;

  Vector<Entry> entries_;  // of the row at hand, the largest first
};

double IntegerRow::common_unit(std::size_t count) const {
  const double smallest = entries_[count - 1].size;
  for (int parts = 1; parts <= kMostParts; ++parts) {
    const double unit = smallest / parts;
    double divisor = 0.0;
    std::size_t k = 0;
    for (; k < count && is_whole_number(entries_[k].size / unit); ++k) {
      divisor = gcd_of(std::round(entries_[k].size / unit), divisor);
    }
    if (k == count) return unit * divisor;
  }
  return 0.0;
}

bool IntegerRow::divide(int i, double unit) {
  const double old_low = lp_.row_lower[i] / unit, old_high = lp_.row_upper[i] / unit;
  const auto is_large = [](double v) { return std::isfinite(v) && std::fabs(v) > kMostUnits; };
  const double rounding = slack(unit);
  if (is_large(old_low) || is_large(old_high) || rounding > kMostSlack) return false;
  const double low = std::ceil(old_low - rounding), high = std::floor(old_high + rounding);
  if (low > high) {
    const bool equation = lp_.is_equation(i);
    lp_.fail(equation ? FindingKind::integer_equation : FindingKind::implied_bounds, i);
    return false;
  }
  const bool tighter = low > old_low + rounding || high < old_high - rounding;
  if (!tighter && unit == 1.0) return false;
  if (unit != 1.0) {
    for (const Entry& entry : entries_) {
      lp_.change_entry(entry.place, std::round(lp_.matrix[entry.place].value / unit));
    }
  }
  lp_.stats.coefficients_changed += tighter;
  lp_.change_limits(i, low, high);
  return true;
}

void IntegerRow::drop(int i, std::size_t first_small, double unit, double excess, double sign) {
  for (std::size_t k = first_small; k < entries_.size(); ++k) {
    lp_.change_entry(entries_[k].place, 0.0);
    ++lp_.stats.coefficients_changed;
  }
  const double limit = unit * std::floor(excess / unit + slack(unit));
  lp_.change_limits(i, sign > 0.0 ? -kInf : -limit, sign > 0.0 ? limit : kInf);
}

bool IntegerRow::drop_small_entries(int i) {
  const double low = lp_.row_lower[i], high = lp_.row_upper[i];
  if ((low == -kInf) == (high == kInf)) return false;
  const double sign = low == -kInf ? 1.0 : -1.0;
  const double limit = sign > 0.0 ? high : -low;
  double least = 0.0, spread = 0.0;  // of the activity of the small ones, times sign
  for (std::size_t k = entries_.size() - 1; k > 0; --k) {
    const MatrixEntry& entry = lp_.matrix[entries_[k].place];
    const double lower = lp_.lower[entry.col], upper = lp_.upper[entry.col];
    if (lower == -kInf || upper == kInf) return false;
    const double a = sign * entry.value;
    least += a * (a > 0.0 ? lower : upper);
    spread += entries_[k].size * (upper - lower);
    if (spread >= entries_[0].size) return false;
    if (!entries_[k - 1].integer || spread >= entries_[k - 1].size) continue;
    for (std::size_t large = 0; large < k; ++large) {
      if (!entries_[large].integer) return false;
    }
    const double unit = common_unit(k);
    lp_.work += static_cast<std::int64_t>(k);
    const double excess = limit - least;
    if (unit == 0.0 || slack(unit) > kMostSlack || std::fabs(excess) > kMostUnits * unit) continue;
    const double rest = excess - unit * std::floor(excess / unit + slack(unit));
    if (spread > rest + tol::kSame * unit) continue;
    drop(i, k, unit, excess, sign);
    return true;
  }
  return false;
}

void IntegerRow::look_at(int i) {
  entries_.clear();
  bool all_integer = true;
  lp_.work += lp_.matrix.row_count(i);
  for (int e = lp_.matrix.row_first(i); e >= 0; e = lp_.matrix[e].row_next) {
    const bool integer = lp_.is_integer(lp_.matrix[e].col);
    all_integer = all_integer && integer;
    entries_.push_back({std::fabs(lp_.matrix[e].value), e, integer});
  }
  std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
    return a.size != b.size ? a.size > b.size : a.place < b.place;
  });
  if (entries_.size() < 2) return;
  if (all_integer) {
    const double unit = common_unit(entries_.size());
    if (unit > 0.0 && divide(i, unit)) return;  // it comes again
  }
  if (!mip_.ended()) drop_small_entries(i);
}

}  // namespace

void tidy_integer_rows(PresolveMip& mip, int since) {
  PresolveLp& lp = mip.lp;
  if (mip.settings.coefficient_reduction == 0) return;
  IntegerRow row(mip);
  for (int i = 0; i < lp.num_rows() && !mip.ended(); ++i) {
    if (!lp.row_alive[i] || !lp.row_list.changed_since(i, since)) continue;
    row.look_at(i);
    lp.poll();
  }
}

}  // namespace kelvo
