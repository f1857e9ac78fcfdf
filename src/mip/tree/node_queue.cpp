#include "mip/tree/node_queue.h"

namespace kelvo {

namespace {

/// -1, 0 or 1 by which of two numbers is smaller.
int compare(double a, double b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

}  // namespace

std::size_t NodeQueue::bytes_of(const Node& node) {
  std::size_t bytes = sizeof(Node) + node.path.bytes() + 4 * sizeof(int);
  if (node.basis != nullptr) bytes += node.basis->bytes() / 2;
  return bytes;
}

bool NodeQueue::before(Order order, int a, int b) const {
  const Node& first = nodes_[a];
  const Node& second = nodes_[b];
  int decided = 0;
  if (order == kByRule) {
    switch (rule_) {
      case NodeSelection::depth_first:
        decided = second.depth() - first.depth();
        break;
      case NodeSelection::best_bound:
        break;
      case NodeSelection::best_estimate:
        decided = compare(first.estimate, second.estimate);
        break;
      case NodeSelection::alternative_estimate:
        decided = compare(first.estimate + first.bound, second.estimate + second.bound);
        break;
    }
  }
  if (decided == 0) decided = compare(first.bound, second.bound);
  if (decided == 0) decided = compare(first.estimate, second.estimate);
  // Of equal nodes the younger one: it is likely to be close to what is hot.
  return decided != 0 ? decided < 0 : first.id > second.id;
}

void NodeQueue::place(Order order, int position, int slot) {
  heap(order)[position] = slot;
  position_[order][slot] = position;
}

void NodeQueue::sift_up(Order order, int position) {
  Vector<int>& heap_of = heap(order);
  const int slot = heap_of[position];
  while (position > 0) {
    const int parent = (position - 1) / 2;
    if (!before(order, slot, heap_of[parent])) break;
    place(order, position, heap_of[parent]);
    position = parent;
  }
  place(order, position, slot);
}

void NodeQueue::sift_down(Order order, int position) {
  Vector<int>& heap_of = heap(order);
  const int count = static_cast<int>(heap_of.size());
  const int slot = heap_of[position];
  for (;;) {
    int child = 2 * position + 1;
    if (child >= count) break;
    if (child + 1 < count && before(order, heap_of[child + 1], heap_of[child])) ++child;
    if (!before(order, heap_of[child], slot)) break;
    place(order, position, heap_of[child]);
    position = child;
  }
  place(order, position, slot);
}

void NodeQueue::remove_from(Order order, int position) {
  Vector<int>& heap_of = heap(order);
  const int last = heap_of.back();
  heap_of.pop_back();
  if (position == static_cast<int>(heap_of.size())) return;
  place(order, position, last);
  sift_up(order, position);
  sift_down(order, position_[order][last]);
}

void NodeQueue::insert(Node&& node) {
  // Memory first: from here on nothing throws.
  make_room(nodes_, 1);
  make_room(free_slots_, nodes_.size() + 1 - free_slots_.size());
  for (const Order order : {kByRule, kByBound}) {
    make_room(heap(order), 1);
    make_room(position_[order], 1);
  }
  int slot = static_cast<int>(nodes_.size());
  if (free_slots_.empty()) {
    nodes_.emplace_back();
    for (const Order order : {kByRule, kByBound}) position_[order].push_back(0);
  } else {
    slot = free_slots_.back();
    free_slots_.pop_back();
  }
  bytes_ += bytes_of(node);
  nodes_[slot] = std::move(node);
  for (const Order order : {kByRule, kByBound}) {
    heap(order).push_back(slot);
    sift_up(order, static_cast<int>(heap(order).size()) - 1);
  }
}

Node NodeQueue::take(int slot) {
  remove_from(kByRule, position_[kByRule][slot]);
  remove_from(kByBound, position_[kByBound][slot]);
  free_slots_.push_back(slot);
  bytes_ -= bytes_of(nodes_[slot]);
  return std::exchange(nodes_[slot], Node());
}

Node NodeQueue::take_first() {
  return take(by_rule_.front());
}

Node NodeQueue::take_best_bound() {
  return take(by_bound_.front());
}

int NodeQueue::prune(double cutoff) {
  int dropped = 0;
  for (std::size_t k = 0; k < by_bound_.size();) {
    const int slot = by_bound_[k];
    if (nodes_[slot].bound < cutoff) {
      ++k;
      continue;
    }
    by_bound_[k] = by_bound_.back();
    by_bound_.pop_back();
    free_slots_.push_back(slot);
    bytes_ -= bytes_of(nodes_[slot]);
    nodes_[slot] = Node();
    nodes_[slot].id = -1;
    ++dropped;
  }
  if (dropped == 0) return 0;
  by_rule_ = by_bound_;
  for (const Order order : {kByRule, kByBound}) {
    const int count = static_cast<int>(heap(order).size());
    for (int k = 0; k < count; ++k) position_[order][heap(order)[k]] = k;
    for (int k = count / 2 - 1; k >= 0; --k) sift_down(order, k);
  }
  return dropped;
}

}  // namespace kelvo
