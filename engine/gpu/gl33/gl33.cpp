#include "engine/gpu/gl33/gl33.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <cstddef>

namespace arena::gpu {
namespace {

// The functions beyond OpenGL 1.1, loaded once.
struct Functions {
  PFNGLCREATESHADERPROC CreateShader;
  PFNGLSHADERSOURCEPROC ShaderSource;
  PFNGLCOMPILESHADERPROC CompileShader;
  PFNGLGETSHADERIVPROC GetShaderiv;
  PFNGLGETSHADERINFOLOGPROC GetShaderInfoLog;
  PFNGLDELETESHADERPROC DeleteShader;
  PFNGLCREATEPROGRAMPROC CreateProgram;
  PFNGLATTACHSHADERPROC AttachShader;
  PFNGLLINKPROGRAMPROC LinkProgram;
  PFNGLGETPROGRAMIVPROC GetProgramiv;
  PFNGLUSEPROGRAMPROC UseProgram;
  PFNGLDELETEPROGRAMPROC DeleteProgram;
  PFNGLGETUNIFORMLOCATIONPROC GetUniformLocation;
  PFNGLUNIFORM2FPROC Uniform2f;
  PFNGLUNIFORM1FPROC Uniform1f;
  PFNGLUNIFORM4FPROC Uniform4f;
  PFNGLGENVERTEXARRAYSPROC GenVertexArrays;
  PFNGLBINDVERTEXARRAYPROC BindVertexArray;
  PFNGLDELETEVERTEXARRAYSPROC DeleteVertexArrays;
  PFNGLGENBUFFERSPROC GenBuffers;
  PFNGLBINDBUFFERPROC BindBuffer;
  PFNGLBUFFERDATAPROC BufferData;
  PFNGLDELETEBUFFERSPROC DeleteBuffers;
  PFNGLENABLEVERTEXATTRIBARRAYPROC EnableVertexAttribArray;
  PFNGLVERTEXATTRIBPOINTERPROC VertexAttribPointer;
  PFNGLBLENDFUNCSEPARATEPROC BlendFuncSeparate;
  PFNGLBLENDEQUATIONSEPARATEPROC BlendEquationSeparate;

  bool load(void* (*find)(const char*), std::string& problem) {
    const auto one = [&](auto& function, const char* name) {
      function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(find(name));
      if (function == nullptr && problem.empty()) problem = std::string("the graphics driver lacks ") + name;
    };
    one(CreateShader, "glCreateShader");
    one(ShaderSource, "glShaderSource");
    one(CompileShader, "glCompileShader");
    one(GetShaderiv, "glGetShaderiv");
    one(GetShaderInfoLog, "glGetShaderInfoLog");
    one(DeleteShader, "glDeleteShader");
    one(CreateProgram, "glCreateProgram");
    one(AttachShader, "glAttachShader");
    one(LinkProgram, "glLinkProgram");
    one(GetProgramiv, "glGetProgramiv");
    one(UseProgram, "glUseProgram");
    one(DeleteProgram, "glDeleteProgram");
    one(GetUniformLocation, "glGetUniformLocation");
    one(Uniform2f, "glUniform2f");
    one(Uniform1f, "glUniform1f");
    one(Uniform4f, "glUniform4f");
    one(GenVertexArrays, "glGenVertexArrays");
    one(BindVertexArray, "glBindVertexArray");
    one(DeleteVertexArrays, "glDeleteVertexArrays");
    one(GenBuffers, "glGenBuffers");
    one(BindBuffer, "glBindBuffer");
    one(BufferData, "glBufferData");
    one(DeleteBuffers, "glDeleteBuffers");
    one(EnableVertexAttribArray, "glEnableVertexAttribArray");
    one(VertexAttribPointer, "glVertexAttribPointer");
    one(BlendFuncSeparate, "glBlendFuncSeparate");
    one(BlendEquationSeparate, "glBlendEquationSeparate");
    return problem.empty();
  }
};

constexpr const char* kVertexShader = R"(#version 330 core
layout(location = 0) in vec2 position;
layout(location = 1) in vec2 place;
layout(location = 2) in vec4 tint;
layout(location = 3) in float paint;
uniform vec2 target;
uniform vec4 turn;
uniform vec2 shift;
out vec2 at;
out vec4 color;
flat out float kind;
void main() {
  vec2 pixel = vec2(turn.x * position.x + turn.y * position.y, turn.z * position.x + turn.w * position.y) + shift;
  gl_Position = vec4(pixel.x / target.x * 2.0 - 1.0, 1.0 - pixel.y / target.y * 2.0, 0.0, 1.0);
  at = place;
  color = tint;
  kind = paint;
}
)";

// 0 a premultiplied picture, 1 plain colour, 2 a distance field whose alpha is 0.5 on the edge.
constexpr const char* kFragmentShader = R"(#version 330 core
in vec2 at;
in vec4 color;
flat in float kind;
uniform sampler2D page;
uniform float field_pixels;
out vec4 result;
void main() {
  vec4 premultiplied = vec4(color.rgb * color.a, color.a);
  if (kind > 1.5) {
    float edge = (texture(page, at).a - 0.5) * 2.0 * field_pixels;
    result = premultiplied * clamp(edge + 0.5, 0.0, 1.0);
  } else if (kind > 0.5) {
    result = premultiplied;
  } else {
    vec4 picture = texture(page, at);
    result = vec4(picture.rgb * color.rgb, picture.a) * color.a;
  }
}
)";

