// MIP starts: data that guide the search of a mixed-integer problem.
#include "prob/data/mip_starts.h"

#include <algorithm>
#include <utility>

#include "api/frame/output.h"
#include "api/frame/problem_frame.h"
#include "prob/data/data_check.h"
#include "prob/solution_access.h"

namespace kelvo {
namespace {

/// Several starts as a caller's arrays. Start k has the entries begin[k] .. begin[k + 1] - 1, the
/// last one those up to `entries`.
struct StartBlock {
  int count = 0;
  int entries = 0;
  const int* begin = nullptr;
  const int* columns = nullptr;
  const double* values = nullptr;
  const int* efforts = nullptr;  // null: automatic

  int first(int k) const { return entries > 0 ? begin[k] : 0; }
  int end(int k) const { return k + 1 < count ? first(k + 1) : entries; }
};

/// 1222 when a start gives a column two values.
Status check_distinct(const StartBlock& block, int num_cols) {
  Vector<int> last_start(num_cols, -1);  // in which each column was seen
  for (int k = 0; k < block.count; ++k) {
    for (int p = block.first(k); p < block.end(k); ++p) {
      int& last = last_start[block.columns[p]];
      if (last == k) return Status::failure(error::kDuplicateEntry);
      last = k;
    }
  }
  return Status();
}

Status check_starts(Environment& environment, const Problem& problem, const StartBlock& block) {
  if (!is_mixed_integer(problem)) return Status::failure(error::kNotMixedInteger);
  if (block.count < 0 || block.entries < 0) return Status::failure(error::kBadArgument);
  if (block.count == 0) return Status();
  if (block.entries > 0) KELVO_TRY(check_pointers(block.begin, block.columns, block.values));
  const DataCheck check(environment);
  if (block.entries > 0) {
    KELVO_TRY(check.numbers(block.values, block.entries));
    KELVO_TRY(check_starts(environment, block.begin, block.count, block.entries));
    KELVO_TRY(check_column_indices(environment, block.columns, block.entries, problem.num_cols()));
    KELVO_TRY(check_distinct(block, problem.num_cols()));
  }
  const bool negative =
      block.efforts != nullptr && std::any_of(block.efforts, block.efforts + block.count,
                                              [](int effort) { return effort < kEffortAutomatic; });
  return negative ? Status::failure(error::kBadArgument) : Status();
}

MipStart make_start(const StartBlock& block, int k) {
  MipStart start;
  if (block.efforts != nullptr) start.effort = block.efforts[k];
  if (block.end(k) > block.first(k)) {
    start.column.assign(block.columns + block.first(k), block.columns + block.end(k));
    start.value.assign(block.values + block.first(k), block.values + block.end(k));
  }
  return start;
}

/// What functions on starts that must be there ask first.
Status check_has_starts(const Problem& problem) {
  if (!is_mixed_integer(problem)) return Status::failure(error::kNotMixedInteger);
  return problem.mip_starts.size() > 0 ? Status() : Status::failure(error::kNoMipStart);
}

/// Replaces the values of starts `which`; of several entries for one start the last counts. Names
/// stay, and so do the effort levels when none are given.
void replace_starts(MipStartSet& set, const int* which, const StartBlock& block) {
  Vector<MipStart> fresh;
  fresh.reserve(block.count);
  for (int k = 0; k < block.count; ++k) fresh.push_back(make_start(block, k));
  for (int k = 0; k < block.count; ++k) {
    MipStart& start = set.start[which[k]];
    start.column.swap(fresh[k].column);
    start.value.swap(fresh[k].value);
    if (block.efforts != nullptr) start.effort = fresh[k].effort;
  }
}

StartBlock single_start(int count, const int* indices, const double* values) {
  static constexpr int kFirstEntry = 0;
  return {1, count, &kFirstEntry, indices, values, nullptr};
}

/// Fills the arrays with the entries of starts begin..end; beg and effort may be null.
Status put_starts(const MipStartSet& set, const OutputRoom& out, int* beg, int* indices,
                  double* values, int* effort, int begin, int end) {
  const MatrixOutput matrix{out, beg, indices, values};
  const std::int64_t total = set.num_entries(begin, end);
  if (out.asks_for_room()) return matrix.room(total, end - begin + 1);
  KELVO_TRY(matrix.check());
  std::int64_t position = 0;
  for (int k = begin; k <= end; ++k) {
    const MipStart& start = set.start[k];
    matrix.start_line(k - begin, position);
    if (effort != nullptr) effort[k - begin] = start.effort;
    for (int p = 0; p < start.size(); ++p) matrix.put(position++, start.column[p], start.value[p]);
  }
  return matrix.finish(total);
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVaddmipstarts(KLVenv env, KLVprob lp, int mcnt, int nzcnt, const int* beg,
                    const int* varindices, const double* values, const int* effortlevel,
                    const char* const* mipstartname) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const StartBlock block{mcnt, nzcnt, beg, varindices, values, effortlevel};
    KELVO_TRY(check_starts(environment, problem, block));
    KELVO_TRY(DataCheck(environment).names(mipstartname, mcnt));
    KELVO_TRY(check_growth(problem.mip_starts.size(), mcnt));
    Vector<MipStart> added;
    added.reserve(mcnt);
    for (int k = 0; k < mcnt; ++k) {
      added.push_back(make_start(block, k));
      if (mipstartname != nullptr && mipstartname[k] != nullptr) added[k].name = mipstartname[k];
    }
    problem.mip_starts.append(std::move(added));
    return Status();
  });
}

