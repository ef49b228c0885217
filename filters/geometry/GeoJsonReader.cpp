#include "GeoJsonReader.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

#include <nlohmann/json.hpp>

#include "filters/geometry/GeoJsonCoordinates.h"
#include "filters/geometry/GeoJsonProperties.h"
#include "filters/support/FilterError.h"
#include "filters/support/NumberText.h"
#include "filters/support/QuotedText.h"

namespace trovan::filters {
namespace {

using nlohmann::json;

constexpr std::size_t kDeepest = 100;

// The source in the form in which the parser takes its input. The end is the default one.
class ByteIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  ByteIterator() = default;
  explicit ByteIterator(ByteSource& source) : source_(&source) { ++*this; }

  reference operator*() const { return byte_; }
  ByteIterator& operator++() {
    const int next = source_->Next();
    if (next < 0) source_ = nullptr;
    byte_ = static_cast<char>(next);
    return *this;
  }
  ByteIterator operator++(int) {
    ByteIterator before = *this;
    ++*this;
    return before;
  }
  friend bool operator==(const ByteIterator& a, const ByteIterator& b) {
    return a.source_ == b.source_;
  }

 private:
  ByteSource* source_ = nullptr;
  char byte_ = 0;
};

// What an object of the file has to be, by the place where it stands.
enum class Role { kAny, kFeature, kGeometry };

// An object of GeoJSON that has begun.
struct Object {
  Role role = Role::kAny;
  std::string key;  // of the member that comes
  std::string type;
  std::string id;
  GeoJsonCoordinates coordinates;
  std::vector<Geometry> geometries;
  GeoJsonProperties properties;
  bool hasCoordinates = false;
  bool hasGeometries = false;
  bool hasGeometry = false;
  bool hasFeatures = false;
};

// Takes the pieces of the text as the parser finds them (the interface is the parser's).
class Handler : public json::json_sax_t {
 public:
  Handler(const ByteSource& source, bool withProperties,
          const std::function<void(GeoJsonFeature&)>& take)
      : source_(source), withProperties_(withProperties), take_(take) {}

  bool null() override {
    if (In(Part::kProperties)) Properties().Null();
    if (In(Part::kObject)) {
      // These two may be null: a feature without a place, or without properties.
      if (Current().key == "geometry") {
        Current().hasGeometry = true;
        Current().geometries.clear();
      } else {
        if (Current().key == "properties") Properties().Clear();
        RefuseScalar();
      }
    }
    if (parts_.empty()) RefuseScalar();
    RefuseInArrays();
    return true;
  }
  bool boolean(bool value) override { return Literal(value ? "true" : "false", nullptr); }
  bool number_integer(std::int64_t value) override { return Number(value); }
  bool number_unsigned(std::uint64_t value) override { return Number(value); }
  bool number_float(double value, const std::string& text) override {
    return Literal(text, &value);
  }
  bool binary(json::binary_t&) override { return true; }  // not in text

  bool string(std::string& text) override {
    if (In(Part::kProperties)) {
      Properties().Text(text);
    } else if (In(Part::kObject) && Current().key == "type") {
      Current().type = text;
    } else if (In(Part::kObject) && Current().key == "id") {
      Current().id = text;
    } else {
      RefuseScalar();
    }
    return true;
  }

  bool key(std::string& text) override {
    if (In(Part::kProperties)) Properties().Key(text);
    if (In(Part::kObject)) Current().key = text;
    return true;
  }

  bool start_object(std::size_t) override {
    if (parts_.empty()) {
      BeginObject(Role::kAny);
    } else if (In(Part::kFeatures)) {
      BeginObject(Role::kFeature);
    } else if (In(Part::kGeometries)) {
      BeginObject(Role::kGeometry);
    } else if (In(Part::kObject)) {
      BeginMember();
    } else if (In(Part::kCoordinates)) {
      Fail("an object stands among coordinates");
    } else {
      if (In(Part::kProperties)) Properties().Begin('{');
      Push(parts_.back());
    }
    return true;
  }

  bool end_object() override {
    const Part ended = Pop();
    if (ended == Part::kObject) {
      EndObject();
    } else if (ended == Part::kProperties && In(Part::kProperties)) {
      Properties().End('}');
    }
    return true;
  }

