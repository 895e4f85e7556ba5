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

#include <stddef.h>
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

/**
 * What a transform function makes of a pixel. Each function offers some of these and refuses the others with
 * QVN_E_NOT_IMPLEMENTED.
 *
 *     0   Y8, 1 byte: (77 * R + 150 * G + 29 * B) >> 8
 *     1   BGR, 3 bytes: blue, green, red
 *     2   BGRA, 4 bytes: blue, green, red, and a fourth byte that is left as it is unless the function says
 *         otherwise
 *     3   Y8, 1 byte: (54 * R + 184 * G + 18 * B + 128) >> 8
 *     4   YUV 4:2:2, 4 bytes for 2 pixels: U, Y0, V, Y1
 *     5   Y16, 2 bytes: the weights of 0, as a word in the host's order
 *     6   Y16, 2 bytes: the weights of 3, as a word in the host's order
 *     7   BGR16, 6 bytes: blue, green, red as words in the host's order
 */
typedef uint32_t TransformTarget;

/**
 * How 16-bit samples lie in a source. Read by the functions that take one, never written.
 */
typedef struct SampleFormatBlock {
  uint32_t reserved;      /**< never read */
  uint32_t alignment;     /**< 0: a sample's top bit is bit 15; 1: its lowest bit is bit 0 */
  uint32_t bitsPerSample; /**< bits of a sample that count, read for alignment 1 only: 16 to 12, or 10 */
  uint32_t byteOrder;     /**< 0: the host's order; 1: big-endian */
  BayerPattern pattern;   /**< read by QVN_Raw16ImageTransformEx only */
} SampleFormatBlock;

/** Twelve flags, each 0 or 1: six capabilities, two flags each. Rely on the form only. */
typedef struct TechnoInfo {
  uint8_t flags[12];
} TechnoInfo;

#if defined(__cplusplus)
static_assert(sizeof(TechnoInfo) == 12, "TechnoInfo is twelve bytes");
static_assert(sizeof(SampleFormatBlock) == 20, "SampleFormatBlock is five words");
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
_Static_assert(sizeof(TechnoInfo) == 12, "TechnoInfo is twelve bytes");
_Static_assert(sizeof(SampleFormatBlock) == 20, "SampleFormatBlock is five words");
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
 * Fills the twelve capability flags. What they stand for has no names; the library asks no processor.
 *
 * @param info  receives twelve bytes, each 0 or 1
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
 * @param format        one of the codes above
 * @param bitsPerPixel  where to store it
 * @return QVN_E_PARAM2 for a null result (tested first), QVN_E_PARAM1 for any other code (the result is left
 *         alone), else QVN_OK
 */
QVN_API uint32_t QVN_GetBitsPerPixel(ColorCodingId format, uint32_t* bitsPerPixel);

/**
 * Writes the text of a status code.
 *
 * The code's text and its terminating zero are copied as far as they fit in `size` bytes. A text that does
 * not fit arrives cut, without a terminator. A code without a text gets the operating system's text if that
 * has one for the code, without the carriage return and line feed at its end, else "return code not found". A
 * size of 64 holds every text of the library whole.
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
 * Mono 16 to mono 8 for counts that are a multiple of 8: the bytes of QVN_Y16ToY8. Works in place when dst
 * equals src.
 *
 * @param dst    1 byte a pixel; count bytes
 * @param src    2 bytes a sample, big-endian; 2 * count bytes
 * @param count  pixels, a multiple of 8
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
 * order, truncated toward zero; white gives 255, and some greys lose one: (37, 37, 37) gives 36. A null dstY
 * leaves the luma out.
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
 * tap beyond a line's end is taken from the start of the next line, one before its start from the end of the
 * line before.
 *
 * All three: width even and at least 2, height even (an odd one leaves raw samples in the last pixels of each
 * half; when (width * height) >> 1 is odd, the last pixel of each half of dst stays Y, U, V), not in place;
 * sizes are not checked. No memory but the two buffers is used. Statuses in order: QVN_E_PARAM1 for a null
 * dst, QVN_E_PARAM2 for a null src, else QVN_OK.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src  1 byte a sample; width * height bytes; overwritten
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Raw8 to BGR by way of YUV 4:2:2. Chroma is the mean of the pair's two pixels, rounded down. Height at least
 * 2.
 */
QVN_API uint32_t QVN_Raw8ToBGR_IntYUV422(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                         BayerPattern pattern);

/**
 * Raw8 to BGR by way of YUV 4:2:2 with a filter along the line. Chroma is the mean of the pair's two pixels
 * and the two behind them, rounded down. The last two pairs of each half repeat the pair before them, luma
 * included.
 *
 * At least 3 pairs in a half frame, (height / 2) * width / 2. With exactly 2, nothing is computed and the
 * four bytes before `src` are read in their place.
 */
QVN_API uint32_t QVN_Raw8ToBGR_IntLCAA(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                       BayerPattern pattern);

/**
 * Raw8 to BGR by way of YUV 4:2:2 with a filter over two lines. Chroma is the mean of a block four pixels
 * wide (from the one before the pair to the one behind it) and two lines high (the pair's line and the next
 * one; in a half's last line, and its last pair of the line before, the line above), rounded to nearest. The
 * first pair of a half has its own first pixel as left tap on its own line. The last two pairs of each half
 * have the chroma of their first pixel.
 *
 * Height at least 4; heights 2 and 3 read the line before dst and write four bytes behind each half's 4:2:2
 * form. Heights 4 and 5, with two lines in a half, look back before the half frame: the three pixels (9
 * bytes) before `dst` are read for the first half, and the bytes that the first half's conversion has just
 * written for the second.
 */
QVN_API uint32_t QVN_Raw8ToBGR_IntLCAAV(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                        BayerPattern pattern);

