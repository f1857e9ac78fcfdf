// Cliques that rows imply.
//
// In  sum_k w_k y_k <= slack  over literals y_k with weights w_k > 0 (what a row leaves when all
// other columns are at their cheapest) two literals whose weights together exceed the slack are in
// conflict. By falling weights w_0 >= w_1 >= ...: if p is the last with w_{p-1} + w_p > slack, the
// literals 0..p are a clique; each later literal i forms one with 0..q, q the last with
// w_q + w_i > slack. A row that also needs one of its literals to be true gives an equation.
//
// Atamtürk, Nemhauser, Savelsbergh (2000); detection in O(n log n) a row as in Brito, Santos
// (2021), Preprocessing and cutting planes with conflict graphs. Computers & Operations Research
// 128.
#pragma once

#include "mip/domain/domain.h"

namespace kelvo {

/// Adds the cliques of all rows of the program by the bounds of level 0, where the domain is
/// settled. Stops after `work_limit` nonzeros. Returns how many cliques and edges were added.
int add_cliques_of_rows(const Domain& domain, CliqueTable& table, double work_limit = kInf);

/// Records  literal true => consequence  where it belongs: an edge when the consequence is a
/// literal as well, else an implication. Weaker than the global bound: nothing.
void add_implication(const Domain& domain, int literal, const BoundLiteral& consequence,
                     CliqueTable& cliques, ImplicationTable& implications);

}  // namespace kelvo
