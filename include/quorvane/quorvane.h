/**
 * @file quorvane.h
 * Quorvane: exact and fast pixel-format conversions for frames from industrial cameras.
 *
 * Plain C (C99 and later) and C++. Every function works on memory that the caller owns, keeps nothing from
 * one call to the next, and returns a status code. Any number of threads may call any function at the same
 * time, as long as no buffer that one of them writes overlaps a buffer of another.
 *
 * Frames. A frame is width * height pixels, top line first, without padding between lines or pixels. No
 * function knows how long a buffer is: the caller sizes it, and null pointers and a few selectors are all
 * that is checked. 16-bit samples in a source are big-endian (first byte most significant) unless a function
 * says otherwise; 16-bit words in a destination are in the host's order.
 *
 * Overlap. Unless a function says that it works in place, its destination must not overlap its source.
 */
#ifndef QUORVANE_QUORVANE_H
#define QUORVANE_QUORVANE_H

#include <stdint.h>

#if defined(QUORVANE_BUILDING) && defined(_WIN32)
#define QVN_API __declspec(dllexport)
#elif defined(QUORVANE_BUILDING)
#define QVN_API __attribute__((visibility("default")))
#else
#define QVN_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---------------------------------------------------------------------------------------------------------
 * Status codes. Argument n of a function is refused with QVN_E_PARAMn.
 * ------------------------------------------------------------------------------------------------------ */

#define QVN_OK                UINT32_C(0x00000000)
#define QVN_E_UNCLASSIFIED    UINT32_C(0x88000001)
#define QVN_E_PARAM1          UINT32_C(0x88000002)
#define QVN_E_PARAM2          UINT32_C(0x88000003)
#define QVN_E_PARAM3          UINT32_C(0x88000004)
#define QVN_E_PARAM4          UINT32_C(0x88000005)
#define QVN_E_PARAM5          UINT32_C(0x88000006)
#define QVN_E_PARAM6          UINT32_C(0x88000007)
#define QVN_E_PARAM7          UINT32_C(0x88000008)
#define QVN_E_PARAM10         UINT32_C(0x8800000B)
#define QVN_E_PARAM11         UINT32_C(0x8800000C)
#define QVN_E_NOT_IMPLEMENTED UINT32_C(0x88000012)
#define QVN_E_OUT_OF_MEMORY   UINT32_C(0x8800001A)
#define QVN_E_ABORTED         UINT32_C(0x8800001E)
#define QVN_E_FAIL            UINT32_C(0x80004005)

/* ---------------------------------------------------------------------------------------------------------
 * Selectors and records
 * ------------------------------------------------------------------------------------------------------ */

/** Pixel format code; QVN_GetBitsPerPixel lists the known ones. */
typedef uint32_t ColorCodingId;

/**
 * Which colours lie at the top left of a Bayer frame.
 *
 *     code   first line   second line
 *     0      R G          G B
 *     1      G B          R G
 *     2      G R          B G
 *     3      B G          G R
 *
 * A library without its version record (QVN_GetVersion gives 0) takes codes 1 and 2 the other way about.
 * Codes above 3 are not refused: bit 0 of the code shifts the cell by a column and the parity of the rest of
 * it by a line, so that 5 starts with G R over B G.
 */
typedef uint32_t BayerPattern;

/** Twelve flags, each 0 or 1: six capabilities, two flags each. Rely on the form only. */
typedef struct TechnoInfo {
  uint8_t flags[12];
} TechnoInfo;

#if defined(__cplusplus)
static_assert(sizeof(TechnoInfo) == 12, "TechnoInfo is twelve bytes");
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
_Static_assert(sizeof(TechnoInfo) == 12, "TechnoInfo is twelve bytes");
#endif

/* ---------------------------------------------------------------------------------------------------------
 * Queries and error text
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Stores the version word, the product version a.b.c.d as bytes from most to least significant: 0x02010200.
 * It is 0 when the library could not read its own version record.
 *
 * @param version  where to store it; not tested for null
 * @return QVN_OK
 */
QVN_API uint32_t QVN_GetVersion(uint32_t* version);

/**
 * Fills the twelve capability flags.
 *
 * @return QVN_E_PARAM1 for a null pointer, else QVN_OK
 */
QVN_API uint32_t QVN_GetTechnoInfo(TechnoInfo* info);

