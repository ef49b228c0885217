// Any bytes as a table in memory. The reader must answer as its literal model does.
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <trovan/DBFReader.h>

#include "Require.h"
#include "tables/DBFReaderModel.h"

using trovan::CDBFReader;
using trovan::test::DBFReaderModel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A block of its own: the address sanitizer sees a read behind its end.
  const std::vector<unsigned char> table(data, data + size);
  const auto model = DBFReaderModel::Memory(std::string(table.begin(), table.end()));
  // Which of its many records are asked for depends on nothing but the input.
  std::mt19937 random(static_cast<unsigned>(size));

  CDBFReader reader;
  // A vector without bytes may have no block: to the reader that is a null pointer.
  const auto status = reader.OpenFromMemory(table.data(), static_cast<unsigned>(size));
  trovan::fuzz::Require(status == model.OpenStatus(), "opening");
  const std::string disagreement = Disagreement(reader, model, random);
  trovan::fuzz::Require(disagreement.empty(), disagreement);
  return 0;
}
