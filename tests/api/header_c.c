/* The interface from plain C99: a program that needs nothing but kelvo.h, in the C that the header
 * promises (an array as a constant needs real constants, a callback needs a plain function). */
#include <string.h>

#include "kelvo.h"

static char heard[1024];

static void listen(void* handle, const char* text) {
  (void)handle;
  strncat(heard, text, sizeof heard - strlen(heard) - 1);
}

static int fail(const char* what) {
  fprintf(stderr, "%s; heard: %s\n", what, heard);
  return 1;
}

/* A small model goes in and comes out again. */
static int model(KLVenv env) {
  static const double cost[] = {1.0, -2.0};
  static const char* const names[] = {"first", "second"};
  double lower[2] = {-1.0, -1.0};
  char store[32];
  char* name[2];
  int status = -1, surplus = 0, j = -1;
  KLVprob lp = KLVcreateprob(env, &status, "model");
  if (lp == NULL || status != 0) return fail("create");
  if (KLVnewcols(env, lp, 2, cost, NULL, NULL, NULL, names) != 0) return fail("new columns");
  if (KLVgetlb(env, lp, lower, 0, 1) != 0 || lower[1] != 0.0) return fail("bounds");
  if (KLVgetcolname(env, lp, name, store, (int)sizeof store, &surplus, 0, 1) != 0 ||
      strcmp(name[1], "second") != 0)
    return fail("names");
  if (KLVgetcolindex(env, lp, "second", &j) != 0 || j != 1) return fail("look-up");
  if (KLVfreeprob(env, &lp) != 0 || lp != NULL) return fail("free");
  return 0;
}

int main(void) {
  static const int parameters[] = {KLV_PARAM_TILIM, KLV_PARAM_ITLIM};
  int status = -1;
  int value = 0;
  double limit = 0.0;
  KLVchannel errors = NULL;
  KLVenv env = KLVopenKELVO(&status);
  if (env == NULL || status != 0) return fail("open");
  if (strncmp(KLVversion(env), "12.", 3) != 0) return fail("version");
  if (KLVgetchannels(env, NULL, NULL, &errors, NULL) != 0) return fail("channels");
  if (KLVaddfuncdest(env, errors, NULL, listen) != 0) return fail("function destination");
  if (KLVgetdblparam(env, parameters[0], &limit) != 0 || limit != 1e75)
    return fail("real parameter");
  if (KLVsetintparam(env, parameters[1], 7) != 0) return fail("set parameter");
  if (KLVgetintparam(env, parameters[1], &value) != 0 || value != 7) return fail("parameter");
  if (model(env) != 0) return 1;
  if (KLVgetintparam(env, 1, &value) != 1013) return fail("a number that no parameter has");
  if (strstr(heard, "KELVO Error  1013: ") != heard) return fail("error line");
  if (KLVcloseKELVO(&env) != 0 || env != NULL) return fail("close");
  return 0;
}
