/* A 640x480 frame of 8-bit samples (R G over G B) as a PPM: minimal FRAME PICTURE */
#include <quorvane/quorvane.h>
#include <stdio.h>

static uint8_t mosaic[640 * 480], picture[3 * 640 * 480];

int main(int argc, char** argv) {
  FILE* in = argc == 3 ? fopen(argv[1], "rb") : NULL;
  if (in == NULL || fread(mosaic, 1, sizeof mosaic, in) != sizeof mosaic) return 1;
  if (QVN_Raw8ToBGR(picture, mosaic, 640, 480, 0) != QVN_OK) return 1;
  QVN_RGB8ToBGR(picture, picture, 640 * 480); /* in place: a PPM has red first */
  FILE* out = fopen(argv[2], "wb");
  if (out == NULL) return 1;
  fprintf(out, "P6 640 480 255\n");
  if (fwrite(picture, 1, sizeof picture, out) != sizeof picture) return 1;
  return fclose(out) == 0 ? 0 : 1;
}
