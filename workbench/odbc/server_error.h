/// What a server or its driver refused.
#pragma once

#include <stdexcept>
#include <string>

#include "workbench/odbc/driver_text.h"

namespace workbench {

class ServerError : public std::runtime_error {
 public:
  ServerError(std::string state, int native, const std::string& text)
      : std::runtime_error(text), state_(std::move(state)), native_(native) {}
  /// SQLSTATE, five characters.
  const std::string& state() const { return state_; }
  int native() const { return native_; }

 private:
  std::string state_;
  int native_;
};

/// The error that a call on the handle left behind, its text without the names of the layers that
/// it came through, on one line, and without `secret` (empty: none) or the value of a password.
ServerError serverError(DriverText form, SQLSMALLINT type, SQLHANDLE handle,
                        const std::string& secret);

}  // namespace workbench
