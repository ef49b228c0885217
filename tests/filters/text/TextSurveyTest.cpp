#include "filters/text/TextSurvey.h"

#include <gtest/gtest.h>

#include "TextFixture.h"

namespace trovan::test {
namespace {

using filters::ByteOrderMark;
using filters::kWholeFile;
using filters::SurveyText;
using filters::TextSurvey;

class TextSurveyTest : public TextFixture {
 protected:
  TextSurvey Survey(const std::string& bytes, long long limit = kWholeFile) {
    return SurveyText(Open(bytes), limit, nullptr);
  }
};

TEST_F(TextSurveyTest, CountsLineEndsByKind) {
  const struct {
    std::string bytes;
    long long lineFeeds, pairs, loneReturns;
  } cases[] = {{"", 0, 0, 0},           {"a\nb\n", 2, 0, 0},   {"a\r\nb\r\n", 2, 2, 0},
               {"a\rb\r", 0, 0, 2},     {"\r\r\n\n", 2, 1, 1}, {"\n\r", 1, 0, 1},
               {"a\r\nb\nc\r", 2, 1, 1}};
  for (const auto& c : cases) {
    const TextSurvey survey = Survey(c.bytes);
    EXPECT_EQ(survey.lineFeeds, c.lineFeeds) << c.bytes;
    EXPECT_EQ(survey.pairs, c.pairs) << c.bytes;
    EXPECT_EQ(survey.loneReturns, c.loneReturns) << c.bytes;
    EXPECT_EQ(survey.bytes, static_cast<long long>(c.bytes.size()));
    EXPECT_TRUE(survey.wholeFile);
  }
}

TEST_F(TextSurveyTest, FindsNulBytesAndTheFirstOne) {
  EXPECT_EQ(Survey("abc").firstNul, TextSurvey::kNowhere);
  const TextSurvey survey = Survey(std::string("ab\0c\0", 5));
  EXPECT_EQ(survey.nulBytes, 2);
  EXPECT_EQ(survey.firstNul, 2);
  EXPECT_EQ(Survey(std::string(200'000, 'a') + '\0').firstNul, 200'000);
}

TEST_F(TextSurveyTest, CountsBytesBeyondAscii) {
  EXPECT_EQ(Survey("a\x7F").nonAscii, 0);
  EXPECT_EQ(Survey("\xC3\xA9 \x80").nonAscii, 3);
}

TEST_F(TextSurveyTest, KnowsByteOrderMarks) {
  const struct {
    std::string bytes;
    ByteOrderMark mark;
    long long size;
  } cases[] = {
      {"", ByteOrderMark::kNone, 0},
      {"\xEF\xBB", ByteOrderMark::kNone, 0},
      {"a\xEF\xBB\xBF", ByteOrderMark::kNone, 0},
      {"\xEF\xBB\xBF", ByteOrderMark::kUtf8, 3},
      {"\xFF\xFE"
       "a",
       ByteOrderMark::kUtf16Le, 2},
      {"\xFE\xFF", ByteOrderMark::kUtf16Be, 2},
      {std::string("\xFF\xFE\0\0", 4), ByteOrderMark::kUtf32Le, 4},
      {std::string("\0\0\xFE\xFF", 4), ByteOrderMark::kUtf32Be, 4},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Survey(c.bytes).mark, c.mark) << testing::PrintToString(c.bytes);
    EXPECT_EQ(SizeOf(c.mark), c.size);
  }
}

TEST_F(TextSurveyTest, TellsTheFirstByteThatIsNoUtf8) {
  EXPECT_TRUE(Survey("\xE2\x82\xAC").IsUtf8());
  EXPECT_EQ(Survey("a\xE9 b").firstBadUtf8, 1);
  EXPECT_EQ(Survey("a\xE2\x82").firstBadUtf8, 1);
}

TEST_F(TextSurveyTest, LooksNoFurtherThanItsLimit) {
  const TextSurvey survey = Survey("a\nb\n\xE2\x82\xAC", 3);
  EXPECT_EQ(survey.bytes, 3);
  EXPECT_EQ(survey.lineFeeds, 1);
  EXPECT_FALSE(survey.wholeFile);
  EXPECT_TRUE(Survey("a\nb", 3).wholeFile);
  EXPECT_FALSE(Survey("a", 0).wholeFile);
}

TEST_F(TextSurveyTest, TakesWhatItsLimitCutsForNoFault) {
  EXPECT_TRUE(Survey("\xE2\x82\xAC", 2).IsUtf8());
  EXPECT_FALSE(Survey("\xE2\x82", 2).IsUtf8());
  EXPECT_EQ(Survey("a\r\n", 2).loneReturns, 0);
  EXPECT_EQ(Survey("a\r", 2).loneReturns, 1);
}

// The ends of the blocks in which the file is read, 64 KiB long, change nothing.
TEST_F(TextSurveyTest, SeesAcrossBlocks) {
  for (std::size_t start = 65'530; start < 65'540; ++start) {
    const TextSurvey survey = Survey(std::string(start, 'a') + "\r\n\xF0\x9F\x98\x80\r\r\n");
    EXPECT_EQ(survey.pairs, 2) << start;
    EXPECT_EQ(survey.loneReturns, 1) << start;
    EXPECT_EQ(survey.nonAscii, 4) << start;
    EXPECT_TRUE(survey.IsUtf8()) << start;
  }
}

TEST_F(TextSurveyTest, LeavesTheFileAtItsStart) {
  Survey("abc");
  EXPECT_EQ(file_.GetPosition(), 0);
  file_.Seek(2, corvel::kFileBegin);
  EXPECT_EQ(SurveyText(file_, 2, nullptr).bytes, 2);
  EXPECT_EQ(file_.Getc(), 'a');
}

class StopAtOnce : public corvel::IProgress {
 public:
  bool Update(double fraction) override {
    fraction_ = fraction;
    return false;
  }
  double fraction_ = -1.0;
};

TEST_F(TextSurveyTest, StopsWhenAskedTo) {
  StopAtOnce progress;
  const TextSurvey survey = SurveyText(Open(std::string(1024 * 1024, 'a')), kWholeFile, &progress);
  EXPECT_TRUE(survey.stopped);
  EXPECT_FALSE(survey.wholeFile);
  EXPECT_EQ(survey.bytes, 64 * 1024);
  EXPECT_DOUBLE_EQ(progress.fraction_, 1.0 / 16);
}

}  // namespace
}  // namespace trovan::test
