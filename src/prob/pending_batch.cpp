#include "prob/pending_batch.h"

#include "prob/data/quadratic_objective.h"
#include "prob/model/default_names.h"
#include "prob/model/model_edit.h"

namespace kelvo {
namespace {

/// A list shorter than this is never worth merging just because it grows.
constexpr std::size_t kLongList = 1u << 16;
/// Room for more rows or coefficients than this is given back when the batch is emptied.
constexpr std::size_t kRoomToKeep = 1u << 12;

}  // namespace

void PendingBatch::make_room_for_rows(const RowBlock& block, bool named) {
  make_room(rhs_, block.count);
  make_room(sense_, block.count);
  make_room(range_, block.count);
  make_room(start_, block.count);
  if (named) make_room_for_names(names_, block.names, block.count);
  if (block.begin == nullptr) return;
  make_room(columns_, block.entries);
  make_room(values_, block.entries);
}

void PendingBatch::add_rows(const RowBlock& block, bool named, int first_row) {
  const int base = num_row_entries() - (block.begin != nullptr ? block.begin[0] : 0);
  for (int k = 0; k < block.count; ++k) {
    const char sense = block.sense != nullptr ? block.sense[k] : 'E';
    rhs_.push_back(block.rhs != nullptr ? block.rhs[k] : 0.0);
    sense_.push_back(sense);
    range_.push_back(sense == 'R' && block.range != nullptr ? block.range[k] : 0.0);
    start_.push_back(block.begin != nullptr ? base + block.begin[k] : base);
  }
  if (named) append_names(names_, NameKind::row, first_row, block.names, block.count);
  if (block.begin == nullptr) return;
  columns_.insert(columns_.end(), block.columns + block.begin[0], block.columns + block.entries);
  values_.insert(values_.end(), block.values + block.begin[0], block.values + block.entries);
}

bool PendingBatch::is_full() const {
  const auto is_long = [](const Vector<Coefficient>& list) {
    return list.size() >= kLongList && list.size() == list.capacity();
  };
  return is_long(coefficients_) || is_long(quadratic_);
}

void PendingBatch::add_coefficients(const int* rows, const int* columns, const double* values,
                                    int count) {
  make_room(coefficients_, count);
  for (int k = 0; k < count; ++k) coefficients_.push_back({rows[k], columns[k], values[k]});
}

void PendingBatch::add_quadratic(int i, int j, double value) {
  quadratic_.push_back({i, j, value});
  if (i != j) quadratic_.push_back({j, i, value});
}

void PendingBatch::merge_into(Model& model) {
  if (!rhs_.empty()) {
    Vector<const char*> names;
    if (names_.present()) {
      names.reserve(names_.size());
      for (int k = 0; k < names_.size(); ++k) names.push_back(names_[k]);
    }
    RowBlock block;
    block.count = num_rows();
    block.rhs = rhs_.data();
    block.sense = sense_.data();
    block.range = range_.data();
    block.names = names.empty() ? nullptr : names.data();
    block.entries = num_row_entries();
    block.begin = start_.data();
    block.columns = columns_.data();
    block.values = values_.data();
    append_rows(model, block);
    clear_rows();
  }
  if (!quadratic_.empty()) {
    set_quadratic_coefficients(model.quadratic, quadratic_);
    quadratic_.clear();
  }
  if (!coefficients_.empty()) model.matrix.set_list(coefficients_, model.num_rows);
  clear();
}

void PendingBatch::clear_rows() noexcept {
  rhs_.clear();
  sense_.clear();
  range_.clear();
  names_.clear();
  start_.clear();
  columns_.clear();
  values_.clear();
}

void PendingBatch::clear() noexcept {
  const bool large =
      rhs_.capacity() + columns_.capacity() + coefficients_.capacity() + quadratic_.capacity() >
      kRoomToKeep;
  if (large) {
    *this = PendingBatch();
  } else {
    clear_rows();
    coefficients_.clear();
    quadratic_.clear();
  }
}

}  // namespace kelvo
