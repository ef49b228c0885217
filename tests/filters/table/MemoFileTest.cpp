#include "filters/table/MemoFile.h"

#include <cstdint>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <string>

#include "MemoImage.h"
#include "TableFixture.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

using std::string_literals::operator""s;
using testing::HasSubstr;

class MemoFileTest : public TableFixture {
 protected:
  MemoFileTest() { Save(DbfImage().Field("M", 'M', 10).Record("         1")); }

  // Opens the memo file that lies beside the table. `version` is the table's.
  void Open(std::uint8_t version = 0x03) {
    EXPECT_EQ(reader_.OpenFromFile(Path()), CDBFReader::DBF_OK);
    TableLayout layout = ReadTableLayout(Path());
    layout.version = version;
    memo_ = MemoFile::Open(Path(), layout, reader_);
  }

  std::string Text(std::uint64_t block) {
    std::string text = "old";
    memo_->ReadWhole(block, memo_->Find(block), text);
    return text;
  }

  // The same, read in pieces of `size` bytes.
  std::string InPieces(std::uint64_t block, std::size_t size) {
    const MemoExtent memo = memo_->Find(block);
    std::string text;
    std::string piece(size, '\0');
    while (const std::size_t got = memo_->Read(memo, text.size(), piece.data(), piece.size())) {
      text.append(piece, 0, got);
    }
    return text;
  }

  std::string Refusal(std::uint64_t block) {
    try {
      memo_->Find(block);
    } catch (const FilterError& error) {
      return error.what();
    }
    return {};
  }

  // Bytes that tell their own place and hold no NUL.
  static std::string Pattern(std::size_t length) {
    std::string text(length, '\0');
    for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<char>(1 + i * 7 % 251);
    return text;
  }

  CDBFReader reader_;
  std::unique_ptr<MemoFile> memo_;
};

TEST_F(MemoFileTest, IsNothingWithoutAFile) {
  Open();
  EXPECT_EQ(memo_, nullptr);
}

TEST_F(MemoFileTest, ReadsFoxProMemosInBlocksOfAnySize) {
  for (const std::uint16_t size :
       std::initializer_list<std::uint16_t>{1, 3, 33, 64, 128, 500, 512, 1024, 16'384, 65'535}) {
    SCOPED_TRACE(size);
    FptImage fpt(size);
    const auto first = fpt.Add("first");
    const auto second = fpt.Add(Pattern(1000));
    const auto third = fpt.Add("third");
    Save("t.fpt", fpt.Bytes());
    Open();
    ASSERT_NE(memo_, nullptr);
    EXPECT_EQ(memo_->Kind(), MemoKind::kFoxPro);
    EXPECT_EQ(memo_->BlockSize(), size);
    EXPECT_EQ(Text(first), "first");
    EXPECT_EQ(Text(second), Pattern(1000));
    EXPECT_EQ(Text(third), "third");
    EXPECT_EQ(InPieces(second, 7), Pattern(1000));
  }
}

TEST_F(MemoFileTest, RefusesBlocksOfNoBytes) {
  Save("t.fpt", std::string(512, '\0'));
  EXPECT_THROW(Open(), FilterError);
}

TEST_F(MemoFileTest, RefusesAFoxProFileWithoutHeader) {
  Save("t.fpt", "1234567");
  EXPECT_THROW(Open(), FilterError);
}

