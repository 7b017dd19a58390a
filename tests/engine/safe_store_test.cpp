// A save is the old one or the new one, wherever the machine stops and whatever the disk forgets; names never lead out of the folder.
#include "engine/files/safe_store.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#ifndef _WIN32
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "engine/files/paths.h"
#include "engine/files/sandbox.h"
#include "engine/files/save_folder.h"
#include "runtime/reports/log.h"
#include "runtime/session/session.h"
#include "tests/support/long_runs.h"
#include "tests/support/model_disk.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

using files::Changes;
using files::SafeStore;
using files::Storage;
using Content = std::map<std::string, std::string>;  // what readers find; a file that is missing is left out

const std::vector<std::string> kNames = {"a.txt", "b.ini", "in/c.json", "in/deep/d.bin", "e"};

Content content_of(Storage& storage, std::string* damage = nullptr) {
  SafeStore store(storage);
  Content found;
  for (const std::string& name : kNames) {
    std::string said;
    if (const auto bytes = store.read(name, SafeStore::Trust::kChecked, said)) found[name] = *bytes;
    if (damage != nullptr) *damage += said;
  }
  return found;
}

std::string shown(const Content& content) {
  std::string text;
  for (const auto& [name, bytes] : content) text += name + "=" + bytes.substr(0, 12) + "(" + std::to_string(bytes.size()) + ") ";
  return text;
}

struct Scene {
  const char* label;
  std::vector<Changes> before;
  Changes change;
};

std::vector<Scene> scenes() {
  const Changes first{{{"a.txt", "the first one"}}, {}}, second{{{"a.txt", "another, longer one"}}, {}};
  const Changes many{{{"a.txt", "1"}, {"b.ini", "[x]\ny=2\n"}, {"in/c.json", "{}"}, {"e", std::string(500, 'e')}}, {}};
  const Changes others{{{"a.txt", "2"}, {"in/c.json", "[1]"}, {"in/deep/d.bin", std::string(300, 'd')}}, {"e", "b.ini"}};
  const Changes taken{{}, {"a.txt", "in/c.json"}};
  return {{"the first save", {}, first},        {"a second one", {first}, second}, {"a third one", {first, second}, first},
          {"the same again", {first}, first},   {"several files", {}, many},       {"some new, some gone", {many}, others},
          {"after that", {many, others}, many}, {"files removed", {many}, taken},  {"removed and back", {many, taken}, many}};
}

// What these saves left unsynced is still open afterwards.
void prepare(ModelDisk& disk, const Scene& scene) {
  std::string problem;
  for (const Changes& each : scene.before) ASSERT_TRUE(SafeStore(disk).change(each, problem)) << problem;
}

Content changed(Content content, const Changes& by) {
  for (const std::string& name : by.removed) content.erase(name);
  for (const auto& [name, bytes] : by.written) content[name] = bytes;
  return content;
}

TEST(SafeStores, AreTheOldOrTheNewOneWhereverTheMachineStops) {
  for (const Scene& scene : scenes()) {
    SCOPED_TRACE(scene.label);
    ModelDisk disk;
    prepare(disk, scene);
    const Content old = content_of(disk), fresh = changed(old, scene.change);
    const std::size_t first = disk.steps();
    std::string problem;
    ASSERT_TRUE(SafeStore(disk).change(scene.change, problem)) << problem;
    EXPECT_EQ(content_of(disk), fresh);
    std::size_t met_old = 0, met_new = 0;
    for (std::size_t after = first; after <= disk.steps(); ++after) {
      disk.each_crash(after, 256, [&](ModelDisk& left) {
        const Content found = content_of(left);
        (found == old ? met_old : met_new) += 1;
        if (found == fresh || (found == old && after < disk.steps())) {
          // And it goes on from there.
          ASSERT_TRUE(SafeStore(left).change({{{"a.txt", "later"}}, {}}, problem)) << problem;
          ASSERT_EQ(content_of(left), changed(found, {{{"a.txt", "later"}}, {}})) << "after " << after;
          return;
        }
        FAIL() << "after step " << after << " of " << disk.steps() << ": " << shown(found);
      });
      if (HasFatalFailure()) return;
    }
    EXPECT_GT(met_old, 0u);
    EXPECT_EQ(met_new > 0, old != fresh);
  }
}

