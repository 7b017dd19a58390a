// Any text is read as settings, stays what it is to the byte, and takes a change that is read again.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "engine/formats/ini_document.h"
#include "fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using arena::formats::IniDocument;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  IniDocument ini(text);
  require(ini.text() == text);
  const std::string_view value = text.substr(size / 2);
  for (const auto& section : ini.sections()) {
    for (const auto& key : ini.keys(section)) require(ini.get(section, key).has_value());
  }
  ini.set("fuzz", "key", value);
  require(IniDocument(ini.text()).get("fuzz", "key") == value);
  ini.remove_section("fuzz");
  require(!ini.has_section("fuzz"));
  return 0;
}
