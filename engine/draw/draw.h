#pragma once
// What scripts draw: sprites, shapes and text in the current colour, alpha, font and blend mode, through the view of the room or over
// it on the GUI layer.
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <tuple>
#include <vector>

#include "engine/data/data_file.h"
#include "engine/gpu/gpu.h"
#include "runtime/instances_loop/world.h"

namespace arena {

struct SpriteInfo;

namespace draw {

enum class HorizontalAlign : std::uint8_t { kLeft, kCenter, kRight };
enum class VerticalAlign : std::uint8_t { kTop, kMiddle, kBottom };

struct DrawState {
  std::uint32_t color = 0xFFFFFF;  // blue, green, red from the high byte down
  double alpha = 1;
  std::int32_t font = -1;  // -1: the first font of the data file
  HorizontalAlign horizontal = HorizontalAlign::kLeft;
  VerticalAlign vertical = VerticalAlign::kTop;
  gpu::Blend blend = gpu::Blend::kNormal;
  int circle_precision = 0;  // sides; 0: by size
  static constexpr auto fields() {
    return std::tuple(field("color", &DrawState::color), field("alpha", &DrawState::alpha), field("font", &DrawState::font),
                      field("horizontal", &DrawState::horizontal), field("vertical", &DrawState::vertical),
                      field("blend", &DrawState::blend), field("circle_precision", &DrawState::circle_precision));
  }
};

// Where a picture goes. Scales and angle turn around its origin; the angle is counter-clockwise, degrees.
struct Placement {
  double x = 0, y = 0, xscale = 1, yscale = 1, angle = 0;
  std::uint32_t color = 0xFFFFFF;
  double alpha = 1;
  static constexpr auto fields() {
    return std::tuple(field("x", &Placement::x), field("y", &Placement::y), field("xscale", &Placement::xscale),
                      field("yscale", &Placement::yscale), field("angle", &Placement::angle), field("color", &Placement::color),
                      field("alpha", &Placement::alpha));
  }
};

class Draw {
 public:
  // Uploads the pages of the data file; `gpu` must outlive this. Draws in the settings of the current session, until it is lent.
  Draw(gpu::Gpu& gpu, const data::DataFile& file);
  ~Draw();
  Draw(const Draw&) = delete;
  Draw& operator=(const Draw&) = delete;

  // The settings of the session that it draws for.
  DrawState& state() const { return *state_; }
  // From here on it draws for the current session.
  void serve_session();

  void begin_world(int width, int height);  // pixels of the target
  // The view of the session's room, over what is drawn already.
  void begin_world_above();
  void begin_gui();
  void end_frame();
  gpu::Gpu& gpu() { return gpu_; }
  // Whether the frame goes to the graphics card. Of one that does not nothing is worked out.
  bool is_seen() const { return gpu_.passes_frame(); }

  // `frame` wraps around. Sprites that do not exist draw nothing: the built-ins report them.
  void sprite(std::int32_t sprite, double frame, const Placement& at);
  // A piece of the sprite, in sprite pixels from its top left corner, put at a place without an origin.
  void sprite_part(std::int32_t sprite, double frame, double left, double top, double width, double height, const Placement& at);
  void sprite_stretched(std::int32_t sprite, double frame, double x, double y, double width, double height, std::uint32_t color,
                        double alpha);
  // Covers the room as the fill says; only what is in view is drawn.
  void background(const Layer& layer);
  void triangle(const double (&x)[3], const double (&y)[3], const std::uint32_t (&colors)[3], bool outline);
  void rectangle(double x1, double y1, double x2, double y2, const std::uint32_t (&corners)[4], bool outline);
  void ellipse(double x, double y, double radius_x, double radius_y, std::uint32_t inner, std::uint32_t outer, bool outline);
  void line(double x1, double y1, double x2, double y2, double width, std::uint32_t from, std::uint32_t to);
  // "\n" starts a line. `wrap` in pixels breaks lines at blanks; 0: never. `separation` -1: the font's own. `corners`: null for the colour
  // of the state, or the four of the text's box, clockwise from the top left; glyphs take what lies between.
  void text(double x, double y, std::string_view text, double xscale, double yscale, double angle, double separation = -1, double wrap = 0,
            const std::uint32_t* corners = nullptr);
  struct TextSize {
    double width, height;
  };
  TextSize measure(std::string_view text, double separation = -1, double wrap = 0) const;
  bool has_font(std::int32_t font) const;
  std::string_view font_name(std::int32_t font) const;  // "": no such font

