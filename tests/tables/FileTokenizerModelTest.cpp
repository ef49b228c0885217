// Random texts and sets, aimed at the places where answers change, under the tokenizer and its
// model; and texts that lie across the edges of the file's buffer.
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>
#include <trovan/FileTokenizer.h>

#include "support/Random.h"
#include "support/TempFolder.h"
#include "tables/FileTokenizerModel.h"

namespace trovan::test {
namespace {

using corvel::CBufferedFile;
using Sets = FileTokenizerModel::Sets;
using std::string_view_literals::operator""sv;

constexpr std::string_view kAlphabets[] = {
    "ab ,\n"sv,
    "ab1 \t,;\"'\r\n\f\0\x80\xFF"sv,
    "aa \"\"\",\n"sv,
    "a \"'\"'\r\n"sv,
    "0123456789+-.eE ,\n"sv,
    "019.-+xXpPinfatyN() ,\n\v"sv,
    "\r\n\f ,a"sv,
    "a  \t\t,\n"sv,
};
constexpr std::string_view kSetMembers = "ab1 \t,;\"'\r\n\f\v\x01\x80\xFF"sv;

std::string RandomText(std::mt19937& random, std::size_t length) {
  std::string text(length, '\0');
  if (OneIn(random, 10)) {
    for (char& c : text) c = static_cast<char>(Below(random, 256));
    return text;
  }
  const std::string_view alphabet = kAlphabets[Below(random, std::size(kAlphabets))];
  for (char& c : text) c = alphabet[Below(random, static_cast<unsigned>(alphabet.size()))];
  return text;
}

std::string RandomSet(std::mt19937& random, const std::string& usual) {
  if (OneIn(random, 2)) return usual;
  std::string set(Below(random, 5), '\0');
  for (char& c : set) c = kSetMembers[Below(random, static_cast<unsigned>(kSetMembers.size()))];
  return set;
}

Sets RandomSets(std::mt19937& random) {
  const Sets usual;
  return {RandomSet(random, usual.whitespace), RandomSet(random, usual.delimiters),
          RandomSet(random, usual.quotes)};
}

// A tokenizer on an open file, and the model on the same bytes.
class Pair {
 public:
  Pair(CBufferedFile& file, std::string_view bytes, std::size_t start, const Sets& sets)
      : file_(file), source_(bytes, start), model_(source_, sets), tokens_(&file) {
    GiveSets(tokens_, sets);
  }

  void SetSets(const Sets& sets) {
    model_.TheSets() = sets;
    GiveSets(tokens_, sets);
  }

  CFileTokenizer::Status Parse(TokenCall call) {
    auto status = CFileTokenizer::TOKEN_OK;
    Expect(DisagreementAfter(call, tokens_, model_, status));
    return status;
  }
  CFileTokenizer::Status ParseAny(std::mt19937& random) {
    constexpr TokenCall kCalls[] = {
        TokenCall::kText,       TokenCall::kText, TokenCall::kQuotedText, TokenCall::kQuotedText,
        TokenCall::kQuotedText, TokenCall::kInt,  TokenCall::kDouble,     TokenCall::kBool};
    return Parse(kCalls[Below(random, std::size(kCalls))]);
  }

  // What a caller does to the file between two calls, near the position.
  void DisturbFile(std::mt19937& random, std::size_t end) {
    switch (Below(random, 4)) {
      case 0: {
        const std::size_t near = source_.Position() + 8 - Below(random, 16);
        const std::size_t target = near > end + 8 ? 0 : std::min(near, end);
        file_.Seek(static_cast<long long>(target), corvel::kFileBegin);
        source_.Seek(target);
        break;
      }
      case 1:
        lastRead_ = source_.Getc();
        if (file_.Getc() != lastRead_) Expect("another byte");
        break;
      case 2:
        UnGetc(lastRead_);
        break;
      default:
        UnGetc(static_cast<int>(Below(random, 256)));
        break;
    }
    Expect(DisagreementOfSources(file_, source_));
  }

