#include "TableExport.h"

#include <memory>

#include <kerno/TextCodec.h>

#include "filters/support/CodePageNames.h"
#include "filters/table/CodePageChoice.h"
#include "filters/table/ColumnPlan.h"
#include "filters/table/FieldValue.h"
#include "filters/table/MemoFile.h"
#include "filters/table/RecordReader.h"
#include "filters/table/TableLayout.h"

namespace trovan::filters {
namespace {

constexpr std::uint32_t kRecordsBetweenReports = 1024;

// Memos may be long: a user who wants to stop waits for one record at most.
std::uint32_t RecordsBetweenReports(const MemoFile* memo) {
  return memo != nullptr ? 1 : kRecordsBetweenReports;
}

std::vector<std::string> ColumnNames(const ColumnPlan& plan, bool withDeleted) {
  std::vector<std::string> names;
  if (withDeleted) names.emplace_back(kDeletedColumn);
  for (const Column& column : plan.columns) names.push_back(column.name);
  return names;
}

// The rows of one table: those that are wanted, in order.
class Export {
 public:
  Export(const std::wstring& path, const TableExportOptions& options, RowWriter& writer,
         TableExportResult& result)
      : options_(options),
        writer_(writer),
        result_(result),
        layout_(ReadTableLayout(path)),
        choice_(ChooseCodePage(path, layout_, options.codePage)),
        codec_((RequireConvertible(choice_.number, choice_.reason), choice_.number)),
        plan_(PlanColumns(layout_, codec_)),
        records_(path, layout_),
        memo_(OpenMemos(path, layout_, plan_, records_.Reader(), result.problems)),
        value_(plan_, codec_, memo_.get(), options.raw, result.problems) {
    result_.codePage = choice_.number;
  }

  void Run(corvel::IProgress* progress) {
    writer_.Begin(ColumnNames(plan_, options_.withDeleted));
    const std::uint32_t interval = RecordsBetweenReports(memo_.get());
    std::uint64_t wanted = 0;
    Record record;
    for (std::uint32_t index = 0; index < layout_.recordCount; ++index) {
      if (options_.limit && result_.rows >= *options_.limit) break;
      if (index % interval == 0 && !GoOn(progress, index)) break;
      if (!records_.Read(index, record)) {
        result_.problems.Add("the file ends after record " + std::to_string(index) + " of the " +
                             std::to_string(layout_.recordCount) + " that its header promises");
        break;
      }
      if (record.IsDeleted() && !options_.withDeleted) continue;
      if (wanted++ < options_.skip) continue;
      WriteRow(record, index);
    }
    writer_.End();
    result_.malformed = value_.Malformed();
  }

 private:
  bool GoOn(corvel::IProgress* progress, std::uint32_t index) {
    result_.cancelled =
        progress != nullptr && !progress->Update(static_cast<double>(index) / layout_.recordCount);
    return !result_.cancelled;
  }

  void WriteRow(const Record& record, std::uint32_t index) {
    if (record.present < layout_.DataLength()) {
      result_.problems.Add("record " + std::to_string(std::uint64_t{index} + 1) +
                           " is cut off: the file ends after " + std::to_string(record.present) +
                           " of its " + std::to_string(layout_.DataLength()) + " bytes");
    }
    writer_.BeginRow();
    if (options_.withDeleted) writer_.Logical(record.IsDeleted());
    for (const Column& column : plan_.columns) value_.Write(column, record, index, writer_);
    writer_.EndRow();
    ++result_.rows;
  }

  const TableExportOptions& options_;
  RowWriter& writer_;
  TableExportResult& result_;
  TableLayout layout_;
  CodePageChoice choice_;
  kerno::TextCodec codec_;
  ColumnPlan plan_;
  RecordReader records_;
  std::unique_ptr<MemoFile> memo_;
  FieldValue value_;
};

}  // namespace

TableExportResult ExportTable(const std::wstring& path, const TableExportOptions& options,
                              RowWriter& writer, corvel::IProgress* progress) {
  TableExportResult result;
  Export(path, options, writer, result).Run(progress);
  return result;
}

}  // namespace trovan::filters
