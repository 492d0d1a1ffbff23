#include "tests/recording/script_text.h"

#include <cctype>
#include <cstdlib>
#include <functional>
#include <limits>
#include <map>
#include <sstream>
#include <stdexcept>

namespace recording {
namespace {

struct Word {
  std::string text;
  bool quoted = false;
};

std::vector<Word> wordsOf(const std::string& line) {
  std::vector<Word> words;
  size_t at = 0;
  while (at < line.size()) {
    if (line[at] == ' ') {
      ++at;
    } else if (line[at] == '"') {
      const size_t end = line.find('"', at + 1);
      if (end == std::string::npos) throw std::runtime_error("open quote");
      words.push_back({line.substr(at + 1, end - at - 1), true});
      at = end + 1;
    } else {
      const size_t end = std::min(line.find(' ', at), line.size());
      words.push_back({line.substr(at, end - at), false});
      at = end;
    }
  }
  return words;
}

double numberOf(const std::string& text) {
  if (text == ".") return kSystemMissing;
  if (text == "NaN") return std::numeric_limits<double>::quiet_NaN();
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0') throw std::runtime_error("not a number: " + text);
  return value;
}

int64_t countOf(const std::string& text) { return static_cast<int64_t>(numberOf(text)); }

/// Reads a test line by line. A line at the margin opens a section; the lines under it are
/// indented.
class Reader {
 public:
  TextTest read(const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
      try {
        readLine(line);
      } catch (const std::exception& problem) {
        throw std::runtime_error("line " + std::to_string(number) + ": " + problem.what());
      }
    }
    return std::move(test_);
  }

 private:
  void readLine(const std::string& line) {
    if (line.empty() || line[0] == '#') return;
    if (line[0] == ' ') {
      entry(line.substr(line.find_first_not_of(' ') == std::string::npos
                            ? line.size()
                            : line.find_first_not_of(' ')));
      return;
    }
    const size_t colon = line.find(':');
    if (colon == std::string::npos) throw std::runtime_error("a section needs a colon");
    section_ = line.substr(0, colon);
    const size_t rest = line.find_first_not_of(' ', colon + 1);
    if (rest != std::string::npos) entry(line.substr(rest));
  }

  void entry(const std::string& text) {
    if (text.empty()) return;
    using Action = void (Reader::*)(const std::string&);
    static const std::map<std::string, Action> kSections{
        {"test", &Reader::title},  {"variables", &Reader::variable}, {"weight", &Reader::weight},
        {"split", &Reader::split}, {"layout", &Reader::layout},      {"chunk", &Reader::chunk},
        {"cases", &Reader::row},   {"command", &Reader::command},    {"answer", &Reader::answer},
        {"fatal", &Reader::fatal}, {"throw", &Reader::thrown},       {"show", &Reader::show},
        {"hide", &Reader::hide},   {"dump", &Reader::dump}};
    const auto found = kSections.find(section_);
    if (found == kSections.end()) throw std::runtime_error("no section is called " + section_);
    (this->*found->second)(text);
  }

  void title(const std::string& text) { test_.title += (test_.title.empty() ? "" : " ") + text; }
  void weight(const std::string& text) { test_.script.weight = find(text); }
  void split(const std::string& text) {
    for (const Word& word : wordsOf(text)) test_.script.split.push_back(find(word.text));
  }
  void layout(const std::string& text) {
    if (text != "rows" && text != "tables") throw std::runtime_error("rows or tables");
    test_.script.separateSplitLayout = text == "tables";
  }
  void chunk(const std::string& text) { test_.script.chunkSize = countOf(text); }
  void command(const std::string& text) { test_.script.command += text + '\n'; }
  void show(const std::string& text) { addWords(text, test_.show); }
  void hide(const std::string& text) { addWords(text, test_.hide); }
  void dump(const std::string& text) {
    if (text != "tables") throw std::runtime_error("only tables can be dumped");
    test_.dumpTables = true;
  }

  static void addWords(const std::string& text, std::vector<std::string>& list) {
    for (const Word& word : wordsOf(text)) list.push_back(word.text);
  }

  VarIndex find(const std::string& name) const {
    const VarIndex index = test_.script.find(name);
    if (index < 0) throw std::runtime_error("no variable " + name);
    return index;
  }

