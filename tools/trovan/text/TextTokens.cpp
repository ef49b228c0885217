#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <corvel/Path.h>
#include <corvel/Text.h>

#include "ProgressBar.h"
#include "StandardOutput.h"
#include "Tool.h"
#include "filters/support/CsvWriter.h"
#include "filters/support/FilterError.h"
#include "filters/support/JsonWriter.h"
#include "filters/support/NumberText.h"
#include "filters/text/EscapedText.h"
#include "filters/text/TokenLister.h"
#include "text/TextArguments.h"

namespace trovan::tool {
namespace {

using filters::Escaped;
using filters::ListedToken;
using filters::RowWriter;
using filters::TokenKind;

struct TokensArguments {
  std::string file;
  std::string format = "text";
  std::string kind = "text";
  bool noQuotes = false;
  filters::TokenOptions options;
  std::optional<std::uint64_t> limit;
};

const std::map<std::string, TokenKind> kKinds = {{"text", TokenKind::kText},
                                                 {"integer", TokenKind::kInteger},
                                                 {"number", TokenKind::kNumber},
                                                 {"boolean", TokenKind::kBoolean}};

// "," or "\n"; empty for a token that did not end.
std::string EndOf(const ListedToken& token) {
  return token.terminator ? Escaped({&*token.terminator, 1}) : std::string();
}

// Where the tokens go.
class Listing {
 public:
  virtual ~Listing() = default;
  virtual void Begin() = 0;
  virtual void Add(const ListedToken& token) = 0;
  virtual void End() = 0;
};

// One line each, for people.
class TextListing : public Listing {
 public:
  explicit TextListing(filters::ByteSink& sink) : out_(sink) {}

  void Begin() override { out_.Put(" number    line  status           end    quoted  text\n"); }
  void Add(const ListedToken& token) override {
    out_.Put(Line(token));
    out_.FlushIfFull();
  }
  void End() override { out_.Flush(); }

 private:
  static std::string Line(const ListedToken& token) {
    const std::string end = token.terminator ? "'" + EndOf(token) + "'" : "-";
    char start[96];
    std::snprintf(start, sizeof start, "%7llu %7llu  %-15s  %-5s  %-6s ", token.number, token.line,
                  filters::StatusName(token.status), end.c_str(), token.quoted ? "yes" : "no");
    std::string line = start;
    if (!token.text.empty()) line += ' ' + Escaped(token.text);
    if (!token.value.empty()) line += " = " + token.value;
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
  }

  filters::OutputBuffer out_;
};

// One row each, for programs.
class RowListing : public Listing {
 public:
  RowListing(std::unique_ptr<RowWriter> writer, bool withValue)
      : writer_(std::move(writer)), withValue_(withValue) {}

  void Begin() override {
    std::vector<std::string> names = {"number", "line", "status", "end", "quoted", "text"};
    if (withValue_) names.emplace_back("value");
    writer_->Begin(names);
  }
  void Add(const ListedToken& token) override {
    writer_->BeginRow();
    writer_->Number(std::to_string(token.number));
    writer_->Number(std::to_string(token.line));
    writer_->Text(filters::StatusName(token.status));
    AddText(EndOf(token));
    writer_->Logical(token.quoted);
    writer_->Text(Escaped(token.text));
    if (withValue_) AddValue(token.value);
    writer_->EndRow();
  }
  void End() override { writer_->End(); }

 private:
  void AddText(const std::string& text) {
    if (text.empty()) {
      writer_->Null();
    } else {
      writer_->Text(text);
    }
  }
  void AddValue(const std::string& value) {
    if (value == "true" || value == "false") {
      writer_->Logical(value == "true");
    } else if (filters::IsNumber(value)) {
      writer_->Number(value);
    } else {
      AddText(value);  // none, "inf", "nan"
    }
  }

  std::unique_ptr<RowWriter> writer_;
  bool withValue_;
};

std::unique_ptr<Listing> MakeListing(const TokensArguments& arguments, StandardOutput& output) {
  using filters::JsonWriter;
  if (arguments.format == "text") return std::make_unique<TextListing>(output);
  std::unique_ptr<RowWriter> writer;
  if (arguments.format == "csv") {
    writer = std::make_unique<filters::CsvWriter>(output);
  } else {
    writer = std::make_unique<JsonWriter>(output, JsonWriter::Form::kLines);
  }
  return std::make_unique<RowListing>(std::move(writer), arguments.kind != "text");
}

void List(const TokensArguments& arguments, filters::TokenLister& lister, Listing& listing) {
  for (std::uint64_t n = 0; !arguments.limit || n < *arguments.limit; ++n) {
    if (!lister.Next()) return;
    listing.Add(lister.Token());
  }
}

int Tokens(const TokensArguments& arguments) {
  StandardOutput output;
  const auto listing = MakeListing(arguments, output);
  const std::wstring path = corvel::PathFromSystem(arguments.file);
  filters::TokenOptions options = arguments.options;
  options.kind = kKinds.at(arguments.kind);
  options.useQuotes = !arguments.noQuotes;
  ProgressBar progress(corvel::Utf8FromWide(path));
  filters::TokenLister lister(path, options, &progress);
  listing->Begin();
  try {
    List(arguments, lister, *listing);
  } catch (const filters::FilterError&) {
    listing->End();  // what led to it
    throw;
  }
  listing->End();
  return lister.WasStopped() ? kInterrupted : kDone;
}

}  // namespace

void AddTextTokens(CLI::App& text, std::function<int()>& work) {
  auto* command = text.add_subcommand(
      "tokens", "List the tokens of a file, one by one, as the library's tokenizer reads them");
  auto arguments = std::make_shared<TokensArguments>();
  command->add_option("file", arguments->file, "The text file")->required();
  AddCharacters(*command, "--delimiters", arguments->options.delimiters,
                "What ends tokens, beside line feeds and form feeds [,]");
  AddCharacters(*command, "--whitespace", arguments->options.whitespace,
                "What is skipped around tokens [blank and \\t]");
  AddCharacters(*command, "--quotes", arguments->options.quotes, "What encloses tokens [\"]");
  command->add_flag("--no-quotes", arguments->noQuotes, "Read quotes as ordinary characters");
  command->add_option("--as", arguments->kind, "Read each token as text, integer, number, boolean")
      ->check(CLI::IsMember({"text", "integer", "number", "boolean"}))
      ->capture_default_str();
  command->add_option("--format", arguments->format, "text, csv or ndjson")
      ->check(CLI::IsMember({"text", "csv", "ndjson"}))
      ->capture_default_str();
  command->add_option("--limit", arguments->limit, "Stop after N tokens")->check(kCount);
  command->callback([arguments, &work] { work = [arguments] { return Tokens(*arguments); }; });
}

}  // namespace trovan::tool