TEST(SafeStores, AreTheOldOrTheNewOneOnAFullDisk) {
  for (const Scene& scene : scenes()) {
    for (const bool from_then_on : {false, true}) {
      for (int call = 0, calls = 1; call < calls; ++call) {
        SCOPED_TRACE(std::string(scene.label) + ", call " + std::to_string(call));
        ModelDisk disk;
        prepare(disk, scene);
        disk.settle();
        const Content old = content_of(disk), fresh = changed(old, scene.change);
        disk.failing_call = call;
        disk.fails_from_then_on = from_then_on;
        SafeStore store(disk);
        std::string problem;
        const bool is_saved = store.change(scene.change, problem);
        calls = disk.calls();
        EXPECT_EQ(is_saved, problem.empty());
        const Content found = content_of(disk);
        EXPECT_TRUE(found == fresh || (found == old && !is_saved)) << shown(found);
        // There is room again: the same store goes on.
        disk.failing_call = -1;
        ASSERT_TRUE(store.change(scene.change, problem)) << problem;
        ASSERT_EQ(content_of(disk), fresh);
      }
    }
  }
}

TEST(SafeStores, TakeTheGenerationBeforeWhereOneIsDamaged) {
  const std::unique_ptr<Storage> storage = files::memory_storage();
  SafeStore store(*storage);
  std::string problem, damage;
  for (const char* const text : {"one", "two", "three"}) ASSERT_TRUE(store.change({{{"a.txt", text}}, {}}, problem));
  const auto read = [&](SafeStore::Trust trust = SafeStore::Trust::kChecked) {
    return store.read("a.txt", trust, damage).value_or("nothing");
  };
  EXPECT_EQ(read() + damage, "three");
  for (const std::string bytes : {"thrae", "", "three and more"}) {
    storage->write("a.txt", bytes);
    EXPECT_EQ(read(), "two") << bytes;
    EXPECT_EQ(damage, "a.txt: the file is damaged, the one saved before it is read");
  }
  EXPECT_EQ(read(SafeStore::Trust::kMayBeEdited), "three and more") << "who may be edited is read as it is";
  storage->write("a.txt", std::string("thr\0e", 5));
  EXPECT_EQ(read(SafeStore::Trust::kMayBeEdited), "two") << "nobody types a zero";
  ASSERT_TRUE(store.change({{{"a.txt", "four"}}, {}}, problem));
  EXPECT_EQ(read(), "four");
  storage->write("a.txt", "f");
  EXPECT_EQ(read(), "two") << "what was damaged has not taken the place of the good one";
  storage->write("a.txt~old", "t");
  EXPECT_EQ(read(), "nothing");
  EXPECT_EQ(damage, "a.txt: the file is damaged");
  storage->remove("a.txt");
  EXPECT_EQ(read() + damage, "nothing") << "taken away by hand";
  storage->write("foreign.txt", "somebody's");
  EXPECT_EQ(store.read("foreign.txt", SafeStore::Trust::kChecked, damage), "somebody's");
}

