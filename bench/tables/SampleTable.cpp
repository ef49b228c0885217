#include "SampleTable.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

namespace trovan::bench {
namespace {

struct Field {
  const char* name;
  char type;
  unsigned char length;
  unsigned char decimals;
};

constexpr std::array kFields = {
    Field{"ID", 'N', 10, 0},        Field{"NAME", 'C', 40, 0},     Field{"CODE", 'C', 8, 0},
    Field{"COUNTRY", 'C', 2, 0},    Field{"REGION", 'C', 24, 0},   Field{"CLASS", 'C', 10, 0},
    Field{"POP", 'N', 10, 0},       Field{"AREA_KM2", 'N', 14, 3}, Field{"LATITUDE", 'N', 11, 6},
    Field{"LONGITUDE", 'N', 11, 6}, Field{"FOUNDED", 'D', 8, 0},   Field{"CAPITAL", 'L', 1, 0},
};
constexpr Field kMemoField{"NOTES", 'M', 10, 0};

constexpr std::string_view kStarts[] = {"San", "New", "M\xFCnch", "Stock",  "\xC5l", "Villa",
                                        "Oak", "Nor", "Bel",      "S\xE3o", "Kirk",  "Lang"};
constexpr std::string_view kMiddles[] = {"", "en", "holm", " del ", "ing", "a", "er", "ville"};
constexpr std::string_view kEnds[] = {"ton", "berg", "dorf", " City", "by", "mouth", "ara", "ow"};
constexpr std::string_view kRegions[] = {"Upper Valley",    "Lake District",  "North Coast",
                                         "Central Plateau", "Eastern, Lower", "Highlands"};
constexpr std::string_view kClasses[] = {"city", "town", "village", "hamlet"};

constexpr std::uint32_t kMemoBlock = 64;
constexpr std::uint32_t kLargestMemo = 64 * 1024 * 1024;

void PutLowFirst(std::string& out, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i) & 0xFFU);
}

void PutHighFirst(std::string& out, std::uint32_t value, int bytes) {
  for (int i = bytes; i-- > 0;) out += static_cast<char>(value >> (8 * i) & 0xFFU);
}

class BinaryFile {
 public:
  explicit BinaryFile(const std::filesystem::path& path) {
    file_.exceptions(std::ios::failbit | std::ios::badbit);
    file_.open(path, std::ios::binary | std::ios::trunc);
  }
  void Write(std::string_view bytes) {
    file_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  void WriteAt(std::streamoff offset, std::string_view bytes) {
    file_.seekp(offset);
    Write(bytes);
  }
  void Close() { file_.close(); }

 private:
  std::ofstream file_;
};

// Memos of FoxPro's kind: blocks with a type and a length, high byte first.
class MemoWriter {
 public:
  explicit MemoWriter(const std::filesystem::path& path) : file_(path) {
    file_.Write(std::string(kFptHeader, '\0'));
  }

  // Returns the block in which the memo begins.
  std::uint32_t Add(std::string_view text) {
    constexpr std::uint32_t kText = 1;
    std::string memo;
    PutHighFirst(memo, kText, 4);
    PutHighFirst(memo, static_cast<std::uint32_t>(text.size()), 4);
    memo += text;
    memo.resize((memo.size() + kMemoBlock - 1) / kMemoBlock * kMemoBlock, '\0');
    file_.Write(memo);
    const std::uint32_t block = nextBlock_;
    nextBlock_ += static_cast<std::uint32_t>(memo.size() / kMemoBlock);
    return block;
  }

  void Close() {
    std::string header;
    PutHighFirst(header, nextBlock_, 4);
    PutHighFirst(header, kMemoBlock, 4);
    file_.WriteAt(0, header);
    file_.Close();
  }

 private:
  static constexpr std::uint32_t kFptHeader = 512;

