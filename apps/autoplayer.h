#pragma once
// Plays by pressing keys and moving the pointer like a person, through the input queue.

namespace arena::apps {

// Decides what to press before the next frame.
class Autoplayer {
 public:
  void play();

 private:
  void hold(int key, bool down);
  bool held_[256] = {};
  bool fires_ = false;
};

}  // namespace arena::apps
