/* A program of someone who has installed the library. */
#include <quorvane/quorvane.h>
#include <stdio.h>

int main(void) {
  const uint8_t mosaic[4] = {200, 100, 50, 25};
  uint8_t picture[12];
  uint32_t version = 0;
  if (QVN_GetVersion(&version) != QVN_OK || QVN_Raw8ToBGR(picture, mosaic, 2, 2, 0) != QVN_OK) return 1;
  printf("%08x %d %d %d\n", (unsigned)version, picture[0], picture[1], picture[2]);
  return 0;
}
