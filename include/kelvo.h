/* Kelvo: mathematical-programming solver, the C interface. Valid C99 and C++11.
 *
 *     minimize or maximize   c'x + 1/2 x'Qx
 *     subject to             rows, quadratic constraints, indicator constraints, ordered sets,
 *                            lower <= x <= upper, some x integer or semi-continuous
 *
 * A program opens an environment (KLVopenKELVO), makes a problem in it (KLVcreateprob), fills it
 * (KLVnewcols and KLVaddrows, KLVcopylp, or KLVreadcopyprob), solves it (KLVlpopt), reads the
 * answer (KLVgetstat, KLVgetobjval, KLVgetx) and closes the environment (KLVcloseKELVO). This
 * version solves linear and mixed-integer linear problems (KLVmipopt); quadratic parts of a model
 * can be built, queried, read and written.
 *
 * Conventions. What is said here holds for every function whose comment does not say otherwise.
 *
 * Return codes. A function returns 0 or an error code (KLV_ERROR_...; comments give the numbers).
 *   Functions that return a count, a handle or a text say what they return on failure. A failure
 *   is also told in one line on the error channel, such as "KELVO Error  1217: No solution
 *   exists."; nobody sees it until a destination is attached (KLVaddfpdest, KLVaddfuncdest) or
 *   KLV_PARAM_SCRIND is 1. KLVgeterrorstring gives the line of any code. Results of optimizers,
 *   such as "infeasible" or "time limit exceeded", are not errors but statuses (KLVgetstat).
 *   A function that fails has changed nothing.
 *
 * Checks. Functions with an environment give 1002 when it is invalid, which is not printed, and
 *   1804 when called from an informational callback with the caller's environment. Functions with
 *   a problem give 1806 when it belongs to another environment, then 1009 when it is invalid.
 *   Any function that needs memory may give 1001.
 *
 * Ownership. The library copies the arrays and texts it is given; the caller keeps his own. It
 *   stores addresses only of what lives on: files and functions attached to channels, callbacks
 *   with their handles, and the int of KLVsetterminate. These must stay valid until they are
 *   removed. Arrays for results are the caller's and must be as long as their comment says.
 *   Environments, problems and channels are freed by functions of their own, and with the
 *   environment at the latest. Texts that the library returns (KLVversion) are its own; a presolved
 *   problem (KLVgetredlp) belongs to the problem it was made from.
 *
 * Threads. One thread at a time may use an environment with its child environments and everything
 *   in them. Environments that were opened separately share nothing and may be used at the same
 *   time. The int of KLVsetterminate may be set by any thread, or a signal handler, at any time.
 *
 * Null arguments. A null pointer where data or a place for results is needed gives 1004. Arrays of
 *   length 0 may be null, and so may what is marked so.
 *
 * Numbers. Indices and counts are 32-bit integers from 0; functions on lists of indices accept them
 *   in any order. Data are IEEE doubles. A bound or right-hand side of magnitude KLV_INFINITY
 *   (1e20) or more is infinite; KLV_NO_LIMIT (1e75) and KLV_NO_COUNT_LIMIT are the values of
 *   parameters that mean "no limit". Without KLV_PARAM_DATACHECK NaN and infinite coefficients are
 *   not looked for.
 *
 * Ranges. begin and end of a range are both included; begin..end outside the problem gives 1200
 *   after a line that names the function; the empty range end = begin - 1 is accepted.
 *
 * Space and surplus. Functions whose output length the caller cannot know take the room in their
 *   arrays (space) and store space minus what is needed in *surplus_p. When that is negative they
 *   fill the arrays as far as the space goes and give 1207. With space 0 the arrays may be null and
 *   nothing is printed: that is how a caller asks for the room needed, -*surplus_p.
 *
 * Dimensions. [n] behind an array is its length, where n and m are the numbers of columns and rows,
 *   pn and pm those of a presolved problem.
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

/* Checks printf formats where the compiler can. */
#if defined(__GNUC__)
#define KLV_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define KLV_PRINTF(text, first)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Opaque handles. */
typedef struct klv_env* KLVenv;
typedef struct klv_prob* KLVprob;
typedef struct klv_net* KLVnet;
typedef struct klv_channel* KLVchannel;

/* Bounds and right-hand sides of this magnitude and above are infinite. */
#define KLV_INFINITY 1e20

/* The value of a double parameter that means "no limit", as KLVEgetbigreal returns it. */
#define KLV_NO_LIMIT 1e75

/* The value of a counting parameter that means "no limit". */
#define KLV_NO_COUNT_LIMIT 2100000000

/* ---- Error codes ---------------------------------------------------------------------------- */

/* The codes that functions of this version return. */

/* clang-format off */
/* General, environment and parameters */
#define KLV_ERROR_OUT_OF_MEMORY                       1001 /* out of memory */
#define KLV_ERROR_NO_ENVIRONMENT                      1002 /* no environment */
#define KLV_ERROR_BAD_ARGUMENT                        1003 /* bad argument: a negative count, an object that is not the right one */
#define KLV_ERROR_NULL_POINTER                        1004 /* null pointer for required data */
#define KLV_ERROR_NO_PROBLEM                          1009 /* no problem exists */
#define KLV_ERROR_PROBLEM_SIZE_LIMITS                 1012 /* more rows, columns or entries than indices can count */
#define KLV_ERROR_BAD_PARAMETER_NUMBER                1013 /* no parameter of that kind has this number */
#define KLV_ERROR_PARAMETER_TOO_SMALL                 1014 /* value below the smallest one of the parameter */
#define KLV_ERROR_PARAMETER_TOO_BIG                   1015 /* value above the largest one of the parameter */
#define KLV_ERROR_NOT_FOR_MIXED_INTEGER               1017 /* not available for mixed-integer programs */
#define KLV_ERROR_NOT_FOR_QUADRATIC                   1018 /* not available for quadratic programs */
#define KLV_ERROR_CHILD_OF_CHILD                      1019 /* a child environment cannot have children */
#define KLV_ERROR_THREAD_LIMIT                        1020 /* more child environments than threads allowed */
#define KLV_ERROR_CLOSE_OF_CHILD                      1021 /* cannot close a child environment */
#define KLV_ERROR_UNKNOWN_PROBLEM_TYPE                1022 /* unknown problem type; problem not changed */
#define KLV_ERROR_NOT_SINGLE_PROBLEM                  1023 /* the problem only shows another one and cannot be changed */
#define KLV_ERROR_NOT_MILP                            1024 /* not a MILP or fixed MILP */
#define KLV_ERROR_TEXT_PARAMETER_TOO_LONG             1026 /* string parameter is too long */
#define KLV_ERROR_BAD_PARAMETER_NAME                  1028 /* no parameter has this name */
#define KLV_ERROR_NOT_MIQP                            1029 /* not a MIQP or fixed MIQP */
#define KLV_ERROR_NOT_MIQCP                           1030 /* not a MIQCP or fixed MIQCP */
#define KLV_ERROR_NOT_FOR_QUADRATIC_CONSTRAINTS       1031 /* not available for quadratically constrained programs */
#define KLV_ERROR_NO_CHANNEL                          1051 /* no channel given */
#define KLV_ERROR_NO_FILE_DESTINATION                 1052 /* no file given, or it is not attached */
#define KLV_ERROR_NO_FUNCTION_DESTINATION             1053 /* no function given, or it is not attached */

/* Presolve */
#define KLV_ERROR_PRESOLVE_INFEASIBLE_OR_UNBOUNDED    1101 /* presolve determines problem is infeasible or unbounded */
#define KLV_ERROR_NO_PRESOLVED                        1103 /* no presolved problem created */
#define KLV_ERROR_PRESOLVE_ABORTED                    1106 /* aborted during presolve */
#define KLV_ERROR_PRESOLVE_INFEASIBLE                 1117 /* presolve determines problem is infeasible */
#define KLV_ERROR_PRESOLVE_UNBOUNDED                  1118 /* presolve determines problem is unbounded */
#define KLV_ERROR_CANNOT_CRUSH                        1121 /* can't crush solution form */
#define KLV_ERROR_PRESOLVE_TIME_LIMIT                 1123 /* time limit exceeded during presolve */

/* Problem data, indices and solutions */
#define KLV_ERROR_INDEX_RANGE                         1200 /* index is outside range of valid values */
#define KLV_ERROR_COLUMN_INDEX                        1201 /* column index out of range */
#define KLV_ERROR_ROW_INDEX                           1203 /* row index out of range */
#define KLV_ERROR_BEGIN_TOO_SMALL                     1205 /* 'begin' of a range too small; printed before 1200 */
#define KLV_ERROR_END_TOO_BIG                         1206 /* 'end' of a range too large; printed before 1200 */
#define KLV_ERROR_INSUFFICIENT_LENGTH                 1207 /* insufficient array length */
#define KLV_ERROR_ARRAY_TOO_LONG                      1208 /* array length too long */
#define KLV_ERROR_NAME_NOT_FOUND                      1210 /* name not found */
#define KLV_ERROR_OBJECTIVE_HAS_NO_RHS                1211 /* the objective has no right-hand side or range */
#define KLV_ERROR_SENSE_ENTRY                         1215 /* illegal sense of a row */
#define KLV_ERROR_NO_RANGES                           1216 /* no range values */
#define KLV_ERROR_NO_SOLUTION                         1217 /* no solution exists */
#define KLV_ERROR_NO_NAMES                            1219 /* no names exist */
#define KLV_ERROR_NOT_FIXED                           1221 /* only fixed variables can be pivoted out */
#define KLV_ERROR_DUPLICATE_ENTRY                     1222 /* duplicate entry */
#define KLV_ERROR_NULL_NAME                           1224 /* null pointer in an array of names */
#define KLV_ERROR_NOT_A_NUMBER_ENTRY                  1225 /* an entry is not a number (NaN) */
#define KLV_ERROR_NOT_ASCENDING                       1226 /* array entry not ascending */
#define KLV_ERROR_COUNT_ENTRY                         1227 /* a count is negative or larger than allowed */
#define KLV_ERROR_OVERLAPPING_ENTRIES                 1228 /* starts and counts overlap */
#define KLV_ERROR_BOUND_CODE_ENTRY                    1229 /* illegal code of a bound */
#define KLV_ERROR_NODE_INDEX                          1230 /* node index out of range */
#define KLV_ERROR_ARC_INDEX                           1231 /* arc index out of range */
#define KLV_ERROR_NO_DUAL_SOLUTION                    1232 /* no dual solution exists */
#define KLV_ERROR_ENTRY_TOO_LARGE                     1233 /* an entry is infinite */
#define KLV_ERROR_NOT_BASIC                           1251 /* the variable is not basic */
#define KLV_ERROR_OPTIMAL_REQUIRED                    1252 /* optimal solution required */
#define KLV_ERROR_BASIS_STATUS_ENTRY                  1253 /* illegal basis status code */
#define KLV_ERROR_UNBOUNDED_REQUIRED                  1254 /* unbounded solution required */
#define KLV_ERROR_BASIS_SINGULAR                      1256 /* basis singular */
#define KLV_ERROR_BAD_PRICING                         1257 /* incorrect usage of pricing indicator */
#define KLV_ERROR_NO_FACTOR                           1258 /* no LU factorization exists */
#define KLV_ERROR_NO_SENSITIVITY                      1260 /* sensitivity analysis not available for current status */
#define KLV_ERROR_NO_BASIC_SOLUTION                   1261 /* no basic solution exists */
#define KLV_ERROR_NO_BASIS                            1262 /* no basis exists */
#define KLV_ERROR_STRONG_BRANCHING_ABORTED            1263 /* strong branching aborted */
#define KLV_ERROR_DUAL_UNBOUNDED_REQUIRED             1265 /* dual unbounded solution required */
#define KLV_ERROR_STRONG_BRANCHING_TIME_LIMIT         1266 /* time limit exceeded in strong branching */
#define KLV_ERROR_ILLEGAL_PIVOT                       1267 /* illegal pivot */
#define KLV_ERROR_BAD_METHOD_CHOICE                   1292 /* this method is not available */

/* Reading files: parameter, MPS and general input */
#define KLV_ERROR_NO_FILE_NAME                        1421 /* no file name given */
#define KLV_ERROR_CANNOT_WRITE_FILE                   1422 /* the file cannot be written */
#define KLV_ERROR_CANNOT_READ_FILE                    1423 /* the file cannot be read */
#define KLV_ERROR_BAD_FILE_TYPE                       1424 /* unknown file type */
#define KLV_ERROR_XML_SYNTAX                          1425 /* the file is no XML that is accepted */
#define KLV_ERROR_TOO_MANY_ROWS                       1431 /* too many rows */
#define KLV_ERROR_TOO_MANY_COLUMNS                    1432 /* too many columns */
#define KLV_ERROR_TOO_MANY_COEFFICIENTS               1433 /* too many coefficients */
#define KLV_ERROR_NOT_A_NUMBER                        1434 /* the text is not a number */
#define KLV_ERROR_EXPONENT_OUT_OF_RANGE               1435 /* exponent out of range */
#define KLV_ERROR_NO_OBJECTIVE_SENSE                  1436 /* MAXIMIZE or MINIMIZE missing */
#define KLV_ERROR_QUADRATIC_CONSTRAINT_SENSE          1437 /* illegal quadratic constraint sense */
#define KLV_ERROR_ILLEGAL_CUT                         1438 /* illegal lazy constraint or user cut */
#define KLV_ERROR_ILLEGAL_INDICATOR                   1439 /* illegal indicator constraint */
#define KLV_ERROR_NO_NAME_SECTION                     1441 /* no NAME section */
#define KLV_ERROR_UNKNOWN_SET_TYPE                    1442 /* unrecognized type of set */
#define KLV_ERROR_COLUMN_REPEATS_ROW                  1443 /* a column has the same row twice */
#define KLV_ERROR_SET_REPEATS_ROW                     1444 /* a rim vector or set has the same entry twice */
#define KLV_ERROR_ROW_REPEATS                         1445 /* a row name occurs twice */
#define KLV_ERROR_COLUMN_REPEATS                      1446 /* a column name occurs twice */
#define KLV_ERROR_NAME_REPEATS                        1447 /* a name occurs twice */
#define KLV_ERROR_NOT_A_ROW                           1448 /* not the name of a row */
#define KLV_ERROR_NOT_A_COLUMN                        1449 /* not the name of a column */
#define KLV_ERROR_NO_ROW_SENSE                        1453 /* no row sense */
#define KLV_ERROR_FIXED_AFTER_BOUND                   1454 /* 'FX' bound type illegal when prior bound given */
#define KLV_ERROR_FREE_AFTER_BOUND                    1455 /* 'FR' bound type illegal when prior bound given */
#define KLV_ERROR_BINARY_AFTER_BOUND                  1456 /* 'BV' bound type illegal when prior bound given */
#define KLV_ERROR_UNKNOWN_BOUND_TYPE                  1457 /* unrecognized bound type */
#define KLV_ERROR_UPPER_BOUND_REPEATS                 1458 /* repeated upper bound */
#define KLV_ERROR_LOWER_BOUND_REPEATS                 1459 /* repeated lower bound */
#define KLV_ERROR_NO_BOUND_TYPE                       1460 /* bound type missing */
#define KLV_ERROR_EXPECTING_END                       1462 /* unrecognized section; ENDATA expected */
#define KLV_ERROR_BEYOND_INTEGER_LIMIT                1463 /* number too large for an integer */
#define KLV_ERROR_NAME_TOO_LONG                       1464 /* name too long */
#define KLV_ERROR_LINE_TOO_LONG                       1465 /* line too long */
#define KLV_ERROR_NO_ROWS_SECTION                     1471 /* no ROWS section */
#define KLV_ERROR_NO_COLUMNS_SECTION                  1472 /* no COLUMNS section */
#define KLV_ERROR_EXPECTING_RANGES                    1473 /* unrecognized section; RANGES, BOUNDS, SOS, QMATRIX or ENDATA expected */
#define KLV_ERROR_RANGES_OUT_OF_ORDER                 1474 /* 'RANGES' section out of order */
#define KLV_ERROR_EXPECTING_QUADRATIC_SECTION         1475 /* unrecognized section; QMATRIX or ENDATA expected */
#define KLV_ERROR_NO_OBJECTIVE_ROW                    1476 /* no objective row found */
#define KLV_ERROR_ROW_REPEATS_NOT_PRINTED             1477 /* so many repeated rows were not printed */
#define KLV_ERROR_COLUMN_REPEATS_NOT_PRINTED          1478 /* so many repeated columns were not printed */
#define KLV_ERROR_INTEGERS_BEGIN_TWICE                1480 /* 'INTORG' found while reading integers */
#define KLV_ERROR_INTEGERS_END_WITHOUT_BEGIN          1481 /* 'INTEND' found while not reading integers */
#define KLV_ERROR_SET_BEGINS_TWICE                    1482 /* 'SOSORG' found while reading a SOS */
#define KLV_ERROR_SET_ENDS_WITHOUT_BEGIN              1483 /* 'SOSEND' found while not reading a SOS */
#define KLV_ERROR_NO_ROW_NAME                         1486 /* no row name */
#define KLV_ERROR_UNKNOWN_OBJECTIVE_SENSE             1487 /* unrecognized objective sense */

