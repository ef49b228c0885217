// The files that hold the pictures of a document.
#pragma once

#include <string>
#include <string_view>

namespace trovan::filters {

// The path that a reference in the document means: a name relative to the folder of the document,
// an absolute path, or one with "file://" in front.
//
// Raises FilterError, in words without a subject in front, where the reference names something else
// than a file of this computer.
std::wstring PicturePath(const std::wstring& documentPath, std::string_view reference);

// All bytes of a file of up to 256 MiB. Raises FilterError, as above, where they cannot be read.
std::string ReadPictureFile(const std::wstring& path);

}  // namespace trovan::filters
