// What the subcommands of `trovan lattice` have in common.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "filters/lattice/Formats.h"

namespace trovan::tool {

using Work = std::function<int()>;

void AddLatticeInfo(CLI::App& lattice, Work& work);
void AddLatticeConvert(CLI::App& lattice, Work& work);
void AddLatticePreview(CLI::App& lattice, Work& work);

// The lattice to read and how.
struct LatticeInput {
  std::string file;
  filters::LatticeReadOptions options;

  std::wstring Path() const;
  std::string Name() const;  // for messages, UTF-8
  std::unique_ptr<filters::LatticeReader> Open() const;
};

// Adds the file and the options that tell how to read it. `input` must outlive the parsing.
void AddLatticeInput(CLI::App& command, LatticeInput& input);

// Checks of numbers. (The parser of numbers also takes "nan" and "inf".)
extern const CLI::Validator kFinite;
extern const CLI::Validator kPercent;  // finite, and not negative

// A message of the command on standard error, without the control characters that a file may hold.
void Warn(const std::string& message);

// The remarks of a reader.
void ShowRemarks(const LatticeInput& input, const filters::LatticeReader& reader);

}  // namespace trovan::tool