// Around these lengths the reader's own bounds change.
TEST_F(MemoFileTest, DeliversEveryLengthWhole) {
  for (const std::size_t length :
       {0U, 1U, 254U, 255U, 256U, 511U, 65'279U, 65'280U, 65'281U, 65'533U, 65'534U, 65'535U,
        65'536U, 262'144U, 262'145U, 300'000U}) {
    SCOPED_TRACE(length);
    FptImage fpt(64);
    fpt.Add("before");
    const auto block = fpt.Add(Pattern(length));
    fpt.Add("behind");
    Save("t.fpt", fpt.Bytes());
    Open();
    EXPECT_EQ(memo_->Find(block).length, length);
    EXPECT_EQ(Text(block), Pattern(length));
    EXPECT_EQ(InPieces(block, 65'536), Pattern(length));
    memo_.reset();

    Dbt4Image dbt(512);
    dbt.Add("before");
    const auto dbtBlock = dbt.Add(Pattern(length));
    dbt.Add("behind");
    std::filesystem::remove(folder_.Path() / "t.fpt");
    Save("t.dbt", dbt.Bytes());
    Open();
    EXPECT_EQ(Text(dbtBlock), Pattern(length));
    std::filesystem::remove(folder_.Path() / "t.dbt");
  }
}

TEST_F(MemoFileTest, KeepsNulBytes) {
  const std::string memo = "\0one\0two\0"s;
  FptImage fpt(64);
  const auto block = fpt.Add(memo);
  Save("t.fpt", fpt.Bytes());
  Open();
  EXPECT_EQ(Text(block), memo);
}

TEST_F(MemoFileTest, TellsPicturesFromTexts) {
  FptImage fpt(64);
  const auto picture = fpt.Add("GIF", 0);
  const auto text = fpt.Add("text", 1);
  const auto object = fpt.Add("object", 2);
  Save("t.fpt", fpt.Bytes());
  Open();
  EXPECT_FALSE(memo_->Find(picture).isText);
  EXPECT_TRUE(memo_->Find(text).isText);
  EXPECT_FALSE(memo_->Find(object).isText);
}

TEST_F(MemoFileTest, GivesWhatIsThereOfAMemoThatIsCutOff) {
  FptImage fpt(64);
  const auto block = fpt.AddStating(0xFFFF'FFFFU, "rest");
  Save("t.fpt", fpt.Bytes());
  Open();
  const MemoExtent memo = memo_->Find(block);
  EXPECT_EQ(memo.length, 4U);
  EXPECT_EQ(memo.promised, 0xFFFF'FFFFU);
  EXPECT_EQ(Text(block), "rest");
}

TEST_F(MemoFileTest, RefusesBlocksBeyondTheEnd) {
  FptImage fpt(64);
  const auto block = fpt.Add("memo");
  Save("t.fpt", fpt.Bytes());
  Open();
  EXPECT_EQ(Refusal(block), "");
  EXPECT_THAT(Refusal(block + 1), HasSubstr("beyond the end"));
  EXPECT_THAT(Refusal(0xFFFF'FFFFU), HasSubstr("beyond the end"));
  EXPECT_THAT(Refusal(UINT64_MAX), HasSubstr("beyond the end"));
  // 2^58 blocks of 64 bytes are 2^64 bytes: the offset must not wrap.
  EXPECT_THAT(Refusal((std::uint64_t{1} << 58) + block), HasSubstr("beyond the end"));
}

// Real tables point there from fields that hold nothing.
TEST_F(MemoFileTest, TakesTheEmptyRestOfTheHeaderForEmptyMemos) {
  Save("t.fpt", FptImage(64).Bytes());
  Open();
  EXPECT_EQ(Text(1), "");
  EXPECT_EQ(Text(7), "");
}

TEST_F(MemoFileTest, RefusesABlockHeaderThatIsCutOff) {
  FptImage fpt(64);
  const auto block = fpt.Add("");
  for (std::size_t cut = 1; cut < 8; ++cut) {
    Save("t.fpt", fpt.Bytes().substr(0, fpt.Bytes().size() - cut));
    Open();
    EXPECT_THAT(Refusal(block), HasSubstr("inside the block header")) << cut;
  }
}

TEST_F(MemoFileTest, ReadsDBase4MemosInBlocksOfItsSize) {
  for (const std::uint16_t size : std::initializer_list<std::uint16_t>{512, 1024, 2560, 32'256}) {
    SCOPED_TRACE(size);
    Dbt4Image dbt(size);
    const auto first = dbt.Add("first");
    const auto second = dbt.Add(Pattern(3000));
    Save("t.dbt", dbt.Bytes());
    Open(0x8B);
    EXPECT_EQ(memo_->Kind(), MemoKind::kDBase4);
    EXPECT_EQ(memo_->BlockSize(), size);
    EXPECT_EQ(Text(first), "first");
    EXPECT_EQ(Text(second), Pattern(3000));
  }
}

TEST_F(MemoFileTest, TakesADBase4LengthBelowItsHeaderForEmpty) {
  for (const std::uint32_t stated : {0U, 1U, 7U, 8U}) {
    Dbt4Image dbt(512);
    const auto block = dbt.AddStating(stated, "rest");
    Save("t.dbt", dbt.Bytes());
    Open(0x8B);
    EXPECT_EQ(Text(block), "") << stated;
  }
}

TEST_F(MemoFileTest, SaysWhereNoDBase4MemoBegins) {
  Dbt4Image dbt(512);
  dbt.Add("first");
  std::string bytes = dbt.Bytes();
  bytes[512] = '\x07';  // as in the list of free blocks
  Save("t.dbt", bytes);
  Open(0x8B);
  EXPECT_THAT(Refusal(1), HasSubstr("no memo begins at byte 512"));
}

class DBase3MemoTest : public MemoFileTest {
 protected:
  // A file with these bytes behind its header.
  void OpenWith(const std::string& bytes) {
    Save("t.dbt", std::string(512, '\0') + bytes);
    Open(0x83);
    ASSERT_EQ(memo_->Kind(), MemoKind::kDBase3);
    ASSERT_EQ(memo_->BlockSize(), 512U);
  }
};

TEST_F(DBase3MemoTest, EndsTextsAtTwoEndMarks) {
  OpenWith("one\x1A\x1Arest");
  EXPECT_EQ(Text(1), "one");
  EXPECT_EQ(InPieces(1, 2), "one");
}

TEST_F(DBase3MemoTest, KeepsASingleEndMarkInsideAText) {
  OpenWith("one\x1Atwo\x1A\x1A");
  EXPECT_EQ(Text(1), "one\x1Atwo");
}

TEST_F(DBase3MemoTest, EndsTheLastTextAtASingleEndMark) {
  OpenWith("one\x1A");
  EXPECT_EQ(Text(1), "one");
}

TEST_F(DBase3MemoTest, EndsTheLastTextAtTheEndOfTheFile) {
  OpenWith("one");
  EXPECT_EQ(Text(1), "one");
}

TEST_F(DBase3MemoTest, ReadsEmptyTextsAndThoseWithNulBytes) {
  OpenWith("\x1A\x1A");
  EXPECT_EQ(Text(1), "");
  OpenWith("a\0b\x1A\x1A"s);
  EXPECT_EQ(Text(1), "a\0b"s);
}

// The file is searched in pieces of 64 KiB.
TEST_F(DBase3MemoTest, FindsEndMarksOnBothSidesOfAPieceBorder) {
  for (const std::size_t length : {65'534U, 65'535U, 65'536U, 65'537U, 131'071U, 300'000U}) {
    OpenWith(Pattern(length).replace(100, 1, "x") + "\x1A\x1A and more");
    EXPECT_EQ(memo_->Find(1).length, Text(1).size());
    std::string expected = Pattern(length).replace(100, 1, "x");
    const std::size_t twoMarks = expected.find("\x1A\x1A");
    ASSERT_EQ(twoMarks, std::string::npos);
    EXPECT_EQ(Text(1), expected) << length;
  }
}

TEST_F(DBase3MemoTest, IsKnownByTheTablesVersionOrByTheMissingBlockSize) {
  std::string bytes = std::string(512, '\0') + "text\x1A\x1A";
  Save("t.dbt", bytes);
  Open(0x03);
  EXPECT_EQ(memo_->Kind(), MemoKind::kDBase3);
  bytes[20] = '\x13';  // old bytes
  Save("t.dbt", bytes);
  Open(0x83);
  EXPECT_EQ(memo_->Kind(), MemoKind::kDBase3);
  EXPECT_EQ(Text(1), "text");
}

TEST_F(DBase3MemoTest, ReadsBlocksThatBringTheirLengthAllTheSame) {
  OpenWith("\xFF\xFF\x08\0\x0D\0\0\0hello\x1A\x1A"s);
  EXPECT_EQ(Text(1), "hello");
}

TEST_F(DBase3MemoTest, RefusesBlocksOfAnEmptyFile) {
  Save("t.dbt", "");
  Open(0x83);
  EXPECT_THAT(Refusal(1), HasSubstr("beyond the end"));
}

TEST_F(MemoFileTest, IsFoundWithCapitalExtension) {
  FptImage fpt(64);
  const auto block = fpt.Add("capital");
  Save("t.FPT", fpt.Bytes());
  Open();
  ASSERT_NE(memo_, nullptr);
  EXPECT_FALSE(memo_->File().foundInSmallLetters);
  EXPECT_EQ(Text(block), "capital");
}

TEST_F(MemoFileTest, PrefersFptToDbtAsTheReaderDoes) {
  FptImage fpt(512);
  fpt.Add("from the fpt");
  Dbt4Image dbt(512);
  dbt.Add("from the dbt");
  Save("t.fpt", fpt.Bytes());
  Save("t.dbt", dbt.Bytes());
  Open(0x8B);
  EXPECT_EQ(Text(1), "from the fpt");
}

TEST_F(MemoFileTest, PrefersTheDbtThatTheReaderFindsToAnFptThatItDoesNot) {
  FptImage fpt(512);
  fpt.Add("from the fpt");
  Dbt4Image dbt(512);
  dbt.Add("from the dbt");
  Save("t.FPT", fpt.Bytes());
  Save("t.dbt", dbt.Bytes());
  Open(0x8B);
  EXPECT_EQ(Text(1), "from the dbt");
}

TEST_F(MemoFileTest, ReadsMemosBeyondFourGigabytes) {
  FptImage fpt(16'384);
  fpt.Add("near");
  Save("t.fpt", fpt.Bytes());
  constexpr std::uint64_t kFar = 300'000;  // 4.9 GB
  {
    std::fstream file(folder_.Path() / "t.fpt", std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(kFar * 16'384));
    file << HighFirst(1, 4) + HighFirst(3, 4) + "far";
  }
  Open();
  EXPECT_EQ(Text(kFar), "far");
  EXPECT_EQ(Text(1), "near");
}

}  // namespace
}  // namespace trovan::filters
