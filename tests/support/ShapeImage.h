// Builds the bytes of shapefiles for tests, right ones and wrong ones.
//
//   const std::string bytes = ShapeImage(5).Record(ShapeContent(5).Box().Words({1, 4}).Words({0})
//                                 .Points({{0, 0}, {4, 0}, {4, 4}, {0, 0}})).Bytes();
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>

namespace trovan::test {

struct ShapePoint {
  double x;
  double y;
};

// The content of a record: its type, and then whatever is added.
class ShapeContent {
 public:
  explicit ShapeContent(std::uint32_t type) { Words({type}); }

  ShapeContent& Words(std::initializer_list<std::uint32_t> words) {
    for (const std::uint32_t word : words) Store(word, 4);
    return *this;
  }
  ShapeContent& Reals(std::initializer_list<double> numbers) {
    for (const double number : numbers) Store(std::bit_cast<std::uint64_t>(number), 8);
    return *this;
  }
  ShapeContent& Points(std::initializer_list<ShapePoint> points) {
    for (const ShapePoint& point : points) Reals({point.x, point.y});
    return *this;
  }
  // The bounds, which nobody reads.
  ShapeContent& Box() { return Reals({0, 0, 0, 0}); }

  const std::string& Bytes() const { return bytes_; }

 private:
  void Store(std::uint64_t value, int count) {
    for (int i = 0; i < count; ++i) bytes_ += static_cast<char>(value >> (8 * i) & 0xFF);
  }

  std::string bytes_;
};

class ShapeImage {
 public:
  explicit ShapeImage(std::uint32_t type) : type_(type) {}

  ShapeImage& Record(const ShapeContent& content) { return Record(content.Bytes()); }
  ShapeImage& Record(const std::string& content) {
    return RecordOfLength(content, static_cast<std::uint32_t>(content.size() / 2));
  }
  // `words` is the length that the record claims to have.
  ShapeImage& RecordOfLength(const std::string& content, std::uint32_t words) {
    records_ += HighFirst(++count_) + HighFirst(words) + content;
    return *this;
  }
  ShapeImage& Extent(const ShapePoint& min, const ShapePoint& max) {
    min_ = min;
    max_ = max;
    return *this;
  }

  std::string Bytes() const {
    const std::size_t words = (100 + records_.size()) / 2;
    std::string bytes =
        HighFirst(9994) + std::string(20, '\0') + HighFirst(static_cast<std::uint32_t>(words));
    ShapeContent rest(1000);
    rest.Words({type_}).Reals({min_.x, min_.y, max_.x, max_.y});
    bytes += rest.Bytes();
    bytes.resize(100, '\0');
    return bytes + records_;
  }

 private:
  static std::string HighFirst(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
  }

  std::uint32_t type_;
  std::uint32_t count_ = 0;
  std::string records_;
  ShapePoint min_{0, 0};
  ShapePoint max_{0, 0};
};

// A polygon or line of one part for each list of points.
inline ShapeContent PartsContent(std::uint32_t type,
                                 std::initializer_list<std::initializer_list<ShapePoint>> parts) {
  ShapeContent content(type);
  std::uint32_t points = 0;
  for (const auto& part : parts) points += static_cast<std::uint32_t>(part.size());
  content.Box().Words({static_cast<std::uint32_t>(parts.size()), points});
  std::uint32_t first = 0;
  for (const auto& part : parts) {
    content.Words({first});
    first += static_cast<std::uint32_t>(part.size());
  }
  for (const auto& part : parts) content.Points(part);
  return content;
}

}  // namespace trovan::test
