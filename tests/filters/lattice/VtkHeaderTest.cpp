#include "filters/lattice/VtkHeader.h"

#include <iterator>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "VtkFixture.h"

namespace trovan::filters {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

using VtkHeaderTest = VtkFixture;

// --- Arrays --------------------------------------------------------------------------------------

TEST_F(VtkHeaderTest, KnowsTheTypes) {
  const struct {
    const char* name;
    corvel::PrimType type;
    std::size_t size;
  } cases[] = {
      {"char", corvel::kInt8, 1},
      {"signed_char", corvel::kInt8, 1},
      {"unsigned_char", corvel::kUInt8, 1},
      {"short", corvel::kInt16, 2},
      {"unsigned_short", corvel::kUInt16, 2},
      {"int", corvel::kInt32, 4},
      {"vtkIdType", corvel::kInt32, 4},
      {"unsigned_int", corvel::kUInt32, 4},
      {"long", corvel::kInt64, 8},
      {"vtktypeint64", corvel::kInt64, 8},
      {"float", corvel::kFloat, 4},
      {"double", corvel::kDouble, 8},
      {"UNSIGNED_CHAR", corvel::kUInt8, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string array = "SCALARS s " + std::string(c.name) + "\nLOOKUP_TABLE default\n";
    const LatticeHeader text = Header(kStart + kOneNode + array + "1\n");
    EXPECT_EQ(text.dataType, c.type);
    const std::string bytes(c.size, '\1');
    const auto binary = Read(kBinaryStart + kOneNode + array + bytes + '\n');
    EXPECT_EQ(std::string(binary.Nodes().begin(), binary.Nodes().end()), bytes);
    EXPECT_THAT(Error(kBinaryStart + kOneNode + array + bytes.substr(1)), HasSubstr("found only"));
  }
}

TEST_F(VtkHeaderTest, RefusesTypesThatNoLatticeHas) {
  for (const char* type : {"bit", "unsigned_long", "vtktypeuint64"}) {
    const std::string array = "SCALARS a " + std::string(type) + "\nLOOKUP_TABLE default\n1\n";
    EXPECT_THAT(Error(kStart + kOneNode + array),
                EndsWith("in.vtk: array \"a\" has elements of type " + std::string(type) +
                         ", which no lattice can have"));
    EXPECT_THAT(Error(kStart + kOneNode + array + "NORMALS n float\n1 2 3\n"),
                EndsWith("no lattice can have; --array chooses another: n"));
    EXPECT_EQ(Header(kStart + kOneNode + array + "NORMALS n float\n1 2 3\n", "n").components, 3U);
  }
  EXPECT_THAT(Error(kStart + kOneNode + "SCALARS a string\n"),
              EndsWith("line 9: expected a type of elements, such as float, found \"string\""));
}

// Every kind of array, each of which must be skipped by its exact size to find the next.
const std::string kKinds[] = {"scalars", "colors", "vectors", "normals", "texture",
                              "tensors", "ids",    "field1",  "field2"};

std::string EveryKind(bool isBinary) {
  const auto values = [isBinary](std::size_t count, std::size_t size, char start) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) {
      const char value = static_cast<char>(start + static_cast<int>(i));
      bytes += isBinary ? std::string(size - 1, '\0') + value : std::to_string(value) + ' ';
    }
    return bytes + '\n';
  };
  return "SCALARS scalars int 2\nLOOKUP_TABLE mine\n" + values(2, 4, 1) + "LOOKUP_TABLE mine 2\n" +
         values(8, 1, 0) + "COLOR_SCALARS colors 3\n" + values(3, 1, 10) +
         "VECTORS vectors short\n" + values(3, 2, 20) +
         "METADATA\nINFORMATION 1\nNAME a LOCATION b\nDATA 1\n\n" + "NORMALS normals short\n" +
         values(3, 2, 30) + "TEXTURE_COORDINATES texture 2 short\n" + values(2, 2, 40) +
         "TENSORS tensors short\n" + values(9, 2, 50) + "GLOBAL_IDS ids int\n" + values(1, 4, 60) +
         "FIELD more 2\nfield1 5 1 short\n" + values(5, 2, 70) +
         "METADATA\nCOMPONENT_NAMES\nx\n\nfield2 1 1 short\n" + values(1, 2, 80);
}

