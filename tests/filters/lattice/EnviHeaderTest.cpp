#include "filters/lattice/EnviHeader.h"

#include <limits>
#include <string>
#include <vector>

#include "EnviFixture.h"

namespace trovan::filters {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

// A header with these lines after a start that is in order.
std::string With(const std::string& lines) {
  return "ENVI\nsamples = 4\nlines = 3\nbands = 2\ndata type = 2\ninterleave = bil\n"
         "byte order = 1\n" +
         lines;
}

EnviHeader Parse(const std::string& text) { return ParseEnviHeader(text, "scan.hdr"); }

std::string ParseError(const std::string& text) {
  return ErrorOf([&] { Parse(text); });
}

TEST(EnviHeader, HasWhatTheTextSays) {
  const EnviHeader header =
      Parse(With("header offset = 128\ndata ignore value = -9999.5\ndescription = {Two bands}\n"
                 "band names = {red, near infrared}\n"
                 "map info = {UTM, 1.5, 2, 500000, 6.65e6, 30, -20.25, 33, North, WGS-84}\n"));
  EXPECT_EQ(header.samples, 4U);
  EXPECT_EQ(header.lines, 3U);
  EXPECT_EQ(header.bands, 2U);
  EXPECT_EQ(header.headerOffset, 128U);
  EXPECT_EQ(header.dataType, corvel::kInt16);
  EXPECT_EQ(header.interleave, Interleave::kBandByLine);
  EXPECT_EQ(header.byteOrder, ByteOrder::kBigEndian);
  EXPECT_EQ(header.dataIgnoreValue, -9999.5);
  EXPECT_EQ(header.description, "Two bands");
  EXPECT_THAT(header.bandNames, ElementsAre("red", "near infrared"));
  ASSERT_TRUE(header.mapInfo);
  EXPECT_EQ(
      *header.mapInfo,
      (EnviMapInfo{"UTM", 1.5, 2.0, 500000.0, 6.65e6, 30.0, -20.25, {"33", "North", "WGS-84"}}));
  EXPECT_TRUE(header.otherFields.empty());
}

TEST(EnviHeader, MayBeWrittenInManyWays) {
  const EnviHeader plain = Parse(With("description = {a b}\nband names = {x, y}\n"));
  const struct {
    const char* name;
    std::string text;
  } cases[] = {
      {"capitals",
       "envi\nSAMPLES = 4\nLines = 3\nBANDS = 2\nData Type = 2\nInterleave = BIL\n"
       "BYTE ORDER = 1\nDescription = {a b}\nBand Names = {x, y}\n"},
      {"blanks",
       "  ENVI \n\tsamples=4\nlines   =3\nbands= +2\ndata  \t type = 2\ninterleave=bil\n"
       "byte order=1\ndescription={ a b }\nband names = { x ,y}"},
      {"Windows line ends",
       "ENVI\r\nsamples = 4\r\nlines = 3\r\nbands = 2\r\ndata type = 2\r\ninterleave = bil\r\n"
       "byte order = 1\r\ndescription = {\r\na b}\r\nband names = {x,\r\ny}\r\n"},
      {"old line ends",
       "ENVI\rsamples = 4\rlines = 3\rbands = 2\rdata type = 2\rinterleave = bil\r"
       "byte order = 1\rdescription = {a\rb}\rband names = {x, y}"},
      {"byte order mark", "\xEF\xBB\xBF" + With("description = a b\nband names = {\nx\n,y\n}\n")},
      {"comments and empty lines",
       With("; samples = 5\n\n  ;}\ndescription = {a\n;not this}\n\n   b}\nband names = x, y\n")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Parse(c.text), plain);
  }
}

TEST(EnviHeader, KeepsBracesAndSignsInsideAValue) {
  EXPECT_EQ(Parse(With("description = {a {b} = c}\n")).description, "a {b} = c");
  EXPECT_EQ(Parse(With("description = {../data/x.img}\n")).description, "../data/x.img");
  EXPECT_THAT(Parse(With("band names = {,}\n")).bandNames, ElementsAre("", ""));
  EXPECT_TRUE(Parse(With("band names = {}\n")).bandNames.empty());
  EXPECT_FALSE(Parse(With("map info = {}\n")).mapInfo);
}

TEST(EnviHeader, MakesTextOfWhatIsNoUtf8) {
  EXPECT_EQ(Parse(With("description = {\xE5}\n")).description, "\xEF\xBF\xBD");
}

TEST(EnviHeader, TellsWhichFieldsItDoesNotUse) {
  EXPECT_THAT(Parse(With("file type = ENVI Standard\nWavelength Units = nm\n"
                         "wavelength = {\n 1.5,\n 2.5}\n"))
                  .otherFields,
              ElementsAre("wavelength units", "wavelength"));
  EXPECT_THAT(Parse(With("file type = TIFF\n")).otherFields, ElementsAre("file type"));
}

TEST(EnviHeader, NeedsNoInterleaveForOneBandAndNoByteOrderForBytes) {
  const EnviHeader header = Parse("ENVI\nsamples = 1\nlines = 1\nbands = 1\ndata type = 1");
  EXPECT_EQ(header.dataType, corvel::kUInt8);
  EXPECT_EQ(header.interleave, Interleave::kBandSequential);
}

TEST(EnviHeader, KnowsTheCodesOfAllTypesOfALattice) {
  const struct {
    const char* code;
    corvel::PrimType type;
  } cases[] = {
      {"1", corvel::kUInt8},   {"2", corvel::kInt16},  {"3", corvel::kInt32},
      {"4", corvel::kFloat},   {"5", corvel::kDouble}, {"12", corvel::kUInt16},
      {"13", corvel::kUInt32}, {"14", corvel::kInt64},
  };
  for (const auto& c : cases) {
    std::string text = With("");
    text.replace(text.find("type = 2"), 8, std::string("type = ") + c.code);
    EXPECT_EQ(Parse(text).dataType, c.type) << c.code;
  }
}

struct WrongField {
  const char* field;
  const char* value;
  const char* message;
};

// Puts another value into the header that is in order; gives the line in which it stands.
std::string Change(const WrongField& wrong, std::string& text) {
  text = With(
      "header offset = 0\ndata ignore value = 0\n"
      "map info = {Arbitrary, 1, 1, 0, 0, 1, 1}\nfile compression = 0\n"
      "major frame offsets = {0, 0}\n");
  const std::size_t begin = text.find(std::string("\n") + wrong.field + " = ") + 1;
  const std::size_t end = text.find('\n', begin);
  text.replace(begin, end - begin, std::string(wrong.field) + " = " + wrong.value);
  const auto line =
      std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(begin), '\n');
  return std::to_string(line + 1);
}

