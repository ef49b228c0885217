#include <trovan/Sequence.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include <corvel/Exception.h>
#include <corvel/Path.h>
#include <win32/WinApi.h>
#include <win32/WinTypes.h>

#include "ElementCopy.h"

namespace trovan {
namespace {

using corvel::CBufferedFile;
using corvel::CPath;
using corvel::Exception;
using lattice::CutTo;
using lattice::ElementRun;
using lattice::Gather;
using lattice::Scatter;

constexpr const char* kModule = "Trovan.dll";
constexpr const char* kFile = "Sequence";
constexpr unsigned kAxes = 3;

[[noreturn]] void Raise(const char* message, int line) {
  throw Exception(kModule, kFile, line, message, false);
}

// Where plane `z` starts. Unsigned on the way: what leaves 64 bits wraps, and may come out
// negative.
long long PlanesBefore(unsigned z, long long planeSize) {
  return static_cast<long long>(static_cast<std::uint64_t>(planeSize) * z);
}

// Where row `y` of plane `z` starts; its place within the plane has 32 bits.
long long RowOffset(unsigned y, unsigned z, unsigned rowSize, long long planeSize) {
  const unsigned inPlane = rowSize * y;
  return static_cast<long long>(static_cast<std::uint64_t>(PlanesBefore(z, planeSize)) + inPlane);
}

// The bytes, or null when there are none: an empty vector may point anywhere.
unsigned char* Staged(std::vector<unsigned char>& bytes) {
  return bytes.empty() ? nullptr : bytes.data();
}

void CopyBytes(void* to, const void* from, std::size_t count) {
  if (count > 0) std::memcpy(to, from, count);
}

// Hands `length` zero bytes to the system.
void AppendZeros(CBufferedFile& file, long long length) {
  constexpr long long kBlockSize = 65536;
  const std::vector<unsigned char> block(kBlockSize);
  for (long long remaining = length; remaining > 0; remaining -= kBlockSize) {
    file.Write(block.data(), static_cast<std::size_t>(std::min(kBlockSize, remaining)));
  }
  file.Flush();
}

void CloseIfOpen(CBufferedFile& file) {
  if (file.IsOpen()) file.Close();
}

void RemoveIfNamed(const std::wstring& name) {
  if (!name.empty()) corvel::RemoveFile(name);
}

}  // namespace

LatticeResequencer::LatticeResequencer() = default;

LatticeResequencer::~LatticeResequencer() {
  // Each by itself: one that fails must not keep the other open.
  for (CBufferedFile* file : {&coordFile_, &dataFile_}) {
    try {
      CloseIfOpen(*file);
    } catch (...) {
      corvel::LogExceptionInfo(L"LatticeResequencer", L"Sequence", __LINE__);
    }
  }
}

// --- Start and finish ----------------------------------------------------------------------------

void LatticeResequencer::Start(LatticeType type, unsigned xdim, unsigned ydim, unsigned zdim,
                               unsigned numComponents, unsigned coordElementSize,
                               unsigned dataElementSize, bool useCoordFile, bool useDataFile) {
  const bool known = type == Uniform || type == Rectilinear || type == Curvilinear;
  if (xdim == 0 || ydim == 0 || zdim == 0 || !known) Raise("Bad parameter", __LINE__);
  if (coordElementSize == 0 && type != Uniform) Raise("Bad coordinate size parameter", __LINE__);
  if (useDataFile && (numComponents == 0 || dataElementSize == 0)) {
    Raise("Bad component count or data size parameter", __LINE__);
  }
  type_ = type;
  xdim_ = xdim;
  ydim_ = ydim;
  zdim_ = zdim;
  numComponents_ = numComponents;
  coordElementSize_ = coordElementSize;
  dataElementSize_ = dataElementSize;
  ResizeBuffers();

  const std::wstring folder = CPath::GetTempPath(true);
  if (folder.empty()) Raise("GetTempPath failed!", __LINE__);
  if (useCoordFile) {
    coordFileName_ = MakeTempFile(folder, L"QVC");
    CloseIfOpen(coordFile_);
    coordFile_.Open(coordFileName_, L"w+b", corvel::FileSharing(0), false);
  }
  if (useDataFile) {
    dataFileName_ = MakeTempFile(folder, L"QVD");
    CloseIfOpen(dataFile_);
    dataFile_.Open(dataFileName_, "w+b", corvel::FileSharing(0), false);
  }
  if (coordFile_.IsOpen()) AppendZeros(coordFile_, GetCurviCoordTotalSize());
  if (dataFile_.IsOpen()) AppendZeros(dataFile_, GetDataTotalSize());
}

void LatticeResequencer::ResizeBuffers() {
  dataScanline_.resize(GetDataScanlineSize());
  if (type_ == Curvilinear) coordScanline_.resize(GetCurviCoordScanlineSize());
  if (type_ == Rectilinear) {
    xCoords_.resize(GetRectiXCoordsTotalSize());
    yCoords_.resize(GetRectiYCoordsTotalSize());
    zCoords_.resize(GetRectiZCoordsTotalSize());
  }
}

std::wstring LatticeResequencer::MakeTempFile(const std::wstring& folder, const wchar_t* prefix) {
  std::array<wchar_t, MAX_PATH> name{};
  if (::GetTempFileNameW(folder.c_str(), prefix, 0, name.data()) == 0) {
    Raise("GetTempFileName failed!", __LINE__);
  }
  return name.data();
}

void LatticeResequencer::Finish() {
  CloseIfOpen(coordFile_);
  CloseIfOpen(dataFile_);
  RemoveIfNamed(coordFileName_);
  RemoveIfNamed(dataFileName_);
  coordScanline_.resize(0);
  dataScanline_.resize(0);
  coordFileName_.clear();
  dataFileName_.clear();
  xdim_ = ydim_ = zdim_ = 0;
  numComponents_ = dataElementSize_ = coordElementSize_ = 0;
}

// --- Sizes and places ----------------------------------------------------------------------------

unsigned LatticeResequencer::GetDataScanlineSize() const {
  return dataElementSize_ * numComponents_ * xdim_;
}

long long LatticeResequencer::GetDataPlaneSize() const {
  return dataElementSize_ * numComponents_ * ydim_ * xdim_;
}

long long LatticeResequencer::GetDataTotalSize() const {
  return PlanesBefore(zdim_, GetDataPlaneSize());
}

unsigned LatticeResequencer::GetCurviCoordScanlineSize() const {
  return coordElementSize_ * xdim_ * kAxes;
}

long long LatticeResequencer::GetCurviCoordPlaneSize() const {
  return coordElementSize_ * ydim_ * xdim_ * kAxes;
}

long long LatticeResequencer::GetCurviCoordTotalSize() const {
  return PlanesBefore(zdim_, GetCurviCoordPlaneSize());
}

unsigned LatticeResequencer::GetRectiXCoordsTotalSize() const { return coordElementSize_ * xdim_; }

unsigned LatticeResequencer::GetRectiYCoordsTotalSize() const { return coordElementSize_ * ydim_; }

unsigned LatticeResequencer::GetRectiZCoordsTotalSize() const { return coordElementSize_ * zdim_; }

long long LatticeResequencer::CalcDataScanlineOffset(unsigned y, unsigned z) const {
  return RowOffset(y, z, GetDataScanlineSize(), GetDataPlaneSize());
}

long long LatticeResequencer::CalcCurviCoordScanlineOffset(unsigned y, unsigned z) const {
  return RowOffset(y, z, GetCurviCoordScanlineSize(), GetCurviCoordPlaneSize());
}

// --- Between the files and the staging buffers ---------------------------------------------------

void LatticeResequencer::RequireRow(unsigned y, unsigned z, int line) const {
  if (y >= ydim_ || z >= zdim_) Raise("Bad parameter", line);
}

void LatticeResequencer::GetDataScanline(unsigned y, unsigned z) {
  RequireRow(y, z, __LINE__);
  dataFile_.Seek(CalcDataScanlineOffset(y, z), corvel::FileOrigin(0));
  dataFile_.Read(Staged(dataScanline_), dataScanline_.size());
}

void LatticeResequencer::PutDataScanline(unsigned y, unsigned z) {
  RequireRow(y, z, __LINE__);
  dataFile_.Seek(CalcDataScanlineOffset(y, z), corvel::FileOrigin(0));
  dataFile_.Write(Staged(dataScanline_), dataScanline_.size());
  dataFile_.Flush();
}

void LatticeResequencer::GetCurviCoordScanline(unsigned y, unsigned z) {
  RequireRow(y, z, __LINE__);
  coordFile_.Seek(CalcCurviCoordScanlineOffset(y, z), corvel::FileOrigin(0));
  coordFile_.Read(Staged(coordScanline_), coordScanline_.size());
}

void LatticeResequencer::PutCurviCoordScanline(unsigned y, unsigned z) {
  RequireRow(y, z, __LINE__);
  coordFile_.Seek(CalcCurviCoordScanlineOffset(y, z), corvel::FileOrigin(0));
  coordFile_.Write(Staged(coordScanline_), coordScanline_.size());
  coordFile_.Flush();
}

// --- Gather and scatter --------------------------------------------------------------------------

ElementRun LatticeResequencer::AxisRun(unsigned axis) const {
  const std::size_t size = coordElementSize_;
  return {axis * size, kAxes * size, size, xdim_};
}

ElementRun LatticeResequencer::ComponentRun(unsigned component) const {
  const std::size_t size = dataElementSize_;
  return {component * size, numComponents_ * size, size, xdim_};
}

void LatticeResequencer::ExtractAxisCoordsFromScanline(void* dst, const void* scanline,
                                                       unsigned axis) const {
  Gather(dst, scanline, AxisRun(axis));
}

void LatticeResequencer::FillAxisCoordsInScanline(void* scanline, const void* src,
                                                  unsigned axis) const {
  Scatter(scanline, src, AxisRun(axis));
}

void LatticeResequencer::ScanlineExtractXs(void* dst, void* scanline) const {
  ExtractAxisCoordsFromScanline(dst, scanline, 0);
}
void LatticeResequencer::ScanlineExtractYs(void* dst, void* scanline) const {
  ExtractAxisCoordsFromScanline(dst, scanline, 1);
}
void LatticeResequencer::ScanlineExtractZs(void* dst, void* scanline) const {
  ExtractAxisCoordsFromScanline(dst, scanline, 2);
}
void LatticeResequencer::ScanlineFillXs(void* scanline, void* src) const {
  FillAxisCoordsInScanline(scanline, src, 0);
}
void LatticeResequencer::ScanlineFillYs(void* scanline, void* src) const {
  FillAxisCoordsInScanline(scanline, src, 1);
}
void LatticeResequencer::ScanlineFillZs(void* scanline, void* src) const {
  FillAxisCoordsInScanline(scanline, src, 2);
}

void LatticeResequencer::ExtractDataComponentFromScanline(void* dst, const void* scanline,
                                                          unsigned component) const {
  Gather(dst, scanline, ComponentRun(component));
}

void LatticeResequencer::FillDataComponentInScanline(void* scanline, const void* src,
                                                     unsigned component) const {
  Scatter(scanline, src, ComponentRun(component));
}

// --- Rectilinear axes ----------------------------------------------------------------------------

void LatticeResequencer::WriteRectilinearXs(const void* src) {
  CopyBytes(xCoords_.data(), src, xCoords_.size());
}
void LatticeResequencer::WriteRectilinearYs(const void* src) {
  CopyBytes(yCoords_.data(), src, yCoords_.size());
}
void LatticeResequencer::WriteRectilinearZs(const void* src) {
  CopyBytes(zCoords_.data(), src, zCoords_.size());
}
void LatticeResequencer::ReadRectilinearXs(void* dst) const {
  CopyBytes(dst, xCoords_.data(), xCoords_.size());
}
void LatticeResequencer::ReadRectilinearYs(void* dst) const {
  CopyBytes(dst, yCoords_.data(), yCoords_.size());
}
void LatticeResequencer::ReadRectilinearZs(void* dst) const {
  CopyBytes(dst, zCoords_.data(), zCoords_.size());
}

// --- Rows of curvilinear coordinates -------------------------------------------------------------

void LatticeResequencer::RequireCoordRow(unsigned y, unsigned z, const void* buffer,
                                         int line) const {
  if (type_ != Curvilinear || buffer == nullptr) Raise("Bad parameter", line);
  RequireRow(y, z, line);
}

void LatticeResequencer::WriteRowOfXYZ(unsigned y, unsigned z, const void* src) {
  RequireCoordRow(y, z, src, __LINE__);
  CopyBytes(coordScanline_.data(), src, coordScanline_.size());
  PutCurviCoordScanline(y, z);
}

void LatticeResequencer::WriteRowOfAxis(unsigned y, unsigned z, unsigned axis, const void* src) {
  RequireCoordRow(y, z, src, __LINE__);
  GetCurviCoordScanline(y, z);
  Scatter(coordScanline_.data(), src, CutTo(AxisRun(axis), coordScanline_.size()));
  PutCurviCoordScanline(y, z);
}

void LatticeResequencer::ReadRowOfAxis(unsigned y, unsigned z, unsigned axis, void* dst) {
  RequireCoordRow(y, z, dst, __LINE__);
  GetCurviCoordScanline(y, z);
  Gather(dst, coordScanline_.data(), CutTo(AxisRun(axis), coordScanline_.size()));
}

void LatticeResequencer::WriteRowOfX(unsigned y, unsigned z, const void* src) {
  WriteRowOfAxis(y, z, 0, src);
}
void LatticeResequencer::WriteRowOfY(unsigned y, unsigned z, const void* src) {
  WriteRowOfAxis(y, z, 1, src);
}
void LatticeResequencer::WriteRowOfZ(unsigned y, unsigned z, const void* src) {
  WriteRowOfAxis(y, z, 2, src);
}

void LatticeResequencer::ReadRowOfXYZ(unsigned y, unsigned z, void* dst) {
  RequireCoordRow(y, z, dst, __LINE__);
  GetCurviCoordScanline(y, z);
  CopyBytes(dst, coordScanline_.data(), coordScanline_.size());
}

void LatticeResequencer::ReadRowOfX(unsigned y, unsigned z, void* dst) {
  ReadRowOfAxis(y, z, 0, dst);
}
void LatticeResequencer::ReadRowOfY(unsigned y, unsigned z, void* dst) {
  ReadRowOfAxis(y, z, 1, dst);
}
void LatticeResequencer::ReadRowOfZ(unsigned y, unsigned z, void* dst) {
  ReadRowOfAxis(y, z, 2, dst);
}

// --- Rows of data --------------------------------------------------------------------------------

void LatticeResequencer::RequireDataRow(unsigned y, unsigned z, const void* buffer,
                                        int line) const {
  if (buffer == nullptr) Raise("Bad parameter", line);
  RequireRow(y, z, line);
}

void LatticeResequencer::WriteRowOfMultiComponentData(unsigned y, unsigned z, const void* src) {
  RequireDataRow(y, z, src, __LINE__);
  CopyBytes(dataScanline_.data(), src, dataScanline_.size());
  PutDataScanline(y, z);
}

void LatticeResequencer::WriteRowOfSingleComponentData(unsigned y, unsigned z, unsigned component,
                                                       const void* src) {
  RequireDataRow(y, z, src, __LINE__);
  GetDataScanline(y, z);
  Scatter(dataScanline_.data(), src, CutTo(ComponentRun(component), dataScanline_.size()));
  PutDataScanline(y, z);
}

void LatticeResequencer::ReadRowOfMultiComponentData(unsigned y, unsigned z, void* dst) {
  RequireDataRow(y, z, dst, __LINE__);
  GetDataScanline(y, z);
  CopyBytes(dst, dataScanline_.data(), dataScanline_.size());
}

void LatticeResequencer::ReadRowOfSingleComponentData(unsigned y, unsigned z, unsigned component,
                                                      void* dst) {
  RequireDataRow(y, z, dst, __LINE__);
  GetDataScanline(y, z);
  Gather(dst, dataScanline_.data(), CutTo(ComponentRun(component), dataScanline_.size()));
}

}  // namespace trovan
