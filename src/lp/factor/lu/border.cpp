#include "lp/factor/lu/border.h"

#include <cmath>
#include <new>

namespace kelvo {
namespace {

/// Calls `action` for every array that has an entry for each pivot, row or position.
template <class Action>
void for_each_pivot_array(LuFactors& lu, Action action) {
  for (Vector<int>* array : {&lu.row_of_pivot, &lu.position_of_pivot, &lu.pivot_of_row,
                             &lu.pivot_of_position, &lu.place, &lu.u_row_limit}) {
    action(*array);
  }
  for (Vector<double>* array : {&lu.diagonal, &lu.inverse_diagonal}) action(*array);
  for (Vector<Span>* array : {&lu.l_column, &lu.l_row, &lu.u_column, &lu.u_row}) action(*array);
}

/// Appends a pivot that is alone in its row and column of L and U.
void add_unit_pivot(LuFactors& lu) {
  const int k = lu.m++;
  for (Vector<int>* array :
       {&lu.row_of_pivot, &lu.position_of_pivot, &lu.pivot_of_row, &lu.pivot_of_position}) {
    array->push_back(k);
  }
  for (Vector<double>* array : {&lu.diagonal, &lu.inverse_diagonal}) array->push_back(1.0);
  for (Vector<Span>* array : {&lu.l_column, &lu.l_row, &lu.u_column, &lu.u_row}) {
    array->push_back(Span{});
  }
  lu.u_row_limit.push_back(0);
  lu.place.push_back(lu.sequence_size);
  lu.sequence[lu.sequence_size++] = k;
}

/// Stores the multipliers that are in y as the eta of a row and clears y.
void store_multipliers(LuFactors& lu, WorkVector& y, int target) {
  y.pack(lu.m);
  lu.etas.make_room(y.count);
  const int begin = lu.etas.used;
  for (int k = 0; k < y.count; ++k) {
    lu.etas.index[begin + k] = y.index[k];
    lu.etas.value[begin + k] = y.value[y.index[k]];
  }
  lu.etas.used += y.count;
  y.clear();
  lu.eta.push_back({begin, lu.etas.used});
  lu.eta_target.push_back(target);
}

}  // namespace

void add_border(LuFactors& lu, LuSolver& solver, const SparseMatrix& rows, const int* positions,
                LuJournal* journal) {
  const int order = lu.m, used = lu.etas.used, more = rows.num_major;
  const std::size_t etas = lu.eta.size();
  for_each_pivot_array(lu, [&](auto& array) { make_room(array, more); });
  make_room(lu.eta, more);
  make_room(lu.eta_target, more);
  if (lu.sequence_size + more > static_cast<int>(lu.sequence.size())) {
    lu.sequence.resize(lu.sequence_size + more);
  }
  if (journal != nullptr) make_room(journal->updates, 1);
  WorkVector& y = solver.inner(0);
  try {
    for (int i = 0; i < more; ++i) {
      for (int e = rows.start[i]; e < rows.start[i + 1]; ++e) {
        y.insert(lu.pivot_of_position[positions[e]], rows.value[e]);
      }
      solver.solve_u_transposed(y, 0.0);
      store_multipliers(lu, y, order + i);
    }
  } catch (const std::bad_alloc&) {
    y.clear();
    lu.etas.used = used;
    lu.eta.resize(etas);
    lu.eta_target.resize(etas);
    throw;
  }
  if (journal != nullptr) journal->open_border(lu, used);
  for (int i = 0; i < more; ++i) add_unit_pivot(lu);
}

void remove_border(LuFactors& lu, int order) {
  lu.sequence_size -= lu.m - order;
  for_each_pivot_array(lu, [&](auto& array) { array.resize(order); });
  lu.m = order;
}

}  // namespace kelvo
