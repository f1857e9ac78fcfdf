#include "mip/domain/clique_merging.h"

#include <algorithm>

namespace kelvo {
namespace {

/// Cliques between two calls of `proceed`.
constexpr int kReportEvery = 256;

/// A set of literals that is emptied at once.
class LiteralMarks {
 public:
  void clear() { ++stamp_; }
  void add(int literal) {
    if (literal >= static_cast<int>(mark_.size())) mark_.resize(2 * literal + 2, 0);
    mark_[literal] = stamp_;
  }
  bool has(int literal) const {
    return literal < static_cast<int>(mark_.size()) && mark_[literal] == stamp_;
  }

 private:
  Vector<int> mark_;
  int stamp_ = 1;
};

class Pass {
 public:
  Pass(CliqueTable& table, const CliqueEffort& effort)
      : table_(table), effort_(effort), start_(table.work()) {}

  /// Calls visit(clique) for each clique there was at the start, as long as the effort lasts.
  template <class Visit>
  void run(Visit visit) {
    const int end = table_.end();
    for (int c = 0; c < end; ++c) {
      if (work_ + table_.work() - start_ > effort_.work_limit) return;
      const double share = static_cast<double>(c) / end;
      if (c % kReportEvery == 0 && effort_.proceed != nullptr &&
          !effort_.proceed(effort_.context, share)) {
        return;
      }
      if (table_.members(c).length > 0) visit(c);
    }
  }

  /// Removes the clique if another contains it, or others that are equal to it or implied by it.
  int merge(int clique) {
    const LiteralSpan members = table_.members(clique);
    marks_.clear();
    for (const int literal : members) marks_.add(literal);
    const int rarest = *std::min_element(members.begin(), members.end(), [&](int a, int b) {
      return table_.cliques_of(a).size() < table_.cliques_of(b).size();
    });
    candidates_ = table_.cliques_of(rarest);
    work_ += members.length + static_cast<double>(candidates_.size());
    int removed = 0;
    for (const int other : candidates_) {
      const LiteralSpan span = table_.members(other);
      if (other == clique || span.length < members.length) continue;
      work_ += span.length;
      const auto common =
          std::count_if(span.begin(), span.end(), [&](int literal) { return marks_.has(literal); });
      if (common < members.length) continue;
      const bool equal = span.length == members.length;
      if (!table_.is_equation(clique) || equal) {
        if (table_.is_equation(clique)) table_.set_equation(other, true);
        table_.remove(clique);
        return removed + 1;
      }
      for (const int literal : span) {
        if (!marks_.has(literal)) table_.force(opposite(literal));
      }
      table_.remove(other);
      ++removed;
    }
    return removed;
  }

  /// Adds what is in conflict with all members.
  int grow(int clique) {
    const LiteralSpan members = table_.members(clique);
    marks_.clear();
    for (const int literal : members) marks_.add(literal);
    const int rarest = *std::min_element(members.begin(), members.end(), [&](int a, int b) {
      return num_neighbours(a) < num_neighbours(b);
    });
    collect_neighbours(rarest);
    int added = 0;
    for (const int literal : candidates_) {
      // Not marked with the members: an addition moves them.
      const LiteralSpan now = table_.members(clique);
      if (!std::all_of(now.begin(), now.end(),
                       [&](int member) { return table_.are_in_clique(member, literal); })) {
        continue;
      }
      if (table_.is_equation(clique)) {
        table_.force(opposite(literal));
      } else {
        table_.extend(clique, literal);
        ++added;
      }
    }
    return added;
  }

 private:
  double num_neighbours(int literal) {
    double count = static_cast<double>(table_.edges_of(literal).size());
    for (const int clique : table_.cliques_of(literal)) count += table_.members(clique).length;
    work_ += 1.0 + static_cast<double>(table_.cliques_of(literal).size());
    return count;
  }

  void collect_neighbours(int literal) {
    candidates_.clear();
    const auto collect = [&](int other) {
      if (marks_.has(other) || marks_.has(opposite(other))) return;
      marks_.add(other);
      candidates_.push_back(other);
    };
    for (const int other : table_.edges_of(literal)) collect(other);
    for (const int clique : table_.cliques_of(literal)) {
      for (const int other : table_.members(clique)) collect(other);
    }
    work_ += static_cast<double>(candidates_.size());
  }

  CliqueTable& table_;
  const CliqueEffort& effort_;
  LiteralMarks marks_;
  Vector<int> candidates_;
  double start_;
  double work_ = 0.0;
};

}  // namespace

int merge_cliques(CliqueTable& table, const CliqueEffort& effort) {
  int removed = 0;
  Pass pass(table, effort);
  pass.run([&](int clique) { removed += pass.merge(clique); });
  return removed;
}

int grow_cliques(CliqueTable& table, const CliqueEffort& effort) {
  int added = 0;
  Pass pass(table, effort);
  pass.run([&](int clique) { added += pass.grow(clique); });
  return added;
}

}  // namespace kelvo
