#pragma once
// What a request holds, taken out with checks: whatever is wrong with it is one RequestError.
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

namespace arena::console {

using json = nlohmann::ordered_json;

// A request that cannot be read, or that asks for something impossible.
struct RequestError {
  std::string message;
};

// The JSON of one line, checked for length and depth; always an object.
json parse_request(const std::string& line);
// A number without a fraction, from `least` to `most`. `what` says in the error what it counts.
std::int64_t whole(const json& request, const char* key, const char* what, std::int64_t least, std::int64_t most);
// A finite number from `least` to `most`.
double number(const json& request, const char* key, const char* what, double least, double most);
std::string text(const json& request, const char* key);
bool flag(const json& request, const char* key);

}  // namespace arena::console
