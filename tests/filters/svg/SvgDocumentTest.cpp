#include "filters/svg/SvgDocument.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "filters/support/FilterError.h"
#include "filters/svg/SvgElement.h"
#include "filters/svg/SvgEntities.h"
#include "filters/svg/SvgSniffer.h"

namespace trovan::filters {
namespace {

using testing::HasSubstr;

std::string ErrorOf(const std::string& document) {
  try {
    const SvgDocument read(document, "flag.svg");
  } catch (const FilterError& error) {
    return error.what();
  }
  return "none";
}

TEST(SvgDocument, NamesLineAndColumnOfWhatIsNotWellFormed) {
  const struct {
    const char* document;
    const char* place;
  } cases[] = {
      {"", "flag.svg, line 1, column 1: "},
      {"<svg>\n  <g>\n</svg>", "flag.svg, line 3, column 3: "},
      {"<svg>\n<path d=3/></svg>", "flag.svg, line 2, column 9: "},
      {"<html/>", "flag.svg, line 1, column 1: this is no SVG document (the root"},
      {"<svg xmlns='urn:other'/>", "line 1, column 1"},
      {"plain text", "line 1"},
  };
  for (const auto& c : cases) {
    EXPECT_THAT(ErrorOf(c.document), HasSubstr(c.place)) << c.document;
  }
}

TEST(SvgDocument, FindsElementsByTheirIds) {
  const SvgDocument document(
      "<svg><g id='a'/><path id='b' href='#a'/><path id='a'/><use id='c' "
      "xlink:href=' #b '/></svg>",
      "x");
  EXPECT_EQ(ElementName(document.Find("a")), "g");  // the first of the two
  EXPECT_EQ(document.Target(document.Find("b")), document.Find("a"));
  EXPECT_EQ(document.Target(document.Find("c")), document.Find("b"));
  EXPECT_TRUE(document.Find("").empty());
  EXPECT_TRUE(document.Find("d").empty());
}

TEST(SvgDocument, ReadsOtherEncodings) {
  const std::u16string wide = u"\xFEFF<svg><g id='\u00E4'/></svg>";
  const SvgDocument document({reinterpret_cast<const char*>(wide.data()), wide.size() * 2}, "x");
  EXPECT_FALSE(document.Find("\xC3\xA4").empty());
  const SvgDocument latin("<?xml version='1.0' encoding='ISO-8859-1'?><svg><g id='\xE4'/></svg>",
                          "x");
  EXPECT_FALSE(latin.Find("\xC3\xA4").empty());
}

TEST(SvgDocument, TakesStyleSheetsForScreens) {
  const struct {
    const char* media;
    bool isTaken;
  } cases[] = {
      {"", true},       {" ", true},          {"all", true},        {"Screen", true},
      {"print", false}, {"print,all ", true}, {"print, tv", false}, {"(width: 1px)", false},
  };
  for (const auto& c : cases) {
    const SvgDocument document(
        std::string("<svg><style media='") + c.media + "'>g { fill: red }</style></svg>", "a");
    EXPECT_EQ(document.Sheet().IsEmpty(), !c.isTaken) << c.media;
    EXPECT_EQ(document.Sheet().LeftOut(), c.isTaken ? 0U : 1U) << c.media;
  }
}

TEST(SvgDocument, TellsTheLinesOfElements) {
  const SvgDocument document("<svg>\n\n<g id='a'/></svg>", "x");
  EXPECT_EQ(document.LineOf(document.Find("a")), 3U);
}

TEST(SvgEntities, PutsInWhatTheDocumentDeclares) {
  const struct {
    const char* document;
    const char* content;  // behind the declarations
  } cases[] = {
      {"<!DOCTYPE svg [<!ENTITY a 'x'>]><svg>&a;&a;</svg>", "]><svg>xx</svg>"},
      {"<!DOCTYPE svg [<!ENTITY a \"1>2]\">\n] ><svg>&a;</svg>", "] ><svg>1>2]</svg>"},
      {"<!DOCTYPE svg [<!ENTITY a 'b&c;'><!ENTITY c 'd'>]>&a;", "]>bd"},
      {"<!DOCTYPE svg [<!ENTITY a 'b'>]>&x;&amp;&#38;&", "]>&x;&amp;&#38;&"},
      {"<!DOCTYPE svg [<!ENTITY a 'b'><!ENTITY a 'c'>]>&a;", "]>b"},
      {"<!DOCTYPE svg [<!ENTITY f SYSTEM 'f.txt'><!ENTITY a 'b'>]>&f;&a;", "]>&f;b"},
  };
  for (const auto& c : cases) {
    const auto expanded = WithEntities(c.document, "x");
    ASSERT_TRUE(expanded) << c.document;
    EXPECT_TRUE(expanded->ends_with(c.content)) << *expanded;
  }
}

TEST(SvgEntities, LeavesOtherDocumentsAlone) {
  for (const char* document : {"", "<svg>&amp;</svg>", "<!DOCTYPE svg><svg/>", "<!DOCTYPE svg [",
                               "<!DOCTYPE svg [<!ENTITY f SYSTEM 'f'>]><svg>&f;</svg>"}) {
    EXPECT_FALSE(WithEntities(document, "x")) << document;
  }
}

TEST(SvgEntities, RefusesEntitiesWithoutEnd) {
  EXPECT_THROW(WithEntities("<!DOCTYPE svg [<!ENTITY a '&a;'>]>&a;", "x"), FilterError);
  std::string document = "<!DOCTYPE svg [<!ENTITY e0 '0123456789'>";
  for (int i = 1; i < 10; ++i) {
    const std::string before = "&e" + std::to_string(i - 1) + ";";
    document += "<!ENTITY e" + std::to_string(i) + " '";
    for (int k = 0; k < 10; ++k) document += before;
    document += "'>";
  }
  EXPECT_THROW(WithEntities(document + "]><svg>&e9;</svg>", "x"), FilterError);
}

TEST(SvgSniffer, FindsTheRoot) {
  const struct {
    const char* head;
    const char* root;  // null: none
  } cases[] = {
      {"<svg>", "<svg/>"},
      {"<svg a='>'/>...", "<svg a='>'/>"},
      {"<?xml version='1.0'?>\n<!-- <html> --><!DOCTYPE svg [<!ENTITY a '<x>'>]><s:svg b=\"1\"><g>",
       "<s:svg b=\"1\"/>"},
      {"<svg", nullptr},
      {"<svgx>", nullptr},
      {"<html><svg></svg>", nullptr},
      {"svg", nullptr},
      {"", nullptr},
      {"<!-- <svg>", nullptr},
  };
  for (const auto& c : cases) {
    const auto root = RootAlone(c.head);
    EXPECT_EQ(root.has_value(), c.root != nullptr) << c.head;
    if (c.root != nullptr) {
      EXPECT_EQ(root, c.root);
    }
  }
}

}  // namespace
}  // namespace trovan::filters
