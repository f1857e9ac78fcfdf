// The priority order of the search and its files.
#include <algorithm>

#include "api/frame/output.h"
#include "api/frame/problem_frame.h"
#include "api/frame/text_file.h"
#include "env/params/param_numbers.h"
#include "io/order/order_file.h"
#include "io/writer_names.h"
#include "prob/data/data_check.h"
#include "prob/data/generated_order.h"
#include "prob/model/model_edit.h"
#include "prob/solution_access.h"

namespace kelvo {
namespace {

/// An array of names as a store.
struct NameArray {
  const char* const* names;
  std::string_view view(int i) const { return names[i]; }
};

template <class Names>
class IndexedColumns final : public ColumnLookup {
 public:
  IndexedColumns(const Names& names, int count) : names_(names), count_(count) {
    index_.build(names, count);
  }
  int find(std::string_view name) const override { return index_.find(name, names_); }
  int num_columns() const override { return count_; }

 private:
  const Names& names_;
  const int count_;
  NameIndex index_;
};

Status read_order_file(const char* filename, const ColumnLookup& columns, MessageSink& sink,
                       PriorityOrder& order) {
  return read_text_file(filename, ".ord", sink,
                        [&](LineReader& lines) { return read_order(lines, columns, sink, order); });
}

/// Columns that an edit or another file put into the stored order are all in range; the one that is
/// written is it, or the generated one.
Status order_to_write(Environment& environment, const Model& model, PriorityOrder& order) {
  if (model.order.size() > 0) {
    order = model.order;
    return {};
  }
  const int rule = environment.get_int(param::MIPORDTYPE);
  if (rule <= 0) return Status::failure(error::kNoOrder);
  order = generate_order(model, static_cast<OrderRule>(rule));
  return {};
}

}  // namespace
}  // namespace kelvo

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

int KLVordread(KLVenv env, const char* filename, int numcols, char* const* colnames, int* cnt_p,
               int* indices, int* priority, int* direction) {
  return api_env(env, [&](Environment& environment) -> Status {
    if (cnt_p != nullptr) *cnt_p = 0;
    KELVO_TRY(check_pointers(filename, cnt_p, indices, priority, direction));
    if (colnames == nullptr) return Status::failure(error::kNoNames);
    if (numcols < 0) return Status::failure(error::kBadArgument);
    for (int j = 0; j < numcols; ++j) {
      if (colnames[j] == nullptr) return report(environment, error::kNullName, j);
    }
    const NameArray names{colnames};
    const IndexedColumns<NameArray> columns(names, numcols);
    PriorityOrder order;
    KELVO_TRY(read_order_file(filename, columns, environment.messages(), order));
    std::copy(order.column.begin(), order.column.end(), indices);
    std::copy(order.priority.begin(), order.priority.end(), priority);
    std::copy(order.direction.begin(), order.direction.end(), direction);
    *cnt_p = order.size();
    return {};
  });
}

int KLVreadcopyorder(KLVenv env, KLVprob lp, const char* filename) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(filename));
    problem.merge_pending();
    const Model& model = problem.model();
    const WrittenNames names(model.col_names, model.num_cols, 'x', false);
    const IndexedColumns<WrittenNames> columns(names, model.num_cols);
    PriorityOrder order;
    KELVO_TRY(read_order_file(filename, columns, environment.messages(), order));
    if (order.size() == 0) {
      environment.messages().send(Channel::warning,
                                  "Warning:  No priority order values read or loaded.\n");
      return {};
    }
    if (!is_mixed_integer_type(problem.type())) return Status::failure(error::kNotMixedInteger);
    problem.edit_model(ChangeKind::priority_order,
                       [&](Model& edited) { edited.order = std::move(order); });
    return {};
  });
}

int KLVordwrite(KLVenv env, KLVprob lp, const char* filename) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (!is_mixed_integer_type(problem.type())) return Status::failure(error::kNotMixedInteger);
    PriorityOrder order;
    KELVO_TRY(order_to_write(environment, problem.model(), order));
    KELVO_TRY(check_file_name(filename));
    MessageSink& sink = environment.messages();
    return write_text_file(filename, sink, [&](FileStream& stream) {
      write_order(problem.model(), order, sink, stream);
    });
  });
}