/* Reading files: network, basis, SAV and vector files */
#define KLV_ERROR_INCONSISTENT_NETWORK                1530 /* inconsistent network file */
#define KLV_ERROR_NOT_A_NETWORK_PROBLEM               1531 /* not a min-cost flow problem */
#define KLV_ERROR_BAD_ROW_IDENTIFIER                  1532 /* incorrect row identifier */
#define KLV_ERROR_BAD_CHARACTER                       1537 /* a character that starts no line of a network file */
#define KLV_ERROR_NETWORK_FILE_ENDS                   1538 /* unexpected end of a network file */
#define KLV_ERROR_TOO_FEW_BASIC_VARIABLES             1550 /* fewer basic variables than rows */
#define KLV_ERROR_UNKNOWN_BASIS_INDICATOR             1551 /* unrecognized basis indicator */
#define KLV_ERROR_END_MISSING                         1552 /* 'ENDATA' missing */
#define KLV_ERROR_WRONG_NUMBER_OF_ENTRIES             1553 /* wrong number of entries */
#define KLV_ERROR_SUPERBASIC_NOT_ALLOWED              1554 /* a nonbasic column between its bounds */
#define KLV_ERROR_WRONG_BASIS_SIZE                    1555 /* the number of basic variables is not the number of rows */

/* LP format */
#define KLV_ERROR_ADJACENT_SIGNS                      1602 /* adjacent signs */
#define KLV_ERROR_SENSE_IN_OBJECTIVE                  1603 /* sense in the objective */
#define KLV_ERROR_ADJACENT_SIGN_AND_SENSE             1604 /* adjacent sign and sense */
#define KLV_ERROR_QUADRATIC_TERM_IN_CONSTRAINT        1605 /* illegal quadratic term in a constraint */
#define KLV_ERROR_ADJACENT_SIGN_AND_OPERATOR          1606 /* adjacent sign and quadratic character */
#define KLV_ERROR_EXPECTED_SIGN                       1607 /* '+' or '-' expected */
#define KLV_ERROR_EXPECTED_SIGN_OR_SENSE              1608 /* '+', '-' or a sense expected */
#define KLV_ERROR_EXPECTED_NAME_FIRST                 1609 /* name expected first */
#define KLV_ERROR_EXPECTED_RHS                        1610 /* right-hand side expected */
#define KLV_ERROR_EXPECTED_NUMBER_FIRST               1611 /* number expected first */
#define KLV_ERROR_EXPECTED_EXPONENT                   1612 /* exponent expected */
#define KLV_ERROR_EXPONENT_NOT_TWO                    1613 /* quadratic exponent must be 2 */
#define KLV_ERROR_EXPECTED_POWER_OR_PRODUCT           1614 /* '^' or '*' expected */
#define KLV_ERROR_EXPECTED_NUMBER                     1615 /* number expected */
#define KLV_ERROR_EXPECTED_NAME                       1616 /* name expected */
#define KLV_ERROR_NOT_A_NAME                          1617 /* not a valid name */
#define KLV_ERROR_EXPONENT_INCOMPLETE                 1618 /* exponent without digits */
#define KLV_ERROR_BAD_QUADRATIC_DIVISOR               1619 /* quadratic terms must be divided by 2 */
#define KLV_ERROR_NO_BOUND_SENSE                      1621 /* no bound sense */
#define KLV_ERROR_BAD_BOUND_SENSE                     1622 /* invalid bound sense */
#define KLV_ERROR_NO_BOUND_NUMBER                     1623 /* missing bound number */
#define KLV_ERROR_EXPECTED_COLON                      1627 /* ':' expected */
#define KLV_ERROR_NOT_REPRESENTABLE                   1650 /* number that the format cannot hold */
#define KLV_ERROR_NOT_ENOUGH_ENTRIES                  1660 /* not enough entries */
#define KLV_ERROR_BAD_HEADER                          1661 /* missing or invalid header */

/* Infeasibility analysis and variability estimation */
#define KLV_ERROR_NO_CONFLICT                         1719 /* the problem has no conflict */

/* Callbacks, temporary files and parameter compatibility */
#define KLV_ERROR_CALL_FROM_INFO_CALLBACK             1804 /* called from an informational callback with the caller's environment */
#define KLV_ERROR_FOREIGN_PROBLEM                     1806 /* the problem belongs to another environment */
#define KLV_ERROR_INCOMPATIBLE_PARAMETERS             1807 /* in conflict with the polishing parameters */

/* Mixed-integer */
#define KLV_ERROR_NOT_MIXED_INTEGER                   3003 /* not a mixed-integer problem */
#define KLV_ERROR_NEGATIVE_PRIORITY                   3006 /* negative priority */
#define KLV_ERROR_DIRECTION_ENTRY                     3007 /* illegal direction */
#define KLV_ERROR_SET_TYPE_ENTRY                      3009 /* illegal type of set */
#define KLV_ERROR_EQUAL_WEIGHTS                       3010 /* equal weights in a set */
#define KLV_ERROR_UNKNOWN_DIRECTION                   3012 /* unrecognized direction */
#define KLV_ERROR_NO_SETS                             3015 /* the problem has no sets */
#define KLV_ERROR_NO_ORDER                            3016 /* no priority order exists */
#define KLV_ERROR_NO_MIP_START                        3020 /* no MIP start exists */
#define KLV_ERROR_COLUMN_TYPE_ENTRY                   3021 /* illegal column type */
#define KLV_ERROR_NO_INCUMBENT_VALUES                 3023 /* the values of the integer solution are not available */
#define KLV_ERROR_NO_SOLUTION_POOL                    3024 /* no solution pool exists */
#define KLV_ERROR_NO_SET_TYPE                         3301 /* type of set missing */

/* Quadratic */
#define KLV_ERROR_NOT_QUADRATIC                       5004 /* not a quadratic program */
#define KLV_ERROR_DUPLICATE_PAIR                      5011 /* a pair of columns occurs twice in quadratic terms */
#define KLV_ERROR_NOT_SYMMETRIC                       5012 /* the quadratic matrix is not symmetric */
#define KLV_ERROR_NOT_INDEFINITE                      5014 /* the quadratic objective is not indefinite */
/* clang-format on */

/* ---- Environments --------------------------------------------------------------------------- */

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

/* Stores a pointer for a host layer; child environments start with a copy. */
KLV_API int KLVEsetJNI(KLVenv env, void* host);

/* The pointer stored with KLVEsetJNI, or null. */
KLV_API void* KLVEgetJNI(KLVenv env);

/* 0 for an environment of the caller, a positive number in a worker of a parallel optimizer. */
KLV_API int KLVEgetThreadNumber(KLVenv env);

/* 1e75, the value of parameters and limits that means "none". */
KLV_API double KLVEgetbigreal(KLVenv env);

/* ---- Message channels ----------------------------------------------------------------------- */

/* An environment has four standard channels: results, warning, error and log. What is sent to a
 * channel goes to its destinations, files and functions; a channel without any swallows it. */

/* A function that receives the messages of a channel: the handle it was attached with, and the
 * text, which is valid during the call. */
typedef void (*KLVmsgfunction)(void* handle, const char* text);

/* Stores the standard channels of the environment through those pointers that are not null. */
KLV_API int KLVgetchannels(KLVenv env, KLVchannel* results_p, KLVchannel* warning_p,
                           KLVchannel* error_p, KLVchannel* log_p);

/* Flushes the files of the results, log, error and warning channels, in that order. */
KLV_API int KLVflushstdchannels(KLVenv env);

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

/* ---- Memory and the library's own runtime --------------------------------------------------- */

/* These functions take no environment. */

/* The library's allocator: blocks on 16-byte boundaries; 0 bytes count as 1. Null without memory.
 * This version returns no memory that the caller has to free with KLVfree. */
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

/* Waits until the int is 0, then stores 1. A plain flag: no atomic operations. */
KLV_API void KLVEgeneric_lock(volatile int* lock);

/* Stores 0. */
KLV_API void KLVEgeneric_unlock(volatile int* lock);

/* ---- Parameters ----------------------------------------------------------------------------- */

/* clang-format off */
/* Numbers and meanings of the parameters. KLVinfointparam and its like give defaults and bounds. A *
 * marks those for which this version has nothing yet that they govern; they keep their values. */

/* General */
#define KLV_PARAM_ADVIND                 1001 /* start basis: 0 none, 1 as given or crushed, 2 always crushed by presolve */
#define KLV_PARAM_AGGFILL                1002 /* nonzeros that a substitution of presolve may add */
#define KLV_PARAM_AGGIND                 1003 /* rounds of substitution in presolve: -1 automatic, 0 none */
#define KLV_PARAM_CFILEMUL               1005 /* room of the column file of a factor, in nonzeros of the basis */
#define KLV_PARAM_CLOCKTYPE              1006 /* clock of the time limit: 1 processor time, 0 and 2 elapsed time */
#define KLV_PARAM_CRAIND                 1007 /* start basis of a run without one: 1 slacks, 0 crash, -1 crash by the costs */
#define KLV_PARAM_DEPIND                 1008 /* dependent rows in presolve: -1 automatic, 0 kept, 1 to 3 more effort */
#define KLV_PARAM_DPRIIND                1009 /* dual pricing: 0 automatic, 1 standard, 2-4 steepest edge, 5 devex */
#define KLV_PARAM_PRICELIM               1010 /* columns that partial pricing looks at: 0 automatic */
#define KLV_PARAM_EPMRK                  1013 /* least pivot of a factor, as a share of the largest entry of its column */
#define KLV_PARAM_EPOPT                  1014 /* optimality tolerance on reduced costs */
#define KLV_PARAM_EPPER                  1015 /* first magnitude of perturbations */
#define KLV_PARAM_EPRHS                  1016 /* feasibility tolerance on bounds and rows */
#define KLV_PARAM_SIMDISPLAY             1019 /* log of the simplex methods: 0 none, 1 refactorizations, 2 iterations */
#define KLV_PARAM_ITLIM                  1020 /* limit on simplex iterations */
#define KLV_PARAM_ROWREADLIM             1021 /* rows that a reader makes room for at first */
#define KLV_PARAM_NETFIND                1022 /* * extraction of networks: 1 plain rows, 2 reflected too, 3 scaled too */
#define KLV_PARAM_COLREADLIM             1023 /* columns that a reader makes room for at first */
#define KLV_PARAM_NZREADLIM              1024 /* nonzeros that a reader makes room for at first */
#define KLV_PARAM_OBJLLIM                1025 /* objective below which the simplex methods stop */
#define KLV_PARAM_OBJULIM                1026 /* objective above which the simplex methods stop */
#define KLV_PARAM_PERIND                 1027 /* perturbation: 0 when a run stalls, 1 from the start */
#define KLV_PARAM_PERLIM                 1028 /* stalled iterations before a perturbation: 0 automatic */
#define KLV_PARAM_PPRIIND                1029 /* primal pricing: -1 reduced cost, 0 automatic, 1 devex, 2-3 steepest, 4 full */
#define KLV_PARAM_PREIND                 1030 /* presolve: 0 off, 1 on */
#define KLV_PARAM_REINV                  1031 /* iterations between factorizations: 0 automatic */
#define KLV_PARAM_RFILEMUL               1033 /* room of the row file of a factor, in nonzeros of the basis */
#define KLV_PARAM_SCAIND                 1034 /* scaling: -1 none, 0 equilibration, 1 aggressive */
#define KLV_PARAM_SCRIND                 1035 /* messages on the screen: 0 no, 1 yes */
#define KLV_PARAM_SINGLIM                1037 /* repairs of a singular basis in a run */
#define KLV_PARAM_SINGTOL                1038 /* pivots of a factor below this count as singular */
#define KLV_PARAM_TILIM                  1039 /* time limit in seconds */
#define KLV_PARAM_PREDUAL                1044 /* dual form after presolve: -1 never, 0 automatic, 1 always */
#define KLV_PARAM_PREPASS                1052 /* passes of presolve: -1 automatic */
#define KLV_PARAM_DATACHECK              1056 /* checks of the data a caller hands in: 0 few, 1 all */
#define KLV_PARAM_REDUCE                 1057 /* reductions of presolve: 0 none, 1 primal, 2 dual, 3 both */
#define KLV_PARAM_PRELINEAR              1058 /* reductions that are no linear maps: 0 no, 1 yes */
#define KLV_PARAM_LPMETHOD               1062 /* method for linear programs: 0 automatic, 1 primal, 2 dual simplex */
#define KLV_PARAM_QPMETHOD               1063 /* * method for quadratic programs, numbered as for LPMETHOD */
#define KLV_PARAM_WORKDIR                1064 /* * folder of node files and temporary files */
#define KLV_PARAM_WORKMEM                1065 /* * megabytes of working memory before files are used */
#define KLV_PARAM_THREADS                1067 /* threads that an optimizer may use: 0 automatic */
#define KLV_PARAM_CONFLICTDISPLAY        1074 /* * log of the conflict refiner: 0 none to 2 detailed */
#define KLV_PARAM_SIFTDISPLAY            1076 /* * log of sifting: 0 none, 1 passes, 2 solves of each pass too */
#define KLV_PARAM_SIFTALG                1077 /* * method inside sifting, numbered as for LPMETHOD up to 4 */
#define KLV_PARAM_SIFTITLIM              1078 /* * limit on the passes of sifting */
#define KLV_PARAM_MPSLONGNUM             1081 /* numbers in MPS files: 0 12 characters, 1 full precision */
#define KLV_PARAM_MEMORYEMPHASIS         1082 /* memory emphasis: 0 normal, 1 saves memory at the cost of time */
#define KLV_PARAM_NUMERICALEMPHASIS      1083 /* care with pivots and substitutions: 0 normal, 1 more */
#define KLV_PARAM_FEASOPTMODE            1084 /* * FeasOpt: 0 sum, 2 number, 4 squares of relaxations, 1, 3, 5 then optimum */
#define KLV_PARAM_PARALLELMODE           1109 /* parallel runs: -1 may differ, 0 automatic, 1 repeat exactly */
#define KLV_PARAM_TUNINGMEASURE          1110 /* * tuning by 1 the mean or 2 the longest time */
#define KLV_PARAM_TUNINGREPEAT           1111 /* * repetitions of each tuning run */
#define KLV_PARAM_TUNINGTILIM            1112 /* * seconds for each tuning run */
#define KLV_PARAM_TUNINGDISPLAY          1113 /* * log of tuning: 0 none to 3 detailed */
#define KLV_PARAM_WRITELEVEL             1114 /* solution files: 0 automatic, 1 all, 2 discrete, 3 non-zero, 4 both */
#define KLV_PARAM_PERFVAR_RUNS           1121 /* * runs of the variability estimator */
#define KLV_PARAM_PERFVAR_DISPLAY        1122 /* * log of the variability estimator: 0 no, 1 yes */
#define KLV_PARAM_PERFVAR_MEASURE        1123 /* * measure of the variability estimator */

