// Drawings of other programs. They lie in the folder that the build names as TROVAN_TEST_DATA,
// outside the project.
#include <corvel/Path.h>

#include "clip/ClippedFixture.h"
#include "filters/svg/SvgImportFilter.h"
#include "tables/RealFiles.h"

namespace trovan::filters {
namespace {

// Every object says whether it is finite and consistent.
class CheckingManager : public quillon::IoManager {
 public:
  void ImportObject(quillon::TrBase& object) override {
    object.AssertValid();
    ++count_;
  }
  std::size_t Count() const { return count_; }

 private:
  std::size_t count_ = 0;
};

class RealDrawing : public test::RealFileTest {
 protected:
  static std::wstring Path() {
    return corvel::PathFromSystem((test::DataFolder() / GetParam()).string());
  }
};

TEST_P(RealDrawing, IsDrawnWhole) {
  CheckingManager manager;
  SvgImportFilter filter(manager);
  EXPECT_TRUE(filter.CanImport(Path()));
  filter.Open(Path());
  EXPECT_GT(filter.Page().viewBox.Width(), 0.0);
  filter.ImportFromFile(Path(), false);
  const bool hasPictureOnly = GetParam() == "svg/resvg/resources/image-033.svg";
  EXPECT_EQ(manager.Count() == 0, hasPictureOnly);
}

TEST_P(RealDrawing, IsDrawnWithinARegion) {
  CheckingManager manager;
  SvgImportFilter filter(manager);
  filter.Open(Path());
  const corvel::Box2d& box = filter.Page().viewBox;
  const double scale = filter.Scale();
  const auto corner = [&](double x, double y) {
    return corvel::Vec2d((box.min.x + x * box.Width()) * scale,
                         -(box.min.y + y * box.Height()) * scale);
  };
  filter.SetRegion({{corner(0.1, 0.4), corner(0.6, 0.1), corner(0.9, 0.8)}, {3}});
  filter.ImportFromFile(Path(), false);
}

INSTANTIATE_TEST_SUITE_P(All, RealDrawing, testing::ValuesIn(test::Keys(test::Expectations("svg"))),
                         test::TestName);

}  // namespace
}  // namespace trovan::filters
