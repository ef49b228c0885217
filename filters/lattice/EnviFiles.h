// The two files of an ENVI raster: the header and the raw values.
#pragma once

#include <string>

namespace trovan::filters {

struct EnviFiles {
  std::wstring header;
  std::wstring raw;
};

// The pair to which `path` belongs. A header ends in ".hdr"; every other file is a raw one.
//
//   scan.hdr      its raw file is scan, scan.img, scan.dat, scan.raw, scan.bsq, scan.bil, scan.bip
//                 or scan.bin: the first of them that exists
//   scan.img.hdr  scan.img
//   scan.img      its header is scan.img.hdr or scan.hdr
//
// Extensions may be in capital letters. Raises FilterError, with the names that were looked for,
// when the other file is missing, and corvel::Exception when `path` cannot be opened.
EnviFiles FindEnviFiles(const std::wstring& path);

// The pair to write for a new file: of "scan.hdr" the raw file is "scan.img"; everything else names
// the raw file, whose extension becomes ".hdr" for the header.
EnviFiles NewEnviFiles(const std::wstring& path);

}  // namespace trovan::filters
