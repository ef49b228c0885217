#include "GeoJsonPoints.h"

#include "filters/support/NumberText.h"

namespace trovan::filters {

GeoJsonPoints::GeoJsonPoints(ByteSink& sink, const std::vector<std::string>& properties,
                             std::size_t firstBeyond)
    : out_(sink), properties_(out_, properties, firstBeyond) {
  out_.Put(R"({"type":"FeatureCollection","features":[)");
}

JsonObject& GeoJsonPoints::BeginPoint(std::span<const double> coordinates) {
  out_.Put(any_ ? ",\n" : "\n");
  any_ = true;
  out_.Put(R"({"type":"Feature","geometry":)");
  text_ = coordinates.empty() ? "null" : R"({"type":"Point","coordinates":[)";
  for (std::size_t i = 0; i < coordinates.size(); ++i) {
    if (i > 0) text_ += ',';
    AppendNumber(text_, coordinates[i]);
  }
  if (!coordinates.empty()) text_ += "]}";
  out_.Put(text_);
  out_.Put(R"(,"properties":)");
  properties_.Begin();
  return properties_;
}

void GeoJsonPoints::EndPoint() {
  properties_.End();
  out_.Put('}');
  out_.FlushIfFull();
}

void GeoJsonPoints::End() {
  out_.Put(any_ ? "\n]}\n" : "]}\n");
  out_.Flush();
}

}  // namespace trovan::filters
