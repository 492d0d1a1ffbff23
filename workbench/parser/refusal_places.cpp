#include "workbench/parser/refusal_places.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace workbench {
namespace {

using Kind = TokenInfoObj::Kind;

constexpr const char* kPaired = "PAIREDSAMPLES";
constexpr const char* kIndependent = "INDEPENDENTSAMPLES";
constexpr std::array<const char*, 3> kDesigns = {"ONESAMPLE", kPaired, kIndependent};

/// Finds words in the tokens of a command; places are numbers of tokens, npos is nowhere.
class Finder {
 public:
  static constexpr size_t npos = std::string::npos;

  explicit Finder(const CommandTokens& command) : tokens_(command.tokens()) {}

  size_t size() const { return tokens_.size(); }
  size_t position(size_t at) const { return tokens_[at].position(); }

  bool isSymbol(size_t at, char symbol) const {
    return at < tokens_.size() && workbench::isSymbol(tokens_[at], symbol);
  }
  bool isWord(size_t at, std::string_view upper) const {
    return at < tokens_.size() && tokens_[at].kind() == Kind::kWord &&
           tokens_[at].getUpText() == upper;
  }

  /// The name of a subcommand: after a "/", or where the command begins.
  size_t subcommand(std::string_view name) const {
    for (size_t at = 0; at < tokens_.size(); ++at) {
      const bool begins = at == 0 || isSymbol(at - 1, '/') || (at == 1 && !isSymbol(0, '/'));
      if (begins && isWord(at, name)) return at;
    }
    return npos;
  }
  /// Where a subcommand ends: the next "/", or the end of the command.
  size_t endOf(size_t subcommand) const {
    size_t at = subcommand;
    while (at < tokens_.size() && !isSymbol(at, '/')) ++at;
    return at;
  }
  /// The given one (1 is the first) of a subcommand's reserved words of that code.
  size_t reserved(size_t subcommand, int code, int which) const {
    if (subcommand == npos) return npos;
    for (size_t at = subcommand; at < endOf(subcommand); ++at) {
      if (tokens_[at].getOperatorCode() == code && --which == 0) return at;
    }
    return npos;
  }
  /// A word of a subcommand after the place.
  size_t word(size_t from, std::string_view upper) const {
    if (from == npos) return npos;
    for (size_t at = from + 1; at < endOf(from); ++at) {
      if (isWord(at, upper)) return at;
    }
    return npos;
  }
  size_t symbol(size_t from, char wanted) const {
    if (from == npos) return npos;
    for (size_t at = from + 1; at < endOf(from); ++at) {
      if (isSymbol(at, wanted)) return at;
    }
    return npos;
  }
  /// Some tokens further, unless there are none.
  size_t after(size_t at, size_t steps = 1) const {
    return at == npos || at + steps >= tokens_.size() ? npos : at + steps;
  }
  /// The value of a parameter: after its "=".
  size_t valueOf(size_t subcommand, std::string_view parameter) const {
    const size_t name = word(subcommand, parameter);
    return isSymbol(after(name), '=') ? after(name, 2) : npos;
  }
  size_t secondDesign() const {
    std::vector<size_t> found;
    for (const char* design : kDesigns) {
      const size_t at = subcommand(design);
      if (at != npos) found.push_back(at);
    }
    std::sort(found.begin(), found.end());
    return found.size() < 2 ? npos : found[1];
  }

