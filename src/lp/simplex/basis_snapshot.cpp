#include "lp/simplex/basis_snapshot.h"

#include <algorithm>
#include <new>

namespace kelvo {

BasisSnapshot::BasisSnapshot(const Vector<int>& status, const Vector<double>& values,
                             const Vector<double>& weights)
    : num_vars_(static_cast<int>(status.size())) {
  codes_.reset(static_cast<unsigned char*>(kelvo::allocate(std::max<std::size_t>(1, num_bytes()))));
  if (codes_ == nullptr) throw std::bad_alloc();
  std::fill_n(codes_.get(), num_bytes(), static_cast<unsigned char>(0));
  const auto extras = [this]() -> Extras& {
    if (extras_ == nullptr) extras_ = make_owned<Extras>();
    return *extras_;
  };
  for (int j = 0; j < num_vars_; ++j) {
    codes_.get()[j / kPerByte] |= static_cast<unsigned char>(status[j] << shift(j));
    if (status[j] == kFreeSuper && values[j] != 0.0) {
      extras().superbasic.push_back({j, values[j]});
    }
  }
  if (!weights.empty()) extras().weights.assign(weights.begin(), weights.end());
}

void BasisSnapshot::unpack(Vector<int>& statuses, Vector<double>& values) const {
  statuses.resize(num_vars_);
  for (int j = 0; j < num_vars_; ++j) statuses[j] = status(j);
  values.assign(num_vars_, 0.0);
  if (extras_ == nullptr) return;
  for (const Superbasic& s : extras_->superbasic) values[s.variable] = s.value;
}

const Vector<float>& BasisSnapshot::weights() const {
  static const Vector<float> none;
  return extras_ == nullptr ? none : extras_->weights;
}

std::size_t BasisSnapshot::bytes() const {
  std::size_t bytes = sizeof(*this) + num_bytes();
  if (extras_ != nullptr) {
    bytes += sizeof(Extras) + extras_->superbasic.capacity() * sizeof(Superbasic) +
             extras_->weights.capacity() * sizeof(float);
  }
  return bytes;
}

}  // namespace kelvo