TEST(SaveFolders, SayOnceThatNothingCanBeWrittenAndGoOn) {
  const std::string folder = temporary_path("two programs");
  const auto written = [](const char* text) { return Changes{{{"a.txt", text}}, {}}; };
  Session session;
  take_log();
  {
    files::SaveFolder first(files::folder_storage(folder), true), second(files::folder_storage(folder), true);
    EXPECT_TRUE(first.save(written("mine")) && first.wait());
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(second.save(written("theirs")));
    EXPECT_EQ(second.read("a.txt", SafeStore::Trust::kChecked), "mine");
    EXPECT_TRUE(first.save(written("mine again")));
    EXPECT_EQ(first.read("a.txt", SafeStore::Trust::kChecked), "mine again") << "also while it is on its way";
    EXPECT_TRUE(first.wait());
    EXPECT_EQ(second.read("a.txt", SafeStore::Trust::kChecked), "mine again");
    EXPECT_EQ(take_log().size(), 1u);
  }
  files::SaveFolder third(files::folder_storage(folder), true), nowhere(files::folder_storage(""), true);
  EXPECT_TRUE(third.save(written("theirs")) && third.wait()) << "the others have ended";
  EXPECT_FALSE(nowhere.save(written("lost")));
  EXPECT_FALSE(nowhere.wait());
  EXPECT_EQ(nowhere.read("a.txt", SafeStore::Trust::kChecked), std::nullopt);
}

#ifndef _WIN32
// A folder of the disk under a program that ends without a word before one of its calls.
TEST(SafeStores, AreTheOldOrTheNewOneWhenTheProgramIsKilledAtAnyCall) {
  class Dying final : public Storage {
   public:
    Dying(std::unique_ptr<Storage> inner, int calls) : inner_(std::move(inner)), left_(calls) {}
    Outcome read(const std::string& name, std::string& into) override { return inner_->read(name, into); }
    Outcome write(const std::string& name, std::string_view bytes) override {
      if (left_ == 1) inner_->write(name, bytes.substr(0, bytes.size() / 2));
      return live(), inner_->write(name, bytes);
    }
    Outcome sync(const std::string& name) override { return live(), inner_->sync(name); }
    Outcome rename(const std::string& from, const std::string& to) override { return live(), inner_->rename(from, to); }
    Outcome remove(const std::string& name) override { return live(), inner_->remove(name); }
    Outcome make_folder(const std::string& name) override { return live(), inner_->make_folder(name); }
    Outcome remove_folder(const std::string& name) override { return live(), inner_->remove_folder(name); }
    Outcome sync_folder(const std::string& name) override { return live(), inner_->sync_folder(name); }
    Facts facts(const std::string& name) override { return inner_->facts(name); }
    Outcome set_attributes(const std::string& name, std::int32_t to) override { return inner_->set_attributes(name, to); }
    std::vector<Entry> list(const std::string& folder) override { return inner_->list(folder); }
    bool lock() override { return inner_->lock(); }

   private:
    void live() {
      if (--left_ == 0) _exit(9);
    }
    std::unique_ptr<Storage> inner_;
    int left_;
  };
  const std::string folder = temporary_path("killed");
  const Changes change{{{"a.txt", "new"}, {"in/c.json", "{}"}}, {"b.ini"}};
  int killed = 0;
  for (int call = 1;; ++call) {
    std::filesystem::remove_all(folder);
    std::string problem;
    {
      const auto storage = files::folder_storage(folder);
      ASSERT_TRUE(SafeStore(*storage).change({{{"a.txt", "old"}, {"b.ini", "x=1"}}, {}}, problem)) << problem;
    }
    const pid_t child = fork();
    if (child == 0) {
      Dying storage(files::folder_storage(folder), call);
      _exit(SafeStore(storage).change(change, problem) ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    const auto storage = files::folder_storage(folder);
    const Content found = content_of(*storage), old{{"a.txt", "old"}, {"b.ini", "x=1"}}, fresh{{"a.txt", "new"}, {"in/c.json", "{}"}};
    EXPECT_TRUE(found == fresh || (found == old && WEXITSTATUS(status) == 9)) << "killed at call " << call << ": " << shown(found);
    if (WEXITSTATUS(status) == 0) break;
    ASSERT_EQ(WEXITSTATUS(status), 9);
    ++killed;
  }
  EXPECT_GT(killed, 12);
}

TEST(SaveFolders, FollowNoLinkThatLeadsOut) {
  const std::string outside = temporary_path("outside"), folder = temporary_path("inside");
  std::filesystem::create_directories(outside);
  std::filesystem::create_directories(folder + "/real");
  std::ofstream(outside + "/secret.txt") << "secret";
  std::filesystem::create_directory_symlink(outside, folder + "/way");
  std::filesystem::create_directory_symlink("../../outside", folder + "/real/way");
  std::filesystem::create_symlink(outside + "/secret.txt", folder + "/file.txt");
  ASSERT_EQ(mkfifo((folder + "/pipe").c_str(), 0600), 0);
  files::SaveFolder saves(files::folder_storage(folder), false);
  for (const std::string name : {"way/secret.txt", "real/way/secret.txt", "file.txt", "way", "pipe"}) {
    EXPECT_EQ(saves.read(name, SafeStore::Trust::kChecked), std::nullopt) << name;
    EXPECT_FALSE(saves.facts(name).is_there) << name;
    saves.save({{{name, "mine"}}, {}});
    saves.save({{{name + "/new.txt", "mine"}}, {}});
    saves.make_folder(name + "/folder");
    saves.remove_folder(name);
  }
  EXPECT_TRUE(saves.list("way").empty());
  std::ifstream secret(outside + "/secret.txt");
  EXPECT_EQ(std::string((std::istreambuf_iterator<char>(secret)), std::istreambuf_iterator<char>()), "secret");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(outside), std::filesystem::directory_iterator()), 1);
}
#endif

