#include "workbench/manual/manual.h"

#include <algorithm>

#include "workbench/manual/documents.h"

namespace workbench {
namespace {

constexpr std::string_view kExampleIndent = "    ";

/// Calls visit(line) for each line of a text, without its end.
template <typename Visit>
void forEachLine(std::string_view text, Visit visit) {
  for (size_t start = 0; start < text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    visit(text.substr(start, end - start));
    start = end + 1;
  }
}

/// The level of a heading's line ("## Tests": 2); 0 for any other line.
size_t headingLevel(std::string_view line) {
  const size_t level = line.find_first_not_of('#');
  return level != std::string_view::npos && line[level] == ' ' ? level : 0;
}

void trimBlankLines(std::string& text) {
  text.erase(0, std::min(text.find_first_not_of('\n'), text.size()));
  text.erase(text.find_last_not_of('\n') + 1);
}

struct LeveledSection : ManualSection {
  size_t level;
};

/// A document cut at every heading.
std::vector<LeveledSection> sectionsOf(std::string_view document) {
  std::vector<LeveledSection> sections;
  forEachLine(document, [&](std::string_view line) {
    if (const size_t level = headingLevel(line)) {
      sections.push_back({{std::string(line.substr(level + 1)), ""}, level});
    } else if (!sections.empty()) {
      sections.back().text.append(line).append("\n");
    }
  });
  for (LeveledSection& section : sections) trimBlankLines(section.text);
  return sections;
}

ManualDesign designOf(std::string_view document, const std::string& subcommand) {
  constexpr size_t kTitle = 1, kPart = 2, kMethod = 3;
  ManualDesign design;
  design.subcommand = subcommand;
  std::string part;
  for (const LeveledSection& section : sectionsOf(document)) {
    if (section.level == kTitle) {
      design.title = section.heading;
      design.notation = section.text;
    }
    if (section.level == kPart) part = section.heading;
    if (section.level == kPart && section.heading.starts_with("Which ")) {
      design.choice = section.text;
    }
    if (section.level == kMethod && (part == "Intervals" || part == "Tests")) {
      design.methods.push_back({section.heading, part == "Intervals", section.text});
    }
  }
  return design;
}

/// The text of a link "[text](target)" that begins at `at`, which moves past it; nothing when
/// there is none.
std::string_view takeLink(std::string_view line, size_t& at) {
  const size_t middle = line.find("](", at);
  const size_t end = middle == std::string_view::npos ? middle : line.find(')', middle);
  if (end == std::string_view::npos) return {};
  const std::string_view text = line.substr(at + 1, middle - at - 1);
  at = end + 1;
  return text;
}

/// A line without the marks of code, emphasis and links.
std::string withoutMarks(std::string_view line) {
  std::string result;
  for (size_t at = 0; at < line.size();) {
    if (line[at] == '[') {
      const std::string_view text = takeLink(line, at);
      result += text;
      if (!text.empty()) continue;
    }
    if (line[at] != '`' && line[at] != '*') result += line[at];
    ++at;
  }
  return result;
}

}  // namespace

const std::vector<ManualSection>& commandSections() {
  static const std::vector<ManualSection> sections = [] {
    const auto found = sectionsOf(kCommandDocument);
    return std::vector<ManualSection>(found.begin(), found.end());
  }();
  return sections;
}

const std::string& sharedNotation() {
  // After the links to the pages of the designs.
  static const std::string text = [] {
    const std::string page = sectionsOf(kMethodsDocument).front().text;
    return page.substr(std::min(page.find("\n\n"), page.size()));
  }();
  return text;
}

const std::vector<ManualDesign>& manualDesigns() {
  static const std::vector<ManualDesign> designs = {
      designOf(kOneSampleDocument, "ONESAMPLE"),
      designOf(kPairedDocument, "PAIREDSAMPLES"),
      designOf(kIndependentDocument, "INDEPENDENTSAMPLES"),
  };
  return designs;
}

std::string plainText(std::string_view markdown) {
  std::string result;
  bool inParagraph = false;
  forEachLine(markdown, [&](std::string_view line) {
    const bool isExample = line.starts_with(kExampleIndent) && !inParagraph;
    const bool isOwnLine = isExample || line.empty() || line.starts_with("- ") || line[0] == '|';
    if (!result.empty()) result += isOwnLine || !inParagraph ? '\n' : ' ';
    if (isExample) {
      result += line;
    } else {
      const size_t start = std::min(line.find_first_not_of(' '), line.size());
      result += withoutMarks(line.substr(start));
    }
    inParagraph = !line.empty() && !isExample && line[0] != '|';
  });
  return result;
}

}  // namespace workbench
