#pragma once
// The types of references (values of kind ref): the high 32 bits tell what kind of thing the low ones number. Resources stand in the data
// file, the rest is made while the game runs.
#include <cstdint>
#include <string>

namespace arena {

namespace ref_type {
inline constexpr std::int32_t kObject = 0x01000000, kSprite = 0x01000001, kSound = 0x01000002, kRoom = 0x01000003, kScript = 0x01000005,
                              kFont = 0x01000006;
inline constexpr std::int32_t kInstance = 0x04000001, kLayer = 0x04000002, kCamera = 0x04000003, kList = 0x04000004, kMap = 0x04000005,
                              kGrid = 0x04000006, kParticleSystem = 0x04000007, kParticleType = 0x04000008, kStickers = 0x04000009,
                              kSoundInstance = 0x0400000A, kTextFile = 0x04000010, kBinaryFile = 0x04000011, kIni = 0x04000012,
                              kBuffer = 0x04000013;
}  // namespace ref_type

// How references of a type read as text: "ref sprite sprPlayer", or "ref list 3" where nothing of the index has a name. Static storage,
// one beside each service whose things are named by numbers.
class RefKind {
 public:
  using NameOf = std::string (*)(std::int32_t index);  // "" when there is none
  RefKind(std::int32_t of_type, const char* called, NameOf names = nullptr);
  const std::int32_t type;
  const char* const name;
  const NameOf name_of;
  const RefKind* const next;
};
const RefKind* find_ref_kind(std::int32_t type);  // null: no such type

}  // namespace arena
