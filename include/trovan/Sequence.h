// Takes a three-dimensional lattice row by row in any order and gives its rows in any other,
// through temporary files: the lattice may be far larger than memory.
//
//   LatticeResequencer lattice;
//   lattice.Start(LatticeResequencer::Uniform, columns, rows, planes, 3, 0, sizeof(float), false,
//                 true);
//   for (unsigned y = rows; y-- > 0;) lattice.WriteRowOfSingleComponentData(y, 0, 2, blue.data());
//   ...
//   lattice.ReadRowOfMultiComponentData(0, 0, pixels.data());
//   lattice.Finish();
//
// A row, or scanline, is the run of `xdim` nodes that share a row index y and a plane index z.
// Elements are opaque runs of bytes; the caller decides what they are.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <corvel/BufferedFile.h>
#include <trovan/Export.h>

namespace trovan {

namespace lattice {
struct ElementRun;
}

// Data and curvilinear coordinates live in two temporary files, rectilinear axes in memory. Each
// row of a file is one contiguous run: x fastest, then y, then z; the components of a node, or its
// X, Y and Z, lie together. Every byte is zero until it is written.
//
// A row that was written has been handed to the system when the call returns; a row that is read
// comes from the file. So two rows of memory are all that this class takes.
//
// Deliberate: the sizes of a row and of a plane, and the place of a row within its plane, are
// computed in unsigned 32-bit arithmetic and wrap. Only the step from plane to plane and the total
// are formed in 64 bits. A lattice is safe when a plane is smaller than 4 GiB.
//
// Failures are raised as corvel::Exception: "Bad parameter" and its like for the caller's faults,
// those of corvel::CBufferedFile for the files'.
//
// One thread at a time; separate objects are independent.
class TROVAN_API LatticeResequencer {
 public:
  enum LatticeType : std::uint32_t {
    Uniform = 1,      // no coordinates: origin and spacing are the caller's
    Rectilinear = 2,  // one coordinate for each column, each row and each plane
    Curvilinear = 3,  // X, Y and Z for every node
  };

  // Idle: every size is 0, and every row operation raises.
  LatticeResequencer();

  // Closes the files. Deliberate: does not delete them; that is Finish's work. What fails is
  // logged.
  ~LatticeResequencer();

  LatticeResequencer(const LatticeResequencer&) = delete;
  LatticeResequencer& operator=(const LatticeResequencer&) = delete;

  // Sets the sizes and makes the temporary files that the flags ask for, filled with zeros.
  //
  // Element sizes are in bytes. The flags alone decide which files there are: a coordinate file of
  // the curvilinear size is made for any type. The coordinate size may be 0 for a uniform lattice,
  // components and data size may be 0 when there is no data file.
  //
  // Raises "Bad parameter" for a dimension of 0 or an unknown type, "Bad coordinate size parameter"
  // and "Bad component count or data size parameter" for a size of 0 that is needed; nothing has
  // changed then. Raises "GetTempPath failed!" or "GetTempFileName failed!" when there is no place
  // for the files, and what CBufferedFile raises, such as for a full disk; Finish cleans up.
  //
  // Deliberate: a second Start without Finish replaces the files that it asks for and forgets the
  // old ones on the disk. A file that it does not ask for stays open and is extended by the new
  // size in zeros from its current position. Rectilinear axes keep their leading bytes.
  void Start(LatticeType type, unsigned xdim, unsigned ydim, unsigned zdim, unsigned numComponents,
             unsigned coordElementSize, unsigned dataElementSize, bool useCoordFile,
             bool useDataFile);

  // Closes and deletes the temporary files and goes back to idle. The type and the rectilinear axes
  // stay. When a close raises, nothing has been deleted yet, and Finish can be called again.
  void Finish();

  unsigned GetXdim() const { return xdim_; }
  unsigned GetYdim() const { return ydim_; }
  unsigned GetZdim() const { return zdim_; }
  unsigned GetNumDataComponentsPerNode() const { return numComponents_; }
  unsigned GetCoordElementSize() const { return coordElementSize_; }
  unsigned GetDataElementSize() const { return dataElementSize_; }

  // Sizes in bytes, with the 32-bit wrap that is told above.
  unsigned GetDataScanlineSize() const;
  long long GetDataPlaneSize() const;
  long long GetDataTotalSize() const;
  unsigned GetCurviCoordScanlineSize() const;
  long long GetCurviCoordPlaneSize() const;
  long long GetCurviCoordTotalSize() const;
  unsigned GetRectiXCoordsTotalSize() const;
  unsigned GetRectiYCoordsTotalSize() const;
  unsigned GetRectiZCoordsTotalSize() const;

