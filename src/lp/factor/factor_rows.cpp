// Rows that join and leave the basis matrix with their logicals basic.
#include <new>

#include "lp/factor/basis_factor_impl.h"
#include "lp/factor/lu/border.h"

namespace kelvo {
namespace {

/// Deleted lines cost work in every solve. Beyond this share of the order they must go.
constexpr double kMaxDeletedShare = 0.5;

}  // namespace

void BasisFactor::Impl::setup_work_arrays(int order) {
  solver.setup(order);
  spike.setup(order);
  row_eta.setup(order);
  if (!row_map.active()) return;
  for (WorkVector& x : inside) {
    if (x.size() < order) x.setup(order);
  }
}

bool BasisFactor::Impl::add_rows(const SparseMatrix& rows) {
  if (!valid) return false;
  const int more = rows.num_major;
  try {
    row_map.prepare(more);
    position_map.prepare(more);
    setup_work_arrays(lu.m + more);
    const int* positions = rows.index.data();
    if (position_map.active()) {
      inner_positions.resize(rows.index.size());
      for (std::size_t e = 0; e < rows.index.size(); ++e) {
        inner_positions[e] = position_map.inner(rows.index[e]);
      }
      positions = inner_positions.data();
    }
    add_border(lu, solver, rows, positions, marked() ? &journal : nullptr);
  } catch (const std::bad_alloc&) {
    return false;
  }
  row_map.append(more);
  position_map.append(more);
  // The bordering is not part of an iteration.
  update_work.at_update = update_work.since;
  update_work.pays = false;
  return true;
}

bool BasisFactor::Impl::delete_rows(const Vector<int>& rows, const Vector<int>& positions) {
  const double deleted = row_map.deleted() + static_cast<double>(rows.size());
  if (!valid || marked() || deleted > kMaxDeletedShare * lu.m) return false;
  const bool first = !row_map.active();
  try {
    row_map.activate(lu.m);
    position_map.activate(lu.m);
    setup_work_arrays(lu.m);
  } catch (const std::bad_alloc&) {
    if (first) clear_maps();
    return false;
  }
  row_map.remove(rows);
  position_map.remove(positions);
  return true;
}

void BasisFactor::Impl::clear_maps() {
  row_map.clear();
  position_map.clear();
}

}  // namespace kelvo