struct NameRow {
  std::string name;
  bool is_fine;
};

TEST(Sandbox, TakesNamesThatEverySystemReadsAlike) {
  const NameRow rows[] = {{"save.txt", true},
                          {"a/b/c.json", true},
                          {"Größe.ini", true},
                          {"сейв 1.bin", true},
                          {"日本.txt", true},
                          {".hidden", true},
                          {"console.txt", true},
                          {"com.txt", true},
                          {"a+b (2) [x] {y}.txt", true},
                          {"", false},
                          {"/etc/passwd", false},
                          {"../x", false},
                          {"a/../x", false},
                          {"a/./b", false},
                          {".", false},
                          {"..", false},
                          {"a//b", false},
                          {"a/", false},
                          {"C:x", false},
                          {"C:/x", false},
                          {"c:\\x", false},
                          {"a\\b", false},
                          {"\\\\server\\share", false},
                          {"//server/share", false},
                          {"x.txt:stream", false},
                          {"con", false},
                          {"CON.txt", false},
                          {"a/nul", false},
                          {"Aux .ini", false},
                          {"com1", false},
                          {"LPT9.log", false},
                          {"com\xC2\xB9", false},
                          {"conin$", false},
                          {"x.", false},
                          {"x ", false},
                          {" x", false},
                          {"a./b", false},
                          {"SAVE~1", false},
                          {"a*b", false},
                          {"a?b", false},
                          {"a|b", false},
                          {"a<b", false},
                          {"a\"b", false},
                          {std::string("a\0b", 3), false},
                          {"a\nb", false},
                          {"a\x7F", false},
                          {"a\xC0\xAF"
                           "b",
                           false},
                          {"\xC0\xAE\xC0\xAE/x", false},
                          {"\xED\xA0\x80", false},
                          {"\xFF", false},
                          {"a\xE2\x80", false},
                          {"\xF4\x90\x80\x80", false},
                          {"a\xE2\x80\xAE"
                           "txt.exe",
                           false},
                          {"\xEF\xBC\x8E\xEF\xBC\x8E/x", false},
                          {"a\xE2\x88\x95"
                           "b",
                           false},
                          {std::string(200, 'x'), true},
                          {std::string(201, 'x'), false},
                          {"a/a/a/a/a/a/a/a/a/a/a/a", true},
                          {"a/a/a/a/a/a/a/a/a/a/a/a/a", false}};
  for (const NameRow& row : rows)
    EXPECT_EQ(files::flaw_of_name(row.name).empty(), row.is_fine) << row.name << ": " << files::flaw_of_name(row.name);
}