  // One axis of a row of node coordinates (X, Y, Z of a node together) that the caller holds:
  // copied out to `xdim` elements, and copied in from them. Nothing is checked.
  void ScanlineExtractXs(void* dst, void* scanline) const;
  void ScanlineExtractYs(void* dst, void* scanline) const;
  void ScanlineExtractZs(void* dst, void* scanline) const;
  void ScanlineFillXs(void* scanline, void* src) const;
  void ScanlineFillYs(void* scanline, void* src) const;
  void ScanlineFillZs(void* scanline, void* src) const;

  // The same for one component of a row of data. The component is not checked either.
  void ExtractDataComponentFromScanline(void* dst, const void* scanline, unsigned component) const;
  void FillDataComponentInScanline(void* scanline, const void* src, unsigned component) const;

  // The axes of a rectilinear lattice, each as a whole: as many bytes as GetRecti...TotalSize told
  // after the last Start of that type. Nothing is checked.
  void WriteRectilinearXs(const void* src);
  void WriteRectilinearYs(const void* src);
  void WriteRectilinearZs(const void* src);
  void ReadRectilinearXs(void* dst) const;
  void ReadRectilinearYs(void* dst) const;
  void ReadRectilinearZs(void* dst) const;

  // Rows of curvilinear coordinates: X, Y, Z of each node together, or one axis (which costs a read
  // and a write of the row, and keeps the other two).
  //
  // Each raises "Bad parameter" unless the type is Curvilinear, y < ydim, z < zdim and the buffer
  // is not null.
  void WriteRowOfXYZ(unsigned y, unsigned z, const void* src);
  void WriteRowOfX(unsigned y, unsigned z, const void* src);
  void WriteRowOfY(unsigned y, unsigned z, const void* src);
  void WriteRowOfZ(unsigned y, unsigned z, const void* src);
  void ReadRowOfXYZ(unsigned y, unsigned z, void* dst);
  void ReadRowOfX(unsigned y, unsigned z, void* dst);
  void ReadRowOfY(unsigned y, unsigned z, void* dst);
  void ReadRowOfZ(unsigned y, unsigned z, void* dst);

  // Rows of data, of any type of lattice: all components of each node together, or one component
  // (which costs a read and a write of the row, and keeps the others).
  //
  // Each raises "Bad parameter" unless y < ydim, z < zdim and the buffer is not null. Deliberate:
  // `component` is not compared with the number of components; the caller answers for it.
  void WriteRowOfMultiComponentData(unsigned y, unsigned z, const void* src);
  void WriteRowOfSingleComponentData(unsigned y, unsigned z, unsigned component, const void* src);
  void ReadRowOfMultiComponentData(unsigned y, unsigned z, void* dst);
  void ReadRowOfSingleComponentData(unsigned y, unsigned z, unsigned component, void* dst);

 private:
  using Bytes = std::vector<unsigned char>;

  // The 64-bit places of rows in their files.
  long long CalcDataScanlineOffset(unsigned y, unsigned z) const;
  long long CalcCurviCoordScanlineOffset(unsigned y, unsigned z) const;

  // Between a file and its staging buffer; always through the file.
  void GetDataScanline(unsigned y, unsigned z);
  void PutDataScanline(unsigned y, unsigned z);
  void GetCurviCoordScanline(unsigned y, unsigned z);
  void PutCurviCoordScanline(unsigned y, unsigned z);

  void ExtractAxisCoordsFromScanline(void* dst, const void* scanline, unsigned axis) const;
  void FillAxisCoordsInScanline(void* scanline, const void* src, unsigned axis) const;

  lattice::ElementRun AxisRun(unsigned axis) const;
  lattice::ElementRun ComponentRun(unsigned component) const;

  void WriteRowOfAxis(unsigned y, unsigned z, unsigned axis, const void* src);
  void ReadRowOfAxis(unsigned y, unsigned z, unsigned axis, void* dst);

  void RequireRow(unsigned y, unsigned z, int line) const;
  void RequireDataRow(unsigned y, unsigned z, const void* buffer, int line) const;
  void RequireCoordRow(unsigned y, unsigned z, const void* buffer, int line) const;
  void ResizeBuffers();
  static std::wstring MakeTempFile(const std::wstring& folder, const wchar_t* prefix);

  LatticeType type_{};
  std::wstring dataFileName_;
  std::wstring coordFileName_;
  corvel::CBufferedFile dataFile_;
  corvel::CBufferedFile coordFile_;
  Bytes xCoords_;
  Bytes yCoords_;
  Bytes zCoords_;
  unsigned xdim_ = 0;
  unsigned ydim_ = 0;
  unsigned zdim_ = 0;
  unsigned numComponents_ = 0;
  unsigned dataElementSize_ = 0;
  unsigned coordElementSize_ = 0;
  Bytes dataScanline_;
  Bytes coordScanline_;
};

}  // namespace trovan