/**
 * Stores how many bits a pixel of a format takes.
 *
 *     0 Mono8 8              1 YUV 4:1:1 12          2 YUV 4:2:2 16     3 YUV 4:4:4 24
 *     4 RGB8 24              5 Mono16 16             6 RGB16 48         7 signed Mono16 16
 *     8 signed RGB16 48      9 Raw8 8               10 Raw16 16
 *     128, 129, 130: 8       132, 134, 136: 12      133, 135: 36        141: 32
 *
 * @return QVN_E_PARAM2 for a null result (tested first), QVN_E_PARAM1 for any other code (the result is left
 *         alone), else QVN_OK
 */
QVN_API uint32_t QVN_GetBitsPerPixel(ColorCodingId format, uint32_t* bitsPerPixel);

/**
 * Writes the text of a status code.
 *
 * The code's text and its terminating zero are copied as far as they fit in `size` bytes. A text that does
 * not fit arrives cut, without a terminator. A code without a text gets the operating system's text if that
 * has one for the code, else "return code not found". A size of 64 holds every text of the library whole.
 *
 * @param code    any status code, of this library or of the camera layers beside it
 * @param buffer  receives the text; bytes behind the terminator of a text of the library's own are left
 * alone, behind a text of the operating system's the rest of "return code not found" may stand
 * @param size    bytes that `buffer` holds
 * @return QVN_E_PARAM2 for a null buffer, QVN_E_PARAM3 for a size of 0, else QVN_OK, also for unknown codes
 */
QVN_API uint32_t QVN_GetErrorInfo(uint32_t code, char* buffer, uint32_t size);

/* ---------------------------------------------------------------------------------------------------------
 * YUV to BGR
 *
 * Chroma bytes are unsigned with 128 as zero, and shared by all pixels of their group, without interpolation.
 * With u = U - 128 and v = V - 128, each term truncated toward zero on its own and each sum clamped to
 * 0..255:
 *
 *     blue  = Y + trunc(1.771 * u)
 *     green = Y + trunc(-0.3457 * u) + trunc(-0.7144 * v)
 *     red   = Y + trunc(1.4022 * v)
 *
 * `count` is the number of pixels; 0 is good and writes nothing. dst is 3 bytes a pixel: blue, green, red.
 * Statuses in order: QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, else QVN_OK.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * YUV 4:4:4 to BGR. Works in place when dst equals src.
 *
 * @param dst  3 * count bytes
 * @param src  3 bytes a pixel: U, Y, V; 3 * count bytes
 */
QVN_API uint32_t QVN_YUV444ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count);

/**
 * YUV 4:2:2 to BGR. The last pixel of an odd count is neither read nor written. Not in place.
 *
 * @param dst  3 * count bytes, of which 6 are written for each whole group
 * @param src  4 bytes for 2 pixels: U, Y0, V, Y1; 4 * (count / 2) bytes
 */
QVN_API uint32_t QVN_YUV422ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count);

/**
 * YUV 4:1:1 to BGR. The last count % 4 pixels are neither read nor written. Not in place.
 *
 * @param dst  3 * count bytes, of which 12 are written for each whole group
 * @param src  6 bytes for 4 pixels: U, Y0, Y1, V, Y2, Y3; 6 * (count / 4) bytes
 */
QVN_API uint32_t QVN_YUV411ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count);

/* ---------------------------------------------------------------------------------------------------------
 * Mono and RGB
 *
 * `count` is the number of pixels; 0 is good and writes nothing. No buffer needs an alignment.
 * Statuses in order, all functions: QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, then what the
 * function says, else QVN_OK.
 *
 * 16-bit samples lose their low bits but for two, which push the result up by one, unless it is 255: the
 * highest bit below the cut pushes red and mono, the one below it blue. Green is never pushed, so that a grey
 * sample can come out with a faint tint.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * RGB8 to BGR: exchanges the first and the third byte of each pixel. Works in place when dst equals src.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * count bytes
 * @param src  3 bytes a pixel: red, green, blue; 3 * count bytes
 */
QVN_API uint32_t QVN_RGB8ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count);

/**
 * RGB8 to luma: (0.72 * G + 0.21 * R) + 0.07 * B in double precision and in this order, truncated toward
 * zero. The weights do not add up exactly: white gives 254, and (10, 10, 10) gives 9. Works in place when dst
 * equals src.
 *
 * @param dst  1 byte a pixel; count bytes
 * @param src  3 bytes a pixel: red, green, blue; 3 * count bytes
 */
QVN_API uint32_t QVN_RGB8ToY8(uint8_t* dst, const uint8_t* src, uint32_t count);

/**
 * Mono 8 to BGR: each byte three times. Not in place.
 *
 * @param dst  3 bytes a pixel; 3 * count bytes
 * @param src  1 byte a pixel; count bytes
 */
QVN_API uint32_t QVN_Y8ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count);