/* Mixed-integer optimizer */
#define KLV_PARAM_BRDIR                  2001 /* branch first: -1 down, 0 automatic, 1 up */
#define KLV_PARAM_BTTOL                  2002 /* share of the gap by which a dive may fall behind before it ends */
#define KLV_PARAM_CLIQUES                2003 /* * clique cuts: -1 off, 0 automatic, 1 moderate to 3 very aggressive */
#define KLV_PARAM_COEREDIND              2004 /* coefficient reduction: 0 off, 1 moderate, 2 more */
#define KLV_PARAM_COVERS                 2005 /* * cover cuts: -1 off, 0 automatic, 1 moderate to 3 very aggressive */
#define KLV_PARAM_CUTLO                  2006 /* cutoff of a maximization: nodes with a smaller objective are dropped */
#define KLV_PARAM_CUTUP                  2007 /* cutoff of a minimization: nodes with a larger objective are dropped */
#define KLV_PARAM_EPAGAP                 2008 /* absolute gap at which the search stops */
#define KLV_PARAM_EPGAP                  2009 /* relative gap at which the search stops */
#define KLV_PARAM_EPINT                  2010 /* distance from a whole number that still counts as one */
#define KLV_PARAM_MIPDISPLAY             2012 /* node log: 0 none to 5 with all node solves */
#define KLV_PARAM_MIPINTERVAL            2013 /* nodes between two lines of the node log */
#define KLV_PARAM_INTSOLLIM              2015 /* limit on integer solutions */
#define KLV_PARAM_NODEFILEIND            2016 /* * nodes: 0 in memory, 1 compressed, 2 on disk, 3 compressed on disk */
#define KLV_PARAM_NODELIM                2017 /* limit on nodes */
#define KLV_PARAM_NODESEL                2018 /* next node: 0 depth first, 1 best bound, 2 best estimate, 3 another estimate */
#define KLV_PARAM_OBJDIF                 2019 /* a solution must improve the objective by this */
#define KLV_PARAM_MIPORDIND              2020 /* priority order: 0 ignored, 1 used */
#define KLV_PARAM_RELOBJDIF              2022 /* a solution must improve the objective by this share */
#define KLV_PARAM_STARTALG               2025 /* method at the root, numbered as for LPMETHOD */
#define KLV_PARAM_SUBALG                 2026 /* * method at the nodes, numbered as for LPMETHOD */
#define KLV_PARAM_TRELIM                 2027 /* megabytes that the tree may take */
#define KLV_PARAM_VARSEL                 2028 /* branch: -1, 1 least, most infeasible, 0 automatic, 2 pseudocost, 3 strong, 4 */
#define KLV_PARAM_BNDSTRENIND            2029 /* bound strengthening of integer models: -1 automatic, 0 off, 1 on */
#define KLV_PARAM_HEURFREQ               2031 /* * nodes between heuristics: -1 never, 0 automatic */
#define KLV_PARAM_MIPORDTYPE             2032 /* generated order: 0 none, 1 costs, 2 range of bounds, 3 cost by nonzeros */
#define KLV_PARAM_CUTSFACTOR             2033 /* * limit on rows and cuts, as a multiple of the rows */
#define KLV_PARAM_RELAXPREIND            2034 /* * LP presolve of the root relaxation: -1 automatic, 0 off, 1 on */
#define KLV_PARAM_PRESLVND               2037 /* * presolve at nodes: -1 off, 0 automatic, 1 forced, 2 with more effort */
#define KLV_PARAM_BBINTERVAL             2039 /* * nodes between choices of the best bound */
#define KLV_PARAM_FLOWCOVERS             2040 /* * flow cover cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive */
#define KLV_PARAM_IMPLBD                 2041 /* * implied bound cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive */
#define KLV_PARAM_PROBE                  2042 /* probing: -1 off, 0 automatic, 1 moderate to 3 very aggressive */
#define KLV_PARAM_GUBCOVERS              2044 /* * GUB cover cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive */
#define KLV_PARAM_STRONGCANDLIM          2045 /* candidates of strong branching */
#define KLV_PARAM_STRONGITLIM            2046 /* iterations for each candidate of strong branching: 0 automatic */
#define KLV_PARAM_FRACCAND               2048 /* * candidates for Gomory cuts */
#define KLV_PARAM_FRACCUTS               2049 /* * Gomory cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive */
#define KLV_PARAM_FRACPASS               2050 /* * passes of Gomory cuts: 0 automatic */
#define KLV_PARAM_FLOWPATHS              2051 /* * flow path cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive */
#define KLV_PARAM_MIRCUTS                2052 /* * MIR cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive */
#define KLV_PARAM_DISJCUTS               2053 /* * disjunctive cuts: -1 off, 0 automatic, 1 moderate to 3 very aggressive */
#define KLV_PARAM_AGGCUTLIM              2054 /* * rows that may be aggregated for a cut */
#define KLV_PARAM_MIPCBREDLP             2055 /* * what callbacks see: 0 the model, 1 the presolved model */
#define KLV_PARAM_CUTPASS                2056 /* * passes of cuts at the root: -1 none, 0 automatic */
#define KLV_PARAM_MIPEMPHASIS            2058 /* search: 0 balance, 1 feasibility, 2 optimality, 3 bound, 4 hidden solutions */
#define KLV_PARAM_SYMMETRY               2059 /* symmetry: -1 automatic, 0 off, 1 to 5 more and more */
#define KLV_PARAM_DIVETYPE               2060 /* dives: 0 automatic, 1 plain, 2 probing, 3 guided */
#define KLV_PARAM_RINSHEUR               2061 /* * nodes between RINS heuristics: -1 never, 0 automatic */
#define KLV_PARAM_SUBMIPNODELIM          2062 /* * nodes of searches inside heuristics */
#define KLV_PARAM_LBHEUR                 2063 /* * local branching after each solution: 0 off, 1 on */
#define KLV_PARAM_REPEATPRESOLVE         2064 /* * presolve again after the root: -1 automatic, 0 off, 1 to 3 more */
#define KLV_PARAM_PROBETIME              2065 /* seconds for probing */
#define KLV_PARAM_POLISHTIME             2066 /* * seconds of polishing integer solutions */
#define KLV_PARAM_REPAIRTRIES            2067 /* * attempts to repair a start: -1 none, 0 automatic */
#define KLV_PARAM_EPRELAX                2073 /* * tolerance on the relaxations of FeasOpt */
#define KLV_PARAM_FPHEUR                 2098 /* * feasibility pump: -1 off, 0 automatic, 1 feasibility, 2 objective too */
#define KLV_PARAM_EACHCUTLIM             2102 /* * limit on the cuts of each family */
#define KLV_PARAM_SOLNPOOLCAPACITY       2103 /* * solutions that the pool keeps */
#define KLV_PARAM_SOLNPOOLREPLACE        2104 /* * leaves the pool: 0 the oldest, 1 the worst, 2 the least diverse */
#define KLV_PARAM_SOLNPOOLGAP            2105 /* * relative gap of solutions that the pool keeps */
#define KLV_PARAM_SOLNPOOLAGAP           2106 /* * absolute gap of solutions that the pool keeps */
#define KLV_PARAM_SOLNPOOLINTENSITY      2107 /* * effort of the pool: 0 automatic, 1 mild to 4 all solutions */
#define KLV_PARAM_POPULATELIM            2108 /* * solutions of one call that fills the pool */
#define KLV_PARAM_MIPSEARCH              2109 /* search: 0 automatic, 1 traditional, 2 dynamic */
#define KLV_PARAM_MIQCPSTRAT             2110 /* * relaxations of quadratic constraints: 0 automatic, 1 QCP, 2 LP */
#define KLV_PARAM_ZEROHALFCUTS           2111 /* * zero-half cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive */
#define KLV_PARAM_POLISHAFTEREPAGAP      2126 /* * absolute gap at which polishing begins: 0 not by this */
#define KLV_PARAM_POLISHAFTEREPGAP       2127 /* * relative gap at which polishing begins: 0 not by this */
#define KLV_PARAM_POLISHAFTERNODE        2128 /* * nodes after which polishing begins */
#define KLV_PARAM_POLISHAFTERINTSOL      2129 /* * integer solutions after which polishing begins */
#define KLV_PARAM_POLISHAFTERTIME        2130 /* * seconds after which polishing begins */
#define KLV_PARAM_MCFCUTS                2134 /* * multi-commodity flow cuts: -1 off, 0 automatic, 1 moderate, 2 aggressive */

/* Barrier optimizer */
#define KLV_PARAM_BAREPCOMP              3002 /* * barrier: tolerance on complementarity */
#define KLV_PARAM_BARGROWTH              3003 /* * barrier: growth of values that means an unbounded face */
#define KLV_PARAM_BAROBJRNG              3004 /* * barrier: largest magnitude of the objective */
#define KLV_PARAM_BARALG                 3007 /* * barrier: 1, 2 homogeneous, 0, 3 standard */
#define KLV_PARAM_BARCOLNZ               3009 /* * barrier: entries that make a column dense: 0 automatic */
#define KLV_PARAM_BARDISPLAY             3010 /* * barrier log: 0 none, 1 normal, 2 detailed */
#define KLV_PARAM_BARITLIM               3012 /* * barrier: limit on iterations */
#define KLV_PARAM_BARMAXCOR              3013 /* * barrier: limit on corrections: -1 automatic */
#define KLV_PARAM_BARORDER               3014 /* * barrier: ordering: 0 automatic, 1 least degree, 2 least fill, 3 dissection */
#define KLV_PARAM_BARSTARTALG            3017 /* * barrier: kind of starting point */
#define KLV_PARAM_BARCROSSALG            3018 /* * crossover after the barrier: -1 none, 0 automatic, 1 primal, 2 dual */
#define KLV_PARAM_BARQCPEPCOMP           3020 /* * barrier: tolerance on complementarity with quadratic constraints */

/* Quadratic programs */
#define KLV_PARAM_QPNZREADLIM            4001 /* quadratic nonzeros that a reader makes room for at first */
#define KLV_PARAM_QPMAKEPSDIND           4010 /* * indefinite objectives of binary columns: 0 refused, 1 repaired */

/* Network optimizer */
#define KLV_PARAM_NETITLIM               5001 /* network simplex: limit on iterations */
#define KLV_PARAM_NETEPOPT               5002 /* network simplex: optimality tolerance */
#define KLV_PARAM_NETEPRHS               5003 /* network simplex: feasibility tolerance */
#define KLV_PARAM_NETPPRIIND             5004 /* network simplex: kind of pricing: 1, 2, or 0 and 3 */
#define KLV_PARAM_NETDISPLAY             5005 /* network simplex log: 0 none to 2 */
/* clang-format on */

/* Types of parameters, see KLVgetparamtype. */
#define KLV_PARAMTYPE_NONE 0
#define KLV_PARAMTYPE_INT 1
#define KLV_PARAMTYPE_DOUBLE 2
#define KLV_PARAMTYPE_STRING 3

/* Sets an integer parameter. 1013 when the number is not that of an integer parameter, 1014 or
 * 1015 when the value is below or above the bounds, 1807 when it conflicts with the polishing
 * parameters; the parameter keeps its value then. */
KLV_API int KLVsetintparam(KLVenv env, int number, int value);

/* Sets a double parameter; errors as for KLVsetintparam. A NaN passes the bounds. */
KLV_API int KLVsetdblparam(KLVenv env, int number, double value);

/* Sets a string parameter to a copy of a text of at most 511 characters. 1013, 1004. */
KLV_API int KLVsetstrparam(KLVenv env, int number, const char* value);

/* Stores the value of an integer parameter. 1013, 1004. */
KLV_API int KLVgetintparam(KLVenv env, int number, int* value_p);

/* Stores the value of a double parameter. 1013, 1004. */
KLV_API int KLVgetdblparam(KLVenv env, int number, double* value_p);

/* Copies the value of a string parameter into a buffer of at least 512 characters. 1013, 1004. */
KLV_API int KLVgetstrparam(KLVenv env, int number, char* value);

/* Stores default and bounds of an integer parameter through those pointers that are not null. */
KLV_API int KLVinfointparam(KLVenv env, int number, int* default_p, int* min_p, int* max_p);

/* Stores default and bounds of a double parameter through those pointers that are not null. Equal
 * bounds mean that no bounds apply. */
KLV_API int KLVinfodblparam(KLVenv env, int number, double* default_p, double* min_p,
                            double* max_p);

/* Copies the default of a string parameter into a buffer of at least 512 characters (or null). */
KLV_API int KLVinfostrparam(KLVenv env, int number, char* default_value);

/* Copies the name of a parameter into a buffer of at least 512 characters; the empty text for a
 * hidden parameter and for a number in the range of a group that no parameter has. 1013 outside
 * every group. */
KLV_API int KLVgetparamname(KLVenv env, int number, char* name);

/* Copies what a parameter means, one line of text, into a buffer of at least 512 characters; the
 * empty text for a hidden parameter. *effect_p (may be null) receives 0 when this version has
 * nothing yet that the parameter governs, else 1. 1013, 1004. */
KLV_API int KLVgetparammeaning(KLVenv env, int number, char* meaning, int* effect_p);

/* Stores the number of the public parameter with a name (case counts). 1028, and -1 is stored, for
 * an unknown name. */
KLV_API int KLVgetparamnum(KLVenv env, const char* name, int* number_p);

/* Stores the kind of a parameter, KLV_PARAMTYPE_NONE for a number in the range of a group that no
 * parameter has. 1013 outside every group. */
KLV_API int KLVgetparamtype(KLVenv env, int number, int* type_p);

/* Sets every parameter, the hidden ones included, to its default; screen output goes off. */
KLV_API int KLVsetdefaults(KLVenv env);

/* Lists the public parameters whose value differs from the default, in ascending order: the first
 * `space` numbers go to numbers, *count_p receives how many that are, and *surplus_p receives
 * `space` minus the number of changed parameters. 1207 when the surplus is negative; with space 0
 * that is not printed. */
KLV_API int KLVgetchgparam(KLVenv env, int* count_p, int* numbers, int space, int* surplus_p);

/* Replaces all parameters by what a parameter file says; those it does not mention get their
 * defaults. A plain name that does not open is tried with ".prm" appended. On failure no parameter
 * changes, and the reason is printed with the number of the line: 1423 unreadable, 1661 bad header,
 * 1013 or 1028 unknown parameter, 1660 no value, 1434 no number, 1026, 1465, and the errors of the
 * setters. */
KLV_API int KLVreadcopyparam(KLVenv env, const char* filename);

/* Writes the parameters that differ from their defaults to a parameter file. 1421 for a null or
 * empty name, 1422 when the file cannot be written. */
KLV_API int KLVwriteparam(KLVenv env, const char* filename);

/* As KLVwriteparam, without the settings that only concern the screen (KLV_PARAM_SCRIND) or the
 * host (KLV_PARAM_MIPCBREDLP, hidden 1053). */
KLV_API int KLVEwriteparam(KLVenv env, const char* filename);

/* ---- Callbacks and termination -------------------------------------------------------------- */

/* From where a callback is called. */
#define KLV_CALLBACK_FROM_PRIMAL 1
#define KLV_CALLBACK_FROM_DUAL 2

/* A callback: the environment to use inside it, the optimizer's own data for the query functions, a
 * code KLV_CALLBACK_FROM_..., and the handle it was stored with. A result other than 0 stops the
 * optimizer (KLV_STATUS_USER_ABORTED). */
typedef int (*KLVcallback)(KLVenv env, void* cbdata, int wherefrom, void* cbhandle);

/* In this version the LP callback alone is called. */

/* Stores the function that is called by the continuous optimizers;
 * null removes it. */
KLV_API int KLVsetlpcallbackfunc(KLVenv env, KLVcallback function, void* cbhandle);

/* Stores the pair set with KLVsetlpcallbackfunc through those pointers that are not null. */
KLV_API int KLVgetlpcallbackfunc(KLVenv env, KLVcallback* function_p, void** cbhandle_p);

/* Stores the function that is called by the network optimizer;
 * null removes it. */
KLV_API int KLVsetnetcallbackfunc(KLVenv env, KLVcallback function, void* cbhandle);

/* Stores the pair set with KLVsetnetcallbackfunc through those pointers that are not null. */
KLV_API int KLVgetnetcallbackfunc(KLVenv env, KLVcallback* function_p, void** cbhandle_p);

/* Stores the function that is called by the tuning tool;
 * null removes it. */
KLV_API int KLVsettuningcallbackfunc(KLVenv env, KLVcallback function, void* cbhandle);

/* Stores the pair set with KLVsettuningcallbackfunc through those pointers that are not null. */
KLV_API int KLVgettuningcallbackfunc(KLVenv env, KLVcallback* function_p, void** cbhandle_p);

/* Stores the function that is called by the MIP optimizer and may only ask for information;
 * null removes it. */
KLV_API int KLVsetinfocallbackfunc(KLVenv env, KLVcallback function, void* cbhandle);

/* Stores the pair set with KLVsetinfocallbackfunc through those pointers that are not null. */
KLV_API int KLVgetinfocallbackfunc(KLVenv env, KLVcallback* function_p, void** cbhandle_p);

/* Stores the function that is called by the MIP optimizer;
 * null removes it. */
KLV_API int KLVsetmipcallbackfunc(KLVenv env, KLVcallback function, void* cbhandle);

/* Stores the pair set with KLVsetmipcallbackfunc through those pointers that are not null. */
KLV_API int KLVgetmipcallbackfunc(KLVenv env, KLVcallback* function_p, void** cbhandle_p);

/* Names an int of the caller that stops the optimizers as soon as it is not 0; another thread may
 * set it at any time. Null removes it. */
KLV_API int KLVsetterminate(KLVenv env, volatile int* terminate);

/* ---- Problems ------------------------------------------------------------------------------- */

/* Makes an empty minimization problem of type 0 (LP) with that name; it belongs to the root of env
 * and is freed with env at the latest. Null on failure, with the code in *status_p (required). */
KLV_API KLVprob KLVcreateprob(KLVenv env, int* status_p, const char* name);

/* Makes a copy: model, names, type, solution and start basis. Null on failure. */
KLV_API KLVprob KLVcloneprob(KLVenv env, KLVprob lp, int* status_p);

/* Frees *lp_p and sets it to null. A null *lp_p is accepted; 1004 for a null lp_p. */
KLV_API int KLVfreeprob(KLVenv env, KLVprob* lp_p);

/* ---- Rows and columns ----------------------------------------------------------------------- */

/* Row i of the model is  a_i x <= rhs ('L'), = rhs ('E'), >= rhs ('G'), or, for 'R' with range r,
 * rhs <= a_i x <= rhs + r  (r >= 0),  rhs + r <= a_i x <= rhs  (r < 0).
 *
 * Functions that change a problem refuse one that only shows another (types 3, 8, 13) with 1023;
 * functions that read it follow it. Counts below 0 give 1003, row indices outside the problem 1203,
 * column indices 1201. While KLV_PARAM_DATACHECK is 1, numbers that are NaN (1225) or not finite
 * (1233), senses other than 'L', 'E', 'G', 'R' (1215) and null pointers in arrays of names (1224)
 * are refused too; without it they are stored as they are, and a null name means a default one
 * ("c5" for the fifth row, "x7" for the seventh column). */

/* Senses of the objective and of rows. */
#define KLV_MINIMIZE 1
#define KLV_MAXIMIZE (-1)
#define KLV_SENSE_LESS 'L'
#define KLV_SENSE_EQUAL 'E'
#define KLV_SENSE_GREATER 'G'
#define KLV_SENSE_RANGED 'R'

/* Replaces the model. Columns j = 0..numcols-1: obj, lb, ub, and the entries at positions
 * matbeg[j] .. matbeg[j] + matcnt[j] - 1 of matind (row indices) and matval; the areas of the
 * columns may be in any order. Rows i = 0..numrows-1: rhs, sense and, when not null, rngval
 * (used in 'R' rows). objsense: negative maximizes, otherwise minimizes. colname and rowname may be
 * null. With data checking, areas that overlap give 1226 or 1228, counts above numrows 1227, an
 * 'R' row without rngval and an objsense other than 1 and -1 give 1003. The name of the problem
 * stays; its type becomes 0. */
KLV_API int KLVcopylpwnames(KLVenv env, KLVprob lp, int numcols, int numrows, int objsense,
                            const double* obj, const double* rhs, const char* sense,
                            const int* matbeg, const int* matcnt, const int* matind,
                            const double* matval, const double* lb, const double* ub,
                            const double* rngval, const char* const* colname,
                            const char* const* rowname);

