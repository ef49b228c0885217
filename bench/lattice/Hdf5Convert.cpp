// hdf5_convert INPUT.img TEMPORARY.h5 OUTPUT.img PLANES: what `trovan lattice convert` does with
// the lattice of the benchmarks, by way of an HDF5 file as one writes it with that library: rows of
// one component each go into a dataset [plane][row][column][component], and rows of whole nodes
// come out of it, bottom row first. The dataset is contiguous; all caches are as the library sets
// them.
#include <array>
#include <cstdio>
#include <cstring>
#include <exception>
#include <hdf5.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr hsize_t kColumns = 512;
constexpr hsize_t kRows = 512;
constexpr hsize_t kComponents = 3;

using Place = std::array<hsize_t, 4>;  // plane, row, column, component
using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File Open(const char* path, const char* mode) {
  File file(std::fopen(path, mode), std::fclose);
  if (file == nullptr) throw std::runtime_error(std::string("cannot open ") + path);
  return file;
}

template <typename Status>
Status Check(Status status) {
  if (status < 0) throw std::runtime_error("HDF5 failed");
  return status;
}

class Dataset {
 public:
  Dataset(const char* path, hsize_t planes)
      : file_(Check(H5Fcreate(path, H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT))) {
    const Place size{planes, kRows, kColumns, kComponents};
    space_ = Check(H5Screate_simple(4, size.data(), nullptr));
    set_ = Check(H5Dcreate2(file_, "nodes", H5T_NATIVE_FLOAT, space_, H5P_DEFAULT, H5P_DEFAULT,
                            H5P_DEFAULT));
    const hsize_t oneComponent = kColumns;
    const hsize_t allComponents = kColumns * kComponents;
    component_ = Check(H5Screate_simple(1, &oneComponent, nullptr));
    nodes_ = Check(H5Screate_simple(1, &allComponents, nullptr));
  }
  ~Dataset() {
    H5Sclose(nodes_);
    H5Sclose(component_);
    H5Dclose(set_);
    H5Sclose(space_);
    H5Fclose(file_);
  }
  Dataset(const Dataset&) = delete;
  Dataset& operator=(const Dataset&) = delete;

  void WriteComponent(hsize_t plane, hsize_t row, hsize_t component, const float* values) {
    Select({plane, row, 0, component}, {1, 1, kColumns, 1});
    Check(H5Dwrite(set_, H5T_NATIVE_FLOAT, component_, space_, H5P_DEFAULT, values));
  }
  void ReadNodes(hsize_t plane, hsize_t row, float* values) {
    Select({plane, row, 0, 0}, {1, 1, kColumns, kComponents});
    Check(H5Dread(set_, H5T_NATIVE_FLOAT, nodes_, space_, H5P_DEFAULT, values));
  }

 private:
  void Select(const Place& start, const Place& count) {
    Check(
        H5Sselect_hyperslab(space_, H5S_SELECT_SET, start.data(), nullptr, count.data(), nullptr));
  }

  hid_t file_;
  hid_t space_;
  hid_t set_;
  hid_t component_;  // in memory: a row of one component
  hid_t nodes_;      // in memory: a row of nodes
};

void ReadBands(std::FILE* in, hsize_t planes, Dataset& dataset) {
  std::vector<float> row(kColumns);
  for (hsize_t plane = 0; plane < planes; ++plane) {
    for (hsize_t component = 0; component < kComponents; ++component) {
      for (hsize_t y = 0; y < kRows; ++y) {
        if (std::fread(row.data(), sizeof(float), kColumns, in) != kColumns) {
          throw std::runtime_error("the input is too short");
        }
        dataset.WriteComponent(plane, y, component, row.data());
      }
    }
  }
}

void WritePixels(Dataset& dataset, hsize_t planes, std::FILE* out) {
  const std::size_t bands = planes * kComponents;
  std::vector<float> nodes(kColumns * kComponents);
  std::vector<float> pixels(kColumns * bands);
  for (hsize_t y = kRows; y-- > 0;) {
    for (hsize_t plane = 0; plane < planes; ++plane) {
      dataset.ReadNodes(plane, y, nodes.data());
      for (std::size_t x = 0; x < kColumns; ++x) {
        std::memcpy(&pixels[x * bands + plane * kComponents], &nodes[x * kComponents],
                    kComponents * sizeof(float));
      }
    }
    if (std::fwrite(pixels.data(), sizeof(float), pixels.size(), out) != pixels.size()) {
      throw std::runtime_error("cannot write the output");
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fputs("usage: hdf5_convert INPUT.img TEMPORARY.h5 OUTPUT.img PLANES\n", stderr);
    return 2;
  }
  try {
    const hsize_t planes = std::stoul(argv[4]);
    const File in = Open(argv[1], "rb");
    File out = Open(argv[3], "wb");
    {
      Dataset dataset(argv[2], planes);
      ReadBands(in.get(), planes, dataset);
      WritePixels(dataset, planes, out.get());
    }
    unlink(argv[2]);
    if (std::fclose(out.release()) != 0) throw std::runtime_error("cannot write the output");
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "hdf5_convert: %s\n", error.what());
    unlink(argv[2]);
    return 1;
  }
}
