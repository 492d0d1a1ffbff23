#include "workbench/cli/options.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <limits>
#include <random>
#include <sstream>
#include <string_view>

#include "workbench/cli/command_source.h"
#include "workbench/cli/option_values.h"
#include "workbench/cli/password_prompt.h"
#include "workbench/dataset/open_source.h"
#include "workbench/odbc/connection_text.h"
#include "workbench/text/nearest.h"

namespace workbench {
namespace {

/// What the parser stores; the rest of the options follows from it.
struct Raw {
  std::string command;
  std::string file;
  std::vector<std::string> counts;
  std::optional<Format> format;
  std::optional<std::string> missing;
  std::optional<std::string> delimiter;
  char decimal = '.';
};

constexpr long long kWidestWidth = 10'000;
constexpr long long kMostSamples = 1LL << 31;
constexpr long long kLargestSeed = std::numeric_limits<long long>::max();

void declareData(CLI::App& app, DataOptions& data) {
  app.add_option("DATA", data.data);
  app.add_option("--query", data.query);
  app.add_option("--table", data.table);
  app.add_option("--schema", data.schema);
  app.add_option("--weight", data.weight);
  app.add_option("--split", data.split)
      ->allow_extra_args(false);  // what follows is no further name: it may be DATA
  app.add_option_function<std::string>(
      "--split-layout", choice("--split-layout", Choices<bool>{{"rows", false}, {"tables", true}},
                               data.separateTables));
  app.add_option_function<std::string>(
      "--collapse", choice("--collapse",
                           Choices<CollapseMode>{{"auto", CollapseMode::kAuto},
                                                 {"always", CollapseMode::kAlways},
                                                 {"never", CollapseMode::kNever}},
                           data.collapse));
}

void declareOutput(CLI::App& app, ProgramOptions& options, Raw& raw) {
  app.add_option_function<std::string>("--format", [&raw](const std::string& name) {
    raw.format = formatFromName(name);
    if (!raw.format) throw UsageError("--format: '" + name + "' is not one of " + formatNames());
  });
  app.add_option("-o,--output", options.output);
  RenderOptions& shown = options.shown;
  app.add_option_function<std::string>(
      "--width", wholeNumber("--width", kNarrowestWidth, kWidestWidth, shown.width));
  app.add_option_function<std::string>("--digits",
                                       wholeNumber("--digits", 0, kMostDigits, shown.digits));
  app.add_flag("--percent", shown.percent);
  app.add_flag("--plot", shown.plot);
  app.add_flag("--sentences", shown.sentences);
  app.add_option_function<std::string>(
      "--advice",
      choice("--advice", Choices<bool>{{"auto", true}, {"never", false}}, options.advise));
  app.add_option_function<std::string>(
      "--progress", choice("--progress",
                           Choices<ProgressMode>{{"auto", ProgressMode::kAuto},
                                                 {"always", ProgressMode::kAlways},
                                                 {"never", ProgressMode::kNever}},
                           options.progress));
}

void declare(CLI::App& app, ProgramOptions& options, Raw& raw) {
  declareData(app, options.data);
  app.add_option("--na", raw.missing);
  app.add_option("--delimiter", raw.delimiter);
  app.add_option_function<std::string>(
      "--decimal", choice("--decimal", Choices<char>{{".", '.'}, {",", ','}}, raw.decimal));
  app.add_option("--encoding", options.data.layout.encoding);
  app.add_option("--counts", raw.counts)->expected(1, -1);
  app.add_option("--password-file", options.passwordFile);
  app.add_flag("--list", options.list);
  app.add_flag("--explain", options.explain);
  app.add_option("-c,--command", raw.command);
  app.add_option("-f,--file", raw.file);
  app.add_option("--locale", options.locale);
  app.add_option_function<std::string>(
      "--bootstrap", wholeNumber("--bootstrap", 2, kMostSamples, options.bootstrap.samples));
  app.add_option_function<std::string>(
      "--seed", wholeNumber("--seed", 0, kLargestSeed, options.bootstrap.seed));
  declareOutput(app, options, raw);
}

/// What to say about arguments that are neither options nor DATA.
std::string complaintAbout(const CLI::App& app, const std::vector<std::string>& extra) {
  std::vector<std::string> names = {"--help", "--version"};  // looked for before all others
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  for (const std::string& argument : extra) {
    if (argument.size() < 2 || argument[0] != '-') continue;
    const std::string name = argument.substr(0, argument.find('='));
    const std::string guess = nearest(name, names);
    return "there is no option " + name + (guess.empty() ? "" : "; did you mean " + guess + "?");
  }
  return "'" + extra.front() + "' is one argument too many; DATA is one file or source";
}

/// What to say about an option with a wrong number of values.
std::string complaintAbout(const CLI::App& app, const CLI::ArgumentMismatch& error) {
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_items_expected_max() == 1 && option->count() > 1) {
      return option->get_name() + " is given more than once";
    }
  }
  const std::string text = error.what();
  return text.substr(0, text.find(':')) + " needs a value";
}

