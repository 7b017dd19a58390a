// What only a programmer's mistake can do ends the program at once, with the place.
#include "runtime/checks/assert.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <optional>
#include <vector>

#include "engine/gpu/gpu.h"
#include "engine/gpu/recorder/recorder.h"
#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/containers.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/instances_loop/object_type.h"
#include "runtime/program/functions.h"
#include "runtime/reports/frame.h"
#include "runtime/session/snapshot.h"
#include "runtime/values/strings.h"

namespace arena::test {
namespace {

struct Mistake {
  const char* label;
  const char* file;
  void (*make)();
};

const Mistake kMistakes[] = {
    {"a block is freed twice", "block_pool",
     [] {
       BlockPool pool;
       void *const block = pool.allocate(32), *const other = pool.allocate(32);
       pool.free(block, 32);
       pool.free(other, 32);
       pool.free(block, 32);
     }},
    {"a block is written after it was freed", "block_pool",
     [] {
       BlockPool pool;
       void* const block = pool.allocate(32);
       pool.free(block, 32);
       std::memset(block, 1, 32);
       pool.allocate(32);
     }},
    {"a large block is freed with another size", "block_pool",
     [] {
       BlockPool pool;
       pool.allocate(8000);
       pool.free(pool.allocate(8000), 4000);
     }},
    {"an image is put back into another pool", "block_pool",
     [] {
       BlockPool one, other;
       BlockPool::Image image;
       one.allocate(32);
       one.save(image);
       other.load(image);
     }},
    {"a text is released twice", "strings",
     [] {
       RValue text = make_string("once");
       release_string(text.string);
       release_string(text.string);
     }},
    {"an element behind the end is stored", "array",
     [] {
       const RValue list = make_array(2);
       array_store(*list.array, 2, RValue(1.0));
     }},
    {"more is copied than the array has", "array",
     [] {
       const RValue list = make_array(2);
       array_copy(*list.array, 1, 2);
     }},
    {"a cell beside the grid is read", "containers", [] { DsGrid(2, 2).at(2, 0); }},
    {"a list is destroyed twice", "containers",
     [] {
       const std::int32_t list = ds_lists().create();
       ds_lists().destroy(list);
       ds_lists().destroy(list);
     }},
    {"an array stands where an object should", "object",
     [] {
       const RValue list = make_array(2);
       property_object(RValue::of_object(list.array->owner));
     }},
    {"a variable's slot was never filled", "object", [] { property_object(make_struct())->find_in_row(-1); }},
    {"frames end in another order than they began", "frame",
     [] {
       std::optional<FrameScope> outer, inner;
       outer.emplace("outer", nullptr, nullptr);
       inner.emplace("inner", nullptr, nullptr);
       outer.reset();
     }},
    {"somebody takes a container that is not his", "container_stack",
     [] {
       const ContainerScope scope(global_object());
       pop_container();
     }},
    {"the collector runs while a script does", "collector",
     [] {
       const FrameScope script("script", nullptr, nullptr);
       collect_everything();
     }},
    {"a snapshot is taken while a script runs", "snapshot",
     [] {
       const FrameScope script("script", nullptr, nullptr);
       Snapshot().take(session());
     }},
    {"there is no such object", "object_type", [] { object_types().at(-1); }},
    {"there is no such script", "functions", [] { script_at(script_count()); }},
    {"a mesh has half a triangle", "gpu",
     [] {
       const gpu::Vertex corners[2] = {};
       gpu::Gpu(std::make_unique<gpu::Recorder>()).create_mesh(corners, 2);
     }},
};

TEST(Asserts, EndTheProgram) {
  if (!kChecksBuild) GTEST_SKIP() << "this build has none";
  for (const Mistake& each : kMistakes) {
    EXPECT_DEATH(each.make(), std::string(each.file) + "\\.(h|cpp):[0-9]+: does not hold: ") << each.label;
  }
}

}  // namespace
}  // namespace arena::test
