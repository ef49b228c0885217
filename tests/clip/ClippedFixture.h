// A filter whose objects are given by the test, and a manager that keeps what it gets.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <corvel/Geometry.h>
#include <quillon/IoManager.h>
#include <quillon/TrClipPath.h>
#include <quillon/TrPolygon.h>
#include <quillon/TrPolyline.h>
#include <trovan/IoClippedImportFilter.h>

#include "ObjectText.h"

namespace trovan::test {

// Keeps a clone of each object that is delivered, and where the object was.
class RecordingManager : public quillon::IoManager {
 public:
  void ImportObject(quillon::TrBase& object) override {
    if (onDelivery) onDelivery(clones_.size());
    addresses_.push_back(&object);
    clones_.push_back(object.Clone());
  }

  std::size_t Size() const { return clones_.size(); }
  const quillon::TrBase& At(std::size_t i) const { return *clones_.at(i); }

  // The object that was delivered itself; it may be gone.
  const quillon::TrBase* Address(std::size_t i) const { return addresses_.at(i); }

  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const auto& clone : clones_) texts.push_back(TextOf(*clone));
    return texts;
  }
  std::vector<std::string> AreaTexts() const {
    std::vector<std::string> texts;
    for (const auto& clone : clones_) texts.push_back(TextOfArea(*clone));
    return texts;
  }

  void Clear() {
    addresses_.clear();
    clones_.clear();
  }

  // Called before an object is kept, with the number of those before it; may raise.
  std::function<void(std::size_t)> onDelivery;

 private:
  std::vector<const quillon::TrBase*> addresses_;
  std::vector<std::unique_ptr<quillon::TrBase>> clones_;
};

// Shows what derived filters can call.
class OpenFilter : public IoClippedImportFilter {
 public:
  explicit OpenFilter(quillon::IoManager& manager) : IoClippedImportFilter(manager) {}
  std::wstring GetFilterName() const override { return L"Open"; }
  std::vector<std::wstring> GetFileExtensions() const override { return {L".open"}; }
  bool CanImport(const std::wstring&) const override { return true; }

  using IoClippedImportFilter::ClipAndPass2DPath;
  using IoClippedImportFilter::ClipAndPass2DPolygon;
  using IoClippedImportFilter::ClipAndPass2DPolyline;
  using IoClippedImportFilter::CopyCoords;
  using IoClippedImportFilter::PassClippedPolygon;
  using IoClippedImportFilter::PassClippedPolylines;
  using IoClippedImportFilter::PassPolyline;
};

class ClippedTest : public testing::Test {
 protected:
  using Vec3d = corvel::Vec3d;
  using Texts = std::vector<std::string>;

  // Corners at (0, 0) and (10, 10).
  static quillon::TrClipPath Square() {
    return quillon::TrClipPath({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}});
  }
  // The half of that below its falling diagonal.
  static quillon::TrClipPath Triangle() {
    return quillon::TrClipPath({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}});
  }

  // A copy, so that tests may give objects that they make in passing.
  template <class Object>
  void Import(Object object) {
    filter_.ImportObject(object);
  }

  // What is delivered of an object.
  template <class Object>
  Texts Delivered(const Object& object) {
    manager_.Clear();
    Import(object);
    return manager_.Texts();
  }
  template <class Object>
  Texts DeliveredAreas(const Object& object) {
    manager_.Clear();
    Import(object);
    return manager_.AreaTexts();
  }

  // Whether an object arrives as the very same.
  template <class Object>
  bool PassesWhole(Object object) {
    manager_.Clear();
    filter_.ImportObject(object);
    return manager_.Size() == 1 && manager_.Address(0) == &object &&
           TextOf(manager_.At(0)) == TextOf(object);
  }

  // Whether all arrive, each as the very same, and nothing else does.
  void ExpectWholeAndInOrder(const std::vector<quillon::TrBase*>& objects) {
    manager_.Clear();
    for (quillon::TrBase* object : objects) filter_.ImportObject(*object);
    ASSERT_EQ(manager_.Size(), objects.size());
    for (std::size_t i = 0; i < objects.size(); ++i)
      EXPECT_EQ(manager_.Address(i), objects[i]) << i;
  }

  // What is left of the line y = 1 from x = -100 to 100: tells the clip region.
  Texts Probe() { return Delivered(quillon::TrPolyline({{-100, 1, 0}, {100, 1, 0}})); }
  static Texts Unclipped() { return {"TrPolyline -100 1 0, 100 1 0"}; }
  static Texts Within(const char* from, const char* to) {
    return {std::string("TrPolyline ") + from + " 1 0, " + to + " 1 0"};
  }

  RecordingManager manager_;
  OpenFilter filter_{manager_};
};

}  // namespace trovan::test
