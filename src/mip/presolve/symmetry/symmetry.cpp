#include "mip/presolve/symmetry/symmetry.h"

#include <cmath>

#include "mip/presolve/disjoint_sets.h"
#include "mip/presolve/symmetry/partition.h"

namespace kelvo {

namespace {

// Edges touched per edge of the graph, and at least; the way down may take a part of it only.
constexpr std::int64_t kWorkPerEdge = 50;
constexpr std::int64_t kLeastWork = 2000000;
constexpr std::int64_t kDescentShare = 3;
constexpr std::int64_t kPollInterval = 200000;

class SymmetrySearch {
 public:
  SymmetrySearch(const MipProblem& mip, int effort, StopCheck& stop, SymmetryProgress* progress)
      : graph_(mip),
        left_(graph_),
        right_(left_),
        orbits_(graph_.num_nodes()),
        image_(graph_.num_nodes()),
        seen_(graph_.num_nodes(), -1),
        edge_color_(graph_.num_nodes(), -1),
        work_limit_(
            std::max(kLeastWork, kWorkPerEdge * static_cast<std::int64_t>(graph_.edges.size())) *
            effort),
        stop_(stop),
        progress_(progress) {
    for (int v = 0; v < graph_.num_nodes(); ++v) image_[v] = v;
  }

  Symmetry run();

 private:
  struct Level {
    int splits;  // before the node was individualized
    int node;
  };
  std::int64_t work() const { return left_.work() + right_.work() + own_work_; }
  bool tired(std::int64_t limit);
  void descend();
  void map_level(const Level& level);
  bool try_map(int from, int to);
  bool pair_further(int from, int to);
  bool find_mismatch(int first_split, int& from, int& to);
  bool cells_agree(int cell, int& from, int& to);
  void collect_moves(int first_split);
  bool is_automorphism();
  void accept();

