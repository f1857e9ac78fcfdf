// Priority order files.
#include <algorithm>

#include "api/frame/problem_frame.h"
#include "base/file_stream.h"
#include "env/params/param_numbers.h"
#include "io/order/order_file.h"
#include "io/writer_names.h"
#include "prob/data/generated_order.h"

using namespace kelvo;

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

/// Reads the file; what comes through a program counts when that has succeeded.
Status read_order_file(const char* filename, const ColumnLookup& columns, MessageSink& sink,
                       PriorityOrder& order) {
  FileStream stream;
  if (!open_input(filename, ".ord", stream).ok()) {
    return report_error(sink, error::kCannotReadFile, filename);
  }
  LineReader lines(stream);
  const Status status = read_order(lines, columns, sink, order);
  const bool closed = close_file(stream).ok();
  const bool stream_failed = status.code() == error::kCannotReadFile && !status.is_reported();
  if (stream_failed || (status.ok() && !closed)) {
    return report_error(sink, error::kCannotReadFile, filename);
  }
  return status;
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

extern "C" {

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
    if (filename == nullptr || filename[0] == '\0') return Status::failure(error::kNoFileName);
    MessageSink& sink = environment.messages();
    FileStream stream;
    if (!open_output(filename, true, stream).ok()) {
      return report_error(sink, error::kCannotWriteFile, filename);
    }
    write_order(problem.model(), order, sink, stream);
    if (close_file(stream).ok()) return {};
    return report_error(sink, error::kCannotWriteFile, filename);
  });
}

}  // extern "C"