  void variable(const std::string& text) {
    const std::vector<Word> words = wordsOf(text);
    if (words.size() < 2) throw std::runtime_error("a variable has a name and a type");
    ScriptVariable variable;
    variable.name = words[0].text;
    size_t at = 2;
    if (words[1].text == "string") {
      variable.width = static_cast<int32_t>(countOf(words.at(at++).text));
      variable.formatType = 1;
    } else if (words[1].text != "numeric") {
      throw std::runtime_error("numeric or string");
    }
    while (at < words.size()) attribute(variable, words, at);
    test_.script.variables.push_back(variable);
  }

  /// `label "..."`, `format 3`, `range 7 9`, `missing 1 2`, `values 1 "one" 2 "two"`.
  static void attribute(ScriptVariable& variable, const std::vector<Word>& words, size_t& at) {
    const std::string name = words[at++].text;
    const auto isName = [](const Word& word) {
      return !word.quoted && std::isalpha(static_cast<unsigned char>(word.text[0])) != 0;
    };
    if (name == "label") {
      variable.label = words.at(at++).text;
    } else if (name == "format") {
      variable.formatType = static_cast<int>(countOf(words.at(at++).text));
    } else if (name == "range") {
      variable.missingLow = numberOf(words.at(at++).text);
      variable.missingHigh = numberOf(words.at(at++).text);
    } else if (name == "missing") {
      for (; at < words.size() && !isName(words[at]); ++at) {
        if (variable.width > 0) {
          variable.missingStrings.push_back(words[at].text);
        } else {
          variable.missingNumbers.push_back(numberOf(words[at].text));
        }
      }
    } else if (name == "values") {
      for (; at < words.size() && !isName(words[at]); at += 2) {
        const std::string& label = words.at(at + 1).text;
        if (variable.width > 0) {
          variable.stringLabels.emplace_back(words[at].text, label);
        } else {
          variable.numberLabels.emplace_back(numberOf(words[at].text), label);
        }
      }
    } else {
      throw std::runtime_error("no attribute is called " + name);
    }
  }

  void row(const std::string& text) {
    if (text == "--" || text == "==") {
      test_.script.rows.push_back(
          {text == "--" ? ScriptRow::Kind::kEndMark : ScriptRow::Kind::kEmptyChunk, {}});
      return;
    }
    std::vector<Word> words = wordsOf(text);
    int times = 1;
    if (!words.back().quoted && words.back().text[0] == '*') {
      times = static_cast<int>(countOf(words.back().text.substr(1)));
      words.pop_back();
    }
    std::vector<Value> values;
    for (const Word& word : words) {
      if (word.quoted) {
        values.emplace_back(word.text);
      } else {
        values.emplace_back(numberOf(word.text));
      }
    }
    test_.script.addCase(std::move(values), times);
  }

  void answer(const std::string& text) {
    const std::vector<Word> words = wordsOf(text);
    if (words.size() != 3) throw std::runtime_error("operation, occurrence, value");
    test_.script.answers.push_back({words[0].text, countOf(words[1].text), words[2].text});
  }

  void fatal(const std::string& text) { fault(ScriptFault::What::kFatalError, wordsOf(text)); }

  void thrown(const std::string& text) {
    std::vector<Word> words = wordsOf(text);
    const std::string what = words[0].text;
    if (what != "bad_alloc" && what != "runtime_error") throw std::runtime_error("throw what?");
    words.erase(words.begin());
    fault(what == "bad_alloc" ? ScriptFault::What::kBadAlloc : ScriptFault::What::kRuntimeError,
          words);
  }

  void fault(ScriptFault::What what, const std::vector<Word>& words) {
    if (words.size() != 2) throw std::runtime_error("where and a count");
    ScriptFault fault{what, ScriptFault::At::kOperation, words[0].text, countOf(words[1].text)};
    if (words[0].text == "call") fault.at = ScriptFault::At::kCall;
    if (words[0].text == "case") fault.at = ScriptFault::At::kCase;
    test_.script.faults.push_back(fault);
  }

  TextTest test_;
  std::string section_;
};

}  // namespace

TextTest readTest(const std::string& text) { return Reader().read(text); }

}  // namespace recording
