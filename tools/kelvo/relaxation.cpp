#include "relaxation.h"

#include <algorithm>
#include <vector>

namespace kelvo::command {
namespace {

constexpr const char* kWhat = "cannot drop the discrete parts";

/// The values that a semi-continuous column can take are 0 and those between its bounds; without
/// the gap its bounds reach to 0.
void widen_to_zero(Session& session) {
  const int count = KLVgetnumcols(session.env(), session.problem());
  if (count == 0) return;
  const auto n = static_cast<std::size_t>(count);
  std::vector<char> types(n);
  std::vector<double> lower(n), upper(n);
  session.check(KLVgetctype(session.env(), session.problem(), types.data(), 0, count - 1), kWhat);
  session.check(KLVgetlb(session.env(), session.problem(), lower.data(), 0, count - 1), kWhat);
  session.check(KLVgetub(session.env(), session.problem(), upper.data(), 0, count - 1), kWhat);
  std::vector<int> columns;
  std::vector<char> codes;
  std::vector<double> bounds;
  const auto change = [&](int column, char code, double bound) {
    columns.push_back(column);
    codes.push_back(code);
    bounds.push_back(bound);
  };
  for (int j = 0; j < count; ++j) {
    const auto at = static_cast<std::size_t>(j);
    if (types[at] != KLV_COLUMN_SEMI_CONTINUOUS && types[at] != KLV_COLUMN_SEMI_INTEGER) continue;
    change(j, KLV_BOUND_LOWER, std::min(lower[at], 0.0));
    change(j, KLV_BOUND_UPPER, std::max(upper[at], 0.0));
  }
  session.check(KLVchgbds(session.env(), session.problem(), static_cast<int>(columns.size()),
                          columns.data(), codes.data(), bounds.data()),
                kWhat);
}

/// The type that is left of a mixed-integer one, -1 of any other.
int relaxed_type(int type) {
  switch (type) {
    case KLV_PROBTYPE_MILP:
      return KLV_PROBTYPE_LP;
    case KLV_PROBTYPE_MIQP:
      return KLV_PROBTYPE_QP;
    case KLV_PROBTYPE_MIQCP:
      return KLV_PROBTYPE_QCP;
    default:
      return -1;
  }
}

}  // namespace

bool is_mixed_integer(const Session& session) {
  return relaxed_type(KLVgetprobtype(session.env(), session.problem())) >= 0;
}

void relax(Session& session) {
  if (!is_mixed_integer(session)) return;
  const int type = relaxed_type(KLVgetprobtype(session.env(), session.problem()));
  widen_to_zero(session);
  session.check(KLVchgprobtype(session.env(), session.problem(), type), kWhat);
}

}  // namespace kelvo::command
