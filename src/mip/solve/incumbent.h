// The best point known, in the caller's model and in the searched program, and the one door through
// which points come.
#pragma once

#include "lp/solve/lp_solver.h"
#include "mip/solve/mip_conversion.h"
#include "mip/tree/solution_sink.h"

namespace kelvo {

/// Carries points of the searched program to the caller's model.
class PointMap {
 public:
  virtual ~PointMap() = default;
  /// x [model columns] of a searched point.
  virtual void to_model(const Vector<double>& searched, Vector<double>& x) const = 0;
};

class IncumbentStore final : public SolutionSink {
 public:
  /// `offset`: the constant by which objectives of the searched program differ from the model's
  /// minimized one is none: both are the same number. All references must outlive the object.
  IncumbentStore(const Model& model, const MipTolerances& tolerances,
                 const DriverSettings& lp_settings, MessageSink& sink, StopCheck& stop)
      : model_(model),
        tolerances_(tolerances),
        lp_settings_(lp_settings),
        sink_(sink),
        stop_(stop) {}

  /// The map of the program that is searched from now on.
  void set_map(const PointMap* map) { map_ = map; }

  bool offer(const Vector<double>& x, SolutionSource source, double& objective) override;
  bool last_was_feasible() const override { return last_was_feasible_; }

  bool present() const { return !x_.empty() || (objective_ < 1e75 && model_.num_cols == 0); }
  /// Of the minimization; 1e75 for none.
  double objective() const { return objective_; }
  const Vector<double>& x() const { return x_; }  // [model columns]
  int solutions() const { return solutions_; }

 private:
  bool make_feasible(Vector<double>& x);
  void round_integers(Vector<double>& x) const;

  const Model& model_;
  const MipTolerances tolerances_;
  const DriverSettings& lp_settings_;
  MessageSink& sink_;
  StopCheck& stop_;
  const PointMap* map_ = nullptr;
  Vector<double> x_;
  double objective_ = 1e75;
  int solutions_ = 0;
  bool last_was_feasible_ = false;
};

}  // namespace kelvo
