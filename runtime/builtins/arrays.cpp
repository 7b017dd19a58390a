// Arrays. Functions that change an array change the one they were given, whoever else holds it.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/arrays.h"

#include <algorithm>
#include <vector>

#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/random.h"
#include "runtime/values/compare.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/calls.h"

namespace arena {
namespace {

std::int32_t length_of(const RValue& value) { return value.is_array() && value.array != nullptr ? value.array->length : 0; }

RValue array_create(std::int32_t length, const RValue& fill) {
  RValue made = make_array(check_array_length(length) ? std::max(length, 0) : 0);
  const RValue content = fill.is_undefined() ? RValue(0.0) : fill;
  for (std::int32_t i = 0; i < made.array->length; ++i) array_store(*made.array, i, content);
  return made;
}
void array_push(MutableArray target, Rest values) {
  for (const RValue& value : values) array_append(*target.array, value);
}
RValue array_pop(MutableArray target) {
  if (target.array->length == 0) return {};
  const RValue last(target.array->elements[target.array->length - 1]);
  array_set_length(*target.array, target.array->length - 1);
  return last;
}
void array_insert(MutableArray target, std::int32_t at, Rest values) {
  const std::int32_t place = std::max(at < 0 ? at + target.array->length : at, 0);
  if (!check_array_length(std::int64_t{std::max(place, target.array->length)} + static_cast<std::int64_t>(values.size()))) return;
  if (place > target.array->length) array_set_length(*target.array, place);  // past the end: zeroes between, as a write there makes
  const std::int32_t count = static_cast<std::int32_t>(values.size()), old_length = target.array->length;
  array_set_length(*target.array, old_length + count);
  RValue* elements = target.array->elements;
  std::rotate(elements + place, elements + old_length, elements + old_length + count);
  for (std::int32_t i = 0; i < count; ++i) array_store(*target.array, place + i, values[static_cast<std::size_t>(i)]);
}
void array_delete(MutableArray target, std::int32_t at, std::int32_t count) {
  const std::int32_t length = target.array->length;
  const std::int32_t first = std::clamp(at < 0 ? at + length : at, 0, length);
  const std::int32_t removed = std::clamp(count, 0, length - first);
  RValue* elements = target.array->elements;
  std::rotate(elements + first, elements + first + removed, elements + length);
  array_set_length(*target.array, length - removed);
}
void array_resize(MutableArray target, std::int32_t length) {
  if (check_array_length(length)) array_set_length(*target.array, std::max(length, 0));
}
RValue array_get(ReadArray source, std::int32_t at) {
  const RValue holder = RValue::of_array(source.array);
  const RValue* element = array_element(holder, at);
  return element != nullptr ? *element : RValue();
}
void array_set(MutableArray target, std::int32_t at, const RValue& value) {
  if (at < 0) {
    report_error(messages::kIndexNegative);
    return;
  }
  if (!check_array_length(std::int64_t{at} + 1)) return;
  if (at >= target.array->length) array_set_length(*target.array, at + 1);
  array_store(*target.array, at, value);
}
RValue array_concat(Rest arrays) {
  RValue joined = make_array();
  for (std::size_t i = 0; i < arrays.size(); ++i) {
    const RValue& each = arrays[i];
    if (!each.is_array() || each.array == nullptr) {
      report_error(messages::kArgumentArray, current_builtin_name(), static_cast<std::int32_t>(i) + 1);
      return joined;
    }
    arena::array_copy_range(*joined.array, joined.array->length, *each.array, 0, each.array->length);
  }
  return joined;
}
void array_copy_between(MutableArray target, std::int32_t to, ReadArray source, std::int32_t from, std::int32_t count) {
  if (to < 0 || from < 0) return;
  const std::int32_t copied = std::clamp(count, 0, std::max(0, source.array->length - from));
  if (check_array_length(std::int64_t{to} + copied)) arena::array_copy_range(*target.array, to, *source.array, from, copied);
}
bool array_equals(ReadArray a, ReadArray b) {
  if (a.array->length != b.array->length) return false;
  for (std::int32_t i = 0; i < a.array->length; ++i) {
    if (!values_match(a.array->elements[i], b.array->elements[i])) return false;
  }
  return true;
}
std::int32_t array_get_index(ReadArray source, const RValue& value) {
  for (std::int32_t i = 0; i < source.array->length; ++i) {
    if (values_match(source.array->elements[i], value)) return i;
  }
  return -1;
}
bool array_contains(ReadArray source, const RValue& value) { return array_get_index(source, value) >= 0; }
void array_reverse(MutableArray target) { std::reverse(target.array->elements, target.array->elements + target.array->length); }
void array_shuffle(MutableArray target) {
  for (std::int32_t i = target.array->length - 1; i > 0; --i) {
    target.array->elements[i].swap(target.array->elements[game_random().integer(0, i)]);
  }
}

// Exact order: numbers before texts before the rest, NaN last of the numbers. A tolerant order would be none.
bool comes_before(const RValue& a, const RValue& b) {
  const auto rank = [](const RValue& value) { return value.is_string() ? 1 : is_number_like(value) ? 0 : 2; };
  if (rank(a) != rank(b)) return rank(a) < rank(b);
  if (rank(a) == 1) return text_of(a) < text_of(b);
  if (rank(a) == 2) return false;
  return sorts_before(to_real(a), to_real(b));
}
// Equal ones keep their order. Runs are merged from the bottom up: whatever `before` answers, also when it contradicts itself, this ends
// and stays inside the values, which the library's sorting does not promise.
template <class Before>
void sort_values(std::vector<RValue>& values, Before before) {
  std::vector<RValue> merged(values.size());
  for (std::size_t width = 1; width < values.size(); width *= 2) {
    for (std::size_t from = 0; from < values.size(); from += 2 * width) {
      const std::size_t middle = std::min(from + width, values.size()), end = std::min(from + 2 * width, values.size());
      std::size_t left = from, right = middle;
      for (std::size_t to = from; to < end; ++to) {
        const bool takes_right = left == middle || (right < end && before(values[right], values[left]));
        merged[to] = std::move(values[takes_right ? right++ : left++]);
      }
    }
    values.swap(merged);
  }
}
// `order` is true for ascending, false for descending, or a function (a, b) that gives below, above or exactly zero. The numbers 0 and 1
// are orders, too. The function may do as it likes: it sees the array unsorted, and when it ends by an error so the array stays.
void array_sort(const CallContext& call, MutableArray target, const RValue& order) {
  std::vector<RValue> sorted(target.array->elements, target.array->elements + target.array->length);
  if (order.is_object() || (is_number_like(order) && to_real(order) >= 2)) {
    sort_values(sorted, [&](const RValue& a, const RValue& b) {
      const RValue* arguments[] = {&a, &b};
      RValue result;
      call_method(call.self, call.other, result, 2, order, arguments);
      return to_real(result) < 0;
    });
  } else {
    const bool ascending = order.is_undefined() || to_bool(order);
    sort_values(sorted, [&](const RValue& a, const RValue& b) { return ascending ? comes_before(a, b) : comes_before(b, a); });
  }
  if ((target.array->flags & kArrayImmutable) != 0) {  // the function froze it
    report_error(messages::kArgumentImmutable, current_builtin_name(), 1);
    return;
  }
  const std::int32_t length = std::min(target.array->length, static_cast<std::int32_t>(sorted.size()));  // the function may have changed it
  for (std::int32_t i = 0; i < length; ++i) array_store(*target.array, i, sorted[static_cast<std::size_t>(i)]);
}
RValue call_for_element(const CallContext& call, const Callable& function, const RValue& element, std::int32_t index) {
  const RValue place(static_cast<double>(index));
  const RValue* arguments[] = {&element, &place};
  RValue result;
  call_method(call.self, call.other, result, 2, function.value, arguments);
  return result;
}
void array_foreach(const CallContext& call, ReadArray source, Callable function) {
  for (std::int32_t i = 0; i < source.array->length; ++i) call_for_element(call, function, RValue(source.array->elements[i]), i);
}
RValue array_map(const CallContext& call, ReadArray source, Callable function) {
  RValue mapped = make_array();
  for (std::int32_t i = 0; i < source.array->length; ++i) {
    array_append(*mapped.array, call_for_element(call, function, RValue(source.array->elements[i]), i));
  }
  return mapped;
}
RValue array_filter(const CallContext& call, ReadArray source, Callable function) {
  RValue kept = make_array();
  for (std::int32_t i = 0; i < source.array->length; ++i) {
    const RValue element(source.array->elements[i]);
    if (to_bool(call_for_element(call, function, element, i))) array_append(*kept.array, element);
  }
  return kept;
}

constexpr Implementation kRows[] = {
    implement<script::checked::array_length, length_of>,
    implement<script::checked::array_create, array_create>,
    implement<script::checked::array_push, array_push>,
    implement<script::array_pop, array_pop>,
    implement<script::array_insert, array_insert>,
    implement<script::array_delete, array_delete>,
    implement<script::array_resize, array_resize>,
    implement<script::array_get, array_get>,
    implement<script::array_set, array_set>,
    implement<script::array_concat, array_concat>,
    implement<script::checked::array_copy, array_copy_between>,
    implement<script::array_equals, array_equals>,
    implement<script::array_get_index, array_get_index>,
    implement<script::array_contains, array_contains>,
    implement<script::array_reverse, array_reverse>,
    implement<script::array_shuffle, array_shuffle>,
    implement<script::array_sort, array_sort>,
    implement<script::array_foreach, array_foreach>,
    implement<script::array_map, array_map>,
    implement<script::array_filter, array_filter>,
};
const BuiltinTable table("Arrays",
                         "Functions that change an array change the one they were given, whoever else holds it. Indices begin at 0.",
                         kRows);

}  // namespace
}  // namespace arena
