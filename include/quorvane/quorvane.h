/**
 * @file quorvane.h
 * Quorvane: exact and fast pixel-format conversions for frames from industrial cameras.
 *
 * Plain C (C99 and later) and C++. Every function works on memory that the caller owns, keeps nothing from
 * one call to the next, and returns a status code. Any number of threads may call any function at the same
 * time, as long as their destinations are disjoint from each other's buffers.
 *
 * Frames. A frame is width * height pixels, top line first, without padding between lines or pixels. No
 * function knows how long a buffer is: the caller sizes it, and null pointers and a few selectors are all that
 * is checked. 16-bit samples in a source are big-endian (first byte most significant) unless a function says
 * otherwise; 16-bit words in a destination are in the host's order.
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
 * The code's text and its terminating zero are copied as far as they fit in `size` bytes. A text that does not
 * fit arrives cut, without a terminator. A code without a text gets the operating system's text if that has
 * one for the code, else "return code not found". A size of 64 holds every text of the library whole.
 *
 * @param code    any status code, of this library or of the camera layers beside it
 * @param buffer  receives the text; bytes behind the terminator are left alone
 * @param size    bytes that `buffer` holds
 * @return QVN_E_PARAM2 for a null buffer, QVN_E_PARAM3 for a size of 0, else QVN_OK, also for unknown codes
 */
QVN_API uint32_t QVN_GetErrorInfo(uint32_t code, char* buffer, uint32_t size);

/* ---------------------------------------------------------------------------------------------------------
 * Bayer demosaics by the 2x2 window
 *
 * A pixel is made from the four samples whose top-left one is its own place: the red one, the blue one, and
 * the mean of the two greens, rounded down. The picture has the size of the mosaic, is shifted by half a
 * sample, and its last column and last line, which have no window, are filled as each function says.
 *
 * All four: width even and at least 2, height at least 2, not in place. Sizes are not checked; others are
 * outside the contract, with one exception: where a function says so, odd widths are good. Statuses in order:
 * QVN_E_PARAM1 for a null dst, QVN_E_PARAM2 for a null src, else QVN_OK.
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Raw8 to BGR.
 *
 * Last column: copy of the column before. Last line: copy of the line above. An odd width writes width + 1
 * pixels a line at an unchanged source pitch, so that the lines drift to the right and the picture ends
 * beyond 3 * width * height bytes; don't use one.
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
 * Raw8 to luma: (77 * R + 150 * G + 29 * B) >> 8 of each window, G being the mean of the greens, rounded down.
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
 * is never read.
 *
 * Last column: black. Last line: copy of the line above. Odd widths from 3 are good.
 *
 * @param dst  3 bytes a pixel: blue, green, red; 3 * width * height bytes
 * @param src  2 bytes a sample, big-endian, no alignment needed; 2 * width * height bytes
 */
QVN_API uint32_t QVN_Raw16ToBGR(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                BayerPattern pattern);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* QUORVANE_QUORVANE_H */