  // Rectangles that cut what is drawn, each inside the one before. Those left over are gone at the start of the GUI and of a frame.
  void push_clip(double x, double y, double width, double height);
  void pop_clip();

  // Many pictures that stay where they are, uploaded once. Add, then draw as often as wanted; adding again uploads anew.
  struct Sticker {
    std::int32_t sprite = -1;
    double frame = 0;
    Placement at;
    static constexpr auto fields() {
      return std::tuple(field("sprite", &Sticker::sprite), field("frame", &Sticker::frame), field("at", &Sticker::at));
    }
  };
  class Batch;
  std::unique_ptr<Batch> make_batch(std::span<const Sticker> stickers);
  void draw_batch(const Batch& batch);
  struct Picture;  // the service's own record of one
  // Very many pictures of one kind in a row: the look-ups are done once, the vertices go to the batch in bulk.
  class QuadStream {
   public:
    explicit QuadStream(Draw& on) : on_(on) {}
    ~QuadStream() { flush(); }
    QuadStream(const QuadStream&) = delete;
    QuadStream& operator=(const QuadStream&) = delete;
    // Centred on (x, y); `size` scales the sprite. The blend mode is that of the drawing state.
    void add(std::int32_t sprite, double frame, float x, float y, float size, double angle, std::uint32_t color, float alpha);
    void flush();

   private:
    Draw& on_;
    const Picture* picture_ = nullptr;
    std::int32_t sprite_ = -1;
    double frame_ = 0;
    float left_ = 0, top_ = 0, right_ = 0, bottom_ = 0;  // from the sprite's origin
    gpu::Blend blend_ = gpu::Blend::kNormal;
    std::vector<gpu::Vertex> vertices_;
  };
  // Whether a rectangle lies in view, at least in part.
  bool shows(double left, double top, double right, double bottom) const {
    return right >= view_left_ && left <= view_right_ && bottom >= view_top_ && top <= view_bottom_;
  }

 private:
  struct Page;
  struct Font;
  struct Corner {
    double x, y;
  };
  void load_fonts();
  const Font* current_font() const;
  std::vector<std::string_view> lines_of(const Font& font, std::string_view text, double wrap) const;
  double line_width(const Font& font, std::string_view line) const;
  // How much of the text goes on a line of this width: all of it, or up to a blank. A word wider than the line stands alone.
  std::size_t fitting_length(const Font& font, std::string_view text, double wrap) const;
  Corner to_target(double x, double y) const;
  gpu::State state_for(const Picture& picture) const;
  void corners_of(const Picture& picture, const SpriteInfo& info, const Placement& at, Corner (&corners)[4]) const;
  void vertices_of(const Picture& picture, const Corner (&corners)[4], std::uint32_t color, double alpha, gpu::Vertex (&vertices)[6]) const;
  void quad(const Picture& picture, const Corner (&corners)[4], std::uint32_t color, double alpha);
  void solid_triangle(const Corner (&corners)[3], const std::uint32_t (&colors)[3]);
  const Picture* find_picture(std::int32_t sprite, double frame) const;
  std::uint32_t packed(std::uint32_t color, double alpha) const;

  DrawState* state_;
  gpu::Gpu& gpu_;
  const data::DataFile& file_;
  double density_;
  std::vector<Page> pages_;
  std::vector<std::vector<Picture>> pictures_;  // by sprite and frame
  std::vector<std::unique_ptr<Font>> fonts_;    // by index
  std::int32_t first_font_ = -1;
  // The view: target = (a b; c d) * room + (e, f)
  double a_ = 1, b_ = 0, c_ = 0, d_ = 1, e_ = 0, f_ = 0;
  std::vector<gpu::Clip> clips_;
  double view_left_ = 0, view_top_ = 0, view_right_ = 0, view_bottom_ = 0;
};

}  // namespace draw
}  // namespace arena
