// Clauses learned from conflicts.
//
// A clause lists bound literals that never hold all at once in a solution (better than the cutoff):
// the disjunction of their negations. The negation of x >= c is x <= c - 1 for an integer column
// and x < c for a continuous one, of which propagation can only enforce x <= c.
//
// Two literals of each clause, its first two, are watched: ones that do not hold, or those that
// came to hold last. A clause needs attention only when a watched literal comes to hold; the lists
// by bound are linked through the clauses, so that they take 8 bytes a bound and 24 bytes a watch.
//
// Moskewicz, Madigan, Zhao, Zhang, Malik (2001), Chaff: engineering an efficient SAT solver. DAC.
// Achterberg (2007), Conflict analysis in mixed integer programming. Discrete Optimization 4.
#pragma once

#include "mip/domain/bound_literal.h"
#include "mip/domain/local_bounds.h"

namespace kelvo {

class ClauseStore {
 public:
  explicit ClauseStore(int num_vars) : head_(2 * static_cast<std::size_t>(num_vars), -1) {}

  /// Adds a clause of two or more literals, no two of them of one bound. Those that came to hold
  /// last are watched. Returns its number.
  int add(const Vector<BoundLiteral>& literals, const LocalBounds& bounds);

  /// Clauses in the store, and the number that all numbers are below.
  int size() const { return size_; }
  int end() const { return static_cast<int>(clauses_.size()); }
  bool is_alive(int clause) const { return clauses_[clause].length > 0; }
  const BoundLiteral* literals(int clause) const { return pool_.data() + clauses_[clause].start; }
  int length(int clause) const { return clauses_[clause].length; }
  double activity(int clause) const { return clauses_[clause].activity; }

  /// A clause has been of use.
  void bump(int clause);
  /// Past uses weigh less from now on.
  void age() { increment_ *= 1.0 / kAgeing; }
  /// Removes the less active half of the clauses longer than three; those that are reasons of the
  /// trail stay.
  void reduce(const LocalBounds& bounds);

  // The list of watches on a bound: watch 2c or 2c+1 is the first or second literal of clause c.
  int first_watch(int bound) const { return head_[bound]; }
  int next_watch(int watch) const { return watches_[watch].next; }
  double watched_value(int watch) const { return watches_[watch].value; }
  BoundLiteral* mutable_literals(int clause) { return pool_.data() + clauses_[clause].start; }
  /// Exchanges the watched literal with the one at place k >= 2 and watches that.
  void move_watch(int watch, int k);

 private:
  static constexpr double kAgeing = 0.999;

  struct Clause {
    int start;
    int length;  // 0: removed
    double activity;
  };
  struct Watch {
    double value;
    int next, previous;
  };
  void link(int watch);
  void unlink(int watch);
  void remove(int clause);
  void compact();

  Vector<Clause> clauses_;
  Vector<BoundLiteral> pool_;
  Vector<Watch> watches_;  // [2 end]
  Vector<int> head_;       // [2 num_vars] first watch; -1
  Vector<int> free_;       // numbers of removed clauses
  int size_ = 0;
  std::size_t unused_ = 0;  // literals of removed clauses
  double increment_ = 1.0;
};

}  // namespace kelvo