/* KLVcopylpwnames without names. */
KLV_API int KLVcopylp(KLVenv env, KLVprob lp, int numcols, int numrows, int objsense,
                      const double* obj, const double* rhs, const char* sense, const int* matbeg,
                      const int* matcnt, const int* matind, const double* matval, const double* lb,
                      const double* ub, const double* rngval);

/* Appends rcnt empty rows. Null arrays: rhs 0, sense 'E', rngval 0, no names. */
KLV_API int KLVnewrows(KLVenv env, KLVprob lp, int rcnt, const double* rhs, const char* sense,
                       const double* rngval, const char* const* rowname);

/* Appends ccnt columns without entries (objective 0, bounds 0 and infinity) and then rcnt rows. The
 * entries of row k are at rmatbeg[k] .. rmatbeg[k + 1] - 1, those of the last row up to
 * nzcnt - 1, as column indices (new columns included) and values. Starts that do not ascend within
 * 0..nzcnt give 1226. rhs, sense and names may be null as in KLVnewrows. */
KLV_API int KLVaddrows(KLVenv env, KLVprob lp, int ccnt, int rcnt, int nzcnt, const double* rhs,
                       const char* sense, const int* rmatbeg, const int* rmatind,
                       const double* rmatval, const char* const* colname,
                       const char* const* rowname);

/* Appends ccnt empty columns. Null arrays: obj 0, lb 0, ub infinity, no names. A ctype array
 * ('C', 'B', 'I', 'S', 'N'; 3021 for another letter, with data checking) makes the problem
 * mixed-integer. */
KLV_API int KLVnewcols(KLVenv env, KLVprob lp, int ccnt, const double* obj, const double* lb,
                       const double* ub, const char* ctype, const char* const* colname);

/* Appends ccnt columns. The entries of column k are at cmatbeg[k] .. cmatbeg[k + 1] - 1, those of
 * the last column up to nzcnt - 1, as row indices and values. Otherwise as KLVnewcols. */
KLV_API int KLVaddcols(KLVenv env, KLVprob lp, int ccnt, int nzcnt, const double* obj,
                       const int* cmatbeg, const int* cmatind, const double* cmatval,
                       const double* lb, const double* ub, const char* const* colname);

/* Deletes rows begin..end; the rows behind them move down. 1200 for a range outside the problem. */
KLV_API int KLVdelrows(KLVenv env, KLVprob lp, int begin, int end);

/* Deletes columns begin..end in the same way, with their places in quadratic terms, sets and
 * indicator constraints. All user cuts and lazy constraints go, with a warning. */
KLV_API int KLVdelcols(KLVenv env, KLVprob lp, int begin, int end);

/* Deletes the rows i with delstat[i] = 1 (one entry per row); on return delstat[i] is the new index
 * of row i, or -1. */
KLV_API int KLVdelsetrows(KLVenv env, KLVprob lp, int* delstat);

/* Deletes the columns j with delstat[j] = 1, as KLVdelsetrows and KLVdelcols. */
KLV_API int KLVdelsetcols(KLVenv env, KLVprob lp, int* delstat);

/* ---- Changing numbers ----------------------------------------------------------------------- */

/* Which bound KLVchgbds changes. */
#define KLV_BOUND_LOWER 'L'
#define KLV_BOUND_UPPER 'U'
#define KLV_BOUND_BOTH 'B'

/* Changes one coefficient: of the matrix (0 removes the entry); with i = -1 of the objective; with
 * j = -1 the right-hand side of row i; with j = -2 the range of row i (1216 when it is not 'R').
 * 1211 for i = -1 with a negative j, 1200 for other places. */
KLV_API int KLVchgcoef(KLVenv env, KLVprob lp, int i, int j, double value);

/* Changes numcoefs matrix coefficients; of several changes of one place the last one counts. */
KLV_API int KLVchgcoeflist(KLVenv env, KLVprob lp, int numcoefs, const int* rowlist,
                           const int* collist, const double* vallist);

/* Changes the objective coefficients of cnt columns. */
KLV_API int KLVchgobj(KLVenv env, KLVprob lp, int cnt, const int* indices, const double* values);

/* Negative: maximize, otherwise minimize; with data checking 1003 for anything but 1 and -1. */
KLV_API int KLVchgobjsen(KLVenv env, KLVprob lp, int sense);

/* Changes the right-hand sides of cnt rows. */
KLV_API int KLVchgrhs(KLVenv env, KLVprob lp, int cnt, const int* indices, const double* values);

/* Changes the senses of cnt rows. A row that becomes 'R' has range 0 until KLVchgrngval. */
KLV_API int KLVchgsense(KLVenv env, KLVprob lp, int cnt, const int* indices, const char* senses);

/* Changes the ranges of cnt rows; 1216 when one of them is not 'R'. */
KLV_API int KLVchgrngval(KLVenv env, KLVprob lp, int cnt, const int* indices, const double* values);

/* Changes bounds: codes 'L' lower, 'U' upper, 'B' both (others change nothing; 1229 with data
 * checking). Values of magnitude 1e17 or more are infinite: stored as 1e20 where they relax,
 * ignored with a warning where they cannot hold. Values below 1e-10 in magnitude are stored as 0.
 */
KLV_API int KLVchgbds(KLVenv env, KLVprob lp, int cnt, const int* indices, const char* codes,
                      const double* values);

/* As KLVchgbds, for bounds tightened inside callbacks and heuristics. */
KLV_API int KLVtightenbds(KLVenv env, KLVprob lp, int cnt, const int* indices, const char* codes,
                          const double* values);

/* Removes matrix coefficients of magnitude below eps, and sets objective coefficients, right-hand
 * sides, ranges and bounds of magnitude below eps to 0. */
KLV_API int KLVcleanup(KLVenv env, KLVprob lp, double eps);

/* ---- Names ---------------------------------------------------------------------------------- */

/* Renames row (key 'r') or column (key 'c') `index`; with another key nothing happens. When the
 * problem has no names of that kind yet, all others get default names. */
KLV_API int KLVchgname(KLVenv env, KLVprob lp, int key, int index, const char* name);

/* Renames cnt rows. */
KLV_API int KLVchgrowname(KLVenv env, KLVprob lp, int cnt, const int* indices,
                          const char* const* names);

/* Renames cnt columns. */
KLV_API int KLVchgcolname(KLVenv env, KLVprob lp, int cnt, const int* indices,
                          const char* const* names);

/* Sets the name of the problem. */
KLV_API int KLVchgprobname(KLVenv env, KLVprob lp, const char* name);

/* Sets the name of the objective. */
KLV_API int KLVcopyobjname(KLVenv env, KLVprob lp, const char* name);

/* Removes the names of all rows and columns. */
KLV_API int KLVdelnames(KLVenv env, KLVprob lp);

/* Names of rows begin..end: the texts one after the other in namestore (storespace characters), and
 * in name[k] the address of the k-th, null when it does not start within the store. 1219 when the
 * rows have no names. */
KLV_API int KLVgetrowname(KLVenv env, KLVprob lp, char** name, char* namestore, int storespace,
                          int* surplus_p, int begin, int end);

/* Names of columns begin..end, as KLVgetrowname. */
KLV_API int KLVgetcolname(KLVenv env, KLVprob lp, char** name, char* namestore, int storespace,
                          int* surplus_p, int begin, int end);

/* The name of the problem in buffer (space characters, terminating zero included). */
KLV_API int KLVgetprobname(KLVenv env, KLVprob lp, char* buffer, int space, int* surplus_p);

/* The name of the objective, as KLVgetprobname; 1219 when it has none. */
KLV_API int KLVgetobjname(KLVenv env, KLVprob lp, char* buffer, int space, int* surplus_p);

/* The first row with that name. 1219 when the rows have no names; 1210, not printed, when none of
 * them is equal. */
KLV_API int KLVgetrowindex(KLVenv env, KLVprob lp, const char* name, int* index_p);

/* The first column with that name, as KLVgetrowindex. */
KLV_API int KLVgetcolindex(KLVenv env, KLVprob lp, const char* name, int* index_p);

/* ---- Queries of a model --------------------------------------------------------------------- */

/* Types of problems. A view shows the continuous problem that is left of a mixed-integer one when
 * its integer decisions are fixed; node problems are handed to callbacks. */
#define KLV_PROBTYPE_LP 0
#define KLV_PROBTYPE_MILP 1
#define KLV_PROBTYPE_FIXED_MILP 3 /* a view */
#define KLV_PROBTYPE_NODE_LP 4
#define KLV_PROBTYPE_QP 5
#define KLV_PROBTYPE_MIQP 7
#define KLV_PROBTYPE_FIXED_MIQP 8 /* a view */
#define KLV_PROBTYPE_NODE_QP 9
#define KLV_PROBTYPE_QCP 10
#define KLV_PROBTYPE_MIQCP 11
#define KLV_PROBTYPE_NODE_QCP 12
#define KLV_PROBTYPE_FIXED_MIQCP 13 /* a view */

/* The type of the problem: 0 LP, 1 MILP, 3 fixed MILP, 4 node LP, 5 QP, 7 MIQP, 8 fixed MIQP,
 * 9 node QP, 10 QCP, 11 MIQCP, 12 node QCP, 13 fixed MIQCP; -1 on failure. */
KLV_API int KLVgetprobtype(KLVenv env, KLVprob lp);

/* Number of rows; 0 on failure. */
KLV_API int KLVgetnumrows(KLVenv env, KLVprob lp);

/* Number of columns; 0 on failure. */
KLV_API int KLVgetnumcols(KLVenv env, KLVprob lp);

/* Number of matrix entries; 0 on failure. */
KLV_API int KLVgetnumnz(KLVenv env, KLVprob lp);

/* 1 when the objective is minimized, -1 when it is maximized; 0 on failure. */
KLV_API int KLVgetobjsen(KLVenv env, KLVprob lp);

/* Objective coefficients of columns begin..end, end - begin + 1 of them. */
KLV_API int KLVgetobj(KLVenv env, KLVprob lp, double* obj, int begin, int end);

/* Lower bounds of columns begin..end. */
KLV_API int KLVgetlb(KLVenv env, KLVprob lp, double* lb, int begin, int end);

/* Upper bounds of columns begin..end. */
KLV_API int KLVgetub(KLVenv env, KLVprob lp, double* ub, int begin, int end);

/* Right-hand sides of rows begin..end. */
KLV_API int KLVgetrhs(KLVenv env, KLVprob lp, double* rhs, int begin, int end);

/* Senses of rows begin..end. */
KLV_API int KLVgetsense(KLVenv env, KLVprob lp, char* sense, int begin, int end);

/* Ranges of rows begin..end, 0 for rows that are not 'R'; 1216 when the problem has no ranges. */
KLV_API int KLVgetrngval(KLVenv env, KLVprob lp, double* rngval, int begin, int end);

/* One coefficient: of the matrix (0 where there is no entry), with i = -1 of the objective, with
 * j = -1 the right-hand side of row i, with j = -2 its range (1216 when the problem has no ranges).
 * 1200 for other places. */
KLV_API int KLVgetcoef(KLVenv env, KLVprob lp, int i, int j, double* value_p);

/* Rows begin..end of the matrix: *nzcnt_p entries, those of row begin + k from position rmatbeg[k]
 * on, as column indices and values, by column. rmatspace is the room in rmatind and rmatval. */
KLV_API int KLVgetrows(KLVenv env, KLVprob lp, int* nzcnt_p, int* rmatbeg, int* rmatind,
                       double* rmatval, int rmatspace, int* surplus_p, int begin, int end);

/* Columns begin..end of the matrix, as KLVgetrows, in the order in which their entries are kept. */
KLV_API int KLVgetcols(KLVenv env, KLVprob lp, int* nzcnt_p, int* cmatbeg, int* cmatind,
                       double* cmatval, int cmatspace, int* surplus_p, int begin, int end);

/* ---- Types of columns and problems ---------------------------------------------------------- */

/* Column types, sets, indicator constraints and cuts make a problem mixed-integer (type 1, 7 or
 * 11); taking them away again does not change its type, KLVchgprobtype does. In this and the
 * following sections a null array of names means no names; when some items of a kind have names,
 * the others get default ones: a letter and the position ("s1" sets, "i1" indicators, "q1"
 * quadratic constraints, "u1" user cuts, "l1" lazy constraints). */

#define KLV_COLUMN_CONTINUOUS 'C'
#define KLV_COLUMN_BINARY 'B'
#define KLV_COLUMN_INTEGER 'I'
#define KLV_COLUMN_SEMI_CONTINUOUS 'S'
#define KLV_COLUMN_SEMI_INTEGER 'N'

/* Sets the types of all columns: 'C' continuous, 'B' binary, 'I' integer, 'S' semi-continuous,
 * 'N' semi-integer; 3021 for another letter. Finite bounds of columns other than 'C' and 'S' are
 * rounded inward, with a warning when one moves by more than 1e-9. */
KLV_API int KLVcopyctype(KLVenv env, KLVprob lp, const char* ctype);

/* Changes the types of cnt columns, as KLVcopyctype; all others keep theirs ('C' when the problem
 * had no types). */
KLV_API int KLVchgctype(KLVenv env, KLVprob lp, int cnt, const int* indices, const char* ctype);

/* Types of columns begin..end: 'C' continuous, 'B' binary, 'I' integer, 'S' semi-continuous,
 * 'N' semi-integer. 3003 when the problem is not mixed-integer. */
KLV_API int KLVgetctype(KLVenv env, KLVprob lp, char* ctype, int begin, int end);

/* Number of binary columns; 0 on failure. */
KLV_API int KLVgetnumbin(KLVenv env, KLVprob lp);

/* Number of integer columns that are not binary; 0 on failure. */
KLV_API int KLVgetnumint(KLVenv env, KLVprob lp);

/* Number of semi-continuous columns; 0 on failure. */
KLV_API int KLVgetnumsemicont(KLVenv env, KLVprob lp);

/* Number of semi-integer columns; 0 on failure. */
KLV_API int KLVgetnumsemiint(KLVenv env, KLVprob lp);

/* Changes the type of the problem to 0, 1, 5, 7, 10 or 11 and removes the data which that type does
 * not admit: column types, sets, indicators, order and cuts without a mixed-integer type, quadratic
 * constraints below types 10 and 11, the quadratic objective in types 0 and 1. Types 3, 8 and 13
 * show the linear or quadratic problem that is left when the decisions of problem 1, 7 or 11 are
 * those of its integer solution: integer columns fixed, active indicator rows and lazy constraints
 * as rows behind the others; given again they make it again, and 1, 7 and 11 lead back. 1022 for
 * other types (the problem stays as it is); 1024, 1029, 1030 when the problem is not the one that
 * type 3, 8, 13 can show; 1217 and 3023 without an integer solution. */
KLV_API int KLVchgprobtype(KLVenv env, KLVprob lp, int type);

/* As KLVchgprobtype, with the fixed values of solution soln of the pool (-1: the incumbent). 3024
 * when there is no pool. */
KLV_API int KLVchgprobtypesolnpool(KLVenv env, KLVprob lp, int type, int soln);

/* ---- Special ordered sets ------------------------------------------------------------------- */

/* Types of sets. */
#define KLV_SET_TYPE_1 '1' /* at most one member may be different from 0 */
#define KLV_SET_TYPE_2 '2' /* at most two, which are neighbours by weight */

/* Replaces all special ordered sets by numsos given ones: types sostype ('1' at most one member,
 * '2' at most two that are neighbours by weight may be different from 0; 3009 for another letter);
 * members of set k at sosbeg[k] .. sosbeg[k + 1] - 1, those of the last set up to numsosnz - 1, as
 * column indices sosind and weights soswt. Within a set, equal weights give 3010 and a column that
 * occurs twice 1222. Starts that do not ascend within 0..numsosnz give 1226. */
KLV_API int KLVcopysos(KLVenv env, KLVprob lp, int numsos, int numsosnz, const char* sostype,
                       const int* sosbeg, const int* sosind, const double* soswt,
                       const char* const* sosname);

/* Appends sets, with arguments as KLVcopysos. */
KLV_API int KLVaddsos(KLVenv env, KLVprob lp, int numsos, int numsosnz, const char* sostype,
                      const int* sosbeg, const int* sosind, const double* soswt,
                      const char* const* sosname);

/* Number of sets; 0 on failure. */
KLV_API int KLVgetnumsos(KLVenv env, KLVprob lp);

/* Sets begin..end: types, and *numsosnz_p members, those of set begin + k from position sosbeg[k]
 * on, as column indices and weights. sosspace is the room in sosind and soswt. The functions on
 * sets below give 3003 for a problem that is not mixed-integer and 3015 when it has no sets. */
KLV_API int KLVgetsos(KLVenv env, KLVprob lp, int* numsosnz_p, char* sostype, int* sosbeg,
                      int* sosind, double* soswt, int sosspace, int* surplus_p, int begin, int end);

/* Names of sets begin..end, as KLVgetrowname. 1219 when the sets have no names. */
KLV_API int KLVgetsosname(KLVenv env, KLVprob lp, char** name, char* namestore, int storespace,
                          int* surplus_p, int begin, int end);

/* The first set with that name. 1219; 1210, not printed, when there is none. */
KLV_API int KLVgetsosindex(KLVenv env, KLVprob lp, const char* name, int* index_p);

/* Deletes the sets k with delset[k] = 1 (one entry per set); on return delset[k] is the new index
 * of set k, or -1. */
