/* kelvo.h from plain C99: the header compiles by itself and its constants are constants. */
#include "kelvo.h"

int main(void) {
  KLVenv env = NULL;
  KLVprob lp = NULL;
  return env != NULL || lp != NULL;
}
