#pragma once
// Whether this program is the only one of its name that this user runs. It is a lock of the system, gone with the program however it ends.
#include <memory>
#include <string>

namespace arena::platform {

class SingleInstance {
 public:
  // Holds the name as long as this lives, where nobody does; "": nothing is asked.
  explicit SingleInstance(const std::string& name);
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;
  // True, too, where the system has no such lock: better twice than never.
  bool is_first() const { return is_first_; }

 private:
  struct Lock;
  std::unique_ptr<Lock> lock_;
  bool is_first_ = true;
};

}  // namespace arena::platform
