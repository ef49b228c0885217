#include "filters/support/JsonWriter.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "StringSink.h"

namespace trovan::filters {
namespace {

using nlohmann::ordered_json;
using std::string_literals::operator""s;

// A table of one column with one row.
template <typename Put>
std::string OneValue(Put put) {
  StringSink sink;
  JsonWriter writer(sink, JsonWriter::Form::kLines);
  writer.Begin({"v"});
  writer.BeginRow();
  put(writer);
  writer.EndRow();
  writer.End();
  return sink.text;
}

std::string NumberText(const std::string& number) {
  const std::string line = OneValue([&](JsonWriter& writer) { writer.Number(number); });
  return line.substr(5, line.size() - 7);  // {"v":...}\n
}

TEST(JsonWriter, WritesAnArrayOfObjects) {
  StringSink sink;
  JsonWriter writer(sink, JsonWriter::Form::kArray);
  writer.Begin({"NAME", "POP", "BIG", "NONE"});
  for (const char* name : {"Oslo", "Rome"}) {
    writer.BeginRow();
    writer.Text(name);
    writer.Number("7");
    writer.Logical(false);
    writer.Null();
    writer.EndRow();
  }
  writer.End();
  EXPECT_EQ(sink.text,
            "[\n{\"NAME\":\"Oslo\",\"POP\":7,\"BIG\":false,\"NONE\":null},\n"
            "{\"NAME\":\"Rome\",\"POP\":7,\"BIG\":false,\"NONE\":null}\n]\n");
}

TEST(JsonWriter, WritesOneObjectALine) {
  StringSink sink;
  JsonWriter writer(sink, JsonWriter::Form::kLines);
  writer.Begin({"a"});
  for (int i = 0; i < 2; ++i) {
    writer.BeginRow();
    writer.Text("x\ny");
    writer.EndRow();
  }
  writer.End();
  EXPECT_EQ(sink.text, "{\"a\":\"x\\ny\"}\n{\"a\":\"x\\ny\"}\n");
}

TEST(JsonWriter, WritesTablesWithoutRowsOrColumns) {
  StringSink array;
  JsonWriter arrayWriter(array, JsonWriter::Form::kArray);
  arrayWriter.Begin({"a"});
  arrayWriter.End();
  EXPECT_EQ(array.text, "[]\n");

  StringSink lines;
  JsonWriter lineWriter(lines, JsonWriter::Form::kLines);
  lineWriter.Begin({});
  lineWriter.BeginRow();
  lineWriter.EndRow();
  lineWriter.End();
  EXPECT_EQ(lines.text, "{}\n");
}

TEST(JsonWriter, WritesEveryByteOfAsciiSoThatItReadsBack) {
  std::string all;
  for (int c = 0; c < 0x80; ++c) all += static_cast<char>(c);
  all += "ÅØ\xF0\x9F\x9A\x80\xEF\xBF\xBD";
  const std::string line = OneValue([&](JsonWriter& writer) { writer.Text(all); });
  EXPECT_EQ(ordered_json::parse(line)["v"].get<std::string>(), all);
  EXPECT_EQ(line.find('\n'), line.size() - 1);
}

TEST(JsonWriter, UsesTheShortEscapes) {
  EXPECT_EQ(OneValue([](JsonWriter& writer) { writer.Text("\"\\\n\r\t\x01\x1F\x7F\0"s); }),
            "{\"v\":\"\\\"\\\\\\n\\r\\t\\u0001\\u001f\x7F\\u0000\"}\n");
}

TEST(JsonWriter, SpellsNumbersAsJsonDoes) {
  const struct {
    const char* number;
    const char* json;
  } cases[] = {
      {"0", "0"},          {"-0", "-0"},
      {"+007.", "7"},      {"007", "7"},
      {"000", "0"},        {".5", "0.5"},
      {"-.5e3", "-0.5e3"}, {"+.5", "0.5"},
      {"5.", "5"},         {"5.e2", "5e2"},
      {"1E-07", "1E-07"},  {"-00.10", "-0.10"},
      {"1e+22", "1e+22"},  {"0.0", "0.0"},
      {"10", "10"},        {"12345678901234567890", "12345678901234567890"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(NumberText(c.number), c.json);
    EXPECT_TRUE(ordered_json::accept(NumberText(c.number))) << c.number;
  }
}

TEST(JsonWriter, TellsColumnsOfTheSameNameApart) {
  StringSink sink;
  JsonWriter writer(sink, JsonWriter::Form::kLines);
  writer.Begin({"A", "A", "A_2", "A", "\"q\"\n"});
  writer.BeginRow();
  for (int i = 0; i < 5; ++i) writer.Number("1");
  writer.EndRow();
  writer.End();
  const auto row = ordered_json::parse(sink.text);
  std::vector<std::string> keys;
  for (const auto& [key, value] : row.items()) keys.push_back(key);
  EXPECT_THAT(keys, testing::ElementsAre("A", "A_2", "A_2_2", "A_3", "\"q\"\n"));
}

TEST(JsonWriter, NamesValuesBeyondTheColumnsByTheirPlace) {
  StringSink sink;
  JsonWriter writer(sink, JsonWriter::Form::kLines);
  writer.Begin({"A", "column_3"});
  for (const int count : {4, 1, 3}) {
    writer.BeginRow();
    for (int i = 1; i <= count; ++i) writer.Number(std::to_string(i));
    writer.EndRow();
  }
  writer.End();
  EXPECT_EQ(sink.text,
            "{\"A\":1,\"column_3\":2,\"column_3_2\":3,\"column_4\":4}\n"
            "{\"A\":1}\n"
            "{\"A\":1,\"column_3\":2,\"column_3_2\":3}\n");
}

TEST(JsonWriter, PutsLongTextsTogether) {
  const std::string line = OneValue([](JsonWriter& writer) {
    writer.BeginLongText();
    writer.LongTextPiece("one \"");
    writer.LongTextPiece(std::string(200'000, 'x'));
    writer.LongTextPiece("\n");
    writer.EndLongText();
  });
  EXPECT_EQ(ordered_json::parse(line)["v"].get<std::string>(),
            "one \"" + std::string(200'000, 'x') + "\n");
}

}  // namespace
}  // namespace trovan::filters
