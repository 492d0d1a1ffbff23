// The text display: its lines go into the transcript.
#include "host/display.h"

#include "tests/recording/host.h"

using recording::Call;

void BP_ToFront(const BP_Character* text) { Call("BP_ToFront", Call::May::kThrow, text).done(); }

void ACACommonDisplay::DisplayB(const char* label, bool value) {
  Call("ACACommonDisplay.DisplayB", Call::May::kThrow, label, value).done();
}
void ACACommonDisplay::DisplayI(const char* label, int32_t value) {
  Call("ACACommonDisplay.DisplayI", Call::May::kThrow, label, value).done();
}
void ACACommonDisplay::DisplayD(const char* label, double value) {
  Call("ACACommonDisplay.DisplayD", Call::May::kThrow, label, value).done();
}
void ACACommonDisplay::DisplayS(const char* label, const std::string& value) {
  Call("ACACommonDisplay.DisplayS", Call::May::kThrow, label, value).done();
}
void ACACommonDisplay::DisplayBV(const char* label, const std::vector<bool>& values) {
  const std::vector<int> flags(values.begin(), values.end());
  Call("ACACommonDisplay.DisplayBV", Call::May::kThrow, label, flags).done();
}
void ACACommonDisplay::DisplayIV(const char* label, const std::vector<int32_t>& values) {
  Call("ACACommonDisplay.DisplayIV", Call::May::kThrow, label, values).done();
}
void ACACommonDisplay::DisplayDV(const char* label, const std::vector<double>& values) {
  Call("ACACommonDisplay.DisplayDV", Call::May::kThrow, label, values).done();
}
void ACACommonDisplay::DisplaySV(const char* label, const std::vector<std::string>& values) {
  Call("ACACommonDisplay.DisplaySV", Call::May::kThrow, label, values).done();
}