KLV_API int KLVdelsetsos(KLVenv env, KLVprob lp, int* delset);

/* By how much the point x [columns] (null: the stored solution) violates each set begin..end: the
 * least sum of magnitudes of members that would have to become 0. Values up to KLV_PARAM_EPINT
 * count as 0. */
KLV_API int KLVgetsosinfeas(KLVenv env, KLVprob lp, const double* x, double* infeasout, int begin,
                            int end);

/* ---- Indicator constraints ------------------------------------------------------------------ */

/* Appends an indicator constraint: the row of nzcnt entries linind (columns) and linval with sense
 * 'L', 'E' or 'G' (1215 for another one) and right-hand side rhs holds while column indvar, a
 * binary one, is 1, or 0 when complemented is not 0. indname may be null. */
KLV_API int KLVaddindconstr(KLVenv env, KLVprob lp, int indvar, int complemented, int nzcnt,
                            double rhs, int sense, const int* linind, const double* linval,
                            const char* indname);

/* Number of indicator constraints; 0 on failure. */
KLV_API int KLVgetnumindconstrs(KLVenv env, KLVprob lp);

/* Indicator constraint `which`: its column (-1 when a file gave none), whether it is complemented,
 * right-hand side and sense (these pointers may be null), and *nzcnt_p entries of its row. `space`
 * is the room in linind and linval. 1200 when there is no such constraint. */
KLV_API int KLVgetindconstr(KLVenv env, KLVprob lp, int* indvar_p, int* complemented_p,
                            int* nzcnt_p, double* rhs_p, char* sense_p, int* linind, double* linval,
                            int space, int* surplus_p, int which);

/* The name of indicator constraint `which` in buffer, as KLVgetprobname. 1219, 1200. */
KLV_API int KLVgetindconstrname(KLVenv env, KLVprob lp, char* buffer, int space, int* surplus_p,
                                int which);

/* The first indicator constraint with that name. 1219; 1210, not printed, when there is none. */
KLV_API int KLVgetindconstrindex(KLVenv env, KLVprob lp, const char* name, int* index_p);

/* Deletes indicator constraints begin..end. 1200 for a range outside the problem. */
KLV_API int KLVdelindconstrs(KLVenv env, KLVprob lp, int begin, int end);

/* Right-hand side minus activity of the rows of indicator constraints begin..end in the stored
 * solution, whether or not they have to hold. 1217, 3023. */
KLV_API int KLVgetindconstrslack(KLVenv env, KLVprob lp, double* slackout, int begin, int end);

/* The same for a point x [columns] and all indicator constraints. */
KLV_API int KLVindconstrslackfromx(KLVenv env, KLVprob lp, const double* x, double* indslack);

/* By how much the point x [columns] (null: the stored solution) violates each indicator constraint
 * begin..end: 0 while its column is at the inactive value within KLV_PARAM_EPINT or the row holds
 * within KLV_PARAM_EPRHS, else positive above the right-hand side and negative below it. */
KLV_API int KLVgetindconstrinfeas(KLVenv env, KLVprob lp, const double* x, double* infeasout,
                                  int begin, int end);

/* ---- User cuts and lazy constraints --------------------------------------------------------- */

/* Appends rcnt user cuts: rows that hold for every integer solution, which the search may use as
 * cuts. Arguments as KLVaddrows; the senses are 'L', 'E', 'G' (1215 for another one). Cuts go when
 * columns are deleted. */
KLV_API int KLVaddusercuts(KLVenv env, KLVprob lp, int rcnt, int nzcnt, const double* rhs,
                           const char* sense, const int* rmatbeg, const int* rmatind,
                           const double* rmatval, const char* const* rowname);

/* Appends rcnt lazy constraints: rows of the model that the search looks at only when an integer
 * solution violates them. Arguments as KLVaddusercuts. */
KLV_API int KLVaddlazyconstraints(KLVenv env, KLVprob lp, int rcnt, int nzcnt, const double* rhs,
                                  const char* sense, const int* rmatbeg, const int* rmatind,
                                  const double* rmatval, const char* const* rowname);

/* Removes all user cuts. */
KLV_API int KLVfreeusercuts(KLVenv env, KLVprob lp);

/* Removes all lazy constraints. */
KLV_API int KLVfreelazyconstraints(KLVenv env, KLVprob lp);

/* Number of user cuts; 0 on failure. */
KLV_API int KLVgetnumusercuts(KLVenv env, KLVprob lp);

/* Number of lazy constraints; 0 on failure. */
KLV_API int KLVgetnumlazyconstraints(KLVenv env, KLVprob lp);

/* ---- Priority order ------------------------------------------------------------------------- */

/* Directions of branching. */
#define KLV_BRANCH_DOWN (-1)
#define KLV_BRANCH_AUTOMATIC 0
#define KLV_BRANCH_UP 1

/* Replaces the priority order of the search by cnt columns (0: no order): priorities (3006 below 0;
 * the larger ones first) and directions (-1 down first, 1 up first, 0 as the search likes; 3007 for
 * others). A null array means 0 for all. Of several entries of a column the first keeps its place
 * and takes what the last one says. 3003 when the problem is not mixed-integer. */
KLV_API int KLVcopyorder(KLVenv env, KLVprob lp, int cnt, const int* indices, const int* priority,
                         const int* direction);

/* The priority order: *cnt_p columns, priorities and directions; ordspace is the room in each of
 * the three arrays. 3003; 3016 without an order. */
KLV_API int KLVgetorder(KLVenv env, KLVprob lp, int* cnt_p, int* indices, int* priority,
                        int* direction, int ordspace, int* surplus_p);

/* Reads a priority order file, ".ord" added to a name that does not open, against numcols column
 * names. Stores its entries in indices, priority and direction (each with room for numcols) and
 * their number in *cnt_p, which is 0 after a failure. 1004 for a null pointer, 1219 for null
 * colnames, 1003 for a negative numcols; 1423; 1441, 3012, 3006, 1463 and the errors of numbers
 * with the line. */
KLV_API int KLVordread(KLVenv env, const char* filename, int numcols, char* const* colnames,
                       int* cnt_p, int* indices, int* priority, int* direction);

/* Reads a priority order file and makes it the order of the problem, unless it has no entries.
 * Errors of KLVordread; 3003 for a problem that is not mixed-integer; all or nothing. */
KLV_API int KLVreadcopyorder(KLVenv env, KLVprob lp, const char* filename);

/* Writes the priority order of the problem or, when it has none, the one that
 * KLV_PARAM_MIPORDTYPE asks for. 3003 for a problem that is not mixed-integer, 3016 without an
 * order, 1421, 1422. */
KLV_API int KLVordwrite(KLVenv env, KLVprob lp, const char* filename);

/* ---- Quadratic objective -------------------------------------------------------------------- */

/* The objective is c'x + 1/2 x'Qx with a symmetric Q of which both triangles are stored. Quadratic
 * data make a linear problem quadratic (types 5, 7; with quadratic constraints 10, 11). Column
 * indices outside the problem give 1200 in all functions of this section and the next. */

/* Replaces Q by a matrix given by columns: the entries of column j at positions qmatbeg[j] ..
 * qmatbeg[j] + qmatcnt[j] - 1 of qmatind (row indices) and qmatval. With data checking, a place
 * given twice gives 5011, triangles that differ 5012 and bad areas 1226 to 1228; without it entries
 * of one place are added up and differing triangles replaced by their mean, which is the same
 * objective. */
KLV_API int KLVcopyquad(KLVenv env, KLVprob lp, const int* qmatbeg, const int* qmatcnt,
                        const int* qmatind, const double* qmatval);

/* Replaces Q by the diagonal matrix of qsepvec, one value per column. */
KLV_API int KLVcopyqpsep(KLVenv env, KLVprob lp, const double* qsepvec);

/* Changes the entries (i, j) and (j, i) of Q; 0 removes them. A problem without Q gets one. */
KLV_API int KLVchgqpcoef(KLVenv env, KLVprob lp, int i, int j, double newvalue);

/* Entry (i, j) of Q, 0 where there is none. 5004 for a problem without Q. */
KLV_API int KLVgetqpcoef(KLVenv env, KLVprob lp, int i, int j, double* coef_p);

/* Columns begin..end of Q, as KLVgetcols, by ascending row. 5004. */
KLV_API int KLVgetquad(KLVenv env, KLVprob lp, int* nzcnt_p, int* qmatbeg, int* qmatind,
                       double* qmatval, int qmatspace, int* surplus_p, int begin, int end);

/* Number of columns with entries in Q; 0 without Q and on failure. */
KLV_API int KLVgetnumquad(KLVenv env, KLVprob lp);

/* Number of entries of Q, both triangles; 0 without Q and on failure. */
KLV_API int KLVgetnumqpnz(KLVenv env, KLVprob lp);

/* A point x [columns] with x'Qx < 0 for minimization, > 0 for maximization, which shows that the
 * objective is not convex (concave). 5004 without Q; 5014 when Q has no such point. */
KLV_API int KLVqpindefcertificate(KLVenv env, KLVprob lp, double* x);

/* ---- Quadratic constraints ------------------------------------------------------------------ */

/* Appends a quadratic constraint a'x + x'Qx <= rhs ('L'), = rhs ('E') or >= rhs ('G'; 1215 for
 * another sense): linnzcnt entries linind and linval of a, and quadnzcnt terms
 * quadval[k] * x[quadrow[k]] * x[quadcol[k]]. name may be null. With data checking a pair that
 * occurs twice gives 5011. */
KLV_API int KLVaddqconstr(KLVenv env, KLVprob lp, int linnzcnt, int quadnzcnt, double rhs,
                          int sense, const int* linind, const double* linval, const int* quadrow,
                          const int* quadcol, const double* quadval, const char* name);

/* Number of quadratic constraints; 0 on failure. */
KLV_API int KLVgetnumqconstrs(KLVenv env, KLVprob lp);

/* Quadratic constraint `which`: right-hand side and sense (these pointers may be null), linear
 * entries (linspace places) and quadratic terms (quadspace places), each with a surplus of its own.
 * 1200 when there is no such constraint. */
KLV_API int KLVgetqconstr(KLVenv env, KLVprob lp, int* linnzcnt_p, int* quadnzcnt_p, double* rhs_p,
                          char* sense_p, int* linind, double* linval, int linspace,
                          int* linsurplus_p, int* quadrow, int* quadcol, double* quadval,
                          int quadspace, int* quadsurplus_p, int which);

/* The name of quadratic constraint `which` in buffer, as KLVgetprobname. 1219, 1200. */
KLV_API int KLVgetqconstrname(KLVenv env, KLVprob lp, char* buffer, int space, int* surplus_p,
                              int which);

/* The first quadratic constraint with that name. 1219; 1210, not printed, when there is none. */
KLV_API int KLVgetqconstrindex(KLVenv env, KLVprob lp, const char* name, int* index_p);

/* Deletes quadratic constraints begin..end. 1200 for a range outside the problem. */
KLV_API int KLVdelqconstrs(KLVenv env, KLVprob lp, int begin, int end);

/* Activities a'x + x'Qx of quadratic constraints begin..end in the stored solution. 1217, 3023. */
KLV_API int KLVgetxqxax(KLVenv env, KLVprob lp, double* xqxax, int begin, int end);

/* Slacks of quadratic constraints begin..end in the stored solution: right-hand side minus
 * activity. 1217, 3023. */
KLV_API int KLVgetqconstrslack(KLVenv env, KLVprob lp, double* slackout, int begin, int end);

/* The same for a point x [columns] and all quadratic constraints. */
KLV_API int KLVqconstrslackfromx(KLVenv env, KLVprob lp, const double* x, double* qcslack);

/* By how much the point x [columns] (null: the stored solution) violates quadratic constraints
 * begin..end: positive above the right-hand side, negative below it, 0 when satisfied. */
KLV_API int KLVgetqconstrinfeas(KLVenv env, KLVprob lp, const double* x, double* infeasout,
                                int begin, int end);

/* ---- MIP starts ----------------------------------------------------------------------------- */

/* Values of some or all columns from which the search of a mixed-integer problem may make its first
 * solution. A problem holds any number of starts, each with a name and an effort level; they are
 * kept through edits, lose the entries of deleted columns, and go when the whole model is replaced.
 * In all functions of this section: 3003 for a problem that is not mixed-integer; those that read,
 * change or delete starts give 3020 when there is none. No optimizer of this version uses them. */

/* Effort levels: how much may be done to make a solution of a start. Higher levels count as the
 * highest. */
#define KLV_MIPSTART_AUTO 0
#define KLV_MIPSTART_CHECK 1    /* only check whether the values are a solution */
#define KLV_MIPSTART_FIXED 2    /* fix the integer columns at the values, solve what is left */
#define KLV_MIPSTART_COMPLETE 3 /* complete a start of some columns by a small search */
#define KLV_MIPSTART_REPAIR 4   /* also give up values that do not fit */

/* Appends mcnt starts with together nzcnt entries: start k has those from beg[k] up to
 * beg[k + 1] - 1 (the last one up to nzcnt - 1), columns varindices[p] with values[p].
 * effortlevel [mcnt] may be null: automatic; mipstartname [mcnt] or a name of it too: "m" and the
 * start's number, from 1. Equal names are kept. 1003 for a negative count or level, 1004, 1226 for
 * starts that do not ascend, 1201, 1222 for a column that occurs twice in a start; with data
 * checking 1225 or 1233 for a value that is no finite number, 1224 for a null name. */
KLV_API int KLVaddmipstarts(KLVenv env, KLVprob lp, int mcnt, int nzcnt, const int* beg,
                            const int* varindices, const double* values, const int* effortlevel,
                            const char* const* mipstartname);

/* Replaces the entries of the mcnt starts mipstartindices[k], as KLVaddmipstarts; their names stay,
 * with a null effortlevel their levels too. 1200 for a start that does not exist. */
KLV_API int KLVchgmipstarts(KLVenv env, KLVprob lp, int mcnt, const int* mipstartindices, int nzcnt,
                            const int* beg, const int* varindices, const double* values,
                            const int* effortlevel);

/* Replaces all starts by one of cnt entries, of automatic effort and with a default name. Errors of
 * KLVaddmipstarts. */
KLV_API int KLVcopymipstart(KLVenv env, KLVprob lp, int cnt, const int* indices,
                            const double* values);

/* Replaces the entries of the first start. Errors of KLVaddmipstarts. */
KLV_API int KLVchgmipstart(KLVenv env, KLVprob lp, int cnt, const int* indices,
                           const double* values);

/* Number of starts; 0 on failure. */
KLV_API int KLVgetnummipstarts(KLVenv env, KLVprob lp);

/* Starts begin..end: *nzcnt_p entries, those of start begin + k from position beg[k] on, and the
 * effort levels (effortlevel may be null). startspace is the room in varindices and values. */
KLV_API int KLVgetmipstarts(KLVenv env, KLVprob lp, int* nzcnt_p, int* beg, int* varindices,
                            double* values, int* effortlevel, int startspace, int* surplus_p,
                            int begin, int end);

/* The *cnt_p entries of the first start; startspace is the room in each of the arrays. */
KLV_API int KLVgetmipstart(KLVenv env, KLVprob lp, int* cnt_p, int* indices, double* values,
                           int startspace, int* surplus_p);

/* Names of starts begin..end, as KLVgetrowname. */
KLV_API int KLVgetmipstartname(KLVenv env, KLVprob lp, char** name, char* namestore, int storespace,
                               int* surplus_p, int begin, int end);

/* The first start with that name; 1210, not printed, when there is none. */
KLV_API int KLVgetmipstartindex(KLVenv env, KLVprob lp, const char* name, int* index_p);

/* Deletes starts begin..end. */
KLV_API int KLVdelmipstarts(KLVenv env, KLVprob lp, int begin, int end);

/* Deletes the starts k with delset[k] == 1; delset [starts] then holds the new index of each, -1
 * for deleted ones. */
KLV_API int KLVdelsetmipstarts(KLVenv env, KLVprob lp, int* delset);

/* ---- Model files ---------------------------------------------------------------------------- */

/* File types. */
#define KLV_FILETYPE_LP "LP"
#define KLV_FILETYPE_MPS "MPS"
#define KLV_FILETYPE_LP_GENERIC "RLP" /* LP with generic names, writing only */
#define KLV_FILETYPE_MPS_GENERIC \
  "RMP" /* MPS with generic names, writing only; "REW" means the same */

/* Replaces the problem by the model in a file; the old one stays when that fails. filetype is "LP",
 * "MPS", "NET" or "MIN" (a network, as a linear problem), or null: then the name's extension
 * decides
 * (.lp, .mps, .qps, .net, .min in any case), or else the first bytes of the file. Names ending in
 * .gz, .Z or .bz2 are read through gzip or bzip2. An empty name with the type "LP" reads a model
 * typed on standard input. 1004 for a null name; 1423 when the file cannot be read; 1424 for
 * another format, binary models among them; the errors of the format are printed with their line
 * numbers. */
KLV_API int KLVreadcopyprob(KLVenv env, KLVprob lp, const char* filename, const char* filetype);

/* Writes the problem to a file. filetype, or else the name's extension, is "MPS" or "LP", "RMP" or
 * "REW" (MPS with generic names) or "RLP" (LP with generic names). Names ending in .gz, .bz2 or the
 * capital .Z are written through gzip or bzip2. 1421 without a name; 1422 when the file cannot be
 * written; 1424 for any other format. */
KLV_API int KLVwriteprob(KLVenv env, KLVprob lp, const char* filename, const char* filetype);

