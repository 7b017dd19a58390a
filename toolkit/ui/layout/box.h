#pragma once
// The boxes that layout works on: a style as CSS flexbox defines it, and the rectangle that comes out.
//
// Every box is a flex container for its children (`display: flex`), sizes are of the border box (`box-sizing: border-box`), and a box is
// the containing block of its absolutely placed children. Lengths are in GUI pixels; y points down. Defaults are those of CSS.
#include <array>
#include <cstdint>
#include <limits>

namespace layout {

inline constexpr std::int32_t kNoBox = -1;
inline constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();
inline bool is_known(double length) { return length == length; }

struct Length {
  enum class Unit : std::uint8_t { kAuto, kPixels, kPercent } unit = Unit::kAuto;
  double value = 0;
  static constexpr Length pixels(double value) { return {Unit::kPixels, value}; }
  static constexpr Length percent(double value) { return {Unit::kPercent, value}; }
  bool is_auto() const { return unit == Unit::kAuto; }
  bool operator==(const Length&) const = default;
};

enum class Direction : std::uint8_t { kRow, kRowReverse, kColumn, kColumnReverse };
enum class Wrap : std::uint8_t { kNone, kWrap, kReverse };
enum class Justify : std::uint8_t { kStart, kEnd, kCenter, kBetween, kAround, kEvenly };
// The spaces are of lines only, the baseline of items in rows only.
enum class Align : std::uint8_t { kAuto, kStretch, kStart, kEnd, kCenter, kBetween, kAround, kEvenly, kBaseline };
enum class Position : std::uint8_t { kRelative, kAbsolute };
enum Edge : std::uint8_t { kLeft, kTop, kRight, kBottom };

// By axis: [0] is horizontal, [1] vertical. By edge: left, top, right, bottom.
struct Style {
  Direction direction = Direction::kRow;
  Wrap wrap = Wrap::kNone;
  Justify justify = Justify::kStart;
  Align align_items = Align::kStretch, align_self = Align::kAuto, align_content = Align::kStretch;
  Position position = Position::kRelative;
  bool clips = false;  // overflow other than visible: the automatic minimum size is 0
  double grow = 0, shrink = 1;
  double aspect_ratio = 0;  // width / height; 0: none
  Length basis;
  std::array<Length, 2> size, min_size, max_size;  // automatic maximum: none
  std::array<Length, 2> gap{Length::pixels(0), Length::pixels(0)};
  std::array<Length, 4> margin{Length::pixels(0), Length::pixels(0), Length::pixels(0), Length::pixels(0)};
  std::array<Length, 4> padding{Length::pixels(0), Length::pixels(0), Length::pixels(0), Length::pixels(0)};
  std::array<double, 4> border{};
  std::array<Length, 4> inset;
  bool operator==(const Style&) const = default;
};

struct Size {
  double width = 0, height = 0;
};

// Content that is no boxes: a text or an image. Width of its widest unbreakable piece, width on one line, height at a width.
class Content {
 public:
  virtual ~Content() = default;
  virtual double narrowest() const = 0;
  virtual double widest() const = 0;
  virtual double height_at(double width) const = 0;
  // From the top to what its first line stands on; unknown: it stands on its lower edge.
  virtual double baseline() const { return kUnknown; }
};

struct Box {
  Style style;
  std::int32_t first_child = kNoBox, next_sibling = kNoBox;
  const Content* content = nullptr;  // not owned; for boxes without children

  // What comes out: the border box, relative to the border box of the parent.
  double x = 0, y = 0, width = 0, height = 0;
  std::int32_t stands_on = kNoBox;  // the child whose baseline is its own
};

}  // namespace layout
