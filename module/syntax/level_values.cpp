#include "module/syntax/level_values.h"

namespace proportions {
namespace {

std::shared_ptr<ValueBuffer> newBuffer(ValueBuffers& buffers, int32_t words) {
  auto buffer = std::make_shared<ValueBuffer>(static_cast<size_t>(words), 0.0);
  buffers.push_back(buffer);
  return buffer;
}

}  // namespace

GivenLevel levelOf(const TokenInfoObj& token) {
  const bool isNumber = token.isNumber();
  return {token.getText(), isNumber, isNumber ? token.getNumber() : kSystemMissing};
}

/// A text that a numeric variable can hold (a date, a value label) gives its number.
bool addLevel(ValueBuffers& buffers, VarSpecObj& validator, const GivenLevel& level,
              BinInfoElem& element) {
  const std::shared_ptr<ValueBuffer> buffer = newBuffer(buffers, element.obsLength);
  ZELK_Format format;
  if (!validator.ValidateCatValue(level.text, buffer->data(), format)) return false;
  const bool fromBuffer = !level.isNumber && (format.type == 0 || format.type > 2);
  element.numericValues.push_back(fromBuffer ? buffer->front() : level.number);
  element.stringValues.push_back(level.text);
  element.rawValues.push_back(buffer);
  return true;
}

void addCutPoint(ValueBuffers& buffers, double cutPoint, const Tokens& tokens,
                 BinInfoElem& element) {
  element.numericValues.push_back(cutPoint);
  element.stringValues.push_back(tokens.empty() ? std::string() : tokens.front().getText());
  const std::shared_ptr<ValueBuffer> buffer = newBuffer(buffers, 1);
  buffer->front() = cutPoint;
  element.rawValues.push_back(buffer);
}

}  // namespace proportions