  bool start_array(std::size_t) override {
    if (parts_.empty()) Fail("an array is no GeoJSON; an object was expected");
    if (In(Part::kObject)) {
      BeginArrayMember();
    } else if (In(Part::kFeatures) || In(Part::kGeometries)) {
      Fail("an array stands where an object was expected");
    } else {
      if (In(Part::kProperties)) Properties().Begin('[');
      if (In(Part::kCoordinates)) Check(Current().coordinates.BeginArray());
      Push(parts_.back());
    }
    return true;
  }

  bool end_array() override {
    const Part ended = Pop();
    if (ended == Part::kCoordinates) Check(Current().coordinates.EndArray());
    if (ended == Part::kProperties) Properties().End(']');
    return true;
  }

  bool parse_error(std::size_t position, const std::string&,
                   const json::exception& error) override {
    // "[json.exception.parse_error.101] parse error at line 1, column 2: what is wrong"
    std::string reason = error.what();
    const std::size_t code = reason.find("] ");
    if (code != std::string::npos) reason.erase(0, code + 2);
    const std::size_t place = reason.find(": ");
    if (reason.starts_with("parse error") && place != std::string::npos) reason.erase(0, place + 2);
    throw FilterError("byte " + std::to_string(position) + ": this is no JSON: " + reason);
  }

 private:
  // What is open in the text.
  enum class Part {
    kObject,       // of GeoJSON
    kFeatures,     // the array
    kGeometries,   // the array
    kCoordinates,  // arrays
    kProperties,   // the object, and all that is in it
    kForeign,      // all that is in members that mean nothing here
  };

  bool In(Part part) const { return !parts_.empty() && parts_.back() == part; }
  Object& Current() { return objects_.back(); }
  GeoJsonProperties& Properties() { return Current().properties; }

  void Push(Part part) {
    if (parts_.size() == kDeepest) {
      Fail("objects and arrays are nested more than " + std::to_string(kDeepest) + " deep");
    }
    parts_.push_back(part);
  }
  Part Pop() {
    const Part part = parts_.back();
    parts_.pop_back();
    return part;
  }

  [[noreturn]] void Fail(const std::string& reason) const {
    throw FilterError("byte " + std::to_string(source_.Position()) + ": " + reason);
  }
  void Check(const std::string& fault) const {
    if (!fault.empty()) Fail(fault);
  }

  void BeginObject(Role role) {
    Push(Part::kObject);
    objects_.emplace_back().role = role;
  }

  // An object as the value of a member.
  void BeginMember() {
    const std::string& key = Current().key;
    if (key == "geometry") {
      Current().hasGeometry = true;
      Current().geometries.clear();
      BeginObject(Role::kGeometry);
    } else if (key == "properties" && withProperties_) {
      Current().properties.Clear();
      Push(Part::kProperties);
    } else {
      if (key == "coordinates" || key == "geometries" || key == "features") {
        Fail("\"" + key + "\" is an object; an array was expected");
      }
      Push(Part::kForeign);
    }
  }

  void BeginArrayMember() {
    Object& object = Current();
    if (object.key == "coordinates") {
      object.hasCoordinates = true;
      object.coordinates.Clear();
      Check(object.coordinates.BeginArray());
      Push(Part::kCoordinates);
    } else if (object.key == "geometries") {
      object.hasGeometries = true;
      object.geometries.clear();
      Push(Part::kGeometries);
    } else if (object.key == "features") {
      object.hasFeatures = true;
      Push(Part::kFeatures);
    } else {
      if (object.key == "geometry") Fail("\"geometry\" is an array; an object was expected");
      Push(Part::kForeign);
    }
  }

  template <typename Integer>
  bool Number(Integer value) {
    const auto number = static_cast<double>(value);
    return Literal(std::to_string(value), &number);
  }

  // `number` is null for a truth value.
  bool Literal(const std::string& text, const double* number) {
    if (In(Part::kProperties)) {
      Properties().Literal(text);
    } else if (In(Part::kCoordinates) && number != nullptr) {
      Check(Current().coordinates.AddNumber(*number));
    } else if (In(Part::kObject) && Current().key == "id") {
      Current().id = text;
    } else {
      RefuseScalar();
    }
    return true;
  }

