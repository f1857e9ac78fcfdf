#include "lp/simplex/state/basic_values.h"

namespace kelvo {

BasicValues::BasicValues(const WorkingProgram& program, const Basis& basis)
    : value(basis.header.size(), 0.0),
      lower(basis.header.size(), 0.0),
      upper(basis.header.size(), 0.0),
      moves(static_cast<int>(basis.header.size())),
      program_(program),
      basis_(basis) {}

void BasicValues::compute(BasisInverse& inverse, WorkVector& rhs) {
  rhs.clear();
  rhs.count = WorkVector::kDense;
  const int num_vars = program_.problem.num_vars();
  for (int j = 0; j < num_vars; ++j) {
    const double x = basis_.value[j];
    if (!basis_.is_basic(j) && x != 0.0) program_.add_column(j, -x, rhs);
  }
  rhs.pack();
  inverse.factor().ftran(rhs, 1.0);
  std::copy(rhs.value.begin(), rhs.value.end(), value.begin());
  rhs.clear();
  moves.clear();
  validity_ = inverse.fresh() ? Validity::fresh : Validity::updated;
}

void BasicValues::move_along(const WorkVector& column, double step) {
  const int count = column.is_dense() ? column.size() : column.count;
  for (int k = 0; k < count; ++k) {
    const int p = column.is_dense() ? k : column.index[k];
    value[p] -= step * column.value[p];
  }
}

void BasicValues::refresh_all_bounds() {
  for (std::size_t p = 0; p < value.size(); ++p) refresh_bounds(static_cast<int>(p));
}

}  // namespace kelvo
