// The open nodes, in the order of the node-selection rule, and by bound.
#pragma once

#include <cstddef>

#include "mip/tree/node.h"

namespace kelvo {

class NodeQueue {
 public:
  explicit NodeQueue(NodeSelection rule) : rule_(rule) {}

  int size() const { return static_cast<int>(by_rule_.size()); }
  bool empty() const { return by_rule_.empty(); }

  void insert(Node&& node);
  /// Removes the first node by the rule. Not of an empty queue.
  Node take_first();
  /// Removes the node with the least bound.
  Node take_best_bound();
  /// The first node by the rule.
  const Node& first() const { return nodes_[by_rule_.front()]; }
  /// The least bound; kNoValue when empty.
  double best_bound() const {
    return by_bound_.empty() ? kNoValue : nodes_[by_bound_.front()].bound;
  }
  /// Drops the nodes whose bound is not below the cutoff; returns how many.
  int prune(double cutoff);
  /// Bytes of the nodes, their branches and snapshots. A snapshot that two children share counts
  /// half for each.
  std::size_t bytes() const { return bytes_; }

  /// For orders that need every node: calls see(node).
  template <class See>
  void for_each(See see) const {
    for (const int slot : by_rule_) see(nodes_[slot]);
  }

 private:
  /// Two heaps over the same slots, so that a node can leave by either order.
  enum Order { kByRule, kByBound };

  bool before(Order order, int a, int b) const;
  Vector<int>& heap(Order order) { return order == kByRule ? by_rule_ : by_bound_; }
  void place(Order order, int position, int slot);
  void sift_up(Order order, int position);
  void sift_down(Order order, int position);
  void remove_from(Order order, int position);
  Node take(int slot);
  static std::size_t bytes_of(const Node& node);

  const NodeSelection rule_;
  Vector<Node> nodes_;  // by slot; free ones are empty
  Vector<int> free_slots_;
  Vector<int> by_rule_;      // heap of slots
  Vector<int> by_bound_;     // heap of slots
  Vector<int> position_[2];  // [slots] place in each heap
  std::size_t bytes_ = 0;
};

}  // namespace kelvo
