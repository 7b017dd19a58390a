// Files, settings, buffers and JSON as scripts use them.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>

#include "engine/buffers/buffer.h"
#include "engine/documents/json_values.h"
#include "engine/files/game_files.h"
#include "engine/files/save_folder.h"
#include "engine/formats/exact_numbers.h"
#include "engine/formats/ini_document.h"
#include "engine/recording/recorder.h"
#include "engine/recording/replay.h"
#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/input/outside.h"
#include "runtime/program/names.h"
#include "runtime/reports/log.h"
#include "runtime/values/strings.h"
#include "tests/support/long_runs.h"
#include "tests/support/probes.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Files : public TestGame {};

TEST_F(Files, AreWrittenWhenTheyAreClosed) {
  check({
      {"text_file_open(\"a.txt\")", "-1"},
      {"f = text_file_create(\"a.txt\"); text_file_write(f, 0.1); text_file_write(f, \" \"); text_file_write_line(f, true); "
       "text_file_write_line(f); "
       "text_file_write(f, \"ünd\"); file_exists(\"a.txt\")",
       "false"},
      {"text_file_close(f)", "true"},
      {"[file_exists(\"a.txt\"), file_size(\"a.txt\")]", "[true,14]"},
      {"f = text_file_open(\"a.txt\"); [text_file_read_number(f), text_file_read_line(f), text_file_read_line(f), text_file_is_at_end(f), "
       "text_file_read_text(f), text_file_is_at_end(f), text_file_read_line(f), text_file_close(f)]",
       "[0.10,\" true\",\"\",false,\"ünd\",true,\"\",true]"},
      {"f = text_file_append(\"a.txt\"); text_file_write(f, \"!\"); text_file_close(f); f = text_file_open(\"a.txt\"); n = "
       "text_file_read_text(f); "
       "text_file_close(f); n",
       "0.1 true\n\nünd!"},
      {"f = text_file_create(\"n.txt\"); text_file_write(f, \"1e-300, NaN;-inf x 5\"); text_file_close(f); f = text_file_open(\"n.txt\"); "
       "[text_file_read_number(f) == 1e-300, is_nan(text_file_read_number(f)), text_file_read_number(f), text_file_read_number(f), "
       "text_file_read_text(f)]",
       "[true,true,-inf,0,\" x 5\"]"},
      {"text_file_write(f, \"x\")", "! text_file_write argument 1: text file 0 is not open for writing"},
      {"text_file_close(f); text_file_read_line(f)", "! text_file_read_line argument 1 invalid reference to (text file) - requested 0"},
      {"text_file_close(\"x\")", "! text_file_close argument 1 incorrect type (string) expecting a text file"},
      {"text_file_open(\"../a\")",
       "! text_file_open argument 1 is no name that a game may use: '../a' (it leads to where it stands, or upwards)"},
      {"file_copy(\"a.txt\", \"c:/b\")",
       "! file_copy argument 2 is no name that a game may use: 'c:/b' (it has a character that names cannot have)"},
      {"file_exists(5)", "! file_exists argument 1 incorrect type (number) expecting a String (WBGS)"},
  });
}

TEST_F(Files, OfBytes) {
  check({
      {"f = binary_file_create(\"b\"); for_each = array_foreach; binary_file_write_byte(f, 0); binary_file_write_byte(f, 255); "
       "binary_file_close(f)",
       "true"},
      {"f = binary_file_change(\"b\"); binary_file_set_position(f, 1); binary_file_write_byte(f, 7); binary_file_write_byte(f, 8); "
       "binary_file_set_position(f, 0); "
       "[binary_file_read_byte(f), binary_file_read_byte(f), binary_file_get_position(f), binary_file_read_byte(f), "
       "binary_file_read_byte(f), binary_file_size(f)]",
       "[0,7,2,8,-1,3]"},
      {"binary_file_set_position(f, 1e9); binary_file_get_position(f)", "3"},
      {"binary_file_set_position(f, NaN); binary_file_get_position(f)", "0"},
      {"binary_file_write_byte(f, 256)", "! binary_file_write_byte: a byte is a number from 0 to 255"},
      {"binary_file_close(f); file_size(\"b\")", "3"},
      {"f = binary_file_open(\"b\"); binary_file_write_byte(f, 1)",
       "! binary_file_write_byte argument 1: binary file 0 is not open for writing"},
  });
}

