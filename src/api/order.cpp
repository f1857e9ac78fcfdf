// The priority order of the search.
#include "api/frame/output.h"
#include "api/frame/problem_frame.h"
#include "prob/data/data_check.h"
#include "prob/model/model_edit.h"
#include "prob/solution_access.h"

using namespace kelvo;

int KLVcopyorder(KLVenv env, KLVprob lp, int cnt, const int* indices, const int* priority,
                 const int* direction) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (!is_mixed_integer(problem)) return Status::failure(error::kNotMixedInteger);
    if (cnt < 0) return Status::failure(error::kBadArgument);
    if (cnt > 0) KELVO_TRY(check_pointers(indices));
    KELVO_TRY(check_column_indices(environment, indices, cnt, problem.num_cols()));
    KELVO_TRY(check_priorities(environment, priority, cnt));
    KELVO_TRY(check_directions(environment, direction, cnt));
    problem.edit_model(ChangeKind::priority_order, [&](Model& model) {
      assign_order(model.order, {cnt, indices, priority, direction}, model.num_cols);
    });
    return Status();
  });
}

int KLVgetorder(KLVenv env, KLVprob lp, int* cnt_p, int* indices, int* priority, int* direction,
                int ordspace, int* surplus_p) {
  reset_counts(cnt_p, surplus_p);
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (!is_mixed_integer(problem)) return Status::failure(error::kNotMixedInteger);
    const PriorityOrder& order = problem.model().order;
    if (order.size() == 0) return Status::failure(error::kNoOrder);
    const OutputRoom out{cnt_p, ordspace, surplus_p};
    if (out.asks_for_room()) return out.room(order.size());
    KELVO_TRY(out.check(indices, priority, direction));
    for (int k = 0; k < std::min(order.size(), ordspace); ++k) {
      indices[k] = order.column[k];
      priority[k] = order.priority[k];
      direction[k] = order.direction[k];
    }
    return out.finish(order.size());
  });
}
