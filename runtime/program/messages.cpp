#include "runtime/program/messages.h"

#include <cstddef>

namespace arena {
namespace {

// Cuts at 1,023 bytes (the last byte of the buffer is its zero), never inside a UTF-8 sequence.
void cut(std::string& message) {
  if (message.size() < kLongestMessage) return;
  std::size_t end = kLongestMessage - 1;
  while (end > 0 && (static_cast<unsigned char>(message[end]) & 0xC0) == 0x80) --end;
  message.resize(end);
}

}  // namespace

std::string format_message(const char* format, const MessageArgument* arguments, std::size_t count) {
  std::string message;
  std::size_t next = 0;
  for (const char* at = format; *at != 0; ++at) {
    if (*at != '%' || next >= count) {
      message += *at;
      continue;
    }
    ++at;
    const MessageArgument& argument = arguments[next++];
    if (argument.type == MessageArgument::kText) {
      message += argument.text;
    } else {
      message += std::to_string(argument.integer);
    }
  }
  cut(message);
  return message;
}

}  // namespace arena