void parse(CLI::App& app, std::vector<std::string> arguments) {
  std::reverse(arguments.begin(), arguments.end());  // the library's order
  try {
    app.parse(arguments);
  } catch (const CLI::ExtrasError&) {
    throw UsageError(complaintAbout(app, app.remaining()));
  } catch (const CLI::ArgumentMismatch& error) {
    throw UsageError(complaintAbout(app, error));
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
}

void chooseFormat(const Raw& raw, ProgramOptions& options) {
  if (options.output.empty()) {
    throw UsageError("-o names no file; give a path, or - for standard output");
  }
  if (raw.format) {
    options.format = *raw.format;
    return;
  }
  const std::string ending = std::filesystem::path(options.output).extension();
  if (ending.empty()) return;
  const std::optional<Format> told = formatFromEnding(options.output);
  if (!told) {
    throw UsageError("the ending " + ending + " of the output " + options.output +
                     " tells no format; end it with " + formatEndings() +
                     ", or choose with --format");
  }
  options.format = *told;
}

/// What the texts of --na, --delimiter and --decimal say.
void chooseReading(const CLI::App& app, const Raw& raw, DataOptions& data) {
  for (const char* name : {"--delimiter", "--decimal", "--encoding"}) {
    if (app.count(name) > 0) data.textOptions.emplace_back(name);
  }
  if (raw.missing) {
    data.missingTexts.emplace();
    std::istringstream texts(*raw.missing);
    for (std::string text; std::getline(texts, text, ',');) data.missingTexts->push_back(text);
  }
  data.decimal = raw.decimal;
  if (!raw.delimiter) return;
  const std::string& sign = *raw.delimiter;
  if (sign != "tab" && sign != "\\t" && sign.size() != 1) {
    throw UsageError("--delimiter is one character, or tab");
  }
  data.layout.delimiter = sign.size() == 1 ? sign.front() : '\t';
  if (data.layout.delimiter == raw.decimal) {
    throw UsageError("--delimiter and --decimal are the same sign; give another delimiter");
  }
  if (std::string_view("\"\r\n").find(data.layout.delimiter) != std::string_view::npos) {
    throw UsageError("--delimiter cannot be a quote or a line end");
  }
}

/// Options that say something of data, which counts do without.
constexpr const char* kDataOptions[] = {
    "DATA",      "--query",    "--table",  "--schema", "--na",           "--delimiter",
    "--decimal", "--encoding", "--weight", "--split",  "--split-layout", "--password-file"};

void chooseData(const CLI::App& app, const Raw& raw, ProgramOptions& options) {
  if (app.count("--counts") == 0) {
    if (app.count("DATA") == 0) {
      throw UsageError("there are no data; name a file, or - for CSV on standard input");
    }
    return chooseReading(app, raw, options.data);
  }
  for (const char* name : kDataOptions) {
    if (app.count(name) == 0) continue;
    throw UsageError(std::string("--counts stands in place of data; ") + name +
                     " cannot be given as well");
  }
  try {
    options.counts = readTypedCounts(raw.counts);
  } catch (const std::invalid_argument& error) {
    throw UsageError(std::string("--counts ") + error.what());
  }
}

/// What DATA says of a server; its password stands somewhere else.
void chooseServer(ProgramOptions& options) {
  const std::string& data = options.data.data;
  if (!data.starts_with(kServerPrefix)) {
    if (options.passwordFile) throw UsageError("--password-file is for a server (odbc:...)");
    return;
  }
  const std::string secret =
      secretAttribute(connectionAttributes(std::string_view(data).substr(kServerPrefix.size())));
  if (!secret.empty()) {
    throw UsageError(secret +
                     " in DATA can be read by everybody on this machine; leave it out, and give "
                     "the password with --password-file FILE, in the environment variable "
                     "PROPORTIONS_ODBC_PASSWORD, or when it is asked for");
  }
  options.data.password = serverPassword(options.passwordFile);
}

void chooseExplanation(const ProgramOptions& options) {
  if (!options.explain) return;
  if (options.counts) throw UsageError("--explain has nothing to tell of --counts");
  if (options.list) throw UsageError("give --list or --explain, not both");
  if (options.format != Format::kText) throw UsageError("--explain is written as text");
}

/// The width that nobody chose: the terminal's on standard output, for a file always the same.
size_t usualWidth(const std::string& output) {
  const RenderOptions usual;
  if (output != "-") return usual.width;
  winsize window{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) != 0 || window.ws_col == 0) return usual.width;
  return std::clamp<size_t>(window.ws_col, kNarrowestWidth, kWidestWidth);
}

