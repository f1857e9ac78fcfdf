#include "net/simplex/pricing.h"

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

/// Goes round the entries.
class FirstEligible final : public NetworkPricing {
 public:
  void start(int) override { at_ = 0; }
  int select(const PricingView& view) override {
    for (int looked_at = 0; looked_at < view.count; ++looked_at) {
      const int entry = at_;
      at_ = at_ + 1 < view.count ? at_ + 1 : 0;
      if (view.reduced_cost(entry) < -view.tolerance) return entry;
    }
    return -1;
  }

 private:
  int at_ = 0;
};

struct Candidate {
  double reduced_cost;
  int entry;

  // Ties go to the lower number, so that every machine takes the same path.
  bool operator<(const Candidate& other) const {
    return reduced_cost != other.reduced_cost ? reduced_cost < other.reduced_cost
                                              : entry < other.entry;
  }
};

/// A list that keeps only what still improves.
class CandidateList {
 public:
  void clear() { list_.clear(); }
  bool empty() const { return list_.empty(); }
  int size() const { return static_cast<int>(list_.size()); }
  void add(const Candidate& candidate) { list_.push_back(candidate); }
  void reprice(const PricingView& view) {
    std::size_t kept = 0;
    for (const Candidate& old : list_) {
      const double reduced_cost = view.reduced_cost(old.entry);
      if (reduced_cost < -view.tolerance) list_[kept++] = {reduced_cost, old.entry};
    }
    list_.resize(kept);
  }
  /// Drops all but the best so many.
  void keep_best(int count) {
    if (size() <= count) return;
    std::nth_element(list_.begin(), list_.begin() + count, list_.end());
    list_.resize(count);
  }
  /// Takes the best one out; the list must not be empty.
  int take_best() {
    const auto best = std::min_element(list_.begin(), list_.end());
    const int entry = best->entry;
    *best = list_.back();
    list_.pop_back();
    return entry;
  }

 private:
  Vector<Candidate> list_;
};

/// Adds the improving ones of entries first..end-1.
void price_stretch(const PricingView& view, int first, int end, CandidateList& list) {
  for (int entry = first; entry < end; ++entry) {
    const double reduced_cost = view.reduced_cost(entry);
    if (reduced_cost < -view.tolerance) list.add({reduced_cost, entry});
  }
}

class BestOfList final : public NetworkPricing {
 public:
  void start(int) override {
    list_.clear();
    at_ = 0;
  }
  int select(const PricingView& view) override {
    list_.reprice(view);
    for (int looked_at = 0; list_.empty() && looked_at < view.count;) {
      const int end = std::min(at_ + kStretch, view.count);
      price_stretch(view, at_, end, list_);
      looked_at += end - at_;
      at_ = end < view.count ? end : 0;
    }
    return list_.empty() ? -1 : list_.take_best();
  }

 private:
  static constexpr int kStretch = 4096;

  CandidateList list_;
  int at_ = 0;
};

class BlockSearch final : public NetworkPricing {
 public:
  void start(int count) override {
    list_.clear();
    at_ = 0;
    const int root = static_cast<int>(std::sqrt(static_cast<double>(count)));
    smallest_block_ = std::max(root / 2, kSmallestBlock);
    largest_block_ = std::max(count / kBlocksAtLeast, smallest_block_);
    block_ = std::min(std::max(root, kSmallestBlock), largest_block_);
    pricing_work_ = pivot_work_ = 0;
    pivots_ = 0;
  }

  int select(const PricingView& view) override {
    list_.reprice(view);
    pricing_work_ += list_.size();
    for (int looked_at = 0; looked_at < view.count;) {
      const int end = std::min(at_ + block_, view.count);
      price_stretch(view, at_, end, list_);
      looked_at += end - at_;
      at_ = end < view.count ? end : 0;
      if (!list_.empty()) {
        pricing_work_ += looked_at;
        list_.keep_best(kListSize);
        return list_.take_best();
      }
    }
    return list_.empty() ? -1 : list_.take_best();
  }

  void pivot_done(std::int64_t work) override {
    pivot_work_ += work;
    if (++pivots_ < kPivotsPerReview) return;
    if (pivot_work_ > kOutOfBalance * pricing_work_) {
      block_ = std::min(2 * block_, largest_block_);
    } else if (pricing_work_ > kOutOfBalance * pivot_work_) {
      block_ = std::max(block_ / 2, smallest_block_);
    }
    pricing_work_ = pivot_work_ = 0;
    pivots_ = 0;
  }

 private:
  static constexpr int kSmallestBlock = 10;
  static constexpr int kBlocksAtLeast = 8;
  static constexpr int kListSize = 64;
  static constexpr int kPivotsPerReview = 500;
  static constexpr int kOutOfBalance = 2;

  CandidateList list_;
  int at_ = 0;
  int block_ = kSmallestBlock;
  int smallest_block_ = kSmallestBlock;
  int largest_block_ = kSmallestBlock;
  std::int64_t pricing_work_ = 0;  // since the last review
  std::int64_t pivot_work_ = 0;
  int pivots_ = 0;
};

}  // namespace

Owned<NetworkPricing> make_network_pricing(NetworkPricingRule rule) {
  switch (rule) {
    case NetworkPricingRule::first_eligible:
      return make_owned<FirstEligible>();
    case NetworkPricingRule::best_of_list:
      return make_owned<BestOfList>();
    case NetworkPricingRule::block_search:
      break;
  }
  return make_owned<BlockSearch>();
}

}  // namespace kelvo