 private:
  const std::vector<TokenInfoObj>& tokens_;
};

struct RefusedWord {
  std::string_view key;
  size_t (*find)(const Finder&, const std::vector<std::string>&);
};

using Arguments = const std::vector<std::string>&;

size_t with(const Finder& in, int which) {
  return in.reserved(in.subcommand(kPaired), kOperatorWith, which);
}
size_t by(const Finder& in, int which) {
  return in.reserved(in.subcommand(kIndependent), kOperatorBy, which);
}
size_t either(size_t first, size_t second) { return first == Finder::npos ? second : first; }

/// The keyword that stands with others, in ^1 "parameter keyword" of the subcommand ^2.
size_t exclusiveKeyword(const Finder& in, Arguments with) {
  if (with.size() < 2) return Finder::npos;
  const size_t blank = with[0].find(' ');
  const size_t parameter = in.word(in.subcommand(with[1]), with[0].substr(0, blank));
  return blank == std::string::npos ? parameter : in.word(parameter, with[0].substr(blank + 1));
}

constexpr std::array kRefusedWords{
    RefusedWord{"Exactly one test option ...",
                [](const Finder& in, Arguments) { return in.secondDesign(); }},
    RefusedWord{"Only one WITH ...", [](const Finder& in, Arguments) { return with(in, 2); }},
    RefusedWord{
        "No vars before WITH ...",
        [](const Finder& in, Arguments) { return either(with(in, 1), in.subcommand(kPaired)); }},
    RefusedWord{"No vars after WITH ...", [](const Finder& in, Arguments) { return with(in, 1); }},
    RefusedWord{"Only PAIRED option ...",
                [](const Finder& in, Arguments) { return in.symbol(in.subcommand(kPaired), '('); }},
    RefusedWord{"Need two dist vars ...",
                [](const Finder& in, Arguments) { return in.after(in.subcommand(kPaired)); }},
    RefusedWord{"Missing BY ...",
                [](const Finder& in, Arguments) { return in.subcommand(kIndependent); }},
    RefusedWord{"Only one BY ...", [](const Finder& in, Arguments) { return by(in, 2); }},
    RefusedWord{"No vars before BY ...", [](const Finder& in, Arguments) { return by(in, 1); }},
    RefusedWord{"No vars after BY ...", [](const Finder& in, Arguments) { return by(in, 1); }},
    RefusedWord{"Only one var after BY ...",
                [](const Finder& in, Arguments) { return in.after(by(in, 1), 2); }},
    RefusedWord{"Numeric SELECT LEVEL var ^1 ...",
                [](const Finder& in, Arguments) { return in.after(by(in, 1)); }},
    RefusedWord{"Invalid SELECT LEVEL default ...",
                [](const Finder& in, Arguments) { return in.after(by(in, 1)); }},
    RefusedWord{"Var ^1, list ^2, subcom ^3, not numeric",
                [](const Finder& in, Arguments) { return in.after(by(in, 1)); }},
    RefusedWord{"Param ^1, subcom ^2, two values ...",
                [](const Finder& in, Arguments) {
                  return in.valueOf(in.subcommand(kIndependent), "SELECT");
                }},
    RefusedWord{"Param ^1, subcom ^2, two distinct values ...",
                [](const Finder& in, Arguments) {
                  return in.after(in.valueOf(in.subcommand(kIndependent), "SELECT"), 2);
                }},
    RefusedWord{
        "Numeric var SUCCESS option ^1 ...",
        [](const Finder& in, Arguments) { return in.valueOf(in.subcommand("SUCCESS"), "VALUE"); }},
    RefusedWord{"Param ^1, subcom ^2, excludes any other", exclusiveKeyword}};

constexpr std::array<std::string_view, 3> kRefusedLevels = {
    "Invalid SUCCESS LEVEL ...", "Invalid SELECT LEVEL ...", "Invalid SELECT LEVEL default ..."};

}  // namespace

std::optional<SyntaxProblem> refusalPlace(const CommandTokens& command, const CommandFacts& facts,
                                          const std::string& key,
                                          const std::vector<std::string>& arguments) {
  const Finder finder(command);
  SyntaxProblem problem;
  bool found = false;
  for (const RefusedWord& word : kRefusedWords) {
    if (word.key != key) continue;
    const size_t at = word.find(finder, arguments);
    if (at >= finder.size()) return {};
    problem.position = finder.position(at);
    found = true;
  }
  const bool isLevel =
      std::find(kRefusedLevels.begin(), kRefusedLevels.end(), key) != kRefusedLevels.end();
  if (!isLevel || !facts.refusedLevel) return found ? std::optional(problem) : std::nullopt;
  problem.what = facts.refusedLevel->what;
  problem.suggestion = facts.refusedLevel->suggestion;
  if (!found) problem.position = facts.refusedLevel->position;
  return problem;
}

}  // namespace workbench