/* ---------------------------------------------------------------------------------------------------------
 * CYGM sensors
 *
 * A CYGM frame is an interlaced mosaic of the complementary colours cyan, yellow, green and magenta, one byte
 * a sample: a first stored field of height / 2 lines of `width` samples, and behind it a second stored field
 * of as many. Line 2j of the picture, F(2j), is line j of the second stored field and F(2j + 1) is line j of
 * the first: the field that lies second has the top line. The second field begins at (width * height) >> 1,
 * formed in 32 bits, unless a function says otherwise. The fields are taken as they are stored.
 *
 * In a mosaic frame each sample is one site:
 *
 *     F(n)           even columns   odd columns
 *     n even         C              Y
 *     n mod 4 = 1    G              M
 *     n mod 4 = 3    M              G
 *
 * In a binned frame a line holds two kinds of samples in turn, E at even columns and O at odd ones. The lines
 * are, in display order, blue, red, red, blue, and so on: a blue line's E - O is the blue difference, a red
 * line's O - E the red difference.
 *
 * Every function makes a brightness L of 0..255 and two differences of -127..127, and of them
 *
 *                  binned frames                              mosaic frames
 *     red   = L + (4811 * RedDiff + 2113 * BlueDiff) >> 10    L + (2165 * RedDiff +  344 * BlueDiff) >> 10
 *     green = L - (2206 * RedDiff + 2161 * BlueDiff) >> 10    L - ( 917 * RedDiff + 1078 * BlueDiff) >> 10
 *     blue  = L + (5586 * BlueDiff - 1261 * RedDiff) >> 10    L + (4645 * BlueDiff - 959 * RedDiff) >> 10
 *
 * where the shift, which rounds down, takes in L << 10 and the products together, with their signs; then each
 * colour stops at 0 and 255. Grey samples give grey.
 *
 * Widths, heights and phases are not checked. `phase` is any number, and is never swapped as a BayerPattern
 * is; the results do not depend on it. No function works in place. src is left as it is.
 *
 * Statuses in order: QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, then of the transforms
 * QVN_E_NOT_IMPLEMENTED for a target that the function does not offer, with nothing written, else QVN_OK.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Binned CYGM to BGR. Row r of the picture comes from lines F(r) and F(r + 2), a blue and a red line of one
 * field. A pixel's cell is its own column and the next one; with samples Le, Lo of the blue line at the even
 * and at the odd column of the cell, and Qe, Qo of the red line,
 *
 *     BlueDiff = (Le - Lo) / 2    RedDiff = (Qo - Qe) / 2    toward zero
 *     L = (Le + Lo + Qe + Qo) >> 2
 *
 * The last pixel of a row repeats the one before it. The last two rows repeat the row before them.
 *
 * Width even and at least 4, height a multiple of 4; sizes are not checked. An odd width, from 3 on, leaves
 * the last pixel of each row as it was. A height 4m + 2, from 6 on, leaves the last two rows as they were. A
 * height below 4 reads and writes as 4 does.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src  binned frame; width * height bytes
 * @return QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, else QVN_OK
 */
QVN_API uint32_t QVN_IRaw8CYGMToBGR_Bin(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height);

/**
 * CYGM to BGR by cells of 2x2 samples. The pixel at row r and column x has the cell of lines F(r) and
 * F(r + 1), columns x and x + 1, which holds each colour once:
 *
 *     RedDiff = (M + Y - G - C) / 4    BlueDiff = (M + C - G - Y) / 4    toward zero
 *     L = (C + Y + G + M) >> 2
 *
 * With an even width the last pixel's cell reaches one sample beyond its lines: the first sample of the next
 * line of the same field, taken as the site of an even column of the line at hand. Rows 0 to height - 5 are
 * made so; the three rows behind them repeat row height - 5, and the last row is left as it was.
 *
 * Width even, height a multiple of 4 and at least 8; sizes are not checked. An odd width leaves the last
 * pixel of each row as it was. Widths 2 and 3 make no copies of rows, and a width of 1 writes nothing. A
 * height 4m + 2 writes one row beyond the picture and reads one sample beyond src. Heights 4 and 5 copy the
 * row before dst, and below 4 the function runs away.
 *
 * @param dst    3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src    mosaic frame; width * height bytes
 * @param phase  not used
 * @return QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, else QVN_OK
 */
QVN_API uint32_t QVN_IRaw8CYGMToBGR(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                    uint32_t phase);

/**
 * CYGM to BGR by 3x3 samples around each pixel, weighted 1 2 1 over 2 4 2 over 1 2 1, four of each colour.
 * With C, Y, G, M the weighted sums,
 *
 *     RedDiff = (M + Y - G - C) / 16    BlueDiff = (M + C - G - Y) / 16    toward zero
 *     L = (C + Y + G + M) >> 4
 *
 * Column 0 repeats column 1, the last column the one before it, then the first row the second and the last
 * row the one before it.
 *
 * Width even, height a multiple of 4; sizes are not checked. An odd width leaves the last pixel but one of
 * each row as it was, and copies it to the last one; widths 2 and 3 make copies only. A height 4m + 2 takes
 * its last four lines for others than they are and writes two rows beyond the picture; an odd height or one
 * below 4 runs away.
 *
 * A table of the lines, one address each, is allocated for the call; where that fails, the C++ exception of
 * the allocation leaves the function and nothing is written.
 *
 * @param dst    3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src    mosaic frame; width * height bytes
 * @param phase  not used
 * @return QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, else QVN_OK
 */
QVN_API uint32_t QVN_IRaw8CYGMToBGR_3x3(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                        uint32_t phase);

/**
 * CYGM to grey BGR: all three bytes of a pixel are (C + Y + G + M) >> 2 of the cell of lines F(r) and
 * F(r + 1), columns x and x + 1. The last column repeats the one before it, the last row the one before it.
 *
 * Width at least 2, height even and at least 2; sizes are not checked. An odd height reads half a line beyond
 * src. A width of 1 copies the pixel before each row, a height of 1 the row before dst.
 *
 * @param dst    3 bytes a pixel; 3 * width * height bytes
 * @param src    mosaic frame; width * height bytes
 * @param phase  any number; it makes no difference
 * @return QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, else QVN_OK
 */
QVN_API uint32_t QVN_IRaw8CYGMToMono(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                     uint32_t phase);

/**
 * Binned CYGM to targets 0 to 4. The colours, rows and sizes of QVN_IRaw8CYGMToBGR_Bin, of which target 1 is
 * the same.
 *
 * Target 2: fourth bytes are left as they were, in the last two pixels of a row too; copied rows have those
 * of the row that they repeat. Target 4 has (width >> 1) * 4 bytes a row and
 *
 *     Y = ((129 * G +  25 * B + 66 * R + 128) >> 8) + 16
 *     U = ((112 * B -  74 * G - 38 * R + 128) >> 8) + 128
 *     V = ((112 * R -  94 * G - 18 * B + 128) >> 8) + 128
 *
 * with U and V the means of two pixels, rounded down. Whether a pixel is the first or the second of its group
 * goes by its number in the frame, row * width + column: with an odd width, the first pixel of every other
 * row is mixed into the U and V that the row's first bytes hold, and rows reach into the next.
 *
 * @param dst     bytes a pixel as TransformTarget says; width * height pixels
 * @param src     binned frame; width * height bytes
 * @param target  0 to 4
 * @return QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, QVN_E_NOT_IMPLEMENTED for another target,
 *         else QVN_OK
 */
QVN_API uint32_t QVN_IRaw8CYGMImageTransform_Bin(uint8_t* dst, const uint8_t* src, uint32_t width,
                                                 uint32_t height, TransformTarget target);

