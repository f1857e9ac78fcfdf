#include "mip/presolve/symmetry/partition.h"

namespace kelvo {

namespace {

/// Spreads a colour over 64 bits, so that sums of colours tell multisets apart.
std::uint64_t spread(std::uint64_t color) {
  std::uint64_t h = (color + 1) * 0x9E3779B97F4A7C15u;
  h ^= h >> 31;
  h *= 0xBF58476D1CE4E5B9u;
  h ^= h >> 29;
  return h;
}

}  // namespace

Partition::Partition(const ColoredGraph& graph)
    : graph_(graph),
      element_(graph.num_nodes()),
      position_(graph.num_nodes()),
      cell_(graph.num_nodes()),
      length_(graph.num_nodes() + 1, 0),
      queued_(graph.num_nodes(), 0),
      sum_(graph.num_nodes(), 0) {
  Vector<int> first(graph.num_colors + 1, 0);
  for (const int color : graph.color) ++first[color + 1];
  for (int color = 0; color < graph.num_colors; ++color) {
    length_[first[color]] = first[color + 1];
    first[color + 1] += first[color];
  }
  Vector<int> place(first);
  for (int v = 0; v < graph.num_nodes(); ++v) {
    cell_[v] = first[graph.color[v]];
    position_[v] = place[graph.color[v]]++;
    element_[position_[v]] = v;
  }
  for (int color = 0; color < graph.num_colors; ++color) push(first[color]);
  refine();
}

void Partition::push(int cell) {
  if (queued_[cell]) return;
  queued_[cell] = 1;
  queue_.push_back(cell);
}

void Partition::swap_into(int node, int position) {
  const int from = position_[node], other = element_[position];
  element_[position] = node;
  element_[from] = other;
  position_[node] = position;
  position_[other] = from;
}

/// The cell begins inside the parent and takes all from there on.
void Partition::split_off(int parent, int cell) {
  const int end = parent + length_[parent];
  length_[cell] = end - cell;
  length_[parent] = cell - parent;
  for (int p = cell; p < end; ++p) cell_[element_[p]] = cell;
  work_ += end - cell;
  splits_.push_back({parent, cell});
}

void Partition::undo(int count) {
  while (num_splits() > count) {
    const auto [parent, cell] = splits_.back();
    splits_.pop_back();
    for (int p = cell; p < cell + length_[cell]; ++p) cell_[element_[p]] = parent;
    work_ += length_[cell];
    length_[parent] += length_[cell];
    length_[cell] = 0;
  }
}

void Partition::individualize(int node) {
  const int parent = cell_[node];
  if (length_[parent] == 1) return;
  const int last = parent + length_[parent] - 1;
  swap_into(node, last);
  split_off(parent, last);
  push(last);
  refine();
}

void Partition::collect_neighbours(int cell) {
  touched_.clear();
  std::uint64_t singles = 0;
  for (int p = cell; p < cell + length_[cell]; ++p) {
    const int v = element_[p];
    for (int k = graph_.start[v]; k < graph_.start[v + 1]; ++k) {
      const ColoredGraph::Edge& edge = graph_.edges[k];
      const int other = cell_[edge.node];
      if (length_[other] == 1) {
        singles += spread(static_cast<std::uint64_t>(edge.color)) *
                   (2 * static_cast<std::uint64_t>(other) + 1);
        continue;
      }
      if (sum_[edge.node] == 0) touched_.push_back({0, edge.node});
      sum_[edge.node] += spread(static_cast<std::uint64_t>(edge.color)) | 1u;
    }
    work_ += graph_.start[v + 1] - graph_.start[v];
  }
  note(singles);
}

/// Elements that were not touched stay in front, the others follow in the order of their sums.
void Partition::split_cell_by_sums(int cell, Touched* begin, Touched* end) {
  const int count = static_cast<int>(end - begin), whole = length_[cell];
  note(static_cast<std::uint64_t>(cell) << 32 | static_cast<std::uint64_t>(count));
  const bool uniform = begin->sum == end[-1].sum;
  note(begin->sum);
  if (uniform && count == whole) return;
  const bool was_queued = queued_[cell] != 0;
  // From the back: each group splits off from what is before it.
  int position = cell + whole;
  int largest = cell, largest_length = 0;
  const int first_split = num_splits();
  for (Touched* group_end = end; group_end != begin;) {
    Touched* group = group_end;
    while (group != begin && group[-1].sum == group_end[-1].sum)
      swap_into((--group)->node, --position);
    if (position == cell) {
      group_end = group;
      continue;
    }
    split_off(cell, position);
    note(group->sum + static_cast<std::uint64_t>(position));
    group_end = group;
  }
  for (int k = first_split; k < num_splits(); ++k) {
    const int part = splits_[k].cell;
    if (length_[part] > largest_length) {
      largest = part;
      largest_length = length_[part];
    }
  }
  if (length_[cell] >= largest_length) largest = cell;
  for (int k = first_split; k < num_splits(); ++k) {
    if (was_queued || splits_[k].cell != largest) push(splits_[k].cell);
  }
  if (!was_queued && largest != cell) push(cell);
}

void Partition::refine() {
  while (next_ < queue_.size()) {
    const int cell = queue_[next_++];
    queued_[cell] = 0;
    collect_neighbours(cell);
    for (Touched& touched : touched_) {
      touched.sum = sum_[touched.node];
      sum_[touched.node] = 0;
    }
    std::sort(touched_.begin(), touched_.end(), [this](const Touched& a, const Touched& b) {
      if (cell_[a.node] != cell_[b.node]) return cell_[a.node] < cell_[b.node];
      return a.sum != b.sum ? a.sum < b.sum : position_[a.node] < position_[b.node];
    });
    work_ += static_cast<std::int64_t>(4 * touched_.size());
    Touched* const end = touched_.data() + touched_.size();
    for (Touched* first = touched_.data(); first != end;) {
      const int target = cell_[first->node];
      Touched* last = first;
      while (last != end && cell_[last->node] == target) ++last;
      split_cell_by_sums(target, first, last);
      first = last;
    }
  }
  queue_.clear();
  next_ = 0;
}

}  // namespace kelvo
