// Random tables, aimed at the places where answers change, under the reader and its model.
#include <cstdint>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <trovan/DBFReader.h>

#include "support/Random.h"
#include "tables/DBFReaderFixture.h"
#include "tables/DBFReaderModel.h"

namespace trovan::test {
namespace {

std::string RandomBytes(std::mt19937& random, std::size_t count) {
  std::string bytes(count, '\0');
  for (char& byte : bytes) byte = static_cast<char>(OneIn(random, 5) ? 0 : Below(random, 256));
  return bytes;
}

// The least count from which `count` records of `length` bytes end again where `records` records
// do, or 2^31 bytes away: the sums that wrap.
std::uint32_t WrappedCount(std::mt19937& random, std::uint32_t records, std::uint32_t length) {
  if (length == 0 || OneIn(random, 2)) return records;
  std::uint32_t trailing = 1;  // the power of two in the length: only those counts come out even
  while (length % (trailing * 2) == 0) trailing *= 2;
  const std::uint64_t period = (std::uint64_t{1} << 32) / trailing;
  const std::uint64_t added = OneIn(random, 2) ? period / 2 : period * (Below(random, trailing));
  return static_cast<std::uint32_t>(records + added);
}

// A table whose header is nearly true: sizes at, one before and one behind each limit.
std::string RandomTable(std::mt19937& random) {
  const unsigned headerLength =
      OneOf(random, {64, 65, 66, 95, 96, 97, 98, 128, 129, 63, 32, 33, 0, 160, 65 + 263});
  const unsigned recordLength =
      OneOf(random, {2, 3, 4, 8, 16, 2, 4, 31, 64, 1, 0, 512, 513, 100, 1024});
  const unsigned records = Below(random, 5);
  const unsigned extent = headerLength + records * recordLength;
  const unsigned tail = OneOf(random, {0, 1, 1, 2, 3, 511, 512, 513, 100});
  const unsigned missing = OneIn(random, 4) ? Below(random, 4) : 0;
  std::string bytes = RandomBytes(random, std::max(32U, extent + tail) - missing);
  bytes.resize(std::max<std::size_t>(bytes.size(), 32), 'x');
  DbfImage::Store(bytes, 4, 4, WrappedCount(random, records, recordLength));
  DbfImage::Store(bytes, 8, 2, headerLength);
  DbfImage::Store(bytes, 10, 2, recordLength);
  return bytes;
}

class DBFReaderModelTest : public DBFReaderTest {
 protected:
  std::mt19937 random_{20240611};  // fixed, so that a failure repeats
};

TEST_F(DBFReaderModelTest, TableInMemoryAgreesWithItsModel) {
  int opened = 0;
  for (int round = 0; round < 30'000; ++round) {
    const std::string table = RandomTable(random_);
    const auto model = DBFReaderModel::Memory(table);
    ASSERT_EQ(OpenMemory(table), model.OpenStatus()) << "round " << round;
    ASSERT_EQ(CDBFReader::IsDBFData(table.data(), static_cast<unsigned>(table.size())),
              model.IsOpen());
    ASSERT_EQ(Disagreement(reader_, model, random_), "") << "round " << round;
    opened += model.IsOpen() ? 1 : 0;
  }
  EXPECT_GT(opened, 5'000) << "the random tables are too wrong to show much";
}

TEST_F(DBFReaderModelTest, TableInAFileWithMemosAgreesWithItsModel) {
  for (int round = 0; round < 2'000; ++round) {
    std::string table = RandomTable(random_);
    if (OneIn(random_, 16)) table.resize(Below(random_, 64));
    std::optional<DBFReaderModel::Memo> memo;
    std::filesystem::remove(folder_.Path() / "table.fpt");
    std::filesystem::remove(folder_.Path() / "table.dbt");
    if (!OneIn(random_, 8)) {
      const bool isFpt = OneIn(random_, 2);
      memo = {RandomBytes(random_, Below(random_, 2500)), isFpt ? 64 : 512};
      WriteBytes(folder_.Path() / (isFpt ? "table.fpt" : "table.dbt"), memo->bytes);
    }
    const auto model = DBFReaderModel::File(table, memo);
    ASSERT_EQ(OpenFile(table), model.OpenStatus()) << "round " << round;
    ASSERT_EQ(CDBFReader::CheckDBFFile(folder_.File(L"table.dbf")), ModelCheck(table));
    ASSERT_EQ(Disagreement(reader_, model, random_), "") << "round " << round;
  }
}

// Plausibility alone, with numbers that no table on this machine has.
TEST_F(DBFReaderModelTest, PlausibilityAgreesWithItsModelForAnySize) {
  int plausible = 0;
  for (int round = 0; round < 200'000; ++round) {
    const unsigned headerLength = OneOf(random_, {0, 63, 64, 65, 97, 4000, 32767, 32768, 65535});
    const unsigned recordLength = OneOf(random_, {0, 1, 2, 3, 4, 100, 16383, 16384, 16385, 65535});
    const auto count =
        static_cast<std::uint32_t>(OneIn(random_, 3) ? Below(random_, 5) : AnyUnsigned(random_));
    const unsigned near = count * recordLength + headerLength;
    const unsigned size = near + OneOf(random_, {0, 1, 511, 512, 513, 0xFFFFFFFFU, 0x80000000U});
    std::string header(32, '\0');
    DbfImage::Store(header, 4, 4, count);
    DbfImage::Store(header, 8, 2, headerLength);
    DbfImage::Store(header, 10, 2, recordLength);
    const bool expected = ModelIsPlausible(header, size, false);
    ASSERT_EQ(CDBFReader::IsDBFData(header.data(), size), expected)
        << count << " records of " << recordLength << " behind " << headerLength << " in " << size;
    plausible += expected ? 1 : 0;
  }
  EXPECT_GT(plausible, 10'000) << "the random headers are too wrong to show much";
}

}  // namespace
}  // namespace trovan::test
