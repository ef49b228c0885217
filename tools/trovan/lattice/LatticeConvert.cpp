#include <cctype>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <corvel/Console.h>
#include <corvel/Path.h>
#include <corvel/Text.h>

#include "ProgressBar.h"
#include "Tool.h"
#include "filters/lattice/LatticeConversion.h"
#include "filters/lattice/NodeTypes.h"
#include "filters/support/FilterError.h"
#include "lattice/LatticeArguments.h"

namespace trovan::tool {
namespace {

using filters::ByteOrder;
using filters::ConversionOutcome;
using filters::FilterError;
using filters::Interleave;
using filters::RowOrder;

// What the options are parsed into; those that were not given stay empty.
struct ConvertArguments {
  LatticeInput input;
  std::string output;
  std::string interleave;
  std::string rows;
  std::string byteOrder;
  bool asText = false;
  std::string type;
  std::vector<double> scale;
  std::optional<double> voidValue;
  std::vector<double> valid;
  std::optional<double> replacement;
  std::optional<double> invalidReplacement;
  bool keepInvalid = false;
  double spacingTolerance = 0.01;
};

template <typename T>
std::optional<T> Chosen(const std::map<std::string, T>& names, const std::string& name) {
  if (name.empty()) return std::nullopt;
  return names.at(name);  // the parser has refused all other names
}

const std::map<std::string, Interleave> kInterleaves = {{"bsq", Interleave::kBandSequential},
                                                        {"bil", Interleave::kBandByLine},
                                                        {"bip", Interleave::kBandByPixel}};
const std::map<std::string, RowOrder> kRowOrders = {{"top-down", RowOrder::kTopDown},
                                                    {"bottom-up", RowOrder::kBottomUp}};
const std::map<std::string, ByteOrder> kByteOrders = {{"little", ByteOrder::kLittleEndian},
                                                      {"big", ByteOrder::kBigEndian}};

filters::LatticeWriteOptions WriteOptions(const ConvertArguments& arguments) {
  filters::LatticeWriteOptions options;
  options.interleave = Chosen(kInterleaves, arguments.interleave);
  options.rowOrder = Chosen(kRowOrders, arguments.rows);
  options.byteOrder = Chosen(kByteOrders, arguments.byteOrder);
  options.asText = arguments.asText;
  return options;
}

// Puts the question to the person at the terminal. Anything but y or yes is a no.
bool Ask(const std::wstring& question, ProgressBar& progress) {
  using corvel::IsTerminal;
  using corvel::StandardStream;
  if (!IsTerminal(StandardStream::kInput) || !IsTerminal(StandardStream::kError)) {
    throw FilterError(
        "the lattice holds invalid nodes (NaN or infinite values); "
        "--replace-invalid VALUE replaces them, --keep-invalid leaves them as they "
        "are");
  }
  progress.Hide();
  std::fprintf(stderr, "%s [y/N] ", corvel::Utf8FromWide(question).c_str());
  char answer[16] = {};
  if (!corvel::WaitForStandardInput() || std::fgets(answer, sizeof answer, stdin) == nullptr) {
    std::fputc('\n', stderr);
  }
  std::string given = answer;
  std::erase_if(given, [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; });
  const std::wstring word = corvel::ToLower(corvel::WideFromUtf8(given));
  return word == L"y" || word == L"yes";
}

filters::NodeOptions NodeOptionsOf(const ConvertArguments& arguments, ProgressBar& progress) {
  filters::NodeOptions options;
  if (arguments.keepInvalid) options.invalid = filters::InvalidNodes::kKeep;
  if (arguments.invalidReplacement) options.invalid = filters::InvalidNodes::kReplace;
  options.invalidReplacement = arguments.invalidReplacement;
  if (!arguments.valid.empty()) {
    options.validRange = {arguments.valid[0], arguments.valid[1], *arguments.replacement};
  }
  if (!arguments.type.empty()) options.type = filters::NodeTypeNamed(arguments.type);
  options.voidValue = arguments.voidValue;
  if (!arguments.scale.empty()) options.scale = {arguments.scale[0], arguments.scale[1]};
  options.confirm = [&progress](const std::wstring& question) { return Ask(question, progress); };
  return options;
}

int Convert(const ConvertArguments& arguments) {
  const std::wstring output = corvel::PathFromSystem(arguments.output);
  const auto reader = arguments.input.Open();
  const auto writer = filters::MakeLatticeWriter(output, WriteOptions(arguments));
  ShowRemarks(arguments.input, *reader);
  ConversionOutcome outcome = ConversionOutcome::kDone;
  {
    ProgressBar progress(arguments.input.Name(), ProgressBar::Output::kElsewhere);
    filters::ConversionOptions options;
    options.nodes = NodeOptionsOf(arguments, progress);
    options.spacingTolerance = arguments.spacingTolerance;
    outcome = filters::ConvertLattice(*reader, *writer, arguments.input.Path(), options, &progress);
  }
  if (outcome == ConversionOutcome::kDone) return kDone;
  if (outcome == ConversionOutcome::kCancelled || corvel::WasInterrupted()) return kInterrupted;
  Warn("the invalid nodes were not to be replaced; nothing was written");
  return kFailed;
}

template <typename T>
std::vector<std::string> Names(const std::map<std::string, T>& names) {
  std::vector<std::string> list;
  list.reserve(names.size());
  for (const auto& name : names) list.push_back(name.first);
  return list;
}

// A lattice of 3 columns, 2 rows and the components r, g, b, before and after.
constexpr const char* kConvertFooter = R"(
Example: trovan lattice convert in.hdr out.img --interleave bip --rows bottom-up

