// Every test runs in a session of its own; those that start a game are in the game's.
#include <gtest/gtest.h>

#include <memory>

#include "runtime/program/names.h"
#include "runtime/session/session.h"

namespace arena::test {
namespace {

class SessionPerTest final : public ::testing::EmptyTestEventListener {
  void OnTestStart(const ::testing::TestInfo&) override {
    look_up_names();
    session_ = std::make_unique<Session>();
  }
  void OnTestEnd(const ::testing::TestInfo&) override { session_.reset(); }
  std::unique_ptr<Session> session_;
};

const bool listens = (::testing::UnitTest::GetInstance()->listeners().Append(new SessionPerTest), true);

}  // namespace
}  // namespace arena::test
