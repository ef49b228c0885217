// Pages of one or two bytes a character, through tables of ready UTF-8.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "CharacterSource.h"
#include "PageCodec.h"
#include "WindowsCorrections.h"

namespace kerno {

// The table of single bytes is filled at once (256 questions to the source). Two-byte codes are
// asked for when they first occur: a page has up to 24,000, a file some hundreds.
class TableCodec : public PageCodec {
 public:
  TableCodec(int codePage, std::unique_ptr<CharacterSource> source);

  void Reset() override;
  std::size_t AppendPiece(std::string_view bytes, bool last, std::string& utf8) override;
  std::size_t Encode(std::u32string_view text, std::string& bytes) override;

 private:
  // What a byte or a pair becomes. Eight bytes, so that an entry is one load.
  struct Entry {
    char utf8[4];
    std::uint8_t size;       // of utf8
    std::uint8_t consumed;   // bytes of the page; 0: not asked for yet
    std::uint8_t malformed;  // 0 or 1
    bool lead;               // of a single byte: begins a pair, and the rest is empty
  };
  using Entries = std::array<Entry, 256>;

  static Entry MakeEntry(const DecodedCharacter& decoded);
  void FillSingles(const SingleBytes& singles);
  void FillReverse(const SingleBytes& singles);
  const Entry& Pair(unsigned char lead, unsigned char trail);

  // Both add to `utf8` and return the number of malformed parts.
  std::size_t CompleteHeldLead(std::string_view& bytes, std::string& utf8);
  template <bool kHasPairs>
  std::size_t AppendWhole(std::string_view bytes, std::string& utf8);

  // -1 if no single byte means the character.
  int SingleByteOf(char32_t character) const;
  bool EncodeOne(char32_t character, std::string& bytes);

  std::unique_ptr<CharacterSource> source_;
  Entries singles_{};
  std::array<std::unique_ptr<Entries>, 256> pairs_;          // by lead byte
  std::vector<std::pair<char32_t, unsigned char>> reverse_;  // ascending
  bool ascii_ = false;                                       // bytes below 0x80 are ASCII
  bool hasPairs_ = false;
  int heldLead_ = -1;  // the first byte of a pair that the last piece cut, or -1
};

}  // namespace kerno
