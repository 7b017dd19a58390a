// Text from distance-field glyphs.
#include <algorithm>
#include <cmath>

#include "arena_generated.h"
#include "engine/draw/colors.h"
#include "engine/draw/pictures.h"
#include "runtime/values/elementary.h"

namespace arena::draw {
namespace {

bool continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// Takes one character off the front; a broken byte counts as a question mark.
std::uint32_t next_code(std::string_view& text) {
  const unsigned char lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xC0 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (length == 0 || length > text.size() || !std::all_of(text.begin() + 1, text.begin() + length, continues)) {
    text.remove_prefix(1);
    return '?';
  }
  std::uint32_t code = length == 1 ? lead : lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) code = code << 6 | (static_cast<unsigned char>(text[i]) & 63u);
  text.remove_prefix(length);
  return code;
}

}  // namespace

void Draw::load_fonts() {
  for (const data::Font* source : *file_.content->fonts()) {
    if (static_cast<std::size_t>(source->index()) >= fonts_.size()) fonts_.resize(static_cast<std::size_t>(source->index()) + 1);
    auto font = std::make_unique<Font>();
    font->name = source->name()->str();
    font->size = static_cast<double>(source->size());
    font->line_height = static_cast<double>(source->line_height());
    font->field_range = static_cast<double>(source->field_range());
    const double em = static_cast<double>(source->em_pixels());
    for (const data::Glyph* glyph : *source->glyphs()) {
      const Page& page = pages_[static_cast<std::size_t>(glyph->page())];
      Font::Glyph& made = font->glyphs[glyph->code()];
      made.advance = static_cast<double>(glyph->advance());
      made.picture.texture = page.texture;
      made.picture.u1 = glyph->x() / page.width;
      made.picture.v1 = glyph->y() / page.height;
      made.picture.u2 = (glyph->x() + glyph->width()) / page.width;
      made.picture.v2 = (glyph->y() + glyph->height()) / page.height;
      made.picture.left = static_cast<double>(glyph->left());
      made.picture.top = static_cast<double>(glyph->top());
      made.picture.width = glyph->width() / em;
      made.picture.height = glyph->height() / em;
      made.picture.is_field = true;
    }
    if (first_font_ < 0) first_font_ = source->index();
    fonts_[static_cast<std::size_t>(source->index())] = std::move(font);
  }
}

const Draw::Font::Glyph& Draw::Font::glyph(std::uint32_t code) const {
  static const Glyph blank;
  const auto found = glyphs.find(code);
  if (found != glyphs.end()) return found->second;
  const auto question = glyphs.find('?');
  return question != glyphs.end() && code >= ' ' ? question->second : blank;
}

bool Draw::has_font(std::int32_t font) const {
  return font >= 0 && static_cast<std::size_t>(font) < fonts_.size() && fonts_[static_cast<std::size_t>(font)] != nullptr;
}

std::string_view Draw::font_name(std::int32_t font) const {
  return has_font(font) ? std::string_view(fonts_[static_cast<std::size_t>(font)]->name) : std::string_view();
}

const Draw::Font* Draw::current_font() const {
  const std::int32_t font = has_font(state().font) ? state().font : first_font_;
  return font >= 0 ? fonts_[static_cast<std::size_t>(font)].get() : nullptr;
}

double Draw::line_width(const Font& font, std::string_view line) const {
  double width = 0;
  while (!line.empty()) width += font.glyph(next_code(line)).advance;
  return width * font.size;
}

// Reads no further than the line reaches, so that breaking a text takes time in proportion to its length.
std::size_t Draw::fitting_length(const Font& font, std::string_view text, double wrap) const {
  std::size_t fits = 0;
  double width = 0;
  for (std::string_view rest = text; !rest.empty();) {
    if (rest[0] == ' ') fits = text.size() - rest.size();
    width += font.glyph(next_code(rest)).advance;
    if (width * font.size > wrap) return fits > 0 ? fits : std::min(text.find(' '), text.size());
  }
  return text.size();
}