/**
 * CYGM to targets 0 to 4 by cells of 2x2 samples. A pixel's colours are those of QVN_IRaw8CYGMToBGR; rows and
 * their ends are not. The last two pixels of a row have the colours of one cell, which with an even width
 * ends where its lines end. All rows come from their own lines, and the last one repeats the row before it.
 *
 * Width even, height a multiple of 4; sizes are not checked. An odd width makes width + 1 pixels a row and
 * reads one sample beyond its lines: the last pixel lies where the next row begins, which overwrites it; with
 * a height that is no multiple of 4, that of the last row stays, beyond dst. With such a height, from 2 on,
 * the last row is not a copy, and with one of 4m + 2 it takes the line behind the second field, beyond src. A
 * height of 0 or 1 writes nothing. The second field begins at (height >> 1) * width, elsewhere than in the
 * other functions where the height is odd.
 *
 * Targets 2 and 4 as in QVN_IRaw8CYGMImageTransform_Bin.
 *
 * @param dst     bytes a pixel as TransformTarget says; width * height pixels
 * @param src     mosaic frame; width * height bytes
 * @param target  0 to 4
 * @param phase   not used
 * @return QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, QVN_E_NOT_IMPLEMENTED for another target,
 *         else QVN_OK
 */
QVN_API uint32_t QVN_IRaw8CYGMImageTransform(uint8_t* dst, const uint8_t* src, uint32_t width,
                                             uint32_t height, TransformTarget target, uint32_t phase);

/**
 * CYGM to targets 0 to 3 by 3x3 samples. The colours, edges, sizes and the allocation of
 * QVN_IRaw8CYGMToBGR_3x3, of which target 1 is the same.
 *
 * Target 2: fourth bytes are left as they were, except that copies carry them along: the first and the last
 * pixel of a row have the fourth bytes of their neighbours, the first and the last row those of theirs.
 *
 * @param dst     bytes a pixel as TransformTarget says; width * height pixels
 * @param src     mosaic frame; width * height bytes
 * @param target  0 to 3
 * @param phase   not used
 * @return QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, QVN_E_NOT_IMPLEMENTED for another target,
 *         else QVN_OK
 */
QVN_API uint32_t QVN_IRaw8CYGMImageTransform_3x3(uint8_t* dst, const uint8_t* src, uint32_t width,
                                                 uint32_t height, TransformTarget target, uint32_t phase);

/* ---------------------------------------------------------------------------------------------------------
 * Colour correction
 *
 * An object that says what is done to the red, green and blue of each demosaicked pixel before it is stored.
 * Its first word is its kind; the functions that take one (_CC) serve some kinds and refuse the others:
 *
 *     kind                 Raw8ToBGR_CC    Raw12ToBGR_CC   Raw12ToBGR16_CC,
 *                          Raw8ToY8_CC                     Raw16ToBGR16_CC, Raw16ToY16_CC
 *     1 CcMatrixFloat      yes             yes             yes
 *     2 CcMatrixInt8       yes             -               -
 *     3 CcMatrixInt16      -               yes             yes
 *     4 CcGamma            yes             yes             yes
 *     5 CcGammaMatrix      yes             yes             yes
 *     8 CcTable8           yes             -               -
 *     9 CcTable16          -               as bytes        yes
 *     all others           -               -               -
 *
 * With R, G and B the colours of a window, at the source's own depth, and W bits of output (8, or 16 where
 * the name ends in 16), the rules are:
 *
 *     CcMatrixFloat   R' = (R * m[0] + G * m[1]) + B * m[2], G' from m[3] to m[5], B' from m[6] to m[8], each
 *                     product and sum in single precision. Truncated toward zero to 64 bits, of which the low
 *                     W are kept: no clamp, -1.5 becomes 255 and 256.5 becomes 0 at 8 bits. Highlights wrap.
 *     CcMatrixInt8    sum = R * c[0] + G * c[1] + B * c[2] and so on in 16 bits with wrap, of the
 *                     coefficients' low 16 bits; then sum >> 10, negative ones 0. Gives 0 to 31 only: with
 *                     the identity, 31 stays, 32 becomes 0 and 200 becomes 8.
 *     CcMatrixInt16   the same sums in 32 bits with wrap, >> 10. Negative ones become 0 and those above 65535
 *                     the top value of W bits; of all others the low W bits are kept, so that at 8 bits 300
 *                     becomes 44.
 *     CcGamma         power(R / maxValue, gamma) * maxValue in single precision, + 0.5 in double, truncated
 *                     toward zero to 64 bits, of which the low W are kept. No clamp. maxValue is what stands
 *                     for white: 255 for 8 bits, 4095, 65535 and so on.
 *     CcGammaMatrix   CcGamma, then CcMatrixFloat on its results.
 *     CcTable8, 16    R' = table[R] and so on. 256 entries reach every value of the functions with 8-bit
 *                     output, 4096 those of QVN_Raw12ToBGR16_CC, 65536 >> shift the samples of the 16-bit
 *                     ones; results that go through the rule again need an entry, too.
 *
 * A truncation that has no 64-bit integer (too large, infinite, not a number) gives 0 in both widths.
 *
 * A table's `first` that is null, or an index outside the table, is reported to the runtime's
 * invalid-parameter report, once for each such look-up. It ends the process (Windows: with 0xC000000D, unless
 * the program has set an invalid-parameter handler; elsewhere by SIGABRT, unless the program handles that
 * signal). After a handler that returns, the entry outside the table is read all the same.
 *
 * Objects are only read; any number of threads may convert with the same one. The records below are their
 * layout. An object of kinds 2 and 3 comes from a creator below; one of any kind may be built by the program
 * itself, anywhere, also on the stack, and passed as (const ColorCorrection*)&record. Only what is handed to
 * QVN_DestroyColorCorrection must come from C++'s operator new, the object and its tables alike.
 * ------------------------------------------------------------------------------------------------------ */

/** Kinds of objects; QVN_DestroyColorCorrection knows all of them. */
enum {
  CcUnset = 0,
  CcMatrixFloat = 1,
  CcMatrixInt8 = 2,
  CcMatrixInt16 = 3,
  CcGamma = 4,
  CcGammaMatrix = 5,
  CcReserved6 = 6,
  CcTableList = 7,
  CcTable8 = 8,
  CcTable16 = 9
};

/** An object of any kind. */
typedef struct ColorCorrection ColorCorrection;

/** Kinds 1, 4 and 5. Kind 1 needs no memory behind `matrix`, and kind 4 leaves `matrix` alone. */
typedef struct ColorCorrectionFloat {
  uint32_t kind;
  uint32_t reserved; /**< never read */
  float matrix[9];   /**< row-major, inputs in the order red, green, blue; rows make red, green, blue */
  float gamma;       /**< the exponent */
  float maxValue;    /**< the sample that stands for 1.0 in the power law */
} ColorCorrectionFloat;

/** Kinds 2 and 3. */
typedef struct ColorCorrectionFixed {
  uint32_t kind;
  int32_t coefficients[9]; /**< 10 fraction bits, 1024 stands for 1.0; in the order of `matrix` */
} ColorCorrectionFixed;

