// Column types, and the type of the problem.
#include <algorithm>

#include "api/frame/problem_frame.h"
#include "env/params/param_numbers.h"
#include "prob/data/column_types.h"
#include "prob/data/data_check.h"

using namespace kelvo;

namespace {

/// Number of columns of a type; 0 on failure.
int count_type(KLVenv env, KLVprob lp, char type) {
  int count = 0;
  const int code = api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    const Vector<char>& types = problem.model().column_type;
    count = static_cast<int>(std::count(types.begin(), types.end(), type));
    return Status();
  });
  return code == 0 ? count : 0;
}

/// Swaps complete column types in; the bounds of integer columns follow.
void store_types(Environment& environment, Problem& problem, Vector<char>&& types) {
  bool moved = false;
  problem.edit_model(ChangeKind::column_types, [&](Model& model) {
    model.column_type.swap(types);
    moved = round_integer_bounds(model);
  });
  if (moved) {
    environment.messages().send(Channel::warning,
                                "Warning:  Non-integral bounds for integer variables rounded.\n");
  }
}

/// 1024, 1029 or 1030 when a view of this type cannot show a problem of that type.
Status check_can_show(int view, int type) {
  if (type_behind_view(view) == type) return Status();
  return Status::failure(view == kTypeFixedMilp   ? error::kNotMilp
                         : view == kTypeFixedMiqp ? error::kNotMiqp
                                                  : error::kNotMiqcp);
}

Status show_fixed(Environment& environment, Problem& problem, int view) {
  KELVO_TRY(check_can_show(view, type_behind_view(problem.type())));
  const Incumbent& incumbent = problem.incumbent;
  if (!incumbent.present) return Status::failure(error::kNoSolution);
  if (!incumbent.has_values) return Status::failure(error::kNoIncumbentValues);
  problem.show_fixed(view, incumbent.x.data(), environment.get_double(param::EPINT));
  return Status();
}

Status change_type(Environment& environment, Problem& problem, int type) {
  if (is_view_type(type)) return show_fixed(environment, problem, type);
  const bool known = type == kTypeLp || type == kTypeMilp || type == kTypeQp || type == kTypeMiqp ||
                     type == kTypeQcp || type == kTypeMiqcp;
  if (!known) return Status::failure(error::kUnknownProblemType);
  if (type == problem.type()) return Status();
  if (problem.is_view() && type == type_behind_view(problem.type())) {
    problem.show_itself();
  } else {
    problem.change_type(type);
  }
  return Status();
}

}  // namespace

int KLVcopyctype(KLVenv env, KLVprob lp, const char* ctype) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const int n = problem.num_cols();
    KELVO_TRY(check_pointers(ctype));
    KELVO_TRY(check_column_types(environment, ctype, n));
    store_types(environment, problem, Vector<char>(ctype, ctype + n));
    return Status();
  });
}

int KLVchgctype(KLVenv env, KLVprob lp, int cnt, const int* indices, const char* ctype) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (cnt < 0) return Status::failure(error::kBadArgument);
    if (cnt == 0) return Status();
    KELVO_TRY(check_pointers(indices, ctype));
    KELVO_TRY(check_column_indices(environment, indices, cnt, problem.num_cols()));
    KELVO_TRY(check_column_types(environment, ctype, cnt));
    problem.merge_pending();
    Vector<char> types(problem.model().column_type);
    types.resize(problem.num_cols(), 'C');
    for (int k = 0; k < cnt; ++k) types[indices[k]] = ctype[k];
    store_types(environment, problem, std::move(types));
    return Status();
  });
}

int KLVchgprobtype(KLVenv env, KLVprob lp, int type) {
  return api_problem(env, lp, [&](Environment& environment, Problem& problem) {
    return change_type(environment, problem, type);
  });
}

int KLVchgprobtypesolnpool(KLVenv env, KLVprob lp, int type, int soln) {
  return api_problem(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    constexpr int kIncumbent = -1;
    if (soln < kIncumbent) return Status::failure(error::kIndexRange);
    if (soln != kIncumbent) return Status::failure(error::kNoSolutionPool);
    return change_type(environment, problem, type);
  });
}

int KLVgetctype(KLVenv env, KLVprob lp, char* ctype, int begin, int end) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_index_range(environment, "KLVgetctype", begin, end, 0, problem.num_cols()));
    KELVO_TRY(check_pointers(ctype));
    if (!is_mixed_integer_type(problem.type())) return Status::failure(error::kNotMixedInteger);
    // A problem may be mixed-integer by its sets alone; then all its columns are continuous.
    const Vector<char>& types = problem.model().column_type;
    for (int j = begin; j <= end; ++j) ctype[j - begin] = types.empty() ? 'C' : types[j];
    return Status();
  });
}

int KLVgetnumbin(KLVenv env, KLVprob lp) {
  return count_type(env, lp, 'B');
}

int KLVgetnumint(KLVenv env, KLVprob lp) {
  return count_type(env, lp, 'I');
}

int KLVgetnumsemicont(KLVenv env, KLVprob lp) {
  return count_type(env, lp, 'S');
}

int KLVgetnumsemiint(KLVenv env, KLVprob lp) {
  return count_type(env, lp, 'N');
}
