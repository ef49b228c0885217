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

// The pair to write for a new file, by the name alone. Of "scan.hdr" the raw file is "scan.img", of
// "scan.img.hdr" it is "scan.img"; everything else names the raw file, whose header is "scan.hdr"
// for "scan.img" and the like, and "scan.xyz.hdr" where the extension is not one of those above.
EnviFiles NewEnviFiles(const std::wstring& path);

// Looks at what lies beside a pair from NewEnviFiles and raises FilterError, with the file that is
// in the way, unless FindEnviFiles will find this very pair by both its names once it is written,
// and no other raster loses its header. A pair may replace itself.
void RequireOwnNames(const EnviFiles& files);

}  // namespace trovan::filters
