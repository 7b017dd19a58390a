#pragma once
// Paths are UTF-8 everywhere in the program; here they become what the system wants, and here the system's own folders are known.
#include <filesystem>
#include <string>
#include <string_view>

namespace arena::files {

std::filesystem::path path_of(std::string_view utf8);
std::string utf8_of(const std::filesystem::path& path);

// A name as messages show it: control characters, which could break the line, as '?'.
std::string on_one_line(std::string text);

// As one word of a command in the system's shell: in quotes where it needs them.
std::string shell_word(const std::string& text);

// The running program; empty when the system does not tell.
std::filesystem::path program_file();
// Where a program's logs and reports go: the folder with its name in %LOCALAPPDATA% or in the XDG data folder. Made on demand; empty when
// it cannot be.
std::filesystem::path user_data_folder(std::string_view program);
// Where this user keeps pictures; empty when unknown.
std::filesystem::path pictures_folder();
// Whether a file can be made there; makes the folder when it is missing.
bool can_write_in(const std::filesystem::path& folder);

}  // namespace arena::files
