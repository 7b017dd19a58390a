#pragma once
// Memory that runs out on purpose: one allocation of this thread on the C++ heap fails, the ones before and after it do not.
namespace arena::test {

// Whether this platform's build can.
bool can_fail_allocations();

class FailingMemory {
 public:
  explicit FailingMemory(int allowed);  // so many succeed first
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;
  void stop();  // from here on nothing fails
  bool has_failed() const;
  int asked() const;  // how many allocations there were, up to the one that failed
};

}  // namespace arena::test
