// Starts of any kind: a basis, values, or both.
#include "api/frame/start_arrays.h"
#include "env/params/param_numbers.h"
#include "lp/solve/start_from_values.h"

using namespace kelvo;

int KLVcopystart(KLVenv env, KLVprob lp, const int* cstat, const int* rstat, const double* cprim,
                 const double* rprim, const double* cdual, const double* rdual) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_bases(problem));
    problem.merge_pending();
    const Model& model = problem.model();
    const StartValues values{cprim, rprim, cdual, rdual};
    const bool has_basis = cstat != nullptr || rstat != nullptr;
    if (!has_basis && !values.any()) return Status::failure(error::kNullPointer);
    const DataCheck check(environment);
    for (const double* array : {cprim, cdual}) KELVO_TRY(check.numbers(array, model.num_cols));
    for (const double* array : {rprim, rdual}) KELVO_TRY(check.numbers(array, model.num_rows));
    StoredBasis basis;
    if (has_basis) {
      KELVO_TRY(read_basis(environment, problem, cstat, rstat, basis));
      if (cprim != nullptr) basis.x.assign(cprim, cprim + model.num_cols);
    } else {
      basis = basis_from_values(model, values, environment.get_double(param::EPRHS));
    }
    problem.store_start_basis(std::move(basis));
    return Status();
  });
}
