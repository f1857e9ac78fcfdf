#include "lp/solve/lp_settings.h"

#include "env/params/param_numbers.h"

namespace kelvo {

namespace {

double markowitz_threshold(const Settings& settings) {
  constexpr double kDefault = 0.01;
  constexpr double kNumericallyCareful = 0.9;
  const double threshold = settings.get_double(param::EPMRK);
  const bool careful = settings.get_int(param::NUMERICALEMPHASIS) == 1;
  return careful && threshold == kDefault ? kNumericallyCareful : threshold;
}

/// The value of a hidden parameter that switches a family of reductions off.
struct Switch {
  int parameter;
  int off;
  unsigned families;
};
constexpr Switch kSwitches[] = {
    {param::SKIP_SINGLETON_ROWS, 1, kSingletonRows},
    {param::SKIP_COST_FIXING, 1, kCostFixing},
    {param::SKIP_FREE_SINGLETONS, 1, kFreeSingletons},
    {param::SKIP_DOUBLETONS, 1, kDoubletons},
    {param::SKIP_IMPLIED_ROWS, 1, kImpliedRows},
    {param::ACTIVITY_ROWS, 0, kActivityRows},
    {param::DUPLICATE_ROWS, 0, kDuplicateRows},
    {param::DUPLICATE_COLUMNS, 0, kDuplicateColumns},
    {param::DUAL_BOUNDS, 0, kDualBounds},
    {param::SLACK_COLUMNS, 0, kSlackColumns},
    {param::AGGREGATION, 0, kAggregation},
};

double coefficient_ratio(const Settings& settings) {
  constexpr double kCareful = 10.0, kUsual = 1000.0;
  const double limit = settings.get_double(param::COEFFICIENT_RATIO);
  if (limit > 0.0) return limit;
  return settings.get_int(param::NUMERICALEMPHASIS) == 1 ? kCareful : kUsual;
}

bool wants_compact_matrix(const Settings& settings) {
  constexpr int kByEmphasis = 0, kAlways = 1;
  const int compression = settings.get_int(param::MATRIX_COMPRESSION);
  if (compression == kByEmphasis) return settings.get_int(param::MEMORYEMPHASIS) == 1;
  return compression == kAlways;
}

/// Crash bases are made on request only: the slack basis is the better start for most models.
std::optional<CrashOrder> crash_order(const Settings& settings) {
  constexpr int kByBounds = 0, kByCosts = -1;
  switch (settings.get_int(param::CRAIND)) {
    case kByBounds:
      return CrashOrder::by_bounds;
    case kByCosts:
      return CrashOrder::by_costs;
    default:
      return std::nullopt;
  }
}

}  // namespace

PresolveSettings read_presolve_settings(const Settings& settings) {
  PresolveSettings presolve;
  presolve.on = settings.get_int(param::PREIND) != 0;
  for (const Switch& family : kSwitches) {
    if (settings.get_int(family.parameter) == family.off) presolve.families &= ~family.families;
  }
  presolve.pass_limit = settings.get_int(param::PREPASS);
  const int reduce = settings.get_int(param::REDUCE);
  presolve.primal_reductions = (reduce & 1) != 0;
  presolve.dual_reductions = (reduce & 2) != 0;
  presolve.nonlinear = settings.get_int(param::PRELINEAR) != 0;
  presolve.aggregator = settings.get_int(param::AGGIND);
  presolve.dependent_rows = settings.get_int(param::DEPIND);
  presolve.fill_limit = settings.get_int(param::AGGFILL);
  presolve.coefficient_ratio = coefficient_ratio(settings);
  presolve.large_number = settings.get_double(param::LARGE_NUMBER);
  presolve.dual_form = settings.get_int(param::PREDUAL);
  presolve.feasibility_tolerance = settings.get_double(param::EPRHS);
  presolve.optimality_tolerance = settings.get_double(param::EPOPT);
  presolve.progress = settings.get_int(param::PRINT_PRESOLVE_OUTCOMES) != 0;
  presolve.display = settings.get_int(param::SIMDISPLAY);
  return presolve;
}

DriverSettings read_driver_settings(const Settings& settings, int sense) {
  DriverSettings driver;
  driver.scaling = static_cast<ScalingMethod>(settings.get_int(param::SCAIND));
  constexpr int kCrush = 2;
  driver.use_basis = settings.get_int(param::ADVIND) != 0;
  driver.always_crush = settings.get_int(param::ADVIND) == kCrush;
  driver.restart_passes = settings.get_int(param::NO_RESTART_PASSES) == 0;

  driver.compact_matrix = wants_compact_matrix(settings);
  driver.crash = crash_order(settings);
  driver.presolve = read_presolve_settings(settings);

  SimplexSettings& simplex = driver.simplex;
  simplex.feasibility_tolerance = settings.get_double(param::EPRHS);
  simplex.optimality_tolerance = settings.get_double(param::EPOPT);
  simplex.markowitz_threshold = markowitz_threshold(settings);
  simplex.singularity_tolerance = settings.get_double(param::SINGTOL);
  simplex.singularity_limit = settings.get_int(param::SINGLIM);
  simplex.row_file_multiplier = settings.get_double(param::RFILEMUL);
  simplex.col_file_multiplier = settings.get_double(param::CFILEMUL);
  simplex.refactor_frequency = settings.get_int(param::REINV);
  simplex.iteration_limit = settings.get_int(param::ITLIM);
  const double lower = settings.get_double(param::OBJLLIM);
  const double upper = settings.get_double(param::OBJULIM);
  simplex.objective_lower_limit = sense > 0 ? lower : -upper;
  simplex.objective_upper_limit = sense > 0 ? upper : -lower;
  simplex.dual_pricing = static_cast<DualPricing>(settings.get_int(param::DPRIIND));
  simplex.primal_pricing = static_cast<PrimalPricing>(settings.get_int(param::PPRIIND));
  simplex.perturb_at_start = settings.get_int(param::PERIND) != 0;
  simplex.perturbation = settings.get_double(param::EPPER);
  simplex.perturbation_limit = settings.get_int(param::PERLIM);
  simplex.price_limit = settings.get_int(param::PRICELIM);
  simplex.display = settings.get_int(param::SIMDISPLAY);
  simplex.service_period = settings.get_int(param::SERVICE_INTERVAL);
  simplex.sense = sense;
  return driver;
}

}  // namespace kelvo
