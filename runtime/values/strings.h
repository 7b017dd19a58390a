#pragma once
// Making and joining the runtime's shared texts. Text is UTF-8; a record is immutable once a second value holds it.
#include <string>
#include <string_view>

#include "runtime/checks/assert.h"
#include "runtime/memory/worker_lock.h"
#include "runtime/values/value.h"

namespace arena {

inline constexpr std::size_t kLongestText = std::size_t{1} << 26;  // bytes
// Whether a text of so many bytes may be; reports when not.
bool check_text_length(std::size_t bytes);

// "" with a report for a text that is too long.
RValue make_string(std::string_view text);
// `text` must live as long as the program: the record refers to it and never frees it.
RValue make_constant_string(const char* text);
// The left one with a report when both together are too long.
RValue concatenate(const RValue& left, const RValue& right);

// The text of a string value; empty for a string without a record and for every other kind.
std::string_view text_of(const RValue& value);

// Reference counting, under the string lock. release_string frees text and record when the last reference goes.
inline void add_string_reference(StringRecord* record) {
  if (record == nullptr) return;
  const WorkerLock lock(WorkerLock::kStringCounts);
  ARENA_ASSERT(record->count > 0);
  ++record->count;
}
void release_string(StringRecord* record);
// String records alive now: for leak tests.
int live_strings();

}  // namespace arena
