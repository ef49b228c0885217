#include "ShapeFile.h"

#include <array>
#include <cstddef>

#include <corvel/Text.h>

#include "filters/support/FilterError.h"
#include "filters/support/InputFile.h"
#include "filters/support/StoredNumbers.h"

namespace trovan::filters {
namespace {

constexpr std::size_t kHeaderLength = 100;
constexpr std::size_t kRecordHeaderLength = 8;
constexpr std::uint32_t kFileCode = 9994;
constexpr std::uint32_t kVersion = 1000;
constexpr std::uint64_t kBytesInWord = 2;  // lengths are in words

std::string OffsetText(std::uint64_t offset) { return "byte " + std::to_string(offset); }

}  // namespace

std::string DescribeShapeType(ShapeType type) {
  switch (type) {
    case ShapeType::kNull:
      return "null shapes";
    case ShapeType::kPoint:
      return "points";
    case ShapeType::kPolyLine:
      return "lines";
    case ShapeType::kPolygon:
      return "polygons";
    case ShapeType::kMultiPoint:
      return "sets of points";
    case ShapeType::kPointZ:
      return "points with heights";
    case ShapeType::kPolyLineZ:
      return "lines with heights";
    case ShapeType::kPolygonZ:
      return "polygons with heights";
    case ShapeType::kMultiPointZ:
      return "sets of points with heights";
    case ShapeType::kPointM:
      return "points with measures";
    case ShapeType::kPolyLineM:
      return "lines with measures";
    case ShapeType::kPolygonM:
      return "polygons with measures";
    case ShapeType::kMultiPointM:
      return "sets of points with measures";
    case ShapeType::kMultiPatch:
      return "surfaces of patches";
    default:
      return "shapes of type " + std::to_string(static_cast<std::uint32_t>(type));
  }
}

ShapeFile::ShapeFile(const std::wstring& path) {
  RequireFile(path);
  file_.Open(path, "rb", corvel::kFileShareRead, false);
  length_ = static_cast<std::uint64_t>(file_.GetLength());
  std::array<unsigned char, kHeaderLength> bytes{};
  const std::size_t got = file_.Read(bytes.data(), bytes.size());
  const std::string name = corvel::Utf8FromWide(path);
  if (got < 4 || LoadU32HighFirst(bytes.data()) != kFileCode) {
    throw FilterError(name + " is no shapefile: it does not begin with the number 9994");
  }
  if (got < bytes.size()) {
    throw FilterError(name + " is cut off: it ends after " + std::to_string(got) +
                      " bytes of its header, which has 100");
  }
  const std::uint32_t version = LoadU32(&bytes[28]);
  if (version != kVersion) {
    throw FilterError(name + " is a shapefile of version " + std::to_string(version) +
                      "; only version 1000 can be read");
  }
  header_.fileLength = LoadU32HighFirst(&bytes[24]) * kBytesInWord;
  header_.type = ShapeType{LoadU32(&bytes[32])};
  header_.extent = {LoadDouble(&bytes[36]), LoadDouble(&bytes[44]), LoadDouble(&bytes[52]),
                    LoadDouble(&bytes[60])};
  position_ = kHeaderLength;
}

bool ShapeFile::Read(ShapeRecord& record) {
  if (position_ >= length_ || !fault_.empty()) return false;
  std::array<unsigned char, kRecordHeaderLength> head{};
  if (file_.Read(head.data(), head.size()) < head.size()) {
    fault_ = OffsetText(position_) + ": the file ends within the head of a record";
    return false;
  }
  const std::uint64_t size = LoadU32HighFirst(&head[4]) * kBytesInWord;
  const std::uint64_t rest = length_ - position_ - head.size();
  if (size > rest) {
    fault_ = OffsetText(position_) + ": record " + std::to_string(count_ + 1) + " should have " +
             std::to_string(size) + " bytes, but the file ends after " + std::to_string(rest) +
             "; nothing behind this place can be read";
    return false;
  }
  record.index = count_++;
  record.offset = position_;
  record.content.resize(static_cast<std::size_t>(size));
  position_ += head.size() + size;
  if (size > 0 && file_.Read(record.content.data(), record.content.size()) < size) {
    fault_ = OffsetText(record.offset) + ": the file has become shorter while it was read";
    return false;
  }
  return true;
}

}  // namespace trovan::filters
