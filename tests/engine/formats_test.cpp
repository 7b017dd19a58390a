// Formats without a game: known answers, texts of other programs, and what is written read again.
#include <gtest/gtest.h>

#include <random>

#include "engine/formats/base64.h"
#include "engine/formats/compression.h"
#include "engine/formats/csv.h"
#include "engine/formats/hashes.h"
#include "engine/formats/ini_document.h"
#include "tests/support/long_runs.h"

namespace arena::test {
namespace {

using formats::IniDocument;

TEST(Hashes, AreTheKnownOnes) {
  const std::string million(1000000, 'a'), alphabet = "abcdefghijklmnopqrstuvwxyz";
  const struct {
    std::string bytes, md5, sha1, sha256;
  } rows[] = {{"", "d41d8cd98f00b204e9800998ecf8427e", "da39a3ee5e6b4b0d3255bfef95601890afd80709",
               "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
              {"abc", "900150983cd24fb0d6963f7d28e17f72", "a9993e364706816aba3e25717850c26c9cd0d89d",
               "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
              {million, "7707d6ae4e027c70eea2a935c2296f21", "34aa973cd4c4daa4f61eeb2bdbad27316534016f",
               "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}};
  for (const auto& row : rows) {
    EXPECT_EQ(formats::md5(row.bytes), row.md5);
    EXPECT_EQ(formats::sha1(row.bytes), row.sha1);
    EXPECT_EQ(formats::sha256(row.bytes), row.sha256);
  }
  EXPECT_EQ(formats::md5(alphabet), "c3fcd3d76192e4007dfb496cca67e13b");
  EXPECT_EQ(formats::crc32_of("123456789"), 0xCBF43926u);
  // Around the end of a block, where the length no longer fits.
  EXPECT_EQ(formats::sha256(std::string(56, 'a')), "b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a");
}

TEST(Base64, AreTheKnownOnesAndComeBack) {
  const std::pair<const char*, const char*> rows[] = {{"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"foobar", "Zm9vYmFy"}};
  std::string problem;
  for (const auto& [bytes, text] : rows) {
    EXPECT_EQ(formats::base64(bytes), text);
    EXPECT_EQ(formats::from_base64(text, problem), bytes);
  }
  EXPECT_EQ(formats::from_base64("Zm 9v\r\nYm", problem), "foob");
  for (const auto& [text, expected] :
       {std::pair("Zm9$", "character 4 is none of base 64"), std::pair("Zm9vY", "the text ends in the middle of a byte"),
        std::pair("Zg=x", "character 4 is none of base 64"), std::pair("Zg=", "the text ends in the middle of a byte")}) {
    EXPECT_EQ(formats::from_base64(text, problem), std::nullopt);
    EXPECT_EQ(problem, expected);
  }
}

TEST(Compression, ComesBackOrSaysWhatIsWrong) {
  std::mt19937_64 chance(3);
  std::string problem;
  for (const std::size_t size : {0u, 1u, 1000u, 65536u, 300000u}) {
    std::string bytes(size, 'x');
    for (std::size_t i = 0; i < size; i += 3) bytes[i] = static_cast<char>(chance());
    const std::string packed = formats::compressed(bytes);
    EXPECT_EQ(formats::decompressed(packed, 1 << 20, problem), bytes);
    for (std::size_t cut = 0; cut < packed.size(); cut += 1 + packed.size() / 40) {
      EXPECT_EQ(formats::decompressed(packed.substr(0, cut), 1 << 20, problem), std::nullopt);
      EXPECT_EQ(problem, "the data is cut off behind byte " + std::to_string(cut));
    }
    EXPECT_EQ(formats::decompressed(packed + "x", 1 << 20, problem), std::nullopt);
  }
  EXPECT_EQ(formats::decompressed(formats::compressed(std::string(1 << 20, 'x')), 1000, problem), std::nullopt);
  EXPECT_EQ(problem, "the data would become more than 1000 bytes");
  EXPECT_EQ(formats::decompressed("no zlib at all", 1000, problem), std::nullopt);
}

TEST(Csv, ReadsWhatOthersWrite) {
  const struct {
    std::string text;
    std::vector<std::vector<std::string>> rows;
  } rows[] = {{"a,b\r\nc,d\r\n", {{"a", "b"}, {"c", "d"}}},
              {"a,b\nc", {{"a", "b"}, {"c"}}},
              {"\xEF\xBB\xBF"
               "a,\r,b",
               {{"a", ""}, {"", "b"}}},
              {"\"x, y\",\"say \"\"hi\"\"\",\"two\r\nlines\"\n", {{"x, y", "say \"hi\"", "two\r\nlines"}}},
              {"a\n\nb\n", {{"a"}, {""}, {"b"}}},
              {" a , b\"c", {{" a ", " b\"c"}}},
              {"", {}}};
  for (const auto& row : rows) {
    formats::Table table;
    std::string problem;
    EXPECT_TRUE(formats::parse_csv(row.text, ',', table, problem)) << problem;
    EXPECT_EQ(table.rows, row.rows) << row.text;
  }
  formats::Table table;
  std::string problem;
  EXPECT_FALSE(formats::parse_csv("a,b\nc,\"never\nends", ',', table, problem));
  EXPECT_EQ(problem, "line 2, column 3: the quote never ends");
  EXPECT_FALSE(formats::parse_csv("a\n\"b\"c", ',', table, problem));
  EXPECT_EQ(problem, "line 2, column 4: text behind the end of a quote");
}

TEST(Csv, ComesBack) {
  std::mt19937_64 chance(from_environment("ARENA_SEED", 1));
  for (int round = 0; round < 3000; ++round) {
    const char separator = ",;\t"[chance() % 3];
    formats::Table table, read;
    const std::size_t width = 1 + chance() % 4;
    for (std::size_t left = chance() % 5; left > 0; --left) {
      auto& row = table.rows.emplace_back(width);
      for (std::string& value : row) {
        for (std::size_t more = chance() % 5; more > 0; --more) value += ",;\t\"\r\n abä\xEF"[chance() % 12];
      }
    }
    std::string text, problem;
    for (const auto& row : table.rows) {
      for (std::size_t i = 0; i < width; ++i) {
        if (i > 0) text += separator;
        formats::put_csv(text, row[i], separator, width == 1);
      }
      text += "\r\n";
    }
    ASSERT_TRUE(formats::parse_csv(text, separator, read, problem)) << problem << "\n" << text;
    ASSERT_EQ(read.rows, table.rows) << text;
  }
}

// As editors and other programs leave it.
constexpr const char* kForeign =
    "\xEF\xBB\xBF; settings\r\n"
    "loose = at the top\r\n"
    "\r\n"
    "[video]   ; what is seen\r\n"
    "width=1280 ; pixels\r\n"
    "  Height  =  720\r\n"
    "colour = #ff00ff\r\n"
    "title = \"  My game ; really  \"\t# quoted\r\n"
    "path = C:\\new\\table\r\n"
    "empty=\r\n"
    "what is this line?\r\n"
    "=no name\r\n"
    "[unfinished\r\n"
    "url = http://x/?a=b;c=d\r\n"
    "[audio]\r\n"
    "volume = 0.5\r\n"
    "[video]\r\n"
    "width=1920\r\n"
    "last = no end";

TEST(IniDocuments, ReadWhatOthersWrite) {
  const IniDocument ini(kForeign);
  EXPECT_EQ(ini.text(), kForeign) << "to the byte";
  const struct {
    const char *section, *key, *value;
  } rows[] = {{"", "loose", "at the top"},
              {"video", "width", "1920"},
              {"video", "Height", "720"},
              {"video", "height", nullptr},
              {"video", "colour", "#ff00ff"},
              {"video", "title", "  My game ; really  "},
              {"video", "path", "C:\\new\\table"},
              {"video", "empty", ""},
              {"video", "url", "http://x/?a=b;c=d"},
              {"audio", "volume", "0.5"},
              {"video", "last", "no end"},
              {"audio", "width", nullptr},
              {"none", "x", nullptr}};
  for (const auto& row : rows) {
    const auto found = ini.get(row.section, row.key);
    EXPECT_EQ(found.has_value(), row.value != nullptr) << row.key;
    EXPECT_EQ(found.value_or(""), row.value != nullptr ? row.value : "") << row.key;
  }
  EXPECT_EQ(ini.sections(), (std::vector<std::string>{"", "video", "audio"}));
  EXPECT_EQ(ini.keys("audio"), std::vector<std::string>{"volume"});
}

TEST(IniDocuments, ChangeOnlyWhatIsChanged) {
  IniDocument ini(kForeign);
  std::string expected = kForeign;
  const auto replace = [&](const std::string& from, const std::string& to) {
    ASSERT_NE(expected.rfind(from), std::string::npos) << from;
    expected.replace(expected.rfind(from), from.size(), to);
  };
  ini.set("video", "Height", "1080");
  replace("  Height  =  720", "  Height  =  1080");
  ini.set("video", "title", "short");
  replace("\"  My game ; really  \"", "\"short\"");  // or # would not begin a comment
  ini.set("video", "width", "2560");
  replace("width=1920", "width=2560");
  ini.set("audio", "music", "0");
  replace("volume = 0.5\r\n", "volume = 0.5\r\nmusic = 0\r\n");
  ini.set("video", "more", "x");
  replace("last = no end", "last = no end\r\nmore = x\r\n");
  ini.set("", "loose", "tight");
  replace("at the top", "tight");
  ini.set("new", "key", "value");
  expected += "\r\n[new]\r\nkey = value\r\n";
  EXPECT_EQ(ini.text(), expected);
  ini.remove_key("video", "width");
  replace("width=2560\r\n", "");
  replace("width=1280 ; pixels\r\n", "");
  ini.remove_section("audio");
  replace("[audio]\r\nvolume = 0.5\r\nmusic = 0\r\n", "");
  EXPECT_EQ(ini.text(), expected);
  IniDocument quoted("a=\"x\";c\nb= ;c\n");
  quoted.set("", "a", "y");
  quoted.set("", "b", "z");
  EXPECT_EQ(quoted.text(), "a=y ;c\nb= z ;c\n");
}

TEST(IniDocuments, BringTextsBack) {
  std::mt19937_64 chance(from_environment("ARENA_SEED", 2));
  const std::vector<std::string> pieces = {" ",    "\t",   ";", " ;", "#", "\"", "\\", "\\\"", "\n",
                                           "\r",   "\r\n", "=", "[",  "]", "x",  "ä",  "\xFF", std::string(1, '\0'),
                                           "\x7F", "\\n"};
  IniDocument kept("; kept\n[a] # too\nk1 = old # not a comment\nk2=\"old\" # one\n");
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (std::uint64_t left = chance() % 7; left > 0; --left) text += pieces[chance() % pieces.size()];
    const std::string key = "k" + std::to_string(1 + chance() % 4);
    kept.set("a", key, text);
    ASSERT_EQ(kept.get("a", key), text) << kept.text();
    ASSERT_EQ(IniDocument(kept.text()).get("a", key), text) << kept.text();
  }
  EXPECT_TRUE(kept.text().starts_with("; kept\n[a] # too\nk1 = "));
  EXPECT_TRUE(IniDocument::flaw_of_key("a b").empty() && IniDocument::flaw_of_section("a = b [").empty());
  for (const char* const key : {"", "a=b", " a", "a ", "[a", ";a", "#a", "a\nb"})
    EXPECT_FALSE(IniDocument::flaw_of_key(key).empty()) << key;
  for (const char* const section : {"a]", " a", "a\tb"}) EXPECT_FALSE(IniDocument::flaw_of_section(section).empty()) << section;
}

}  // namespace
}  // namespace arena::test
