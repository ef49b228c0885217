#include <memory>
#include <optional>

#include "ProgressBar.h"
#include "StandardOutput.h"
#include "Tool.h"
#include "filters/lattice/LatticeReport.h"
#include "lattice/LatticeArguments.h"
#include "lattice/LatticeReportText.h"

namespace trovan::tool {
namespace {

struct InfoArguments {
  LatticeInput input;
  std::string format = "text";
  double tolerance = 0.01;
};

int Info(const InfoArguments& arguments) {
  const auto reader = arguments.input.Open();
  std::optional<filters::LatticeReport> report;
  {
    ProgressBar progress(arguments.input.Name(), ProgressBar::Output::kElsewhere);
    report =
        filters::ReportLattice(*reader, arguments.input.Path(), arguments.tolerance, &progress);
  }
  if (!report) return kInterrupted;
  const std::string name = arguments.input.Name();
  StandardOutput().Write(arguments.format == "json"
                             ? LatticeReportAsJson(name, *report)
                             : LatticeReportAsText(name, *report, arguments.tolerance));
  return kDone;
}

}  // namespace

void AddLatticeInfo(CLI::App& lattice, Work& work) {
  auto* command = lattice.add_subcommand(
      "info", "Tell the type, sizes, spacing, range and invalid nodes, and the library's summary");
  auto arguments = std::make_shared<InfoArguments>();
  AddLatticeInput(*command, arguments->input);
  command->add_option("--format", arguments->format, "text or json")
      ->check(CLI::IsMember({"text", "json"}))
      ->capture_default_str();
  command
      ->add_option("--tolerance", arguments->tolerance,
                   "Percent of the mean step that the steps of an equally spaced axis may be off")
      ->check(kPercent)
      ->capture_default_str();
  command->callback([arguments, &work] { work = [arguments] { return Info(*arguments); }; });
}

}  // namespace trovan::tool
