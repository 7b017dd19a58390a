// The second game: its menu leads into every room and back, and the gallery's widgets work.
#include <nlohmann/json.hpp>

#include "runtime/reports/log.h"
#include "tests/support/golden.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Samples : public TestGame {
 protected:
  explicit Samples(const char* room = "rMenu") : TestGame(room) {}
  void press(double x, double y) {
    ask({{"mouse", {x, y}}, {"gui", true}});
    step();
    ask({{"button", 1}, {"down", true}});
    step(2);
    ask({{"button", 1}, {"down", false}});
    step(2);
  }
};

TEST_F(Samples, EachCardOpensItsRoomAndEscapeComesBack) {
  take_log();
  step(30);
  const int cards = static_cast<int>(number("array_length(oMenu.interface.find(\"cards\").content)"));
  EXPECT_GE(cards, 2);
  std::vector<std::string> seen;
  for (int i = 0; i < cards; ++i) {
    eval("w = oMenu.interface.find(\"cards\").content[" + std::to_string(i) + "]");
    press(number("w.rect_x + w.rect_width / 2"), number("w.rect_y + w.rect_height / 2"));
    const std::string room = ask({{"step", 60}})["room"];
    EXPECT_EQ(std::count(seen.begin(), seen.end(), room), 0) << room;
    EXPECT_NE(room, "rMenu");
    seen.push_back(room);
    EXPECT_EQ(eval("instance_exists(oSample)"), "true") << room << " has no way back";
    key(27, true);
    step(2);
    key(27, false);
    EXPECT_EQ(ask({{"step", 2}})["room"], "rMenu");
  }
  for (const std::string& line : take_log()) ADD_FAILURE() << line;
  key(27, true);
  EXPECT_EQ(ask({{"step", 2}})["ended"], true) << "Escape leaves the menu";
}

class Gallery : public Samples {
 protected:
  Gallery() : Samples("rGallery") {}
};

TEST_F(Gallery, EverythingInItCanBePressedAndNothingIsReported) {
  take_log();
  step(30);
  eval("w = oGallery.interface.find(\"button\")");
  press(number("w.rect_x + 5"), number("w.rect_y + 5"));
  EXPECT_EQ(eval("oGallery.clicks"), "1");
  for (int y = 50; y < 720; y += 45) {
    for (int x = 50; x < 1280; x += 60) press(x, y);
  }
  for (const std::string& line : take_log()) ADD_FAILURE() << line;
  EXPECT_EQ(eval("instance_number(oGallery)"), "1");
}

class FilesRoom : public Samples {
 protected:
  FilesRoom() : Samples("rFiles") {}
  void press_button(const std::string& name) {
    eval("w = oFiles.interface.find(\"" + name + "\")");
    press(number("w.rect_x + 5"), number("w.rect_y + 5"));
    step(2);
  }
};

TEST_F(FilesRoom, KeepsNotesAndCountsVisits) {
  step(10);
  press_button("save");
  EXPECT_EQ(eval("[oFiles.told, oFiles.listed, oFiles.progress]"), "[\"save done \",\" notes.json settings.ini\",100]");
  eval("room_restart()");
  step(10);
  press_button("load");
  EXPECT_EQ(eval("[oFiles.opened, oFiles.told]"), "[2,\"20000 notes, saved at visit 1\"]");
  press_button("forget");
  EXPECT_EQ(eval("oFiles.listed"), "");
}

// From the menu into the gallery; everything in it is clicked, its slider is dragged, the wheel turns.
TEST(GoldenRecordings, OfTheGalleryAreTheSameRun) { expect_the_golden_run("gallery"); }

}  // namespace
}  // namespace arena::test
