// Real shapefiles and GeoJSON files of other programs, against what is known about them.
#include <filesystem>
#include <map>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <corvel/Path.h>

#include "filters/drawing/DrawnObjects.h"
#include "filters/geometry/GeoJsonImportFilter.h"
#include "filters/geometry/ShapeFile.h"
#include "filters/geometry/ShapeGeometry.h"
#include "filters/geometry/ShapeImportFilter.h"
#include "filters/support/FilterError.h"
#include "support/TempFolder.h"

namespace trovan::filters {
namespace {

using test::DrawnObjects;
using test::ReadBytes;

class RealMaps : public testing::Test {
 protected:
  void SetUp() override {
    if (std::filesystem::exists(Folder() / "shp" / "expected.json")) return;
    GTEST_SKIP() << "no maps in " << Folder()
                 << ": set the CMake variable TROVAN_TEST_DATA to a folder that has them.";
  }

  static std::filesystem::path Folder() { return TROVAN_TEST_DATA; }
  static std::wstring Path(const std::string& name) {
    return corvel::PathFromSystem((Folder() / name).string());
  }
  static nlohmann::json Expected(const char* folder) {
    return nlohmann::json::parse(ReadBytes(Folder() / folder / "expected.json"));
  }
};

std::string NameOf(ShapeType type) {
  switch (type) {
    case ShapeType::kNull:
      return "Null";
    case ShapeType::kPoint:
      return "Point";
    case ShapeType::kPolyLine:
      return "Arc";
    case ShapeType::kPolygon:
      return "Polygon";
    case ShapeType::kMultiPoint:
      return "MultiPoint";
    case ShapeType::kPointZ:
      return "PointZ";
    case ShapeType::kPolyLineZ:
      return "ArcZ";
    case ShapeType::kPolygonZ:
      return "PolygonZ";
    case ShapeType::kMultiPointZ:
      return "MultiPointZ";
    case ShapeType::kPointM:
      return "PointM";
    case ShapeType::kPolyLineM:
      return "ArcM";
    case ShapeType::kPolygonM:
      return "PolygonM";
    case ShapeType::kMultiPointM:
      return "MultiPointM";
    case ShapeType::kMultiPatch:
      return "MultiPatch";
  }
  return "?";
}

TEST_F(RealMaps, HaveTheShapesThatAreKnown) {
  const nlohmann::json expected = Expected("shp");
  for (const auto& [name, known] : expected.items()) {
    SCOPED_TRACE(name);
    ShapeFile file(Path(name));
    EXPECT_EQ(static_cast<unsigned>(file.Header().type), known["shape_type"].get<unsigned>());
    EXPECT_EQ(file.Header().fileLength, known["header_file_length_bytes"].get<unsigned>());
    EXPECT_EQ(file.Length(), known["file_size"].get<unsigned>());
    const corvel::Box2d& box = file.Header().extent;
    EXPECT_EQ(nlohmann::json({box.min.x, box.min.y, box.max.x, box.max.y}), known["bbox_xy"]);

    std::map<std::string, unsigned> byType;
    std::size_t points = 0;
    std::size_t parts = 0;
    std::size_t records = 0;
    bool hasPatches = false;
    ShapeRecord record;
    while (file.Read(record)) {
      const Shape shape = DecodeShape(record.content);
      hasPatches = hasPatches || shape.type == ShapeType::kMultiPatch;
      EXPECT_EQ(shape.fault.empty(), shape.type != ShapeType::kMultiPatch) << shape.fault;
      ++records;
      ++byType[NameOf(shape.type)];
      points += shape.geometry.points.size();
      parts += shape.geometry.counts.size();
    }
    EXPECT_EQ(records, known["records_walked"].get<std::size_t>());
    EXPECT_EQ(byType, (known["by_type"].get<std::map<std::string, unsigned>>()));
    if (!hasPatches) {
      EXPECT_EQ(points, known["points"].get<std::size_t>());
      EXPECT_EQ(parts, known["parts"].get<std::size_t>());
    }
    EXPECT_EQ(file.Fault().empty(), !known.contains("note")) << file.Fault();
  }
}

TEST_F(RealMaps, AreImportedWithTheirAttributes) {
  const nlohmann::json expected = Expected("shp");
  for (const auto& [name, known] : expected.items()) {
    SCOPED_TRACE(name);
    DrawnObjects objects;
    ShapeImportFilter filter(objects);
    filter.SetKeepAttributes(true);
    filter.ImportFromFile(Path(name), false);
    const bool isWhole = !known.contains("note") && known["shape_type_name"] != "MultiPatch";
    EXPECT_EQ(filter.Losses().Count(), isWhole ? 0U : 1U) << filter.Losses().First().front();
    EXPECT_EQ(filter.Statistics().whole, filter.Statistics().Objects());
    if (known["parts"] == 0) {
      const auto& types = known["by_type"];
      const auto nulls = types.value("Null", std::size_t{0});
      EXPECT_EQ(objects.Drawables().size(), known["records_walked"].get<std::size_t>() - nulls);
    }
  }
}

TEST_F(RealMaps, TextsOfAttributesAreInTheirCodePage) {
  const auto first = [](const std::string& name) {
    DrawnObjects objects;
    ShapeImportFilter filter(objects);
    filter.SetKeepAttributes(true);
    filter.ImportFromFile(Path(name), false);
    return objects.Drawables().at(0);
  };
  EXPECT_THAT(first("shp/mbostock/utf8-property.shp"),
              testing::HasSubstr("\xCE\xB7\xCE\xB5\xCE\xBB\xCE\xBB\xCE\xBF"));
  EXPECT_THAT(first("shp/mbostock/latin1-property.shp"),
              testing::HasSubstr("{name=M\xC3\xA9xico}"));
}

TEST_F(RealMaps, GeoJsonIsReadWhole) {
  std::size_t files = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(Folder() / "polygons")) {
    if (entry.path().extension() != ".geojson" && !entry.path().string().ends_with(".geo.json")) {
      continue;
    }
    SCOPED_TRACE(entry.path().string());
    ++files;
    DrawnObjects objects;
    GeoJsonImportFilter filter(objects);
    filter.SetKeepAttributes(true);
    const std::wstring path = corvel::PathFromSystem(entry.path().string());
    filter.ImportFromFile(path, false);
    const auto json = nlohmann::json::parse(ReadBytes(entry.path()));
    std::size_t places = 0;
    const auto features =
        json["type"] == "FeatureCollection" ? json["features"] : nlohmann::json::array({json});
    for (const auto& feature : features) {
      const auto& geometry = feature["geometry"];
      if (!geometry.is_null() && !geometry["coordinates"].empty()) ++places;
    }
    EXPECT_EQ(objects.Drawables().size(), places);
  }
  EXPECT_GE(files, 1U);
}

TEST_F(RealMaps, BytesThatAreChangedRaiseOrAreTold) {
  const test::TempFolder folder;
  for (const char* name : {"shp/gdal/multipointz_without_m.shp", "shp/mbostock/polylinem.shp",
                           "shp/gdal/departs.shp"}) {
    const std::string bytes = ReadBytes(Folder() / name);
    for (std::size_t at = 0; at < bytes.size(); ++at) {
      SCOPED_TRACE(std::string(name) + ", byte " + std::to_string(at));
      std::string changed = bytes;
      changed[at] = static_cast<char>(~changed[at]);
      test::WriteBytes(folder.Path() / "map.shp", changed);
      DrawnObjects objects;  // checks that objects are valid
      ShapeImportFilter filter(objects);
      try {
        filter.ImportFromFile(folder.File(L"map.shp"), false);
      } catch (const FilterError& error) {
        EXPECT_LT(at, 32U) << error.what();
      }
    }
  }
}

}  // namespace
}  // namespace trovan::filters
