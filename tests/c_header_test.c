/* Compiled as strict C99: the header must be usable from C, and the library
 * must answer through it. */
#include <string.h>

#include "vnxcv.h"

int main(void) {
  const vnxLibraryVersion* v = vnxcvGetLibVersion();
  vnxiSize roi = {2, 1};
  vnx8u a[2] = {3, 200}, b[2] = {10, 100}, d[2] = {0, 0};
  int n = 0;
  if (!v || v != vnxcvGetLibVersion() || strcmp(v->name, "vnxcvt7-5.2.dll") != 0) return 1;
  if (vnxiAbsDiff_8u_C1R(a, 2, b, 2, d, 2, roi) != vnxStatusOk || d[0] != 7 || d[1] != 100) return 2;
  if (vnxGetNumThreads(&n) != vnxStatusOk || n < 1) return 3;
  return 0;
}