constexpr const char* kMake = "f = text_file_create(n); text_file_write(f, n); text_file_close(f)";

TEST_F(Files, AndFoldersAreFoundCopiedAndRenamed) {
  for (const char* const name : {"b.txt", "a.txt", "c.ini", "in/x.txt", "in/deep/y.txt"})
    eval("n = \"" + std::string(name) + "\"; " + kMake);
  check({
      {"[file_find_first(\"*.txt\"), file_find_next(\"*.txt\", \"a.txt\"), file_find_next(\"*.txt\", \"b.txt\")]",
       "[\"a.txt\",\"b.txt\",undefined]"},
      {"[file_find_first(\"in/*\"), folder_find_first(\"*\"), folder_find_first(\"in/*\"), file_find_first(\"none/*\")]",
       "[\"x.txt\",\"in\",\"deep\",undefined]"},
      {"[folder_exists(\"in\"), folder_exists(\"a.txt\"), file_exists(\"in\"), file_get_attributes(\"in\"), file_get_attributes(\"none\")]",
       "[true,false,false,4,-1]"},
      {"[file_copy(\"a.txt\", \"new/a.txt\"), file_copy(\"none\", \"x\"), buffer_text(buffer_load(\"new/a.txt\"))]",
       "[true,false,\"a.txt\"]"},
      {"[file_rename(\"b.txt\", \"new/b.txt\"), file_exists(\"b.txt\"), file_rename(\"b.txt\", \"x\"), file_rename(\"c.ini\", \"c.ini\"), "
       "file_exists(\"c.ini\")]",
       "[true,false,false,true,true]"},
      {"[folder_copy(\"in\", \"again\"), folder_copy(\"in\", \"in/self\"), folder_rename(\"in\", \"moved\"), folder_exists(\"in\")]",
       "[true,false,true,false]"},
      {"[buffer_text(buffer_load(\"again/deep/y.txt\")), buffer_text(buffer_load(\"moved/deep/y.txt\")), file_exists(\"in/x.txt\")]",
       "[\"in/deep/y.txt\",\"in/deep/y.txt\",false]"},
      {"[folder_delete(\"moved\"), folder_exists(\"moved\"), folder_delete(\"moved\"), file_delete(\"c.ini\"), file_delete(\"c.ini\")]",
       "[true,false,false,true,false]"},
      {"[folder_create(\"p/q\"), folder_exists(\"p/q\"), file_set_attributes(\"a.txt\", 1), file_get_attributes(\"a.txt\")]",
       "[true,true,true,1]"},
      {"[save_wait(), text_file_close(text_file_create(\"a.txt\")), save_wait(), file_set_attributes(\"a.txt\", 0), "
       "text_file_close(text_file_create(\"a.txt\")), save_wait()]",
       "[true,true,false,true,true,true]"},
      {"file_find_first(\"*/a\")",
       "! file_find_first argument 1 is no name that a game may use: '*/a' (it has a character that names cannot have)"},
  });
}

TEST_F(Files, ThatWerePackedAreReadBehindThoseThatWereSaved) {
  const std::string level = "packed";
  files::use_packed_files({{"levels/1.txt", level}, {"top.txt", level}});
  check({
      {"[file_exists(\"levels/1.txt\"), file_size(\"top.txt\"), file_get_attributes(\"top.txt\"), folder_exists(\"levels\"), "
       "file_find_first(\"levels/*\"), "
       "folder_find_first(\"*\")]",
       "[true,6,9,true,\"1.txt\",\"levels\"]"},
      {"[file_delete(\"top.txt\"), file_rename(\"top.txt\", \"x\"), buffer_text(buffer_load(\"top.txt\"))]", "[false,false,\"packed\"]"},
      {"n = \"top.txt\"; f = text_file_create(n); text_file_write(f, \"mine\"); text_file_close(f); buffer_text(buffer_load(n))", "mine"},
      {"[file_delete(\"top.txt\"), buffer_text(buffer_load(\"top.txt\"))]", "[true,\"packed\"]"},
      {"[folder_copy(\"levels\", \"own\"), buffer_text(buffer_load(\"own/1.txt\"))]", "[true,\"packed\"]"},
  });
}

