// Proofs from the multipliers of an LP.
//
// For any y the rows  A x + s = 0  give the identity  (A'y)'x + y's = 0.  When the LP is
// infeasible, its dual ray makes the largest value of the left-hand side negative (or of its
// negation: the identity has no direction). When its bound reaches the cutoff, so does, with the
// dual solution,
//     (c - A'y)'x - y's <= cutoff - offset,
// an inequality that every better solution satisfies. Neither relies on the LP having been solved
// exactly: what is wrong with y costs strength, not validity.
//
// Logicals are replaced by the global limits of their rows where these are finite, so that the
// proof is a row over columns; others, those of indicators, stay.
#pragma once

#include "mip/domain/domain.h"

namespace kelvo {

/// The identity for `ray` [num_rows], in the direction that the domain's bounds contradict, as far
/// as they do.
LinearProof farkas_proof(const Domain& domain, const Vector<double>& ray);

/// The inequality for the row multipliers `duals` [num_rows] of a minimization and a cutoff.
LinearProof bound_proof(const Domain& domain, const Vector<double>& duals, double cutoff);

/// Keeps a proof as a row of the domain, for propagation elsewhere. -1 when it is too long, speaks
/// of logicals, or has coefficients too far apart to be propagated safely; otherwise the row's
/// number.
int add_proof_row(Domain& domain, const LinearProof& proof);

}  // namespace kelvo
