#include "model_data.h"

#include <algorithm>

namespace kelvo::command {
namespace {

constexpr const char* kWhat = "cannot read the model back";

}  // namespace

ModelData read_model_data(Session& session) {
  KLVenv env = session.env();
  KLVprob problem = session.problem();
  ModelData data;
  data.num_rows = KLVgetnumrows(env, problem);
  data.num_cols = KLVgetnumcols(env, problem);
  data.sense = KLVgetobjsen(env, problem);
  const auto m = static_cast<std::size_t>(data.num_rows);
  const auto n = static_cast<std::size_t>(data.num_cols);
  // One element at least, so that no array is null.
  data.start.resize(n + 1);
  if (n > 0) {
    data.objective.resize(n);
    data.lower.resize(n);
    data.upper.resize(n);
    const int last = data.num_cols - 1;
    session.check(KLVgetobj(env, problem, data.objective.data(), 0, last), kWhat);
    session.check(KLVgetlb(env, problem, data.lower.data(), 0, last), kWhat);
    session.check(KLVgetub(env, problem, data.upper.data(), 0, last), kWhat);
    const int entries = KLVgetnumnz(env, problem);
    data.index.resize(static_cast<std::size_t>(std::max(1, entries)));
    data.value.resize(data.index.size());
    int count = 0;
    int surplus = 0;
    session.check(
        KLVgetcols(env, problem, &count, data.start.data(), data.index.data(), data.value.data(),
                   static_cast<int>(data.index.size()), &surplus, 0, last),
        kWhat);
    data.start[n] = count;
  }
  if (m > 0) {
    data.rhs.resize(m);
    data.row_sense.resize(m);
    const int last = data.num_rows - 1;
    session.check(KLVgetrhs(env, problem, data.rhs.data(), 0, last), kWhat);
    session.check(KLVgetsense(env, problem, data.row_sense.data(), 0, last), kWhat);
    if (std::find(data.row_sense.begin(), data.row_sense.end(), 'R') != data.row_sense.end()) {
      data.range.resize(m);
      session.check(KLVgetrngval(env, problem, data.range.data(), 0, last), kWhat);
    }
  }
  return data;
}

std::vector<std::string> column_names(Session& session) {
  KLVenv env = session.env();
  KLVprob problem = session.problem();
  const int count = KLVgetnumcols(env, problem);
  if (count == 0) return {};
  int surplus = 0;
  if (KLVgetcolname(env, problem, nullptr, nullptr, 0, &surplus, 0, count - 1) ==
      KLV_ERROR_NO_NAMES) {
    session.take_errors();
    return {};
  }
  std::vector<char> store(static_cast<std::size_t>(std::max(1, -surplus)));
  std::vector<char*> name(static_cast<std::size_t>(count));
  session.check(KLVgetcolname(env, problem, name.data(), store.data(),
                              static_cast<int>(store.size()), &surplus, 0, count - 1),
                "cannot read the names");
  return {name.begin(), name.end()};
}

}  // namespace kelvo::command