/* Writes the problem as an MPS file with its own names. 1421, 1422. */
KLV_API int KLVmpswrite(KLVenv env, KLVprob lp, const char* filename);

/* Writes the problem as an MPS file with the names x1, c1 and so on. 1421, 1422. */
KLV_API int KLVmpsrewrite(KLVenv env, KLVprob lp, const char* filename);

/* Writes the problem as an LP file with its own names, made legal where needed. 1421, 1422. */
KLV_API int KLVlpwrite(KLVenv env, KLVprob lp, const char* filename);

/* Writes the problem as an LP file with the names x1, c1 and so on. 1421, 1422. */
KLV_API int KLVlprewrite(KLVenv env, KLVprob lp, const char* filename);

/* Writes the conflict of the problem, a smallest infeasible part of it, as an LP file. 1421; 1719
 * when the problem has no conflict, which in this version is always so: no function finds one. */
KLV_API int KLVclpwrite(KLVenv env, KLVprob lp, const char* filename);

/* Writes the dual of a linear problem as an MPS file: a minimization whose optimum v gives that of
 * the problem as -(v + *objshift_p), for a maximization as v + *objshift_p (objshift_p may be null;
 * the NAME line holds the shift too when it is not 0). Its rows are named after the columns of the
 * problem, its columns after the rows; a ranged row has a second column with ".rg" behind its name,
 * a column with two bounds one with ".ub"; fixed columns and rows without limits have none. 1017,
 * 1018, 1031 for problems that are not linear, 1421, 1422. */
KLV_API int KLVdualwrite(KLVenv env, KLVprob lp, const char* filename, double* objshift_p);

/* ---- Optimizers ----------------------------------------------------------------------------- */

/* Methods: values of KLV_PARAM_LPMETHOD. This version has the first three. */
#define KLV_METHOD_AUTOMATIC 0
#define KLV_METHOD_PRIMAL 1
#define KLV_METHOD_DUAL 2
#define KLV_METHOD_NETWORK 3
#define KLV_METHOD_BARRIER 4
#define KLV_METHOD_SIFTING 5
#define KLV_METHOD_CONCURRENT 6

/* The functions below solve the linear problem and leave status, solution and basis in it, see the
 * queries of solutions. They start from the basis the problem holds unless KLV_PARAM_ADVIND is 0.
 * Errors of all of them: 1017 for a mixed-integer problem, 1018 for a quadratic objective, 1031 for
 * quadratic constraints, 1256 when no basis could be factored; after an error the problem holds
 * what it held before. */

/* Solves a linear problem by the method that KLV_PARAM_LPMETHOD names, or by a simplex method of
 * the library's choice. 1292 when the method named is not available. */
KLV_API int KLVlpopt(KLVenv env, KLVprob lp);

/* Solves a linear problem by the primal simplex method. */
KLV_API int KLVprimopt(KLVenv env, KLVprob lp);

/* Solves a linear problem by the dual simplex method. */
KLV_API int KLVdualopt(KLVenv env, KLVprob lp);

/* Network simplex on the network part of the problem, then the simplex method that `method` names.
 * Not available yet: 1292. */
KLV_API int KLVhybnetopt(KLVenv env, KLVprob lp, int method);

/* Barrier, then crossover to a basis by `method`. Not available yet: 1292. */
KLV_API int KLVhybbaropt(KLVenv env, KLVprob lp, int method);

/* Sifting. Not available yet: 1292. */
KLV_API int KLVsiftopt(KLVenv env, KLVprob lp);

/* ---- Mixed-integer optimizer ---------------------------------------------------------------- */

/* Statuses of mixed-integer solutions. Those that come in pairs say whether an integer solution is
 * known. */
#define KLV_STATUS_MIP_OPTIMAL 101
#define KLV_STATUS_MIP_OPTIMAL_TOLERANCE 102 /* within KLV_PARAM_EPGAP or KLV_PARAM_EPAGAP */
#define KLV_STATUS_MIP_INFEASIBLE 103
#define KLV_STATUS_MIP_SOLUTION_LIMIT 104
#define KLV_STATUS_MIP_NODE_LIMIT 105
#define KLV_STATUS_MIP_NODE_LIMIT_NO_SOLUTION 106
#define KLV_STATUS_MIP_TIME_LIMIT 107
#define KLV_STATUS_MIP_TIME_LIMIT_NO_SOLUTION 108
#define KLV_STATUS_MIP_ERROR 109
#define KLV_STATUS_MIP_ERROR_NO_SOLUTION 110
#define KLV_STATUS_MIP_MEMORY_LIMIT 111
#define KLV_STATUS_MIP_MEMORY_LIMIT_NO_SOLUTION 112
#define KLV_STATUS_MIP_ABORTED 113
#define KLV_STATUS_MIP_ABORTED_NO_SOLUTION 114
#define KLV_STATUS_MIP_OPTIMAL_UNSCALED 115
#define KLV_STATUS_MIP_UNBOUNDED 118
#define KLV_STATUS_MIP_INFEASIBLE_OR_UNBOUNDED 119
#define KLV_STATUS_MIP_ITERATION_LIMIT 131
#define KLV_STATUS_MIP_ITERATION_LIMIT_NO_SOLUTION 132

/* Solves a mixed-integer problem by branch and bound; status, best integer solution and the counts
 * below are in the problem afterwards. A limit that ends the search is a status, not an error. 3003
 * for a problem without discrete parts, 1018 for a quadratic objective, 1031 for quadratic
 * constraints; after an error the problem holds what it held before. */
KLV_API int KLVmipopt(KLVenv env, KLVprob lp);

/* The functions below tell about the last call of KLVmipopt. Those that return an int return 0 on
 * failure, those that store a value return 3003 for a problem without discrete parts and 1217 when
 * it was not optimized. */

/* Returns the number of nodes processed, the root not counted. */
KLV_API int KLVgetnodecnt(KLVenv env, KLVprob lp);

/* Returns the number of nodes that were open when the search ended. */
KLV_API int KLVgetnodeleftcnt(KLVenv env, KLVprob lp);

/* Returns the simplex iterations of all linear programs together. */
KLV_API int KLVgetmipitcnt(KLVenv env, KLVprob lp);

/* Returns the node at which the best integer solution was found. */
KLV_API int KLVgetnodeint(KLVenv env, KLVprob lp);

/* Returns the status of the last node's linear program, as for a continuous problem. */
KLV_API int KLVgetsubstat(KLVenv env, KLVprob lp);

/* Returns the method that solved it (KLV_METHOD_...). */
KLV_API int KLVgetsubmethod(KLVenv env, KLVprob lp);

/* Stores the best bound on the objective that the search has proved. */
KLV_API int KLVgetbestobjval(KLVenv env, KLVprob lp, double* bound_p);

/* Stores the gap between the best integer solution and the best bound, relative to the former. */
KLV_API int KLVgetmiprelgap(KLVenv env, KLVprob lp, double* gap_p);

/* Stores the objective that a node had to be able to beat when the search ended. */
KLV_API int KLVgetcutoff(KLVenv env, KLVprob lp, double* cutoff_p);

/* Stores the number of cuts of a type, 0 to 22, that were applied. 1003 for another type. */
KLV_API int KLVgetnumcuts(KLVenv env, KLVprob lp, int type, int* count_p);

/* ---- Solutions ------------------------------------------------------------------------------ */

/* Statuses of solutions of continuous problems. */
#define KLV_STATUS_NONE 0 /* nothing is stored */
#define KLV_STATUS_OPTIMAL 1
#define KLV_STATUS_UNBOUNDED 2
#define KLV_STATUS_INFEASIBLE 3
#define KLV_STATUS_INFEASIBLE_OR_UNBOUNDED 4
#define KLV_STATUS_OPTIMAL_UNSCALED 5 /* optimal, but some limit is violated when unscaled */
#define KLV_STATUS_NON_OPTIMAL 6      /* stopped by numerical trouble before optimality */
#define KLV_STATUS_ITERATION_LIMIT 10
#define KLV_STATUS_TIME_LIMIT 11
#define KLV_STATUS_OBJECTIVE_LIMIT 12
#define KLV_STATUS_USER_ABORTED 13

/* Methods of solutions that are no value of KLV_PARAM_LPMETHOD. */
#define KLV_METHOD_NONE (-1) /* no solution */
#define KLV_METHOD_FEASOPT 11
#define KLV_METHOD_MIP 12

/* Kinds of a stored solution. */
#define KLV_SOLUTION_NONE 0
#define KLV_SOLUTION_BASIC 1    /* primal and dual values and a basis */
#define KLV_SOLUTION_NONBASIC 2 /* primal and dual values */
#define KLV_SOLUTION_PRIMAL 3   /* primal values */

/* In all functions of this section: 1217 when no solution is stored (for a mixed-integer problem:
 * no integer solution was found). Signs: the dual value of a row is the change of the objective, as
 * stated, per unit of its right-hand side; the reduced cost of a column is its objective
 * coefficient minus its entries times the dual values; the slack of a row is right-hand side minus
 * activity, for a ranged row activity minus right-hand side.
 *
 * The functions with a range fill an array of end - begin + 1 values for the columns or rows begin
 * to end. */

/* Status, objective value, primal values x [columns], dual values pi [rows], slacks [rows] and
 * reduced costs dj [columns]; each pointer may be null. 1017 when dual values of a mixed-integer
 * problem are asked for, 1232 when the solution has none, 3023 when the values of the integer
 * solution are not available. */
KLV_API int KLVsolution(KLVenv env, KLVprob lp, int* status_p, double* objective_p, double* x,
                        double* pi, double* slack, double* dj);

/* Method (-1 without a solution), kind (KLV_SOLUTION_...), and whether the solution is primal and
 * dual feasible (1 or 0); each pointer may be null. Not an error without a solution. */
KLV_API int KLVsolninfo(KLVenv env, KLVprob lp, int* method_p, int* type_p, int* primal_feasible_p,
                        int* dual_feasible_p);

/* Returns the solution status, 0 when no result is stored or on failure. */
KLV_API int KLVgetstat(KLVenv env, KLVprob lp);

/* Returns the method of the stored solution: 1 primal simplex, 2 dual simplex, 4 barrier, 11
 * FeasOpt, 12 mixed-integer; 0 on failure. */
KLV_API int KLVgetmethod(KLVenv env, KLVprob lp);

/* Stores the objective value (null is accepted unless the problem is mixed-integer). */
KLV_API int KLVgetobjval(KLVenv env, KLVprob lp, double* objective_p);

/* Primal values of columns. 3023 as in KLVsolution. */
KLV_API int KLVgetx(KLVenv env, KLVprob lp, double* x, int begin, int end);

/* Slacks of rows. */
KLV_API int KLVgetslack(KLVenv env, KLVprob lp, double* slack, int begin, int end);

/* Activities of rows: their entries times the primal values. */
KLV_API int KLVgetax(KLVenv env, KLVprob lp, double* ax, int begin, int end);

/* Dual values of rows. 1017 and 1232 as in KLVsolution. */
KLV_API int KLVgetpi(KLVenv env, KLVprob lp, double* pi, int begin, int end);

/* Reduced costs of columns. 1017 and 1232 as in KLVsolution. */
KLV_API int KLVgetdj(KLVenv env, KLVprob lp, double* dj, int begin, int end);

/* By how much the point x [columns] (null: the stored solution) violates each row begin to end:
 * positive above the upper limit of the row, negative below the lower one, 0 within. */
KLV_API int KLVgetrowinfeas(KLVenv env, KLVprob lp, const double* x, double* infeas, int begin,
                            int end);

/* The same for the bounds of columns. 0 satisfies a semi-continuous or semi-integer column. */
KLV_API int KLVgetcolinfeas(KLVenv env, KLVprob lp, const double* x, double* infeas, int begin,
                            int end);

/* Returns the simplex iterations of the last optimization, both phases; 0 on failure. */
KLV_API int KLVgetitcnt(KLVenv env, KLVprob lp);

/* Returns the simplex iterations that the last optimization spent in phase I; 0 on failure. */
KLV_API int KLVgetphase1cnt(KLVenv env, KLVprob lp);

/* Returns the barrier iterations of the last optimization; 0 on failure. */
KLV_API int KLVgetbaritcnt(KLVenv env, KLVprob lp);

/* Copies the text of a solution status code to buffer (room for 52 characters) and returns buffer;
 * for an unknown code the buffer gets "Unknown status value" and the result is null. The
 * environment is not used and may be null. */
KLV_API char* KLVgetstatstring(KLVenv env, int status, char* buffer);

/* ---- Start bases ---------------------------------------------------------------------------- */

/* The basis from which the next simplex run starts while KLV_PARAM_ADVIND is not 0. With
 * KLV_PARAM_ADVIND 1 a run whose start is close to an optimum, or comes with norms, starts from it
 * without presolve; any other start is crushed through presolve, with KLV_PARAM_ADVIND 2 every one.
 * The log says which. All functions of this section but those on files give 1017 for a
 * mixed-integer problem and 1031 with quadratic constraints. */

/* Basis codes of columns and of the slacks of rows. */
#define KLV_BASIS_AT_LOWER 0
#define KLV_BASIS_BASIC 1
#define KLV_BASIS_AT_UPPER 2
#define KLV_BASIS_FREE 3 /* free, or between its bounds (superbasic) */

/* Stores a basis: cstat [columns], rstat [rows]. With data checking 1253 for another code. A wrong
 * number of basic variables is made right when the basis is used. */
KLV_API int KLVcopybase(KLVenv env, KLVprob lp, const int* cstat, const int* rstat);

/* The basis stored, or left by the last optimization; each array may be null. 1262 without one. */
KLV_API int KLVgetbase(KLVenv env, KLVprob lp, int* cstat, int* rstat);

/* Stores squared primal steepest-edge norms, 1 + |B^-1 a_j|^2, for the stored basis: cnorm for
 * columns 0..len-1 (1 for the others), rnorm [rows] for the slacks. The next primal simplex run
 * with steepest-edge pricing starts from them instead of computing its own. 1262 without a basis,
 * 1208 for a len above the number of columns. */
KLV_API int KLVcopypnorms(KLVenv env, KLVprob lp, const double* cnorm, const double* rnorm,
                          int len);

/* Stores squared dual steepest-edge norms for the stored basis: norm[k] is |e_p'B^-1|^2 for the
 * position p where variable head[k] is basic, a column j or, as -1 - i, the slack of row i. Basic
 * variables that are not named get 1. The next dual simplex run with steepest-edge pricing starts
 * from them. 1262, 1208 as KLVcopypnorms. */
KLV_API int KLVcopydnorms(KLVenv env, KLVprob lp, const double* norm, const int* head, int len);

/* KLVcopybase and dual steepest-edge norms in one call: dnorm [number of basic variables] holds the
 * squared norms, as in KLVcopydnorms, of the basic columns in ascending order, then of the rows
 * whose slacks are basic. 1004, 1253, with data checking 1225 or 1233 for a bad norm. */
KLV_API int KLVcopybasednorms(KLVenv env, KLVprob lp, const int* cstat, const int* rstat,
                              const double* dnorm);

/* Stores a basis of which only some statuses are known: cstat[k] of column cindices[k], k below
 * ccnt, and rstat[k] of row rindices[k], k below rcnt. The slacks of other rows are basic; other
 * columns are at their bound nearer to 0, or are free. 1003 for a negative count, 1004, 1201,
 * 1203, 1253. */
KLV_API int KLVcopypartialbase(KLVenv env, KLVprob lp, int ccnt, const int* cindices,
                               const int* cstat, int rcnt, const int* rindices, const int* rstat);

/* Stores a start of any kind; arrays that are null are not known. cstat [columns] and rstat [rows]
 * are a basis, both or neither (1004). Values: cprim [columns] of the columns, rprim [rows] of the
 * slacks, cdual [columns] reduced costs, rdual [rows] duals. With a basis cprim says where columns
 * with status 3 are. Without one the basis is made from the values: what is between its
 * bounds or, when only duals are known, has none, is basic as far as there are rows; slacks first,
 * then the columns farthest from their bounds; what is left over between its bounds has status 3.
 * KLVgetbase tells the basis made. 1004 when everything is null, 1253, and with data checking 1225
 * or 1233 for a value that is no finite number. */
KLV_API int KLVcopystart(KLVenv env, KLVprob lp, const int* cstat, const int* rstat,
                         const double* cprim, const double* rprim, const double* cdual,
                         const double* rdual);

/* Reads a basis file, ".bas" added to a name that does not open, and makes its basis the one from
 * which the next optimization starts. All or nothing. Lines about names that the problem does not
 * have are skipped with a warning. 1421 without a name; 1423 when the file cannot be read; 1441,
 * 1551, 1552, 1553 and the errors of numbers with the line; 1550 when there is not one basic
 * variable for each row; 1554 for a nonbasic column with a value between its bounds. */
KLV_API int KLVreadcopybase(KLVenv env, KLVprob lp, const char* filename);

/* Writes the basis of the problem. 1421, 1422; 1262 when there is none; 1555 when the number of its
 * basic variables is not the number of rows. */
KLV_API int KLVmbasewrite(KLVenv env, KLVprob lp, const char* filename);

/* ---- Solution and start files --------------------------------------------------------------- */

/* Solutions (.sol) and MIP starts (.mst) in XML. KLV_PARAM_WRITELEVEL chooses the variables
 * written: 1 all, 2 the discrete ones, 3 those whose value is not 0, 4 discrete ones with such a
 * value; 0 is 2 for MIP starts and 1 for solutions. Names ending in .gz, .bz2 or the capital .Z are
 * compressed. In all functions of this section: 1421 without a name, 1422 when the file cannot be
 * written, 1423 when it cannot be read.
 *
 * Readers find variables and constraints by name when the problem has names, else by index. What
 * the file says about something that the problem does not have, or says a second time, is skipped
 * with a warning. 1425, with the line, for a file that is no XML or declares entities. */