TEST_F(VtkHeaderTest, FindsArraysOfEveryKind) {
  const unsigned components[] = {2, 3, 3, 3, 2, 9, 1, 5, 1};
  const double firsts[] = {1, 10, 20, 30, 40, 50, 60, 70, 80};
  for (const bool isBinary : {false, true}) {
    const std::string file = (isBinary ? kBinaryStart : kStart) + kOneNode + EveryKind(isBinary);
    for (std::size_t i = 0; i < std::size(kKinds); ++i) {
      SCOPED_TRACE(kKinds[i] + (isBinary ? ", binary" : ", text"));
      const auto lattice = Read(file, kKinds[i]);
      const LatticeHeader& header = lattice.Header();
      EXPECT_EQ(header.components, components[i]);
      EXPECT_EQ(header.componentNames.size(), components[i]);
      EXPECT_EQ(corvel::CPrimData::GetWideReal(header.dataType, lattice.Nodes().data()), firsts[i]);
    }
  }
}

TEST_F(VtkHeaderTest, NamesTheArraysThatItLeavesOut) {
  const LatticeHeader header = Header(kStart + kOneNode + EveryKind(false));
  EXPECT_THAT(header.componentNames, ElementsAre("scalars[0]", "scalars[1]"));
  EXPECT_THAT(header.remarks, ElementsAre("holds 8 more arrays: colors, vectors, normals, texture, "
                                          "tensors, ids, field1, field2; --array chooses one"));
  EXPECT_THAT(
      Header(kStart + kOneNode + "SCALARS a int\nLOOKUP_TABLE x\n1\nVECTORS v int\n1 2 3").remarks,
      ElementsAre("holds 1 more array: v; --array chooses one"));
}

TEST_F(VtkHeaderTest, NamesTheArraysOfTheFileAndOfItsCells) {
  const LatticeHeader header =
      Header(kStart + "DATASET STRUCTURED_POINTS\nFIELD FieldData 1\nTIME 1 2 double\n0.5 1\n" +
             "DIMENSIONS 2 3 1\nORIGIN 0 0 0\nSPACING 1 1 1\nCELL_DATA 2\n" +
             "SCALARS height float\nLOOKUP_TABLE default\n8 9\n" + kScalars);
  EXPECT_THAT(header.remarks, ElementsAre("the values of its cells are left out: height",
                                          "the fields of the file as a whole are left out: TIME"));
}

TEST_F(VtkHeaderTest, TellsWhichArraysThereAre) {
  EXPECT_THAT(
      Error(kStart + kOneNode + EveryKind(false), "Scalars"),
      EndsWith("in.vtk has no array \"Scalars\" at its nodes; it has scalars, colors, vectors, "
               "normals, texture, tensors, ids, field1, field2"));
}

TEST_F(VtkHeaderTest, RefusesFilesWithoutValuesAtTheNodes) {
  EXPECT_THAT(Error(kStart + kPoints), EndsWith("in.vtk holds no values at its nodes"));
  EXPECT_THAT(Error(kStart + kPoints + "CELL_DATA 2\nSCALARS c int\nLOOKUP_TABLE default\n1 2"),
              EndsWith("in.vtk holds no values at its nodes, only at its cells: c"));
}

// --- What is wrong -------------------------------------------------------------------------------