/** Kinds 7, 8 and 9: a table of bytes (8) or words (9), or of ColorCorrectionNested (7). */
typedef struct ColorCorrectionTable {
  uint32_t kind;
  uint32_t reserved;     /**< never read */
  void* reservedPointer; /**< never read */
  void* first;           /**< the table's storage, or null */
  void* last;            /**< one past the last entry */
  void* end;             /**< one past the storage */
} ColorCorrectionTable;

/** What a table of kind 7 holds. */
typedef struct ColorCorrectionNested {
  void* reserved; /**< never read */
  void* first;
  void* last;
  void* end;
} ColorCorrectionNested;

#if defined(__cplusplus)
#define QVN_LAYOUT(condition) static_assert(condition, "the records' layout is part of the interface")
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define QVN_LAYOUT(condition) _Static_assert(condition, "the records' layout is part of the interface")
#else
#define QVN_LAYOUT(condition) extern const char QVN_layout[(condition) ? 1 : -1]
#endif
QVN_LAYOUT(offsetof(ColorCorrectionFloat, kind) == 0 && offsetof(ColorCorrectionFloat, reserved) == 4);
QVN_LAYOUT(offsetof(ColorCorrectionFloat, matrix) == 8 && offsetof(ColorCorrectionFloat, gamma) == 44);
QVN_LAYOUT(offsetof(ColorCorrectionFloat, maxValue) == 48 && sizeof(ColorCorrectionFloat) == 52);
QVN_LAYOUT(offsetof(ColorCorrectionFixed, kind) == 0 && offsetof(ColorCorrectionFixed, coefficients) == 4);
QVN_LAYOUT(sizeof(ColorCorrectionFixed) == 40);
QVN_LAYOUT(offsetof(ColorCorrectionTable, kind) == 0 && offsetof(ColorCorrectionTable, reserved) == 4);
QVN_LAYOUT(offsetof(ColorCorrectionTable, reservedPointer) == 8);
QVN_LAYOUT(offsetof(ColorCorrectionTable, first) == 8 + sizeof(void*));
QVN_LAYOUT(offsetof(ColorCorrectionTable, last) == 8 + 2 * sizeof(void*));
QVN_LAYOUT(offsetof(ColorCorrectionTable, end) == 8 + 3 * sizeof(void*));
QVN_LAYOUT(offsetof(ColorCorrectionNested, reserved) == 0);
QVN_LAYOUT(offsetof(ColorCorrectionNested, first) == sizeof(void*));
QVN_LAYOUT(offsetof(ColorCorrectionNested, last) == 2 * sizeof(void*));
QVN_LAYOUT(offsetof(ColorCorrectionNested, end) == 3 * sizeof(void*));
QVN_LAYOUT(sizeof(ColorCorrectionNested) == 4 * sizeof(void*));
#undef QVN_LAYOUT

/**
 * Makes an object of kind 2, for 8-bit sources: each number times 1024 in single precision, truncated toward
 * zero (0.99999 gives 1023); what has no 32-bit integer gives INT32_MIN. Its forty bytes come from operator
 * new; where there is no memory, the C++ exception of the allocation leaves the function.
 *
 * @param matrix  nine numbers, row-major, inputs in the order red, green, blue; not tested for null
 * @param result  where to store the object, for QVN_DestroyColorCorrection later; not tested for null
 * @return QVN_OK
 */
QVN_API uint32_t QVN_CreateColorCorrectionMatrix_Int8(const float* matrix, ColorCorrection** result);

/**
 * Makes an object of kind 3, for sources of 12 and 16 bits. Its numbers and its memory are those of
 * QVN_CreateColorCorrectionMatrix_Int8.
 *
 * @param matrix  nine numbers, row-major, inputs in the order red, green, blue; not tested for null
 * @param result  where to store the object, for QVN_DestroyColorCorrection later; not tested for null
 * @return QVN_OK
 */
QVN_API uint32_t QVN_CreateColorCorrectionMatrix_Int16(const float* matrix, ColorCorrection** result);

/**
 * Gives an object back to operator delete; of kinds 8 and 9 the table at `first`, too, and of kind 7 the
 * table, and before it the `first` of each of its records up to `last`.
 *
 * @param object  of a creator, or built in memory of operator new
 * @return QVN_E_PARAM1 for a null pointer, QVN_E_ABORTED for a kind above 9 (the object stays), else QVN_OK
 */
QVN_API uint32_t QVN_DestroyColorCorrection(ColorCorrection* object);

/* ---------------------------------------------------------------------------------------------------------
 * Bayer demosaics with colour correction, 8-bit sources
 *
 * The 2x2 demosaics of the same name without _CC, with the rule of the object (see Colour correction) between
 * the window and what is written. Last column and last line are copies of corrected pixels. Sizes are those
 * of the plain functions. Not in place; no memory is allocated.
 *
 * A null object means no correction: the plain function's bytes. Statuses in order: QVN_E_PARAM1 for a null
 * dst, QVN_E_PARAM2 for a null src, QVN_E_FAIL for a kind that the function does not serve (nothing is
 * written), else QVN_OK.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Raw8 to BGR, corrected.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src  1 byte a sample; width * height bytes
 */
QVN_API uint32_t QVN_Raw8ToBGR_CC(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                  BayerPattern pattern, const ColorCorrection* cc);

/**
 * Raw8 to luma, corrected: (77 * R' + 150 * G' + 29 * B') >> 8 of the corrected bytes.
 *
 * @param dst  1 byte a pixel; width * height bytes
 * @param src  1 byte a sample; width * height bytes
 */
QVN_API uint32_t QVN_Raw8ToY8_CC(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                 BayerPattern pattern, const ColorCorrection* cc);

/* ---------------------------------------------------------------------------------------------------------
 * Bayer demosaics of packed 12-bit samples, by the 2x2 window
 *
 * Two samples of a line lie in three bytes: bits 11..4 of the even column's; bits 3..0 of the even column's
 * (low nibble) and of the odd column's (high nibble); bits 11..4 of the odd column's. A line is (width / 2) *
 * 3 bytes. Last column: copy of the column before. An odd width writes width + 1 pixels a line at an
 * unchanged source pitch, so that the lines drift and the picture ends beyond its size; don't use one.
 *
 * Width even and at least 2, height at least 2, not in place; sizes are not checked, as of the other 2x2
 * demosaics. The _CC functions put the rule of the object (see Colour correction) between the window and what
 * is written; a null object gives the plain function's bytes. No memory is allocated. Statuses in order:
 * QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, of the _CC functions QVN_E_FAIL for a kind that
 * they do not serve (nothing is written), else QVN_OK.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Raw12 to BGR at 8 bits a channel, from the top eight bits of each sample; the low four do not count.
 *
 * Last line: copy of the line above.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src  3 bytes for 2 samples; 3 * (width / 2) * height bytes
 */
QVN_API uint32_t QVN_Raw12ToBGR(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                BayerPattern pattern);

