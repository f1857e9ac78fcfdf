// Changing names, reading them, and finding rows and columns by name.
#include "api/frame/output.h"
#include "api/frame/problem_frame.h"
#include "prob/data/data_check.h"

using namespace kelvo;

namespace {

int rename_rows(KLVenv env, KLVprob lp, int count, const int* indices, const char* const* names) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (count < 0) return Status::failure(error::kBadArgument);
    if (count == 0) return Status();
    KELVO_TRY(check_pointers(indices, names));
    KELVO_TRY(check_row_indices(environment, indices, count, problem.num_rows()));
    KELVO_TRY(check_no_null_name(environment, names, count));
    problem.rename_rows(indices, names, count);
    return Status();
  });
}

int rename_columns(KLVenv env, KLVprob lp, int count, const int* indices,
                   const char* const* names) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (count < 0) return Status::failure(error::kBadArgument);
    if (count == 0) return Status();
    KELVO_TRY(check_pointers(indices, names));
    KELVO_TRY(check_column_indices(environment, indices, count, problem.num_cols()));
    KELVO_TRY(check_no_null_name(environment, names, count));
    problem.rename_columns(indices, names, count);
    return Status();
  });
}

}  // namespace

int KLVchgname(KLVenv env, KLVprob lp, int key, int index, const char* name) {
  if (name != nullptr && key == 'r') return rename_rows(env, lp, 1, &index, &name);
  if (name != nullptr && key == 'c') return rename_columns(env, lp, 1, &index, &name);
  return api_edit(env, lp, [&](Environment&, Problem&) { return check_pointers(name); });
}

int KLVchgrowname(KLVenv env, KLVprob lp, int cnt, const int* indices, const char* const* names) {
  return rename_rows(env, lp, cnt, indices, names);
}

int KLVchgcolname(KLVenv env, KLVprob lp, int cnt, const int* indices, const char* const* names) {
  return rename_columns(env, lp, cnt, indices, names);
}

int KLVchgprobname(KLVenv env, KLVprob lp, const char* name) {
  return api_edit(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(name));
    problem.change_name(name);
    return Status();
  });
}

int KLVcopyobjname(KLVenv env, KLVprob lp, const char* name) {
  return api_edit(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(name));
    problem.change_objective_name(name);
    return Status();
  });
}

int KLVdelnames(KLVenv env, KLVprob lp) {
  return api_edit(env, lp, [&](Environment&, Problem& problem) {
    problem.delete_names();
    return Status();
  });
}

int KLVgetrowname(KLVenv env, KLVprob lp, char** name, char* namestore, int storespace,
                  int* surplus_p, int begin, int end) {
  if (surplus_p != nullptr) *surplus_p = 0;
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_index_range(environment, "KLVgetrowname", begin, end, 0, problem.num_rows()));
    return put_names(problem.model().row_names, name, namestore, storespace, surplus_p, begin, end);
  });
}

int KLVgetcolname(KLVenv env, KLVprob lp, char** name, char* namestore, int storespace,
                  int* surplus_p, int begin, int end) {
  if (surplus_p != nullptr) *surplus_p = 0;
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_index_range(environment, "KLVgetcolname", begin, end, 0, problem.num_cols()));
    return put_names(problem.model().col_names, name, namestore, storespace, surplus_p, begin, end);
  });
}

int KLVgetprobname(KLVenv env, KLVprob lp, char* buffer, int space, int* surplus_p) {
  if (surplus_p != nullptr) *surplus_p = 0;
  return api_read(env, lp, [&](Environment&, Problem& problem) {
    return put_text(problem.model().name, buffer, space, surplus_p);
  });
}

int KLVgetobjname(KLVenv env, KLVprob lp, char* buffer, int space, int* surplus_p) {
  if (surplus_p != nullptr) *surplus_p = 0;
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (!problem.model().has_objective_name) return Status::failure(error::kNoNames);
    return put_text(problem.model().objective_name, buffer, space, surplus_p);
  });
}

int KLVgetrowindex(KLVenv env, KLVprob lp, const char* name, int* index_p) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (!problem.model().row_names.present()) return Status::failure(error::kNoNames);
    KELVO_TRY(check_pointers(name, index_p));
    return put_index(problem.row_index(name), index_p);
  });
}

int KLVgetcolindex(KLVenv env, KLVprob lp, const char* name, int* index_p) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (!problem.model().col_names.present()) return Status::failure(error::kNoNames);
    KELVO_TRY(check_pointers(name, index_p));
    return put_index(problem.column_index(name), index_p);
  });
}