TEST_F(VtkHeaderTest, TellsWhatIsWrongAndOnWhichLine) {
  const std::string grid = "DATASET RECTILINEAR_GRID\nDIMENSIONS 1 1 1\n";
  const struct {
    std::string text;
    const char* expected;
  } cases[] = {
      {"", "in.vtk, line 1: expected \"# vtk DataFile Version\", found \"\""},
      {"<?xml version=\"1.0\"?>", "line 1: expected \"# vtk DataFile Version\", found \"<?xml"},
      {"# vtk DataFile Version 3.0\nt\nTEXT\n", "line 3: expected ASCII or BINARY, found \"TEXT\""},
      {kStart + "STRUCTURED_POINTS", "line 4: expected DATASET, found"},
      {kStart + "DATASET POLYDATA", "line 4: expected STRUCTURED_POINTS, RECTILINEAR_GRID or"},
      {kStart + "DATASET STRUCTURED_POINTS\nSIZE 1",
       "line 5: expected a keyword that belongs here"},
      {kStart + "DATASET STRUCTURED_POINTS\nPOINTS 1 float", "line 5: expected a keyword that"},
      {kStart + "DATASET STRUCTURED_POINTS\nSCALARS s float", "line 5: expected a keyword that"},
      {kStart + kPoints + "DIMENSIONS 1 1 1", "line 8: a second DIMENSIONS"},
      {kStart + kPoints + "Origin 1 1 1", "line 8: a second Origin"},
      {kStart + kPoints + "ASPECT_RATIO 1 1 1", "line 8: a second ASPECT_RATIO"},
      {kStart + "DATASET STRUCTURED_POINTS\nDIMENSIONS 1 0 1",
       "line 5: expected a positive number"},
      {kStart + "DATASET STRUCTURED_POINTS\nDIMENSIONS 1 -2 1", "expected the number of nodes"},
      {kStart + "DATASET STRUCTURED_POINTS\nDIMENSIONS 4294967295 4294967295 4294967295",
       "line 5: there are more nodes than any file can hold"},
      {kStart + "DATASET STRUCTURED_POINTS\nORIGIN 1 nan 1", "line 5: expected a finite number"},
      {kStart + "DATASET STRUCTURED_POINTS\nSPACING 1 1",
       "expected a coordinate or step, found the"},
      {kStart + "DATASET STRUCTURED_POINTS\nPOINT_DATA 1", "line 5: expected DIMENSIONS"},
      {kStart + "DATASET STRUCTURED_POINTS\n", "line 5: expected DIMENSIONS, found the end"},
      {kStart + "DATASET STRUCTURED_GRID\nPOINTS 1 float", "line 5: expected DIMENSIONS"},
      {kStart + "DATASET STRUCTURED_GRID\nDIMENSIONS 1 1 1\n",
       "line 6: expected POINTS, found the"},
      {kStart + "DATASET STRUCTURED_GRID\nDIMENSIONS 1 2 1\nPOINTS 3 float",
       "line 6: expected 2, the number of coordinates, found \"3\""},
      {kStart + grid + "X_COORDINATES 2 int\n1 2", "line 6: expected 1, the number of coordinates"},
      {kStart + grid + "X_COORDINATES 1 bit\n1", "line 6: expected a type that a lattice can have"},
      {kStart + grid + "X_COORDINATES 1 int\n1\nX_COORDINATES", "line 8: a second X_COORDINATES"},
      {kStart + grid + "X_COORDINATES 1 int\n1\n", "expected X_COORDINATES, Y_COORDINATES and Z_"},
      {kStart + grid +
           "X_COORDINATES 1 int\n1.5\nY_COORDINATES 1 int\n1\nZ_COORDINATES 1 int\n1\n"
           "POINT_DATA 1\nVECTORS v int\n1 2 3",
       "line 7: expected a number of type int, found \"1.5\""},
      {kStart + kPoints + "POINT_DATA 5", "line 8: expected 6, the number of nodes, found \"5\""},
      {kStart + kPoints + "CELL_DATA 6", "line 8: expected 2, the number of cells, found \"6\""},
      {kStart + kOneNode + "SCALARS s float 5\n",
       "line 9: expected 1 to 4 components, found \"5\""},
      {kStart + kOneNode + "SCALARS s float 0\n",
       "line 9: expected 1 to 4 components, found \"0\""},
      {kStart + kOneNode + "SCALARS s float x\n",
       "line 9: expected 1 to 4 components, found \"x\""},
      {kStart + kOneNode + "SCALARS s float\n1\n", "line 10: expected LOOKUP_TABLE, found \"1\""},
      {kStart + kOneNode + "SCALARS s real\n1\n", "line 9: expected a type of elements, such as"},
      {kStart + kOneNode + "TEXTURE_COORDINATES s 4 int\n1\n",
       "line 9: expected 1 to 3 components"},
      {kStart + kOneNode + "VECTORS v int\n1 2\nNORMALS n int\n",
       "line 11: expected value 3 of 3 of \"v\", found \"NORMALS\""},
      {kStart + kOneNode + "VECTORS v int\n1 2\n",
       "line 11: expected value 3 of 3 of \"v\", found the end of the file"},
      {kStart + kOneNode + "VECTORS v int\n1\n2.5\n3\n",
       "line 11: expected a number of type int, found \"2.5\""},
      {kStart + kOneNode + "VECTORS v unsigned_char\n1 2 256\n",
       "line 10: expected a number of type unsigned_char, found \"256\", which is beyond the "
       "range"},
      {kStart + kOneNode + "FIELD f 1\na 2 3 int\n",
       "line 10: expected 1 tuples of \"a\", found \"3\""},
      {kStart + "DATASET STRUCTURED_POINTS\nFIELD f 1\na 9223372036854775807 2 int\n",
       "line 6: \"a\" has more elements than any file"},
      {kBinaryStart + kOneNode + "VECTORS v int x\n",
       "line 9: expected the end of the line before the bytes of \"v\", found \"x\""},
      {kBinaryStart + kOneNode + "VECTORS v int\n12345",
       "byte 139: expected 3 elements of \"v\", 32 bits each, found only 5 bytes"},
      {kBinaryStart + kOneNode + "VECTORS v char\n123\nWHAT",
       "byte 144: expected a keyword that belongs here, found \"WHAT\""},
  };
  for (const auto& c : cases) EXPECT_THAT(Error(c.text), HasSubstr(c.expected)) << c.text;
}

