// Special ordered sets.
#include <algorithm>

#include "api/frame/output.h"
#include "api/frame/problem_frame.h"
#include "env/params/param_numbers.h"
#include "prob/data/constraint_values.h"
#include "prob/data/data_check.h"
#include "prob/model/model_edit.h"
#include "prob/solution_access.h"

using namespace kelvo;

namespace {

int end_of_set(const SetBlock& block, int set) {
  return set + 1 < block.count ? block.begin[set + 1] : block.entries;
}

/// 3010 when two members of a set have the same weight, 1222 when a column stands in a set twice.
Status check_members(const SetBlock& block, int num_cols) {
  if (block.begin == nullptr) return Status();
  Vector<int> last_set(num_cols, -1);  // in which each column was seen
  Vector<double> weights;
  for (int set = 0; set < block.count; ++set) {
    const int begin = block.begin[set];
    const int end = end_of_set(block, set);
    for (int p = begin; p < end; ++p) {
      if (last_set[block.columns[p]] == set) return Status::failure(error::kDuplicateEntry);
      last_set[block.columns[p]] = set;
    }
    weights.assign(block.weights + begin, block.weights + end);
    std::sort(weights.begin(), weights.end());
    if (std::adjacent_find(weights.begin(), weights.end()) != weights.end()) {
      return Status::failure(error::kEqualWeights);
    }
  }
  return Status();
}

Status check_sets(Environment& environment, const Problem& problem, const SetBlock& block) {
  if (block.count < 0 || block.entries < 0) return Status::failure(error::kBadArgument);
  if (block.count == 0) return Status();
  KELVO_TRY(check_pointers(block.type));
  if (block.entries > 0) KELVO_TRY(check_pointers(block.begin, block.columns, block.weights));
  KELVO_TRY(check_set_types(environment, block.type, block.count));
  const DataCheck check(environment);
  KELVO_TRY(check.numbers(block.weights, block.entries));
  KELVO_TRY(check_starts(environment, block.begin, block.count, block.entries));
  KELVO_TRY(check_column_indices(environment, block.columns, block.entries, problem.num_cols()));
  KELVO_TRY(check_members(block, problem.num_cols()));
  return check.names(block.names, block.count);
}

SetBlock set_block(int count, int entries, const char* type, const int* begin, const int* columns,
                   const double* weights, const char* const* names) {
  SetBlock block;
  block.count = count;
  block.entries = entries;
  block.type = type;
  block.names = names;
  if (entries > 0) {
    block.begin = begin;
    block.columns = columns;
    block.weights = weights;
  }
  return block;
}

/// What queries of sets ask first.
Status check_has_sets(const Problem& problem) {
  if (!is_mixed_integer(problem)) return Status::failure(error::kNotMixedInteger);
  return problem.model().sos.size() > 0 ? Status() : Status::failure(error::kNoSets);
}

}  // namespace

int KLVcopysos(KLVenv env, KLVprob lp, int numsos, int numsosnz, const char* sostype,
               const int* sosbeg, const int* sosind, const double* soswt,
               const char* const* sosname) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const SetBlock block = set_block(numsos, numsosnz, sostype, sosbeg, sosind, soswt, sosname);
    KELVO_TRY(check_sets(environment, problem, block));
    SosSets sets;
    if (numsos > 0) append_sets(sets, block, problem.num_cols());
    problem.edit_model(ChangeKind::sets_deleted, [&](Model& model) { std::swap(model.sos, sets); });
    return Status();
  });
}

int KLVaddsos(KLVenv env, KLVprob lp, int numsos, int numsosnz, const char* sostype,
              const int* sosbeg, const int* sosind, const double* soswt,
              const char* const* sosname) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const SetBlock block = set_block(numsos, numsosnz, sostype, sosbeg, sosind, soswt, sosname);
    KELVO_TRY(check_sets(environment, problem, block));
    if (numsos == 0) return Status();
    problem.merge_pending();
    KELVO_TRY(check_growth(problem.model().sos.size(), numsos));
    KELVO_TRY(check_growth(problem.model().sos.members.num_nonzeros(), numsosnz));
    problem.edit_model(ChangeKind::sets,
                       [&](Model& model) { append_sets(model.sos, block, model.num_cols); });
    return Status();
  });
}

int KLVgetnumsos(KLVenv env, KLVprob lp) {
  return api_count(env, lp, 0, [](Problem& problem) { return problem.num_sets(); });
}

int KLVgetsos(KLVenv env, KLVprob lp, int* numsosnz_p, char* sostype, int* sosbeg, int* sosind,
              double* soswt, int sosspace, int* surplus_p, int begin, int end) {
  reset_counts(numsosnz_p, surplus_p);
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_sets(problem));
    const SosSets& sets = problem.model().sos;
    KELVO_TRY(check_index_range(environment, "KLVgetsos", begin, end, 0, sets.size()));
    const MatrixOutput out{{numsosnz_p, sosspace, surplus_p}, sosbeg, sosind, soswt};
    if (!out.asks_for_room()) {
      KELVO_TRY(check_pointers(sostype));
      KELVO_TRY(out.check());
      std::copy(sets.type.begin() + begin, sets.type.begin() + end + 1, sostype);
    }
    return put_lines(sets.members, out, begin, end);
  });
}

int KLVgetsosname(KLVenv env, KLVprob lp, char** name, char* namestore, int storespace,
                  int* surplus_p, int begin, int end) {
  reset_counts(nullptr, surplus_p);
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_sets(problem));
    const SosSets& sets = problem.model().sos;
    KELVO_TRY(check_index_range(environment, "KLVgetsosname", begin, end, 0, sets.size()));
    return put_names(sets.names, name, namestore, storespace, surplus_p, begin, end);
  });
}

int KLVgetsosindex(KLVenv env, KLVprob lp, const char* name, int* index_p) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_has_sets(problem));
    if (!problem.model().sos.names.present()) return Status::failure(error::kNoNames);
    KELVO_TRY(check_pointers(name, index_p));
    return put_index(problem.set_index(name), index_p);
  });
}

int KLVdelsetsos(KLVenv env, KLVprob lp, int* delset) {
  return api_edit(env, lp, [&](Environment&, Problem& problem) -> Status {
    problem.merge_pending();
    KELVO_TRY(check_has_sets(problem));
    KELVO_TRY(check_pointers(delset));
    const int count = problem.model().sos.size();
    Vector<char> keep(count);
    int kept = 0;
    for (int k = 0; k < count; ++k) {
      keep[k] = delset[k] != 1;
      delset[k] = keep[k] != 0 ? kept++ : -1;
    }
    if (kept == count) return Status();
    problem.edit_model(ChangeKind::sets_deleted,
                       [&](Model& model) { keep_sets(model.sos, keep.data()); });
    return Status();
  });
}

int KLVgetsosinfeas(KLVenv env, KLVprob lp, const double* x, double* infeasout, int begin,
                    int end) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_sets(problem));
    const SosSets& sets = problem.model().sos;
    KELVO_TRY(check_pointers(infeasout));
    KELVO_TRY(check_index_range(environment, "KLVgetsosinfeas", begin, end, 0, sets.size()));
    if (x == nullptr) KELVO_TRY(check_values(problem, Needs::primal));
    const double* const point = x != nullptr ? x : primal_values(problem).data();
    const double tolerance = environment.get_double(param::EPINT);
    for (int k = begin; k <= end; ++k) {
      infeasout[k - begin] = set_infeasibility(sets, k, point, tolerance);
    }
    return Status();
  });
}