/**
 * Mono 16 to BGR: the first byte of each sample in all three bytes; bit 7 of the second one pushes red up by
 * one, bit 6 blue. Not in place.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * count bytes
 * @param src  2 bytes a sample, big-endian; 2 * count bytes
 */
QVN_API uint32_t QVN_Y16ToBGR(uint8_t* dst, const uint8_t* src, uint32_t count);

/**
 * Mono of up to 16 bits to BGR: the low byte of each sample shifted right, pushed by the two bits below it.
 * Not in place.
 *
 * The shift is bitsPerSample - 8 for alignment 1, else 8. Every bitsPerSample is taken: shift counts keep
 * their low five bits, a shift by 16 or more leaves 0, and so do the two bits at places that a sample does
 * not have. From 8 to 16 it does what one expects (8: no push, 9: no push of blue). Below 8 all bytes are 0;
 * 24 gives 0 too, pushed by bits 15 and 14; 40 is 8 again.
 *
 * @param dst            3 bytes a pixel: blue, green, red; 3 * count bytes
 * @param src            2 bytes a sample; 2 * count bytes
 * @param byteSwap       0: samples in the host's order; any other value: big-endian
 * @param alignment      1: samples begin at bit 0; any other value: their top bit is bit 15
 * @param bitsPerSample  bits of a sample that count, for alignment 1
 */
QVN_API uint32_t QVN_Y16ToBGREx(uint8_t* dst, const uint8_t* src, uint32_t count, uint32_t byteSwap,
                                uint32_t alignment, uint32_t bitsPerSample);

/**
 * Mono 16 to mono 8: the first byte of each sample, pushed up by one by bit 7 of the second one. Works in
 * place when dst equals src.
 *
 * @param dst  1 byte a pixel; count bytes
 * @param src  2 bytes a sample, big-endian; 2 * count bytes
 */
QVN_API uint32_t QVN_Y16ToY8(uint8_t* dst, const uint8_t* src, uint32_t count);

/**
 * Mono of up to 16 bits to mono 8: as QVN_Y16ToBGREx, with the push of red. Works in place when dst equals
 * src.
 *
 * @param dst            1 byte a pixel; count bytes
 * @param src            2 bytes a sample; 2 * count bytes
 * @param byteSwap       0: samples in the host's order; any other value: big-endian
 * @param alignment      1: samples begin at bit 0; any other value: their top bit is bit 15
 * @param bitsPerSample  bits of a sample that count, for alignment 1
 */
QVN_API uint32_t QVN_Y16ToY8Ex(uint8_t* dst, const uint8_t* src, uint32_t count, uint32_t byteSwap,
                               uint32_t alignment, uint32_t bitsPerSample);

/**
 * QVN_Y16ToY8 for counts that are a multiple of 8. Works in place when dst equals src.
 *
 * @return QVN_E_PARAM3, after the pointers, for a count with any of its low three bits set
 */
QVN_API uint32_t QVN_Y16ToY8_MMX(uint8_t* dst, const uint8_t* src, uint32_t count);

/* ---------------------------------------------------------------------------------------------------------
 * Planes
 *
 * Red, green and blue, and with the RGBY forms luma, to blocks of width * height bytes each. The product
 * wraps at 32 bits; a product of 0 is good and writes nothing. Pixels beyond the last whole group are neither
 * read nor written. Not in place. Planes may share memory: then each pixel is written as red, green, blue,
 * luma.
 *
 * The 4:2:2 forms use the formula of the conversions to BGR. The 4:4:4 and 4:1:1 forms truncate other sums,
 * and so differ from it: red and blue by one where chroma lies below 128, green by up to 8; each sum is
 * clamped to 0..255:
 *
 *     red   = trunc(Y + 1.4022 * v)
 *     green = Y + d, d = -0.3457 * u - 0.7144 * v clamped to -128..127, truncated
 *     blue  = trunc(Y + 1.771 * u)
 *
 * Statuses in order, unless a function says otherwise: the first null pointer in argument order,
 * QVN_E_PARAM1 for dstR and so on up to src, else QVN_OK.
 * ------------------------------------------------------------------------------------------------------ */

/** YUV 4:4:4 to planes. @param src  3 bytes a pixel: U, Y, V */
QVN_API uint32_t QVN_YUV444ToRGBPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, const uint8_t* src,
                                       uint32_t width, uint32_t height);

/** YUV 4:2:2 to planes. @param src  4 bytes for 2 pixels: U, Y0, V, Y1 */
QVN_API uint32_t QVN_YUV422ToRGBPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, const uint8_t* src,
                                       uint32_t width, uint32_t height);