/**
 * Raw12 to BGR, corrected. Colours are bytes; the table of an object of kind 9 is read as bytes, too, of
 * which the first 256 count: of a table of words its first 128, in memory order. Last line: copy of the line
 * above.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src  3 bytes for 2 samples; 3 * (width / 2) * height bytes
 */
QVN_API uint32_t QVN_Raw12ToBGR_CC(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                   BayerPattern pattern, const ColorCorrection* cc);

/**
 * Raw12 to BGR with 16 bits a channel: numbers from 0 to 4095, not scaled.
 *
 * Last line: the first half of it is a copy of the line above, its second half is left alone. A width of 2
 * takes the left green sample of each window for 0.
 *
 * @param dst  3 words a pixel in the host's order: blue, green, red; 3 * width * height words; no alignment
 *             needed
 * @param src  3 bytes for 2 samples; 3 * (width / 2) * height bytes
 */
QVN_API uint32_t QVN_Raw12ToBGR16(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                  BayerPattern pattern);

/**
 * Raw12 to BGR with 16 bits a channel, corrected. Nothing is stopped at 4095. Last line: its first half is a
 * copy of the line above, its second half is left alone.
 *
 * @param dst  3 words a pixel in the host's order: blue, green, red; 3 * width * height words; no alignment
 *             needed
 * @param src  3 bytes for 2 samples; 3 * (width / 2) * height bytes
 */
QVN_API uint32_t QVN_Raw12ToBGR16_CC(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                     BayerPattern pattern, const ColorCorrection* cc);

/* ---------------------------------------------------------------------------------------------------------
 * Bayer demosaics of 16-bit samples that keep the depth, by the 2x2 window
 *
 * Samples are big-endian, and the lowest `shift` bits of each do not count: with a shift of 4, samples of 12
 * bits at the top of their words come out as numbers from 0 to 4095. Green is the sum of both samples shifted
 * by shift + 1, which keeps the carry between their low bits. Shifts from 9 to 23 make all samples 0, and so
 * the plain functions' frame black; in the _CC functions, which take any number, 24 to 31 give remains of the
 * high bytes, and above that it counts modulo 32.
 *
 * Last two columns: copies of the column before them. Last line: copy of the line above. An odd width writes
 * width + 1 pixels a line at an unchanged source pitch, so that the lines drift and the picture ends beyond
 * its size; don't use one. A width of 2 copies what lies before each line to it.
 *
 * Width even and at least 4, height at least 2, not in place; sizes are not checked, as of the other 2x2
 * demosaics. No memory is allocated; a conversion with CcGamma or CcGammaMatrix works in the last lines of
 * dst before it writes them, and reads them back. Statuses in order: QVN_E_PARAM1 for a null dst,
 * QVN_E_PARAM2 for a null src, QVN_E_PARAM6 for a shift above 16 (of the _CC functions instead QVN_E_FAIL for
 * a kind of object that they do not serve); nothing is written by then; else QVN_OK.
 *
 * The _CC functions apply the rule of the object (see Colour correction) to the shifted colours; a null
 * object gives the plain function's bytes. Pixels go in pairs from column 0 on. The two pixels of a pair
 * share a sample, a blue one where the pair starts with an even column of the cell (codes 0 and 1), a red
 * one otherwise, and what the second pixel takes for that colour is told with each function.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Raw16 to BGR with 16 bits a channel.
 *
 * @param dst  3 words a pixel in the host's order: blue, green, red; 3 * width * height words; no alignment
 *             needed
 * @param src  2 bytes a sample, no alignment needed; 2 * width * height bytes
 */
QVN_API uint32_t QVN_Raw16ToBGR16(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                  BayerPattern pattern, uint32_t shift);

/**
 * Raw16 to BGR with 16 bits a channel, corrected. The shared colour of a pair is corrected twice in its
 * second pixel: the rule's input there is the first pixel's result.
 *
 * @param dst  3 words a pixel in the host's order: blue, green, red; 3 * width * height words; no alignment
 *             needed
 * @param src  2 bytes a sample, no alignment needed; 2 * width * height bytes
 */
QVN_API uint32_t QVN_Raw16ToBGR16_CC(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                     BayerPattern pattern, uint32_t shift, const ColorCorrection* cc);

/**
 * Raw16 to 16-bit luma: (77 * R + 150 * G + 21 * B) >> 8. The weights sum to 248: white gives 63487.
 *
 * @param dst  a word a pixel in the host's order; width * height words; no alignment needed
 * @param src  2 bytes a sample, no alignment needed; 2 * width * height bytes
 */
QVN_API uint32_t QVN_Raw16ToY16(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                BayerPattern pattern, uint32_t shift);

/**
 * Raw16 to 16-bit luma of the corrected colours. With a shift of 0 each pixel is corrected by itself. With
 * any other, 32 included, the second pixel of a pair is not corrected but for the shared colour, which is the
 * rule's result for the shared sample beside the two other results of the first pixel.
 *
 * @param dst  a word a pixel in the host's order; width * height words; no alignment needed
 * @param src  2 bytes a sample, no alignment needed; 2 * width * height bytes
 */
QVN_API uint32_t QVN_Raw16ToY16_CC(uint16_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                   BayerPattern pattern, uint32_t shift, const ColorCorrection* cc);

/* ---------------------------------------------------------------------------------------------------------
 * Resampling
 *
 * Lines stretched or shrunk along the line; the number of lines stays. An element is a run of 1 to 6 bytes,
 * each of them treated alike, so that the same functions serve mono, YUV, RGB and 16-bit data.
 *
 * Output element i lies at the position p = (srcRate / dstRate) * i of its source line: the quotient in
 * single precision, then widened, the product in double precision. Its index is p + 0.5, truncated; above a
 * limit it becomes the limit. With nearest, the limit is srcLength - 1 and the element at the index is
 * copied. With linear, the limit is dstLength - 1, whatever srcLength is: a line that shrinks reads no more
 * than the first dstLength elements and repeats the last of them. Each byte there is
 *
 *     f = (p - index) * 1024, truncated; 0 where the index is 0 or the limit
 *     f < 0:  (own * (1024 + f) - before * f) >> 10
 *     f > 0:  (before * (1024 - f) + own * f) >> 10
 *     f = 0:  own
 *
 * from the element at the index and the one before it, also where the position lies behind the index: 5.25
 * gives 0.75 of element 4 and 0.25 of element 5.
 *
 * Rates are not checked. A number that has no integer (an infinity, a NaN, one that is too large) converts to
 * the lowest integer of its type, as lengths to INT32_MIN and as positions to -2^63. Of an index the low 32
 * bits count, and the limit is compared unsigned: negative positions from -1.5 down give the limit, and a
 * srcLength of 0 sets none.
 * ------------------------------------------------------------------------------------------------------ */

/** Bytes of an element, 1 to 6. */
typedef uint32_t ResampleType;

/** 0: nearest. 1: linear. */
typedef uint32_t ResampleMethod;

