#include "TableReport.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <set>
#include <string_view>

#include <corvel/Exception.h>
#include <corvel/Text.h>
#include <kerno/TextCodec.h>
#include <trovan/DBFReader.h>

#include "filters/support/FilterError.h"
#include "filters/table/ColumnPlan.h"
#include "filters/table/FieldText.h"
#include "filters/table/MemoFile.h"
#include "filters/table/RecordReader.h"

namespace trovan::filters {
namespace {

constexpr int kUtf8 = 65001;
constexpr int kSystemOem = 1;
constexpr std::uint32_t kRecordsBetweenReports = 4096;
constexpr std::uint32_t kRecordsSampled = 1000;  // to guess at the code page

std::string Count(std::uint64_t number, const char* one, const char* many) {
  return std::to_string(number) + ' ' + (number == 1 ? one : many);
}

// Field names that the code page cannot give are shown by their ASCII letters.
kerno::TextCodec NameCodec(int codePage) {
  return kerno::TextCodec(kerno::TextCodec::IsConvertible(codePage) ? codePage : kSystemOem);
}

std::vector<FieldReport> ReportFields(const TableLayout& layout, int codePage) {
  kerno::TextCodec codec = NameCodec(codePage);
  std::vector<FieldReport> fields;
  for (std::size_t i = 0; i < layout.fields.size(); ++i) {
    const FieldLayout& field = layout.fields[i];
    FieldReport report;
    report.name = FieldName(field, i, codec);
    report.type = field.type;
    report.kind = DescribeColumnKind(KindOfField(layout, field));
    report.length = field.length;
    report.decimals = field.decimals;
    report.hidden = (field.flags & kSystemField) != 0;
    fields.push_back(std::move(report));
  }
  return fields;
}

bool IsMemo(const TableLayout& layout, const FieldLayout& field) {
  const ColumnKind kind = KindOfField(layout, field);
  return kind == ColumnKind::kMemoText || kind == ColumnKind::kMemoBytes;
}

// Looks at every record: counts flags, and samples the texts.
class RecordScan {
 public:
  RecordScan(const TableLayout& layout, RecordReader& records)
      : layout_(layout), records_(records) {}

  void Run(corvel::IProgress* progress) {
    Record record;
    for (std::uint32_t index = 0; index < layout_.recordCount; ++index) {
      const bool report = progress != nullptr && index % kRecordsBetweenReports == 0;
      if (report && !progress->Update(static_cast<double>(index) / layout_.recordCount)) return;
      if (!records_.Read(index, record)) return;
      deleted += record.IsDeleted() ? 1 : 0;
      otherFlags += record.flag != ' ' && record.flag != '*' ? 1 : 0;
      if (index < kRecordsSampled) SampleTexts(record);
    }
  }

  bool LooksLikeUtf8() const { return textsBeyondAscii_ > 0 && textsNotUtf8_ == 0; }

  std::uint64_t deleted = 0;
  std::uint64_t otherFlags = 0;

