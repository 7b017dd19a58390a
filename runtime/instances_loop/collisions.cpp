#include "runtime/instances_loop/collisions.h"

#include <algorithm>
#include <cmath>

#include "runtime/instances_loop/stage_times.h"
#include "runtime/instances_loop/world.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/resolve.h"

namespace arena {
namespace {

const std::vector<CInstance*>& candidates(std::int32_t object_or_id, std::vector<CInstance*>& single) {
  if (object_or_id == kAllTarget) return world().all();
  if (object_types().has(object_or_id)) return object_types().at(object_or_id).instances;
  if (CInstance* instance = resolve_instance(object_or_id)) single.push_back(instance);
  return single;
}

// Calls visit(instance) for each overlap until it returns false.
template <class Visit>
void visit_overlaps(const CollisionShape& shape, std::int32_t object_or_id, bool precise, const CInstance* except, Visit visit) {
  std::vector<CInstance*> single;
  const std::vector<CInstance*>& list = candidates(object_or_id, single);
  const Box reach = shape.box();
  for (std::size_t i = 0; i < list.size(); ++i) {
    CInstance* instance = list[i];
    if (!instance->is_alive || instance == except) continue;
    const double radius = bounding_radius(*instance) + 1;
    if (instance->x + radius < reach.left || instance->x - radius > reach.right || instance->y + radius < reach.top ||
        instance->y - radius > reach.bottom) {
      continue;
    }
    const CollisionShape theirs = shape_of(*instance);
    const bool hit = shapes_overlap(shape, precise ? theirs : box_shape(theirs.box()));
    if (theirs.form != CollisionShape::Form::kNone && hit && !visit(instance)) return;
  }
}

// Buckets the targets of one kind of collision by position, so that an owner looks only around itself.
//   cells are squares of the largest target's diameter (at least 96 px), hashed into a power of two of buckets
// Targets of outlandish size stand on a list of their own, which every owner looks at: the cells stay small. Those whose place or size is
// no number overlap nothing.
class BroadPhase {
 public:
  BroadPhase(const std::vector<CInstance*>& targets) {
    double largest = 16;
    std::vector<CInstance*> placed;
    placed.reserve(targets.size());
    for (CInstance* target : targets) {
      const double radius = bounding_radius(*target);
      if (std::isnan(target->x) || std::isnan(target->y) || std::isnan(radius)) continue;
      if (radius > kOutlandish) {
        everywhere_.push_back(target);
        continue;
      }
      placed.push_back(target);
      if (target->is_alive) largest = std::max(largest, radius);
    }
    largest_ = largest;
    cell_ = std::max(largest * 2, 96.0);
    std::size_t buckets = 16;
    while (buckets < placed.size()) buckets *= 2;
    mask_ = buckets - 1;
    starts_.assign(buckets + 1, 0);
    std::vector<std::size_t> bucket_of(placed.size());
    for (std::size_t i = 0; i < placed.size(); ++i) {
      bucket_of[i] = bucket(cell(placed[i]->x), cell(placed[i]->y));
      ++starts_[bucket_of[i] + 1];
    }
    for (std::size_t i = 1; i < starts_.size(); ++i) starts_[i] += starts_[i - 1];
    entries_.resize(placed.size());
    std::vector<std::uint32_t> next(starts_.begin(), starts_.end() - 1);
    for (std::size_t i = 0; i < placed.size(); ++i) entries_[next[bucket_of[i]]++] = placed[i];
  }

  // Everything that may overlap a box, in order of creation.
  void query(const Box& box, std::vector<CInstance*>& found) const {
    found.clear();
    if (std::isnan(box.left) || std::isnan(box.right) || std::isnan(box.top) || std::isnan(box.bottom)) return;
    found = everywhere_;
    const std::int64_t left = cell(box.left - largest_), right = cell(box.right + largest_), top = cell(box.top - largest_),
                       bottom = cell(box.bottom + largest_);
    // A box over more cells than there are targets is as good as everywhere.
    const double cells = (static_cast<double>(right - left) + 1) * (static_cast<double>(bottom - top) + 1);
    if (cells > std::max(kManyCells, static_cast<double>(entries_.size()))) {
      found.insert(found.end(), entries_.begin(), entries_.end());
      std::sort(found.begin(), found.end(), was_made_before);
      return;
    }
    for (std::int64_t row = top; row <= bottom; ++row) {
      for (std::int64_t column = left; column <= right; ++column) {
        const std::size_t b = bucket(column, row);
        for (std::uint32_t i = starts_[b]; i < starts_[b + 1]; ++i) {
          CInstance* candidate = entries_[i];
          if (cell(candidate->x) == column && cell(candidate->y) == row) found.push_back(candidate);
        }
      }
    }
    std::sort(found.begin(), found.end(), was_made_before);
  }

