#include <unicode/ucnv.h>
#include <unicode/utf16.h>

#include "CharacterSource.h"
#include "IcuConverter.h"

namespace kerno {
namespace {

class IcuSource : public CharacterSource {
 public:
  explicit IcuSource(IcuConverter converter) : converter_(std::move(converter)) {
    UErrorCode error = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter_.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);
    ucnv_setFromUCallBack(converter_.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                          &error);
  }

  DecodedCharacter First(std::string_view bytes) override {
    ucnv_resetToUnicode(converter_.get());
    const char* next = bytes.data();
    UErrorCode error = U_ZERO_ERROR;
    const UChar32 character =
        ucnv_getNextUChar(converter_.get(), &next, bytes.data() + bytes.size(), &error);
    if (U_SUCCESS(error)) {
      return {DecodedCharacter::kCharacter, static_cast<std::uint8_t>(next - bytes.data()),
              static_cast<char32_t>(character)};
    }
    if (error == U_TRUNCATED_CHAR_FOUND) return {DecodedCharacter::kIncomplete, 0, 0};
    return {DecodedCharacter::kMalformed, MalformedLength(), 0};
  }

  std::string Encode(char32_t character) override {
    UChar units[U16_MAX_LENGTH];
    int32_t count = 0;
    U16_APPEND_UNSAFE(units, count, character);
    char bytes[kMostBytes];
    UErrorCode error = U_ZERO_ERROR;
    const int32_t size = ucnv_fromUChars(converter_.get(), bytes, kMostBytes, units, count, &error);
    if (U_FAILURE(error)) return {};
    return std::string(bytes, static_cast<std::size_t>(size));
  }

 private:
  static constexpr int32_t kMostBytes = 16;

  // The source pointer cannot tell: ICU keeps bytes to read again in the converter.
  std::uint8_t MalformedLength() const {
    char part[kMostBytes];
    int8_t length = kMostBytes;
    UErrorCode error = U_ZERO_ERROR;
    ucnv_getInvalidChars(converter_.get(), part, &length, &error);
    return static_cast<std::uint8_t>(length);
  }

  IcuConverter converter_;
};

}  // namespace

std::unique_ptr<CharacterSource> OpenIcuSource(const char* name) {
  IcuConverter converter = OpenIcuConverter(name);
  if (!converter) return nullptr;
  return std::make_unique<IcuSource>(std::move(converter));
}

}  // namespace kerno