  in.img: band after band, top row first       out.img: pixel after pixel, bottom row first

      r1 r2 r3    g1 g2 g3    b1 b2 b3             r4 g4 b4   r5 g5 b5   r6 g6 b6
      r4 r5 r6    g4 g5 g6    b4 b5 b6             r1 g1 b1   r2 g2 b2   r3 g3 b3

The values pass through temporary files as large as the lattice, in the folder that TMPDIR
names or /tmp. The output appears under its name when it is complete.)";

void AddFormOptions(CLI::App& command, ConvertArguments& arguments) {
  command
      .add_option("--interleave", arguments.interleave,
                  "ENVI: write band by band (bsq), line by line (bil) or pixel by pixel (bip); bsq "
                  "unless told otherwise")
      ->check(CLI::IsMember(Names(kInterleaves)));
  command
      .add_option("--rows", arguments.rows,
                  "Write the rows top-down or bottom-up; otherwise as is usual for the format")
      ->check(CLI::IsMember(Names(kRowOrders)));
  command
      .add_option("--byte-order", arguments.byteOrder,
                  "ENVI: write little- or big-endian numbers; otherwise this machine's")
      ->check(CLI::IsMember(Names(kByteOrders)));
  command.add_flag("--ascii", arguments.asText, "VTK: write numbers as text");
}

void AddValueOptions(CLI::App& command, ConvertArguments& arguments) {
  auto* type = command.add_option(
      "--type", arguments.type,
      "Convert the values to this type: " + std::string(filters::kNodeTypeNames) +
          ". They are truncated toward zero, and what does not fit "
          "wraps, unless --scale is given");
  type->check([](const std::string& name) {
    return filters::NodeTypeNamed(name) ? std::string() : "no type of values: " + name;
  });
  command
      .add_option("--scale", arguments.scale,
                  "Map MIN to the lowest and MAX to the highest number of an integer type of up to "
                  "32 bits; values outside wrap unless --valid keeps them inside")
      ->expected(2)
      ->type_name("MIN MAX")
      ->needs(type);
  command
      .add_option("--void", arguments.voidValue,
                  "Mark nodes without a value by this one; needed when the type cannot hold the "
                  "present mark, or with --scale")
      ->check(kFinite);
  auto* valid = command
                    .add_option("--valid", arguments.valid,
                                "Replace values below MIN or above MAX by the value of --replace")
                    ->expected(2)
                    ->type_name("MIN MAX");
  auto* replace =
      command.add_option("--replace", arguments.replacement, "What --valid puts in their place")
          ->check(kFinite);
  valid->needs(replace);
  replace->needs(valid);
  auto* invalid =
      command
          .add_option("--replace-invalid", arguments.invalidReplacement,
                      "Replace NaN and infinite values by this one; otherwise a question is "
                      "asked on a terminal, and elsewhere the conversion refused")
          ->check(kFinite);
  command.add_flag("--keep-invalid", arguments.keepInvalid, "Leave NaN and infinite values")
      ->excludes(invalid);
}

}  // namespace

void AddLatticeConvert(CLI::App& lattice, Work& work) {
  auto* command = lattice.add_subcommand(
      "convert", "Write a lattice in another format or order; it may be far larger than memory");
  command->footer(std::string(kConvertFooter) + "\n\n" + command->get_footer());
  auto arguments = std::make_shared<ConvertArguments>();
  AddLatticeInput(*command, arguments->input);
  command
      ->add_option(
          "output", arguments->output,
          "The file to write; its extension tells the format: .asc, .hgt, .vtk, .hdr (ENVI, "
          "with a raw file .img), .img, .dat, .raw, .bsq, .bil, .bip, .bin (ENVI, with a "
          ".hdr). An existing file is replaced")
      ->required();
  AddFormOptions(*command, *arguments);
  AddValueOptions(*command, *arguments);
  command
      ->add_option("--tolerance", arguments->spacingTolerance,
                   "Percent of the mean step that the steps of an axis may be off when a "
                   "rectilinear lattice is written in a format for uniform ones")
      ->check(kPercent)
      ->capture_default_str();
  command->callback([arguments, &work] { work = [arguments] { return Convert(*arguments); }; });
}

}  // namespace trovan::tool
