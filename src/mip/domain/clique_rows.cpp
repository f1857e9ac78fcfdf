#include "mip/domain/clique_rows.h"

#include <cmath>

namespace kelvo {
namespace {

/// Cliques of a row beyond its first have no more literals together than this times its length.
constexpr double kMostLiterals = 10.0;

struct WeightedLiteral {
  double weight;
  int literal;
};

class RowCliques {
 public:
  RowCliques(const Domain& domain, CliqueTable& table) : domain_(domain), table_(table) {}

  /// The side activity <= limit of a row, or of its negation.
  void add_side(int row, bool at_least) {
    const RowState& state = domain_.rows().state(row);
    const double limit = at_least ? -state.lower : state.upper;
    const double least = at_least ? -state.max_activity : state.min_activity;
    if (std::isinf(limit) || (at_least ? state.max_infinite : state.min_infinite) > 0) return;
    const double margin = kRowSlack + state.error + kRoundoff * std::abs(limit);
    const double slack = limit - least + margin;
    if (2.0 * state.reach <= slack) return;
    const bool only_literals = collect(row, at_least ? -1.0 : 1.0);
    const int count = static_cast<int>(literals_.size());
    if (count < 2 || literals_[0].weight + literals_[1].weight <= slack) return;
    int last = 1;
    while (last + 1 < count && literals_[last].weight + literals_[last + 1].weight > slack) ++last;
    const double other_limit = at_least ? -state.upper : state.lower;
    const bool one_needed = other_limit - least > margin;
    add_first(last + 1, -1, only_literals && one_needed && last + 1 == count);
    add_later(last, slack);
  }

 private:
  // The free literals of a row by falling weight; whether all else in it is fixed.
  bool collect(int row, double sign) {
    const RowView entries = domain_.rows().view(row);
    literals_.clear();
    bool only_literals = true;
    for (int k = 0; k < entries.length; ++k) {
      const int j = entries.index[k];
      if (domain_.is_fixed(j)) continue;
      if (!table_.is_literal(2 * j)) {
        only_literals = false;
      } else if (entries.value[k] != 0.0) {
        const double a = sign * entries.value[k];
        literals_.push_back({std::abs(a), literal_of(j, a > 0.0)});
      }
    }
    std::sort(literals_.begin(), literals_.end(),
              [](const WeightedLiteral& a, const WeightedLiteral& b) {
                return a.weight != b.weight ? a.weight > b.weight : a.literal < b.literal;
              });
    return only_literals;
  }

  // The clique of the first `count` literals and, unless it is negative, literal `later`.
  void add_first(int count, int later, bool equation) {
    clique_.clear();
    for (int k = 0; k < count; ++k) clique_.push_back(literals_[k].literal);
    if (later >= 0) clique_.push_back(literals_[later].literal);
    table_.add(clique_.data(), static_cast<int>(clique_.size()), equation);
  }

  void add_later(int last, double slack) {
    const int count = static_cast<int>(literals_.size());
    double room = kMostLiterals * count;
    for (int i = last + 1, q = last; i < count; ++i) {
      while (q >= 0 && literals_[q].weight + literals_[i].weight <= slack) --q;
      room -= q + 2;
      if (q < 0 || room < 0.0) return;
      add_first(q + 1, i, false);
    }
  }

  const Domain& domain_;
  CliqueTable& table_;
  Vector<WeightedLiteral> literals_;
  Vector<int> clique_;
};

}  // namespace

int add_cliques_of_rows(const Domain& domain, CliqueTable& table, double work_limit) {
  const int before = table.num_cliques();
  RowCliques rows(domain, table);
  const double start = table.work();
  double work = 0.0;
  for (int i = 0; i < domain.rows().num_program_rows(); ++i) {
    work += domain.rows().view(i).length;
    if (work + table.work() - start > work_limit) break;
    rows.add_side(i, false);
    rows.add_side(i, true);
  }
  return table.num_cliques() - before;
}

void add_implication(const Domain& domain, int literal, const BoundLiteral& consequence,
                     CliqueTable& cliques, ImplicationTable& implications) {
  const double global = domain.bounds().global(consequence.bound);
  if (!is_tighter(consequence.bound, consequence.value, global)) return;
  if (cliques.is_literal(consequence.bound)) {
    cliques.add_edge(literal, opposite(consequence.bound));
  } else {
    implications.add(literal, consequence.bound, consequence.value, global);
  }
}

}  // namespace kelvo
