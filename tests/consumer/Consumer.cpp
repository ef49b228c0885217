// Writes a small table and its side file, reads both back through the installed library, and prints
// what it finds. Ends with 1 when that is not what was written.

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <trovan/DBFCodePages.h>
#include <trovan/DBFReader.h>

namespace {

using trovan::CDBFReader;

// A table of two records with one field, "NAME", of 8 characters.
std::string TableBytes() {
  const auto u16 = [](unsigned value) {
    return std::string{static_cast<char>(value & 255), static_cast<char>(value >> 8)};
  };
  std::string header = "\x03\x7C\x01\x01" + u16(2) + u16(0) + u16(32 + 32 + 1) + u16(1 + 8);
  header.resize(32);
  std::string field = "NAME";
  field.resize(11);
  field += 'C';
  field.resize(16);
  field += '\x08';
  field.resize(32);
  return header + field + "\r Oslo     Rome    \x1A";
}

int Fail(const char* what) {
  std::fprintf(stderr, "consumer: %s\n", what);
  return 1;
}

}  // namespace

int main() {
  std::ofstream("towns.dbf", std::ios::binary) << TableBytes();
  trovan::CPGFileWrite(L"towns.dbf", 65001);
  if (trovan::CPGFileRead(L"towns.dbf") != 65001) return Fail("the side file reads differently");

  CDBFReader reader;
  if (reader.OpenFromFile(L"towns.dbf") != CDBFReader::DBF_OK) return Fail("no table");
  std::vector<char> record(reader.RecordSize());
  std::string names;
  for (unsigned i = 0; i < reader.CountRecords(); ++i) {
    if (reader.EnumRecord(i, record.data(), reader.RecordSize()) != CDBFReader::DBF_OK) {
      return Fail("no record");
    }
    names.append(record.data() + reader.EnumFieldOffset(0), 8).append("|");
  }
  std::printf("%s\n", names.c_str());
  return names == "Oslo    |Rome    |" ? 0 : Fail("the records read differently");
}
