#include "mip/presolve/clique_building.h"

#include "mip/domain/clique_merging.h"
#include "mip/domain/clique_rows.h"
#include "mip/presolve/clique_log.h"

namespace kelvo {

namespace {

// List entries and nonzeros that each phase may touch, per nonzero of the program, and at least.
constexpr double kWorkPerNonzero = 20.0;
constexpr double kLeastWork = 1e6;

/// Reports of a phase, and its end when the caller wants to stop.
struct Phase {
  CliquePhaseLog log;
  StopCheck& stop;

  static bool proceed(void* self, double share) {
    Phase& phase = *static_cast<Phase*>(self);
    phase.log.progress(share);
    return !phase.stop.requested();
  }
};

}  // namespace

Vector<int> build_cliques(const Domain& domain, const Vector<FoundImplication>& found,
                          const CliqueBuildingContext& context, CliqueTable& cliques,
                          ImplicationTable& implications) {
  const double work =
      std::max(kLeastWork, kWorkPerNonzero * domain.mip().lp.columns.num_nonzeros());
  add_cliques_of_rows(domain, cliques, work);
  for (const FoundImplication& implication : found) {
    add_implication(domain, implication.literal, {implication.bound, implication.value}, cliques,
                    implications);
  }
  Phase merging{CliquePhaseLog("merging", context.sink, context.reports), context.stop};
  merge_cliques(cliques, {work, Phase::proceed, &merging});
  merging.log.merging_end();
  Phase growth{CliquePhaseLog("growth", context.sink, context.reports), context.stop};
  if (grow_cliques(cliques, {work, Phase::proceed, &growth}) > 0) {
    merge_cliques(cliques, {work, Phase::proceed, &growth});
  }
  Vector<int> forced;
  cliques.take_forced(forced);
  return forced;
}

}  // namespace kelvo
