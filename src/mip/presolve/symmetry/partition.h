// An ordered partition of the nodes of a graph that is refined until nodes of a cell cannot be told
// apart by their edges to any other cell, and taken back step by step.
//
// Cells are named by the position of their first element. A refinement depends on the graph and on
// the cells alone, not on the numbers of the nodes, so that two partitions that an automorphism
// maps onto each other stay so; `trace` sums up what happened and differs where they cannot be.
#pragma once

#include <cstdint>

#include "mip/presolve/symmetry/colored_graph.h"

namespace kelvo {

class Partition {
 public:
  /// By colour, refined. The graph must outlive the partition.
  explicit Partition(const ColoredGraph& graph);

  int cell_of(int node) const { return cell_[node]; }
  int length(int cell) const { return length_[cell]; }
  int element(int position) const { return element_[position]; }

  /// Makes a cell of its own of a node and refines.
  void individualize(int node);

  /// Number of cells split off so far, and the cells that the k-th split concerned.
  int num_splits() const { return static_cast<int>(splits_.size()); }
  int split_parent(int k) const { return splits_[k].parent; }
  int split_cell(int k) const { return splits_[k].cell; }
  /// Takes back all splits but the first `count`.
  void undo(int count);

  std::uint64_t trace() const { return trace_; }
  void reset_trace() { trace_ = 0; }
  std::int64_t work() const { return work_; }

 private:
  struct Split {
    int parent, cell;
  };
  struct Touched {
    std::uint64_t sum;
    int node;
  };
  void split_off(int parent, int cell);
  void swap_into(int node, int position);
  void push(int cell);
  void refine();
  void collect_neighbours(int cell);
  void split_cell_by_sums(int cell, Touched* begin, Touched* end);
  void note(std::uint64_t value) {
    trace_ = (trace_ ^ value) * 0x9E3779B97F4A7C15u + (trace_ >> 29);
  }

  const ColoredGraph& graph_;
  Vector<int> element_, position_;  // [nodes] by position; by node
  Vector<int> cell_;                // [nodes]
  Vector<int> length_;              // [positions] of the cell beginning there, else 0
  Vector<Split> splits_;
  Vector<int> queue_;  // cells that may split others
  std::size_t next_ = 0;
  Vector<char> queued_;        // [positions]
  Vector<std::uint64_t> sum_;  // [nodes] over the edges to the cell at hand, else 0
  Vector<Touched> touched_;
  std::uint64_t trace_ = 0;
  std::int64_t work_ = 0;
};

}  // namespace kelvo
