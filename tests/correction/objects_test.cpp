/// QVN_CreateColorCorrectionMatrix_Int8, QVN_CreateColorCorrectionMatrix_Int16 and
/// QVN_DestroyColorCorrection: what an object holds, that its memory comes from the program's operator new
/// and goes back by operator delete, piece by piece, and what happens where there is none.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

#include "reference/correction.h"
#include "support/corrected_entries.h"
#include "support/corrections.h"
#include "support/guard.h"
#include "support/random.h"

namespace {

/// Whether the library's allocations are the program's; a DLL has an allocator of its own.
#ifdef _WIN32
constexpr bool kSharedAllocator = false;
#else
constexpr bool kSharedAllocator = true;
#endif
constexpr char kOwnAllocator[] = "the library does not call the program's operators";

/// What the operators below do for this thread, while it is recorded.
struct Recorder {
  static constexpr std::size_t kRoom = 64;

  bool active = false;
  bool fail = false;
  std::size_t allocations = 0;
  std::size_t last_size = 0;
  std::size_t releases = 0;
  void* released[kRoom] = {};
  /// The first bytes of what was released, as they were at that moment.
  std::array<unsigned char, 64> held[kRoom] = {};
  std::size_t held_bytes = 0;
};

thread_local Recorder recorder;

void* allocate(std::size_t size) {
  if (recorder.active) {
    ++recorder.allocations;
    recorder.last_size = size;
    if (recorder.fail) throw std::bad_alloc();
  }
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void release(void* memory) {
  if (memory == nullptr) return;
  if (recorder.active && recorder.releases < Recorder::kRoom) {
    recorder.released[recorder.releases] = memory;
    std::memcpy(recorder.held[recorder.releases].data(), memory, recorder.held_bytes);
    ++recorder.releases;
  }
  std::free(memory);
}

}  // namespace

// The library's calls come here too.
void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return std::malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { release(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { release(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { release(memory); }

namespace {

/// Records from its beginning to its end.
class Recording {
 public:
  explicit Recording(bool fail = false, std::size_t held_bytes = 0) {
    recorder = Recorder();
    recorder.fail = fail;
    recorder.held_bytes = held_bytes;
    recorder.active = true;
  }
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;
  ~Recording() { recorder.active = false; }

  void stop() { recorder.active = false; }
};

std::vector<void*> released() {
  return std::vector<void*>(recorder.released, recorder.released + recorder.releases);
}

using Creator = std::uint32_t (*)(const float*, ColorCorrection**);
using Words = std::array<std::uint32_t, 10>;

struct Named {
  Creator create;
  std::uint32_t kind;
};
const Named kCreators[] = {{[](const float* matrix, ColorCorrection** result) {
                              return QVN_CreateColorCorrectionMatrix_Int8(matrix, result);
                            },
                            2},
                           {[](const float* matrix, ColorCorrection** result) {
                              return QVN_CreateColorCorrectionMatrix_Int16(matrix, result);
                            },
                            3}};

Words words_of(const ColorCorrection* object) {
  Words words;
  std::memcpy(words.data(), object, sizeof words);
  return words;
}

Words created(const Named& creator, const support::Matrix& matrix) {
  ColorCorrection* object = nullptr;
  EXPECT_EQ(QVN_OK, creator.create(matrix.data(), &object));
  const Words words = words_of(object);
  EXPECT_EQ(QVN_OK, QVN_DestroyColorCorrection(object));
  return words;
}

/// Numbers as the ten words of an object.
Words words(std::uint32_t kind, const std::array<std::int32_t, 9>& coefficients) {
  Words all = {kind};
  for (std::size_t i = 0; i < 9; ++i) all[i + 1] = static_cast<std::uint32_t>(coefficients[i]);
  return all;
}

TEST(CreateColorCorrection, TheIdentity) {
  for (const Named& creator : kCreators) {
    EXPECT_EQ(words(creator.kind, {1024, 0, 0, 0, 1024, 0, 0, 0, 1024}),
              created(creator, support::kIdentity));
  }
}

TEST(CreateColorCorrection, TruncatesTowardsZero) {
  for (const Named& creator : kCreators) {
    EXPECT_EQ(words(creator.kind, {306, 1536, -307, 1023, 0, 0, -1023, 1, -1}),
              created(creator, {0.299F, 1.5F, -0.3F, 0.99999F, 0.00097F, -0.00097F, -0.99999F, 0.0009765625F,
                                -0.0019F}));
  }
}

TEST(CreateColorCorrection, WhatDoesNotFitBecomesTheSmallestNumber) {
  constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
  using Limits = std::numeric_limits<float>;
  for (const Named& creator : kCreators) {
    EXPECT_EQ(words(creator.kind, {kSmallest, kSmallest, kSmallest, kSmallest, kSmallest, kSmallest,
                                   kSmallest, kSmallest, kSmallest}),
              created(creator, {2097152.0F, -2097152.0F, -2097152.25F, 4194304.0F, Limits::infinity(),
                                -Limits::infinity(), Limits::quiet_NaN(), Limits::max(), -Limits::max()}));
    EXPECT_EQ(words(creator.kind, {2147483520, -2147483520, 0, 0, 0, 0, 1048576, -1048576, 0}),
              created(creator, {2097151.875F, -2097151.875F, 0.0F, -0.0F, Limits::denorm_min(),
                                -Limits::min(), 1024.0F, -1024.0F, 1e-30F}));
  }
}

TEST(CreateColorCorrection, EqualsReferenceForEveryFloat) {
  support::Random random(1);
  for (int round = 0; round < 20000; ++round) {
    support::Matrix matrix;
    for (float& value : matrix) {
      // Every other round: any float; in between: numbers whose products fit, or nearly.
      const auto bits = static_cast<std::uint32_t>(random.next());
      std::memcpy(&value, &bits, sizeof value);
      if (round % 2 != 0) continue;
      value = std::ldexp(static_cast<float>(static_cast<std::int32_t>(bits)),
                         -static_cast<int>(random.below(45)));
    }
    for (const Named& creator : kCreators) {
      ASSERT_EQ(reference::created_words(creator.kind, matrix.data()), created(creator, matrix));
    }
  }
}

TEST(CreateColorCorrection, TakesTenWordsFromOperatorNew) {
  if (!kSharedAllocator) GTEST_SKIP() << kOwnAllocator;
  for (const Named& creator : kCreators) {
    ColorCorrection* object = nullptr;
    Recording recording;
    const std::uint32_t status = creator.create(support::kIdentity.data(), &object);
    recording.stop();
    EXPECT_EQ(QVN_OK, status);
    EXPECT_EQ(1U, recorder.allocations);
    EXPECT_EQ(40U, recorder.last_size);
    EXPECT_EQ(0U, recorder.releases);
    QVN_DestroyColorCorrection(object);
  }
}

TEST(CreateColorCorrection, ExhaustionLeavesAsBadAlloc) {
  if (!kSharedAllocator) GTEST_SKIP() << kOwnAllocator;
  for (const Named& creator : kCreators) {
    ColorCorrection* object = nullptr;
    bool thrown = false;
    Recording recording(true);
    try {
      creator.create(support::kIdentity.data(), &object);
    } catch (const std::bad_alloc&) {
      thrown = true;
    }
    recording.stop();
    EXPECT_TRUE(thrown);
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(1U, recorder.allocations);
  }
}

TEST(CreateColorCorrection, ReadsNineFloatsAndWritesOnePointer) {
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    support::GuardedBuffer matrix(36, flush);
    std::memcpy(matrix.data(), support::kIdentity.data(), 36);
    const std::vector<std::uint8_t> before(matrix.data(), matrix.data() + 36);
    std::array<ColorCorrection*, 3> results = {};
    for (const Named& creator : kCreators) {
      EXPECT_EQ(QVN_OK,
                creator.create(static_cast<const float*>(static_cast<void*>(matrix.data())), &results[1]));
      EXPECT_EQ(nullptr, results[0]);
      EXPECT_EQ(nullptr, results[2]);
      EXPECT_EQ(before, std::vector<std::uint8_t>(matrix.data(), matrix.data() + 36));
      EXPECT_EQ(QVN_OK, QVN_DestroyColorCorrection(results[1]));
    }
  }
}

/// Objects as a caller makes them, by operator new and to the byte.
ColorCorrection* made(const support::Correction& like, std::size_t bytes) {
  void* object = ::operator new(bytes);
  std::memcpy(object, like.get(), bytes);
  return static_cast<ColorCorrection*>(object);
}

/// Four pointer-wide fields; three of them of a table, of a list, or of a record in a list.
struct Fields {
  void* reserved;
  void* first;
  void* last;
  void* end;
};
struct TableObject {
  std::uint32_t kind;
  std::uint32_t reserved;
  Fields fields;
};
static_assert(sizeof(void*) != 8 || sizeof(TableObject) == 40);

TableObject* made_table(std::uint32_t kind, void* first, void* last, void* end) {
  static int rubbish;
  auto* object = static_cast<TableObject*>(::operator new(sizeof(TableObject)));
  *object = {kind, 0xDEADBEEF, {&rubbish, first, last, end}};
  return object;
}

std::uint32_t destroy(void* object) {
  return QVN_DestroyColorCorrection(static_cast<ColorCorrection*>(object));
}

void* behind(void* first, std::size_t bytes) { return static_cast<char*>(first) + bytes; }

TEST(DestroyColorCorrection, RefusesNull) { EXPECT_EQ(QVN_E_PARAM1, QVN_DestroyColorCorrection(nullptr)); }

TEST(DestroyColorCorrection, KindsZeroToSixAreOneRelease) {
  if (!kSharedAllocator) GTEST_SKIP() << kOwnAllocator;
  constexpr std::size_t kBytes[] = {4, 44, 40, 40, 52, 52, 4};
  for (std::uint32_t kind = 0; kind <= 6; ++kind) {
    ColorCorrection* object = made(support::Correction::of_kind(kind), kBytes[kind]);
    Recording recording;
    const std::uint32_t status = QVN_DestroyColorCorrection(object);
    recording.stop();
    EXPECT_EQ(QVN_OK, status) << kind;
    EXPECT_EQ(std::vector<void*>{object}, released()) << kind;
  }
}

TEST(DestroyColorCorrection, CreatedObjects) {
  if (!kSharedAllocator) GTEST_SKIP() << kOwnAllocator;
  for (const Named& creator : kCreators) {
    ColorCorrection* object = nullptr;
    ASSERT_EQ(QVN_OK, creator.create(support::kIdentity.data(), &object));
    Recording recording;
    const std::uint32_t status = QVN_DestroyColorCorrection(object);
    recording.stop();
    EXPECT_EQ(QVN_OK, status);
    EXPECT_EQ(std::vector<void*>{object}, released());
  }
}

TEST(DestroyColorCorrection, TablesGoBeforeTheirObject) {
  if (!kSharedAllocator) GTEST_SKIP() << kOwnAllocator;
  for (std::uint32_t kind : {8U, 9U}) {
    void* storage = ::operator new(256);
    TableObject* object = made_table(kind, storage, behind(storage, 200), behind(storage, 256));
    Recording recording;
    std::uint32_t status = destroy(object);
    recording.stop();
    EXPECT_EQ(QVN_OK, status);
    EXPECT_EQ((std::vector<void*>{storage, object}), released());

    object = made_table(kind, nullptr, nullptr, nullptr);
    Recording without;
    status = destroy(object);
    without.stop();
    EXPECT_EQ(QVN_OK, status);
    EXPECT_EQ(std::vector<void*>{object}, released());
  }
}

TEST(DestroyColorCorrection, AListGoesRecordByRecord) {
  if (!kSharedAllocator) GTEST_SKIP() << kOwnAllocator;
  constexpr std::size_t kRecords = 5;
  void* tables[kRecords] = {::operator new(8), nullptr, ::operator new(300), nullptr, ::operator new(1)};
  // Room for one record more, which is not filled and not walked.
  auto* records = static_cast<Fields*>(::operator new((kRecords + 1) * sizeof(Fields)));
  int rubbish = 0;
  for (std::size_t i = 0; i < kRecords; ++i) {
    // The last two fields of a record do not matter.
    records[i] = {&rubbish, tables[i], i == 3 ? &rubbish : tables[i], &rubbish};
  }
  records[kRecords] = {&rubbish, &rubbish, &rubbish, &rubbish};
  TableObject* object = made_table(7, records, records + kRecords, records + kRecords + 1);
  Recording recording;
  const std::uint32_t status = destroy(object);
  recording.stop();
  EXPECT_EQ(QVN_OK, status);
  EXPECT_EQ((std::vector<void*>{tables[0], tables[2], tables[4], records, object}), released());
}

TEST(DestroyColorCorrection, EmptyLists) {
  if (!kSharedAllocator) GTEST_SKIP() << kOwnAllocator;
  TableObject* object = made_table(7, nullptr, nullptr, nullptr);
  Recording none;
  std::uint32_t status = destroy(object);
  none.stop();
  EXPECT_EQ(QVN_OK, status);
  EXPECT_EQ(std::vector<void*>{object}, released());

  // Without a first record the others are not looked for.
  int rubbish = 0;
  object = made_table(7, nullptr, &rubbish, &rubbish);
  Recording no_first;
  status = destroy(object);
  no_first.stop();
  EXPECT_EQ(QVN_OK, status);
  EXPECT_EQ(std::vector<void*>{object}, released());

  void* storage = ::operator new(64);
  object = made_table(7, storage, storage, behind(storage, 64));
  Recording empty;
  status = destroy(object);
  empty.stop();
  EXPECT_EQ(QVN_OK, status);
  EXPECT_EQ((std::vector<void*>{storage, object}), released());
}

/// An operator delete that looks at what it is given finds no dangling pointers in it.
TEST(DestroyColorCorrection, FieldsAreClearedBeforeTheirMemoryGoes) {
  if (!kSharedAllocator) GTEST_SKIP() << kOwnAllocator;
  // Everything is as large as an object, so that as much of it can be recorded.
  constexpr std::size_t kBytes = sizeof(TableObject);
  for (std::uint32_t kind : {7U, 8U, 9U}) {
    auto* storage = static_cast<Fields*>(::operator new(kBytes));
    std::memset(storage, 1, kBytes);
    int rubbish = 0;
    if (kind == 7) {
      void* table = ::operator new(kBytes);
      std::memset(table, 1, kBytes);
      *storage = {&rubbish, table, &rubbish, &rubbish};
    }
    TableObject* object = made_table(kind, storage, storage + 1, storage + 1);
    Recording recording(false, kBytes);
    const std::uint32_t status = destroy(object);
    recording.stop();
    EXPECT_EQ(QVN_OK, status);
    const std::size_t last = kind == 7 ? 2 : 1;
    ASSERT_EQ(last + 1, recorder.releases);
    std::vector<Fields> cleared(1);
    std::memcpy(cleared.data(), recorder.held[last].data() + offsetof(TableObject, fields), sizeof(Fields));
    if (kind == 7) {
      cleared.resize(2);
      std::memcpy(&cleared[1], recorder.held[1].data(), sizeof(Fields));
    }
    for (const Fields& fields : cleared) {
      EXPECT_EQ(nullptr, fields.first);
      EXPECT_EQ(nullptr, fields.last);
      EXPECT_EQ(nullptr, fields.end);
    }
  }
}

TEST(DestroyColorCorrection, UnknownKindsAreAbortedAndKept) {
  for (std::uint32_t kind :
       {10U, 11U, 255U, 256U, 0x10002U, 0x7FFFFFFFU, 0x80000000U, 0x80000002U, 0xFFFFFFFFU}) {
    support::Correction object = support::Correction::of_kind(kind);
    unsigned char before[52];
    std::memcpy(before, object.get(), sizeof before);
    Recording recording;
    const std::uint32_t status = destroy(const_cast<void*>(object.get()));
    recording.stop();
    EXPECT_EQ(QVN_E_ABORTED, status) << kind;
    for (void* pointer : released()) EXPECT_NE(object.get(), pointer);
    EXPECT_EQ(0, std::memcmp(before, object.get(), sizeof before));
  }
}

/// Conversions take no memory: where there is none, they work all the same.
TEST(CorrectedConversions, AllocateNothing) {
  if (!kSharedAllocator) GTEST_SKIP() << kOwnAllocator;
  support::Random random(2);
  for (const support::CorrectedEntry& entry : support::kCorrectedEntries) {
    for (std::uint32_t kind = 0; kind < 10; ++kind) {
      const bool plain = kind == 0;
      if (!plain && !entry.serves(kind)) continue;
      const support::Correction correction =
          plain ? support::Correction()
                : support::random_correction(kind, support::Temper::kGentle, entry.corrected_bits,
                                             entry.word_tables(), random);
      const support::Frame frame = {300, 30, 2, 1};
      const std::vector<std::uint8_t> src(entry.src_bytes(frame), 77);
      std::vector<std::uint8_t> dst(entry.dst_bytes(frame));
      Recording recording(true);
      const std::uint32_t status = entry.library(dst.data(), src.data(), frame, correction.get());
      recording.stop();
      EXPECT_EQ(QVN_OK, status) << entry.name << " kind " << kind;
      EXPECT_EQ(0U, recorder.allocations) << entry.name << " kind " << kind;
    }
  }
}

}  // namespace