/** YUV 4:1:1 to planes. @param src  6 bytes for 4 pixels: U, Y0, Y1, V, Y2, Y3 */
QVN_API uint32_t QVN_YUV411ToRGBPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, const uint8_t* src,
                                       uint32_t width, uint32_t height);

/** YUV 4:4:4 to planes, with a copy of Y in dstY. @param src  3 bytes a pixel: U, Y, V */
QVN_API uint32_t QVN_YUV444ToRGBYPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, uint8_t* dstY,
                                        const uint8_t* src, uint32_t width, uint32_t height);

/** YUV 4:2:2 to planes, with a copy of Y in dstY. @param src  4 bytes for 2 pixels: U, Y0, V, Y1 */
QVN_API uint32_t QVN_YUV422ToRGBYPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, uint8_t* dstY,
                                        const uint8_t* src, uint32_t width, uint32_t height);

/**
 * YUV 4:1:1 to planes, with a copy of Y in dstY. No pointer is tested: a null dstY leaves the luma out, any
 * other null pointer is the caller's fault.
 *
 * @param src  6 bytes for 4 pixels: U, Y0, Y1, V, Y2, Y3
 * @return QVN_OK
 */
QVN_API uint32_t QVN_YUV411ToRGBYPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, uint8_t* dstY,
                                        const uint8_t* src, uint32_t width, uint32_t height);

/**
 * RGB8 to planes, with luma in dstY: (R * 0.299 + G * 0.587) + B * 0.114 in single precision and in this
 * order, truncated toward zero; white gives 255. A null dstY leaves the luma out.
 *
 * Here planes are written one after the other, and the luma is made of what they hold then; that matters
 * where they share memory.
 *
 * @param src  3 bytes a pixel: red, green, blue
 * @return the first null plane of dstR, dstG and dstB: QVN_E_PARAM1 to QVN_E_PARAM3, except that all three
 * may be null with a dstY (which only a size of 0 survives); then QVN_E_PARAM5 for a null src; else QVN_OK
 */
QVN_API uint32_t QVN_RGB8ToRGBYPlanes(uint8_t* dstR, uint8_t* dstG, uint8_t* dstB, uint8_t* dstY,
                                      const uint8_t* src, uint32_t width, uint32_t height);

/* ---------------------------------------------------------------------------------------------------------
 * Bayer demosaics by the 2x2 window
 *
 * A pixel is made from the four samples whose top-left one is its own place: the red one, the blue one, and
 * the mean of the two greens, rounded down. The picture has the size of the mosaic, is shifted by half a
 * sample, and its last column and last line, which have no window, are filled as each function says.
 *
 * All four: width even and at least 2, height at least 2, not in place. Sizes are not checked; others are
 * outside the contract, with one exception: where a function says so, odd widths are good. A height of 1
 * copies the line before dst to dst; a height of 0 and widths of 0 or 1 can run away. Statuses in order:
 * QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, else QVN_OK.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Raw8 to BGR.
 *
 * Last column: copy of the column before. Last line: copy of the line above. An odd width writes width + 1
 * pixels a line at an unchanged source pitch, so that the lines drift to the right, the picture ends beyond
 * 3 * width * height bytes, and one byte behind src is read; don't use one.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src  1 byte a sample; width * height bytes
 */
QVN_API uint32_t QVN_Raw8ToBGR(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                               BayerPattern pattern);

/**
 * Raw8 to grey BGR: the luma of QVN_Raw8ToY8 in all three bytes.
 *
 * Last column: copy of the column before. Last line: copy of the line above. Odd widths from 3 are good.
 *
 * @param dst  3 bytes a pixel; 3 * width * height bytes
 * @param src  1 byte a sample; width * height bytes
 */
QVN_API uint32_t QVN_Raw8ToBGR_mono(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                    BayerPattern pattern);

/**
 * Raw8 to luma: (77 * R + 150 * G + 29 * B) >> 8 of each window, G being the mean of the greens, rounded
 * down.
 *
 * Last column: copy of the column before. Last line: copy of the line above. Odd widths from 3 are good.
 *
 * @param dst  1 byte a pixel; width * height bytes
 * @param src  1 byte a sample; width * height bytes
 */
QVN_API uint32_t QVN_Raw8ToY8(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                              BayerPattern pattern);

/**
 * Raw16 to BGR at 8 bits a channel, from the first byte of each sample (its top eight bits); the second byte
 * does not count.
 *
 * Last column: black. Last line: copy of the line above. Odd widths from 3 are good.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src  2 bytes a sample, big-endian, no alignment needed; 2 * width * height bytes
 */
