/* The frame of minimal.c with its colours drawn together by a matrix. The object that holds the matrix is an
 * ordinary record on the stack: what is never handed to QVN_DestroyColorCorrection may live anywhere. */
#include <quorvane/quorvane.h>
#include <stdio.h>

static uint8_t mosaic[640 * 480], picture[3 * 640 * 480];

int main(int argc, char** argv) {
  /* Rows of numbers from 0 to 1 with a sum of 1 stay in the range of a byte; nothing else keeps them there.
   */
  const ColorCorrectionFloat softer = {.kind = CcMatrixFloat,
                                       .matrix = {0.75F, 0.25F, 0, 0.125F, 0.75F, 0.125F, 0, 0.25F, 0.75F}};
  FILE* in = argc == 3 ? fopen(argv[1], "rb") : NULL;
  if (in == NULL || fread(mosaic, 1, sizeof mosaic, in) != sizeof mosaic) return 1;
  if (QVN_Raw8ToBGR_CC(picture, mosaic, 640, 480, 0, (const ColorCorrection*)&softer) != QVN_OK) return 1;
  QVN_RGB8ToBGR(picture, picture, 640 * 480); /* in place: a PPM has red first */
  FILE* out = fopen(argv[2], "wb");
  if (out == NULL) return 1;
  fprintf(out, "P6 640 480 255\n");
  if (fwrite(picture, 1, sizeof picture, out) != sizeof picture) return 1;
  return fclose(out) == 0 ? 0 : 1;
}