/* Writes the solution of the problem, of a mixed-integer problem the incumbent: values, slacks and,
 * as far as there are any, duals, basis statuses and figures of quality. 1217 without a solution,
 * 3023 when the values of the incumbent are not there. */
KLV_API int KLVsolwrite(KLVenv env, KLVprob lp, const char* filename);

/* Writes a member of the solution pool, soln -1 being the incumbent. 3024 when there is no pool,
 * which in this version is always so; 1217, 3023. */
KLV_API int KLVsolwritesolnpool(KLVenv env, KLVprob lp, int soln, const char* filename);

/* Writes all members of the solution pool into one file. 3024 when there is no pool, which in this
 * version is always so. */
KLV_API int KLVsolwritesolnpoolall(KLVenv env, KLVprob lp, const char* filename);

/* Writes the incumbent as a MIP start. 3003 for a problem that is not mixed-integer, 1217, 3023. */
KLV_API int KLVmstwrite(KLVenv env, KLVprob lp, const char* filename);

/* As KLVsolwritesolnpool, but as a MIP start. 3003 for a problem that is not mixed-integer. */
KLV_API int KLVmstwritesolnpool(KLVenv env, KLVprob lp, int soln, const char* filename);

/* As KLVsolwritesolnpoolall, but as MIP starts. 3003. */
KLV_API int KLVmstwritesolnpoolall(KLVenv env, KLVprob lp, const char* filename);

/* Writes MIP starts begin..end. 3003; 3020 when there is none; 1200. */
KLV_API int KLVwritemipstarts(KLVenv env, KLVprob lp, const char* filename, int begin, int end);

/* Reads a solution file, ".sol" added to a name that does not open, as a start of the next
 * optimization; all or nothing. A continuous problem gets the file's basis when every row and
 * column has a status and KLV_PARAM_ADVIND is not 0, else the basis that the values determine, as
 * KLVcopystart makes it; a mixed-integer problem one more MIP start, and the basis too. Warnings
 * tell what became of a basis, and when there are no values. 1031 for a continuous problem with
 * quadratic constraints. */
KLV_API int KLVreadcopysol(KLVenv env, KLVprob lp, const char* filename);

/* Reads a MIP-start file, ".mst" added to a name that does not open, and appends its starts; all or
 * nothing. Solution files are read too. 3003 for a problem that is not mixed-integer. */
KLV_API int KLVreadcopymipstart(KLVenv env, KLVprob lp, const char* filename);

/* The same as KLVreadcopymipstart. */
KLV_API int KLVreadcopymipstarts(KLVenv env, KLVprob lp, const char* filename);

/* ---- Solution reports ----------------------------------------------------------------------- */

/* The types of reports. */
#define KLV_FILETYPE_TEXT_REPORT "TXT"
#define KLV_FILETYPE_BINARY_REPORT "BIN"

/* Writes the basic solution as a report: an entry for the objective, each row and each column, with
 * status, activity, slack or cost, limits, and dual activity or reduced cost. filetype, or else the
 * name's extension, is "TXT" or "BIN" in any case. Duals of rows are given with the opposite sign;
 * slacks are the right-hand side minus the activity. A marker 'A' is a sign of other optima.
 * 1421 without a name; 1424 for another type; 1261 without a basic solution; 1422. */
KLV_API int KLVwritesol(KLVenv env, KLVprob lp, const char* filename, const char* filetype);

/* The report as a text: two sections of lines in fixed columns. 1261, 1421, 1422. */
KLV_API int KLVtxtsolwrite(KLVenv env, KLVprob lp, const char* filename);

/* The report as records of 64 bytes, each framed by its length as a 4-byte integer before and
 * behind it. A section begins with a record of eight-character names: of the section, "HSECTION",
 * "RSECTION" (rows, the objective first) or "CSECTION", and of its fields. In the sections of rows
 * and columns a record then holds as doubles the activity, slack or cost, lower and upper limit
 * (-1.01e75, 1.01e75: none), dual or reduced cost and number, and in eight characters each status
 * and name; in the first section an eight-character field and its text. A record "$ENDSEC$" ends
 * each. 1261, 1421, 1422. */
KLV_API int KLVbinsolwrite(KLVenv env, KLVprob lp, const char* filename);

/* ---- Presolve ------------------------------------------------------------------------------- */

/* The presolved problem is a smaller problem with the same optimum. KLVpresolve and the simplex
 * optimizers leave one in the problem until the problem is changed; functions that need one give
 * 1103 without it. */

/* What KLVgetprestat says of the presolved problem, and of columns and rows that are not in it. */
#define KLV_PRESOLVED_NONE 0
#define KLV_PRESOLVED_REDUCED 1
#define KLV_PRESOLVED_EMPTY 2
#define KLV_REMOVED_AT_LOWER (-1)
#define KLV_REMOVED_AT_UPPER (-2)
#define KLV_REMOVED_FIXED (-3)          /* at a value that is not a bound */
#define KLV_REMOVED_SUBSTITUTED (-4)    /* a column substituted out, or a row used for that */
#define KLV_REMOVED_SLACK (-5)          /* a column absorbed by its row as a slack */
#define KLV_REMOVED_DUAL (-6)           /* a column that nothing holds back, or a row of it */
#define KLV_REMOVED_DUPLICATE (-7)      /* a multiple of another column or row */
#define KLV_REMOVED_EMPTY_ROW (-8)      /* a row without entries */
#define KLV_REMOVED_SINGLETON_ROW (-9)  /* a row with one entry, made a bound */
#define KLV_REMOVED_FORCING_ROW (-10)   /* a row that forces its columns to bounds */
#define KLV_REMOVED_REDUNDANT_ROW (-11) /* a row that never binds */
#define KLV_REMOVED_DEPENDENT_ROW (-12) /* a combination of other rows */

/* Presolves without optimizing; method is a value of KLV_PARAM_LPMETHOD. 1117 when presolve proves
 * the problem infeasible, 1101 infeasible or unbounded; 1123 and 1106 when it is stopped; 1017 for
 * a mixed-integer problem, 1023 for a view. Quadratic problems are left as they are and accept the
 * methods 1 and 2 only (1018). */
KLV_API int KLVpresolve(KLVenv env, KLVprob lp, int method);

/* Frees the presolved problem, if there is one. */
KLV_API int KLVfreepresolve(KLVenv env, KLVprob lp);

/* Stores the presolved problem, null when there is none. It belongs to the original problem: it
 * must be neither changed nor freed. Any change of the original frees it, except that one made by
 * KLVpresolve with KLV_PARAM_REDUCE 0 or 1 follows changes of objective coefficients where its
 * reductions hold for every objective: the functions of this section bring it in step, or free it
 * where they do not. 1004 for a null pointer. */
KLV_API int KLVgetredlp(KLVenv env, KLVprob lp, KLVprob* redlp_p);

/* Presolved values prex [pn] of a point x [n]. 1004, 1103. */
KLV_API int KLVcrushx(KLVenv env, KLVprob lp, const double* x, double* prex);

/* A point x [n] from presolved values prex [pn]; a feasible one from feasible values. 1004, 1103.
 */
KLV_API int KLVuncrushx(KLVenv env, KLVprob lp, double* x, const double* prex);

/* Presolved duals prepi [pm] of row duals pi [m]. 1004, 1103. */
KLV_API int KLVcrushpi(KLVenv env, KLVprob lp, const double* pi, double* prepi);

/* Row duals pi [m] from presolved ones prepi [pm]. 1018 for a quadratic problem, 1004, 1103. */
KLV_API int KLVuncrushpi(KLVenv env, KLVprob lp, double* pi, const double* prepi);

/* The same for a quadratic problem with the point x [n] they belong to. 5004 for any other; 1103,
 * since quadratic problems are not presolved. */
KLV_API int KLVqpuncrushpi(KLVenv env, KLVprob lp, double* pi, const double* prepi,
                           const double* x);

/* Rewrites the linear form of len terms val[k] * x[ind[k]] as *plen_p terms over presolved columns,
 * written to pind and pval [pn], plus *poffset_p. A form without terms left has the length 0 and
 * gives a warning. 1003 for a negative length, 1201 for a column index, 1121 when a column of the
 * form is no linear function of presolved ones, 1004, 1103. */
KLV_API int KLVcrushform(KLVenv env, KLVprob lp, int len, const int* ind, const double* val,
                         int* plen_p, double* poffset_p, int* pind, double* pval);

/* Rewrites a form over presolved columns as one over original columns, written to ind and val [n];
 * errors as for KLVcrushform. */
KLV_API int KLVuncrushform(KLVenv env, KLVprob lp, int plen, const int* pind, const double* pval,
                           int* len_p, double* offset_p, int* ind, double* val);

/* What presolve did; each pointer may be null. *prestat_p is 0 without a presolved problem, 2 when
 * that is empty, else 1. pcstat [n] and prstat [m]: the index in the presolved problem, or why it
 * is not there, one of the KLV_REMOVED values above. ocstat [pn] and orstat [pm]: original indices.
 */
KLV_API int KLVgetprestat(KLVenv env, KLVprob lp, int* prestat_p, int* pcstat, int* prstat,
                          int* ocstat, int* orstat);

/* Bounds redlb and redub [n] that the rows imply, and for each row rstat [m] -1 when the bounds of
 * the problem keep it by themselves, else 0. Null arrays are skipped. No presolved problem is made.
 * 1117 when the problem is infeasible. */
KLV_API int KLVbasicpresolve(KLVenv env, KLVprob lp, double* redlb, double* redub, int* rstat);

/* The cnt columns that presolve must neither remove nor substitute, in place of those named before.
 * 1003 for a negative count, 1004, 1201. */
KLV_API int KLVcopyprotected(KLVenv env, KLVprob lp, int cnt, const int* indices);

/* Reduced costs dj [n] = c - A'pi of row duals pi [m]. 1004. */
KLV_API int KLVdjfrompi(KLVenv env, KLVprob lp, const double* pi, double* dj);

/* Reduced costs dj [n] = c + Qx - A'pi of a problem with a quadratic objective; 5004 without one.
 */
KLV_API int KLVqpdjfrompi(KLVenv env, KLVprob lp, const double* pi, const double* x, double* dj);

/* Row slacks slack [m] of a point x [n]: right-hand side minus activity, for ranged rows activity
 * minus right-hand side. 1004. */
KLV_API int KLVslackfromx(KLVenv env, KLVprob lp, const double* x, double* slack);

/* Writes the presolved problem to a file, in the format of KLVwriteprob (MPS for names ending in
 * .pre or without an extension), and stores in *objoff_p (may be null) the constant that its
 * objective lacks. 1103, 1421, 1422, 1424. */
KLV_API int KLVpreslvwrite(KLVenv env, KLVprob lp, const char* filename, double* objoff_p);

/* ---- The basis and its factor --------------------------------------------------------------- */

/* B is the matrix of the basic variables' columns, one per basis position 0..m-1, in the order of
 * KLVgetbhead. The slack of row r is the variable -r-1. Its column is the unit column of the row,
 * +1 for 'L', 'E' and 'G' (slack = right-hand side minus activity) and -1 for 'R' (slack = activity
 * minus right-hand side). Everything is unscaled.
 *
 * A factor exists once the library has solved the problem or made a basis of it, until the matrix
 * changes or another basis is handed in; without one the functions give 1258. Indices outside the
 * problem give 1200. */

/* Column j (0..m-1) of the inverse of B, by position: x [m] with B x = e_j. */
KLV_API int KLVbinvcol(KLVenv env, KLVprob lp, int j, double* x);

/* Row i (a position) of the inverse of B: y [m], by row, with y'B = e_i'. */
KLV_API int KLVbinvrow(KLVenv env, KLVprob lp, int i, double* y);

/* The inverse of B times the column of variable j (a column, or -r-1 for the slack of row r): x
 * [m], by position. */
KLV_API int KLVbinvacol(KLVenv env, KLVprob lp, int j, double* x);

/* Row i (a position) of the inverse of B times the columns: z [n]; exactly 0 or 1 for basic
 * columns. */
KLV_API int KLVbinvarow(KLVenv env, KLVprob lp, int i, double* z);

/* Solves in place: x [m], by row on entry, by position on return, becomes the inverse of B times
 * x. */
KLV_API int KLVftran(KLVenv env, KLVprob lp, double* x);

/* Solves in place: y [m], by position on entry, by row on return, becomes y' times the inverse of
 * B. */
KLV_API int KLVbtran(KLVenv env, KLVprob lp, double* y);

/* The basis header: head[i] is the variable basic at position i, x[i] its value in the stored
 * solution. Either array [m] may be null. 1217 without a solution with a basis. */
KLV_API int KLVgetbhead(KLVenv env, KLVprob lp, int* head, double* x);

/* The position at which the slack of row i (with j = -1) or column j (with i = -1) is basic. 1200
 * unless exactly one of them is given, 1217 without a solution with a basis, 1251 when the variable
 * is not basic. */
KLV_API int KLVgetijrow(KLVenv env, KLVprob lp, int i, int j, int* row_p);

/* After the dual simplex method ended with status 3: multipliers y [m] that prove that no point
 * satisfies the rows. Every such point would have y'Ax >= y'b, where b_i is the right-hand side
 * (for a ranged row the lower limit if y_i > 0, else the upper one); y_i is >= 0 for 'G', <= 0 for
 * 'L'. *proof_p (may be null) receives y'b minus the largest value of y'Ax within the bounds of the
 * columns, which is positive. 1265 after anything else, 1018, 1031. */
KLV_API int KLVdualfarkas(KLVenv env, KLVprob lp, double* y, double* proof_p);

/* After status 2: a direction z [n] along which the objective improves without end while rows and
 * bounds are kept. The variable that entered last moves by 1 or -1. 1217 without a solution, 1254
 * when it is not unbounded or no direction is known. */
KLV_API int KLVgetray(KLVenv env, KLVprob lp, double* z);

/* ---- Steps by hand -------------------------------------------------------------------------- */

/* The functions of this section and the next work on linear problems only: 1017 for a mixed-integer
 * problem, 1018 for a quadratic objective, 1031 for quadratic constraints. Variables are numbered
 * as above: columns 0..n-1, -r-1 for the slack of row r, KLV_NO_VARIABLE for none. The bounds of a
 * slack are [0, inf) for 'L', (-inf, 0] for 'G', [0, 0] for 'E', and 0 and the range for 'R'.
 *
 * Those of this section change the basis and leave it in the problem with its basic solution; the
 * solution status is 1 when that is optimal, else 6. After an error the problem holds what it held
 * before. 1256 when the basis is singular. */

#define KLV_NO_VARIABLE 2100000000

/* Makes the slacks of rlen rows basic. Variables that leave go to their nearest bound. 1003 for
 * rlen outside 0..m, 1203 for a bad row, 1262 when the problem has no basis. */
KLV_API int KLVpivotin(KLVenv env, KLVprob lp, const int* rlist, int rlen);

/* Makes clen fixed variables nonbasic. Feasibility, primal and dual, is kept where it was. A
 * variable stays basic when nothing but other variables of the list could take its place. 1262
 * without a basis, 1203 for an index that is no variable, 1221 for a variable that is not fixed. */
KLV_API int KLVpivotout(KLVenv env, KLVprob lp, const int* clist, int clen);

/* One exchange: jenter enters, jleave leaves at its bound leavestat (0 or 2; the bound it has when
 * it has only one). With jleave KLV_NO_VARIABLE the primal ratio test chooses the variable that
 * leaves, or moves jenter to its other bound when that comes first; with jenter KLV_NO_VARIABLE the
 * dual ratio test chooses the variable that enters. jenter = jleave, nonbasic, moves the variable
 * to the bound leavestat. A problem without a solution starts as KLVsetphase2 sets it up. 1200 for
 * an index that is no variable, 1003 when neither is given and for another leavestat, 1267 when
 * jenter is basic, jleave is not, nobody can be chosen or the pivot is too small. */
KLV_API int KLVpivot(KLVenv env, KLVprob lp, int jenter, int jleave, int leavestat);

/* Factors the basis of the problem (slacks, when it has none), replacing dependent columns by
 * slacks, and stores its basic solution, so that the next optimization continues from there. */
KLV_API int KLVsetphase2(KLVenv env, KLVprob lp);

/* ---- Ratios, checks and probes -------------------------------------------------------------- */

/* These functions leave the problem as it is, except that KLVchecksoln may correct the status. */

/* How far each of cnt nonbasic variables can move down and up, all other nonbasic variables kept,
 * until a variable reaches a bound. Entry k of the arrays, each of which may be null: the length of
 * the step (1e20: without end), the variable that reaches a bound (itself, a basic one, or
 * KLV_NO_VARIABLE), the bound at which it leaves (0, 2, or -1 for none) and a code: 0, or 1267 for
 * an index that is no variable or a basic one. The basis is not changed. 1258 without a factor,
 * 1004, 1003 for a negative count. */
KLV_API int KLVpratio(KLVenv env, KLVprob lp, const int* indices, int cnt, double* downratio,
                      double* upratio, int* downleave, int* upleave, int* downleavestatus,
                      int* upleavestatus, int* downstatus, int* upstatus);

