// Any bytes as delimited text, in any format: the rows are those of a plain model, and their lines
// ascend. The first byte chooses the format and the comment; the rest is the file. No bytes at all
// make the sniffer stumble.
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string>

#include <corvel/BufferedFile.h>

#include "Require.h"
#include "filters/support/FilterError.h"
#include "filters/text/DelimitedReader.h"
#include "filters/text/DelimitedReaderModel.h"
#include "filters/text/TextSniffer.h"
#include "support/TempFolder.h"

namespace {

using trovan::filters::DelimitedFormat;
using trovan::filters::DelimitedReader;
using trovan::fuzz::Require;
using trovan::test::DelimitedReaderModel;
using trovan::test::ModelRow;
using trovan::test::ModelRows;

const DelimitedFormat kFormats[] = {{",", "", "\""},     {"", " \t", "\""}, {";", "", "\"'"},
                                    {"\t", "", ""},      {",", " ", "\""},  {"", "", "\""},
                                    {",;|", " \t", "'"}, {"", "", ""}};

struct Settings {
  DelimitedFormat format;
  char comment;
};

Settings Choose(unsigned char byte) {
  return {kFormats[byte % std::size(kFormats)], (byte & 0x80) != 0 ? '#' : '\0'};
}

void RequireSame(const DelimitedReader& reader, const ModelRow& model) {
  Require(reader.Line() == model.line, "another line");
  const auto row = reader.Row();
  Require(row.size() == model.fields.size(), "another number of fields");
  for (std::size_t i = 0; i < row.size(); ++i) {
    Require(row[i].text == model.fields[i].text, "another text");
    Require(row[i].quoted == model.fields[i].quoted, "quoted otherwise");
  }
}

void RequireLaws(const DelimitedReader& reader, unsigned long long lastLine) {
  Require(!reader.Row().empty(), "a row without fields");
  Require(reader.Line() >= lastLine, "a line in front of the last one");
  for (const auto& field : reader.Row()) {
    Require(field.text.find_first_of(std::string_view("\r\0", 2)) == std::string_view::npos,
            "a byte that is to be dropped");
    Require(field.quoted || field.text.find('\n') == std::string_view::npos,
            "a line end outside quotes");
  }
}

void ReadRows(corvel::CBufferedFile& file, const Settings& settings, const ModelRows& model) {
  DelimitedReader reader(file, "in.csv", settings.format, settings.comment);
  std::size_t rows = 0;
  unsigned long long line = 0;
  try {
    while (reader.ReadRow()) {
      RequireLaws(reader, line);
      Require(rows < model.rows.size(), "a row too many");
      RequireSame(reader, model.rows[rows]);
      line = reader.Line();
      ++rows;
    }
    Require(!model.openQuote, "an open quote was not seen");
  } catch (const trovan::filters::FilterError&) {
    Require(model.openQuote, "an error without a cause");
  }
  Require(rows == model.rows.size(), "a row is missing");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static const trovan::test::TempFolder folder;
  const Settings settings = Choose(data[0]);
  const std::string text(data + 1, data + size);
  trovan::test::WriteBytes(folder.Path() / "in.csv", text);
  corvel::CBufferedFile file;
  file.Open(folder.File(L"in.csv"), "rb", corvel::kFileShareRead, false);
  ReadRows(file, settings, DelimitedReaderModel(text, settings.format, settings.comment).Read());
  const auto report = trovan::filters::SniffText(folder.File(L"in.csv"));
  Require(report.rowsOfThatWidth <= report.rows, "more rows of one width than rows");
  Require(!report.delimited || report.columns >= 2, "delimited into one column");
  return 0;
}
