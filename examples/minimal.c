/* A 640x480 frame of 8-bit samples (R G over G B) from standard input, as a PPM to standard output. */
#include <quorvane/quorvane.h>
#include <stdio.h>

static uint8_t mosaic[640 * 480], picture[3 * 640 * 480];

int main(void) {
  if (fread(mosaic, 1, sizeof mosaic, stdin) != sizeof mosaic) return 1;
  if (QVN_Raw8ToBGR(picture, mosaic, 640, 480, 0) != QVN_OK) return 1;
  QVN_RGB8ToBGR(picture, picture, 640 * 480); /* in place: a PPM has red first */
  printf("P6 640 480 255\n");
  return fwrite(picture, 1, sizeof picture, stdout) == sizeof picture ? 0 : 1;
}
