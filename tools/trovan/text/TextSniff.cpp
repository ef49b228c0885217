#include <exception>
#include <memory>
#include <vector>

#include <nlohmann/json.hpp>

#include <corvel/Console.h>
#include <corvel/Exception.h>
#include <corvel/Path.h>
#include <corvel/Text.h>

#include "StandardOutput.h"
#include "Tool.h"
#include "filters/support/FilterError.h"
#include "filters/text/TextSniffer.h"
#include "text/TextArguments.h"
#include "text/TextReportText.h"

namespace trovan::tool {
namespace {

struct SniffArguments {
  std::vector<std::string> files;
  std::string format = "text";
};

// One report after the other: blocks with empty lines between, or one JSON object a line.
class Reports {
 public:
  explicit Reports(bool asJson) : asJson_(asJson) {}

  void Add(const std::string& name, const filters::TextReport& report) {
    if (asJson_) {
      output_.Write(TextReportAsJson(name, report)
                        .dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) +
                    '\n');
      return;
    }
    output_.Write((first_ ? "" : "\n") + TextReportAsText(name, report));
    first_ = false;
  }

 private:
  StandardOutput output_;
  bool asJson_;
  bool first_ = true;
};

int Sniff(const SniffArguments& arguments) {
  int code = kDone;
  Reports reports(arguments.format == "json");
  for (const std::string& file : arguments.files) {
    if (corvel::WasInterrupted()) return kInterrupted;
    const std::wstring path = corvel::PathFromSystem(file);
    filters::TextReport report;
    try {
      report = filters::SniffText(path);
    } catch (const corvel::Exception& error) {
      WarnOfText(error.Message());
      code = kFailed;
      continue;
    } catch (const filters::FilterError& error) {
      WarnOfText(error.what());
      code = kFailed;
      continue;
    }
    reports.Add(corvel::Utf8FromWide(path), report);
  }
  return code;
}

}  // namespace

void AddTextSniff(CLI::App& text, std::function<int()>& work) {
  auto* command = text.add_subcommand(
      "sniff",
      "Tell the encoding, the line ends, what sets the values apart, and the columns, from the "
      "first 1000 rows within the first MiB");
  auto arguments = std::make_shared<SniffArguments>();
  command->add_option("files", arguments->files, "Files to look at")->required();
  command->add_option("--format", arguments->format, "text, or json: one object a line")
      ->check(CLI::IsMember({"text", "json"}))
      ->capture_default_str();
  command->callback([arguments, &work] { work = [arguments] { return Sniff(*arguments); }; });
}

}  // namespace trovan::tool
