#include "mip/domain/clause_store.h"

#include <algorithm>

namespace kelvo {
namespace {

/// Clauses of up to this length are kept for good.
constexpr int kShortClause = 3;
/// Activities are scaled down before they overflow.
constexpr double kLargestActivity = 1e100;

}  // namespace

int ClauseStore::add(const Vector<BoundLiteral>& literals, const LocalBounds& bounds) {
  const int length = static_cast<int>(literals.size());
  make_room(pool_, literals.size());
  if (free_.empty()) {
    make_room(clauses_, 1);
    make_room(watches_, 2);
    make_room(free_, clauses_.size() + 1);
    free_.push_back(end());
    clauses_.push_back({0, 0, 0.0});
    watches_.resize(watches_.size() + 2, {0.0, -1, -1});
  }
  const int clause = free_.back();
  free_.pop_back();
  const int start = static_cast<int>(pool_.size());
  pool_.insert(pool_.end(), literals.begin(), literals.end());
  clauses_[clause] = {start, length, increment_};
  // Literals that do not hold come first, then the latest.
  const auto since = [&](const BoundLiteral& literal) {
    return bounds.holds(literal) ? bounds.position_of(literal, bounds.size()) : bounds.size();
  };
  BoundLiteral* begin = pool_.data() + start;
  for (int place = 0; place < 2; ++place) {
    BoundLiteral* best = begin + place;
    for (BoundLiteral* literal = best + 1; literal != begin + length; ++literal) {
      if (since(*literal) > since(*best)) best = literal;
    }
    std::swap(begin[place], *best);
  }
  link(2 * clause);
  link(2 * clause + 1);
  ++size_;
  return clause;
}

void ClauseStore::link(int watch) {
  const BoundLiteral& literal = literals(watch >> 1)[watch & 1];
  Watch& node = watches_[watch];
  node.value = literal.value;
  node.next = head_[literal.bound];
  node.previous = -1;
  if (node.next >= 0) watches_[node.next].previous = watch;
  head_[literal.bound] = watch;
}

void ClauseStore::unlink(int watch) {
  const Watch& node = watches_[watch];
  if (node.next >= 0) watches_[node.next].previous = node.previous;
  if (node.previous >= 0) {
    watches_[node.previous].next = node.next;
  } else {
    head_[literals(watch >> 1)[watch & 1].bound] = node.next;
  }
}

void ClauseStore::move_watch(int watch, int k) {
  unlink(watch);
  BoundLiteral* begin = mutable_literals(watch >> 1);
  std::swap(begin[watch & 1], begin[k]);
  link(watch);
}

void ClauseStore::bump(int clause) {
  clauses_[clause].activity += increment_;
  if (clauses_[clause].activity < kLargestActivity) return;
  for (Clause& each : clauses_) each.activity /= kLargestActivity;
  increment_ /= kLargestActivity;
}

void ClauseStore::remove(int clause) {
  unlink(2 * clause);
  unlink(2 * clause + 1);
  unused_ += clauses_[clause].length;
  clauses_[clause].length = 0;
  free_.push_back(clause);
  --size_;
}

void ClauseStore::reduce(const LocalBounds& bounds) {
  Vector<char> is_reason(end(), 0);
  for (int p = 0; p < bounds.size(); ++p) {
    const Reason reason = bounds.change(p).reason;
    if (reason.kind == ReasonKind::kClause) is_reason[reason.index] = 1;
  }
  if (bounds.in_conflict() && bounds.conflict().reason.kind == ReasonKind::kClause) {
    is_reason[bounds.conflict().reason.index] = 1;
  }
  Vector<int> candidates;
  for (int c = 0; c < end(); ++c) {
    if (clauses_[c].length > kShortClause && !is_reason[c]) candidates.push_back(c);
  }
  std::sort(candidates.begin(), candidates.end(), [&](int a, int b) {
    return clauses_[a].activity != clauses_[b].activity
               ? clauses_[a].activity < clauses_[b].activity
               : a < b;
  });
  for (std::size_t k = 0; k < candidates.size() / 2; ++k) remove(candidates[k]);
  if (2 * unused_ > pool_.size()) compact();
}

void ClauseStore::compact() {
  Vector<BoundLiteral> pool;
  pool.reserve(pool_.size() - unused_);
  for (Clause& clause : clauses_) {
    const auto begin = pool_.begin() + clause.start;
    clause.start = static_cast<int>(pool.size());
    pool.insert(pool.end(), begin, begin + clause.length);
  }
  pool_.swap(pool);
  unused_ = 0;
}

}  // namespace kelvo
