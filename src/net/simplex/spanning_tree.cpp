#include "net/simplex/spanning_tree.h"

#include <utility>

namespace kelvo {

void SpanningTree::make_star(int num_nodes) {
  root_ = num_nodes;
  node_.assign(num_nodes + 1, TreeNode{root_, -1, 1, 0, 0.0, 0.0});
  potential_.assign(num_nodes + 1, 0.0);
  next_.resize(num_nodes + 1);
  previous_.resize(num_nodes + 1);
  spare_node_.resize(num_nodes + 1);
  spare_potential_.resize(num_nodes + 1);
  for (int i = 0; i <= num_nodes; ++i) {
    node_[i].last = i;
    next_[i] = i < num_nodes ? i + 1 : 0;
    previous_[i] = i > 0 ? i - 1 : root_;
  }
  node_[root_] = {-1, -1, num_nodes + 1, previous_[root_], 0.0, 0.0};
}

void SpanningTree::link_from_parents() {
  const int n = root_;
  Vector<int> first_child(n + 1, -1);
  Vector<int> sibling(n + 1, -1);
  for (int i = n - 1; i >= 0; --i) {
    sibling[i] = first_child[node_[i].parent];
    first_child[node_[i].parent] = i;
  }
  for (TreeNode& node : node_) node.size = 1;
  int at = root_, before = root_;
  for (;;) {
    if (const int child = first_child[at]; child >= 0) {
      first_child[at] = sibling[child];
      next_[before] = child;
      previous_[child] = before;
      before = at = child;
      continue;
    }
    node_[at].last = before;
    if (at == root_) break;
    node_[node_[at].parent].size += node_[at].size;
    at = node_[at].parent;
  }
  next_[before] = root_;
  previous_[root_] = before;
}

/// Takes a subtree out of the list and out of the sizes below `join`.
void SpanningTree::cut(int top, int join) {
  const TreeNode& head = node_[top];
  const int last = head.last, before = previous_[top], after = next_[last];
  next_[before] = after;
  previous_[after] = before;
  for (int p = head.parent; p != join; p = node_[p].parent) node_[p].size -= head.size;
  for (int p = head.parent; p >= 0 && node_[p].last == last; p = node_[p].parent) {
    node_[p].last = before;
  }
}

/// Turns the path from `inner` up to `top` round; returns the last node of the subtree in its new
/// order. In that order each node of the path is followed by what remains of its old subtree: the
/// stretch before the path's next lower node, and the stretch behind that one's subtree.
int SpanningTree::turn(int top, int inner) {
  const int total = node_[top].size;
  int end = node_[inner].last;  // of the new order so far
  int below = inner;
  TreeNode lower = node_[inner];        // the path's node before, as it was
  int before_lower = previous_[inner];  // what preceded it, and what followed its subtree
  int behind_lower = next_[end];
  node_[inner].size = total;
  while (below != top) {
    const int at = lower.parent;
    const TreeNode old = node_[at];
    const int before = previous_[at];
    const bool has_rest = lower.last != old.last;
    const int behind = has_rest ? next_[old.last] : behind_lower;
    next_[end] = at;
    previous_[at] = end;
    end = before_lower;
    if (has_rest) {
      next_[before_lower] = behind_lower;
      previous_[behind_lower] = before_lower;
      end = old.last;
    }
    node_[at] = {below, lower.arc ^ 1, total - lower.size, old.last, lower.down, lower.up};
    below = at;
    lower = old;
    before_lower = before;
    behind_lower = behind;
  }
  for (int i = top; i != inner; i = node_[i].parent) node_[i].last = end;
  node_[inner].last = end;
  return end;
}

void SpanningTree::rehang(int top, int inner, int outer, int join) {
  const int total = node_[top].size;
  cut(top, join);
  const int end = turn(top, inner);
  const int after = next_[outer];
  next_[outer] = inner;
  previous_[inner] = outer;
  next_[end] = after;
  previous_[after] = end;
  node_[inner].parent = outer;
  for (int p = outer; p != join; p = node_[p].parent) node_[p].size += total;
  for (int p = outer; p >= 0 && node_[p].last == outer; p = node_[p].parent) node_[p].last = end;
}

int SpanningTree::shift_potentials(int top, double amount) {
  int count = node_[top].size;
  int at = top;
  if (2 * std::int64_t{count} > root_ + 1) {
    at = next_[node_[top].last];
    count = root_ + 1 - count;
    amount = -amount;
  }
  for (int k = 0; k < count; ++k) {
    potential_[at] += amount;
    at = next_[at];
  }
  return count;
}

void SpanningTree::renumber(Vector<int>& new_number) noexcept {
  const int n = root_;
  int at = next_[root_];
  for (int k = 0; k < n; ++k) {
    new_number[at] = k;
    at = next_[at];
  }
  new_number[root_] = root_;
  for (int i = 0; i <= n; ++i) {
    TreeNode& moved = spare_node_[new_number[i]];
    moved = node_[i];
    if (i < n) moved.parent = new_number[moved.parent];
    moved.last = new_number[moved.last];
    spare_potential_[new_number[i]] = potential_[i];
  }
  node_.swap(spare_node_);
  potential_.swap(spare_potential_);
  for (int i = 0; i <= n; ++i) {
    next_[i] = i < n ? i + 1 : 0;
    previous_[i] = i > 0 ? i - 1 : root_;
  }
}

}  // namespace kelvo
