/* Kelvo: mathematical-programming solver, the public C interface.
 *
 * Every function takes the environment first and returns 0 or an error code; functions that return
 * a value say what they return on failure. Indices and counts are 32-bit integers counted from 0.
 * A bound or right-hand side of magnitude 1e20 or more is infinite.
 */
#ifndef KELVO_H
#define KELVO_H

#include <stddef.h>
#include <stdio.h>

#if defined(KELVO_BUILDING)
#define KLV_API __attribute__((visibility("default")))
#else
#define KLV_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Opaque handles. */
typedef struct klv_env* KLVenv;
typedef struct klv_prob* KLVprob;
typedef struct klv_channel* KLVchannel;

/* ---- Environment, channels, errors ------------------------------------------------------- */

/* ---- Parameters -------------------------------------------------------------------------- */

/* ---- Callbacks and termination ----------------------------------------------------------- */

/* ---- Problem objects: creation and modification ------------------------------------------ */

/* ---- Problem objects: query --------------------------------------------------------------- */

/* ---- Files ---------------------------------------------------------------------------------- */

/* ---- Optimizers ------------------------------------------------------------------------------ */

/* ---- Solutions ------------------------------------------------------------------------------*/

#ifdef __cplusplus
}
#endif

#endif
