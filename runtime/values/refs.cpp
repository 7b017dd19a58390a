#include "runtime/values/refs.h"

namespace arena {
namespace {

const RefKind* first = nullptr;

}  // namespace

RefKind::RefKind(std::int32_t of_type, const char* called, NameOf names) : type(of_type), name(called), name_of(names), next(first) {
  first = this;
}

const RefKind* find_ref_kind(std::int32_t type) {
  const RefKind* kind = first;
  while (kind != nullptr && kind->type != type) kind = kind->next;
  return kind;
}

}  // namespace arena
