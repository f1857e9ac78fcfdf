#include <algorithm>

#include "io/order/order_file.h"
#include "io/writer_names.h"

namespace kelvo {
namespace {

constexpr int kNarrowestName = 18;
constexpr int kLongestName = 255;

const char* code_of(int direction) {
  switch (direction) {
    case 1:
      return "UP";
    case -1:
      return "DN";
    case 0:
      return "  ";
    default:
      return "??";
  }
}

}  // namespace

void write_order(const Model& model, const PriorityOrder& order, MessageSink& sink,
                 FileStream& stream) {
  const WrittenNames names(model.col_names, model.num_cols, 'x', false);
  if (names.generated()) {
    sink.send(Channel::warning, "Default variable names x1, x2 ... to be created.\n");
  } else if (!names.all_are_fields()) {
    sink.send(Channel::warning, "Warning:  Names with blanks cannot be read back.\n");
  }
  const int width = std::clamp(names.longest(), kNarrowestName, kLongestName);
  stream.print("NAME          %.255s   Priority Order\n", model.name.c_str());
  for (int k = 0; k < order.size(); ++k) {
    stream.print(" %s %-*.255s %12d\n", code_of(order.direction[k]), width, names[order.column[k]],
                 order.priority[k]);
  }
  stream.write("ENDATA\n");
}

}  // namespace kelvo