std::vector<std::string_view> Draw::lines_of(const Font& font, std::string_view text, double wrap) const {
  std::vector<std::string_view> lines;
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t end = std::min(text.find('\n', from), text.size());
    std::string_view line = text.substr(from, end - from);
    for (std::size_t fits = 0; wrap > 0 && (fits = fitting_length(font, line, wrap)) < line.size(); line.remove_prefix(fits + 1))
      lines.push_back(line.substr(0, fits));
    lines.push_back(line);
    from = end + 1;
  }
  return lines;
}

Draw::TextSize Draw::measure(std::string_view text, double separation, double wrap) const {
  const Font* font = current_font();
  if (font == nullptr) return {0, 0};
  const std::vector<std::string_view> lines = lines_of(*font, text, wrap);
  double widest = 0;
  for (const std::string_view line : lines) widest = std::max(widest, line_width(*font, line));
  const double step = separation >= 0 ? separation : font->line_height * font->size;
  return {widest, static_cast<double>(lines.size() - 1) * step + font->line_height * font->size};
}

void Draw::text(double x, double y, std::string_view text, double xscale, double yscale, double angle, double separation, double wrap,
                const std::uint32_t* corners) {
  const Font* font = current_font();
  if (font == nullptr || !is_seen()) return;
  const std::vector<std::string_view> lines = lines_of(*font, text, wrap);
  const double step = separation >= 0 ? separation : font->line_height * font->size;
  const double height = static_cast<double>(lines.size() - 1) * step + font->line_height * font->size;
  const double turn = angle * elementary::kPi / 180.0, c = elementary::cos(turn), s = elementary::sin(turn);
  // How many pixels of the target the field reaches: keeps edges one pixel soft at every size.
  const double zoom = elementary::sqrt(std::fabs(a_ * d_ - b_ * c_) * std::fabs(xscale * yscale));
  const float field_pixels = static_cast<float>(std::max(0.5, font->field_range * font->size * zoom));
  const TextSize box = corners != nullptr ? measure(text, separation, wrap) : TextSize{1, 1};
  const double top_y = state().vertical == VerticalAlign::kTop ? 0 : state().vertical == VerticalAlign::kMiddle ? -height / 2 : -height;
  const auto start_of = [&](double width) {
    return state().horizontal == HorizontalAlign::kLeft ? 0 : state().horizontal == HorizontalAlign::kCenter ? -width / 2 : -width;
  };
  double line_y = top_y;
  for (std::string_view line : lines) {
    double pen = start_of(line_width(*font, line));
    while (!line.empty()) {
      const Font::Glyph& glyph = font->glyph(next_code(line));
      if (glyph.picture.width > 0) {
        Picture picture = glyph.picture;
        picture.field_pixels = field_pixels;
        const double left = pen + picture.left * font->size, top = line_y + picture.top * font->size;
        const double right = left + picture.width * font->size, bottom = top + picture.height * font->size;
        const auto corner = [&](double dx, double dy) {
          return to_target(x + dx * xscale * c + dy * yscale * s, y - dx * xscale * s + dy * yscale * c);
        };
        gpu::Vertex vertices[6];
        vertices_of(picture, {corner(left, top), corner(right, top), corner(right, bottom), corner(left, bottom)}, state().color,
                    state().alpha, vertices);
        if (corners != nullptr) {
          const auto tint = [&](double dx, double dy) {
            const auto share = [](double part, double whole) { return static_cast<float>(std::clamp(part / whole, 0.0, 1.0)); };
            const float along = share(dx - start_of(box.width), box.width), down = share(dy - top_y, box.height);
            return packed(mixed(mixed(corners[0], corners[1], along), mixed(corners[3], corners[2], along), down), state().alpha);
          };
          vertices[0].color = vertices[3].color = tint(left, top);
          vertices[1].color = tint(right, top);
          vertices[2].color = vertices[4].color = tint(right, bottom);
          vertices[5].color = tint(left, bottom);
        }
        gpu_.draw(state_for(picture), vertices, 6);
      }
      pen += glyph.advance * font->size;
    }
    line_y += step;
  }
}

}  // namespace arena::draw
