/// Templates of labels and messages.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// What stands for a placeholder: a text, or the elements of a list.
struct TemplateItem {
  std::string text;  ///< of a list: its elements joined by ", "
  bool isList = false;
  std::vector<std::string> elements;
};

/// Fills a template: ^n with item n (a caret, up to three digits), [F:R:]n with a run over list n.
/// The first element of a run goes through F, each further one through R; an element is as many
/// items of the list as F has %1, %2, ..., which R names ^1, ^2, .... Nothing comes from an empty
/// list. What names no item, and a bracket that is not a run, is left as it stands; nothing in a
/// filling is taken for a placeholder.
std::string fillTemplate(std::string_view text, const std::vector<TemplateItem>& items);

/// The same with plain texts.
std::string fillTemplate(std::string_view text, const std::vector<std::string>& arguments);

}  // namespace workbench
