#include "io/basis/basis_file.h"
#include "io/network_files/network_files.h"
#include "io/writer_names.h"
#include "prob/model/default_names.h"

namespace kelvo {

Status read_network_basis(LineReader& lines, const Network& network, MessageSink& sink,
                          NetworkBasis& basis) {
  // What the reader of basis files looks at: sizes, bounds and names.
  Model model;
  model.num_rows = network.num_nodes();
  model.num_cols = network.num_arcs();
  model.row_sense.assign(model.num_rows, 'E');
  model.rhs = network.supply;
  model.lower = network.lower;
  model.upper = network.upper;
  model.row_names = network.node_names.present() ? network.node_names
                                                 : default_names(NameKind::node, model.num_rows);
  model.col_names = network.arc_names.present() ? network.arc_names
                                                : default_names(NameKind::arc, model.num_cols);
  StoredBasis read;
  KELVO_TRY(read_basis(lines, model, sink, read));
  NetworkBasis result;
  result.present = true;
  for (const int code : read.col_status) result.arc_status.push_back(static_cast<char>(code));
  for (const int code : read.row_status) result.node_basic.push_back(code == kBasic);
  repair_basis(network, result);
  basis = std::move(result);
  return {};
}

void write_network_basis(const Network& network, const NetworkBasis& basis, int iterations,
                         FileStream& stream) {
  const WrittenNames nodes(network.node_names, network.num_nodes(), 'n', false);
  const WrittenNames arcs(network.arc_names, network.num_arcs(), 'a', false);
  stream.print("NAME          %s  Iterations %d  Rows %d  Cols %d\n",
               network.name.empty() ? "netbasis" : network.name.c_str(), iterations,
               network.num_nodes(), network.num_arcs());
  // There are as many basic arcs as nodes that are not basic: each takes the next of them.
  int node = 0;
  for (int a = 0; a < network.num_arcs(); ++a) {
    if (basis.arc_status[a] != kBasic) continue;
    while (node < network.num_nodes() && basis.node_basic[node]) ++node;
    if (node == network.num_nodes()) break;
    stream.print(" XL %-8s  %-8s\n", arcs[a], nodes[node]);
    ++node;
  }
  for (int a = 0; a < network.num_arcs(); ++a) {
    if (basis.arc_status[a] == kAtUpper) stream.print(" UL %-8s\n", arcs[a]);
  }
  stream.write("ENDATA\n");
}

}  // namespace kelvo
