#include "mip/presolve/reduction_table.h"

#include <iterator>

#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

const MipReduction kMipReductions[] = {
    {"bound tightening", CostClass::cheap, false, tighten_bounds},
    {"semi-continuous columns", CostClass::cheap, false, reduce_semi_columns},
    {"sets", CostClass::cheap, false, reduce_sets},
    {"indicators", CostClass::cheap, false, reduce_indicators},
    {"integer rows", CostClass::cheap, false, tidy_integer_rows},
    {"coefficient tightening", CostClass::cheap, false, tighten_coefficients},
    {"implied integers", CostClass::cheap, false, find_implied_integers},
    {"stuffing", CostClass::medium, true, stuff_singletons},
    {"dominated columns", CostClass::medium, true, fix_dominated_columns},
    {"probing", CostClass::expensive, false, probe_binaries},
};

const int kNumMipReductions = static_cast<int>(std::size(kMipReductions));

}  // namespace kelvo
