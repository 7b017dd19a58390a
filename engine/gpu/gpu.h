#pragma once
// Drawing as the engine sees it: textures by id, triangles with their whole state, one stream. gpu.cpp does what is the same
// everywhere (pools, stale ids, checks, batching); a backend behind backend.h does the rest.
//
// Coordinates are pixels of the target with the origin at the top left; colours are premultiplied by nobody: the shader does it.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace arena::gpu {

class Backend;

// 0 is "none"; an id of a destroyed texture is detected and draws nothing.
struct TextureId {
  std::uint64_t value = 0;
};

enum class Blend : std::uint8_t { kNormal, kAdd, kSubtract, kMultiply };

// What a vertex takes its colour from.
enum class Paint : std::uint8_t { kTexture, kSolid, kField };

struct Vertex {
  float x, y;           // pixels of the target, after the view
  float u, v;           // 0 to 1 across the texture
  std::uint32_t color;  // red, green, blue, alpha from the low byte up
  float paint;          // a Paint
};

// Pixels of the target; drawing outside is left out. A negative width: no clip.
struct Clip {
  int x = 0, y = 0, width = -1, height = -1;
  bool operator==(const Clip&) const = default;
};

struct State {
  TextureId texture;
  Blend blend = Blend::kNormal;
  float field_pixels = 1;  // kField: pixels of the target that the field reaches to each side of an edge
  Clip clip;
};

// From the coordinates of a static mesh to pixels of the target: (a b; c d) * point + (e, f).
struct Transform {
  float a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
};

// Vertices that stay with the backend; 0 is "none", an id of a destroyed mesh draws nothing.
struct MeshId {
  std::uint64_t value = 0;
};

struct FrameStatistics {
  int draw_calls = 0;
  int triangles = 0;
};

class Gpu {
 public:
  explicit Gpu(std::unique_ptr<Backend> backend);
  ~Gpu();
  Gpu(const Gpu&) = delete;
  Gpu& operator=(const Gpu&) = delete;

  // RGBA, premultiplied, rows from the top.
  TextureId create_texture(int width, int height, const std::uint8_t* pixels);
  void destroy_texture(TextureId texture);

  // Triangles in coordinates of their own, uploaded once.
  MeshId create_mesh(const Vertex* vertices, std::size_t count);
  void destroy_mesh(MeshId mesh);
  // Draws what is waiting, then the mesh.
  void draw_mesh(const State& state, MeshId mesh, const Transform& transform);

  void begin_frame(int width, int height, std::uint32_t clear_color);
  // Whether frames go to the graphics card, from the next one on. Of those that do not only what stays there does: textures, meshes.
  void pass_frames(bool wanted) { next_passes_ = wanted; }
  // Of the frame that is drawn: where it does not pass, drawing it is for nothing.
  bool passes_frame() const { return passes_; }
  // Triangles, three vertices each. Batched: the backend is called only where the state changes.
  void draw(const State& state, const Vertex* vertices, std::size_t count);
  // Sends what is waiting.
  void flush();
  // Shows the frame.
  void end_frame();
  // As if the graphics card went away now; does nothing where that cannot happen.
  void lose_device();
  // RGBA rows from the top, of the frame as drawn so far; none of one that does not pass.
  std::vector<std::uint8_t> read_pixels();
  int width() const { return width_; }
  int height() const { return height_; }
  // Of the last whole frame.
  const FrameStatistics& statistics() const { return last_; }

 private:
  // An id is the slot's place in its low half and the slot's whole serial number in its high one, so that a stale id is told from its
  // slot's next owner.
  struct Slot {
    std::uint32_t backend_id = 0;
    std::uint32_t serial = 0;  // even: free
    // What it is made of, kept for backends whose device can be lost.
    int width = 0, height = 0;
    std::vector<std::uint8_t> pixels;
    std::vector<Vertex> vertices;
  };
  static Slot& take_slot(std::vector<Slot>& slots);
  std::uint64_t id_of(std::vector<Slot>& slots, Slot& slot);
  void restore_device();
  static Slot* find_slot(std::vector<Slot>& slots, std::uint64_t id);
  std::uint32_t backend_texture(TextureId texture);

  std::unique_ptr<Backend> backend_;
  std::vector<Slot> textures_, meshes_;
  std::vector<Vertex> waiting_;
  State state_;
  FrameStatistics now_, last_;
  int width_ = 0, height_ = 0;
  bool passes_ = true, next_passes_ = true;
};

}  // namespace arena::gpu