TEST_F(VtkHeaderTest, TakesNoMemoryForWhatTheFileCannotHold) {
  const std::string hostile =
      "DATASET STRUCTURED_POINTS\nDIMENSIONS 2000000000 2000000000 2\nPOINT_DATA "
      "8000000000000000000\nSCALARS s double 4\nLOOKUP_TABLE default\n1 2 3";
  EXPECT_THAT(Error(kBinaryStart + hostile), HasSubstr("more elements than any file"));
  EXPECT_THAT(Error(kStart + "DATASET STRUCTURED_POINTS\nDIMENSIONS 2000000000 2000000000 2\n"
                             "POINT_DATA 8000000000000000000\nSCALARS s double\n"
                             "LOOKUP_TABLE default\n1 2 3"),
              HasSubstr("expected value 4 of 8000000000000000000 of \"s\", found the end"));
}

// Cut anywhere, a file is refused, but for its last line end.
TEST_F(VtkHeaderTest, FailsWhereverTheFileIsCut) {
  const std::string text = kStart + kPoints + "POINT_DATA 6\nVECTORS v int\n" +
                           "10 10 10 10 10 10 10 10 10 10 10 10 10 10 10 10 10 10";
  for (std::size_t size = 0; size + 1 < text.size(); ++size) {
    EXPECT_THAT(Error(text.substr(0, size)), HasSubstr("in.vtk")) << size;
  }
  const std::string binary =
      kBinaryStart + "DATASET STRUCTURED_GRID\nDIMENSIONS 2 1 1\nPOINTS 2 short\n123456789abc\n" +
      "POINT_DATA 2\nSCALARS s int\nLOOKUP_TABLE default\n12345678";
  for (std::size_t size = 0; size < binary.size(); ++size) {
    EXPECT_THAT(Error(binary.substr(0, size)), HasSubstr("in.vtk")) << size;
  }
  EXPECT_EQ(Error(binary), "nothing was raised");
}

}  // namespace
}  // namespace trovan::filters