TEST_F(Files, OfASetAreKeptBackUntilItIsWhole) {
  eval(std::string("n = \"a\"; ") + kMake + "; n = \"b\"; " + kMake);
  check({
      {std::string("save_set_begin(); buffer_save(buffer_from_text(\"new\"), \"a\"); file_delete(\"b\"); [buffer_text(buffer_load(\"a\")), "
                   "file_exists(\"b\"), "
                   "file_find_first(\"*\"), file_find_next(\"*\", \"a\")]")
           .c_str(),
       "[\"new\",false,\"a\",undefined]"},
  });
  std::string damage;
  EXPECT_EQ(files::save_folder().read("a", files::SafeStore::Trust::kChecked), "a");
  EXPECT_EQ(eval("save_set_end()"), "true");
  EXPECT_EQ(files::save_folder().read("a", files::SafeStore::Trust::kChecked), "new");
  EXPECT_EQ(files::save_folder().read("b", files::SafeStore::Trust::kChecked), std::nullopt);
}

TEST_F(Files, AreTheSameInASnapshotThatIsPutBack) {
  eval(
      "global.f = text_file_create(\"s.txt\"); text_file_write(global.f, \"before\"); global.b = buffer_from_text(\"bytes\"); global.i = "
      "ini_parse(\"a=1\")");
  ask({{"snapshot", "s"}});
  eval(
      "text_file_write(global.f, \" and after\"); buffer_poke(global.b, 0, 0, 65); ini_set_text(global.i, \"\", \"a\", \"2\"); "
      "buffer_create(9, 0, 1)");
  ask({{"restore", "s"}});
  EXPECT_EQ(eval("text_file_close(global.f); [buffer_text(buffer_load(\"s.txt\")), buffer_text(global.b), ini_text(global.i)]"),
            "[\"before\",\"bytes\",\"a=1\"]");
  EXPECT_EQ(eval("game_restart()"), "undefined");
  step();
  EXPECT_EQ(eval("buffer_exists(0)"), "false") << "a new run begins without";
}

// The disk is asked while the game is recorded, and no more: the replay has another one, and is the same run.
TEST_F(Files, OfAReplayAreThoseOfTheRun) {
  eval(std::string("n = \"score.txt\"; ") + kMake);
  std::vector<std::string> answers;
  hear_answers([&](const std::string& answer) { answers.push_back(answer); });
  const std::string ask_all =
      "n = buffer_load(\"score.txt\"); [buffer_text(n), file_size(\"score.txt\"), file_exists(\"none\"), file_find_first(\"*\"), "
      "buffer_save(n, \"copy\"), file_delete(\"score.txt\"), buffer_text(buffer_decompress(buffer_compress(n)))]";
  const std::string found = eval(ask_all);
  EXPECT_EQ(found, "[\"score.txt\",9,false,\"score.txt\",true,true,\"score.txt\"]");
  hear_answers({});
  files::use_save_folder(files::folder_storage(temporary_path("untouched")));
  std::size_t next = 0;
  give_answers([&] { return next < answers.size() ? answers[next++] : ""; });
  EXPECT_EQ(eval(ask_all), found);
  EXPECT_EQ(next, answers.size());
  give_answers({});
  EXPECT_FALSE(std::filesystem::exists(temporary_path("untouched")));
}

class AsyncFiles : public Files {
 protected:
  // Steps until the probe has heard so many results, and what it wrote down of them. How far they are in between is chance.
  std::string heard(int results) {
    statement_to_draw =
        "async_result().status == \"progress\" || array_push(global.heard, [async_result().id, async_result().action, "
        "async_result().status, async_result().done, async_result().message]) == 0";
    for (int i = 0; i < 2000 && number("array_length(global.heard)") < results; ++i) {
      ask({{"step", 1}});
      files::save_folder().wait();
    }
    return eval("global.heard");
  }
  void listen() {
    eval(
        "global.seen = []; global.heard = []; global.hooks = {Async_2: method(undefined, draw_the_statement)}; instance_create_depth(0, 0, "
        "0, oProbe)");
  }
};

