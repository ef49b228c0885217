#include <map>
#include <memory>
#include <optional>

#include <corvel/Path.h>
#include <corvel/Text.h>

#include "ProgressBar.h"
#include "Tool.h"
#include "filters/lattice/Preview.h"
#include "filters/support/FilterError.h"
#include "filters/support/PngFile.h"
#include "lattice/LatticeArguments.h"

namespace trovan::tool {
namespace {

using filters::PreviewStyle;

struct PreviewArguments {
  LatticeInput input;
  std::string output;
  std::string style = "relief";
  std::vector<double> range;
  filters::PreviewOptions options;
};

const std::map<std::string, PreviewStyle> kStyles = {{"relief", PreviewStyle::kRelief},
                                                     {"colour", PreviewStyle::kColour},
                                                     {"grey", PreviewStyle::kGrey}};

// Anything else is more likely a mistake, such as the lattice given twice.
void RequirePng(const std::wstring& path) {
  if (corvel::ToLower(corvel::CPath(path).GetExtension()) == L".png") return;
  throw filters::FilterError(corvel::Utf8FromWide(path) +
                             ": the picture is a PNG; its name has to end in .png");
}

int Preview(const PreviewArguments& arguments) {
  const std::wstring output = corvel::PathFromSystem(arguments.output);
  RequirePng(output);
  const auto reader = arguments.input.Open();
  ShowRemarks(arguments.input, *reader);
  filters::PreviewOptions options = arguments.options;
  options.style = kStyles.at(arguments.style);
  if (!arguments.range.empty()) {
    options.lowest = arguments.range[0];
    options.highest = arguments.range[1];
  }
  std::optional<filters::Picture> picture;
  {
    ProgressBar progress(arguments.input.Name(), ProgressBar::Output::kElsewhere);
    picture = filters::PreviewLattice(*reader, options, &progress);
  }
  if (!picture) return kInterrupted;
  filters::WritePng(output, picture->width, picture->height, picture->pixels);
  return kDone;
}

}  // namespace

void AddLatticePreview(CLI::App& lattice, Work& work) {
  auto* command = lattice.add_subcommand(
      "preview", "Draw one plane as a PNG picture; nodes without a value are transparent");
  auto arguments = std::make_shared<PreviewArguments>();
  AddLatticeInput(*command, arguments->input);
  command->add_option("output", arguments->output, "The picture to write (.png)")->required();
  command->add_option("--plane", arguments->options.plane, "The plane, counted from 0")
      ->capture_default_str();
  command->add_option("--component", arguments->options.component, "The component, counted from 0")
      ->capture_default_str();
  command
      ->add_option("--style", arguments->style,
                   "relief (colours, lit from the north-west), colour or grey")
      ->check(CLI::IsMember({"relief", "colour", "grey"}))
      ->capture_default_str();
  command
      ->add_option("--size", arguments->options.pixels,
                   "Pixels of the longer side at most; larger planes are averaged")
      ->check(CLI::Range(1U, 16384U).description("PIXELS"))
      ->capture_default_str();
  command
      ->add_option("--range", arguments->range,
                   "Values of the first and the last colour; otherwise those that occur")
      ->expected(2)
      ->type_name("MIN MAX");
  command->callback([arguments, &work] { work = [arguments] { return Preview(*arguments); }; });
}

}  // namespace trovan::tool
