// The recipes of the mosaics.
#include "transform/mosaics.h"

#include "pixel/put16.h"
#include "pixel/studio.h"

namespace qvn {

namespace {

template <class Fetch, class End, class Put>
constexpr Mosaic2x2 packed(ColumnStep columns) {
  return recipe_2x2<Fetch, PackedPixels<Put>, End>(columns);
}

// The targets that every source offers.
template <class Fetch, class End>
constexpr ByTarget<Mosaic2x2> byte_mosaics(ColumnStep columns) {
  return {packed<Fetch, End, PutY8>(columns), packed<Fetch, End, PutBgr>(columns),
          packed<Fetch, End, PutBgra>(columns), packed<Fetch, End, PutY8Rounded>(columns)};
}

constexpr ByTarget<Mosaic2x2> raw8_mosaics() {
  ByTarget<Mosaic2x2> mosaics = byte_mosaics<FetchRaw8, ExchangedTail>(ColumnStep::kTwo);
  mosaics[4] = recipe_2x2<FetchRaw8, Studio422, ExchangedTail>(ColumnStep::kTwo);
  return mosaics;
}

// Target 0 has the weights of target 3; callers depend on it.
constexpr ByTarget<Mosaic2x2> raw16_mosaics() {
  ByTarget<Mosaic2x2> mosaics = byte_mosaics<FetchRaw16TopByte, BlackPixel>(ColumnStep::kOne);
  mosaics[0] = mosaics[3];
  return mosaics;
}

// Samples are shifted as they are fetched, before the greens are averaged.
struct Raw16LayoutMosaics {
  template <ByteOrder Order, int Shift>
  static constexpr ByTarget<Mosaic2x2> of() {
    using Fetch = FetchRaw16<Order, Shift>;
    using TopByte = std::conditional_t<Order == ByteOrder::kBig && Shift == 0, FetchRaw16TopByte,
                                       FetchShiftedRaw16TopByte<Order, Shift>>;
    constexpr ColumnStep kColumns = ColumnStep::kOne;
    ByTarget<Mosaic2x2> mosaics = byte_mosaics<TopByte, BlackPixel>(kColumns);
    mosaics[5] = packed<Fetch, BlackPixel, PutMono16<77, 150, 29, 0>>(kColumns);
    mosaics[6] = packed<Fetch, BlackPixel, PutMono16<54, 184, 18, 128>>(kColumns);
    mosaics[7] = packed<Fetch, BlackPixel, PutBgr16>(kColumns);
    return mosaics;
  }
};

// On red lines that start with a red, the greens' red and blue are exchanged; callers depend on it.
template <class Put>
constexpr Mosaic3x3 packed_3x3() {
  return recipe_3x3<Put, GreenSites::kExchangedBehindOwn>();
}

}  // namespace

constexpr ByTarget<Mosaic2x2> kRaw8Mosaics = raw8_mosaics();
constexpr ByTarget<Mosaic2x2> kRaw12Mosaics =
    byte_mosaics<FetchRaw12TopByte, LastWindowAgain>(ColumnStep::kTwo);
constexpr ByTarget<Mosaic2x2> kRaw16Mosaics = raw16_mosaics();
constexpr ByLayout<Mosaic2x2> kRaw16LayoutMosaics = by_layout<Mosaic2x2, Raw16LayoutMosaics>();
constexpr ByTarget<Mosaic3x3> kRaw8Mosaics3x3 = {packed_3x3<PutY8>(), packed_3x3<PutBgr>(),
                                                 packed_3x3<PutBgra>(), packed_3x3<PutY8Rounded>()};

}  // namespace qvn
