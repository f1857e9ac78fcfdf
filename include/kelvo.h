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

/* Checks printf formats where the compiler can. */
#if defined(__GNUC__)
#define KLV_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define KLV_PRINTF(text, first)
#endif

/* Opens an environment with all parameters at their defaults. If the environment variable
 * ZEPH_KELVO_PARAMETER_FILE names a parameter file, it is applied; a failure to read it does not
 * make the open fail. *status_p (required) receives 0, or 1001 when there is no memory, and then
 * the result is null. */
KLV_API KLVenv KLVopenKELVO(int* status_p);

/* Frees every object of the environment (problems, network problems, extra channels, child
 * environments), then the environment, and sets *env_p to null. 1002 for an invalid environment,
 * 1021 for a child environment, which stays open. */
KLV_API int KLVcloseKELVO(KLVenv* env_p);

/* Makes a child environment that starts with a copy of the parent's settings and has channels of
 * its own. On failure the result is null and *status_p (required) receives 1019 when env is itself
 * a child, 1020 when env has as many children as it may have, or 1001. */
KLV_API KLVenv KLVparenv(KLVenv env, int* status_p);

/* Frees the child environment *child_p and everything created in it and sets *child_p to null. A
 * null *child_p is accepted. 1003 when it is no child of env. */
KLV_API int KLVfreeparenv(KLVenv env, KLVenv* child_p);

/* The version of the library, for example "12.1.0"; null for an invalid environment. */
KLV_API const char* KLVversion(KLVenv env);

/* Writes the line of an error code, "KELVO Error  1001: Out of memory.\n", into buffer (at least
 * 1024 characters) and returns buffer; null for a code without a text. env may be null. */
KLV_API char* KLVgeterrorstring(KLVenv env, int code, char* buffer);

/* Stores the standard channels of the environment through those pointers that are not null. */
KLV_API int KLVgetchannels(KLVenv env, KLVchannel* results_p, KLVchannel* warning_p,
                           KLVchannel* error_p, KLVchannel* log_p);

/* Flushes the files of the results, log, error and warning channels, in that order. */
KLV_API int KLVflushstdchannels(KLVenv env);

/* A function that receives the messages of a channel: the handle it was attached with, and the
 * text, which is valid during the call. */
typedef void (*KLVmsgfunction)(void* handle, const char* text);

/* Makes a channel without destinations; null on failure. It is freed with the environment unless
 * KLVdelchannel frees it before. */
KLV_API KLVchannel KLVaddchannel(KLVenv env);

/* Frees a channel made by KLVaddchannel, flushing its files, and sets *channel_p to null. Does
 * nothing for an invalid environment, a null channel or one of the standard channels. */
KLV_API void KLVdelchannel(KLVenv env, KLVchannel* channel_p);

/* Flushes the files of a channel and removes all its destinations. */
KLV_API void KLVdisconnectchannel(KLVenv env, KLVchannel channel);

/* Flushes the files of a channel; a null channel is accepted. 1002 for an invalid environment. */
KLV_API int KLVflushchannel(KLVenv env, KLVchannel channel);

/* Attaches an open file to a channel. The same file may be attached twice and then receives every
 * message twice. 1051 for a null channel, 1052 for a null file, 1001. Nothing is printed. */
KLV_API int KLVaddfpdest(KLVenv env, KLVchannel channel, FILE* file);

/* Removes one attachment of a file. 1051 for a null channel, 1052 when the file is not attached. */
KLV_API int KLVdelfpdest(KLVenv env, KLVchannel channel, FILE* file);

/* Attaches a function to a channel. 1051 for a null channel, 1053 for a null function, 1001.
 * Nothing is printed. */
KLV_API int KLVaddfuncdest(KLVenv env, KLVchannel channel, void* handle, KLVmsgfunction function);

/* Removes one attachment of a function with that handle. 1051 for a null channel, 1053 when there
 * is none. */
KLV_API int KLVdelfuncdest(KLVenv env, KLVchannel channel, void* handle, KLVmsgfunction function);

/* Formats a message by the rules of printf and sends it to the destinations of a channel; the one
 * attached last receives it first. At most 1023 characters are kept. Returns the length of the
 * message, also when the channel is null or has no destination. */
KLV_API int KLVmsg(KLVchannel channel, const char* format, ...) KLV_PRINTF(2, 3);

/* Sends a text to the destinations of a channel, like KLVmsg with the format "%s". */
KLV_API int KLVmsgstr(KLVchannel channel, const char* text);

/* Mirrors all four standard channels into a file, in place of the log file set before; null only
 * detaches that. The library neither opens nor closes the file. */
KLV_API int KLVsetlogfile(KLVenv env, FILE* file);

/* Stores the log file, null when there is none. 1004 for a null pointer. */
KLV_API int KLVgetlogfile(KLVenv env, FILE** file_p);

/* Stores a pointer for a host layer; child environments start with a copy. */
KLV_API int KLVEsetJNI(KLVenv env, void* host);

/* The pointer stored with KLVEsetJNI, or null. */
KLV_API void* KLVEgetJNI(KLVenv env);

/* 0 for an environment of the caller, a positive number in a worker of a parallel optimizer. */
KLV_API int KLVEgetThreadNumber(KLVenv env);

/* 1e75, the value of parameters and limits that means "none". */
KLV_API double KLVEgetbigreal(KLVenv env);

/* Waits until the int is 0, then stores 1. A plain flag: no atomic operations. */
KLV_API void KLVEgeneric_lock(volatile int* lock);

/* Stores 0. */
KLV_API void KLVEgeneric_unlock(volatile int* lock);

/* The library's allocator: blocks on 16-byte boundaries; 0 bytes count as 1. Null without memory.
 * Memory that the library hands out to be freed by the caller is freed with KLVfree. */
KLV_API void* KLVmalloc(size_t size);

/* Changes the size of a block (null: a new one), keeping its contents; on null the old block
 * stays. */
KLV_API void* KLVrealloc(void* block, size_t size);

/* Frees a block; null is accepted. */
KLV_API void KLVfree(void* block);

/* fopen of the library's own runtime, for files handed to the library. */
KLV_API FILE* KLVfopen(const char* name, const char* mode);

/* fclose of the library's own runtime. */
KLV_API int KLVfclose(FILE* file);

/* fputs of the library's own runtime. */
KLV_API int KLVfputs(const char* text, FILE* file);

/* putenv of the library's own runtime. */
KLV_API int KLVputenv(char* setting);

/* strlen of the library's own runtime. */
KLV_API size_t KLVstrlen(const char* text);

/* strcpy of the library's own runtime. */
KLV_API char* KLVstrcpy(char* to, const char* from);

/* memcpy of the library's own runtime. */
KLV_API void* KLVmemcpy(void* to, const void* from, size_t size);

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