QVN_API uint32_t QVN_Raw16ToBGR(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                BayerPattern pattern);

/* ---------------------------------------------------------------------------------------------------------
 * Bayer demosaic by the 3x3 window
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Raw8 to BGR, bilinear: a pixel keeps its own sample and takes the two other colours from its 3x3
 * neighbourhood (N, S, W, E and so on name the neighbours by compass, C the sample itself).
 *
 *     site                 blue                      green                    red
 *     blue                 C                         (N + S + W + E) >> 2     (NW + NE + SW + SE) >> 2
 *     red                  (NW + NE + SW + SE) >> 2  (N + S + W + E) >> 2     C
 *     green, blue line     (W + E) >> 1              (2 * C + SW + NE) >> 2   (N + S) >> 1
 *     green, red line      (N + S) >> 1              (2 * C + SW + NE) >> 2   (W + E) >> 1
 *
 * Greens are smoothed along one diagonal only. Column 0 repeats column 1, the last column the one before it,
 * the first line the second and the last line the one before it. A height of 2 gives a black frame. A width
 * of 2 has no interior: each line but the first and last keeps its previous column 0 in both columns.
 *
 * Width even and at least 2, height at least 2, not in place; sizes are not checked. An odd width writes
 * width + 1 pixels a line and moves on by width + 1 samples, beyond the end of both buffers; a height of 0 or
 * 1 runs away. Pattern codes above 3 count as odd row phase here, whatever the rest of the code, unlike in
 * the 2x2 functions.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src  1 byte a sample; width * height bytes
 * @return QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, else QVN_OK
 */
QVN_API uint32_t QVN_Raw8ToBGR_3x3(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                   BayerPattern pattern);

/* ---------------------------------------------------------------------------------------------------------
 * Bayer demosaics by way of YUV
 *
 * The frame is demosaicked by the 2x2 window into full-range Y, U, V,
 *
 *     Y = (77 * R + 150 * G + 29 * B) >> 8
 *     U = ((128 * B - 85 * G - 43 * R) >> 8) + 128
 *     V = ((128 * R - 107 * G - 21 * B) >> 8) + 128
 *
 * its chroma is averaged to one U and V for two pixels, and the 4:2:2 stream is turned into BGR as by
 * QVN_YUV422ToBGR. Last column and last line are those of QVN_Raw8ToY8. Luma keeps every pixel, but for
 * LCAA's last four pixels of each half frame.
 *
 * The source is destroyed: `src` is the store for half a frame of 4:2:2 and ends as that of the second half.
 * The frame is worked in two halves, and the filters stop at the seam between them. Pixels are a flat run: a
 * tap beyond a line's end is taken from the start of the next line.
 *
 * All three: width even and at least 2, height even (an odd one leaves raw samples in the last pixels of each
 * half; when (width * height) >> 1 is odd, the last pixel of each half of dst stays Y, U, V), not in place;
 * sizes are not checked. No memory but the two buffers is used. Statuses in order: QVN_E_PARAM1 for a null
 * dst, QVN_E_PARAM2 for a null src, else QVN_OK.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src  1 byte a sample; width * height bytes; overwritten
 * ------------------------------------------------------------------------------------------------------ */

/** Chroma is the mean of the pair's two pixels, rounded down. Height at least 2. */
QVN_API uint32_t QVN_Raw8ToBGR_IntYUV422(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                         BayerPattern pattern);

/**
 * Chroma is the mean of the pair's two pixels and the two behind them, rounded down. The last two pairs of
 * each half repeat the pair before them, luma included.
 *
 * At least 3 pairs in a half frame, (height / 2) * width / 2. With exactly 2, nothing is computed and the
 * four bytes before `src` are read in their place.
 */
QVN_API uint32_t QVN_Raw8ToBGR_IntLCAA(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                       BayerPattern pattern);

/**
 * Chroma is the mean of a block four pixels wide (from the one before the pair to the one behind it) and two
 * lines high (the pair's line and the next one; in a half's last line, and its last pair of the line before,
 * the line above), rounded to nearest. The first pair of a half has its own first pixel as left tap on its
 * own line. The last two pairs of each half have the chroma of their first pixel.
 *
 * Height at least 4; heights 2 and 3 read the line before dst and write four bytes behind each half's 4:2:2
 * form. Heights 4 and 5, with two lines in a half, look back before the half frame: the three pixels (9
 * bytes) before `dst` are read for the first half, and the bytes that the first half's conversion has just
 * written for the second.
 */
QVN_API uint32_t QVN_Raw8ToBGR_IntLCAAV(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                        BayerPattern pattern);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* QUORVANE_QUORVANE_H */