/**
 * Stores how many elements an output line should have: srcLength * dstRate in single precision, divided by
 * srcRate in double precision, truncated toward zero; if that is not a multiple of 4, its quotient by 4,
 * truncated toward zero, plus 1, times 4. So 641 gives 644, -1 to -3 give 4, and -5 gives 0.
 *
 * @param dstLength  where to store it; not tested for null
 * @param srcLength  elements of a source line
 * @param srcRate    samples of the source line in a unit of length
 * @param dstRate    samples of the output line in the same unit
 * @return QVN_OK
 */
QVN_API uint32_t QVN_GetResampledScanlineLength(int32_t* dstLength, int32_t srcLength, float srcRate,
                                                float dstRate);

/**
 * Resamples lines that follow each other without a gap: QVN_ResampleScanlinesEx with pitches that are the
 * lengths. The status codes name the parameters of that function.
 *
 * @param dst             dstLength * lineCount elements
 * @param src             srcLength * lineCount elements; with linear see there
 * @param dstLength       elements of an output line
 * @param srcLength       elements of a source line
 * @param lineCount       below 1, nothing is written
 * @param srcRate         samples of the source line in a unit of length
 * @param dstRate         samples of the output line in the same unit
 * @param resampleType    bytes of an element, 1 to 6
 * @param resampleMethod  0: nearest; 1: linear
 * @return as QVN_ResampleScanlinesEx: 1 is success
 */
QVN_API uint32_t QVN_ResampleScanlines(uint8_t* dst, const uint8_t* src, int32_t dstLength, int32_t srcLength,
                                       int32_t lineCount, float srcRate, float dstRate,
                                       ResampleType resampleType, ResampleMethod resampleMethod);

/**
 * Resamples lines at pitches of their own. Not in place. Tables of 4 bytes an output element (8 with linear)
 * and up to 170 KiB beside them are allocated for the call; where that fails, and for a negative dstLength,
 * the C++ exception of the allocation leaves the function.
 *
 * @param dst             dstLength elements are written a line; what lies between lines is left alone
 * @param src             srcLength elements a line, of which those up to the largest index are read; with
 *                        linear make sure that these are there
 * @param dstLength       elements of an output line
 * @param dstPitch        from one output line to the next, in elements; negative walks upward
 * @param srcLength       elements of a source line; read by nearest only
 * @param srcPitch        from one source line to the next, in elements; negative walks upward
 * @param lineCount       below 1, nothing is written
 * @param srcRate         samples of the source line in a unit of length
 * @param dstRate         samples of the output line in the same unit
 * @param resampleType    bytes of an element, 1 to 6
 * @param resampleMethod  0: nearest; 1: linear
 * @return QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, QVN_E_PARAM10 for a type of 0 or above 6,
 *         QVN_E_PARAM11 for a method above 1, else 1, not QVN_OK, also without lines
 */
QVN_API uint32_t QVN_ResampleScanlinesEx(uint8_t* dst, const uint8_t* src, int32_t dstLength,
                                         int32_t dstPitch, int32_t srcLength, int32_t srcPitch,
                                         int32_t lineCount, float srcRate, float dstRate,
                                         ResampleType resampleType, ResampleMethod resampleMethod);

/* ---------------------------------------------------------------------------------------------------------
 * Flips
 *
 * Frames mirrored in place. A refused call leaves the buffer alone.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Mirrors a frame in place: axis 1 reverses every line, axis 2 the order of the lines, axis 3 both.
 *
 * Lines are reversed by elements, which keep the order of their bytes, and `width` counts elements:
 *
 *     Mono8, Raw8, 128 to 130                               1 byte
 *     Mono16, signed Mono16, Raw16, all three YUV formats   2 bytes
 *     RGB8                                                  3 bytes
 *     RGB16, signed RGB16                                   6 bytes
 *
 * So for the YUV formats `width` is half the bytes of a line, and reversed lines of them are no YUV any more.
 * Axis 2 takes every code and is QVN_FlipVertical with `width` elements a line (1 byte for every other code);
 * that product, and width * height of axis 3, wrap at 32 bits. Axes 1 and 3 allocate nothing.
 *
 * @param buffer       width * height elements
 * @param width        elements a line; 0 is good and does nothing
 * @param height       lines, at least 2
 * @param axis         1: lines reversed; 2: the order of the lines; 3: both
 * @param colorCoding  gives the element, as above
 * @return QVN_E_PARAM1 for a null buffer, QVN_E_PARAM3 for fewer than 2 lines, QVN_E_PARAM4 for another axis,
 *         QVN_E_PARAM5 for every other code on axes 1 and 3; on axis 2 what QVN_FlipVertical returns, whose
 *         name is in the log then; else QVN_OK
 */
QVN_API uint32_t QVN_Flip(uint8_t* buffer, uint32_t width, uint32_t height, uint32_t axis,
                          ColorCodingId colorCoding);

/**
 * Reverses the order of a frame's lines in place; the middle one of an odd height stays. One line is
 * allocated for the call.
 *
 * @param buffer     lineBytes * height bytes
 * @param lineBytes  bytes a line; (height - 1) * lineBytes wraps at 32 bits, so keep it below 4 GiB; 0 is
 *                   good and does nothing
 * @param height     lines, at least 2
 * @return QVN_E_PARAM1 for a null buffer, QVN_E_PARAM3 for fewer than 2 lines, QVN_E_OUT_OF_MEMORY if there
 *         is no memory (the buffer is unchanged), else QVN_OK; the log has no line of a refused call
 */
QVN_API uint32_t QVN_FlipVertical(uint8_t* buffer, uint32_t lineBytes, uint32_t height);

/* ---------------------------------------------------------------------------------------------------------
 * Interlaced and packed frames
 *
 * Sizes are not checked, and products of them wrap at 32 bits. Statuses in order: QVN_E_PARAM1 for a null
 * dst, QVN_E_PARAM2 for a null src, else QVN_OK.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Weaves two fields, stored one behind the other, to a frame: output line 2j is line j of the field that lies
 * second in memory, output line 2j + 1 is line j of the first one. With an odd height the last line is not
 * written.
 *
 * Works in place when dst equals src, with an allocated copy of the first field; where there is no memory,
 * the C++ exception of the allocation leaves the function. The second field starts at (width / 2) * height,
 * in place at (width * height) / 2, which is another place when width is odd. In place, width * height must
 * be below 2^32.
 *
 * @param dst  1 byte a sample; width * height bytes
 * @param src  1 byte a sample; two fields of height / 2 lines of width bytes
 */
QVN_API uint32_t QVN_InterlacedToProgressive(uint8_t* dst, const uint8_t* src, uint32_t width,
                                             uint32_t height);

/**
 * Packed 12 to mono 8: the top eight bits of each sample. Not in place.
 *
 * @param dst  1 byte a sample; width * height bytes, and one more if that is odd
 * @param src  3 bytes for 2 samples: bits 11..4 of the first; bits 3..0 of the first (low nibble) and the
 *             second; bits 11..4 of the second
 */
