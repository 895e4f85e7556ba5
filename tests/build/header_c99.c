/* The public header is plain C99 and its functions link from C. */
#include <quorvane/quorvane.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  uint32_t version = 0;
  char text[64];
  const uint8_t mosaic[4] = {200, 100, 50, 25};
  uint8_t picture[12];
  if (QVN_GetVersion(&version) != QVN_OK || version != UINT32_C(0x02010200)) return 1;
  if (QVN_GetErrorInfo(QVN_E_PARAM1, text, sizeof text) != QVN_OK) return 2;
  if (strcmp(text, "Parameter 1 is invalid") != 0) return 3;
  if (QVN_Raw8ToBGR(picture, mosaic, 2, 2, 0) != QVN_OK) return 4;
  if (picture[0] != 25 || picture[1] != 75 || picture[2] != 200) return 5;
  if (sizeof(TechnoInfo) != 12) return 6;
  return 0;
}