void chooseSeed(const CLI::App& app, ProgramOptions& options) {
  if (app.count("--bootstrap") == 0 && app.count("--seed") > 0) {
    throw UsageError("--seed is one of samples; give their number with --bootstrap N");
  }
  if (app.count("--seed") == 0) options.bootstrap.seed = std::random_device()();
}

/// Options that say something of results, which a list of variables does without.
constexpr const char* kResultOptions[] = {"--bootstrap", "--seed",    "--sentences",
                                          "--plot",      "--percent", "--digits"};

void chooseListing(const CLI::App& app, ProgramOptions& options) {
  // What is listed is what there is: cases are neither weighted nor grouped.
  options.data.weight.reset();
  options.data.split.clear();
  if (app.count("--command") > 0 || app.count("--file") > 0) {
    throw UsageError("--list runs no command; leave -c and -f out");
  }
  for (const char* name : kResultOptions) {
    if (app.count(name) == 0) continue;
    throw UsageError(std::string("--list runs no command, and has no results for ") + name +
                     "; leave that out");
  }
  if (options.format == Format::kText || options.format == Format::kJson) return;
  throw UsageError("--list is written as text or json");
}

void chooseCommand(const CLI::App& app, const Raw& raw, ProgramOptions& options) {
  const bool byText = app.count("--command") > 0, byFile = app.count("--file") > 0;
  if (!byText && !byFile && options.counts) {
    options.commandText = options.counts->command;
    return;
  }
  if (byText == byFile) {
    throw UsageError(
        byText ? "give the command text with -c or with -f, not with both"
               : "there is no command; give its text with -c TEXT or a file of it with -f FILE");
  }
  if (byFile && raw.file == "-" && options.data.data == "-") {
    throw UsageError("standard input cannot be both DATA and the command file");
  }
  if (byFile) options.commandFile = raw.file;
  options.commandText = withLineFeeds(byText ? raw.command : readCommandFile(raw.file));
}

}  // namespace

ProgramOptions readOptions(const std::vector<std::string>& arguments) {
  CLI::App app;
  app.set_help_flag();
  ProgramOptions options;
  Raw raw;
  declare(app, options, raw);
  parse(app, arguments);
  if (app.count("--width") == 0) options.shown.width = usualWidth(options.output);
  chooseFormat(raw, options);
  chooseData(app, raw, options);
  chooseServer(options);
  chooseExplanation(options);
  if (options.list) {
    chooseListing(app, options);
  } else {
    chooseSeed(app, options);
    chooseCommand(app, raw, options);
  }
  return options;
}

}  // namespace workbench