QVN_API uint32_t QVN_Packed12BitTo8Bit(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height);

/**
 * Packed 12 to mono 16: all bits of each sample, at the top of two bytes, high byte first; the low four bits
 * are 0. Not in place. Twice the number of samples wraps at 32 bits, too.
 *
 * @param dst  2 bytes a sample; 2 * width * height bytes, and two more if width * height is odd
 * @param src  3 bytes for 2 samples, as in QVN_Packed12BitTo8Bit
 */
QVN_API uint32_t QVN_Packed12BitTo16Bit(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height);

/**
 * Copies the SIS, a block of bytes that a camera writes into the pixel data, out of a frame. What the bytes
 * mean is the camera's business. All products wrap at 32 bits.
 *
 * @param dst          receives 12 bytes for block kind 1, 52 for kind 2; left alone if the call is refused
 * @param frame        the frame
 * @param colorCoding  gives the bits of a pixel, as QVN_GetBitsPerPixel
 * @param position     from 0: the line that the block starts with; below 0: the pixel that it starts at,
 *                     counted back from the end of the frame
 * @param blockKind    1 or 2
 * @return QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null frame, QVN_E_PARAM5 for an unknown code,
 *         QVN_E_PARAM2 for a start within a byte, QVN_E_PARAM7 for another kind of block, QVN_E_UNCLASSIFIED
 *         if the block does not end before the frame's last byte, else QVN_OK
 */
QVN_API uint32_t QVN_GetSIS(uint8_t* dst, const uint8_t* frame, uint32_t width, uint32_t height,
                            ColorCodingId colorCoding, int32_t position, uint32_t blockKind);

/* ---------------------------------------------------------------------------------------------------------
 * Transforms of runs: one function a source, whose `target` says what comes out (TransformTarget)
 *
 * `count` is the number of pixels; 0 is good and writes nothing. No buffer needs an alignment. Target 2 steps
 * over each pixel's fourth byte, unless a function says otherwise: it is never changed, and another thread
 * must not write it meanwhile.
 *
 * Not in place, but for dst equal to src where a pixel of dst is no longer than one of src and the source is
 * not YUV 4:2:2 or 4:1:1.
 *
 * Statuses in order, all functions: QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src,
 * QVN_E_NOT_IMPLEMENTED for a target that the function does not offer (dst is left alone), else QVN_OK.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * RGB8 to a target. Targets 0 to 3.
 *
 * @param dst  count pixels of the target
 * @param src  3 bytes a pixel: red, green, blue; 3 * count bytes
 */
QVN_API uint32_t QVN_RGB8ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count,
                                        TransformTarget target);

/**
 * RGBA8 to a target. Targets 0 to 3. The fourth byte of target 2 is the source's alpha; the others drop it.
 *
 * @param dst  count pixels of the target
 * @param src  4 bytes a pixel: red, green, blue, alpha; 4 * count bytes
 */
QVN_API uint32_t QVN_RGBA8ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count,
                                         TransformTarget target);

/**
 * YUV 4:4:4 to a target, by the formula of QVN_YUV444ToBGR; luma weighs the clamped colours. Targets 0 to 3.
 *
 * @param dst  count pixels of the target
 * @param src  3 bytes a pixel: U, Y, V; 3 * count bytes
 * @return also QVN_E_UNCLASSIFIED should the conversion fail, which it does not
 */
QVN_API uint32_t QVN_YUV444ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count,
                                          TransformTarget target);

/**
 * YUV 4:2:2 to a target, by the formula of QVN_YUV444ToBGR; luma weighs the clamped colours. Targets 0 to 3.
 * The last pixel of an odd count is neither read nor written.
 *
 * @param dst  count pixels of the target, of which two are written for each whole group
 * @param src  4 bytes for 2 pixels: U, Y0, V, Y1; 4 * (count / 2) bytes
 * @return also QVN_E_UNCLASSIFIED should the conversion fail, which it does not
 */
QVN_API uint32_t QVN_YUV422ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count,
                                          TransformTarget target);

/**
 * YUV 4:1:1 to a target, by the formula of QVN_YUV444ToBGR; luma weighs the clamped colours. Targets 0 to 3.
 * The last count % 4 pixels are neither read nor written.
 *
 * @param dst  count pixels of the target, of which four are written for each whole group
 * @param src  6 bytes for 4 pixels: U, Y0, Y1, V, Y2, Y3; 6 * (count / 4) bytes
 * @return also QVN_E_UNCLASSIFIED should the conversion fail, which it does not
 */
QVN_API uint32_t QVN_YUV411ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count,
                                          TransformTarget target);

/**
 * Mono 8 to a target. Targets 0 to 4; 0 and 3 are a copy.
 *
 * The chroma of target 4 is 0, not 128: 0, Y0, 0, Y1. With an odd count the last group gets both of its
 * chroma bytes and Y0; its fourth byte is left alone.
 *
 * @param dst  count pixels of the target; of target 4, 2 * count bytes and one more for an odd count
 * @param src  1 byte a pixel; count bytes
 */
QVN_API uint32_t QVN_Y8ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count,
                                      TransformTarget target);

/**
 * Mono 16 to a target, of the colours that QVN_Y16ToBGR makes: the first byte of each sample, with red pushed
 * up by bit 7 of the second one and blue by bit 6, unless it is 255. Luma weighs these colours, which comes
 * to the first byte. Targets 0 to 3.
 *
 * @param dst  count pixels of the target
 * @param src  2 bytes a sample, big-endian; 2 * count bytes
 * @return also QVN_E_UNCLASSIFIED should the conversion fail, which it does not
 */
QVN_API uint32_t QVN_Y16ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count,
                                       TransformTarget target);

/**
 * Mono of 10 to 16 bits to a target: each sample is moved up until its top bit is bit 15, and bits above that
 * are lost; 8-bit targets take the upper byte of the result, without rounding or push. Targets 0 to 3 and 5
 * to 7; 0 and 3 are the same, and 5 and 6.
 *
 * @param dst     count pixels of the target
 * @param src     2 bytes a sample; 2 * count bytes
 * @param format  how the samples lie; null stands for alignment 0, byteOrder 1. `pattern` is not read
 * @return QVN_E_NOT_IMPLEMENTED, also for a count of 0, for an alignment or a byteOrder above 1, and for a
 *         bitsPerSample with alignment 1 that is not 10, 12, 13, 14, 15 or 16
 */
QVN_API uint32_t QVN_Y16ImageTransformEx(uint8_t* dst, const uint8_t* src, uint32_t count,
                                         TransformTarget target, const SampleFormatBlock* format);

/**
 * Packed 12 to a target: the top eight bits of each sample. Targets 0 to 3; 0 and 3 are the same.
 *
 * `count` must be even. Pixels are written by twos until the end is met; an odd count never meets it and runs
 * on through memory.
 *
 * @param dst  count pixels of the target
 * @param src  3 bytes for 2 samples: bits 11..4 of the first; bits 3..0 of the first (low nibble) and the
 *             second; bits 11..4 of the second; 3 * (count / 2) bytes
 */
