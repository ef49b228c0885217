#include <kerno/TextCodec.h>

#include <utility>

#include <corvel/Exception.h>
#include <win32/Utf8.h>
#include <win32/WinApi.h>

#include "CharacterSource.h"
#include "CodePageTable.h"
#include "IcuStreamCodec.h"
#include "PageCatalog.h"
#include "TableCodec.h"
#include "Utf8Codec.h"

namespace kerno {
namespace {

constexpr int kOem = 437;
constexpr int kMacintosh = 10000;

int PageInUse(int codePage) {
  switch (codePage) {
    case 0:
    case 3:
      return static_cast<int>(GetACP());
    case 1:
      return kOem;
    case 2:
      return kMacintosh;
    default:
      return codePage;
  }
}

bool HasAllOfUnicode(int codePage) {
  constexpr int kPages[] = {1200, 1201, 12000, 12001, 54936, 65000};
  for (const int page : kPages) {
    if (page == codePage) return true;
  }
  return false;
}

std::unique_ptr<CharacterSource> OpenSource(const PageConverter& converter) {
  switch (converter.engine) {
    case Engine::kSymbolTable:
      return OpenSymbolSource();
    case Engine::kIconvTable:
      return OpenIconvSource(converter.codePage, converter.name);
    default:
      return OpenIcuSource(converter.name);
  }
}

std::unique_ptr<PageCodec> OpenStream(const PageConverter& converter) {
  IcuConverter icu = OpenIcuConverter(converter.name);
  if (!icu) return nullptr;
  return std::make_unique<IcuStreamCodec>(std::move(icu),
                                          converter.engine == Engine::kIcuAsciiStream,
                                          HasAllOfUnicode(converter.codePage));
}

std::unique_ptr<PageCodec> OpenTable(const PageConverter& converter) {
  std::unique_ptr<CharacterSource> source = OpenSource(converter);
  if (!source) return nullptr;
  return std::make_unique<TableCodec>(converter.codePage, std::move(source));
}

// Null if the page's converter is not installed.
std::unique_ptr<PageCodec> OpenPage(const PageConverter& converter) {
  switch (converter.engine) {
    case Engine::kUtf8:
      return std::make_unique<Utf8Codec>();
    case Engine::kIcuStream:
    case Engine::kIcuAsciiStream:
      return OpenStream(converter);
    default:
      return OpenTable(converter);
  }
}

bool IsInstalled(const PageConverter& converter) {
  switch (converter.engine) {
    case Engine::kSymbolTable:
    case Engine::kUtf8:
      return true;
    case Engine::kIconvTable:
      return OpenSource(converter) != nullptr;
    default:
      return OpenIcuConverter(converter.name) != nullptr;
  }
}

std::string Describe(int codePage) {
  std::string text = "code page " + std::to_string(codePage);
  for (const CodePageRow& row : kCodePages) {
    if (row.number == codePage) {
      return text + " (" + win32::Utf8FromWide(row.displayName) + ")";
    }
  }
  return text;
}

[[noreturn]] void RaiseNotConvertible(int codePage) {
  throw corvel::Exception("kerno", "TextCodec", __LINE__,
                          "No converter is installed for text in " + Describe(codePage) +
                              ". Choose another code page, or convert the text to UTF-8 with the "
                              "program that wrote it.",
                          false);
}

// The scalar values of a wide text; kNoCharacter for each unit that is none.
std::u32string CharactersOf(std::wstring_view text) {
  std::u32string characters;
  characters.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto unit = static_cast<char32_t>(text[i]);
    if constexpr (sizeof(wchar_t) == 2) {
      if (unit >= 0xD800 && unit < 0xDC00 && i + 1 < text.size()) {
        const auto trail = static_cast<char32_t>(text[i + 1]);
        if (trail >= 0xDC00 && trail < 0xE000) {
          characters += static_cast<char32_t>(0x10000 + ((unit - 0xD800) << 10) + (trail - 0xDC00));
          ++i;
          continue;
        }
      }
    }
    const bool scalar = unit < 0xD800 || (unit >= 0xE000 && unit <= 0x10FFFF);
    characters += scalar ? unit : kNoCharacter;
  }
  return characters;
}

}  // namespace

TextCodec::TextCodec(int codePage) : codePage_(PageInUse(codePage)) {
  const PageConverter* const converter = FindConverter(codePage_);
  if (converter != nullptr) page_ = OpenPage(*converter);
  if (!page_) RaiseNotConvertible(codePage_);
}

TextCodec::TextCodec(TextCodec&&) noexcept = default;
TextCodec& TextCodec::operator=(TextCodec&&) noexcept = default;
TextCodec::~TextCodec() = default;

bool TextCodec::IsConvertible(int codePage) {
  const PageConverter* const converter = FindConverter(PageInUse(codePage));
  return converter != nullptr && IsInstalled(*converter);
}

std::wstring TextCodec::Decode(std::string_view bytes, std::size_t* malformed) {
  std::string utf8;
  const std::size_t count = AppendUtf8(bytes, utf8);
  if (malformed != nullptr) *malformed += count;
  return win32::WideFromUtf8(utf8);
}

std::string TextCodec::Encode(std::wstring_view text, std::size_t* unmappable) {
  std::string bytes;
  const std::size_t count = page_->Encode(CharactersOf(text), bytes);
  if (unmappable != nullptr) *unmappable += count;
  return bytes;
}

std::size_t TextCodec::AppendUtf8(std::string_view bytes, std::string& utf8) {
  page_->Reset();
  return page_->AppendPiece(bytes, true, utf8);
}

std::size_t TextCodec::AppendPiece(std::string_view bytes, bool last, std::string& utf8) {
  return page_->AppendPiece(bytes, last, utf8);
}

}  // namespace kerno
