// Nodes of the search tree and the decisions that lead to them.
#pragma once

#include <utility>

#include "lp/simplex/basis_snapshot.h"
#include "mip/form/mip_settings.h"

namespace kelvo {

/// A bound that a branch sets: of a variable of the relaxation, column or logical.
struct Decision {
  int variable;
  bool upper;
  double value;
};

/// A branch's decisions behind those of all its ancestors: a list from node to root whose tails are
/// shared. Counted by its users, all in one thread.
class NodePath {
 public:
  NodePath() = default;
  /// The decisions of a branch behind those of `parent`.
  NodePath(const NodePath& parent, const Vector<Decision>& decisions);
  NodePath(const NodePath& other) noexcept : step_(other.step_) { hold(); }
  NodePath(NodePath&& other) noexcept : step_(std::exchange(other.step_, nullptr)) {}
  NodePath& operator=(NodePath other) noexcept {
    std::swap(step_, other.step_);
    return *this;
  }
  ~NodePath() { release(); }

  bool is_root() const { return step_ == nullptr; }
  int depth() const { return step_ == nullptr ? 0 : step_->depth; }
  /// Of the last branch.
  const Vector<Decision>& decisions() const { return step_->decisions; }
  NodePath parent() const { return is_root() ? NodePath() : NodePath(step_->parent); }
  bool operator==(const NodePath& other) const { return step_ == other.step_; }
  /// Bytes of the last branch's record.
  std::size_t bytes() const;

 private:
  struct Step {
    Step* parent;
    int users;
    int depth;
    Vector<Decision> decisions;
  };

  explicit NodePath(Step* step) noexcept : step_(step) { hold(); }
  void hold() noexcept {
    if (step_ != nullptr) ++step_->users;
  }
  void release() noexcept;

  Step* step_ = nullptr;
};

struct Node {
  double bound = -kNoValue;  // no point of the node is better
  double estimate = -kNoValue;
  double parent_objective = -kNoValue;  // of the parent's LP
  int id = 0;
  int parent = -1;
  int branched_on = -1;   // column; -1 for the root and for branches on constraints
  char direction = ' ';   // U, D; C of a branch on a set
  double distance = 0.0;  // by how much the branch moved the column, for pseudocosts
  NodePath path;
  SharedBasis basis;  // where its LP starts; may be null

  int depth() const { return path.depth(); }
};

}  // namespace kelvo