class Gl33 final : public Backend {
 public:
  Gl33(const Functions& functions, void (*present)(void*), void* window) : gl_(functions), present_(present), window_(window) {}
  ~Gl33() override {
    gl_.DeleteProgram(program_);
    free_buffer(stream_);
    for (Buffer& mesh : meshes_) free_buffer(mesh);
  }

  bool prepare(std::string& problem) {
    program_ = link(compile(GL_VERTEX_SHADER, kVertexShader, problem), compile(GL_FRAGMENT_SHADER, kFragmentShader, problem), problem);
    if (!problem.empty()) return false;
    target_ = gl_.GetUniformLocation(program_, "target");
    field_pixels_ = gl_.GetUniformLocation(program_, "field_pixels");
    turn_ = gl_.GetUniformLocation(program_, "turn");
    shift_ = gl_.GetUniformLocation(program_, "shift");
    stream_ = make_buffer();
    return true;
  }

  std::uint32_t create_texture(int width, int height, const std::uint8_t* pixels) override {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    return texture;
  }

  void destroy_texture(std::uint32_t texture) override { glDeleteTextures(1, &texture); }

  std::uint32_t create_mesh(const Vertex* vertices, std::size_t count) override {
    std::size_t place = 0;
    while (place < meshes_.size() && meshes_[place].layout != 0) ++place;
    if (place == meshes_.size()) meshes_.emplace_back();
    Buffer& mesh = meshes_[place];
    mesh = make_buffer();
    mesh.count = static_cast<GLsizei>(count);
    gl_.BufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(count * sizeof(Vertex)), vertices, GL_STATIC_DRAW);
    use(stream_);
    return static_cast<std::uint32_t>(place + 1);
  }

  void destroy_mesh(std::uint32_t mesh) override { free_buffer(meshes_[mesh - 1]); }

  void draw_mesh(std::uint32_t texture, const State& state, std::uint32_t mesh, const Transform& to) override {
    apply(texture, state);
    gl_.Uniform4f(turn_, to.a, to.b, to.c, to.d);
    gl_.Uniform2f(shift_, to.e, to.f);
    use(meshes_[mesh - 1]);
    glDrawArrays(GL_TRIANGLES, 0, meshes_[mesh - 1].count);
    use(stream_);
    gl_.Uniform4f(turn_, 1, 0, 0, 1);
    gl_.Uniform2f(shift_, 0, 0);
  }

  void begin_frame(int width, int height, std::uint32_t clear_color) override {
    const auto part = [&](int shift) { return static_cast<float>(clear_color >> shift & 255) / 255.0f; };
    glViewport(0, 0, width, height);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glEnable(GL_BLEND);
    glDisable(GL_SCISSOR_TEST);
    height_ = height;
    glClearColor(part(0), part(8), part(16), 1);
    glClear(GL_COLOR_BUFFER_BIT);
    gl_.UseProgram(program_);
    gl_.Uniform2f(target_, static_cast<float>(width), static_cast<float>(height));
    gl_.Uniform4f(turn_, 1, 0, 0, 1);
    gl_.Uniform2f(shift_, 0, 0);
    use(stream_);
  }

  void draw(std::uint32_t texture, const State& state, const Vertex* vertices, std::size_t count) override {
    apply(texture, state);
    gl_.BufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(count * sizeof(Vertex)), vertices, GL_STREAM_DRAW);
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(count));
  }

  void end_frame() override { present_(window_); }

  std::vector<std::uint8_t> read_pixels(int width, int height) override {
    const std::size_t row = static_cast<std::size_t>(width) * 4;
    std::vector<std::uint8_t> upside_down(row * static_cast<std::size_t>(height)), pixels(upside_down.size());
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, upside_down.data());
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
      const auto from = upside_down.begin() + static_cast<std::ptrdiff_t>((static_cast<std::size_t>(height) - 1 - y) * row);
      std::copy(from, from + static_cast<std::ptrdiff_t>(row), pixels.begin() + static_cast<std::ptrdiff_t>(y * row));
    }
    return pixels;
  }

 private:
  struct Buffer {
    GLuint layout = 0, vertices = 0;
    GLsizei count = 0;
  };

  Buffer make_buffer() {
    Buffer made;
    gl_.GenVertexArrays(1, &made.layout);
    gl_.BindVertexArray(made.layout);
    gl_.GenBuffers(1, &made.vertices);
    gl_.BindBuffer(GL_ARRAY_BUFFER, made.vertices);
    attribute(0, 2, GL_FLOAT, GL_FALSE, offsetof(Vertex, x));
    attribute(1, 2, GL_FLOAT, GL_FALSE, offsetof(Vertex, u));
    attribute(2, 4, GL_UNSIGNED_BYTE, GL_TRUE, offsetof(Vertex, color));
    attribute(3, 1, GL_FLOAT, GL_FALSE, offsetof(Vertex, paint));
    return made;
  }
  void free_buffer(Buffer& buffer) {
    if (buffer.layout == 0) return;
    gl_.DeleteBuffers(1, &buffer.vertices);
    gl_.DeleteVertexArrays(1, &buffer.layout);
    buffer = {};
  }
  void use(const Buffer& buffer) {
    gl_.BindVertexArray(buffer.layout);
    gl_.BindBuffer(GL_ARRAY_BUFFER, buffer.vertices);
  }

  void apply(std::uint32_t texture, const State& state) {
    blend(state.blend);
    glBindTexture(GL_TEXTURE_2D, texture);
    gl_.Uniform1f(field_pixels_, state.field_pixels);
    if (state.clip.width < 0) {
      glDisable(GL_SCISSOR_TEST);
    } else {
      glEnable(GL_SCISSOR_TEST);
      glScissor(state.clip.x, height_ - state.clip.y - state.clip.height, state.clip.width, state.clip.height);
    }
  }

  void attribute(GLuint at, GLint count, GLenum type, GLboolean normalized, std::size_t offset) {
    gl_.EnableVertexAttribArray(at);
    gl_.VertexAttribPointer(at, count, type, normalized, sizeof(Vertex), reinterpret_cast<const void*>(offset));
  }

  void blend(Blend mode) {
    gl_.BlendEquationSeparate(mode == Blend::kSubtract ? GL_FUNC_REVERSE_SUBTRACT : GL_FUNC_ADD, GL_FUNC_ADD);
    switch (mode) {
      case Blend::kNormal: gl_.BlendFuncSeparate(GL_ONE, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA); break;
      case Blend::kAdd:
      case Blend::kSubtract: gl_.BlendFuncSeparate(GL_ONE, GL_ONE, GL_ZERO, GL_ONE); break;
      case Blend::kMultiply: gl_.BlendFuncSeparate(GL_DST_COLOR, GL_ZERO, GL_ZERO, GL_ONE); break;
    }
  }

  GLuint compile(GLenum kind, const char* source, std::string& problem) {
    const GLuint shader = gl_.CreateShader(kind);
    gl_.ShaderSource(shader, 1, &source, nullptr);
    gl_.CompileShader(shader);
    GLint compiled = 0;
    gl_.GetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled == 0) {
      char log[1024] = {};
      gl_.GetShaderInfoLog(shader, sizeof log, nullptr, log);
      problem = std::string("a shader does not compile: ") + log;
    }
    return shader;
  }

  GLuint link(GLuint vertex, GLuint fragment, std::string& problem) {
    const GLuint program = gl_.CreateProgram();
    gl_.AttachShader(program, vertex);
    gl_.AttachShader(program, fragment);
    gl_.LinkProgram(program);
    gl_.DeleteShader(vertex);
    gl_.DeleteShader(fragment);
    GLint linked = 0;
    gl_.GetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked == 0 && problem.empty()) problem = "the shaders do not link";
    return program;
  }

  Functions gl_;
  void (*present_)(void*);
  void* window_;
  GLuint program_ = 0;
  Buffer stream_;
  std::vector<Buffer> meshes_;  // by id - 1
  int height_ = 0;
  GLint target_ = -1, field_pixels_ = -1, turn_ = -1, shift_ = -1;
};

}  // namespace

std::unique_ptr<Backend> create_gl33(void* (*load)(const char* name), void (*present)(void* window), void* window, std::string& problem) {
  Functions functions{};
  if (!functions.load(load, problem)) return nullptr;
  auto backend = std::make_unique<Gl33>(functions, present, window);
  if (!backend->prepare(problem)) return nullptr;
  return backend;
}

}  // namespace arena::gpu
