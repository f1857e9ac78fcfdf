// Cliques: sets of binary literals of which at most one is true (exactly one: equations).
//
// A literal is the number of a bound of a binary column, see bound_literal.h. Cliques of two are
// edges of the conflict graph and kept as lists of neighbours; longer ones as sets of literals
// with, for each literal, the numbers of its cliques in ascending order. Two literals are in
// conflict when they are neighbours or share a clique; the graph itself is never written out.
//
// Degenerate input says more than a clique: a literal given twice is false, a literal together with
// its complement makes all others false, an equation of one literal makes it true. Such literals
// are collected; the caller fetches them with take_forced() and fixes their columns.
//
// Queries count their work and use scratch memory: each thread has a table of its own.
//
// Atamtürk, Nemhauser, Savelsbergh (2000), Conflict graphs in solving integer programming problems.
// European Journal of Operational Research 121.
#pragma once

#include "mip/domain/bound_literal.h"
#include "mip/form/mip_problem.h"

namespace kelvo {

struct LiteralSpan {
  const int* begin_;
  int length;
  const int* begin() const { return begin_; }
  const int* end() const { return begin_ + length; }
  int operator[](int k) const { return begin_[k]; }
};

class CliqueTable {
 public:
  /// An empty table over the binary columns of the program.
  explicit CliqueTable(const MipProblem& mip);

  bool is_literal(int bound) const { return rank_[variable_of(bound)] >= 0; }

  /// Adds a clique of literals; one that is there already as an edge is not added again.
  void add(const int* literals, int length, bool equation);
  void add_edge(int a, int b);
  /// Removes a clique of three or more.
  void remove(int clique);
  /// Adds a literal, in conflict with all members, to a clique of three or more.
  void extend(int clique, int literal);
  /// Notes that a literal is true everywhere.
  void force(int literal) { forced_.push_back(literal); }
  /// Literals found to be true everywhere since the last call.
  void take_forced(Vector<int>& literals);

  /// Numbers of cliques run below this; removed ones have no members.
  int end() const { return static_cast<int>(start_.size()); }
  LiteralSpan members(int clique) const { return {pool_.data() + start_[clique], length_[clique]}; }
  bool is_equation(int clique) const { return is_equation_[clique] != 0; }
  void set_equation(int clique, bool equation) { is_equation_[clique] = equation; }
  /// The cliques of three or more that a literal is in, ascending.
  const Vector<int>& cliques_of(int literal) const { return cliques_of_[slot(literal)]; }
  /// The literals that a literal shares an edge with.
  const Vector<int>& edges_of(int literal) const { return edges_of_[slot(literal)]; }

  /// Whether at most one of two literals can be true.
  bool are_in_clique(int a, int b) const;

  /// Cliques in the table, edges included.
  int num_cliques() const { return num_long_ + num_edges_; }
  /// Literals in all cliques.
  double num_literals() const { return num_literals_ + 2.0 * num_edges_; }
  /// List entries looked at since construction.
  double work() const { return work_; }

  /// Splits a list of literals into parts that are cliques: part[k] is the number of the part of
  /// literals[k], 0..returned count - 1. Greedy: from each literal not yet in a part, in the order
  /// given, takes the clique that covers most of the rest.
  int partition(const Vector<int>& literals, Vector<int>& part) const;

 private:
  int slot(int literal) const { return 2 * rank_[variable_of(literal)] + (literal & 1); }
  bool normalize(Vector<int>& literals);
  int count_unassigned(const int* begin, const int* end, const Vector<int>& part) const;
  void assign(const int* begin, const int* end, int number, Vector<int>& part) const;

  Vector<int> rank_;            // [num_cols] number among the binary columns; -1 for others
  Vector<int> start_, length_;  // [clique] members in pool_
  Vector<char> is_equation_;    // [clique]
  Vector<int> pool_;
  Vector<Vector<int>> cliques_of_;  // [2 binaries]
  Vector<Vector<int>> edges_of_;    // [2 binaries]
  Vector<int> forced_;
  Vector<int> scratch_;
  mutable Vector<int> place_;  // [2 binaries] 1 + position in the list of partition(); 0
  int num_long_ = 0;
  int num_edges_ = 0;
  double num_literals_ = 0.0;
  mutable double work_ = 0.0;
};

}  // namespace kelvo
