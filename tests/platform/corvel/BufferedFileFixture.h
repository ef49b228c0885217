// The vocabulary of the tests of the buffered file.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <corvel/BufferedFile.h>

#include "support/TempFolder.h"

namespace corvel {

namespace fs = std::filesystem;
using trovan::test::ReadBytes;
using trovan::test::TempFolder;
using trovan::test::WriteBytes;

inline constexpr std::size_t kBuffer = 64 * 1024;

// Bytes whose value tells their place, with a period that divides no buffer.
inline std::string Pattern(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i % 251);
  return bytes;
}

class BufferedFileTest : public testing::Test {
 protected:
  // A file with `bytes`, opened.
  void OpenWith(const std::string& bytes, const char* mode = "rb") {
    WriteBytes(disk_, bytes);
    Open(mode);
  }
  void Open(const char* mode) { file_.Open(path_, mode, kFileExclusive, false); }
  bool TryOpen(const char* mode) { return file_.OpenNoThrow(path_, mode, kFileExclusive, false); }

  std::string Read(std::size_t count) {
    std::string bytes(count + 1, '\0');  // never empty
    bytes.resize(file_.Read(bytes.data(), count));
    return bytes;
  }
  void Write(const std::string& bytes) { file_.Write(bytes.data(), bytes.size()); }
  std::string OnDisk() const { return ReadBytes(disk_); }

  std::vector<std::string> Lines() {
    std::vector<std::string> lines;
    for (std::string line; file_.ReadString(line);) lines.push_back(line);
    return lines;
  }

  TempFolder folder_;
  const fs::path disk_ = folder_.Path() / "file.bin";
  const std::wstring path_ = folder_.File(L"file.bin");
  CBufferedFile file_;
};

}  // namespace corvel