 private:
  static constexpr double kOutlandish = 1024;  // pixels: larger than any sprite at its own size
  static constexpr double kManyCells = 256;
  static bool was_made_before(const CInstance* a, const CInstance* b) { return a->id < b->id; }
  std::int64_t cell(double coordinate) const { return static_cast<std::int64_t>(std::floor(std::clamp(coordinate, -1e12, 1e12) / cell_)); }
  std::size_t bucket(std::int64_t column, std::int64_t row) const {
    const std::uint64_t mixed =
        static_cast<std::uint64_t>(column) * 0x9E3779B97F4A7C15u ^ static_cast<std::uint64_t>(row) * 0xC2B2AE3D27D4EB4Fu;
    return static_cast<std::size_t>(mixed >> 20) & mask_;
  }

  double largest_ = 0, cell_ = 1;
  std::size_t mask_ = 0;
  std::vector<std::uint32_t> starts_;
  std::vector<CInstance*> entries_, everywhere_;
};

void collide(const Participant& participant, CInstance& target) {
  CInstance& owner = *participant.instance;
  if (&owner == &target || !owner.is_alive || !target.is_alive) return;
  const double reach = bounding_radius(owner) + bounding_radius(target);
  const double dx = owner.x - target.x, dy = owner.y - target.y;
  if (!(dx * dx + dy * dy <= reach * reach)) return;  // nor where either is no number
  if (!shapes_overlap(shape_of(owner), shape_of(target))) return;
  const StageTimer timer(Stage::kCollisionInstance);
  run_handler(owner, &target, *participant.event);
}

constexpr std::size_t kPairsWithoutBuckets = 4096;

}  // namespace

std::vector<CInstance*> overlapping(const CollisionShape& shape, std::int32_t object_or_id, bool precise, const CInstance* except) {
  std::vector<CInstance*> found;
  visit_overlaps(shape, object_or_id, precise, except, [&](CInstance* instance) {
    found.push_back(instance);
    return true;
  });
  return found;
}

CInstance* first_overlapping(const CollisionShape& shape, std::int32_t object_or_id, bool precise, const CInstance* except) {
  CInstance* found = nullptr;
  visit_overlaps(shape, object_or_id, precise, except, [&](CInstance* instance) {
    found = instance;
    return false;
  });
  return found;
}

// Owners in order of creation, targets of each likewise. The buckets hold the positions at the start of the pass; overlap itself is
// tested at the moment of the call. A target that a handler moves far away and back into reach in one pass may be missed until the next.
void run_collision_events() {
  std::vector<CInstance*> near;
  for (auto& [key, owners] : object_types().lists()) {
    if (key.kind != EventKind::kCollision || owners.empty()) continue;
    const std::vector<CInstance*>& targets = object_types().at(key.number).instances;
    const std::size_t owner_count = owners.size(), target_count = targets.size();
    if (target_count == 0) continue;
    if (owner_count <= 2 || owner_count * target_count <= kPairsWithoutBuckets) {
      for (std::size_t o = 0; o < owner_count; ++o) {
        for (std::size_t t = 0; t < target_count; ++t) collide(owners[o], *targets[t]);
      }
      continue;
    }
    const BroadPhase buckets(targets);
    for (std::size_t o = 0; o < owner_count; ++o) {
      const Participant owner = owners[o];
      if (!owner.instance->is_alive) continue;
      buckets.query(shape_of(*owner.instance).box(), near);
      for (CInstance* target : near) collide(owner, *target);
    }
  }
}

}  // namespace arena