  const ColoredGraph graph_;
  Partition left_, right_;
  DisjointSets orbits_;
  Vector<Level> levels_;
  Vector<int> moved_;       // nodes of the permutation at hand that do not stay
  Vector<int> image_;       // [nodes] under it
  Vector<int> seen_;        // [nodes or cells] stamps
  Vector<int> edge_color_;  // [nodes] of one node's edges, else -1
  int stamp_ = 0;
  const std::int64_t work_limit_;
  std::int64_t own_work_ = 0, next_poll_ = kPollInterval;
  StopCheck& stop_;
  SymmetryProgress* const progress_;
  bool stopped_ = false, truncated_ = false;
  Symmetry result_;
};

bool SymmetrySearch::tired(std::int64_t limit) {
  if (work() > next_poll_) {
    next_poll_ = work() + kPollInterval;
    stopped_ = stopped_ || stop_.requested();
    if (progress_ != nullptr) progress_->in_progress();
  }
  if (stopped_ || work() > limit) result_.is_complete = false;
  return !result_.is_complete;
}

void SymmetrySearch::descend() {
  int cell = 0;
  while (cell < graph_.num_nodes() && !tired(work_limit_ / kDescentShare)) {
    if (left_.length(cell) == 1) {
      ++cell;
      continue;
    }
    const int node = left_.element(cell);
    levels_.push_back({left_.num_splits(), node});
    left_.individualize(node);
    right_.individualize(node);
  }
  // A path cut short leaves cells undecided; what is found above them is as good.
  truncated_ = !result_.is_complete;
  result_.is_complete = true;
}

/// A cell of both partitions. True when it is single or holds the same nodes in both; else a node
/// of either that the other one lacks, such that the moves found so far go on in a circle if they
/// can.
bool SymmetrySearch::cells_agree(int cell, int& from, int& to) {
  const int length = left_.length(cell);
  own_work_ += length;
  if (length == 1) return true;
  from = to = -1;
  for (int p = cell; p < cell + length && from < 0; ++p) {
    if (right_.cell_of(left_.element(p)) != cell) from = left_.element(p);
  }
  if (from < 0) return true;
  for (int p = cell; p < cell + length; ++p) {
    const int v = right_.element(p);
    if (left_.cell_of(v) == cell) continue;
    const int q = left_.cell_of(v);
    if (to < 0) to = v;
    if (left_.length(q) == 1 && right_.element(q) == from) to = v;
  }
  return false;
}

bool SymmetrySearch::find_mismatch(int first_split, int& from, int& to) {
  ++stamp_;
  for (int k = first_split; k < left_.num_splits(); ++k) {
    for (const int cell : {left_.split_parent(k), left_.split_cell(k)}) {
      if (seen_[cell] == stamp_) continue;
      seen_[cell] = stamp_;
      if (!cells_agree(cell, from, to)) return true;
    }
  }
  return false;
}

bool SymmetrySearch::pair_further(int from, int to) {
  left_.individualize(from);
  right_.individualize(to);
  return left_.trace() == right_.trace() && left_.num_splits() == right_.num_splits();
}

/// Single cells facing each other; the elements of the others stay.
void SymmetrySearch::collect_moves(int first_split) {
  moved_.clear();
  ++stamp_;
  for (int k = first_split; k < left_.num_splits(); ++k) {
    for (const int cell : {left_.split_parent(k), left_.split_cell(k)}) {
      if (seen_[cell] == stamp_ || left_.length(cell) != 1) continue;
      seen_[cell] = stamp_;
      const int v = left_.element(cell);
      image_[v] = right_.element(cell);
      if (image_[v] != v) moved_.push_back(v);
    }
  }
}

bool SymmetrySearch::is_automorphism() {
  ++stamp_;
  for (const int v : moved_) {
    const int w = image_[v];
    if (seen_[w] == stamp_ || image_[w] == w) return false;  // no permutation
    seen_[w] = stamp_;
    if (graph_.color[v] != graph_.color[w]) return false;
    const int degree = graph_.start[v + 1] - graph_.start[v];
    if (degree != graph_.start[w + 1] - graph_.start[w]) return false;
    own_work_ += 3 * degree;
    const ColoredGraph::Edge* const of_v = graph_.edges.data() + graph_.start[v];
    const ColoredGraph::Edge* const of_w = graph_.edges.data() + graph_.start[w];
    for (int k = 0; k < degree; ++k) edge_color_[of_w[k].node] = of_w[k].color;
    bool same = true;
    for (int k = 0; k < degree && same; ++k) {
      same = edge_color_[image_[of_v[k].node]] == of_v[k].color;
    }
    for (int k = 0; k < degree; ++k) edge_color_[of_w[k].node] = -1;
    if (!same) return false;
  }
  return true;
}

void SymmetrySearch::accept() {
  Vector<ColumnMove> moves;
  for (const int v : moved_) {
    orbits_.join(v, image_[v]);
    if (v < graph_.num_columns) moves.push_back({v, image_[v]});
  }
  if (moves.empty()) return;  // equal rows
  std::sort(moves.begin(), moves.end(),
            [](const ColumnMove& a, const ColumnMove& b) { return a.from < b.from; });
  result_.generators.push_back(std::move(moves));
}

bool SymmetrySearch::try_map(int from, int to) {
  const int splits = left_.num_splits();
  left_.reset_trace();
  right_.reset_trace();
  bool open = pair_further(from, to);
  int next_from = -1, next_to = -1;
  while (open && find_mismatch(splits, next_from, next_to)) {
    open = next_to >= 0 && pair_further(next_from, next_to) && !tired(work_limit_);
  }
  bool found = false;
  if (open) {
    collect_moves(splits);
    found = !moved_.empty() && is_automorphism();
    if (found) accept();
    // Nodes that stay have been written, too, and are right.
    for (const int v : moved_) image_[v] = v;
  }
  left_.undo(splits);
  right_.undo(splits);
  return found;
}

void SymmetrySearch::map_level(const Level& level) {
  left_.undo(level.splits);
  right_.undo(level.splits);
  const int cell = left_.cell_of(level.node), length = left_.length(cell);
  Vector<int> others;
  for (int p = cell; p < cell + length; ++p) others.push_back(left_.element(p));
  own_work_ += length;
  Vector<int> failed;
  for (const int v : others) {
    if (tired(work_limit_)) return;
    if (orbits_.find(v) == orbits_.find(level.node)) continue;
    bool hopeless = false;
    for (const int w : failed) hopeless = hopeless || orbits_.find(w) == orbits_.find(v);
    own_work_ += static_cast<std::int64_t>(failed.size());
    if (!hopeless && !try_map(level.node, v)) failed.push_back(v);
  }
  result_.order *= orbits_.size(level.node);
  result_.log10_order += std::log10(orbits_.size(level.node));
}

Symmetry SymmetrySearch::run() {
  own_work_ += graph_.num_nodes();
  descend();
  while (!levels_.empty() && !stopped_ && result_.is_complete) {
    const Level level = levels_.back();
    levels_.pop_back();
    map_level(level);
  }
  result_.is_complete = result_.is_complete && !truncated_;
  if (result_.generators.empty()) {
    result_.order = 1.0;
    result_.log10_order = 0.0;
    return std::move(result_);
  }
  // By columns alone, with a column as representative.
  DisjointSets columns(graph_.num_columns);
  for (const Vector<ColumnMove>& generator : result_.generators) {
    for (const ColumnMove& move : generator) columns.join(move.from, move.to);
  }
  for (int j = 0; j < graph_.num_columns; ++j) result_.orbit.push_back(columns.find(j));
  return std::move(result_);
}

}  // namespace

Symmetry find_symmetry(const MipProblem& mip, int effort, StopCheck& stop,
                       SymmetryProgress* progress) {
  return SymmetrySearch(mip, effort, stop, progress).run();
}

}  // namespace kelvo
