// The records of a shapefile (ESRI, "ESRI Shapefile Technical Description", 1998).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <corvel/BufferedFile.h>
#include <corvel/Geometry.h>

namespace trovan::filters {

// The kinds of shapes, as the files number them.
enum class ShapeType : std::uint32_t {
  kNull = 0,
  kPoint = 1,
  kPolyLine = 3,
  kPolygon = 5,
  kMultiPoint = 8,
  kPointZ = 11,
  kPolyLineZ = 13,
  kPolygonZ = 15,
  kMultiPointZ = 18,
  kPointM = 21,
  kPolyLineM = 23,
  kPolygonM = 25,
  kMultiPointM = 28,
  kMultiPatch = 31,
};

// "polygons with heights"; "shapes of type 4" for what is none.
std::string DescribeShapeType(ShapeType type);

struct ShapeHeader {
  ShapeType type = ShapeType::kNull;
  std::uint64_t fileLength = 0;  // bytes, as the header says
  corvel::Box2d extent;          // as the header says
};

struct ShapeRecord {
  std::uint32_t index = 0;  // counted from 0; the number in the file says nothing
  std::uint64_t offset = 0;
  std::vector<unsigned char> content;
};

class ShapeFile {
 public:
  // Raises FilterError when the file at `path` is no shapefile, and corvel::Exception when the
  // system refuses.
  explicit ShapeFile(const std::wstring& path);

  const ShapeHeader& Header() const { return header_; }
  std::uint64_t Length() const { return length_; }
  std::uint64_t Position() const { return position_; }

  // Reads the next record. False at the end of the file, and where no further record can be found:
  // then Fault tells why.
  bool Read(ShapeRecord& record);

  // Empty: there is none.
  const std::string& Fault() const { return fault_; }

 private:
  corvel::CBufferedFile file_;
  ShapeHeader header_;
  std::uint64_t length_ = 0;    // of the file, in truth
  std::uint64_t position_ = 0;  // of the next record
  std::uint32_t count_ = 0;     // of the records so far
  std::string fault_;
};

}  // namespace trovan::filters
