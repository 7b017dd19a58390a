#include "runtime/values/strings.h"

#include <cstring>

#include "runtime/checks/assert.h"
#include "runtime/memory/worker_lock.h"
#include "runtime/reports/report.h"
#include "runtime/session/session.h"

namespace arena {
namespace {

// Record and text stand in one block, the text right behind the record:  | text* | count | size | bytes ... 0 |
StringRecord* new_record(std::size_t length) {
  StringRecord* record = static_cast<StringRecord*>(allocate_block(sizeof(StringRecord) + length + 1));
  char* text = reinterpret_cast<char*>(record + 1);
  text[length] = 0;
  record->text = text;
  record->count = 1;
  record->size = static_cast<std::int32_t>(length);
  const WorkerLock lock(WorkerLock::kStringCounts);
  ++session().live_strings;
  return record;
}

RValue value_of(StringRecord* record) {
  RValue value;
  value.string = record;
  value.kind_bits = kString;
  return value;
}

std::string_view text_of(const StringRecord* record) {
  if (record == nullptr || record->text == nullptr) return {};
  return {record->text, static_cast<std::size_t>(record->length())};
}

}  // namespace

bool check_text_length(std::size_t bytes) {
  if (bytes <= kLongestText) return true;
  report_error(messages::kTextTooLong, static_cast<std::int32_t>(kLongestText));
  return false;
}

RValue make_string(std::string_view text) {
  if (!check_text_length(text.size())) text = {};
  StringRecord* record = new_record(text.size());
  if (!text.empty()) std::memcpy(const_cast<char*>(record->text), text.data(), text.size());
  return value_of(record);
}

RValue make_constant_string(const char* text) {
  StringRecord* record = static_cast<StringRecord*>(allocate_block(sizeof(StringRecord)));
  record->text = text;
  record->count = 1;
  record->size = -static_cast<std::int32_t>(std::strlen(text)) - 1;
  const WorkerLock lock(WorkerLock::kStringCounts);
  ++session().live_strings;
  return value_of(record);
}

RValue concatenate(const RValue& left, const RValue& right) {
  const std::string_view first = text_of(left), second = text_of(right);
  if (!check_text_length(first.size() + second.size())) return left;
  StringRecord* record = new_record(first.size() + second.size());
  char* text = const_cast<char*>(record->text);
  if (!first.empty()) std::memcpy(text, first.data(), first.size());
  if (!second.empty()) std::memcpy(text + first.size(), second.data(), second.size());
  return value_of(record);
}

std::string_view text_of(const RValue& value) { return value.is_string() ? text_of(value.string) : std::string_view(); }

void release_string(StringRecord* record) {
  if (record == nullptr) return;
  {
    const WorkerLock lock(WorkerLock::kStringCounts);
    ARENA_ASSERT(record->count > 0 && session().live_strings > 0);
    if (--record->count > 0) return;
    --session().live_strings;
  }
  const std::size_t text_bytes = record->size < 0 ? 0 : static_cast<std::size_t>(record->size) + 1;
  *record = StringRecord{};
  free_block(record, sizeof(StringRecord) + text_bytes);
}

int live_strings() { return session().live_strings; }

}  // namespace arena
