#include <quillon/IoImportFilter.h>

#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <quillon/TrPen.h>

#include "Slots.h"

namespace quillon {
namespace {

using testing::HasSubstr;

class Recorder : public IoManager {
 public:
  void ImportObject(TrBase& object) override { objects.push_back(&object); }
  std::vector<const TrBase*> objects;
};

class PlainFilter : public IoImportFilter {
 public:
  explicit PlainFilter(IoManager& manager) : IoImportFilter(manager) {}
  std::wstring GetFilterName() const override { return L"Plain"; }
  std::vector<std::wstring> GetFileExtensions() const override { return {L".plain"}; }
  bool CanImport(const std::wstring&) const override { return true; }
};

class IoImportFilterTest : public testing::Test {
 protected:
  Recorder manager_;
  PlainFilter filter_{manager_};
};

TEST_F(IoImportFilterTest, DeliversTheVeryObjectsInOrder) {
  TrPen first;
  TrPen second;
  filter_.ImportObject(first);
  filter_.ImportObject(second);
  EXPECT_EQ(manager_.objects, (std::vector<const TrBase*>{&first, &second}));
}

TEST_F(IoImportFilterTest, HasNoOptionsOfItsOwn) {
  std::vector<IoPropertyPage*> pages;
  filter_.GetPropertyPages(pages, L"a.plain");
  EXPECT_TRUE(pages.empty());
  filter_.SetOptionsFromString(L"any");
  EXPECT_EQ(filter_.GetOptionsInStringForm(), L"");
  EXPECT_EQ(filter_.GetOptionStringDelimiter(), L';');
}

TEST_F(IoImportFilterTest, KnowsNothingOfAFile) {
  EXPECT_FALSE(filter_.GetImportFileInfo(IoImportFilter::kScanFile, L"a.plain").isKnown);
  EXPECT_FALSE(filter_.HasDelayedImport());
}

TEST_F(IoImportFilterTest, ReadsNothingByItself) {
  EXPECT_THROW(filter_.ImportFromFile(L"a.plain", false), std::runtime_error);
  EXPECT_THROW(filter_.ImportFromMemory(nullptr, 0, false), std::runtime_error);
}

TEST(IoFilter, RaisesTwoKindsOfErrorsThatNameThePlace) {
  static_assert(!std::is_base_of_v<InternalError, AbortError>);
  static_assert(!std::is_base_of_v<AbortError, InternalError>);
  static_assert(std::is_base_of_v<std::runtime_error, InternalError>);
  static_assert(std::is_base_of_v<std::runtime_error, AbortError>);
  try {
    IoFilter::Throw_ERR_INTERNAL("SomeFilter", 997);
  } catch (const InternalError& error) {
    EXPECT_THAT(error.what(), HasSubstr("SomeFilter, line 997"));
  }
  try {
    IoFilter::Throw_ABORT("SomeFilter", 1025);
  } catch (const AbortError& error) {
    EXPECT_THAT(error.what(), HasSubstr("SomeFilter, line 1025"));
  }
  EXPECT_THROW(IoFilter::Throw_ERR_INTERNAL("F", 1), InternalError);
  EXPECT_THROW(IoFilter::Throw_ABORT("F", 1), AbortError);
}

TEST(IoFilter, KeepsTheOrderOfItsVirtualOperations) {
#if defined(QUILLON_TEST_KNOWS_SLOTS)
  static_assert(std::has_virtual_destructor_v<IoFilter>);
  EXPECT_EQ(SlotOf(&IoFilter::GetFilterName), 1U);
  EXPECT_EQ(SlotOf(&IoFilter::GetPropertyPages), 2U);
  EXPECT_EQ(SlotOf(&IoFilter::SetOptionsFromString), 3U);
  EXPECT_EQ(SlotOf(&IoFilter::GetOptionsInStringForm), 4U);
  EXPECT_EQ(SlotOf(&IoFilter::GetOptionStringDelimiter), 5U);
  EXPECT_EQ(SlotOf(&IoFilter::GetFileExtensions), 6U);
  EXPECT_EQ(SlotOf(&IoFilter::CanImport), 7U);
  EXPECT_EQ(SlotOf(&IoImportFilter::GetImportFileInfo), 8U);
  EXPECT_EQ(SlotOf(&IoImportFilter::HasDelayedImport), 9U);
  EXPECT_EQ(SlotOf(&IoImportFilter::ImportFromFile), 10U);
  EXPECT_EQ(SlotOf(&IoImportFilter::ImportFromMemory), 11U);
  EXPECT_EQ(SlotOf(&IoImportFilter::ImportObject), 12U);
#else
  GTEST_SKIP() << "the tables of this system are not known here";
#endif
}

}  // namespace
}  // namespace quillon