TEST_F(AsyncFiles, ArriveAsEvents) {
  files::use_save_folder(files::folder_storage(temporary_path("async")));
  listen();
  EXPECT_EQ(eval("global.b = buffer_from_text(\"hello\"); buffer_save_async(global.b, \"x.bin\")"), "1");
  EXPECT_EQ(heard(1), "[[1,\"save\",\"done\",5,\"\"]]");
  eval("global.heard = []; buffer_load_async(\"x.bin\"); buffer_load_async(\"none.bin\")");
  EXPECT_EQ(heard(2), "[[2,\"load\",\"done\",5,\"\"],[3,\"load\",\"failed\",0,\"none.bin: there is no such file\"]]");
  EXPECT_EQ(eval("async_result()"), "undefined");
  // What arrives cannot be changed, in depth.
  statement_to_draw = "global.heard = async_result(); async_result().id = 9";
  eval("buffer_load_async(\"x.bin\")");
  files::save_folder().wait();
  EXPECT_NE(ask({{"step", 1}}).dump().find("read-only"), std::string::npos);
  EXPECT_EQ(eval("buffer_text(global.heard.buffer)"), "hello");
  files::save_folder().wait();
}

// 40 MB, so that there is something to tell on the way.
TEST_F(AsyncFiles, TellHowFarTheyAre) {
  files::use_save_folder(files::folder_storage(temporary_path("progress")));
  eval("buffer_save(buffer_create(40000000, 0, 1), \"large\")");
  ASSERT_TRUE(files::save_folder().wait());
  listen();
  statement_to_draw = "array_push(global.heard, [async_result().status, async_result().done / async_result().total])";
  eval("buffer_load_async(\"large\")");
  double before = 0;
  std::string last;
  for (int i = 0; i < 100000 && last != "done"; ++i) {
    ask({{"step", 1}});
    const int count = static_cast<int>(number("array_length(global.heard)"));
    if (count == 0) continue;
    last = eval("global.heard[" + std::to_string(count - 1) + "][0]");
    const double now = number("global.heard[" + std::to_string(count - 1) + "][1]");
    EXPECT_GE(now, before);
    before = now;
  }
  EXPECT_EQ(last, "done");
  EXPECT_EQ(before, 1);
}

TEST_F(AsyncFiles, ThatArrivedBeforeAStateWasPutBackAreToldAsInterrupted) {
  files::use_save_folder(files::folder_storage(temporary_path("interrupted")));
  listen();
  eval("buffer_load_async(\"x.bin\")");
  ask({{"snapshot", "waiting"}});
  heard(1);
  ask({{"restore", "waiting"}});
  EXPECT_EQ(heard(1), "[[1,\"load\",\"failed\",0,\"x.bin: was interrupted\"]]");
  ask({{"step", 3}});
  EXPECT_EQ(eval("array_length(global.heard)"), "1");
}

TEST_F(AsyncFiles, ThatArrivedAreInThePastToo) {
  files::use_save_folder(files::folder_storage(temporary_path("past")));
  eval("buffer_save(buffer_from_text(\"hello\"), \"x.bin\")");
  listen();
  ask({{"rewind", 0}});
  eval("buffer_load_async(\"x.bin\")");
  const std::string before = heard(1);
  ask({{"step", 3}});
  const std::string hash = ask({{"hash", true}})["hash"];
  ask({{"step", 2}});
  ask({{"rewind", 2}});
  EXPECT_EQ(eval("global.heard"), before);
  EXPECT_EQ(ask({{"hash", true}})["hash"], hash);
}

class Inis : public TestGame {};

TEST_F(Inis, HoldTextsAndNumbers) {
  check({
      {"i = ini_parse(\"[a]\\nx = 1.5 ; c\\nt = \\\" b \\\"\\n\"); [ini_get_number(i, \"a\", \"x\"), ini_get_text(i, \"a\", \"t\"), "
       "ini_get_text(i, \"a\", \"none\"), "
       "ini_get_text(i, \"a\", \"none\", undefined), ini_get_number(i, \"a\", \"t\", 7), ini_get_number(i, \"b\", \"x\")]",
       "[1.50,\" b \",\"\",\"\",7,0]"},
      {"ini_set_number(i, \"a\", \"x\", 0.1); ini_set_number(i, \"n\", \"nan\", NaN); ini_set_number(i, \"n\", \"inf\", -infinity); "
       "[ini_get_number(i, \"a\", \"x\") == 0.1, "
       "is_nan(ini_get_number(i, \"n\", \"nan\")), ini_get_number(i, \"n\", \"inf\"), ini_section_names(i), ini_key_names(i, \"n\")]",
       "[true,true,-inf,[\"a\",\"n\"],[\"nan\",\"inf\"]]"},
      {"ini_text(i)", "[a]\nx = 0.1 ; c\nt = \" b \"\n\n[n]\nnan = NaN\ninf = -inf\n"},
      {"[ini_key_exists(i, \"a\", \"t\"), ini_section_exists(i, \"n\"), ini_section_exists(i, \"m\")]", "[true,true,false]"},
      {"ini_key_delete(i, \"a\", \"t\"); ini_section_delete(i, \"n\"); ini_save(i, \"s.ini\"); ini_close(i); i = ini_open(\"s.ini\"); "
       "ini_text(i)",
       "[a]\nx = 0.1 ; c\n\n"},
      {"ini_set_text(i, \"a\", \"b=c\", \"\")", "! ini_set_text: the name of a key has no = and stands on one line"},
      {"ini_set_text(i, \"a]\", \"b\", \"\")", "! ini_set_text: the name of a section has no ] and stands on one line"},
      {"ini_close(i); ini_text(i)", "! ini_text argument 1 invalid reference to (ini) - requested 0"},
      {"[ini_open(\"none.ini\"), ini_create(), ini_create()]", "[0,1,2]"},
  });
}

