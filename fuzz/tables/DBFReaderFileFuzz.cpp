// Any bytes as a table file with a memo file beside it. The reader must answer as its literal model
// does.
//
// The first byte tells the kind of the memo file (even: ".fpt", odd: ".dbt"), the next two how many
// bytes of the rest are the table (the low one first); what is left is the memo file.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>

#include <trovan/DBFReader.h>

#include "Require.h"
#include "support/TempFolder.h"
#include "tables/DBFReaderModel.h"

using trovan::CDBFReader;
using trovan::test::DBFReaderModel;

namespace {

struct Files {
  std::string table;
  std::string memo;
  bool isFpt;
};

Files Split(const std::string& input) {
  const auto byte = [&input](std::size_t at) { return static_cast<unsigned char>(input[at]); };
  const std::string rest = input.substr(3);
  const std::size_t tableSize = std::min<std::size_t>(byte(1) + 256U * byte(2), rest.size());
  return {rest.substr(0, tableSize), rest.substr(tableSize), byte(0) % 2 == 0};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  const Files files = Split(std::string(data, data + size));

  static const trovan::test::TempFolder folder;
  const char* name = files.isFpt ? "table.fpt" : "table.dbt";
  std::filesystem::remove(folder.Path() / (files.isFpt ? "table.dbt" : "table.fpt"));
  trovan::test::WriteBytes(folder.Path() / "table.dbf", files.table);
  trovan::test::WriteBytes(folder.Path() / name, files.memo);

  const auto model =
      DBFReaderModel::File(files.table, DBFReaderModel::Memo{files.memo, files.isFpt ? 64 : 512});
  std::mt19937 random(static_cast<unsigned>(size));
  const std::wstring path = folder.File(L"table.dbf");
  CDBFReader reader;
  trovan::fuzz::Require(reader.OpenFromFile(path) == model.OpenStatus(), "opening");
  const std::string disagreement = Disagreement(reader, model, random);
  trovan::fuzz::Require(disagreement.empty(), disagreement);
  trovan::fuzz::Require(CDBFReader::CheckDBFFile(path) == trovan::test::ModelCheck(files.table),
                        "checking");
  return 0;
}
