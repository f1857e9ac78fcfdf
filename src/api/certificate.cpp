// The certificate that a quadratic objective is not convex.
#include "api/frame/problem_frame.h"
#include "qp/definiteness.h"

using namespace kelvo;

int KLVqpindefcertificate(KLVenv env, KLVprob lp, double* x) {
  return api_problem(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (problem.is_view()) return Status::failure(error::kNotSingleProblem);
    problem.merge_pending();
    const Model& model = problem.model();
    const bool quadratic =
        model.quadratic.num_major > 0 || problem.type() == kTypeQp || problem.type() == kTypeMiqp;
    if (!quadratic) return Status::failure(error::kNotQuadratic);
    KELVO_TRY(check_pointers(x));
    Vector<double> direction;
    if (!find_indefinite_direction(model.quadratic, model.sense, direction)) {
      return Status::failure(error::kNotIndefinite);
    }
    std::copy(direction.begin(), direction.end(), x);
    return Status();
  });
}
