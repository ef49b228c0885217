// Reads ENVI rasters. See docs/formats/envi.md.
#pragma once

#include <string>

#include <corvel/BufferedFile.h>

#include "filters/lattice/EnviFiles.h"
#include "filters/lattice/EnviHeader.h"
#include "filters/lattice/LatticeReader.h"

namespace trovan::filters {

class EnviReader : public LatticeReader {
 public:
  // Opens the raster to which `path` belongs: the header or the raw file. ENVI has no planes: band
  // number = plane * components + component.
  //
  // Raises FilterError when the other file is missing, the header makes no sense, the bands cannot
  // be divided into that many planes or the raw file is too short for its values; corvel::Exception
  // when a file cannot be opened or read. Takes no memory for values yet.
  EnviReader(const std::wstring& path, unsigned planes);

  const LatticeHeader& Header() const override { return header_; }

  void ReadRows(LatticeRowSink& sink) override;

 private:
  void FillHeader(unsigned planes);
  void AddRemarks();
  void AddMapRemarks(const EnviMapInfo& info);
  void CheckRawSize();
  std::string ValuesText() const;

  EnviFiles files_;
  EnviHeader envi_;
  LatticeHeader header_;
  corvel::CBufferedFile raw_;
};

}  // namespace trovan::filters
