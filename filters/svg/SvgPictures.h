// The pictures to which a document refers, decoded.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <pugixml.hpp>
#include <brindle/MemoryBitmap.h>

#include "filters/svg/SvgGuard.h"
#include "filters/svg/SvgRemarks.h"

namespace trovan::filters {

class SvgPictures {
 public:
  // `documentPath` is where the document lies, to whose folder the names of files are relative;
  // empty: it lies nowhere, and no file is read. The others are borrowed.
  SvgPictures(std::wstring documentPath, SvgGuard& guard, SvgRemarks& remarks)
      : documentPath_(std::move(documentPath)), guard_(guard), remarks_(remarks) {}

  // The picture that the element refers to, by a "data:" address or by the name of a file. Null,
  // with a remark that says why, where there is none to be had. It stays until the next call.
  //
  // Raises FilterError when the document asks for more pixels than its size allows.
  const brindle::MemoryBitmap* Find(const pugi::xml_node& node);

 private:
  std::optional<brindle::MemoryBitmap> Read(std::string_view reference, const pugi::xml_node& node);
  std::string BytesOf(std::string_view reference);
  void Keep(std::string_view reference, std::optional<brindle::MemoryBitmap> picture);

  std::wstring documentPath_;
  SvgGuard& guard_;
  SvgRemarks& remarks_;
  // By the references as they stand in the document; nothing for those that cannot be read.
  std::unordered_map<std::string_view, std::optional<brindle::MemoryBitmap>> kept_;
  std::uint64_t keptPixels_ = 0;
};

}  // namespace trovan::filters
