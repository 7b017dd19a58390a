#pragma once
// The flexbox algorithm itself. Terms and steps are those of CSS Flexible Box Layout; what that text leaves to browsers (what counts as
// definite, sizes from proportions) follows Chromium, which the tests compare with.
#include <vector>

#include "toolkit/ui/layout/box.h"

namespace layout {

// A child on its way through the algorithm. Sizes are of its border box; [0] is horizontal, [1] vertical.
struct Item {
  std::int32_t box;
  Align align;
  std::array<double, 4> margin;  // automatic ones are 0 until space is given to them
  std::array<bool, 4> margin_is_auto;
  double base, hypothetical, least, most, target;  // main axis
  double cross;
  double first_width;  // of a column's item: what its height was found for
  double ascent;       // from the cross start to the baseline, with the margin; unknown where the item is not aligned by it
  bool is_frozen;
  double margins(int axis) const { return margin[static_cast<std::size_t>(axis)] + margin[static_cast<std::size_t>(axis) + 2]; }
};

struct Line {
  std::size_t begin, end;  // items
  double cross, position;
  double ascent;  // the greatest of its items
};

// What one box of a tree was asked before: the same question comes from several ancestors.
struct Memo {
  struct Width {
    std::uint8_t measure = 0;
    double percent_width = kUnknown, percent_height = kUnknown, height = kUnknown, result = kUnknown;
  };
  struct Height {
    double width = kUnknown, percent_width = kUnknown, percent_height = kUnknown, result = kUnknown;
  };
  // A stretched height in a line of rows, or between two insets.
  struct Stretched {
    double width = kUnknown, room = kUnknown, result = kUnknown;
  };
  std::array<Width, 4> widths;
  std::array<Height, 2> heights;
  std::array<Stretched, 2> stretched;
  std::uint8_t next_width = 0, next_height = 0, next_stretched = 0;
  bool width_follows_height = false;  // whether its intrinsic width is another one where its height is known
  bool holds_stretched = false;       // whether boxes inside it remember the height that they were stretched to
};

// What the height of a box is worth to its children.
enum class Tall : std::uint8_t {
  kFromContent,  // columns do not wrap at it
  kFixed,        // columns wrap at it
  kDefinite,     // and percentages refer to it
};

class Solver {
 public:
  Solver(std::vector<Box>& boxes, std::vector<Memo>& memos, std::vector<Item>& items, std::vector<Line>& lines)
      : boxes_(boxes), memos_(memos), items_(items), lines_(lines) {}

  // What the styles alone say about each box; before anything else.
  void prepare();
  // Gives the children of the box their rectangles.
  void place(std::int32_t box, double width, double height, Tall tall, double percent_width, double percent_height);
  // The height of a box of this width when its content decides; its own minimum and maximum are left out.
  double natural_height(std::int32_t box, double width, double percent_width, double percent_height);

  struct Container;

 private:
  enum Measure : std::uint8_t { kNarrowest, kWidest };

  // `height` is that of the box where it is definite before its width is.
  double intrinsic_width(std::int32_t box, Measure measure, double percent_width, double percent_height, double height);
  double contribution(const Style& parent, std::int32_t child, Measure measure, double inner_height);
  double width_of_columns(std::int32_t box, Measure measure, double inner_height, double limit);
  double fitting_width(std::int32_t box, double available, double percent_width, double percent_height, double height);
  double child_height(const Container& in, std::int32_t box, double width);
  double child_width(const Container& in, const Item& item);
  double stretched_height(std::int32_t box, double width, double room, double margins, double percent_width, double percent_height,
                          double unstretched);

  double run(std::int32_t box, double width, double height, Tall tall, double percent_width, double percent_height, bool places);
  void collect(Container& in);
  void size_row_item(const Container& in, Item& item);
  void size_column_item(const Container& in, Item& item);
  void break_lines(Container& in, double limit);
  void flex_line(const Container& in, const Line& line);
  void share(const Container& in, const Line& line, double free_space, bool grows);
  double ascent(const Container& in, const Item& item);
  double baseline(std::int32_t box) const;
  std::int32_t standing_child(const Container& in) const;
  Tall tall(const Container& in, const Item& item) const;
  void size_lines(Container& in);
  void align_lines(Container& in);
  void place_line(const Container& in, const Line& line);
  void place_item(const Container& in, const Line& line, const Item& item, double main_position);
  void place_absolute(const Container& in, std::int32_t box);

  std::vector<Box>& boxes_;
  std::vector<Memo>& memos_;
  std::vector<Item>& items_;  // a stack: those of a container lie above those of its ancestors
  std::vector<Line>& lines_;
};

}  // namespace layout
