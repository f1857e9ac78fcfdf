// User cuts and lazy constraints: rows that the search may use, or has to keep, without being rows
// of the matrix.
#include "api/frame/problem_frame.h"
#include "prob/data/data_check.h"
#include "prob/model/model_edit.h"

using namespace kelvo;

namespace {

using Pool = ExtraRows Model::*;

Status check_rows(Environment& environment, const Problem& problem, const ExtraRows& present,
                  const RowBlock& block) {
  if (block.entries > 0) KELVO_TRY(check_pointers(block.begin, block.columns, block.values));
  KELVO_TRY(check_growth(present.size(), block.count));
  KELVO_TRY(check_growth(present.rows.num_nonzeros(), block.entries));
  KELVO_TRY(check_unranged_senses(environment, block.sense, block.count));
  const DataCheck check(environment);
  KELVO_TRY(check.numbers(block.rhs, block.count));
  KELVO_TRY(check.numbers(block.values, block.entries));
  KELVO_TRY(check_starts(environment, block.begin, block.count, block.entries));
  KELVO_TRY(check_column_indices(environment, block.columns, block.entries, problem.num_cols()));
  return check.names(block.names, block.count);
}

int add_rows(KLVenv env, KLVprob lp, Pool pool, NameKind kind, RowBlock block, int nzcnt) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (block.count < 0 || nzcnt < 0) return Status::failure(error::kBadArgument);
    if (block.count == 0) return Status();
    if (nzcnt > 0) {
      block.entries = nzcnt;
    } else {
      block.begin = nullptr;
    }
    problem.merge_pending();
    KELVO_TRY(check_rows(environment, problem, problem.model().*pool, block));
    problem.edit_model(ChangeKind::cuts, [&](Model& model) {
      append_extra_rows(model.*pool, kind, block, model.num_cols);
    });
    return Status();
  });
}

RowBlock row_block(int count, const double* rhs, const char* sense, const int* begin,
                   const int* columns, const double* values, const char* const* names) {
  RowBlock block;
  block.count = count;
  block.rhs = rhs;
  block.sense = sense;
  block.begin = begin;
  block.columns = columns;
  block.values = values;
  block.names = names;
  return block;
}

int free_rows(KLVenv env, KLVprob lp, Pool pool) {
  return api_edit(env, lp, [&](Environment&, Problem& problem) {
    problem.merge_pending();
    if ((problem.model().*pool).size() > 0) {
      problem.edit_model(ChangeKind::cuts, [&](Model& model) { clear(model.*pool); });
    }
    return Status();
  });
}

int count_rows(KLVenv env, KLVprob lp, Pool pool) {
  int count = 0;
  const int code = api_read(env, lp, [&](Environment&, Problem& problem) {
    count = (problem.model().*pool).size();
    return Status();
  });
  return code == 0 ? count : 0;
}

}  // namespace

int KLVaddusercuts(KLVenv env, KLVprob lp, int rcnt, int nzcnt, const double* rhs,
                   const char* sense, const int* rmatbeg, const int* rmatind, const double* rmatval,
                   const char* const* rowname) {
  return add_rows(env, lp, &Model::user_cuts, NameKind::user_cut,
                  row_block(rcnt, rhs, sense, rmatbeg, rmatind, rmatval, rowname), nzcnt);
}

int KLVaddlazyconstraints(KLVenv env, KLVprob lp, int rcnt, int nzcnt, const double* rhs,
                          const char* sense, const int* rmatbeg, const int* rmatind,
                          const double* rmatval, const char* const* rowname) {
  return add_rows(env, lp, &Model::lazy_constraints, NameKind::lazy_constraint,
                  row_block(rcnt, rhs, sense, rmatbeg, rmatind, rmatval, rowname), nzcnt);
}

int KLVfreeusercuts(KLVenv env, KLVprob lp) {
  return free_rows(env, lp, &Model::user_cuts);
}

int KLVfreelazyconstraints(KLVenv env, KLVprob lp) {
  return free_rows(env, lp, &Model::lazy_constraints);
}

int KLVgetnumusercuts(KLVenv env, KLVprob lp) {
  return count_rows(env, lp, &Model::user_cuts);
}

int KLVgetnumlazyconstraints(KLVenv env, KLVprob lp) {
  return count_rows(env, lp, &Model::lazy_constraints);
}
