// Draws a pen plot as an SVG picture.
//
//   plot2svg garden.plot > garden.svg
#include <cstdio>
#include <exception>

#include <corvel/Text.h>

#include "PlotFilter.h"
#include "SvgPicture.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: plot2svg FILE.plot > FILE.svg\n");
    return 2;
  }
  try {
    SvgPicture picture;
    PlotFilter filter(picture);
    filter.ImportFromFile(corvel::WideFromUtf8(argv[1]), false);
    std::fputs(picture.Text().c_str(), stdout);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "plot2svg: %s: %s\n", argv[1], error.what());
    return 1;
  }
}
