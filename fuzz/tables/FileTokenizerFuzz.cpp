// Any text with any sets. The tokenizer must answer every call as its literal model does, whatever
// the caller does to the file in between.
//
// An input: three sets, each a byte for its length, of which the lowest 3 bits count, and its
// characters; a byte for the number of steps, and the steps, a byte each; the text is the rest.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include <corvel/BufferedFile.h>
#include <trovan/FileTokenizer.h>

#include "Require.h"
#include "support/TempFolder.h"
#include "tables/FileTokenizerModel.h"

namespace {

using trovan::CFileTokenizer;
using trovan::fuzz::Require;
using trovan::test::FileTokenizerModel;
using trovan::test::TextSource;
using trovan::test::TokenCall;

// Takes the input apart from its front.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  std::string_view Take(std::size_t count) {
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(taken.size());
    return taken;
  }
  std::size_t TakeByte() {
    const std::string_view byte = Take(1);
    return byte.empty() ? 0 : static_cast<unsigned char>(byte[0]);
  }
  // No set has a NUL byte.
  std::string TakeSet() {
    std::string set(Take(TakeByte() % 8));
    set.erase(std::remove(set.begin(), set.end(), '\0'), set.end());
    return set;
  }
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

void RequireNone(const std::string& disagreement) { Require(disagreement.empty(), disagreement); }

// What a caller does to the file between two calls.
void Disturb(std::size_t step, corvel::CBufferedFile& file, TextSource& source, std::size_t end) {
  const std::size_t argument = step / 8;
  switch (step % 8) {
    case 5:
      Require(file.Getc() == source.Getc(), "Getc");
      break;
    case 6: {
      const int byte = static_cast<int>(argument * 8 + argument % 3);
      Require(file.UnGetc(byte) == source.UnGetc(byte), "UnGetc");
      break;
    }
    default: {
      const std::size_t back = std::min(source.Position(), argument);
      const std::size_t target = std::min(source.Position() - back, end);
      file.Seek(static_cast<long long>(target), corvel::kFileBegin);
      source.Seek(target);
      break;
    }
  }
  RequireNone(DisagreementOfSources(file, source));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const trovan::test::TempFolder folder;
  Input input(data, size);
  FileTokenizerModel::Sets sets;
  sets.whitespace = input.TakeSet();
  sets.delimiters = input.TakeSet();
  sets.quotes = input.TakeSet();
  const std::string_view steps = input.Take(input.TakeByte());
  // The buffer takes 512 bytes of a file at first: half of the inputs lie across its edge.
  const std::size_t start = size % 2 == 0 ? 0 : 500;
  const std::string bytes = std::string(start, ' ') + std::string(input.Rest());

  trovan::test::WriteBytes(folder.Path() / "text", bytes);
  static corvel::CBufferedFile source;
  source.Open(folder.File(L"text"), "rb", corvel::kFileShareRead, false);
  TextSource twin(bytes);
  for (std::size_t i = 0; i < start; ++i) {
    Require(source.Getc() == twin.Getc(), "the bytes in front");
  }
  CFileTokenizer tokens(&source);
  GiveSets(tokens, sets);
  FileTokenizerModel model(twin, sets);
  auto status = CFileTokenizer::TOKEN_OK;
  for (const char c : steps) {
    const std::size_t step = static_cast<unsigned char>(c);
    if (step % 8 < 5) {
      RequireNone(DisagreementAfter(static_cast<TokenCall>(step % 8), tokens, model, status));
    } else {
      Disturb(step, source, twin, bytes.size());
    }
  }
  // The rest, alternating, so that long inputs are read to their end.
  bool quoted = steps.size() % 2 == 0;
  do {
    const auto call = quoted ? TokenCall::kQuotedText : TokenCall::kText;
    RequireNone(DisagreementAfter(call, tokens, model, status));
    quoted = !quoted;
  } while (status != CFileTokenizer::TOKEN_EOF);
  return 0;
}
