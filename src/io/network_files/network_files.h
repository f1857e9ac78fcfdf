// Network files in two formats; the content decides which one a file is read as.
//
// Numbered (".min"): lines that begin with a letter.
//   c ...                           a comment
//   p min NODES ARCS                the sizes; lines before it are skipped
//   s max                           the objective sense; minimize without such a line
//   n NODE SUPPLY                   the supply of a node, counted from 1
//   a FROM TO LOWER UPPER COST      an arc
//
// Sectioned (".net"):
//   MINIMIZE NETWORK name           or MAXIMIZE
//   SUPPLY                          node : number
//   ARCS                            arc : node -> node
//   OBJECTIVE                       arc : number
//   BOUNDS                          arc = number, arc free, number <= arc, number <= arc <= number
//   ENDNETWORK
//
// Keywords may be written in small letters, the sections may come in any order as long as an arc is
// defined before it is named, and blanks around ":", "->", "=" and "<=" may be left out where the
// names leave no doubt. Nodes are numbered as they appear. A later definition of the same thing
// counts, with a warning.
#pragma once

#include "base/file_stream.h"
#include "base/line_reader.h"
#include "base/messages.h"
#include "base/status.h"
#include "prob/network/network.h"

namespace kelvo {

/// Reads either format into `network`, which was empty. Errors: 1530, 1531, 1532, 1537 (reported),
/// 1538, and 1423 not reported (the stream failed). Throws std::bad_alloc.
Status read_network(LineReader& lines, MessageSink& sink, Network& network);

/// The two formats by themselves.
Status read_numbered_network(LineReader& lines, MessageSink& sink, Network& network);
Status read_sectioned_network(LineReader& lines, MessageSink& sink, Network& network);

/// Writes the numbered format. Numbers have six digits; those that lose some are counted in a
/// warning.
void write_numbered_network(const Network& network, MessageSink& sink, FileStream& stream);

/// Writes the sectioned format; nodes and arcs without names get default ones, which is announced.
/// Throws std::bad_alloc.
void write_sectioned_network(const Network& network, MessageSink& sink, FileStream& stream);

/// Reads a basis file for a network (arcs as columns, nodes as rows), as read_basis() does for a
/// model. Throws std::bad_alloc.
Status read_network_basis(LineReader& lines, const Network& network, MessageSink& sink,
                          NetworkBasis& basis);

/// Writes a basis. Throws std::bad_alloc.
void write_network_basis(const Network& network, const NetworkBasis& basis, int iterations,
                         FileStream& stream);

}  // namespace kelvo
