// The spanning tree of a network simplex basis, with the potentials of its nodes.
//
// The tree hangs from an artificial root with index num_nodes. Every other node has one tree arc,
// that to its parent. The nodes are linked in preorder, so that the descendants of a node follow it
// immediately and its subtree is the stretch node .. last of that circular list. A pivot moves a
// subtree to another place: links change along the path that is turned round, and sizes along the
// paths to the common ancestor. The potentials of the subtree change by a constant; when it holds
// more than half of the nodes, those of the others change instead, since only differences count.
//
// What a walk through a subtree touches (potential, next) is kept apart from what walks along paths
// touch (TreeNode), and renumber() numbers the nodes in preorder, so that the list runs through
// the memory in order until pivots have cut it into pieces again.
//
// Sources: Barr, Glover and Klingman, "Enhancements of spanning tree labelling procedures for
// network optimization", INFOR 17 (1979); subtree sizes in place of depths as in Bradley, Brown and
// Graves, "Design and implementation of large scale primal transshipment algorithms", Management
// Science 24 (1977).
#pragma once

#include <cstdint>

#include "base/containers.h"

namespace kelvo {

/// A node with its tree arc. Residuals are those of the arc to the parent: how much more can flow
/// up (from the node to its parent) and down.
struct TreeNode {
  int parent;
  int arc;   // 2 * arc + (1 when the arc leads from the node to its parent)
  int size;  // nodes of the subtree, this one included
  int last;  // the last node of the subtree in preorder
  double up;
  double down;

  bool leads_up() const { return (arc & 1) != 0; }
  int arc_index() const { return arc >> 1; }
};

class SpanningTree {
 public:
  /// A star: every node is a child of the root. Arcs, residuals and potentials are the caller's to
  /// set. Throws std::bad_alloc.
  void make_star(int num_nodes);
  /// Sets all links from the parents, which must form a tree. Throws std::bad_alloc.
  void link_from_parents();

  int root() const { return root_; }
  TreeNode& operator[](int node) { return node_[node]; }
  const TreeNode& operator[](int node) const { return node_[node]; }
  int next(int node) const { return next_[node]; }
  int previous(int node) const { return previous_[node]; }

  double potential(int node) const { return potential_[node]; }
  void set_potential(int node, double value) { potential_[node] = value; }
  const double* potentials() const { return potential_.data(); }

  /// The nearest common ancestor.
  int common_ancestor(int a, int b) const {
    while (a != b) {
      if (node_[a].size <= node_[b].size) {
        a = node_[a].parent;
      } else {
        b = node_[b].parent;
      }
    }
    return a;
  }

  /// Cuts the subtree of `top` off and hangs it by its node `inner` under `outer`, which lies
  /// outside. `join` is the common ancestor of the two. The arc and residuals of `inner` are left
  /// to the caller; those along the turned path have been moved.
  void rehang(int top, int inner, int outer, int join);

  /// Adds a constant to the potentials of a subtree, or takes it from all others. Returns how many
  /// potentials changed.
  int shift_potentials(int top, double amount);

  /// Numbers the nodes in preorder; the root keeps its number. `new_number` [num_nodes + 1]
  /// receives the new number of each old one. The memory is there from make_star().
  void renumber(Vector<int>& new_number) noexcept;

 private:
  void cut(int top, int join);
  int turn(int top, int inner);

  int root_ = 0;
  Vector<TreeNode> node_;        // [num_nodes + 1]
  Vector<double> potential_;     // [num_nodes + 1]
  Vector<int> next_;             // [num_nodes + 1] in preorder
  Vector<int> previous_;         // [num_nodes + 1]
  Vector<TreeNode> spare_node_;  // [num_nodes + 1] for renumber()
  Vector<double> spare_potential_;
};

}  // namespace kelvo
