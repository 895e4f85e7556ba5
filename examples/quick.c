/* A small frame of 8-bit samples (R G over G B), converted and written to quick.ppm: a red square. */
#include <quorvane/quorvane.h>
#include <stdio.h>

int main(void) {
  uint8_t mosaic[64 * 64], picture[3 * 64 * 64];
  for (int i = 0; i < 64 * 64; ++i) mosaic[i] = i / 64 % 2 == 0 && i % 2 == 0 ? 200 : 50;
  if (QVN_Raw8ToBGR(picture, mosaic, 64, 64, 0) != QVN_OK) return 1;
  QVN_RGB8ToBGR(picture, picture, 64 * 64); /* in place: a PPM has red first */
  FILE* file = fopen("quick.ppm", "wb");
  return file != NULL && fprintf(file, "P6 64 64 255\n") > 0 &&
                 fwrite(picture, 1, sizeof picture, file) == sizeof picture && fclose(file) == 0
             ? 0
             : 1;
}
