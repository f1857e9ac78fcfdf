// Fuzz target: any bytes as a priority order file. The reader must end with an order of different
// columns or with an error that leaves the order alone.

#include "fuzz_support.h"
#include "io/order/order_file.h"

namespace {

constexpr std::string_view kNames[] = {"x", "y", "long_name"};

class FewColumns final : public kelvo::ColumnLookup {
 public:
  int find(std::string_view name) const override {
    for (int j = 0; j < num_columns(); ++j) {
      if (name == kNames[j]) return j;
    }
    return -1;
  }
  int num_columns() const override { return 3; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kelvo::LineReader lines(as_text(data, size));
  kelvo::SilentSink sink;
  kelvo::PriorityOrder order;
  if (!kelvo::read_order(lines, FewColumns(), sink, order).ok()) {
    require(order.size() == 0);
    return 0;
  }
  bool listed[3] = {};
  require(order.priority.size() == order.column.size());
  require(order.direction.size() == order.column.size());
  for (int k = 0; k < order.size(); ++k) {
    const int column = order.column[k];
    require(column >= 0 && column < 3 && !listed[column]);
    listed[column] = true;
    require(order.priority[k] >= 0 && order.priority[k] <= kelvo::kLargestPriority);
    require(order.direction[k] >= -1 && order.direction[k] <= 1);
  }
  return 0;
}
