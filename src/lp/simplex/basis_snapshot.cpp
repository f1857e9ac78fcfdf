#include "lp/simplex/basis_snapshot.h"

namespace kelvo {

BasisSnapshot::BasisSnapshot(const Vector<int>& status, const Vector<double>& values,
                             const Vector<double>& weights)
    : num_vars_(static_cast<int>(status.size())),
      codes_((status.size() + kPerByte - 1) / kPerByte, 0),
      weights_(weights.begin(), weights.end()) {
  for (int j = 0; j < num_vars_; ++j) {
    codes_[j / kPerByte] |= static_cast<unsigned char>(status[j] << shift(j));
    if (status[j] == kFreeSuper && values[j] != 0.0) superbasic_.push_back({j, values[j]});
  }
}

void BasisSnapshot::unpack(Vector<int>& statuses, Vector<double>& values) const {
  statuses.resize(num_vars_);
  for (int j = 0; j < num_vars_; ++j) statuses[j] = status(j);
  values.assign(num_vars_, 0.0);
  for (const Superbasic& s : superbasic_) values[s.variable] = s.value;
}

std::size_t BasisSnapshot::bytes() const {
  return sizeof(*this) + codes_.capacity() + superbasic_.capacity() * sizeof(Superbasic) +
         weights_.capacity() * sizeof(float);
}

}  // namespace kelvo
