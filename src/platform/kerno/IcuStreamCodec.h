// Pages that ICU converts byte by byte: those with states, of more than two bytes a character, and
// UTF-16 and UTF-32.
#pragma once

#include "IcuConverter.h"
#include "PageCodec.h"

namespace kerno {

class IcuStreamCodec : public PageCodec {
 public:
  // `ascii`: between characters, bytes below 0x80 are ASCII and need no conversion.
  // `allOfUnicode`: the page can write U+FFFD.
  IcuStreamCodec(IcuConverter converter, bool ascii, bool allOfUnicode);

  void Reset() override;
  std::size_t AppendPiece(std::string_view bytes, bool last, std::string& utf8) override;
  std::size_t Encode(std::u32string_view text, std::string& bytes) override;

 private:
  // What ICU calls; `context` is the counter.
  static void OnMalformed(const void* context, UConverterToUnicodeArgs* args, const char* part,
                          int32_t length, UConverterCallbackReason reason, UErrorCode* error);
  static void OnUnmappable(const void* context, UConverterFromUnicodeArgs* args, const UChar* units,
                           int32_t length, UChar32 character, UConverterCallbackReason reason,
                           UErrorCode* error);

  bool BetweenCharacters() const;
  std::size_t StretchForIcu(std::string_view bytes) const;
  void Convert(std::string_view bytes, bool last, std::string& utf8);
  std::u16string Utf16From(std::u32string_view text);
  void ConvertBack(std::u16string_view units, bool last, std::string& bytes);
  void AppendUnits(const UChar* units, std::size_t count, std::string& utf8);
  void DropHeldSurrogate(std::string& utf8);

  // Of the call that is under way.
  std::size_t malformed_ = 0;
  std::size_t unmappable_ = 0;

  IcuConverter converter_;
  bool ascii_;
  bool allOfUnicode_;
  UChar heldSurrogate_ = 0;  // a leading one at the end of ICU's last output, or 0
};

}  // namespace kerno