double random_double(std::mt19937_64& chance) {
  const double number = std::bit_cast<double>(chance());
  return chance() % 4 == 0 ? std::floor(number / 1e300) : number;
}
bool same_double(double a, double b) {
  return std::isnan(a) ? std::isnan(b) : std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

TEST_F(Inis, BringEachNumberBackToTheBit) {
  std::mt19937_64 chance(from_environment("ARENA_SEED", 4));
  formats::IniDocument document;
  for (int i = 0; i < 20000; ++i) {
    const double number = random_double(chance);
    document.set("a", "b", formats::exact_text(number));
    const std::string text = *formats::IniDocument(document.text()).get("a", "b");
    ASSERT_TRUE(same_double(formats::read_exact(text).value_or(0), number)) << text;
  }
}

class Buffers : public TestGame {};

TEST_F(Buffers, HoldValuesOfEachType) {
  check({
      {"b = buffer_create(0, 1, 1); buffer_write(b, 0, 255); buffer_write(b, 1, -128); buffer_write(b, 2, 65535); buffer_write(b, 3, -2); "
       "buffer_write(b, 4, 4294967295); "
       "buffer_write(b, 5, -5); buffer_write(b, 6, int64(9007199254740993)); buffer_write(b, 7, 0.5); buffer_write(b, 8, 0.25); "
       "buffer_write(b, 9, 0.1); buffer_write(b, 10, true); "
       "buffer_write(b, 11, \"añ\"); buffer_write(b, 12, \"end\"); buffer_get_size(b)",
       "44"},
      {"buffer_set_position(b, 0); [buffer_read(b, 0), buffer_read(b, 1), buffer_read(b, 2), buffer_read(b, 3), buffer_read(b, 4), "
       "buffer_read(b, 5), buffer_read(b, 6), "
       "buffer_read(b, 7), buffer_read(b, 8), buffer_read(b, 9) == 0.1, buffer_read(b, 10), buffer_read(b, 11), buffer_read(b, 12), "
       "buffer_get_position(b)]",
       "[255,-128,65535,-2,4294967295,-5,9007199254740992,0.50,0.25,true,true,\"añ\",\"end\",44]"},
      {"buffer_base64(b, 0, 8)", "/4D///7///8="},
      {"buffer_write(b, 0, 256)", "! buffer_write: the number is none of this type"},
      {"buffer_write(b, 1, 0.5)", "! buffer_write: the number is none of this type"},
      {"buffer_write(b, 5, NaN)", "! buffer_write: the number is none of this type"},
      {"buffer_write(b, 11, 5)", "! buffer_write: a number is no text"},
      {"buffer_write(b, 0, \"5\")", "! buffer_write: a string is no number"},
      {"buffer_write(b, 13, 5)", "! buffer_write: 13 is no type of values; there are 0 to 12"},
      {"buffer_set_position(b, 0, 2); buffer_read(b, 0)", "! buffer_read: byte 44 lies outside of the buffer, which has 44"},
      {"buffer_destroy(b); buffer_read(b, 0)", "! buffer_read argument 1 invalid reference to (buffer) - requested 0"},
  });
}

TEST_F(Buffers, EndGrowOrTurnByTheirKind) {
  check({
      {"b = buffer_create(4, 0, 4); buffer_write(b, 0, 1); buffer_get_position(b)", "1"},
      {"buffer_write(b, 0, 2)", "! buffer_write: byte 4 lies outside of the buffer, which has 4"},
      {"b = buffer_create(2, 1, 4); buffer_write(b, 0, 1); buffer_write(b, 0, 2); buffer_base64(b)", "AQAAAAI="},
      {"b = buffer_create(3, 2, 1); buffer_write(b, 2, 513); buffer_write(b, 2, 1027); buffer_set_position(b, 1); [buffer_base64(b), "
       "buffer_read(b, 2), buffer_read(b, 2)]",
       "[\"BAID\",770,516]"},
      {"b = buffer_create(2, 3, 1); buffer_write(b, 0, 7); buffer_write(b, 2, 7)",
       "! buffer_write: a buffer for single bytes holds types 0 and 1 alone"},
      {"buffer_create(2, 3, 2)", "! buffer_create: a buffer for single bytes has the alignment 1"},
      {"buffer_create(2, 0, 3)", "! buffer_create: an alignment is 1, 2, 4 and so on up to 1024"},
      {"buffer_create(-1, 0)", "! buffer_create: a buffer has 0 to 268435456 bytes, not -1"},
      {"b = buffer_from_text(\"abcdef\"); c = buffer_slice(b, 1, 3); buffer_copy(b, 0, 2, b, 1); [buffer_text(b), buffer_text(c), "
       "buffer_text(b, 4), buffer_equals(b, c)]",
       "[\"aabdef\",\"bcd\",\"ef\",false]"},
      {"buffer_fill(c, 0, 0, 120, -1); buffer_text(c)", "xxx"},
      {"buffer_poke(c, 1, 12, \"yz!\"); [buffer_text(c), buffer_peek(c, 1, 0), buffer_get_size(c)]", "[\"xyz!\",121,4]"},
      {"buffer_slice(b, 4, 3)", "! buffer_slice: byte 6 lies outside of the buffer, which has 6"},
      {"b = buffer_from_text(\"abc\"); [buffer_crc32(b), buffer_md5(b), buffer_sha1(b, 0, 3), string_sha256(\"abc\") == buffer_sha256(b)]",
       "[891568578,\"900150983cd24fb0d6963f7d28e17f72\",\"a9993e364706816aba3e25717850c26c9cd0d89d\",true]"},
      {"c = buffer_decompress(buffer_compress(b)); [buffer_equals(b, c), buffer_text(buffer_from_base64(\"YWJj\")), "
       "string_base64_decode(string_base64_encode(\"ä\"))]",
       "[true,\"abc\",\"ä\"]"},
      {"buffer_decompress(b)", "! buffer_decompress: the data is damaged at byte 2"},
      {"buffer_from_base64(\"*\")", "! buffer_from_base64: character 1 is none of base 64"},
      {"buffer_save(b, \"f.bin\", 1); [buffer_text(buffer_load(\"f.bin\")), buffer_load(\"none\")]", "[\"bc\",-1]"},
  });
}

TEST_F(Buffers, BringEachValueBack) {
  using buffers::Type;
  std::mt19937_64 chance(from_environment("ARENA_SEED", 6));
  for (int i = 0; i < 100000; ++i) {
    const Type type = static_cast<Type>(chance() % 10);
    const std::size_t bytes = buffers::bytes_of(type);
    std::string wanted, again, problem;
    for (std::size_t k = 0; k < bytes; ++k) wanted += static_cast<char>(chance());
    RValue value;
    std::size_t taken = 0;
    ASSERT_TRUE(buffers::decode(type, wanted, value, taken));
    ASSERT_TRUE(buffers::encode(type, value, again, problem)) << problem;
    const bool is_nan = value.is_number() && std::isnan(value.real);
    ASSERT_TRUE(is_nan || again == wanted) << static_cast<int>(type);
  }
  // Halfway between two, to the even one; the largest; the smallest.
  const std::pair<double, int> rows[] = {{1, 0x3C00},
                                         {-2, 0xC000},
                                         {65504, 0x7BFF},
                                         {65519.99, 0x7BFF},
                                         {65520, 0x7C00},
                                         {std::ldexp(1, -24), 1},
                                         {std::ldexp(1, -25), 0},
                                         {std::ldexp(1.5, -24), 2},
                                         {1 + std::ldexp(1, -11), 0x3C00},
                                         {1 + std::ldexp(3, -11), 0x3C02},
                                         {std::ldexp(1, -14), 0x400},
                                         {0.0, 0},
                                         {-0.0, 0x8000}};
  for (const auto& [number, bits] : rows) EXPECT_EQ(buffers::half_of(number), bits) << number;
}

class Json : public TestGame {};

TEST_F(Json, IsWrittenAndRead) {
  check({
      {"json_text({a: 5, b: int64(5), c: [true, \"x\\n\\\"\", undefined], d: {}, e: [], f: 0.1, g: -0.0})",
       "{\"a\":5.0,\"b\":5,\"c\":[true,\"x\\n\\\"\",{\"@@value\":\"undefined\"}],\"d\":{},\"e\":[],\"f\":0.1,\"g\":-0.0}"},
      {"json_text({a: [1, {b: 2}], c: {}}, true)", "{\n  \"a\": [\n    1.0,\n    {\n      \"b\": 2.0\n    }\n  ],\n  \"c\": {}\n}"},
      {"v = json_parse(\"{\\\"b\\\": 1, \\\"a\\\": [1.5, 2e3, null, \\\"\\\\u00e4\\\"], \\\"b\\\": 3}\"); [v, typeof(v.b), typeof(v.a[0]), "
       "struct_get_names(v)]",
       "[{b:3,a:[1.50,2000,null,\"ä\"]},\"int64\",\"number\",[\"b\",\"a\"]]"},
      {"[json_parse(\" 9223372036854775807 \"), typeof(json_parse(\"9223372036854775808\")), json_parse(\"-9223372036854775808\")]",
       "[9223372036854775807,\"number\",-9223372036854775808]"},
      {"json_parse(\"{\\n  \\\"a\\\": [1, 2,,]\\n}\")", "! json_parse: line 2, column 14: unexpected ','; expected '[', '{', or a literal"},
      {"json_text(method(undefined, draw_the_statement))", "! json_text: a method cannot be kept as JSON"},
      {"json_text(ptr(5))", "! json_text: a ptr cannot be kept as JSON"},
      {"v = {}; v.me = v; json_text(v)", "! json_text: what holds itself cannot be kept as JSON"},
      {"m = json_parse_map(\"{\\\"k\\\": [1, {\\\"x\\\": {\\\"@@value\\\": \\\"NaN\\\"}}]}\"); l = ds_map_find_value(m, \"k\"); "
       "[typeof(m), ds_list_size(l), json_text(m)]",
       "[\"ref\",2,\"{\"k\":[1,{\"x\":{\"@@value\":\"NaN\"}}]}\"]"},
  });
  EXPECT_EQ(eval("json_parse(\"" + std::string(500, '[') + std::string(500, ']') + "\"); 1"), "1");
  EXPECT_EQ(eval("json_parse(\"" + std::string(501, '[') + std::string(501, ']') + "\")"),
            "! json_parse: more than 500 containers stand inside one another");
}

// What the public suites of such texts are made of: y must be read, n must not.
TEST_F(Json, KeepsToTheStandard) {
  for (const char* const text : {"[]", "{}", "0", "-0", "\"\"", "[[]   ]", "[1,null,3]", "\"\\uD83D\\uDE00\"", "\"\\u0000\"", "{\"\":0}",
                                 "{\"a\":1,\"a\":2}", "1e-2", "1E+2", "[1e-500]", "\"\x7F\"", "\t\r\n true ", "\"\\/\\b\\f\""}) {
    RValue value;
    std::string problem;
    EXPECT_TRUE(documents::parse_json(text, false, value, problem)) << text << " " << problem;
  }
  for (const char* const text : {"",        "[",           "]",          "[1,]",   "[,1]",     "{\"a\":}", "{a:1}",        "{\"a\" 1}",
                                 "01",      "+1",          ".5",         "1.",     "1e",       "0x1",      "NaN",          "[1 2]",
                                 "\"\\x\"", "\"\\uD800\"", "\"\\u12\"",  "'a'",    "\"\n\"",   "\"\xFF\"", "\"\xC0\xAF\"", "truE",
                                 "[] []",   "\"a",         "{\"a\":1,}", "//x\n1", "\"\x01\"", "1e999",    "[1}"}) {
    RValue value;
    std::string problem;
    EXPECT_FALSE(documents::parse_json(text, false, value, problem)) << text;
    EXPECT_TRUE(problem.starts_with("line ")) << text << ": " << problem;
  }
}

RValue random_value(std::mt19937_64& chance, int depth) {
  switch (chance() % (depth > 0 ? 11 : 9)) {
    case 0: return RValue();
    case 1: return RValue::null();
    case 2: return RValue::of_bool(chance() % 2 == 0);
    case 3: return RValue::of_int64(static_cast<std::int64_t>(chance()) >> (chance() % 64));
    case 4: return RValue(chance() % 2 == 0 ? INFINITY : -INFINITY);
    case 5: return RValue(static_cast<double>(static_cast<int>(chance() % 2000) - 1000));
    case 6:
    case 7: return RValue(random_double(chance));
    case 8: {
      const char* const pieces[] = {"a", "ä", "😀", "\"", "\\", "\n", "\x01", "\x7F", " ", "@@value", "/"};
      std::string text;
      for (std::uint64_t left = chance() % 6; left > 0; --left)
        text += chance() % 20 == 0 ? std::string(1, '\0') : pieces[chance() % std::size(pieces)];
      return make_string(text);
    }
    case 9: {
      RValue made = make_array();
      for (std::uint64_t left = chance() % 5; left > 0; --left) array_append(*made.array, random_value(chance, depth - 1));
      return made;
    }
    default: {
      RValue made = make_struct();
      for (std::uint64_t left = chance() % 5; left > 0; --left)
        struct_set_named(property_object(made), "key" + std::to_string(chance() % 9) + (chance() % 5 == 0 ? "\"ü" : ""),
                         random_value(chance, depth - 1));
      return made;
    }
  }
}

bool same_value(const RValue& a, const RValue& b) {
  if (a.kind() != b.kind()) return false;
  if (a.is_number()) return same_double(a.real, b.real);
  if (a.is_string()) return text_of(a) == text_of(b);
  if (a.is_array()) {
    if (a.array->length != b.array->length) return false;
    for (std::int32_t i = 0; i < a.array->length; ++i) {
      if (!same_value(a.array->elements[i], b.array->elements[i])) return false;
    }
    return true;
  }
  if (!a.is_object()) return a.i64 == b.i64 || a.is_undefined() || a.kind() == kNull;
  PropertyObject *const first = property_object(a), *const second = property_object(b);
  if (first->variable_ids() != second->variable_ids()) return false;
  for (const std::int32_t id : first->variable_ids()) {
    if (!same_value(*first->find_variable(id), *second->find_variable(id))) return false;
  }
  return true;
}

TEST_F(Json, BringsEachValueBack) {
  std::mt19937_64 chance(from_environment("ARENA_SEED", 7));
  for (int i = 0; i < 100000; ++i) {
    if (i % 5000 == 0) ask({{"step", 1}});  // collects, while nothing is held here
    const RValue value = random_value(chance, 3);
    RValue back;
    std::string text, problem;
    ASSERT_TRUE(documents::write_json(value, chance() % 2 == 0, text, problem)) << problem;
    ASSERT_TRUE(documents::parse_json(text, false, back, problem)) << problem << "\n" << text;
    ASSERT_TRUE(same_value(value, back)) << text;
  }
}

TEST_F(Json, CsvFillsAGrid) {
  check({
      {"g = csv_parse(\"a,b\\n1,\\\"x,y\\\",3\\n\"); [ds_grid_width(g), ds_grid_height(g), ds_grid_get(g, 1, 0), ds_grid_get(g, 2, 0), "
       "ds_grid_get(g, 1, 1)]",
       "[3,2,\"b\",\"\",\"x,y\"]"},
      {"ds_grid_set(g, 0, 0, 0.1); csv_text(g, \";\")", "0.1;b;\r\n1;x,y;3\r\n"},
      {"csv_save(g, \"t.csv\"); h = csv_load(\"t.csv\"); [ds_grid_get(h, 1, 1), csv_load(\"none.csv\")]", "[\"x,y\",-1]"},
      {"csv_parse(\"a\\n\\\"b\")", "! csv_parse: line 2, column 1: the quote never ends"},
      {"csv_parse(\"a\", \"ab\")", "! csv_parse: a separator is one character, and no quote or end of a line"},
  });
}

}  // namespace
}  // namespace arena::test
