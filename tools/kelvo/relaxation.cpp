#include "relaxation.h"

#include <algorithm>
#include <vector>

#include "failure.h"
#include "model_data.h"

namespace kelvo::command {
namespace {

// Types of problems, as the library numbers them.
constexpr int kMixedIntegerLinear = 1;
constexpr int kMixedIntegerQuadratic = 7;
constexpr int kMixedIntegerQuadraticallyConstrained = 11;

std::vector<const char*> pointers(const std::vector<std::string>& names) {
  std::vector<const char*> result;
  for (const std::string& name : names) result.push_back(name.c_str());
  return result;
}

template <class T>
const T* data_or_null(const std::vector<T>& values) {
  return values.empty() ? nullptr : values.data();
}

/// The values that a semi-continuous column can take are 0 and those between its bounds; without
/// the gap its bounds reach to 0.
void widen_to_zero(Session& session, ModelData& data) {
  if (data.num_cols == 0) return;
  std::vector<char> types(data.lower.size());
  session.check(KLVgetctype(session.env(), session.problem(), types.data(), 0, data.num_cols - 1),
                "cannot read the column types");
  for (std::size_t j = 0; j < types.size(); ++j) {
    if (types[j] != 'S' && types[j] != 'N') continue;
    data.lower[j] = std::min(data.lower[j], 0.0);
    data.upper[j] = std::max(data.upper[j], 0.0);
  }
}

}  // namespace

bool is_mixed_integer(const Session& session) {
  const int type = KLVgetprobtype(session.env(), session.problem());
  return type == kMixedIntegerLinear || type == kMixedIntegerQuadratic ||
         type == kMixedIntegerQuadraticallyConstrained;
}

void relax(Session& session) {
  if (!is_mixed_integer(session)) return;
  if (KLVgetprobtype(session.env(), session.problem()) != kMixedIntegerLinear) {
    throw Failure("--relax: this version cannot take over the quadratic parts");
  }
  ModelData data = read_model_data(session);
  widen_to_zero(session, data);
  const std::vector<std::string> columns = column_names(session);
  const std::vector<std::string> rows = row_names(session);
  const std::vector<const char*> column_pointers = pointers(columns);
  const std::vector<const char*> row_pointers = pointers(rows);
  std::vector<int> count(data.start.size());
  for (std::size_t j = 0; j + 1 < data.start.size(); ++j)
    count[j] = data.start[j + 1] - data.start[j];

  int status = 0;
  KLVprob relaxed = KLVcreateprob(session.env(), &status, problem_name(session).c_str());
  session.check(status, "cannot create a problem");
  status = KLVcopylpwnames(
      session.env(), relaxed, data.num_cols, data.num_rows, data.sense,
      data_or_null(data.objective), data_or_null(data.rhs), data_or_null(data.row_sense),
      data.start.data(), count.data(), data_or_null(data.index), data_or_null(data.value),
      data_or_null(data.lower), data_or_null(data.upper), data_or_null(data.range),
      data_or_null(column_pointers), data_or_null(row_pointers));
  if (const std::string name = objective_name(session); status == 0 && !name.empty()) {
    status = KLVcopyobjname(session.env(), relaxed, name.c_str());
  }
  if (status != 0) KLVfreeprob(session.env(), &relaxed);
  session.check(status, "cannot drop the discrete parts");
  session.replace_problem(relaxed);
}

}  // namespace kelvo::command