// Names made of what leads out somewhere. One that is taken has, by rules of its own here, nothing that could.
TEST(Sandbox, IsNeverLeftByARandomName) {
  const std::vector<std::string> pieces = {"a",
                                           "save",
                                           ".txt",
                                           "..",
                                           ".",
                                           "/",
                                           "/",
                                           "\\",
                                           ":",
                                           "C:",
                                           "con",
                                           "NUL",
                                           "com1",
                                           "lpt9",
                                           "aux",
                                           " ",
                                           "~1",
                                           "*",
                                           "?",
                                           "\xC2\xB9",
                                           "\xC0\xAE",
                                           "\xE2\x80\xAE",
                                           "\xEF\xBC\x8F",
                                           "ä",
                                           "日",
                                           "\xFF",
                                           std::string(1, '\0'),
                                           "\n",
                                           "\x7F",
                                           "%2e%2e",
                                           "$",
                                           "::$DATA",
                                           "\xED\xA0\x80",
                                           "file",
                                           "x",
                                           std::string(90, 'l')};
  std::mt19937_64 chance(from_environment("ARENA_SEED", 5));
  int taken = 0;
  for (int i = 0; i < 1000000; ++i) {
    std::string name;
    for (std::uint64_t left = 1 + chance() % 6; left > 0; --left)
      name += chance() % 12 == 0 ? std::string(1, static_cast<char>(chance())) : pieces[chance() % pieces.size()];
    if (!files::flaw_of_name(name).empty()) continue;
    ++taken;
    const std::filesystem::path root = "/top/folder", path = (root / files::path_of(name)).lexically_normal();
    bool is_inside = files::path_of(name).is_relative() && path.string().starts_with("/top/folder/") && path.string().back() != '/';
    is_inside = is_inside && name.find_first_of(std::string(":\\*?\"<>|~\0\n\r\x7F", 13)) == std::string::npos && name.size() <= 200;
    for (const auto& part : files::path_of(name)) {
      std::string stem = part.string().substr(0, part.string().find('.'));
      while (stem.ends_with(' ')) stem.pop_back();
      for (char& each : stem) each = static_cast<char>(std::toupper(static_cast<unsigned char>(each)));
      const bool is_numbered = stem.size() >= 4 && stem.size() <= 5 && (stem.starts_with("COM") || stem.starts_with("LPT")) &&
                               (std::isdigit(static_cast<unsigned char>(stem[3])) != 0 || stem[3] == '\xC2');
      const bool is_device =
          stem == "CON" || stem == "NUL" || stem == "AUX" || stem == "PRN" || (is_numbered && (stem.size() == 4 || stem[3] == '\xC2'));
      is_inside = is_inside && !is_device && !part.string().ends_with('.') && !part.string().ends_with(' ');
    }
    if (!is_inside) {
      ADD_FAILURE() << "taken: " << name;
      return;
    }
  }
  EXPECT_GT(taken, 20000) << "too few names are taken for this to say something";
}

TEST(Sandbox, PatternsFitNames) {
  const struct {
    const char *pattern, *name;
    bool fits;
  } rows[] = {{"*.txt", "a.txt", true}, {"*.txt", "a.ini", false}, {"s?ve*", "save1.bin", true}, {"?", "ä", true},
              {"?", "", false},         {"*", "x", true},          {"a*b*c", "aXbYbc", true}};
  for (const auto& row : rows) EXPECT_EQ(files::fits_pattern(row.pattern, row.name), row.fits) << row.pattern << " " << row.name;
  EXPECT_EQ(files::flaw_of_pattern("saves/*.txt"), "");
  EXPECT_NE(files::flaw_of_pattern("*/x.txt"), "");
}

}  // namespace
}  // namespace arena::test
