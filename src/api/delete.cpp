// Deleting rows and columns.
#include "api/frame/problem_frame.h"

using namespace kelvo;

namespace {

enum class Item { row, column };

int count_of(const Problem& problem, Item item) {
  return item == Item::row ? problem.num_rows() : problem.num_cols();
}

/// Deletes what new_index marks with -1; the others hold their new indices.
void delete_marked(Environment& environment, Problem& problem, Item item, const int* new_index) {
  if (item == Item::row) {
    problem.delete_rows(new_index);
    return;
  }
  problem.merge_pending();
  // Cuts refer to columns by index, so they cannot stay.
  const bool had_user_cuts = problem.model().user_cuts.size() > 0;
  const bool had_lazy_constraints = problem.model().lazy_constraints.size() > 0;
  problem.delete_columns(new_index);
  MessageSink& sink = environment.messages();
  if (had_user_cuts) {
    sink.send(Channel::warning, "Warning:  User cuts freed during column deletion.\n");
  }
  if (had_lazy_constraints) {
    sink.send(Channel::warning, "Warning:  Lazy constraints freed during column deletion.\n");
  }
}

int delete_range(KLVenv env, KLVprob lp, const char* function, Item item, int begin, int end) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const int n = count_of(problem, item);
    KELVO_TRY(check_index_range(environment, function, begin, end, 0, n));
    if (begin > end) return Status();
    Vector<int> new_index(n);
    for (int k = 0; k < n; ++k) {
      new_index[k] = k < begin ? k : (k <= end ? -1 : k - (end - begin + 1));
    }
    delete_marked(environment, problem, item, new_index.data());
    return Status();
  });
}

int delete_set(KLVenv env, KLVprob lp, Item item, int* delstat) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(delstat));
    problem.merge_pending();
    const int n = count_of(problem, item);
    int kept = 0;
    for (int k = 0; k < n; ++k) delstat[k] = delstat[k] == 1 ? -1 : kept++;
    if (kept < n) delete_marked(environment, problem, item, delstat);
    return Status();
  });
}

}  // namespace

int KLVdelrows(KLVenv env, KLVprob lp, int begin, int end) {
  return delete_range(env, lp, "KLVdelrows", Item::row, begin, end);
}

int KLVdelcols(KLVenv env, KLVprob lp, int begin, int end) {
  return delete_range(env, lp, "KLVdelcols", Item::column, begin, end);
}

int KLVdelsetrows(KLVenv env, KLVprob lp, int* delstat) {
  return delete_set(env, lp, Item::row, delstat);
}

int KLVdelsetcols(KLVenv env, KLVprob lp, int* delstat) {
  return delete_set(env, lp, Item::column, delstat);
}
