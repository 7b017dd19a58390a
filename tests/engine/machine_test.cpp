// Dates in the player's time zone, what scripts ask of the machine and the window, the pace of frames, and the licence flag.
#include "engine/machine/machine.h"

#include <flatbuffers/flatbuffers.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "arena_generated.h"
#include "engine/data/data_file.h"
#include "engine/licence/licence.h"
#include "engine/platform/pacer.h"
#include "engine/platform/single_instance.h"
#include "runtime/calendar/calendar.h"
#include "runtime/input/outside.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

// Central Europe in 2024: UTC+1, and UTC+2 from 31 March to 27 October, 01:00 UTC.
class AnotherMachine final : public machine::Machine {
 public:
  std::int64_t now_microseconds() const override { return 1'709'210'096'250'000; }
  std::int32_t zone_offset(std::int64_t utc) const override {
    ++asked;
    return utc >= 1711846800 && utc < 1729990800 ? 7200 : 3600;
  }
  std::string locale() const override { return "de-AT"; }
  std::string environment(const std::string& name) const override { return name == "HOME" ? "/home/me" : ""; }
  bool open_address(const std::string& address) const override {
    opened += address + ";";
    return true;
  }
  mutable int asked = 0;
  mutable std::string opened;
};

class OnAnotherMachine : public TestGame {
 protected:
  OnAnotherMachine() {
    machine::use_machine(&machine);
    machine::set_arguments({"level=3", "añ"});
  }
  ~OnAnotherMachine() override { machine::use_machine(nullptr); }
  AnotherMachine machine;
};

TEST_F(OnAnotherMachine, DatesFollowThePlayersClock) {
  check({
      {"date_format(date_now(), \"YYYY-MM-DD hh:mm:ss.fff\")", "2024-02-29 13:34:56.250"},
      {"date_format(date_now(), \"hh:mm\", true)", "12:34"},
      {"[date_zone_offset(date_now()), date_zone_offset(date_create(2024, 7, 1))]", "[3600,7200]"},
      {"date_create(2024, 7, 1, 12) == date_create(2024, 7, 1, 10, 0, 0, true)", "true"},
      // The night in which an hour is skipped, and the one in which it comes twice.
      {"date_format(date_create(2024, 3, 31, 2, 30), \"hh:mm\")", "03:30"},
      {"date_format(date_create(2024, 3, 31, 1, 59, 59), \"hh:mm\", true)", "00:59"},
      {"date_format(date_create(2024, 10, 27, 2, 30), \"hh:mm\", true)", "00:30"},
      {"date_format(date_create(2024, 10, 27, 3, 30), \"hh:mm\", true)", "02:30"},
      // A day of the calendar is not always 24 hours; an hour is always an hour.
      {"noon = date_create(2024, 3, 30, 12); [date_format(date_add(noon, 1, \"days\"), \"hh\"), date_format(date_add(noon, 24, \"hours\"), "
       "\"hh\")]",
       "[\"12\",\"13\"]"},
      {"next = date_add(noon, 1, \"days\"); [date_span(noon, next, \"days\"), date_span(noon, next, \"hours\"), date_span(next, noon, "
       "\"days\")]",
       "[1,23,-1]"},
      {"date_format(date_add(date_create(2024, 1, 31), 1, \"months\"), \"D.M.\")", "29.2."},
      {"[date_span(date_create(2000, 6, 1), date_create(2024, 5, 31), \"years\"), date_span(0, 60, \"seconds\", true)]", "[23,60]"},
      {"d = date_get(date_create(2024, 12, 30, 1, 2, 3)); [d.year, d.month, d.day, d.hour, d.minute, d.second, d.weekday, d.day_of_year, "
       "d.week]",
       "[2024,12,30,1,2,3,1,365,1]"},
      {"[date_parse(\"2024-07-01 12:00\") == date_create(2024, 7, 1, 12), date_parse(\"2024-07-01T12:00Z\") == date_create(2024, 7, 1, "
       "14), "
       "date_parse(\"tomorrow\")]",
       "[true,true,undefined]"},
      {"[date_is_valid(2023, 2, 29), date_is_valid(2024, 2, 29), date_is_leap_year(1900), date_days_in_month(2024, 2), "
       "date_days_in_month(2024, 13)]",
       "[false,true,false,29,0]"},
      {"[span_format(3723), span_format(90, \"m 'min' s\")]", "[\"1:02:03\",\"1 min 30\"]"},
      {"date_add(0, 1, \"fortnights\")",
       "! date_add argument 3 incorrect type (string) expecting a unit of time: years, months, weeks, days, hours, minutes or seconds"},
      {"[date_get(NaN).year, date_get(1e300).year, date_get(-1e300).year]", "[1970,9999,-9999]"},
  });
}

// Whatever the local time, taking it apart and putting it together gives the moment again, but in the hour that comes twice.
TEST_F(OnAnotherMachine, EveryHourOfAYearGoesThereAndBack) {
  int elsewhere = 0;
  for (int hour = 0; hour < 366 * 24; hour += 5) {
    const std::string moment = std::to_string(1704067200 + hour * 3600);
    if (eval("d = date_get(" + moment + "); date_create(d.year, d.month, d.day, d.hour, d.minute, d.second) == " + moment) != "true")
      ++elsewhere;
  }
  EXPECT_LE(elsewhere, 1);
}

TEST_F(OnAnotherMachine, IsAskedOnceForAQuarterOfAnHourAndAnswersAreHeard) {
  std::vector<std::string> heard;
  hear_answers([&](const std::string& answer) { heard.push_back(answer); });
  eval("date_zone_offset(900000)");
  eval("date_zone_offset(900000 + 899)");
  EXPECT_EQ(machine.asked, 1);
  eval("date_zone_offset(900000 + 900)");
  EXPECT_EQ(machine.asked, 2);
  eval("locale_get(); environment_get(\"HOME\"); argument_get(1)");
  EXPECT_EQ(heard, (std::vector<std::string>{"3600", "3600", "de-AT", "/home/me", "añ"}));
  // In a replay the machine is not asked, and nothing is opened.
  give_answers([] { return std::string("1"); });
  EXPECT_EQ(eval("[open_address(\"https://example.org\"), locale_get(), date_now()]"), "[true,\"1\",0.00]");
  EXPECT_EQ(machine.opened, "");
  give_answers({});
  hear_answers({});
}

TEST_F(OnAnotherMachine, OpensAddressesAndNothingElse) {
  const std::string refused = "! open_address argument 1 incorrect type (string) expecting a address that begins with http:// or https://";
  EXPECT_EQ(eval("open_address(\"https://example.org/a?b=1&c=%20#d\")"), "true");
  for (const char* wrong : {"file:///etc/passwd", "example.org", "javascript:1", "http://", "https://-flag", "HTTP://x", "https://a b",
                            "https://a\\\"b", "https://a\\nb", "https://a`b`", "https://a'b", ""}) {
    EXPECT_EQ(eval(std::string("open_address(\"") + wrong + "\")"), refused) << wrong;
  }
  EXPECT_EQ(machine.opened, "https://example.org/a?b=1&c=%20#d;");
  check({
      {"[argument_count(), argument_get(0), argument_get(2), argument_get(-1)]", "[2,\"level=3\",\"\",\"\"]"},
      {"[environment_get(\"HOME\"), environment_get(\"\"), environment_get(\"A=B\")]", "[\"/home/me\",\"\",\"\"]"},
  });
}

class SilentMachine : public TestGame {};

TEST_F(SilentMachine, IsTheSameEverywhere) {
  check({
      {"[date_format(date_now()), locale_get(), environment_get(\"HOME\"), argument_count(), open_address(\"https://example.org\")]",
       "[\"2000-01-01 00:00:00\",\"en-US\",\"\",0,false]"},
      {"d = display_get(0); [display_get_count(), d.width, d.height, d.frequency, d.dpi, d.work_height, display_get_of_window()]",
       "[1,1920,1080,60,96,1080,0]"},
      {"display_get(1)", "! display_get argument 1 invalid reference to (display) - requested 1 max is 1"},
      {"window_set_position(5, 5); window_minimise(); window_restore(); [window_get_x(), window_get_y(), window_is_minimised()]",
       "[0,0,false]"},
      {"window_set_caption(\"Hi\"); window_set_borderless(true); display_set_awake(false); [window_get_caption(), window_get_borderless()]",
       "[\"Hi\",true]"},
      {"game_set_speed(5000); game_set_sleep_margin(NaN); [game_get_speed(), game_get_sleep_margin()]", "[1000,0]"},
      {"game_set_speed(-3); game_set_sleep_margin(99); [game_get_speed(), game_get_sleep_margin()]", "[0,20]"},
      {"window_set_icon(9999)", "! window_set_icon argument 1 invalid reference to (sprite) - requested 9999 max is 58"},
  });
  step(60);
  EXPECT_EQ(eval("date_format(date_now())"), "2000-01-01 00:00:01") << "game time goes on";
  eval("game_restart()");
  step();
  EXPECT_EQ(eval("[window_get_caption(), window_get_borderless()]"), "[\"\",false]");
}

// A clock that a sleep and each look at it move on.
TEST(Pacer, LetsFramesBeginEvenly) {
  std::int64_t now = 1'000'000, slept = 0;
  platform::Pacer pacer([&] { return now += 10; },
                        [&](std::int64_t microseconds) {
                          slept += microseconds;
                          now += microseconds + 400;  // longer than it was told
                        });
  const platform::FramePace pace{100, 1};
  pacer.wait(pace);
  std::int64_t before = now;
  for (int frame = 0; frame < 50; ++frame) {
    now += 3000;  // the work of a frame
    pacer.wait(pace);
    EXPECT_NEAR(static_cast<double>(now - before), 10000, 30) << frame;
    before = now;
  }
  EXPECT_NEAR(static_cast<double>(slept), 50 * 6000, 2000) << "all but a millisecond of each is slept";
  now += 50000;
  before = now;
  pacer.wait(pace);
  EXPECT_LT(now - before, 100) << "a late frame begins at once";
  before = now;
  pacer.wait(pace);
  EXPECT_NEAR(static_cast<double>(now - before), 10000, 30) << "and none is made up for";
}

TEST(SingleInstance, HoldsItsNameAsLongAsItLives) {
#ifndef _WIN32
  setenv("XDG_DATA_HOME", temporary_path("data").c_str(), 1);
#endif
  const platform::SingleInstance nobody("");
  EXPECT_TRUE(nobody.is_first());
  {
    const platform::SingleInstance first("arena-single"), second("arena-single"), other("arena-other");
    EXPECT_TRUE(first.is_first());
    EXPECT_FALSE(second.is_first());
    EXPECT_TRUE(other.is_first());
  }
  const platform::SingleInstance again("arena-single");
  EXPECT_TRUE(again.is_first());
#ifndef _WIN32
  unsetenv("XDG_DATA_HOME");
#endif
}

// A data file of this build that asks for something of the program, written where the program finds it.
std::string data_that_needs(const std::string& edition, const std::vector<std::string>& features) {
  std::ifstream stream(data_file_path(), std::ios::binary);
  const std::vector<std::uint8_t> whole{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  const std::unique_ptr<data::FileT> file(data::GetFile(whole.data() + data::kHeaderBytes)->UnPack());
  file->edition = edition;
  file->features = features;
  flatbuffers::FlatBufferBuilder builder;
  builder.Finish(data::File::Pack(builder, file.get()));
  std::vector<std::uint8_t> bytes = data::header_for(builder.GetBufferPointer(), builder.GetSize());
  bytes.insert(bytes.end(), builder.GetBufferPointer(), builder.GetBufferPointer() + builder.GetSize());
  const std::string path = temporary_path("needs.dat");
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return path;
}

TEST(LicenceFlag, DataThatNeedsMoreThanTheBuildHasIsRefused) {
  const std::string edition(licence::edition()), has = "; this is the " + licence::in_words();
  const struct {
    std::string edition;
    std::vector<std::string> features;
    std::string missing;
  } cases[] = {{"", {}, ""},
               {edition, licence::features(), ""},
               {"gold", {}, "the data file needs the edition 'gold' of the program" + has},
               {"", {"time travel"}, "the data file needs the feature 'time travel' of the program" + has},
               {edition, {"one", "two"}, "the data file needs the features 'one', 'two' of the program" + has}};
  for (const auto& each : cases) {
    std::string problem;
    const auto file = data::open_data_file(data_that_needs(each.edition, each.features), problem);
    ASSERT_NE(file, nullptr) << problem;
    EXPECT_EQ(data::missing_in_build(*file), each.missing);
  }
  const std::string path = data_that_needs("gold", {}), lines = temporary_path("refused");
  EXPECT_EQ(run_program("--headless --frames 1 --data " + path, lines), 1);
  std::ifstream stream(lines);
  std::string line, more;
  std::getline(stream, line);
  EXPECT_EQ(line, "arena: the data file needs the edition 'gold' of the program" + has);
  EXPECT_FALSE(std::getline(stream, more));
  EXPECT_EQ(run_program("--headless --frames 1 --data " + data_that_needs(edition, {})), 0);
}

TEST_F(SilentMachine, ScriptsReadTheLicenceFlag) {
  EXPECT_EQ(eval("licence_get_edition()"), licence::edition());
  EXPECT_EQ(eval("array_length(licence_get_features())"), std::to_string(licence::features().size()));
  EXPECT_EQ(eval("licence_has_feature(\"time travel\")"), "false");
}

}  // namespace
}  // namespace arena::test
