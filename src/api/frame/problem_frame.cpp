#include "api/frame/problem_frame.h"

namespace kelvo {

void free_problem(Problem* problem) noexcept {
  ObjectList::remove(problem->node);
  Owned<Problem> last_owner(problem);
}

KLVprob adopt_problem(Environment& environment, Owned<Problem> problem) {
  problem->node = environment.objects().add(
      ObjectKind::problem, problem.get(),
      [](void* object) noexcept { free_problem(static_cast<Problem*>(object)); });
  return to_handle(problem.release());
}

}  // namespace kelvo