 private:
  void SampleTexts(const Record& record) {
    for (const FieldLayout& field : layout_.fields) {
      if (field.type != 'C' || field.offset + field.length > record.present) continue;
      const std::string_view text(reinterpret_cast<const char*>(record.data) + field.offset,
                                  field.length);
      const bool ascii = std::all_of(text.begin(), text.end(),
                                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
      if (ascii) continue;
      ++textsBeyondAscii_;
      scratch_.clear();
      if (utf8_.AppendUtf8(TrimEnd(text), scratch_) > 0) ++textsNotUtf8_;
    }
  }

  const TableLayout& layout_;
  RecordReader& records_;
  kerno::TextCodec utf8_{kUtf8};
  std::string scratch_;
  std::uint64_t textsBeyondAscii_ = 0;
  std::uint64_t textsNotUtf8_ = 0;
};

using Oddities = std::vector<std::string>;

void NoteHeader(const TableLayout& layout, Oddities& odd) {
  if (!layout.terminated) odd.emplace_back("The field list has no terminator (byte 0D).");
  if (layout.bytesAfterTerminator > 0) {
    std::string note = Count(layout.bytesAfterTerminator, "byte follows", "bytes follow") +
                       " the field list in the header";
    if (layout.bytesAfterTerminator == 263) note += " (the back link of Visual FoxPro)";
    odd.push_back(note + ".");
  }
  if (layout.SumOfFieldLengths() + 1 != layout.recordLength) {
    odd.push_back("The fields take " + std::to_string(layout.SumOfFieldLengths() + 1) +
                  " bytes with the deletion flag, but records have " +
                  std::to_string(layout.recordLength) + ".");
  }
  if (layout.transactionByte != 0) odd.emplace_back("A transaction was not finished.");
  if (layout.encryptionByte != 0) {
    odd.emplace_back("The table is marked as encrypted: its values will make no sense.");
  }
  if (layout.fields.empty()) odd.emplace_back("The table has no field.");
}

void NoteNames(const std::vector<FieldReport>& fields, Oddities& odd) {
  std::set<std::string> seen;
  for (const FieldReport& field : fields) {
    if (!seen.insert(field.name).second) {
      odd.push_back("More than one field is named " + field.name + ".");
    }
  }
}

void NoteLength(const TableLayout& layout, std::uint32_t present, Oddities& odd) {
  const long long end = layout.RecordOffset(layout.recordCount);
  if (layout.fileLength < end) {
    odd.push_back(
        "The file is cut off: " + std::to_string(present) + " of " +
        Count(layout.recordCount, "record is", "records are") + " there, and " +
        Count(static_cast<std::uint64_t>(end - layout.fileLength), "byte is", "bytes are") +
        " missing at the end.");
  } else if (layout.fileLength > end + 1) {
    odd.push_back(
        Count(static_cast<std::uint64_t>(layout.fileLength - end), "byte follows", "bytes follow") +
        " the last record.");
  }
  if (layout.fileLength > std::numeric_limits<std::int32_t>::max()) {
    odd.emplace_back(
        "The file is larger than 2 GiB: the library's reader does not reach all of it, this "
        "command does.");
  }
}

void NoteReader(const TableLayout& layout, const std::wstring& path, CDBFReader& reader,
                Oddities& odd) {
  if (reader.CountFields() != layout.fields.size()) {
    odd.push_back("The library's reader, which goes by the header's length alone, counts " +
                  Count(reader.CountFields(), "field", "fields") + " instead of " +
                  std::to_string(layout.fields.size()) + ".");
  }
  if (CDBFReader::CheckDBFFile(path) != 1) {
    odd.emplace_back("The quick test of `trovan table check` does not take this file for a table.");
  }
}

void ReportMemo(const std::wstring& path, CDBFReader& reader, TableReport& report) {
  std::unique_ptr<MemoFile> memo;
  try {
    memo = MemoFile::Open(path, report.layout, reader);
  } catch (const FilterError& error) {
    report.oddities.emplace_back(error.what());
    return;
  } catch (const corvel::Exception& error) {
    report.oddities.push_back(error.Message());
    return;
  }
  if (memo == nullptr) {
    report.oddities.emplace_back(
        "There are memo fields, but no memo file (.fpt or .dbt) beside the table.");
    return;
  }
  report.memo = MemoReport{corvel::Utf8FromWide(memo->File().path),
                           std::string(DescribeMemoKind(memo->Kind())), memo->BlockSize()};
  if (!memo->File().foundInSmallLetters) {
    report.oddities.push_back("The library's reader does not find " + report.memo->file +
                              ", since it looks for extensions in small letters; rename it to help "
                              "other programs. This command reads it all the same.");
  }
}

void NoteTexts(const TableReport& report, const RecordScan& scan, Oddities& odd) {
  if (report.codePage.number != kUtf8 && scan.LooksLikeUtf8()) {
    odd.emplace_back(
        "The texts look like UTF-8: if letters come out wrong, ask for code page 65001.");
  }
  if (!kerno::TextCodec::IsConvertible(report.codePage.number)) {
    odd.push_back("Code page " + std::to_string(report.codePage.number) +
                  " cannot be read here: ask for another one.");
  }
  if (scan.otherFlags > 0) {
    odd.push_back(Count(scan.otherFlags, "record has", "records have") +
                  " a deletion flag that is neither a blank nor an asterisk.");
  }
}

}  // namespace

TableReport ReportTable(const std::wstring& path, std::optional<int> codePage,
                        corvel::IProgress* progress) {
  TableReport report;
  report.layout = ReadTableLayout(path);
  report.codePage = ChooseCodePage(path, report.layout, codePage);
  report.fields = ReportFields(report.layout, report.codePage.number);
  report.hasMemoFields =
      std::any_of(report.layout.fields.begin(), report.layout.fields.end(),
                  [&](const FieldLayout& field) { return IsMemo(report.layout, field); });

  RecordReader records(path, report.layout);
  report.recordsPresent = records.CountPresent();
  if (report.hasMemoFields) ReportMemo(path, records.Reader(), report);
  RecordScan scan(report.layout, records);
  scan.Run(progress);
  report.deletedRecords = scan.deleted;

  Oddities& odd = report.oddities;
  NoteHeader(report.layout, odd);
  NoteNames(report.fields, odd);
  NoteLength(report.layout, report.recordsPresent, odd);
  NoteReader(report.layout, path, records.Reader(), odd);
  NoteTexts(report, scan, odd);
  odd.insert(odd.end(), report.codePage.remarks.begin(), report.codePage.remarks.end());
  return report;
}

}  // namespace trovan::filters
