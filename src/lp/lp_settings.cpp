#include "lp/lp_settings.h"

#include "env/param_numbers.h"

namespace kelvo {

namespace {

// Hidden: 0 when an optimum that violates the unscaled model is to be improved.
constexpr int kNoRestartPasses = 1017;

double markowitz_threshold(const Settings& settings) {
  constexpr double kDefault = 0.01;
  constexpr double kNumericallyCareful = 0.9;
  const double threshold = settings.get_double(param::EPMRK);
  const bool careful = settings.get_int(param::NUMERICALEMPHASIS) == 1;
  return careful && threshold == kDefault ? kNumericallyCareful : threshold;
}

}  // namespace

DriverSettings read_driver_settings(const Settings& settings, int sense) {
  DriverSettings driver;
  driver.scaling = static_cast<ScalingMethod>(settings.get_int(param::SCAIND));
  driver.use_basis = settings.get_int(param::ADVIND) != 0;
  driver.restart_passes = settings.get_int(kNoRestartPasses) == 0;

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
