#include "workbench/results/method_pages.h"

#include <algorithm>
#include <string>

#include "workbench/results/method_documents.h"

namespace workbench {
namespace {

std::string_view pageOf(Design design) {
  switch (design) {
    case Design::kOneSample:
      return kOneSamplePage;
    case Design::kPaired:
      return kPairedPage;
    case Design::kIndependent:
      break;
  }
  return kIndependentPage;
}

std::string_view trimmedLines(std::string_view text) {
  const size_t start = std::min(text.find_first_not_of('\n'), text.size());
  return text.substr(start, text.find_last_not_of('\n') + 1 - start);
}

/// What stands under the heading of a method, within a section that is the first of `text`.
std::string_view below(std::string_view text, std::string_view keyword) {
  text = text.substr(0, text.find("\n## "));
  const std::string heading = "\n### " + std::string(keyword) + "\n";
  const size_t found = text.find(heading);
  if (found == std::string_view::npos) return {};
  const std::string_view rest = text.substr(found + heading.size() - 1);
  return trimmedLines(rest.substr(0, rest.find("\n### ")));
}

/// A page without its title, up to the first heading.
std::string_view introduction(std::string_view page) {
  const size_t start = std::min(page.find('\n'), page.size());
  return trimmedLines(page.substr(start, page.find("\n## ") - start));
}

}  // namespace

std::string_view sharedNotation() {
  const std::string_view text = introduction(kMethodsPage);
  return trimmedLines(text.substr(std::min(text.find("\n\n"), text.size())));  // behind the links
}

std::string_view notationOf(Design design) { return introduction(pageOf(design)); }

std::string_view describedMethod(const Method& method) {
  const std::string part =
      method.table.kind == ResultKind::kIntervals ? "\n## Intervals\n" : "\n## Tests\n";
  const std::string_view page = pageOf(method.table.design);
  const std::string_view section = page.substr(std::min(page.find(part), page.size() - 1));
  return below(section.substr(1), method.keyword);
}

}  // namespace workbench
