#include "IcuStreamCodec.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include <unicode/ucnv_cb.h>
#include <unicode/utf16.h>

#include <corvel/Exception.h>

#include "Utf8Write.h"

namespace kerno {
namespace {

constexpr std::size_t kUnits = 1024;

// The most that one call gives to ICU, which refuses 2 GiB and more.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 20;

// A shorter stretch of ASCII inside other text is not worth leaving ICU for.
constexpr std::size_t kAsciiStretch = 2 * kWordSize;

constexpr UChar kReplacement = 0xFFFD;

// A unit that is never well formed by itself: it makes ICU report a character that is none.
constexpr UChar kLoneSurrogate = 0xDC00;

bool IsAboutText(UConverterCallbackReason reason) { return reason <= UCNV_IRREGULAR; }

void RequireSuccess(UErrorCode error) {
  if (U_FAILURE(error)) corvel::ThrowInternalError("kerno", "IcuStreamCodec", __LINE__);
}

void AppendUtf16(char32_t character, std::u16string& units) {
  if (character > 0xFFFF) {
    units += static_cast<UChar>(U16_LEAD(character));
    units += static_cast<UChar>(U16_TRAIL(character));
  } else {
    units += static_cast<UChar>(character);
  }
}

// UTF-7 as ICU knows it has no place for controls; Windows reads them as themselves.
bool IsControlOfUtf7(const UConverter* converter, const char* part, int32_t length) {
  const auto byte = static_cast<unsigned char>(*part);
  return length == 1 && (byte < 0x20 || byte == 0x7F) && ucnv_getType(converter) == UCNV_UTF7;
}

}  // namespace

IcuStreamCodec::IcuStreamCodec(IcuConverter converter, bool ascii, bool allOfUnicode)
    : converter_(std::move(converter)), ascii_(ascii), allOfUnicode_(allOfUnicode) {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter_.get(), OnMalformed, &malformed_, nullptr, nullptr, &error);
  ucnv_setFromUCallBack(converter_.get(), OnUnmappable, &unmappable_, nullptr, nullptr, &error);
  RequireSuccess(error);
}

void IcuStreamCodec::OnMalformed(const void* context, UConverterToUnicodeArgs* args,
                                 const char* part, int32_t length, UConverterCallbackReason reason,
                                 UErrorCode* error) {
  if (!IsAboutText(reason)) return;
  // ICU's interface is const, but the context is the caller's own to change.
  std::size_t& count = *static_cast<std::size_t*>(const_cast<void*>(context));
  const bool control = IsControlOfUtf7(args->converter, part, length);
  if (!control) ++count;
  *error = U_ZERO_ERROR;
  const UChar unit = control ? static_cast<UChar>(*part) : kReplacement;
  ucnv_cbToUWriteUChars(args, &unit, 1, 0, error);
}

void IcuStreamCodec::OnUnmappable(const void* context, UConverterFromUnicodeArgs* args,
                                  const UChar* /*units*/, int32_t /*length*/, UChar32 /*character*/,
                                  UConverterCallbackReason reason, UErrorCode* error) {
  if (!IsAboutText(reason)) return;
  ++*static_cast<std::size_t*>(const_cast<void*>(context));
  *error = U_ZERO_ERROR;
  constexpr UChar kQuestionMark = u'?';
  const UChar* next = &kQuestionMark;
  ucnv_cbFromUWriteUChars(args, &next, next + 1, 0, error);
}

void IcuStreamCodec::Reset() {
  ucnv_resetToUnicode(converter_.get());
  heldSurrogate_ = 0;
}

bool IcuStreamCodec::BetweenCharacters() const {
  UErrorCode error = U_ZERO_ERROR;
  return ucnv_toUCountPending(converter_.get(), &error) == 0 && U_SUCCESS(error);
}

// How many bytes to give to ICU before the next long stretch of ASCII.
std::size_t IcuStreamCodec::StretchForIcu(std::string_view bytes) const {
  bytes = bytes.substr(0, kMostAtOnce);
  if (!ascii_) return bytes.size();
  // To finish a character, byte by byte: the ASCII after it is not to be converted.
  if (!BetweenCharacters()) return 1;
  std::size_t run = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    run = static_cast<unsigned char>(bytes[i]) < 0x80 ? run + 1 : 0;
    if (run == kAsciiStretch) return i + 1 - run;
  }
  return bytes.size();
}