  bool Agree() const { return disagreement_.empty(); }
  const std::string& Disagreement() const { return disagreement_; }

 private:
  void UnGetc(int byte) {
    const int expected = source_.UnGetc(byte);
    if (file_.UnGetc(byte) != expected) Expect("another answer of UnGetc");
  }
  // The first disagreement counts.
  void Expect(const std::string& disagreement) {
    if (disagreement_.empty()) disagreement_ = disagreement;
  }

  CBufferedFile& file_;
  TextSource source_;
  FileTokenizerModel model_;
  CFileTokenizer tokens_;
  int lastRead_ = -1;
  std::string disagreement_;
};

class FileTokenizerModelTest : public testing::Test {
 protected:
  void Open(std::string_view bytes) {
    file_.Close();
    WriteBytes(folder_.Path() / "text", bytes);
    file_.Open(folder_.File(L"text"), "rb", corvel::kFileShareRead, false);
  }

  static std::string Describe(std::string_view text, const Sets& sets) {
    return "in " + ShownText(text) + " with " + ShownText(sets.whitespace) + " " +
           ShownText(sets.delimiters) + " " + ShownText(sets.quotes);
  }

  TempFolder folder_;
  CBufferedFile file_;
};

// Many short texts lie in one file, each with an end of its own: a file for each would take
// minutes.
class FileTokenizerShortTextTest : public FileTokenizerModelTest,
                                   public testing::WithParamInterface<unsigned> {
 protected:
  static constexpr int kTexts = 250'000;
  static constexpr int kTextsInAFile = 10'000;

  // Calls `run` with a pair on each text; counts what the tokenizer answers.
  template <class Run>
  void ForEachText(Run run) {
    for (int done = 0; done < kTexts; done += kTextsInAFile) {
      std::string bytes;
      std::vector<std::size_t> starts;
      for (int i = 0; i < kTextsInAFile; ++i) {
        starts.push_back(bytes.size());
        bytes += RandomText(random_, Below(random_, 25));
      }
      starts.push_back(bytes.size());
      Open(bytes);
      for (std::size_t i = 0; i < kTextsInAFile; ++i) {
        const std::string_view upToEnd = std::string_view(bytes).substr(0, starts[i + 1]);
        file_.SetReadEnd(static_cast<long long>(starts[i + 1]));
        file_.Seek(static_cast<long long>(starts[i]), corvel::kFileBegin);
        const Sets sets = RandomSets(random_);
        Pair pair(file_, upToEnd, starts[i], sets);
        run(pair, upToEnd.size());
        ASSERT_TRUE(pair.Agree()) << pair.Disagreement() << " "
                                  << Describe(upToEnd.substr(starts[i]), sets) << " at "
                                  << starts[i];
      }
    }
  }

  void ExpectEachStatusOften() const {
    for (const long count : statuses_) EXPECT_GT(count, kTexts / 10) << "too tame to show much";
  }

  std::mt19937 random_{GetParam()};
  long statuses_[4] = {};
};

TEST_P(FileTokenizerShortTextTest, AgreesWithTheModel) {
  ForEachText([this](Pair& pair, std::size_t) {
    for (int ends = 0; ends < 2 && pair.Agree();) {
      const auto status = pair.ParseAny(random_);
      ++statuses_[status];
      if (status == CFileTokenizer::TOKEN_EOF) ++ends;
    }
  });
  ExpectEachStatusOften();
}

INSTANTIATE_TEST_SUITE_P(Seeds, FileTokenizerShortTextTest, testing::Values(1U, 2U, 3U));

class FileTokenizerDisturbedTest : public FileTokenizerShortTextTest {};

TEST_P(FileTokenizerDisturbedTest, AgreesWithTheModelWhateverTheCallerDoesBetweenTheCalls) {
  ForEachText([this](Pair& pair, std::size_t end) {
    for (int call = 0; call < 8 && pair.Agree(); ++call) {
      ++statuses_[pair.ParseAny(random_)];
      if (OneIn(random_, 2)) pair.DisturbFile(random_, end);
      if (OneIn(random_, 8)) pair.SetSets(RandomSets(random_));
    }
  });
  ExpectEachStatusOften();
}

INSTANTIATE_TEST_SUITE_P(Seeds, FileTokenizerDisturbedTest, testing::Values(4U));

TEST_F(FileTokenizerModelTest, AgreesWithTheModelToTheEndOfWholeFiles) {
  std::mt19937 random(5);
  for (int i = 0; i < 500; ++i) {
    const std::string text = RandomText(random, Below(random, 40));
    const Sets sets = RandomSets(random);
    Open(text);
    Pair pair(file_, text, 0, sets);
    for (int ends = 0; ends < 2 && pair.Agree();) {
      if (pair.ParseAny(random) == CFileTokenizer::TOKEN_EOF) ++ends;
      if (OneIn(random, 8)) pair.DisturbFile(random, text.size());
    }
    ASSERT_TRUE(pair.Agree()) << pair.Disagreement() << " " << Describe(text, sets);
  }
}

TEST_F(FileTokenizerModelTest, AgreesWithTheModelInLongTexts) {
  std::mt19937 random(6);
  std::string text;
  while (text.size() < 1'000'000) text += RandomText(random, Below(random, 2'000));
  Open(text);
  for (int i = 0; i < 4; ++i) {
    file_.Seek(0, corvel::kFileBegin);
    Pair pair(file_, text, 0, Sets());
    auto status = CFileTokenizer::TOKEN_OK;
    while (status != CFileTokenizer::TOKEN_EOF && pair.Agree()) {
      status = pair.ParseAny(random);
      if (OneIn(random, 50)) pair.DisturbFile(random, text.size());
      if (OneIn(random, 50)) pair.SetSets(RandomSets(random));
    }
    ASSERT_TRUE(pair.Agree()) << pair.Disagreement();
  }
}

// The first windows of the buffer end at 512 and 65024 bytes of a file that is read forward; from
// then on each has 65536 bytes. A seek begins a window where it goes.
TEST_F(FileTokenizerModelTest, AgreesWithTheModelAcrossEveryEdgeOfTheBuffer) {
  constexpr std::string_view kTexts[] = {
      "one,two,\n"sv,        "one   ,two"sv,       "one two\nthree"sv, "one\r\n\r\ntwo\r\n"sv,
      "\"a \"\"b\"\"\",c"sv, "\"a\r\nb\"  \t,c"sv, "\"a\"b,c"sv,       "\"a\" 'b' c"sv,
      "12.5e3 -7,0x1p3"sv,   "a\0b\0\0c,"sv,       "a\f\fb,"sv,        "a\r\r\r b\r,"sv,
  };
  constexpr std::size_t kEdges[] = {512, 65024, 65536, 130560, 131072};
  std::mt19937 random(7);
  for (const std::string_view text : kTexts) {
    for (const std::size_t edge : kEdges) {
      for (std::size_t before = 0; before <= text.size() + 1; ++before) {
        const std::string bytes = std::string(edge - before - 1, 'x') + "," + std::string(text);
        Open(bytes);
        Pair pair(file_, bytes, 0, Sets());
        const auto quoted = before % 2 == 0 ? TokenCall::kQuotedText : TokenCall::kText;
        pair.Parse(quoted);
        while (pair.Agree() && pair.Parse(TokenCall::kQuotedText) != CFileTokenizer::TOKEN_EOF) {
          if (OneIn(random, 4)) pair.DisturbFile(random, bytes.size());
        }
        ASSERT_TRUE(pair.Agree()) << pair.Disagreement() << " in " << ShownText(text) << ", "
                                  << before << " before the edge at " << edge;
      }
    }
  }
}

}  // namespace
}  // namespace trovan::test
