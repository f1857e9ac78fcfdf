// Turns conflicts into clauses.
//
// The bounds of a conflict are replaced by their explanations, latest first, until a cut of the
// implication graph is reached:
//   - the first unique implication point: one bound of the last level is left, so that the clause
//     implies its negation after a return to the level of the others;
//   - the decisions: nothing is left that has an explanation.
// Each step keeps, for a position of the trail, the weakest value that is needed there. Afterwards
// literals that follow from the others are dropped.
//
// A conflict may come from propagation, or from an LP: a proof, valid everywhere, whose largest
// activity within the local bounds misses its right-hand side.
//
// Marques-Silva, Sakallah (1999), GRASP: a search algorithm for propositional satisfiability. IEEE
// Transactions on Computers 48. Achterberg (2007), Conflict analysis in mixed integer programming.
#pragma once

#include "mip/domain/conflict_scores.h"
#include "mip/domain/explainer.h"

namespace kelvo {

enum class ConflictCut { kFirstUip, kDecisions };

/// Bounds that cannot hold all at once; none: the program has no solution better than the cutoff.
struct LearnedClause {
  Vector<BoundLiteral> literals;  // the latest first
  /// The level to return to, below that of the first literal. With a unique implication point all
  /// others hold there still, so that its negation follows.
  int backjump_level = 0;
};

struct ConflictSettings {
  int longest_clause = 200;  // longer ones are dropped: they hardly ever imply anything
  int most_clauses = 20000;  // from here on half of them are removed
  // Nonzeros that the explanations of one conflict may touch: with rows of ten thousand entries
  // hundreds of them cost more than a clause is worth.
  double work_limit = 2e6;
  bool minimize = true;
};

class ConflictAnalysis {
 public:
  explicit ConflictAnalysis(Domain& domain, const ConflictSettings& settings = {});

  /// The domain is in conflict and has not been moved since. False: no clause (an unexplained bound
  /// crossed, or the clause would be too long or too expensive).
  bool analyze(ConflictCut cut, LearnedClause& learned);
  /// The domain is not in conflict, but its bounds contradict a proof. False: they do not, or no
  /// clause was found.
  bool analyze(const LinearProof& proof, ConflictCut cut, LearnedClause& learned);
  /// Adds the clause to the domain, and lets old clauses go when they are too many. At any level:
  /// usually after the return to the backjump level.
  void learn(const LearnedClause& learned);

  const ConflictScores& scores() const { return scores_; }
  /// Conflicts that led to a clause.
  int num_learned() const { return num_learned_; }

 private:
  struct Needed {
    int position;
    double value;
  };

  bool find_cut(ConflictCut cut, LearnedClause& learned);
  bool resolve(ConflictCut cut);
  bool is_exhausted() const { return explainer_.work() > stop_at_; }
  void add_all(int before);
  void add(const BoundLiteral& literal, int before);
  int pop();
  bool is_stop(int position, ConflictCut cut) const;
  void keep(int position);
  void drop_implied();
  bool is_implied(const Needed& needed);

  Domain& domain_;
  const ConflictSettings settings_;
  Explainer explainer_;
  ConflictScores scores_;
  Vector<BoundLiteral> explanation_;
  Vector<int> heap_;        // positions to be resolved, the latest on top
  Vector<double> needed_;   // [trail] weakest value needed of the change at a position
  Vector<char> is_queued_;  // [trail]
  Vector<Needed> kept_;     // literals of the cut, the latest first
  Vector<int> kept_at_;     // [2 num_vars] 1 + place in kept_; 0
  int level_start_ = 0;     // of the conflict's level
  int open_ = 0;            // queued or kept positions at that level
  double stop_at_ = 0.0;    // work of the explainer
  int num_learned_ = 0;
};

}  // namespace kelvo