int KLVchgmipstarts(KLVenv env, KLVprob lp, int mcnt, const int* mipstartindices, int nzcnt,
                    const int* beg, const int* varindices, const double* values,
                    const int* effortlevel) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const StartBlock block{mcnt, nzcnt, beg, varindices, values, effortlevel};
    KELVO_TRY(check_starts(environment, problem, block));
    if (mcnt == 0) return Status();
    KELVO_TRY(check_pointers(mipstartindices));
    for (int k = 0; k < mcnt; ++k) {
      const int which = mipstartindices[k];
      if (which < 0 || which >= problem.mip_starts.size()) {
        return Status::failure(error::kIndexRange);
      }
    }
    replace_starts(problem.mip_starts, mipstartindices, block);
    return Status();
  });
}

int KLVcopymipstart(KLVenv env, KLVprob lp, int cnt, const int* indices, const double* values) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const StartBlock block = single_start(cnt, indices, values);
    KELVO_TRY(check_starts(environment, problem, block));
    MipStartSet fresh;
    Vector<MipStart> only;
    only.push_back(make_start(block, 0));
    fresh.append(std::move(only));
    problem.mip_starts = std::move(fresh);
    return Status();
  });
}

int KLVchgmipstart(KLVenv env, KLVprob lp, int cnt, const int* indices, const double* values) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const StartBlock block = single_start(cnt, indices, values);
    KELVO_TRY(check_starts(environment, problem, block));
    KELVO_TRY(check_has_starts(problem));
    constexpr int kFirst = 0;
    replace_starts(problem.mip_starts, &kFirst, block);
    return Status();
  });
}

int KLVgetnummipstarts(KLVenv env, KLVprob lp) {
  return api_count(env, lp, 0, [](Problem& problem) { return problem.mip_starts.size(); });
}

int KLVgetmipstarts(KLVenv env, KLVprob lp, int* nzcnt_p, int* beg, int* varindices, double* values,
                    int* effortlevel, int startspace, int* surplus_p, int begin, int end) {
  reset_counts(nzcnt_p, surplus_p);
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_starts(problem));
    const MipStartSet& set = problem.mip_starts;
    KELVO_TRY(check_index_range(environment, "KLVgetmipstarts", begin, end, 0, set.size()));
    return put_starts(set, {nzcnt_p, startspace, surplus_p}, beg, varindices, values, effortlevel,
                      begin, end);
  });
}

int KLVgetmipstart(KLVenv env, KLVprob lp, int* cnt_p, int* indices, double* values, int startspace,
                   int* surplus_p) {
  reset_counts(cnt_p, surplus_p);
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_has_starts(problem));
    int first_entry = 0;
    return put_starts(problem.mip_starts, {cnt_p, startspace, surplus_p}, &first_entry, indices,
                      values, nullptr, 0, 0);
  });
}

int KLVgetmipstartname(KLVenv env, KLVprob lp, char** name, char* namestore, int storespace,
                       int* surplus_p, int begin, int end) {
  reset_counts(nullptr, surplus_p);
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_starts(problem));
    const MipStartSet& set = problem.mip_starts;
    KELVO_TRY(check_index_range(environment, "KLVgetmipstartname", begin, end, 0, set.size()));
    NameStore names;
    names.create();
    for (int k = begin; k <= end; ++k) names.append(set.start[k].name);
    return put_names(names, name, namestore, storespace, surplus_p, 0, end - begin);
  });
}

int KLVgetmipstartindex(KLVenv env, KLVprob lp, const char* name, int* index_p) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_has_starts(problem));
    KELVO_TRY(check_pointers(name, index_p));
    return put_index(problem.mip_starts.find(name), index_p);
  });
}

int KLVdelmipstarts(KLVenv env, KLVprob lp, int begin, int end) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_starts(problem));
    const int count = problem.mip_starts.size();
    KELVO_TRY(check_index_range(environment, "KLVdelmipstarts", begin, end, 0, count));
    auto& starts = problem.mip_starts.start;
    starts.erase(starts.begin() + begin, starts.begin() + (end + 1));
    return Status();
  });
}

int KLVdelsetmipstarts(KLVenv env, KLVprob lp, int* delset) {
  return api_edit(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_has_starts(problem));
    KELVO_TRY(check_pointers(delset));
    const int count = problem.mip_starts.size();
    Vector<char> keep(count);
    int kept = 0;
    for (int k = 0; k < count; ++k) {
      keep[k] = delset[k] != 1;
      delset[k] = keep[k] != 0 ? kept++ : -1;
    }
    problem.mip_starts.keep_marked(keep.data());
    return Status();
  });
}
