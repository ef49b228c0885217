#include "TableCodec.h"

#include <algorithm>
#include <cstring>

#include "Utf8Write.h"

namespace kerno {
namespace {

// Bytes of the page between two appends: their UTF-8 stays in the first-level cache.
constexpr std::size_t kBlock = 1024;

unsigned char ByteAt(const char* bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

}  // namespace

TableCodec::TableCodec(int codePage, std::unique_ptr<CharacterSource> source)
    : source_(std::move(source)) {
  SingleBytes singles;
  for (std::size_t byte = 0; byte < singles.size(); ++byte) {
    const char text = static_cast<char>(byte);
    singles[byte] = source_->First(std::string_view(&text, 1));
  }
  CorrectToWindows(codePage, singles);
  FillSingles(singles);
  FillReverse(singles);
}

TableCodec::Entry TableCodec::MakeEntry(const DecodedCharacter& decoded) {
  Entry entry{};
  entry.consumed = decoded.length;
  switch (decoded.kind) {
    case DecodedCharacter::kIncomplete:
      entry.lead = true;
      break;
    case DecodedCharacter::kMalformed:
      entry.malformed = 1;
      entry.size = static_cast<std::uint8_t>(WriteUtf8(0xFFFD, entry.utf8));
      break;
    case DecodedCharacter::kCharacter:
      entry.size = static_cast<std::uint8_t>(WriteUtf8(decoded.character, entry.utf8));
      break;
  }
  return entry;
}

void TableCodec::FillSingles(const SingleBytes& singles) {
  ascii_ = true;
  for (std::size_t byte = 0; byte < singles.size(); ++byte) {
    const DecodedCharacter& decoded = singles[byte];
    singles_[byte] = MakeEntry(decoded);
    hasPairs_ = hasPairs_ || singles_[byte].lead;
    const bool itself = decoded.kind == DecodedCharacter::kCharacter && decoded.character == byte;
    if (byte < 0x80 && !itself) ascii_ = false;
  }
}

void TableCodec::FillReverse(const SingleBytes& singles) {
  reverse_.reserve(singles.size());
  for (std::size_t byte = 0; byte < singles.size(); ++byte) {
    if (singles[byte].kind == DecodedCharacter::kCharacter) {
      reverse_.emplace_back(singles[byte].character, static_cast<unsigned char>(byte));
    }
  }
  std::sort(reverse_.begin(), reverse_.end());
}

void TableCodec::Reset() { heldLead_ = -1; }

const TableCodec::Entry& TableCodec::Pair(unsigned char lead, unsigned char trail) {
  std::unique_ptr<Entries>& row = pairs_[lead];
  if (!row) row = std::make_unique<Entries>();
  Entry& entry = (*row)[trail];
  if (entry.consumed == 0) {
    const char code[] = {static_cast<char>(lead), static_cast<char>(trail)};
    DecodedCharacter decoded = source_->First(std::string_view(code, sizeof code));
    if (decoded.kind == DecodedCharacter::kIncomplete) {
      decoded = {DecodedCharacter::kMalformed, 1, 0};  // no page has longer codes
    }
    entry = MakeEntry(decoded);
  }
  return entry;
}

std::size_t TableCodec::CompleteHeldLead(std::string_view& bytes, std::string& utf8) {
  const Entry& pair = Pair(static_cast<unsigned char>(heldLead_), ByteAt(bytes.data(), 0));
  heldLead_ = -1;
  utf8.append(pair.utf8, pair.size);
  bytes.remove_prefix(pair.consumed - 1U);
  return pair.malformed;
}

template <bool kHasPairs>
std::size_t TableCodec::AppendWhole(std::string_view bytes, std::string& utf8) {
  // An entry is stored with all its four bytes and the next one overwrites what is too much.
  char buffer[kBlock * sizeof(Entry::utf8) + kWordSize];
  const char* next = bytes.data();
  const char* const end = next + bytes.size();
  std::size_t malformed = 0;
  const auto put = [&malformed](const Entry& entry, char*& out) {
    std::memcpy(out, entry.utf8, sizeof entry.utf8);
    out += entry.size;
    malformed += entry.malformed;
  };
  while (next != end) {
    const char* const blockEnd = next + std::min(kBlock, static_cast<std::size_t>(end - next));
    char* out = buffer;
    while (next < blockEnd) {
      const auto left = static_cast<std::size_t>(blockEnd - next);
      if (ascii_ && left >= kWordSize && IsAsciiWord(next)) {
        std::memcpy(out, next, kWordSize);
        out += kWordSize;
        next += kWordSize;
        continue;
      }
      const char* const groupEnd = next + std::min(kWordSize, left);
      while (next < groupEnd) {
        const Entry& single = singles_[ByteAt(next, 0)];
        if (!kHasPairs || !single.lead) {
          put(single, out);
          ++next;
        } else if (next + 1 != end) {
          const Entry& pair = Pair(ByteAt(next, 0), ByteAt(next, 1));
          put(pair, out);
          next += pair.consumed;
        } else {
          heldLead_ = ByteAt(next++, 0);
        }
      }
    }
    utf8.append(buffer, static_cast<std::size_t>(out - buffer));
  }
  return malformed;
}

std::size_t TableCodec::AppendPiece(std::string_view bytes, bool last, std::string& utf8) {
  std::size_t malformed = 0;
  if (heldLead_ >= 0 && !bytes.empty()) malformed += CompleteHeldLead(bytes, utf8);
  malformed += hasPairs_ ? AppendWhole<true>(bytes, utf8) : AppendWhole<false>(bytes, utf8);
  if (last && heldLead_ >= 0) {
    heldLead_ = -1;
    utf8 += kReplacementUtf8;
    ++malformed;
  }
  return malformed;
}

int TableCodec::SingleByteOf(char32_t character) const {
  const auto found = std::lower_bound(
      reverse_.begin(), reverse_.end(), std::pair(character, '\0'),
      [](const auto& left, const auto& right) { return left.first < right.first; });
  return found != reverse_.end() && found->first == character ? found->second : -1;
}

bool TableCodec::EncodeOne(char32_t character, std::string& bytes) {
  const int single = SingleByteOf(character);
  if (single >= 0) {
    bytes += static_cast<char>(single);
    return true;
  }
  if (!hasPairs_ || character >= kNoCharacter) return false;
  const std::string code = source_->Encode(character);
  // A single byte here is one that Windows reads as something else.
  if (code.size() < 2) return false;
  bytes += code;
  return true;
}

std::size_t TableCodec::Encode(std::u32string_view text, std::string& bytes) {
  const int mark = SingleByteOf(U'?');
  const char replacement = mark >= 0 ? static_cast<char>(mark) : '?';
  std::size_t unmappable = 0;
  for (const char32_t character : text) {
    if (EncodeOne(character, bytes)) continue;
    bytes += replacement;
    ++unmappable;
  }
  return unmappable;
}

}  // namespace kerno