TEST(EnviHeader, NamesTheLineThatIsWrong) {
  const WrongField cases[] = {
      {"samples", "0", "expected a whole number from 1 to 4294967295"},
      {"samples", "-4", "samples is \"-4\""},
      {"samples", "+-4", "samples is \"+-4\""},
      {"samples", "4.0", "samples is \"4.0\""},
      {"samples", "4 4", "samples is \"4 4\""},
      {"samples", "", "samples is \"\""},
      {"samples", "four", "samples is \"four\""},
      {"samples", "4294967296", "samples is \"4294967296\""},
      {"lines", "99999999999999999999999", "lines is"},
      {"bands", "0x2", "bands is \"0x2\""},
      {"header offset", "-1", "expected a whole number of bytes"},
      {"header offset", "18446744073709551616", "header offset is"},
      {"data type", "0", "data type is \"0\", expected one of 1, 2, 3, 4, 5, 12, 13 and 14"},
      {"data type", "7", "data type is \"7\""},
      {"data type", "int16", "data type is \"int16\""},
      {"data type", "6", "data type 6 (complex numbers of two 32-bit floats)"},
      {"data type", "9", "data type 9 (complex numbers of two doubles)"},
      {"data type", "15", "data type 15 (unsigned 64-bit integers)"},
      {"interleave", "tiled", "interleave is \"tiled\", expected bsq, bil or bip"},
      {"byte order", "2", "byte order is \"2\", expected 0 (little-endian) or 1 (big-endian)"},
      {"byte order", "little", "byte order is \"little\""},
      {"data ignore value", "none", "data ignore value is \"none\", expected a number"},
      {"data ignore value", "1e999", "data ignore value is \"1e999\""},
      {"data ignore value", "1,5", "data ignore value is \"1,5\""},
      {"map info", "{UTM, 1, 1, 0, 0, 1}", "expected a projection"},
      {"map info", "{UTM, 1, 1, 0, 0, 1, x}", "item 7 of map info is \"x\", expected a number"},
      {"map info", "{UTM, nan, 1, 0, 0, 1, 1}", "item 2 of map info is \"nan\""},
      {"map info", "{UTM, 1, 1, 0, 1e400, 1, 1}", "item 5 of map info is \"1e400\""},
      {"map info", "{UTM, 1, 1, 0, 0, 0, 1}", "pixels of map info have the size 0"},
      {"map info", "{UTM, 1, 1, 0, 0, 1, -0}", "pixels of map info have the size 0"},
      {"file compression", "1", "the values are compressed (file compression)"},
      {"major frame offsets", "{0, 4}", "gaps between the rows (major frame offsets)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.field << " = " << c.value);
    std::string text;
    const std::string line = Change(c, text);
    EXPECT_THAT(ParseError(text),
                AllOf(HasSubstr("scan.hdr, line " + line + ": "), HasSubstr(c.message)));
  }
}

TEST(EnviHeader, NamesTheFieldThatIsMissing) {
  for (const char* name : {"samples", "lines", "bands", "data type", "interleave", "byte order"}) {
    std::string text = With("");
    const std::size_t begin = text.find(std::string("\n") + name + " = ") + 1;
    text.erase(begin, text.find('\n', begin) + 1 - begin);
    EXPECT_THAT(ParseError(text), HasSubstr("scan.hdr has no \"" + std::string(name) + '"'));
  }
}

TEST(EnviHeader, RefusesALineThatIsNoField) {
  EXPECT_THAT(ParseError(With("wavelength\n")),
              HasSubstr("scan.hdr, line 8: \"wavelength\" found, expected \"name = value\""));
  EXPECT_THAT(ParseError(With(" = 5\n")), HasSubstr("line 8: "));
}

TEST(EnviHeader, RefusesABraceThatStaysOpen) {
  EXPECT_THAT(ParseError(With("\nband names = {a,\nb\n")),
              HasSubstr("scan.hdr, line 9: the brace that opens here is not closed"));
}

TEST(EnviHeader, RefusesAFieldThatComesTwice) {
  EXPECT_THAT(ParseError(With("x = 1\nSamples = 5\n")),
              HasSubstr("scan.hdr, line 9: samples stands in line 2 already"));
}

TEST(EnviHeader, RefusesWhatDoesNotBeginWithItsMark) {
  EXPECT_THAT(ParseError(""), HasSubstr("scan.hdr is no ENVI header"));
  EXPECT_THAT(ParseError("BYTEORDER I\nLAYOUT BIL\n"),
              HasSubstr("its first line is \"BYTEORDER I\", expected \"ENVI\""));
  EXPECT_THAT(ParseError("\nENVI\n"), HasSubstr("no ENVI header"));
}

TEST(EnviHeader, CutsLongValuesInMessages) {
  const std::string error = ParseError("ENVI\nsamples = " + std::string(100'000, '9'));
  EXPECT_LT(error.size(), 200U);
}

TEST(EnviHeader, IsRefusedOrReadWhereverItIsCut) {
  const std::string whole = With(
      "header offset = 12\nband names = {\n a,\n b}\nmap info = {UTM, 1, 1, 0, 0, 1, 1}\n"
      "description = {x}\ndata ignore value = -1");
  std::size_t refused = 0;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    SCOPED_TRACE(testing::Message() << "cut to " << size << " bytes");
    // Each cut is a copy of that size, so that the address sanitizer sees any overrun.
    const std::vector<char> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const std::string error = ErrorOf([&] {
      ParseEnviHeader({cut.data(), cut.size()}, "scan.hdr");
    });
    if (error.empty()) continue;
    ++refused;
    EXPECT_THAT(error, HasSubstr("scan.hdr"));
  }
  EXPECT_GT(refused, 100U);
}

TEST(EnviHeader, ReadsBackAsItWasWritten) {
  EnviHeader header;
  header.samples = 4'294'967'295;
  header.lines = 1;
  header.bands = 3;
  header.headerOffset = std::numeric_limits<std::uint64_t>::max();
  header.dataIgnoreValue = -3.4028234663852886e38;
  header.mapInfo = EnviMapInfo{"Arbitrary", 1.5, 0.1, -1e-300, 1.0 / 3.0, 5e-324, -1e22, {"", "x"}};
  header.bandNames = {"b {1}", "", "\xC3\xA5"};
  header.description = "Any text, = {with} signs;";
  for (const corvel::PrimType type :
       {corvel::kUInt8, corvel::kInt16, corvel::kUInt16, corvel::kInt32, corvel::kUInt32,
        corvel::kInt64, corvel::kFloat, corvel::kDouble}) {
    for (const Interleave interleave :
         {Interleave::kBandSequential, Interleave::kBandByLine, Interleave::kBandByPixel}) {
      for (const ByteOrder byteOrder : {ByteOrder::kLittleEndian, ByteOrder::kBigEndian}) {
        header.dataType = type;
        header.interleave = interleave;
        header.byteOrder = byteOrder;
        EXPECT_EQ(Parse(FormatEnviHeader(header)), header) << FormatEnviHeader(header);
      }
    }
  }
}

TEST(EnviHeader, IsWrittenAsOtherProgramsWriteIt) {
  EnviHeader header;
  header.samples = 2;
  header.lines = 3;
  header.bands = 1;
  header.dataType = corvel::kFloat;
  header.dataIgnoreValue = -9999.0;
  header.mapInfo = EnviMapInfo{"Arbitrary", 1.0, 1.0, 0.5, 2.25, 0.1, 0.1, {"0", "North"}};
  header.bandNames = {"height"};
  header.description = "Heights";
  EXPECT_EQ(FormatEnviHeader(header),
            "ENVI\ndescription = {Heights}\nsamples = 2\nlines = 3\nbands = 1\nheader offset = 0\n"
            "file type = ENVI Standard\ndata type = 4\ninterleave = bsq\nbyte order = 0\n"
            "data ignore value = -9999\n"
            "map info = {Arbitrary, 1, 1, 0.5, 2.25, 0.1, 0.1, 0, North}\n"
            "band names = {height}\n");
}

}  // namespace
}  // namespace trovan::filters