  // A text, number or truth value may stand in foreign members only.
  void RefuseScalar() const {
    if (parts_.empty()) Fail("this is no GeoJSON; an object was expected");
    RefuseInArrays();
    if (!In(Part::kObject)) return;
    const std::string& key = objects_.back().key;
    for (const char* name : {"type", "geometry", "coordinates", "geometries", "features"}) {
      if (key == name) Fail("\"" + key + "\" has a value of the wrong kind");
    }
  }

  void RefuseInArrays() const {
    if (In(Part::kCoordinates)) Fail("the coordinates hold something other than numbers");
    if (In(Part::kFeatures) || In(Part::kGeometries)) {
      Fail("a single value stands where an object was expected");
    }
  }

  void EndObject() {
    Object object = std::move(objects_.back());
    objects_.pop_back();
    const bool isGeometry =
        object.type == "GeometryCollection" || GeoJsonCoordinates::IsType(object.type);
    RequireRole(object, isGeometry);
    if (isGeometry) return EndGeometry(object);
    if (object.type == "Feature") return EndFeature(object);
    if (!object.hasFeatures) Fail("a FeatureCollection has no \"features\"");
  }

  void RequireRole(const Object& object, bool isGeometry) const {
    const bool isFeature = object.type == "Feature";
    if (object.type.empty()) Fail("an object has no \"type\"");
    if (object.role == Role::kFeature && !isFeature) {
      Fail("a Feature was expected, not a " + Quoted(object.type));
    }
    if (object.role == Role::kGeometry && !isGeometry) {
      Fail("a geometry was expected, not a " + Quoted(object.type));
    }
    if (!isFeature && !isGeometry && object.type != "FeatureCollection") {
      Fail(Quoted(object.type) + " is no type of GeoJSON");
    }
    RefuseForeign(object, object.hasFeatures, "features", "FeatureCollection");
    RefuseForeign(object, object.hasGeometry, "geometry", "Feature");
    RefuseForeign(object, object.hasGeometries, "geometries", "GeometryCollection");
    if (object.hasCoordinates && !GeoJsonCoordinates::IsType(object.type)) {
      Fail("a " + object.type + " has \"coordinates\"");
    }
  }

  void RefuseForeign(const Object& object, bool isThere, const char* member,
                     const char* type) const {
    if (isThere && object.type != type) {
      Fail("a " + object.type + " has \"" + member + "\", which only a " + type + " has");
    }
  }

  void EndGeometry(Object& object) {
    if (object.type == "GeometryCollection") {
      if (!object.hasGeometries) Fail("a GeometryCollection has no \"geometries\"");
    } else {
      if (!object.hasCoordinates) Fail("a " + object.type + " has no \"coordinates\"");
      object.geometries.resize(1);
      Check(object.coordinates.Take(object.type, object.geometries.front()));
    }
    if (objects_.empty()) return Deliver(std::move(object.geometries), {});
    auto& all = Current().geometries;
    all.insert(all.end(), std::move_iterator(object.geometries.begin()),
               std::move_iterator(object.geometries.end()));
  }

  void EndFeature(Object& object) {
    if (!object.hasGeometry) Fail("a Feature has no \"geometry\", not even null");
    if (withProperties_ && !object.id.empty()) object.properties.SetIfNew("id", object.id);
    Deliver(std::move(object.geometries), object.properties.Params());
  }

  void Deliver(std::vector<Geometry> geometries, corvel::CParamList properties) const {
    GeoJsonFeature feature{std::move(geometries), std::move(properties)};
    take_(feature);
  }

  const ByteSource& source_;
  bool withProperties_;
  const std::function<void(GeoJsonFeature&)>& take_;
  std::vector<Part> parts_;
  std::vector<Object> objects_;  // those that have begun, outermost first
};

}  // namespace

void ReadGeoJson(ByteSource& source, bool withProperties,
                 const std::function<void(GeoJsonFeature&)>& take) {
  Handler handler(source, withProperties, take);
  json::sax_parse(ByteIterator(source), ByteIterator(), &handler);
}

}  // namespace trovan::filters
