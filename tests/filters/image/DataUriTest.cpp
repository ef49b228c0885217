#include "filters/image/DataUri.h"

#include "Pixels.h"

namespace trovan::filters {
namespace {

using test::FaultOf;
using testing::HasSubstr;

TEST(DataUri, IsKnownByItsSchemeInAnyCase) {
  EXPECT_TRUE(IsDataUri("data:,"));
  EXPECT_TRUE(IsDataUri("DATA:image/png;base64,"));
  EXPECT_FALSE(IsDataUri("data"));
  EXPECT_FALSE(IsDataUri("dat:a,"));
  EXPECT_FALSE(IsDataUri(""));
}

TEST(DataUri, HoldsBytesInBase64OrAsTheyAre) {
  const struct {
    const char* address;
    std::string bytes;
  } cases[] = {
      {"data:image/png;base64,AAEC/f7/", std::string("\0\1\2\xFD\xFE\xFF", 6)},
      {"data:;base64,+/+/", "\xFB\xFF\xBF"},
      {"data:;base64,", ""},
      {"data:;base64,QQ==", "A"},
      {"data:;base64,QQ", "A"},
      {"data:;base64,QUI=", "AB"},
      {"data:;base64,QUI", "AB"},
      {"data:;base64,\r\n  QU\tJD \n", "ABC"},
      {"data:;base64,QQ = =", "A"},
      {"data:;base64,QUI%3D", "AB"},
      {"data:;base64,%51UJD", "ABC"},
      {"data:image/jpeg;charset=x; BASE64 ,QUJD", "ABC"},
      {"data:base64,QUJD", "QUJD"},
      {"data:;base64;x=y,QUJD", "QUJD"},
      {"data:,", ""},
      {"data:,a%00b%fF,c", std::string("a\0b\xFF,c", 6)},
      {"data:,100%", "100%"},
      {"data:,%4", "%4"},
      {"data:,%4g%g4", "%4g%g4"},
  };
  for (const auto& c : cases) EXPECT_EQ(DecodeDataUri(c.address), c.bytes) << c.address;
}

TEST(DataUri, IsRefusedWhereItIsNoBase64) {
  const struct {
    const char* address;
    const char* fault;
  } cases[] = {
      {"data:image/png;base64", "has no data"},    {"data:;base64,QU-D", "character 3 "},
      {"data:;base64,Q=UI", "character 3 "},       {"data:;base64,QQ===", "character 5 "},
      {"data:;base64,QUJDR", "end within a byte"}, {"data:;base64,\xC3\xA4", "character 1 "},
  };
  for (const auto& c : cases) {
    EXPECT_THAT(FaultOf([&] { (void)DecodeDataUri(c.address); }), HasSubstr(c.fault)) << c.address;
  }
}

}  // namespace
}  // namespace trovan::filters