  BinaryFile file_;
  std::uint32_t nextBlock_ = kFptHeader / kMemoBlock;
};

// The values of the records, from one sequence of random numbers.
class RecordMaker {
 public:
  // Appends the 12 fields of record `index`.
  void Append(std::uint32_t index, std::string& out) {
    PutNumber(10, "%.0f", index + 1.0, out);
    std::string name(Pick(kStarts));
    name.append(Pick(kMiddles)).append(Pick(kEnds));
    PutText(40, name, out);
    char code[16];
    std::snprintf(code, sizeof code, "%c%c%05u", Letter(), Letter(), Below(100'000));
    PutText(8, code, out);
    const char country[] = {Letter(), Letter()};
    PutText(2, std::string_view(country, 2), out);
    PutText(24, IsBlank() ? std::string_view() : Pick(kRegions), out);
    PutText(10, Pick(kClasses), out);
    PutNumberOrBlank(10, "%.0f", Below(10'000'000), out);
    PutNumberOrBlank(14, "%.3f", Below(900'000'000) / 1000.0, out);
    PutNumber(11, "%.6f", Below(180'000'000) / 1e6 - 90, out);
    PutNumber(11, "%.6f", Below(360'000'000) / 1e6 - 180, out);
    char date[16];
    std::snprintf(date, sizeof date, "%04u%02u%02u", 1200 + Below(800), 1 + Below(12),
                  1 + Below(28));
    PutText(8, IsBlank() ? std::string_view() : std::string_view(date), out);
    out += Below(100) == 0 ? 'T' : 'F';
  }

  // About 2 KiB of plain text.
  std::string_view MemoText() {
    if (notes_.empty()) notes_ = LongText(4096);
    return std::string_view(notes_).substr(0, 1024 + Below(2048));
  }

  std::string LongText(std::size_t length) {
    std::string text;
    text.reserve(length + 80);
    while (text.size() < length) {
      text.append(Pick(kRegions)).append(Pick(kMiddles)).append(Pick(kEnds));
      text += Below(12) == 0 ? '\n' : ' ';
    }
    text.resize(length);
    return text;
  }

 private:
  // Small ranges only: what the remainder favours does not matter here.
  std::uint32_t Below(std::uint32_t end) { return static_cast<std::uint32_t>(random_() % end); }
  bool IsBlank() { return Below(30) == 0; }
  char Letter() { return static_cast<char>('A' + Below(26)); }

  template <std::size_t n>
  std::string_view Pick(const std::string_view (&texts)[n]) {
    return texts[Below(n)];
  }

  static void PutText(std::size_t length, std::string_view text, std::string& out) {
    const std::string_view kept = text.substr(0, length);
    out.append(kept).append(length - kept.size(), ' ');
  }

  static void PutNumber(std::size_t length, const char* format, double value, std::string& out) {
    char digits[32];
    const auto size = static_cast<std::size_t>(std::snprintf(digits, sizeof digits, format, value));
    out.append(length - std::min(length, size), ' ').append(digits, size);
  }

  void PutNumberOrBlank(std::size_t length, const char* format, double value, std::string& out) {
    if (IsBlank()) {
      out.append(length, ' ');
    } else {
      PutNumber(length, format, value, out);
    }
  }

  std::mt19937_64 random_{20'240'229};
  std::string notes_;
};

void PutDescriptor(const Field& field, std::string& out) {
  std::string name(field.name);
  name.resize(11, '\0');
  out += name;
  out += field.type;
  out.append(4, '\0');
  out += static_cast<char>(field.length);
  out += static_cast<char>(field.decimals);
  out.append(14, '\0');
}

std::string MakeHeader(std::uint32_t records, bool withMemos) {
  constexpr unsigned kPlainTable = 0x03;
  constexpr unsigned kFoxProWithMemos = 0xF5;
  constexpr unsigned kWindowsAnsi = 0x57;
  const std::size_t fields = kFields.size() + (withMemos ? 1 : 0);
  const std::uint32_t length = kSampleRecordLength + (withMemos ? kMemoField.length : 0);
  std::string header;
  header += static_cast<char>(withMemos ? kFoxProWithMemos : kPlainTable);
  header.append({124, 2, 29});  // the date of the last change
  PutLowFirst(header, records, 4);
  PutLowFirst(header, static_cast<std::uint32_t>(32 + 32 * fields + 1), 2);
  PutLowFirst(header, length, 2);
  header.append(17, '\0');
  header += static_cast<char>(kWindowsAnsi);
  header.append(2, '\0');
  for (const Field& field : kFields) PutDescriptor(field, header);
  if (withMemos) PutDescriptor(kMemoField, header);
  header += '\r';
  return header;
}

}  // namespace

void WriteSampleTable(const std::filesystem::path& path, std::uint32_t records, SampleMemos memos) {
  const bool withMemos = memos == SampleMemos::kWithMemos;
  BinaryFile table(path);
  table.Write(MakeHeader(records, withMemos));
  RecordMaker maker;
  std::string record;
  if (!withMemos) {
    for (std::uint32_t index = 0; index < records; ++index) {
      record = ' ';
      maker.Append(index, record);
      table.Write(record);
    }
  } else {
    MemoWriter memo(std::filesystem::path(path).replace_extension(".fpt"));
    for (std::uint32_t index = 0; index < records; ++index) {
      record = ' ';
      maker.Append(index, record);
      const std::uint32_t block =
          index == 0 ? memo.Add(maker.LongText(kLargestMemo)) : memo.Add(maker.MemoText());
      char pointer[16];
      std::snprintf(pointer, sizeof pointer, "%10u", block);
      table.Write(record.append(pointer));
    }
    memo.Close();
  }
  table.Write("\x1A");
  table.Close();
}

}  // namespace trovan::bench
