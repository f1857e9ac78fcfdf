/* Reads a model file, solves it, and prints the status, the objective and the values.
 *
 *     read_and_solve model.lp        any format and ending that the library knows, .gz too
 */
#include <kelvo.h>
#include <stdlib.h>

/* Prints the values that are not zero, with the columns' names. */
static int print_values(KLVenv env, KLVprob lp) {
  const int n = KLVgetnumcols(env, lp);
  double* x = malloc((size_t)(n + 1) * sizeof *x);
  int status = x != NULL ? KLVgetx(env, lp, x, 0, n - 1) : 1001;
  int j;
  for (j = 0; status == 0 && j < n; ++j) {
    char name[256], *names[1];
    int surplus;
    if (x[j] == 0.0) continue;
    status = KLVgetcolname(env, lp, names, name, (int)sizeof name, &surplus, j, j);
    if (status == 0) printf("%-16s %g\n", names[0], x[j]);
  }
  free(x);
  return status;
}

int main(int argc, char** argv) {
  int status;
  double value;
  char text[64];
  KLVenv env = KLVopenKELVO(&status);
  KLVprob lp;
  if (env == NULL || argc != 2) return 1;
  KLVsetintparam(env, KLV_PARAM_SCRIND, 1); /* messages go to the screen */
  lp = KLVcreateprob(env, &status, "");
  if (status == 0) status = KLVreadcopyprob(env, lp, argv[1], NULL);
  if (status == 0) status = KLVlpopt(env, lp);
  if (status == 0) {
    printf("%s: %s", argv[1], KLVgetstatstring(env, KLVgetstat(env, lp), text));
    if (KLVgetobjval(env, lp, &value) == 0) printf(", objective %.10g", value);
    printf("\n");
    if (KLVgetstat(env, lp) == 1) status = print_values(env, lp);
  }
  KLVcloseKELVO(&env);
  return status != 0;
}