std::size_t IcuStreamCodec::AppendPiece(std::string_view bytes, bool last, std::string& utf8) {
  malformed_ = 0;
  while (!bytes.empty()) {
    if (ascii_ && BetweenCharacters()) {
      const char* const end = bytes.data() + bytes.size();
      const auto ascii = static_cast<std::size_t>(SkipAscii(bytes.data(), end) - bytes.data());
      utf8.append(bytes.substr(0, ascii));
      bytes.remove_prefix(ascii);
      if (bytes.empty()) break;
    }
    const std::size_t stretch = StretchForIcu(bytes);
    Convert(bytes.substr(0, stretch), false, utf8);
    bytes.remove_prefix(stretch);
  }
  if (last) {
    Convert({}, true, utf8);
    DropHeldSurrogate(utf8);
    Reset();
  }
  return malformed_;
}

void IcuStreamCodec::Convert(std::string_view bytes, bool last, std::string& utf8) {
  std::array<UChar, kUnits> units;
  const char* next = bytes.data();
  const char* const end = next + bytes.size();
  UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
  while (error == U_BUFFER_OVERFLOW_ERROR) {
    error = U_ZERO_ERROR;
    UChar* out = units.data();
    ucnv_toUnicode(converter_.get(), &out, units.data() + units.size(), &next, end, nullptr,
                   static_cast<UBool>(last), &error);
    AppendUnits(units.data(), static_cast<std::size_t>(out - units.data()), utf8);
  }
  RequireSuccess(error);
}

// ICU's UTF-7 lets lone surrogates through, and any output may end between the halves of a pair.
void IcuStreamCodec::AppendUnits(const UChar* units, std::size_t count, std::string& utf8) {
  for (std::size_t i = 0; i < count; ++i) {
    const UChar unit = units[i];
    if (heldSurrogate_ != 0 && U16_IS_TRAIL(unit)) {
      AppendUtf8(static_cast<char32_t>(U16_GET_SUPPLEMENTARY(heldSurrogate_, unit)), utf8);
      heldSurrogate_ = 0;
      continue;
    }
    DropHeldSurrogate(utf8);
    if (U16_IS_LEAD(unit)) {
      heldSurrogate_ = unit;
    } else if (U16_IS_TRAIL(unit)) {
      utf8 += kReplacementUtf8;
      ++malformed_;
    } else {
      AppendUtf8(unit, utf8);
    }
  }
}

void IcuStreamCodec::DropHeldSurrogate(std::string& utf8) {
  if (heldSurrogate_ == 0) return;
  heldSurrogate_ = 0;
  utf8 += kReplacementUtf8;
  ++malformed_;
}

void IcuStreamCodec::ConvertBack(std::u16string_view units, bool last, std::string& bytes) {
  std::array<char, kUnits> buffer;
  const UChar* next = units.data();
  const UChar* const end = next + units.size();
  UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
  while (error == U_BUFFER_OVERFLOW_ERROR) {
    error = U_ZERO_ERROR;
    char* out = buffer.data();
    ucnv_fromUnicode(converter_.get(), &out, buffer.data() + buffer.size(), &next, end, nullptr,
                     static_cast<UBool>(last), &error);
    bytes.append(buffer.data(), out);
  }
  RequireSuccess(error);
}

std::u16string IcuStreamCodec::Utf16From(std::u32string_view text) {
  std::u16string units;
  units.reserve(text.size());
  for (const char32_t character : text) {
    if (character != kNoCharacter) {
      AppendUtf16(character, units);
    } else if (allOfUnicode_) {
      units += kReplacement;
      ++unmappable_;
    } else {
      units += kLoneSurrogate;
    }
  }
  return units;
}

std::size_t IcuStreamCodec::Encode(std::u32string_view text, std::string& bytes) {
  if (text.empty()) return 0;  // ISO-2022-KR would begin with its header
  unmappable_ = 0;
  ucnv_resetFromUnicode(converter_.get());
  for (; text.size() > kMostAtOnce; text.remove_prefix(kMostAtOnce)) {
    ConvertBack(Utf16From(text.substr(0, kMostAtOnce)), false, bytes);
  }
  ConvertBack(Utf16From(text), true, bytes);
  return unmappable_;
}

}  // namespace kerno
