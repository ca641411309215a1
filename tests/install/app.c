/* An application that uses only vnxi* functions of an installed vnxcv: it must
 * start without LD_LIBRARY_PATH, so libvnxcv finds libvnxcore on its own. */
#include <vnxcv.h>

int main(void) {
  vnx8u a[4] = {3, 200, 0, 255}, b[4] = {10, 100, 255, 0}, d[4] = {0};
  vnx32f acc[4] = {0.5f, 0.5f, 0.5f, 0.5f};
  vnxiSize roi = {4, 1};
  if (vnxiAbsDiff_8u_C1R(a, 4, b, 4, d, 4, roi) != vnxStatusOk) return 1;
  if (d[0] != 7 || d[1] != 100 || d[2] != 255 || d[3] != 255) return 2;
  if (vnxiAdd_8u32f_C1IR(d, 4, acc, 16, roi) != vnxStatusOk || acc[1] != 100.5f) return 3;
  return 0;
}
