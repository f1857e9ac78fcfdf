// Column types, read back.
#include <algorithm>

#include "prob/api_frame_prob.h"

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

}  // namespace

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
