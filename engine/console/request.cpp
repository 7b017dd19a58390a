#include "engine/console/request.h"

#include <cmath>

#include "engine/console/console.h"
#include "runtime/values/number_text.h"

namespace arena::console {
namespace {

constexpr int kDeepestRequest = 100;  // lists and objects in one another

std::string quoted(const char* key) { return "\"" + std::string(key) + "\""; }

}  // namespace

json parse_request(const std::string& line) {
  if (line.size() > kLongestRequest) throw RequestError{"a request has at most " + std::to_string(kLongestRequest) + " bytes"};
  const auto check_depth = [](int depth, json::parse_event_t, json&) {
    if (depth > kDeepestRequest) throw RequestError{"a request is at most " + std::to_string(kDeepestRequest) + " deep"};
    return true;
  };
  json request = json::parse(line, check_depth);
  if (!request.is_object()) throw RequestError{"a request is a JSON object"};
  return request;
}

double number(const json& request, const char* key, const char* what, double least, double most) {
  const double given = request.at(key).is_number() ? request.at(key).get<double>() : NAN;
  if (given >= least && given <= most) return given;
  throw RequestError{quoted(key) + " must be " + what + " from " + real_to_text(least) + " to " + real_to_text(most)};
}

std::int64_t whole(const json& request, const char* key, const char* what, std::int64_t least, std::int64_t most) {
  const double given = request.at(key).is_number() ? request.at(key).get<double>() : NAN;
  if (given == std::floor(given) && given >= static_cast<double>(least) && given <= static_cast<double>(most))
    return static_cast<std::int64_t>(given);
  throw RequestError{quoted(key) + " must be " + what + " from " + std::to_string(least) + " to " + std::to_string(most)};
}

std::string text(const json& request, const char* key) {
  if (!request.at(key).is_string()) throw RequestError{quoted(key) + " must be a text"};
  return request[key].get<std::string>();
}

bool flag(const json& request, const char* key) {
  if (!request.contains(key) || !request[key].is_boolean()) throw RequestError{quoted(key) + " must be true or false"};
  return request[key].get<bool>();
}

}  // namespace arena::console
