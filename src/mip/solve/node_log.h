// The node log: header, a line for nodes and incumbents, progress and cuts.
//
// Values are those of the internal minimization; the log multiplies them by the caller's sense.
#pragma once

#include "base/messages.h"
#include "mip/tree/search_observer.h"

namespace kelvo {

enum class CutType : int {
  cover,
  gub_cover,
  flow_cover,
  clique,
  gomory,
  mir,
  flow_path,
  disjunctive,
  implied_bound,
  zero_half,
  multi_commodity,
  local_cover,
  tightening,
  objective_disjunction,
  user,
  table,
  pool,
  discarded,
  local,
  gcs,
  enum_cover,
  user_soft,
  cone
};
inline constexpr int kNumCutTypes = 23;

/// The name of a cut type in the node log.
const char* cut_type_name(int type);

struct NodeLogSettings {
  int display = 2;             // 0 nothing to 5
  int interval = 100;          // nodes
  bool repeat_header = false;  // logs of node LPs are printed in between
  bool traditional = false;    // with columns for the branching
  bool processor_time = false;
  double sense = 1.0;   // the caller's
  bool silent = false;  // of a search inside another: nothing at all
};

/// (incumbent - bound) / (|incumbent| + 1e-10), 0 when that or the difference is negligible.
double relative_gap(double incumbent, double bound);

/// Names the columns of the searched program in the caller's terms.
class ColumnNames {
 public:
  virtual ~ColumnNames() = default;
  virtual const char* column_name(int column) const = 0;
};

class NodeLog {
 public:
  /// All references must outlive the object.
  NodeLog(MessageSink& sink, const NodeLogSettings& settings, const ColumnNames& names)
      : sink_(sink), settings_(settings), names_(names) {}

  int display() const { return settings_.display; }

  /// A new incumbent: a line at once, marked; `heuristic` when no node LP gave it.
  void incumbent(const SearchState& state, const NodeResult& result, bool heuristic,
                 const NodeOrigin& origin);
  /// A processed node: a line when one is due.
  void node(const SearchState& state, const NodeResult& result, const NodeOrigin& origin);
  /// The root after its LP or a round of cuts: always a line.
  void root(const SearchState& state, const NodeResult& result);
  /// Cuts added since the last line.
  void count_cuts(int type, int count);
  /// The line of progress when it is due by the number of nodes or after ten seconds.
  void progress(int nodes, double seconds, double tree_bytes, int solutions);
  /// Node LPs have been logged since the last line.
  void note_other_output() { header_printed_ = header_printed_ && !settings_.repeat_header; }

  void first_solution(double seconds, int node, double objective);

 private:
  void header();
  void line(char marker, char plus, const SearchState& state, const NodeResult& result,
            const NodeOrigin& origin);
  void best_node_field(char* field, int size, const SearchState& state);
  void gap_field(char* field, int size, const SearchState& state) const;
  void objective_field(char* field, int size, const NodeResult& result,
                       const SearchState& state) const;

  static constexpr int kNoCuts = -2;
  static constexpr int kSeveralTypes = -1;

  MessageSink& sink_;
  const NodeLogSettings settings_;
  const ColumnNames& names_;
  bool header_printed_ = false;
  bool first_line_done_ = false;
  int last_line_node_ = -1;
  double last_incumbent_ = 1e75;
  double last_bound_ = -1e75;
  int last_left_ = -1;
  int pending_type_ = kNoCuts;
  int pending_count_ = 0;
  int last_progress_node_ = 0;
  double last_progress_ = 0.0;
};

}  // namespace kelvo
