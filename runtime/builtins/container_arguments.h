#pragma once
// Lists, maps and grids as arguments of built-in functions: by handle, one that lives, or the call ends with a report.
#include "runtime/arrays_structs/containers.h"
#include "runtime/builtins/kinds.h"
#include "runtime/variables_calls/arguments.h"

namespace arena {

struct ListArgument {
  DsList* list;
  std::int32_t handle;
};
struct MapArgument {
  DsMap* map;
  std::int32_t handle;
};
struct GridArgument {
  DsGrid* grid;
  std::int32_t handle;
};

ListArgument check_list(const CallContext& call, int at);
MapArgument check_map(const CallContext& call, int at);
GridArgument check_grid(const CallContext& call, int at);

#define ARENA_CONTAINER_ARGUMENT(type, check)                                    \
  template <>                                                                    \
  struct Argument<type> {                                                        \
    static constexpr bool consumes = true;                                       \
    static type get(const CallContext& call, int at) { return check(call, at); } \
  };
ARENA_CONTAINER_ARGUMENT(ListArgument, check_list)
ARENA_CONTAINER_ARGUMENT(MapArgument, check_map)
ARENA_CONTAINER_ARGUMENT(GridArgument, check_grid)
#undef ARENA_CONTAINER_ARGUMENT

}  // namespace arena
