#include "SvgPictures.h"

#include <cstddef>
#include <utility>

#include "SvgElement.h"
#include "SvgPictureFile.h"
#include "filters/image/DataUri.h"
#include "filters/image/PictureDecoder.h"
#include "filters/support/FilterError.h"

namespace trovan::filters {
namespace {

using brindle::MemoryBitmap;

std::uint64_t PixelsOf(const std::optional<MemoryBitmap>& picture) {
  return picture ? std::uint64_t{picture->GetWidth()} * picture->GetHeight() : 0;
}

std::string NameOf(std::string_view reference) {
  constexpr std::size_t kMostShown = 100;
  if (reference.empty() || IsDataUri(reference)) return "a picture";
  const bool isShort = reference.size() <= kMostShown;
  return "the picture \"" + std::string(reference.substr(0, kMostShown)) +
         (isShort ? "\"" : "...\"");
}

}  // namespace

const MemoryBitmap* SvgPictures::Find(const pugi::xml_node& node) {
  const std::string_view reference = Reference(node);
  auto found = kept_.find(reference);
  if (found == kept_.end()) {
    Keep(reference, Read(reference, node));
    found = kept_.find(reference);
  }
  if (!found->second) return nullptr;
  guard_.CountPixels(PixelsOf(found->second), node);
  return &*found->second;
}

std::optional<MemoryBitmap> SvgPictures::Read(std::string_view reference,
                                              const pugi::xml_node& node) {
  try {
    return DecodePicture(BytesOf(reference));
  } catch (const FilterError& error) {
    remarks_.Add(NameOf(reference) + " is left out: " + error.what(), node);
    return {};
  }
}

std::string SvgPictures::BytesOf(std::string_view reference) {
  if (reference.empty()) throw FilterError("it has no address");
  if (IsDataUri(reference)) return DecodeDataUri(reference);
  const std::wstring path = PicturePath(documentPath_, reference);
  if (documentPath_.empty()) throw FilterError("the document lies in no folder");
  std::string bytes = ReadPictureFile(path);
  guard_.AllowFor(bytes.size());
  return bytes;
}

// What was read before goes when there would be too much of it.
void SvgPictures::Keep(std::string_view reference, std::optional<MemoryBitmap> picture) {
  const std::uint64_t pixels = PixelsOf(picture);
  if (keptPixels_ + pixels > kMostPicturePixels) {
    kept_.clear();
    keptPixels_ = 0;
  }
  keptPixels_ += pixels;
  kept_.emplace(reference, std::move(picture));
}

}  // namespace trovan::filters
