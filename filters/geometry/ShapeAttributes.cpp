#include "ShapeAttributes.h"

#include <string_view>
#include <utility>
#include <vector>

#include <corvel/Text.h>
#include <kerno/TextCodec.h>

#include "filters/support/CodePageNames.h"
#include "filters/support/RowWriter.h"
#include "filters/table/CodePageChoice.h"
#include "filters/table/ColumnPlan.h"
#include "filters/table/FieldValue.h"
#include "filters/table/MemoFile.h"
#include "filters/table/RecordReader.h"
#include "filters/table/SideFiles.h"
#include "filters/table/TableLayout.h"

namespace trovan::filters {
namespace {

// Takes the values of one record as parameters.
class ParamRow : public RowWriter {
 public:
  void Begin(const std::vector<std::string>& columns) override {
    for (const std::string& column : columns) keys_.push_back(corvel::WideFromUtf8(column));
  }
  void BeginRow() override {
    params_.Clear();
    column_ = 0;
  }
  void Null() override { ++column_; }
  void Text(std::string_view text) override {
    if (!text.empty()) params_.Set(keys_[column_], corvel::WideFromUtf8(text));
    ++column_;
  }
  void Number(std::string_view number) override { Text(number); }
  void Logical(bool value) override { Text(value ? "true" : "false"); }
  void BeginLongText() override { longText_.clear(); }
  void LongTextPiece(std::string_view piece) override { longText_ += piece; }
  void EndLongText() override { Text(longText_); }
  void EndRow() override {}
  void End() override {}

  const corvel::CParamList& Params() const { return params_; }

 private:
  std::vector<std::wstring> keys_;
  std::size_t column_ = 0;  // the next one
  std::string longText_;
  corvel::CParamList params_;
};

std::vector<std::string> Names(const ColumnPlan& plan) {
  std::vector<std::string> names;
  names.reserve(plan.columns.size());
  for (const Column& column : plan.columns) names.push_back(column.name);
  return names;
}

}  // namespace

class ShapeAttributes::Table {
 public:
  Table(const std::wstring& path, std::optional<int> codePage, Problems& problems)
      : problems_(problems),
        layout_(ReadTableLayout(path)),
        choice_(ChooseCodePage(path, layout_, codePage)),
        codec_((RequireConvertible(choice_.number, choice_.reason), choice_.number)),
        plan_(PlanColumns(layout_, codec_)),
        records_(path, layout_),
        memo_(OpenMemos(path, layout_, plan_, records_.Reader(), problems_)),
        value_(plan_, codec_, memo_.get(), false, problems_) {
    row_.Begin(Names(plan_));
  }

  corvel::CParamList Read(std::uint32_t index) {
    Record record;
    if (index >= layout_.recordCount || !records_.Read(index, record)) {
      if (!endTold_)
        problems_.Add("there are no attributes from record " +
                      std::to_string(std::uint64_t{index} + 1) + " on");
      endTold_ = true;
      return {};
    }
    row_.BeginRow();
    for (const Column& column : plan_.columns) value_.Write(column, record, index, row_);
    return row_.Params();
  }

  std::uint64_t Malformed() const { return value_.Malformed(); }
  int CodePage() const { return choice_.number; }

 private:
  Problems& problems_;
  TableLayout layout_;
  CodePageChoice choice_;
  kerno::TextCodec codec_;
  ColumnPlan plan_;
  RecordReader records_;
  std::unique_ptr<MemoFile> memo_;
  FieldValue value_;
  ParamRow row_;
  bool endTold_ = false;
};

std::unique_ptr<ShapeAttributes> ShapeAttributes::Open(const std::wstring& path,
                                                       std::optional<int> codePage,
                                                       Problems& problems) {
  const auto side = FindSideFile(path, L".dbf");
  if (!side) return nullptr;
  return std::unique_ptr<ShapeAttributes>(
      new ShapeAttributes(std::make_unique<Table>(side->path, codePage, problems)));
}

ShapeAttributes::ShapeAttributes(std::unique_ptr<Table> table) : table_(std::move(table)) {}
ShapeAttributes::~ShapeAttributes() = default;

corvel::CParamList ShapeAttributes::Read(std::uint32_t index) { return table_->Read(index); }
std::uint64_t ShapeAttributes::Malformed() const { return table_->Malformed(); }
int ShapeAttributes::CodePage() const { return table_->CodePage(); }

}  // namespace trovan::filters
