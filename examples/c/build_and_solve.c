/* Builds a linear program through the C interface, solves it and prints the answer.
 *
 * A bakery earns 5 on a loaf of bread and 7 on a cake:
 *
 *     maximize    5 bread + 7 cake
 *     oven:         bread + 2 cake  <= 160   minutes
 *     flour:        bread +   cake  <= 100   scoops
 *     0 <= bread, 0 <= cake <= 70
 */
#include <kelvo.h>

static int bake(KLVenv env, KLVprob lp) {
  const double profit[] = {5.0, 7.0};
  const double at_most[] = {1e20, 70.0};
  const char* const products[] = {"bread", "cake"};
  const double available[] = {160.0, 100.0};
  const char sense[] = {'L', 'L'};
  const int row_start[] = {0, 2};
  const int row_index[] = {0, 1, 0, 1};
  const double row_value[] = {1.0, 2.0, 1.0, 1.0};
  double x[2], value;
  char text[64];
  int status;

  if ((status = KLVchgobjsen(env, lp, -1))) return status;
  if ((status = KLVnewcols(env, lp, 2, profit, NULL, at_most, NULL, products))) return status;
  if ((status = KLVaddrows(env, lp, 0, 2, 4, available, sense, row_start, row_index, row_value,
                           NULL, NULL)))
    return status;
  if ((status = KLVlpopt(env, lp))) return status;
  if ((status = KLVgetobjval(env, lp, &value))) return status;
  if ((status = KLVgetx(env, lp, x, 0, 1))) return status;
  printf("%s: profit %g, bread %g, cake %g\n", KLVgetstatstring(env, KLVgetstat(env, lp), text),
         value, x[0], x[1]);
  return 0;
}

int main(void) {
  int status;
  KLVenv env = KLVopenKELVO(&status);
  KLVprob lp;
  if (env == NULL) return 1;
  lp = KLVcreateprob(env, &status, "bakery");
  if (lp != NULL) status = bake(env, lp);
  if (status != 0) {
    char line[1024];
    if (KLVgeterrorstring(env, status, line)) fputs(line, stderr);
  }
  KLVcloseKELVO(&env); /* frees the problem too */
  return status != 0;
}
