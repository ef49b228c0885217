// make_sample_lattice FILE PLANES: writes the lattice of the benchmarks as FILE.hdr and FILE.img,
// an ENVI raster of 512 x 512 x PLANES nodes of 3 floats, band sequential. Band number = plane * 3
// + component. The values are from 0 to 1, random to look at, and always the same.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr unsigned kColumns = 512;
constexpr unsigned kRows = 512;
constexpr unsigned kComponents = 3;

std::ofstream NewFile(const std::string& path) {
  std::ofstream file;
  file.exceptions(std::ios::failbit | std::ios::badbit);
  file.open(path, std::ios::binary | std::ios::trunc);
  return file;
}

void WriteHeader(const std::string& path, unsigned bands) {
  std::ofstream file = NewFile(path);
  file << "ENVI\nsamples = " << kColumns << "\nlines = " << kRows << "\nbands = " << bands
       << "\nheader offset = 0\nfile type = ENVI Standard\ndata type = 4\ninterleave = bsq\n"
          "byte order = 0\n";
  file.close();
}

void WriteValues(const std::string& path, unsigned bands) {
  std::ofstream file = NewFile(path);
  std::mt19937_64 random(20'240'229);  // NOLINT(cert-msc51-cpp): the same every time
  std::vector<float> band(std::size_t{kColumns} * kRows);
  for (unsigned i = 0; i < bands; ++i) {
    // The upper 24 bits, which a float holds exactly.
    for (float& value : band) value = static_cast<float>(random() >> 40) / 16'777'216.0F;
    file.write(reinterpret_cast<const char*>(band.data()),
               static_cast<std::streamsize>(band.size() * sizeof(float)));
  }
  file.close();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: make_sample_lattice FILE PLANES\n", stderr);
    return 2;
  }
  try {
    const std::string path = argv[1];
    const unsigned bands = static_cast<unsigned>(std::stoul(argv[2])) * kComponents;
    WriteHeader(path + ".hdr", bands);
    WriteValues(path + ".img", bands);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_sample_lattice: %s: %s\n", argv[1], error.what());
    return 1;
  }
}
