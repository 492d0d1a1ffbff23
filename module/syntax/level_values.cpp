#include "module/syntax/command_parser.h"

namespace proportions {

std::shared_ptr<ValueBuffer> PRPCommandParser::newValueBuffer(int32_t words) {
  auto buffer = std::make_shared<ValueBuffer>(static_cast<size_t>(words), 0.0);
  valueBuffers_.push_back(buffer);
  return buffer;
}

void PRPCommandParser::addCutPoint(double number, const Tokens& tokens, BinInfoElem& element) {
  element.numericValues.push_back(number);
  element.stringValues.push_back(tokens.empty() ? std::string() : tokens.front().getText());
  const std::shared_ptr<ValueBuffer> buffer = newValueBuffer(1);
  buffer->front() = number;
  element.rawValues.push_back(buffer);
}

/// False when the variable cannot hold the level. A text that a numeric variable can hold (a date,
/// a value label) gives its number.
bool PRPCommandParser::addLevel(VarSpecObj& validator, bool isNumber, double number,
                                const std::string& text, BinInfoElem& element) {
  const std::shared_ptr<ValueBuffer> buffer = newValueBuffer(element.obsLength);
  ZELK_Format format;
  if (!validator.ValidateCatValue(text, buffer->data(), format)) return false;
  if (!isNumber && (format.type == 0 || format.type > 2)) number = buffer->front();
  element.numericValues.push_back(number);
  element.stringValues.push_back(text);
  element.rawValues.push_back(buffer);
  return true;
}

}  // namespace proportions
