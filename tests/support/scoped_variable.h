// An environment variable that has another value, or none, as long as this object lives.
#pragma once

#include <string>

#include "platform/environment.h"
#include "platform/system.h"

namespace test {

class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value)
      : name_(name), before_(platform::environmentValue(name)) {
    SetEnvironmentVariableA(name, value);
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable() { SetEnvironmentVariableA(name_, before_.empty() ? nullptr : before_.c_str()); }

 private:
  const char* name_;
  std::string before_;
};

}  // namespace test
