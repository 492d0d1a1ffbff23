#include "workbench/cli/options.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <string_view>

namespace workbench {
namespace {

constexpr const char* kDescription =
    "Confidence intervals and hypothesis tests for binomial proportions: one sample, paired "
    "samples, "
    "independent samples.";

constexpr const char* kFooter =
    "Example:\n"
    "  proportions data.csv -c \"PROPORTIONS /ONESAMPLE smoker TESTVAL=0.2 CITYPES=ALL "
    "TESTTYPES=ALL.\"\n"
    "Exit status: 0 done (warnings allowed), 1 a command was refused or failed, 2 wrong usage, "
    "unreadable data or\n"
    "unwritable output.";

std::string readAll(std::istream& in) {
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string readCommandFile(const std::string& path) {
  if (path == "-") return readAll(std::cin);
  if (std::filesystem::is_directory(path)) {
    throw UsageError("the command file " + path + " is a directory; name a text file");
  }
  std::ifstream in(path, std::ios::binary);
  if (!in)
    throw UsageError("the command file " + path + " cannot be read; check its name and rights");
  return readAll(in);
}

/// Line ends of any system as a line feed.
std::string withLineFeeds(const std::string& text) {
  std::string result;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool isPair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (!isPair) result += text[i] == '\r' ? '\n' : text[i];
  }
  return result;
}

template <typename Value>
CLI::CheckedTransformer choice(const std::map<std::string, Value>& values) {
  return CLI::CheckedTransformer(values, CLI::ignore_case);
}

/// What the parser stores; the rest of the options follows from it.
struct Raw {
  std::string command;
  std::string file;
  std::string format;
  std::optional<std::string> missing;
  std::string delimiter;
  std::string decimal = ".";
  bool separate = false;
};

/// What the texts of --na, --delimiter and --decimal say.
void chooseReading(const Raw& raw, DataOptions& data) {
  if (raw.missing) {
    data.missingTexts.emplace();
    std::istringstream texts(*raw.missing);
    for (std::string text; std::getline(texts, text, ',');) data.missingTexts->push_back(text);
  }
  data.decimal = raw.decimal.front();
  if (raw.delimiter.empty()) return;
  if (raw.delimiter != "tab" && raw.delimiter != "\\t" && raw.delimiter.size() != 1) {
    throw UsageError("--delimiter is one character, or tab");
  }
  data.layout.delimiter = raw.delimiter.size() == 1 ? raw.delimiter.front() : '\t';
  if (raw.delimiter == raw.decimal) {
    throw UsageError("--delimiter and --decimal are the same sign; give another delimiter");
  }
  if (std::string_view("\"\r\n").find(data.layout.delimiter) != std::string_view::npos) {
    throw UsageError("--delimiter cannot be a quote or a line end");
  }
}

void chooseFormat(const Raw& raw, ProgramOptions& options) {
  if (!raw.format.empty()) {
    options.format = *formatFromName(raw.format);
  } else if (const auto told = formatFromEnding(options.output)) {
    options.format = *told;
  }
}

void chooseCommand(const CLI::App& app, const Raw& raw, ProgramOptions& options) {
  const bool byText = app.count("--command") > 0, byFile = app.count("--file") > 0;
  if (byText == byFile) {
    throw UsageError(
        byText ? "give the command text with -c or with -f, not with both"
               : "there is no command; give its text with -c TEXT or a file of it with -f FILE");
  }
  if (byFile && raw.file == "-" && options.data.data == "-") {
    throw UsageError("standard input cannot be both DATA and the command file");
  }
  options.commandText = withLineFeeds(byText ? raw.command : readCommandFile(raw.file));
}

void declare(CLI::App& app, ProgramOptions& options, Raw& raw) {
  DataOptions& data = options.data;
  app.add_option("DATA", data.data,
                 "a .csv, .tsv, .parquet, .json, .jsonl or .ndjson file (compressed ones too); - "
                 "for CSV on standard "
                 "input; duckdb:FILE for a database file")
      ->required();
  app.add_option("-c,--command", raw.command, "the command text");
  app.add_option("-f,--file", raw.file, "a file of command text, - for standard input");
  app.add_option("--query", data.query, "SQL that selects what to read (a file is the table data)");
  app.add_option("--table", data.table, "the table of a database to read");
  app.add_option("--schema", data.schema,
                 "the variables' dictionary, or none (default: STEM.schema.json beside the data)");
  app.add_option("--na", raw.missing,
                 "texts that are missing, separated by commas, \"\" for none (default: NA in "
                 "columns that are of one kind without it)")
      ->type_name("TEXT[,TEXT...]");
  app.add_option("--delimiter", raw.delimiter, "of CSV: one character or tab (default: found)");
  app.add_option("--decimal", raw.decimal, "of CSV: the decimal sign (default: the point)")
      ->check(CLI::IsMember({".", ","}));
  app.add_option("--encoding", data.layout.encoding, "of CSV: its encoding (default: UTF-8)");
  app.add_option("--weight", data.weight, "the weight variable");
  app.add_option("--split", data.split, "the split-file variables, outermost first")
      ->delimiter(',')
      ->allow_extra_args(false);  // what follows is no further name: it may be DATA
  app.add_option("--split-layout", raw.separate,
                 "rows: split groups share the tables; tables: a set for each")
      ->transform(choice(std::map<std::string, bool>{{"rows", false}, {"tables", true}}))
      ->type_name("rows|tables");
  app.add_option("--collapse", data.collapse, "count identical cases in the data engine")
      ->transform(choice(std::map<std::string, CollapseMode>{{"auto", CollapseMode::kAuto},
                                                             {"always", CollapseMode::kAlways},
                                                             {"never", CollapseMode::kNever}}))
      ->type_name("auto|always|never");
  app.add_option("--format", raw.format,
                 "the output format (default: from the ending of -o, else text)")
      ->check(CLI::IsMember({"text", "markdown", "html", "json", "csv"}, CLI::ignore_case))
      ->type_name("text|markdown|html|json|csv");
  app.add_option("-o,--output", options.output, "the output file (default: standard output)");
  app.add_option("--progress", options.progress, "progress on standard error")
      ->transform(choice(std::map<std::string, ProgressMode>{{"auto", ProgressMode::kAuto},
                                                             {"always", ProgressMode::kAlways},
                                                             {"never", ProgressMode::kNever}}))
      ->type_name("auto|always|never");
  app.add_option("--advice", options.advise, "what a colleague would say, on standard error")
      ->transform(choice(std::map<std::string, bool>{{"auto", true}, {"never", false}}))
      ->type_name("auto|never");
  app.set_version_flag("--version", "proportions " PROPORTIONS_VERSION);
  app.footer(kFooter);
}

}  // namespace

std::optional<ProgramOptions> readOptions(int argc, const char* const* argv) {
  CLI::App app(kDescription, "proportions");
  ProgramOptions options;
  Raw raw;
  declare(app, options, raw);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& shown) {
    app.exit(shown);
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  options.data.separateTables = raw.separate;
  chooseReading(raw, options.data);
  chooseFormat(raw, options);
  chooseCommand(app, raw, options);
  return options;
}

}  // namespace workbench
