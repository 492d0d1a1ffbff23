#include "workbench/cli/help.h"

#include <algorithm>
#include <set>

#include "workbench/cli/options.h"
#include "workbench/manual/manual.h"
#include "workbench/render/wrap.h"
#include "workbench/text/nearest.h"
#include "workbench/text/text_fold.h"

namespace workbench {
namespace {

constexpr size_t kWidth = 80;

constexpr const char* kUsage =
    R"(Confidence intervals and hypothesis tests for binomial proportions: one sample,
paired samples, independent samples.

Usage: proportions [OPTIONS] DATA

DATA
  a .csv, .tsv, .parquet, .json, .jsonl or .ndjson file (compressed ones too);
  a .dta, .sas7bdat or .xpt file of a statistics package;
  - for CSV on standard input; duckdb:FILE for a database;
  odbc:CONNECTION-STRING or odbc:DSN for an SQL server
  --counts N...        in place of DATA: 81/263 one sample (outcome),
                       189/11034 104/11037 two groups (outcome BY group),
                       59,6,16,80 pairs (first, second: both, first only,
                       second only, neither); outcomes are 1 and 0; without a
                       command, every method

The command
  -c, --command TEXT   the command text
  -f, --file FILE      a file of command text, - for standard input

Reading
  --query SQL          what to select (a file is the table data)
  --table NAME         the table of a database to read
  --password-file FILE the password of an SQL server; default: the environment's
                       PROPORTIONS_ODBC_PASSWORD, else it is asked for
  --schema FILE|none   the variables' dictionary; default: STEM.schema.json
                       beside the data
  --na TEXT[,TEXT]     texts that are missing, "" for none; default: NA in
                       columns that are of one kind other than text without it
  --delimiter C        of CSV: one character or tab; default: found
  --decimal C          of CSV: the decimal sign, . or ,
  --encoding NAME      of CSV: default UTF-8; of .dta, .sas7bdat and .xpt
                       files: default what the file says
  --weight NAME        the weight variable
  --split NAME[,NAME]  the split-file variables, outermost first: --split a,b
                       or --split a --split b
  --split-layout rows|tables
                       rows: split groups share the tables; tables: a set for
                       each group
  --locale TAG         the order of strings, such as de or sv-SE; default und,
                       that of no language in particular
  --collapse auto|always|never
                       count identical cases while reading; the results are the
                       same

  --bootstrap N        N bootstrap samples of the cases, their intervals as a
                       table; --seed S makes them repeatable

Results
  --list               the variables of DATA instead of a command
  --explain            the statements that a database or server would get
                       instead of a command's results
  --format text|markdown|html|json|csv
                       default: from the ending of -o, else text
  -o, --output FILE    the output file; default -: standard output
  --width N            columns of text; default: the terminal's, else 100
  --digits N           decimals (p values in sentences keep three)
  --percent            proportions in percent
  --plot               intervals as bars, too
  --sentences          sentences to report, too
  --advice auto|never  what a colleague would say, after the messages
  --progress auto|always|never
                       progress on standard error

Help
  --help [TOPIC]       this, or: methods, success, any subcommand, keyword or
                       method of the command
  --version            the version

Example
  proportions data.csv -c "PROPORTIONS /ONESAMPLE smoker TESTVAL=0.2."

Exit status: 0 done (warnings allowed), 1 a command was refused or failed,
2 wrong usage, unreadable data or unwritable output.
)";

bool isKeywordLetter(char c) {
  return (c >= 'A' && c <= 'Z') || c == '_' || (c >= '0' && c <= '9');
}

/// The words of a text that are spelt like keywords.
std::set<std::string> keywordsOf(const std::string& text) {
  std::set<std::string> words;
  for (size_t start = 0; start < text.size();) {
    size_t end = start;
    while (end < text.size() && isKeywordLetter(text[end])) ++end;
    if (end - start > 1) words.insert(text.substr(start, end - start));
    start = end + 1;
  }
  return words;
}

std::string shown(const std::string& heading, const std::string& markdown) {
  std::string result = heading + "\n";
  const std::string text = plainText(markdown);
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    const std::string line = text.substr(start, end - start);
    const bool isExample = line.starts_with("    ") || line.starts_with("|");
    const size_t indent = line.starts_with("- ") ? 2 : 0;
    for (const std::string& part :
         isExample ? std::vector<std::string>{line} : wrapText(line, kWidth - 2, indent)) {
      result += part.empty() ? "\n" : "  " + part + "\n";
    }
    start = end + 1;
  }
  return result;
}

std::string methodsOf(const ManualDesign& design, bool intervals) {
  std::string list = intervals ? "CITYPES:" : "TESTTYPES:";
  for (const ManualMethod& method : design.methods) {
    if (method.isInterval == intervals) list += " " + method.keyword;
  }
  return list;
}

std::string allMethods() {
  std::string result;
  for (const ManualDesign& design : manualDesigns()) {
    result += shown(design.title + ": " + design.subcommand, methodsOf(design, true) + "\n\n" +
                                                                 methodsOf(design, false) + "\n\n" +
                                                                 design.choice) +
              "\n";
  }
  return result + "proportions --help followed by a method shows its formula and source.\n";
}

/// All methods of that keyword.
std::string methodTopic(const std::string& keyword) {
  std::string result;
  for (const ManualDesign& design : manualDesigns()) {
    for (const ManualMethod& method : design.methods) {
      if (method.keyword != keyword) continue;
      result += (result.empty() ? "" : "\n") +
                shown(method.keyword + ", " + (method.isInterval ? "interval" : "test") + " of " +
                          design.subcommand,
                      method.text);
    }
  }
  return result;
}

/// The section of a subcommand, or all sections where a keyword stands.
std::string commandTopic(const std::string& keyword) {
  std::string result;
  for (const ManualSection& section : commandSections()) {
    if (keywordsOf(section.heading).count(keyword) != 0) {
      return shown(section.heading, section.text);
    }
  }
  for (const ManualSection& section : commandSections()) {
    if (keywordsOf(section.text).count(keyword) == 0) continue;
    result += (result.empty() ? "" : "\n") + shown(section.heading, section.text);
  }
  return result;
}

std::vector<std::string> topics() {
  std::set<std::string> names = {"METHODS"};
  for (const ManualSection& section : commandSections()) {
    names.merge(keywordsOf(section.heading + " " + section.text));
  }
  for (const ManualDesign& design : manualDesigns()) {
    for (const ManualMethod& method : design.methods) names.insert(method.keyword);
  }
  return {names.begin(), names.end()};
}

std::string helpOn(const std::string& topic) {
  const std::string keyword = upperCase(topic);
  if (keyword == "METHODS") return allMethods();
  std::string found = methodTopic(keyword);
  if (found.empty()) found = commandTopic(keyword);
  if (!found.empty()) return found;
  const std::string guess = nearest(keyword, topics());
  throw UsageError("there is no help on '" + topic + "'; " +
                   (guess.empty() ? "topics are methods, success, any subcommand, keyword or method"
                                  : "did you mean " + guess + "?"));
}

}  // namespace

std::optional<std::string> askedText(const std::vector<std::string>& arguments) {
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    if (*argument == "--") break;
    if (*argument == "--version") return "proportions " PROPORTIONS_VERSION "\n";
    if (argument->starts_with("--help=")) return helpOn(argument->substr(7));
    if (*argument != "--help" && *argument != "-h") continue;
    const bool hasTopic = argument + 1 != arguments.end() && !(argument + 1)->starts_with("-");
    return hasTopic ? helpOn(*(argument + 1)) : kUsage;
  }
  return std::nullopt;
}

}  // namespace workbench
