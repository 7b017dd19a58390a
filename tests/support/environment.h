#pragma once
// The environment of the test and of the programs that it starts.
#include <cstdlib>
#include <string>

namespace arena::test {

// Sets a variable for a while; "" is as good as none on Windows.
class Variable {
 public:
  Variable(const char* name, const std::string& value) : name_(name), had_(std::getenv(name) != nullptr) {
    if (had_) before_ = std::getenv(name);
    set(value);
  }
  ~Variable() {
#ifndef _WIN32
    if (!had_) {
      unsetenv(name_);
      return;
    }
#endif
    set(before_);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  void set(const std::string& value) {
#ifdef _WIN32
    _putenv_s(name_, value.c_str());
#else
    setenv(name_, value.c_str(), 1);
#endif
  }
  const char* name_;
  bool had_;
  std::string before_;
};

}  // namespace arena::test
