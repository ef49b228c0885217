#include "clip/ClipCommand.h"

#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <nlohmann/json.hpp>

#include <corvel/Path.h>
#include <corvel/Text.h>
#include <quillon/IoFilter.h>

#include "Printable.h"
#include "ProgressBar.h"
#include "StandardOutput.h"
#include "Tool.h"
#include "filters/clip/DrawingClip.h"
#include "filters/clip/RegionReader.h"
#include "filters/support/FileSink.h"
#include "filters/support/OutputFile.h"

namespace trovan::tool {
namespace {

using filters::DrawingClipResult;
using filters::Problems;
using tarnis::Polygon2;

// What the options are parsed into.
struct Arguments {
  std::string file;
  std::string output;
  std::string region;
  filters::DrawingOptions options;
  bool stats = false;
  std::string format = "text";

  std::wstring Path() const { return corvel::PathFromSystem(file); }
  std::string Name() const { return corvel::Utf8FromWide(Path()); }
};

void Warn(const std::string& message) {
  std::fprintf(stderr, "trovan: %s\n", Printable(message).c_str());
}

void WarnOf(const std::string& name, const Problems& problems) {
  const std::string start = name + ": ";
  for (const std::string& problem : problems.First()) Warn(start + problem);
  if (problems.Count() > problems.First().size()) {
    Warn(start + "and " + std::to_string(problems.Count() - problems.First().size()) +
         " more of the kind");
  }
}

// --- Statistics ----------------------------------------------------------------------------------

std::string Line(const char* label, const std::string& value) {
  char start[24];
  std::snprintf(start, sizeof start, "  %-14s ", label);
  return start + value + '\n';
}

std::string StatisticsAsText(const std::string& name, const filters::ClipStatistics& counts,
                             double seconds) {
  char time[32];
  std::snprintf(time, sizeof time, "%.2f s", seconds);
  return Printable(name) + '\n' + Line("Objects", std::to_string(counts.Objects())) +
         Line("Passed whole", std::to_string(counts.whole)) +
         Line("Clipped", std::to_string(counts.clipped)) +
         Line("Dropped", std::to_string(counts.dropped)) + Line("Time", time);
}

std::string StatisticsAsJson(const std::string& name, const filters::ClipStatistics& counts,
                             double seconds) {
  nlohmann::ordered_json json;
  json["file"] = name;
  json["objects"] = counts.Objects();
  json["whole"] = counts.whole;
  json["clipped"] = counts.clipped;
  json["dropped"] = counts.dropped;
  json["seconds"] = seconds;
  return json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
}

// --- The work ------------------------------------------------------------------------------------

Polygon2 ReadRegion(const Arguments& arguments) {
  const std::wstring argument = corvel::PathFromSystem(arguments.region);
  Problems remarks;
  Polygon2 region;
  {
    ProgressBar progress("region", ProgressBar::Output::kElsewhere);
    region = filters::ReadRegion(argument, &progress, &remarks);
  }
  WarnOf("the region " + corvel::Utf8FromWide(argument), remarks);
  return region;
}

DrawingClipResult ClipToFile(const Arguments& arguments, const Polygon2& region) {
  filters::OutputFile output(corvel::PathFromSystem(arguments.output));
  DrawingClipResult result;
  output.Fill([&](corvel::CBufferedFile& file) {
    filters::FileSink sink(file);
    ProgressBar progress(arguments.Name(), ProgressBar::Output::kElsewhere);
    result = ClipDrawing(arguments.Path(), arguments.options, region, sink, &progress);
  });
  output.Commit();
  return result;
}

DrawingClipResult ClipToStandardOutput(const Arguments& arguments, const Polygon2& region) {
  StandardOutput sink;
  ProgressBar progress(arguments.Name());
  return ClipDrawing(arguments.Path(), arguments.options, region, sink, &progress);
}

std::string InWords(const corvel::Box2d& box) {
  char text[160];
  std::snprintf(text, sizeof text, "x from %.6g to %.6g and y from %.6g to %.6g", box.min.x,
                box.max.x, box.min.y, box.max.y);
  return text;
}

// Tells what was not as it should be. Returns the exit code.
int Conclude(const std::string& name, const DrawingClipResult& result) {
  if (result.apart) {
    Warn("nothing of " + name + " lies in the region: the drawing covers " +
         InWords(result.apart->drawing) + ", the region covers " + InWords(result.apart->region) +
         "; are they in the same coordinates?");
  }
  WarnOf(name, result.remarks);
  WarnOf(name, result.losses);
  WarnOf(name, result.unwritten);
  return result.losses.Count() + result.unwritten.Count() > 0 ? kFailed : kDone;
}

int Clip(const Arguments& arguments) {
  const auto start = std::chrono::steady_clock::now();
  DrawingClipResult result;
  try {
    const Polygon2 region = ReadRegion(arguments);
    result = arguments.output.empty() ? ClipToStandardOutput(arguments, region)
                                      : ClipToFile(arguments, region);
  } catch (const quillon::AbortError&) {
    return kInterrupted;
  }
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  const int code = Conclude(arguments.Name(), result);
  if (arguments.stats) {
    const auto show = arguments.format == "json" ? StatisticsAsJson : StatisticsAsText;
    StandardOutput().Write(show(arguments.Name(), result.statistics, time.count()));
  }
  return code;
}

// --- Arguments -----------------------------------------------------------------------------------

constexpr const char* kFooter = R"help(
Examples: trovan clip land.geojson north.svg --region 10,55,30,70
          trovan clip land.shp bay.svg --region "POLYGON ((0 0, 9 0, 4 8, 0 0))" --stats

The region is given in the coordinates of the drawing: in those of a map, or in the user units
of an SVG document, whose y points down. It is one of
  xmin,ymin,xmax,ymax  a box (--region=-5,0,5,9 where it begins with a minus sign)
  "POLYGON ((x y, ...), ...)", "MULTIPOLYGON (...)"  well-known text
  FILE                 the filled areas of a drawing, the first polygon of a shapefile, or a
                       file with well-known text

The drawing that remains keeps its look; the edge of the region gets no line. A map is drawn on
a page of 1000 units, with areas in one light colour. The output appears under its name when it
is complete.)help";

const CLI::Validator kSvgName(
    [](const std::string& name) {
      const std::wstring extension =
          corvel::ToLower(corvel::CPath(corvel::PathFromSystem(name)).GetExtension());
      return extension == L".svg" ? "" : "the output is SVG and has to be named so: " + name;
    },
    "");

}  // namespace

