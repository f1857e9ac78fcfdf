// Presolve of a mixed-integer program: a smaller one with the same optimum, and its points back.
//
//     MipPresolve presolve(mip, settings, {sink, stop});
//     if (presolve.outcome() == PresolveOutcome::reduced) {
//       const MipProblem reduced = presolve.take_reduced();
//       ...
//       presolve.postsolve(reduced_x, x);
//     }
//
// Rounds from cheap to expensive: the reductions of linear programs and the cheap ones of this
// folder until a round gains little, then those of medium cost, then the expensive ones, each gain
// beginning a new round of cheap ones. All of them change one PresolveMip, whose stack of records
// turns a point of the reduced program into one of the original, of the same objective value, in
// one walk.
//
// Without dual arguments (`dual_reductions`) every feasible point of the original program has its
// image in the reduced one, so that solutions may be counted there; with them an optimal one has.
// Duals and bases do not come back: they belong to a program with the integer columns fixed.
#pragma once

#include "base/messages.h"
#include "lp/presolve/presolve.h"
#include "mip/presolve/components.h"
#include "mip/presolve/presolve_mip.h"
#include "mip/presolve/symmetry/symmetry.h"

namespace kelvo {

/// Is told of every reduction that changed the program; for tests and the search for faults.
class MipPresolveWatch {
 public:
  virtual ~MipPresolveWatch() = default;
  virtual void after(const char* reduction, const PresolveMip& mip) = 0;
};

struct MipPresolveContext {
  MessageSink& sink;
  StopCheck& stop;
  MipPresolveWatch* watch = nullptr;
};

class MipPresolve {
 public:
  /// Program, settings and context are used during the construction only. The program has its
  /// row-wise matrix.
  MipPresolve(const MipProblem& mip, const MipPresolveSettings& settings,
              const MipPresolveContext& context);

  PresolveOutcome outcome() const { return outcome_; }
  const Finding& finding() const { return finding_; }
  const PresolveStats& linear_stats() const { return linear_stats_; }
  const MipPresolveStats& stats() const { return stats_; }

  /// The reduced program, of an outcome `reduced` or `unchanged`. It is handed over.
  MipProblem take_reduced() { return std::move(reduced_.mip); }
  int num_cols() const { return static_cast<int>(reduced_.col_map.size()); }
  int num_rows() const { return static_cast<int>(reduced_.row_map.size()); }
  /// [num_rows], [num_cols] reduced index, or -1 for what is gone.
  const Vector<int>& row_map() const { return reduced_.row_map; }
  const Vector<int>& col_map() const { return reduced_.col_map; }
  /// Original index of each reduced row (-1: made by presolve) and column.
  const Vector<int>& kept_rows() const { return reduced_.kept_rows; }
  const Vector<int>& kept_cols() const { return reduced_.kept_cols; }
  /// [reduced columns] 1: continuous in the original program; whole as soon as the others are.
  const Vector<char>& implied_integers() const { return implied_integers_; }
  /// The parts of the reduced program that have nothing in common; empty when there is only one.
  const Vector<Component>& components() const { return components_; }

  /// What probing found of the reduced program.
  const Vector<FoundImplication>& implications() const { return implications_; }
  /// Of the reduced program; empty when it was not looked for.
  const Symmetry& symmetry() const { return symmetry_; }

  /// A point [num_cols] from a point of the reduced program, feasible when that is, with the same
  /// objective value.
  Vector<double> postsolve(const Vector<double>& reduced_x) const;
  /// A point of the reduced program from one [num_cols]; feasible when that is, unless an argument
  /// from the objective has left the point out.
  Vector<double> crush(const Vector<double>& x) const;

 private:
  void take_implications(const PresolveMip& work);

  PresolveOutcome outcome_ = PresolveOutcome::unchanged;
  Finding finding_;
  PresolveStats linear_stats_;
  MipPresolveStats stats_;
  PostsolveStack stack_;
  ReducedMip reduced_;
  Vector<char> implied_integers_;
  Vector<Component> components_;
  Symmetry symmetry_;
  Vector<FoundImplication> implications_;
};

/// The point [columns] of the program given that the reductions done so far have made of x.
Vector<double> crush_into(const PresolveMip& mip, const Vector<double>& x);

}  // namespace kelvo