QVN_API uint32_t QVN_Y12ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t count,
                                       TransformTarget target);

/* ---------------------------------------------------------------------------------------------------------
 * Transforms of Bayer frames: one function a source, whose `target` says what comes out (TransformTarget)
 *
 * The colours of a pixel are those of the demosaic that a function names; luma weighs them. Line ends differ
 * from those of the demosaics of fixed output. No buffer needs an alignment, none of the functions works in
 * place. Width even and at least 4, height at least 2, and for the interpolations through YUV even; sizes are
 * not checked, and what is said there of sizes outside the contract holds here too.
 *
 * Target 2 steps over each pixel's fourth byte. It is never changed, but where a line or a pixel is copied as
 * a whole, which carries the neighbour's along; another thread must not write it meanwhile.
 *
 * Statuses in order, all functions: QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src,
 * QVN_E_NOT_IMPLEMENTED for a target that the function does not offer (dst and src are left alone), else
 * QVN_OK.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Raw8 to a target by the 2x2 window. Targets 0 to 4.
 *
 * Target 4 is in studio range, with U and V the mean of the two pixels of a group, rounded down:
 *
 *     Y = ((66 * R + 129 * G + 25 * B + 128) >> 8) + 16
 *     U = ((112 * B - 74 * G - 38 * R + 128) >> 8) + 128
 *     V = ((112 * R - 94 * G - 18 * B + 128) >> 8) + 128
 *
 * Last column: the last window once more. In the column before it, which has the same window, red and blue
 * are exchanged if the first line starts with G R or B G. Last line: copy of the line above, fourth bytes
 * included. An odd width writes width + 1 pixels a line, as QVN_Raw8ToBGR does; don't use one.
 *
 * @param dst  width * height pixels of the target
 * @param src  1 byte a sample; width * height bytes
 */
QVN_API uint32_t QVN_Raw8ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                        TransformTarget target, BayerPattern pattern);

/**
 * Raw8 to a target by the 3x3 window of QVN_Raw8ToBGR_3x3, borders included. Targets 0 to 3.
 *
 * One site differs: on red lines that start with a green (their column 1 is a red), the green sites have red
 * and blue exchanged. Copied pixels and lines at the borders carry fourth bytes along; of a frame of two
 * lines they are 0.
 *
 * @param dst  width * height pixels of the target
 * @param src  1 byte a sample; width * height bytes
 * @return also QVN_E_UNCLASSIFIED should the conversion fail, which it does not
 */
QVN_API uint32_t QVN_Raw8ImageTransform_3x3(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                            TransformTarget target, BayerPattern pattern);

/**
 * Raw8 to a target by way of YUV as in QVN_Raw8ToBGR_IntYUV422. Targets 0 to 3.
 *
 * The source is destroyed as there: it ends as the 4:2:2 form of the second half frame. dst needs no more
 * than the target's pixels, and every fourth byte stays: a scratch frame of 3 * width * height bytes is
 * allocated by operator new for the call. If that fails, nothing is written and the status is QVN_OK.
 *
 * @param dst  width * height pixels of the target
 * @param src  1 byte a sample; width * height bytes; overwritten
 */
QVN_API uint32_t QVN_Raw8ImageTransform_IntYUV422(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                                  TransformTarget target, BayerPattern pattern);

/**
 * Raw8 to a target by way of YUV as in QVN_Raw8ToBGR_IntLCAA, with the source destroyed as there. Targets 0
 * to 3. Every fourth byte stays. A scratch frame of 4 * width * height bytes is allocated for the call; if it
 * cannot be, what operator new throws leaves the function.
 *
 * @param dst  width * height pixels of the target
 * @param src  1 byte a sample; width * height bytes; overwritten
 */
QVN_API uint32_t QVN_Raw8ImageTransform_IntLCAA(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                                TransformTarget target, BayerPattern pattern);

/**
 * Raw8 to a target by way of YUV as in QVN_Raw8ToBGR_IntLCAAV, with the source destroyed as there. Targets 0
 * to 3. Every fourth byte stays. A scratch frame of 3 * width * height bytes is allocated for the call; if it
 * cannot be, the integer 1 is thrown. With heights 4 and 5, the pixels that the first half looks back at
 * before its start count as 0; the second half has those of the first.
 *
 * @param dst  width * height pixels of the target
 * @param src  1 byte a sample; width * height bytes; overwritten
 */
QVN_API uint32_t QVN_Raw8ImageTransform_IntLCAAV(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                                                 TransformTarget target, BayerPattern pattern);

/**
 * Raw12 to a target at 8 bits a channel, by the 2x2 window over the top eight bits of each sample. Targets 0
 * to 3.
 *
 * Last column: the last window once more, which equals the column before. Last line: copy of the line above,
 * fourth bytes included. Width even: an odd one writes width + 1 pixels a line.
 *
 * @param dst  width * height pixels of the target
 * @param src  3 bytes for 2 samples, as in QVN_Y12ImageTransform; (width / 2) * 3 * height bytes
 */
QVN_API uint32_t QVN_Raw12ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                         TransformTarget target, BayerPattern pattern);

/**
 * Raw16 to a target at 8 bits a channel, by the 2x2 window over the first byte of each sample. Targets 0 to
 * 3. Target 0 has the weights of target 3: the two are the same.
 *
 * Last column: black, with its fourth byte left alone. Last line: copy of the line above, fourth bytes
 * included. Odd widths from 3 are good.
 *
 * @param dst  width * height pixels of the target
 * @param src  2 bytes a sample, big-endian; 2 * width * height bytes
 */
QVN_API uint32_t QVN_Raw16ImageTransform(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                         TransformTarget target, BayerPattern pattern);

/**
 * Raw of 10 to 16 bits to a target, by the 2x2 window. Targets 0 to 3 and 5 to 7.
 *
 * Each sample is moved up until its top bit is bit 15, and bits above that are lost; 8-bit targets take its
 * upper byte. Only then are the greens averaged, so that the greens' low bits make no carry in 8-bit targets.
 *
 * Last column: zero, with the fourth byte of target 2 left alone. Last line: copy of the line above, fourth
 * bytes included. Odd widths from 3 are good.
 *
 * @param dst     width * height pixels of the target
 * @param src     2 bytes a sample; 2 * width * height bytes
 * @param format  how the samples lie, and the pattern
 * @return after the pointers QVN_E_PARAM6 for a null format, then QVN_E_NOT_IMPLEMENTED, with dst left alone,
 *         for a target that is not offered, an alignment or a byteOrder above 1, and for a bitsPerSample with
 *         alignment 1 that is not 10, 12, 13, 14, 15 or 16
 */
QVN_API uint32_t QVN_Raw16ImageTransformEx(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                           TransformTarget target, const SampleFormatBlock* format);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* QUORVANE_QUORVANE_H */
