/// Warnings of the design runs about missing cases.
#pragma once

#include <functional>

#include "host/output.h"

namespace proportions {

/// Warns that nothing of the design can be analysed: with split groups in the group's name, else
/// plainly and one level more severe.
void warnNothingValid(bool splitFile, const char* plainKey, const char* splitKey);

/// Warns about one variable or pair. `addItems` fills the items that stand before the split list.
void warnOneInvalid(bool splitFile, const char* plainKey, const char* splitKey,
                    const std::function<void(BpComposite&)>& addItems);

/// The same for a variable of the first list.
void warnVariableInvalid(bool splitFile, const char* plainKey, const char* splitKey,
                         VarIndex variable);

}  // namespace proportions