void AddClipCommand(CLI::App& app, std::function<int()>& work) {
  auto* command = app.add_subcommand("clip", "Cuts drawings and maps to a region, and writes SVG");
  command->footer(std::string(kFooter) + "\n\n" + command->get_footer());
  auto arguments = std::make_shared<Arguments>();
  command
      ->add_option(
          "file", arguments->file,
          "The drawing: SVG (.svg), GeoJSON (.geojson, .json) or a shapefile (.shp), by its "
          "name or else by its content")
      ->required();
  auto* output = command
                     ->add_option("output", arguments->output,
                                  "The SVG file to write (.svg), which replaces one that exists; "
                                  "otherwise standard output is written")
                     ->check(kSvgName);
  command->add_option("--region", arguments->region, "What to keep: a box, an area, or a file")
      ->required();
  command->add_flag("--keep-attributes", arguments->options.keepAttributes,
                    "Write the attributes of map features as \"data-...\" attributes");
  command->add_option("--code-page", arguments->options.codePage,
                      "Read the attributes of a shapefile in this Windows code page (65001 is "
                      "UTF-8) instead of the table's");
  auto* stats = command->add_flag("--stats", arguments->stats,
                                  "Tell how many objects passed whole, were clipped and dropped");
  stats->needs(output);
  command->add_option("--format", arguments->format, "The form of --stats: text or json")
      ->check(CLI::IsMember({"text", "json"}))
      ->capture_default_str()
      ->needs(stats);
  command->callback([arguments, &work] { work = [arguments] { return Clip(*arguments); }; });
}

}  // namespace trovan::tool
