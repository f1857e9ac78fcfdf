#include "mip/solve/mip_parameters.h"

#include "env/params/param_numbers.h"
#include "lp/solve/lp_settings.h"

namespace kelvo {
namespace {

/// The objective beyond which no solution is wanted, of the minimization.
double cutoff_of(const Settings& settings, int sense) {
  const double cutoff =
      sense > 0 ? settings.get_double(param::CUTUP) : -settings.get_double(param::CUTLO);
  return std::min(cutoff, kNoValue);
}

SearchSettings read_search_settings(const Settings& settings, int sense) {
  SearchSettings search;
  constexpr int kTraditional = 1;
  search.dynamic_search = settings.get_int(param::MIPSEARCH) != kTraditional;
  search.emphasis = static_cast<MipEmphasis>(settings.get_int(param::MIPEMPHASIS));
  search.branch_direction = settings.get_int(param::BRDIR);
  search.dive_type = static_cast<DiveType>(settings.get_int(param::DIVETYPE));
  search.node_selection = static_cast<NodeSelection>(settings.get_int(param::NODESEL));
  search.variable_selection = static_cast<VariableSelection>(settings.get_int(param::VARSEL));
  search.backtrack_tolerance = settings.get_double(param::BTTOL);
  search.strong_candidates = settings.get_int(param::STRONGCANDLIM);
  search.strong_iterations = settings.get_int(param::STRONGITLIM);
  search.node_limit = settings.get_int(param::NODELIM);
  search.solution_limit = settings.get_int(param::INTSOLLIM);
  search.tree_limit_megabytes = settings.get_double(param::TRELIM);
  search.iteration_limit = settings.get_int(param::ITLIM);
  search.relative_gap = settings.get_double(param::EPGAP);
  search.absolute_gap = settings.get_double(param::EPAGAP);
  search.relative_improvement = settings.get_double(param::RELOBJDIF);
  search.absolute_improvement = settings.get_double(param::OBJDIF);
  search.cutoff = cutoff_of(settings, sense);
  search.integrality = settings.get_double(param::EPINT);
  search.feasibility = settings.get_double(param::EPRHS);
  return search;
}

NodeLogSettings read_log_settings(const Settings& settings, int sense) {
  constexpr int kEveryNode = 5, kTraditional = 1, kProcessorTime = 1;
  NodeLogSettings log;
  log.display = settings.get_int(param::MIPDISPLAY);
  log.interval = log.display == kEveryNode ? 1 : settings.get_int(param::MIPINTERVAL);
  log.repeat_header = settings.get_int(param::SIMDISPLAY) != 0;
  log.traditional = settings.get_int(param::MIPSEARCH) == kTraditional;
  log.processor_time = settings.get_int(param::CLOCKTYPE) == kProcessorTime;
  log.sense = sense;
  return log;
}

}  // namespace

MipSolverSettings read_mip_settings(const Settings& settings, int sense) {
  MipSolverSettings mip;
  mip.search = read_search_settings(settings, sense);
  mip.log = read_log_settings(settings, sense);
  mip.lp = read_driver_settings(settings, sense);
  // These are limits on the objective of a continuous problem.
  mip.lp.simplex.objective_lower_limit = -kNoValue;
  mip.lp.simplex.objective_upper_limit = kNoValue;
  mip.presolve.lp = mip.lp.presolve;
  mip.presolve.coefficient_reduction = settings.get_int(param::COEREDIND);
  mip.presolve.bound_strengthening = settings.get_int(param::BNDSTRENIND);
  mip.presolve.probing = settings.get_int(param::PROBE);
  mip.presolve.probing_time = settings.get_double(param::PROBETIME);
  mip.presolve.symmetry = settings.get_int(param::SYMMETRY);
  mip.root_algorithm = settings.get_int(param::STARTALG);
  mip.use_order = settings.get_int(param::MIPORDIND) != 0;
  mip.generated_order = settings.get_int(param::MIPORDTYPE);
  return mip;
}

}  // namespace kelvo