/* What must enter when each of cnt basic variables is forced down or up. Entry k of the arrays,
 * each of which may be null: the ratio of reduced cost to tableau entry of the variable that
 * enters, which is the loss in the objective per unit of the move (1e20 when nothing can enter),
 * that variable or KLV_NO_VARIABLE, and a code: 0, or 1267 for an index that is no variable or a
 * nonbasic one. The basis is not changed. Errors as for KLVpratio. */
KLV_API int KLVdratio(KLVenv env, KLVprob lp, const int* indices, int cnt, double* downratio,
                      double* upratio, int* downenter, int* upenter, int* downstatus,
                      int* upstatus);

/* By how much the objective changes, at first, per unit by which each of cnt basic columns is
 * forced down or up (1e20 times the sense when it cannot move); the codes are 0, or 1267 when
 * nothing can enter. Arrays of results may be null. 1217 without a solution, 1004, 1003, 1258, 1201
 * for a bad column, 1251 for a column that is not basic. */
KLV_API int KLVmdleave(KLVenv env, KLVprob lp, const int* indices, int cnt, double* downratio,
                       double* upratio, int* downstatus, int* upstatus);

/* The variable whose bounds the basic solution of the problem's basis violates most, or
 * KLV_NO_VARIABLE when none is violated by more than KLV_PARAM_EPRHS. Nothing is optimized or
 * stored. 1004, 1262 without a basis. */
KLV_API int KLVcheckpfeas(KLVenv env, KLVprob lp, int* infeasout);

/* The nonbasic variable whose reduced cost has the wrong sign by most, or KLV_NO_VARIABLE when none
 * has by more than KLV_PARAM_EPOPT; otherwise as KLVcheckpfeas. */
KLV_API int KLVcheckdfeas(KLVenv env, KLVprob lp, int* infeasout);

/* Checks the stored solution against the model and stores the status it deserves: 1 or 5 for an
 * optimal one as it keeps all limits within the tolerances or not, 3 and 2 when the proof behind
 * them holds and 6 when it does not; other statuses as they are. 1004, 1217. */
KLV_API int KLVchecksoln(KLVenv env, KLVprob lp, int* lpstatus);

/* Dual steepest-edge weights of rows that are not in the problem: weight[k] is the squared norm
 * that the row of B^-1 of row k's slack would have if the row were added and its slack were basic.
 * Rows as in KLVaddrows. `dpriind` is the dual pricing (KLV_PARAM_DPRIIND) for which they are
 * meant: 1.0 each for 4 and 5, which start from unit weights. When there is none to compute, for
 * pricing 1 or without a factored basis, the arrays stay as they are and the warning channel gets
 * "Warning: No weights computed."; this is no error. 1003 for a negative count, 1004, 1226 for
 * starts that do not ascend, 1201 for a bad column, 1257 for a dpriind outside 0..5. */
KLV_API int KLVgetweight(KLVenv env, KLVprob lp, int rcnt, int nzcnt, const int* rmatbeg,
                         const int* rmatind, const double* rmatval, double* weight, int dpriind);

/* Strong branching: for each of cnt columns with value x in the optimal solution, the objective
 * after at most itlim iterations of the dual simplex method with the upper bound floor(x) (downobj)
 * and with the lower bound ceil(x) (upobj); 1e75 times the sense when no point is left. The arrays
 * may be null. The problem stays as it is. 1003 for a negative count or limit, 1004, 1201 for a bad
 * column, 1217 without a solution, 1252 when it is not optimal, 1258, 1263 when stopped by the
 * caller, 1266 by the time limit. */
KLV_API int KLVstrongbranch(KLVenv env, KLVprob lp, const int* indices, int cnt, double* downobj,
                            double* upobj, int itlim);

/* ---- Sensitivity ---------------------------------------------------------------------------- */

/* How far one number may move, all others kept, while the optimal basis stays optimal. Ranges end
 * at -1e20 and 1e20 where there is no limit. Errors of all of them, in this order: 1004 for a
 * missing array, 1217 without a solution, 1260 when it is not an optimal one with a basis, 1258
 * without a factor, 1200 for a range that is empty or not within the problem. Entry k of an array
 * belongs to column or row begin + k. */

/* Objective coefficients of columns begin..end. */
KLV_API int KLVobjsa(KLVenv env, KLVprob lp, int begin, int end, double* lower, double* upper);

/* Right-hand sides of rows begin..end; a ranged row keeps its range and moves as a whole. */
KLV_API int KLVrhssa(KLVenv env, KLVprob lp, int begin, int end, double* lower, double* upper);

/* Lower bounds (lblower to lbupper) and upper bounds (ublower to ubupper) of columns begin..end;
 * each array may be null. */
KLV_API int KLVboundsa(KLVenv env, KLVprob lp, int begin, int end, double* lblower, double* lbupper,
                       double* ublower, double* ubupper);

/* All of these at once: objective coefficients and bounds of columns cbegin..cend, right-hand sides
 * of rows rbegin..rend. Arrays that are null are not wanted; those of the objective and of the
 * right-hand sides come in pairs (1004 otherwise). A range without arrays is not looked at. */
KLV_API int KLVErangesa(KLVenv env, KLVprob lp, int cbegin, int cend, int rbegin, int rend,
                        double* objlower, double* objupper, double* rhslower, double* rhsupper,
                        double* lblower, double* lbupper, double* ublower, double* ubupper);

/* ---- Network problems ----------------------------------------------------------------------- */

/* A network is a minimum-cost flow problem in an object of its own:
 *
 *     minimize or maximize   sum of obj[a] x[a] over the arcs
 *     subject to             (flow out of node i) - (flow into node i) = supply[i]   for each node
 *                            low[a] <= x[a] <= up[a]                                 for each arc
 *
 * A demand is a negative supply. Arcs may be parallel, and may lead from a node to itself. A bound
 * of magnitude 1e17 or more is infinite. Nodes and arcs have names or not, each kind for itself;
 * when some of a kind are named, the rest are called n1, n2, ... and a1, a2, ... by position.
 *
 * Functions with a network give 1806 when it belongs to another environment, then 1009 when it is
 * invalid. Counts below 0 give 1003, node indices outside the network 1230, arc indices 1231. While
 * KLV_PARAM_DATACHECK is 1, numbers that are NaN (1225) or not finite (1233) and null pointers in
 * arrays of names (1224) are refused, too. Below, n is the number of nodes, m that of arcs. */

/* Makes an empty minimization network with that name; it belongs to the root of env and is freed
 * with env at the latest. Null on failure, with the code in *status_p (required). */
KLV_API KLVnet KLVNETcreateprob(KLVenv env, int* status_p, const char* name);

/* Frees *net_p and sets it to null. A null *net_p is accepted; 1004 for a null net_p. */
KLV_API int KLVNETfreeprob(KLVenv env, KLVnet* net_p);

/* Replaces the network; its name stays. Null arrays: supply 0, low 0, up infinity, obj 0, no names.
 * objsen: negative maximizes, otherwise minimizes; with data checking anything but 1 and -1 gives
 * 1003. */
KLV_API int KLVNETcopynet(KLVenv env, KLVnet net, int objsen, int nnodes, const double* supply,
                          const char* const* nnames, int narcs, const int* fromnode,
                          const int* tonode, const double* low, const double* up, const double* obj,
                          const char* const* anames);

/* Appends nodes; supply and name may be null. A basis stays, with the new nodes basic. */
KLV_API int KLVNETaddnodes(KLVenv env, KLVnet net, int nnodes, const double* supply,
                           const char* const* name);

/* Appends arcs between nodes that exist; all arrays but fromnode and tonode may be null. A basis
 * stays, with the new arcs at their lower bounds. */
KLV_API int KLVNETaddarcs(KLVenv env, KLVnet net, int narcs, const int* fromnode, const int* tonode,
                          const double* low, const double* up, const double* obj,
                          const char* const* anames);

/* ---- Changing networks ---------------------------------------------------------------------- */

/* A change of numbers discards the solution and keeps the basis; deletions and re-attached arcs
 * leave what remains of the basis, completed to one; names change nothing else. */

/* Deletes nodes begin..end and all arcs at them. */
KLV_API int KLVNETdelnodes(KLVenv env, KLVnet net, int begin, int end);

/* Deletes arcs begin..end. */
KLV_API int KLVNETdelarcs(KLVenv env, KLVnet net, int begin, int end);

/* Deletes the nodes i with whichnodes[i] = 1, all arcs at them, and the arcs a with
 * whicharcs[a] = 1. On return the arrays ([n] and [m]; either may be null) hold the new indices, -1
 * for what is gone. */
KLV_API int KLVNETdelset(KLVenv env, KLVnet net, int* whichnodes, int* whicharcs);

/* Attaches arc index[k] to the nodes fromnode[k] and tonode[k]. */
KLV_API int KLVNETchgarcnodes(KLVenv env, KLVnet net, int cnt, const int* index,
                              const int* fromnode, const int* tonode);

/* Changes the lower (lu[k] = 'L'), upper ('U') or both ('B') bounds of arc index[k] to bd[k]; an
 * infinite bound of the wrong sign is ignored with a warning. 1229 for another letter, with data
 * checking. */
KLV_API int KLVNETchgbds(KLVenv env, KLVnet net, int cnt, const int* index, const char* lu,
                         const double* bd);

/* Changes the supplies of nodes. */
KLV_API int KLVNETchgsupply(KLVenv env, KLVnet net, int cnt, const int* index,
                            const double* supply);

/* Changes the costs of arcs. */
KLV_API int KLVNETchgobj(KLVenv env, KLVnet net, int cnt, const int* index, const double* obj);

/* Negative maximizes, otherwise minimizes; with data checking anything but 1 and -1 gives 1003. */
KLV_API int KLVNETchgobjsen(KLVenv env, KLVnet net, int maxormin);

/* Renames node (key 'n') or arc ('a') vindex; 1003 for another key. */
KLV_API int KLVNETchgname(KLVenv env, KLVnet net, int key, int vindex, const char* name);

/* Renames arcs; 1224 for a null pointer among the names. */
KLV_API int KLVNETchgarcname(KLVenv env, KLVnet net, int cnt, const int* index,
                             const char* const* newname);

/* Renames nodes; 1224 for a null pointer among the names. */
KLV_API int KLVNETchgnodename(KLVenv env, KLVnet net, int cnt, const int* index,
                              const char* const* newname);

/* ---- Queries of a network and its solution -------------------------------------------------- */

/* Number of nodes; 0 on failure. */
KLV_API int KLVNETgetnumnodes(KLVenv env, KLVnet net);

/* Number of arcs; 0 on failure. */
KLV_API int KLVNETgetnumarcs(KLVenv env, KLVnet net);

/* 1 for minimization, -1 for maximization; 0 on failure. */
KLV_API int KLVNETgetobjsen(KLVenv env, KLVnet net);

/* The name of the network. */
KLV_API int KLVNETgetprobname(KLVenv env, KLVnet net, char* buf, int bufspace, int* surplus_p);

/* Supplies of nodes begin..end. */
KLV_API int KLVNETgetsupply(KLVenv env, KLVnet net, double* supply, int begin, int end);

/* Costs of arcs begin..end. */
KLV_API int KLVNETgetobj(KLVenv env, KLVnet net, double* obj, int begin, int end);

/* Lower bounds of arcs begin..end. */
KLV_API int KLVNETgetlb(KLVenv env, KLVnet net, double* low, int begin, int end);

/* Upper bounds of arcs begin..end. */
KLV_API int KLVNETgetub(KLVenv env, KLVnet net, double* up, int begin, int end);

/* The nodes that arcs begin..end lead from and to. */
KLV_API int KLVNETgetarcnodes(KLVenv env, KLVnet net, int* fromnode, int* tonode, int begin,
                              int end);

/* The arcs at nodes begin..end: those of node begin + k are arc[arcbeg[k]] .. arc[arcbeg[k+1] - 1],
 * the last one's up to *arccnt_p - 1, in ascending order; an arc from a node to itself is there
 * once. */
KLV_API int KLVNETgetnodearcs(KLVenv env, KLVnet net, int* arccnt_p, int* arcbeg, int* arc,
                              int arcspace, int* surplus_p, int begin, int end);

/* Names of nodes begin..end, one after the other in namestore, nnames[k] pointing to the k-th. 1219
 * when nodes have no names. */
KLV_API int KLVNETgetnodename(KLVenv env, KLVnet net, char** nnames, char* namestore, int namespc,
                              int* surplus_p, int begin, int end);

/* Names of arcs begin..end in the same way. */
KLV_API int KLVNETgetarcname(KLVenv env, KLVnet net, char** anames, char* namestore, int namespc,
                             int* surplus_p, int begin, int end);

/* The first node with that name; 1210, not printed, when there is none, 1219 without names. */
KLV_API int KLVNETgetnodeindex(KLVenv env, KLVnet net, const char* name, int* index_p);

/* The first arc with that name; 1210, not printed, when there is none, 1219 without names. */
KLV_API int KLVNETgetarcindex(KLVenv env, KLVnet net, const char* name, int* index_p);

/* The result of the last KLVNETprimopt: status (see KLVgetstat), objective, flows x [m],
 * multipliers of the node equations pi [n], slack [n] = supply - (out - in), and reduced costs
 * dj [m] = obj - pi[from] + pi[to]. Each pointer may be null. 1217 without a solution. */
KLV_API int KLVNETsolution(KLVenv env, KLVnet net, int* netstat_p, double* objval_p, double* x,
                           double* pi, double* slack, double* dj);

/* Whether the solution is primal feasible and dual feasible (0 or 1; 0 without one); either pointer
 * may be null. */
KLV_API int KLVNETsolninfo(KLVenv env, KLVnet net, int* pfeasind_p, int* dfeasind_p);

/* Status of the last KLVNETprimopt: 1 optimal, 2 unbounded, 3 infeasible, 6 stopped by numerical
 * difficulties, 10 iteration limit, 11 time limit, 13 aborted; 0 without a solution. */
KLV_API int KLVNETgetstat(KLVenv env, KLVnet net);

/* The objective value. 1217 without a solution. */
KLV_API int KLVNETgetobjval(KLVenv env, KLVnet net, double* objval_p);

/* Iterations of the last KLVNETprimopt. */
KLV_API int KLVNETgetitcnt(KLVenv env, KLVnet net);

/* Those of them spent towards feasibility. */
KLV_API int KLVNETgetphase1cnt(KLVenv env, KLVnet net);

/* Flows of arcs begin..end. 1217 without a solution. */
KLV_API int KLVNETgetx(KLVenv env, KLVnet net, double* x, int begin, int end);

/* Multipliers of nodes begin..end. 1217 without a solution. */
KLV_API int KLVNETgetpi(KLVenv env, KLVnet net, double* pi, int begin, int end);

/* Slacks of nodes begin..end. 1217 without a solution. */
KLV_API int KLVNETgetslack(KLVenv env, KLVnet net, double* slack, int begin, int end);

/* Reduced costs of arcs begin..end. 1217 without a solution. */
KLV_API int KLVNETgetdj(KLVenv env, KLVnet net, double* dj, int begin, int end);

/* ---- Network optimizer ---------------------------------------------------------------------- */

/* Solves the network by the network simplex method, from the basis it has unless KLV_PARAM_ADVIND
 * is 0. The limits are KLV_PARAM_NETITLIM and KLV_PARAM_TILIM; the network callback is called with
 * the code 3 at each iteration that is due for a line of the log, and stops the run by a result
 * other than 0. KLV_PARAM_NETPPRIIND chooses the pricing. The result is a status, not an error. */
KLV_API int KLVNETprimopt(KLVenv env, KLVnet net);

/* Sets the basis to start from: status codes of arcs [m] as for columns (KLVcopybase), and of nodes
 * [n], 1 for the root of a tree of basic arcs, else 0; nstat may be null. What is no basis is
 * completed to one: arcs that would close a cycle become nonbasic, and each tree gets one root. */
KLV_API int KLVNETcopybase(KLVenv env, KLVnet net, const int* astat, const int* nstat);

/* The basis: basic arcs and basic nodes together are as many as nodes. Either array may be null.
 * 1262 without a basis. */
KLV_API int KLVNETgetbase(KLVenv env, KLVnet net, int* astat, int* nstat);

/* ---- Network files -------------------------------------------------------------------------- */

/* Replaces the network by that of a file in one of two formats, told apart by the content: numbered
 * (.min: lines "p min", "n", "a") or sectioned (.net: MINIMIZE NETWORK ... ENDNETWORK). Files named
 * .gz, .bz2 or .Z are decompressed. 1004 for a null name, 1423 when the file cannot be read, which
 * leaves the network alone; 1530 to 1538 for faults in it, which leave the network empty. */
KLV_API int KLVNETreadcopyprob(KLVenv env, KLVnet net, const char* filename);

/* Writes the network. filetype, or the extension of the name when it is null: MIN or NET, or MPS,
 * RMP, REW, LP for the network as a linear problem; 1424 for another. MIN carries six digits of
 * each number; a warning counts those that lost some. 1421 without a name, 1422 when the file
 * cannot be written. */
KLV_API int KLVNETwriteprob(KLVenv env, KLVnet net, const char* filename, const char* filetype);

/* Reads a basis file with arcs as columns and nodes as rows, as KLVreadcopybase does; on failure
 * the basis is as it was. */
KLV_API int KLVNETreadcopybase(KLVenv env, KLVnet net, const char* filename);

/* Writes the basis. 1421 without a name, 1262 without a basis, 1422 when the file cannot be
 * written. */
KLV_API int KLVNETbasewrite(KLVenv env, KLVnet net, const char* filename);

#ifdef __cplusplus
}
#endif

#endif
