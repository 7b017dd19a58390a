#include "engine/gpu/d3d11/d3d11.h"

#include <d3d11_1.h>
#include <d3dcompiler.h>
#include <dxgi1_5.h>
#include <wrl/client.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <map>

namespace arena::gpu {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const char* kVertexShader = R"(
cbuffer Place : register(b0) {
  float4 turn;
  float2 shift;
  float2 size;
  float4 field;
};
struct Given {
  float2 position : POSITION;
  float2 place : TEXCOORD0;
  float4 tint : COLOR0;
  float paint : TEXCOORD1;
};
struct Passed {
  float4 position : SV_Position;
  float4 tint : COLOR0;
  float3 place : TEXCOORD0;
};
Passed main(Given given) {
  Passed passed;
  float2 pixel;
  pixel.x = turn.x * given.position.x + turn.y * given.position.y + shift.x;
  pixel.y = turn.z * given.position.x + turn.w * given.position.y + shift.y;
  passed.position = float4(pixel.x / size.x * 2.0 - 1.0, 1.0 - pixel.y / size.y * 2.0, 0.0, 1.0);
  passed.tint = given.tint;
  passed.place = float3(given.place, given.paint);
  return passed;
}
)";

// 0 a premultiplied picture, 1 plain colour, 2 a distance field whose alpha is 0.5 on the edge.
constexpr const char* kPixelShader = R"(
cbuffer Place : register(b0) {
  float4 turn;
  float2 shift;
  float2 size;
  float4 field;
};
struct Passed {
  float4 position : SV_Position;
  float4 tint : COLOR0;
  float3 place : TEXCOORD0;
};
Texture2D page : register(t0);
SamplerState smooth : register(s0);
float4 main(Passed passed) : SV_Target {
  float4 picture = page.Sample(smooth, passed.place.xy);
  float4 result = float4(passed.tint.rgb * passed.tint.a, passed.tint.a);
  if (passed.place.z > 1.5) {
    result = result * saturate((picture.a - 0.5) * 2.0 * field.x + 0.5);
  } else {
    if (passed.place.z < 0.5) {
      result = float4(picture.rgb * passed.tint.rgb, picture.a) * passed.tint.a;
    }
  }
  return result;
}
)";

// The shaders' constants, as `Place` lays them out.
struct Constants {
  float turn[4];
  float shift[2];
  float size[2];
  float field[4];
};

std::string code(HRESULT result) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(result));
  return text;
}

// All that dies with the device.
struct DeviceObjects {
  ComPtr<ID3D11Device> device;
  ComPtr<ID3D11DeviceContext> context;
  ComPtr<IDXGISwapChain1> swap_chain;
  ComPtr<ID3D11VertexShader> vertex_shader;
  ComPtr<ID3D11PixelShader> pixel_shader;
  ComPtr<ID3D11InputLayout> layout;
  ComPtr<ID3D11BlendState> blends[4];
  ComPtr<ID3D11RasterizerState> rasterizer;
  ComPtr<ID3D11SamplerState> sampler;
  ComPtr<ID3D11Buffer> constants, stream;
  ComPtr<ID3D11Texture2D> target;
  ComPtr<ID3D11RenderTargetView> target_view;
};

class D3d11 final : public Backend {
 public:
  D3d11(HWND window, bool vsync) : window_(window), vsync_(vsync) {}

  bool prepare(std::string& problem) {
    return create_device(problem) && create_swap_chain(problem) && create_shaders(problem) && create_states(problem);
  }

  std::uint32_t create_texture(int width, int height, const std::uint8_t* pixels) override {
    if (held_.device == nullptr) return 0;
    D3D11_TEXTURE2D_DESC wanted{};
    wanted.Width = static_cast<UINT>(width);
    wanted.Height = static_cast<UINT>(height);
    wanted.MipLevels = wanted.ArraySize = wanted.SampleDesc.Count = 1;
    wanted.Format = DXGI_FORMAT_R8G8B8A8_UNORM;
    wanted.Usage = D3D11_USAGE_IMMUTABLE;
    wanted.BindFlags = D3D11_BIND_SHADER_RESOURCE;
    D3D11_SUBRESOURCE_DATA content{};
    content.pSysMem = pixels;
    content.SysMemPitch = wanted.Width * 4;
    ComPtr<ID3D11Texture2D> texture;
    ComPtr<ID3D11ShaderResourceView> view;
    if (FAILED(held_.device->CreateTexture2D(&wanted, &content, &texture))) return 0;
    if (FAILED(held_.device->CreateShaderResourceView(texture.Get(), nullptr, &view))) return 0;
    textures_[++last_id_] = view;
    return last_id_;
  }

  void destroy_texture(std::uint32_t texture) override { textures_.erase(texture); }

  std::uint32_t create_mesh(const Vertex* vertices, std::size_t count) override {
    if (held_.device == nullptr || count == 0) return 0;
    D3D11_BUFFER_DESC wanted{};
    wanted.ByteWidth = static_cast<UINT>(count * sizeof(Vertex));
    wanted.Usage = D3D11_USAGE_IMMUTABLE;
    wanted.BindFlags = D3D11_BIND_VERTEX_BUFFER;
    D3D11_SUBRESOURCE_DATA content{};
    content.pSysMem = vertices;
    Mesh mesh;
    mesh.count = static_cast<UINT>(count);
    if (FAILED(held_.device->CreateBuffer(&wanted, &content, &mesh.vertices))) return 0;
    meshes_[++last_id_] = mesh;
    return last_id_;
  }

  void destroy_mesh(std::uint32_t mesh) override { meshes_.erase(mesh); }

  void draw_mesh(std::uint32_t texture, const State& state, std::uint32_t mesh, const Transform& to) override {
    const auto found = meshes_.find(mesh);
    if (held_.target == nullptr || found == meshes_.end()) return;
    apply(texture, state, to);
    use(found->second.vertices.Get());
    held_.context->Draw(found->second.count, 0);
  }

  void begin_frame(int width, int height, std::uint32_t clear_color) override {
    if (held_.device == nullptr || width <= 0 || height <= 0) return;
    if ((width != width_ || height != height_ || held_.target == nullptr) && !resize(width, height)) return;
    const auto part = [&](int shift) { return static_cast<float>(clear_color >> shift & 255) / 255.0f; };
    const float color[] = {part(0), part(8), part(16), 1};
    held_.context->ClearRenderTargetView(held_.target_view.Get(), color);
    held_.context->OMSetRenderTargets(1, held_.target_view.GetAddressOf(), nullptr);
    const D3D11_VIEWPORT viewport{0, 0, static_cast<float>(width), static_cast<float>(height), 0, 1};
    held_.context->RSSetViewports(1, &viewport);
    held_.context->RSSetState(held_.rasterizer.Get());
    held_.context->IASetPrimitiveTopology(D3D11_PRIMITIVE_TOPOLOGY_TRIANGLELIST);
    held_.context->IASetInputLayout(held_.layout.Get());
    held_.context->VSSetShader(held_.vertex_shader.Get(), nullptr, 0);
    held_.context->PSSetShader(held_.pixel_shader.Get(), nullptr, 0);
    held_.context->VSSetConstantBuffers(0, 1, held_.constants.GetAddressOf());
    held_.context->PSSetConstantBuffers(0, 1, held_.constants.GetAddressOf());
    held_.context->PSSetSamplers(0, 1, held_.sampler.GetAddressOf());
  }

  void draw(std::uint32_t texture, const State& state, const Vertex* vertices, std::size_t count) override {
    if (held_.target == nullptr || count == 0) return;
    const UINT first = put_in_stream(vertices, count);
    if (held_.stream == nullptr) return;
    apply(texture, state, Transform{});
    use(held_.stream.Get());
    held_.context->Draw(static_cast<UINT>(count), first);
  }

  void end_frame() override {
    if (held_.target == nullptr) return;
    ComPtr<ID3D11Texture2D> shown;
    if (SUCCEEDED(held_.swap_chain->GetBuffer(0, IID_PPV_ARGS(&shown)))) held_.context->CopyResource(shown.Get(), held_.target.Get());
    const UINT flags = !vsync_ && tearing_ ? DXGI_PRESENT_ALLOW_TEARING : 0;
    const HRESULT result = held_.swap_chain->Present(vsync_ ? 1 : 0, flags);
    if (result == DXGI_ERROR_DEVICE_REMOVED || result == DXGI_ERROR_DEVICE_RESET) lose();
  }

  std::vector<std::uint8_t> read_pixels(int width, int height) override {
    const std::size_t row = static_cast<std::size_t>(width) * 4;
    std::vector<std::uint8_t> pixels(row * static_cast<std::size_t>(height));
    if (held_.target == nullptr) return pixels;
    D3D11_TEXTURE2D_DESC wanted{};
    held_.target->GetDesc(&wanted);
    wanted.Usage = D3D11_USAGE_STAGING;
    wanted.BindFlags = 0;
    wanted.CPUAccessFlags = D3D11_CPU_ACCESS_READ;
    ComPtr<ID3D11Texture2D> staging;
    D3D11_MAPPED_SUBRESOURCE mapped{};
    if (FAILED(held_.device->CreateTexture2D(&wanted, nullptr, &staging))) return pixels;
    held_.context->CopyResource(staging.Get(), held_.target.Get());
    if (FAILED(held_.context->Map(staging.Get(), 0, D3D11_MAP_READ, 0, &mapped))) return pixels;
    for (std::size_t y = 0; y < static_cast<std::size_t>(std::min(height, height_)); ++y) {
      std::memcpy(pixels.data() + y * row, static_cast<const std::uint8_t*>(mapped.pData) + y * mapped.RowPitch, row);
    }
    held_.context->Unmap(staging.Get(), 0);
    return pixels;
  }

  bool can_be_lost() const override { return true; }
  bool is_lost() const override { return held_.device == nullptr; }
  void lose() override {
    textures_.clear();
    meshes_.clear();
    if (held_.context != nullptr) held_.context->ClearState();
    if (held_.context != nullptr) held_.context->Flush();  // a window takes no second swap chain while the first one lives
    held_ = {};
    stream_size_ = stream_used_ = 0;
    width_ = height_ = 0;
  }
  bool restore() override {
    std::string ignored;
    if (prepare(ignored)) return true;
    lose();
    return false;
  }

 private:
  struct Mesh {
    ComPtr<ID3D11Buffer> vertices;
    UINT count = 0;
  };

  bool create_device(std::string& problem) {
    constexpr D3D_FEATURE_LEVEL kLevels[] = {D3D_FEATURE_LEVEL_11_0, D3D_FEATURE_LEVEL_10_1, D3D_FEATURE_LEVEL_10_0};
    HRESULT result = E_FAIL;
    for (const D3D_DRIVER_TYPE driver : {D3D_DRIVER_TYPE_HARDWARE, D3D_DRIVER_TYPE_WARP}) {
      result = D3D11CreateDevice(nullptr, driver, nullptr, D3D11_CREATE_DEVICE_SINGLETHREADED, kLevels, 3, D3D11_SDK_VERSION, &held_.device,
                                 nullptr, &held_.context);
      if (SUCCEEDED(result)) return true;
    }
    problem = "no Direct3D 11 device can be opened (" + code(result) + ")";
    return false;
  }

  // The flip model where the system has it, the older ones else.
  bool create_swap_chain(std::string& problem) {
    ComPtr<IDXGIDevice> device;
    ComPtr<IDXGIAdapter> adapter;
    ComPtr<IDXGIFactory2> factory;
    HRESULT result = held_.device.As(&device);
    if (SUCCEEDED(result)) result = device->GetAdapter(&adapter);
    if (SUCCEEDED(result)) result = adapter->GetParent(IID_PPV_ARGS(&factory));
    if (SUCCEEDED(result)) {
      ComPtr<IDXGIFactory5> newer;
      BOOL allowed = FALSE;
      tearing_ = SUCCEEDED(factory.As(&newer)) &&
                 SUCCEEDED(newer->CheckFeatureSupport(DXGI_FEATURE_PRESENT_ALLOW_TEARING, &allowed, sizeof allowed)) && allowed != FALSE;
      DXGI_SWAP_CHAIN_DESC1 wanted{};
      wanted.Format = DXGI_FORMAT_R8G8B8A8_UNORM;
      wanted.SampleDesc.Count = 1;
      wanted.BufferUsage = DXGI_USAGE_RENDER_TARGET_OUTPUT;
      wanted.BufferCount = 2;
      for (const DXGI_SWAP_EFFECT effect : {DXGI_SWAP_EFFECT_FLIP_DISCARD, DXGI_SWAP_EFFECT_FLIP_SEQUENTIAL, DXGI_SWAP_EFFECT_DISCARD}) {
        wanted.SwapEffect = effect;
        if (effect == DXGI_SWAP_EFFECT_DISCARD) tearing_ = false;
        wanted.Flags = tearing_ ? static_cast<UINT>(DXGI_SWAP_CHAIN_FLAG_ALLOW_TEARING) : 0;
        result = factory->CreateSwapChainForHwnd(held_.device.Get(), window_, &wanted, nullptr, nullptr, &held_.swap_chain);
        if (SUCCEEDED(result)) break;
      }
      if (SUCCEEDED(result)) factory->MakeWindowAssociation(window_, DXGI_MWA_NO_ALT_ENTER | DXGI_MWA_NO_WINDOW_CHANGES);
    }
    if (FAILED(result)) problem = "Direct3D 11 cannot draw into the window (" + code(result) + ")";
    return SUCCEEDED(result);
  }

  bool create_shaders(std::string& problem) {
    ComPtr<ID3DBlob> vertex, pixel;
    if (!compile(kVertexShader, "vs_4_0", vertex, problem) || !compile(kPixelShader, "ps_4_0", pixel, problem)) return false;
    const auto attribute = [](const char* name, UINT number, DXGI_FORMAT format, std::size_t offset) {
      return D3D11_INPUT_ELEMENT_DESC{name, number, format, 0, static_cast<UINT>(offset), D3D11_INPUT_PER_VERTEX_DATA, 0};
    };
    const D3D11_INPUT_ELEMENT_DESC attributes[] = {attribute("POSITION", 0, DXGI_FORMAT_R32G32_FLOAT, offsetof(Vertex, x)),
                                                   attribute("TEXCOORD", 0, DXGI_FORMAT_R32G32_FLOAT, offsetof(Vertex, u)),
                                                   attribute("COLOR", 0, DXGI_FORMAT_R8G8B8A8_UNORM, offsetof(Vertex, color)),
                                                   attribute("TEXCOORD", 1, DXGI_FORMAT_R32_FLOAT, offsetof(Vertex, paint))};
    const bool made =
        SUCCEEDED(held_.device->CreateVertexShader(vertex->GetBufferPointer(), vertex->GetBufferSize(), nullptr, &held_.vertex_shader)) &&
        SUCCEEDED(held_.device->CreatePixelShader(pixel->GetBufferPointer(), pixel->GetBufferSize(), nullptr, &held_.pixel_shader)) &&
        SUCCEEDED(held_.device->CreateInputLayout(attributes, 4, vertex->GetBufferPointer(), vertex->GetBufferSize(), &held_.layout));
    if (!made) problem = "the graphics driver does not take the shaders";
    return made;
  }

  static bool compile(const char* source, const char* kind, ComPtr<ID3DBlob>& compiled, std::string& problem) {
    ComPtr<ID3DBlob> messages;
    if (SUCCEEDED(D3DCompile(source, std::strlen(source), nullptr, nullptr, nullptr, "main", kind, 0, 0, &compiled, &messages)))
      return true;
    problem = "a shader does not compile: ";
    if (messages != nullptr) problem.append(static_cast<const char*>(messages->GetBufferPointer()), messages->GetBufferSize());
    return false;
  }

  bool create_states(std::string& problem) {
    bool made = true;
    for (const Blend mode : {Blend::kNormal, Blend::kAdd, Blend::kSubtract, Blend::kMultiply}) {
      D3D11_BLEND_DESC wanted{};
      D3D11_RENDER_TARGET_BLEND_DESC& blend = wanted.RenderTarget[0];
      blend.BlendEnable = TRUE;
      blend.RenderTargetWriteMask = D3D11_COLOR_WRITE_ENABLE_ALL;
      blend.BlendOp = mode == Blend::kSubtract ? D3D11_BLEND_OP_REV_SUBTRACT : D3D11_BLEND_OP_ADD;
      blend.BlendOpAlpha = D3D11_BLEND_OP_ADD;
      blend.SrcBlend = mode == Blend::kMultiply ? D3D11_BLEND_DEST_COLOR : D3D11_BLEND_ONE;
      blend.DestBlend = mode == Blend::kNormal ? D3D11_BLEND_INV_SRC_ALPHA : mode == Blend::kMultiply ? D3D11_BLEND_ZERO : D3D11_BLEND_ONE;
      blend.SrcBlendAlpha = mode == Blend::kNormal ? D3D11_BLEND_ONE : D3D11_BLEND_ZERO;
      blend.DestBlendAlpha = mode == Blend::kNormal ? D3D11_BLEND_INV_SRC_ALPHA : D3D11_BLEND_ONE;
      made = made && SUCCEEDED(held_.device->CreateBlendState(&wanted, &held_.blends[static_cast<int>(mode)]));
    }
    D3D11_RASTERIZER_DESC rasterizer{};
    rasterizer.FillMode = D3D11_FILL_SOLID;
    rasterizer.CullMode = D3D11_CULL_NONE;
    rasterizer.ScissorEnable = TRUE;
    rasterizer.DepthClipEnable = TRUE;
    D3D11_SAMPLER_DESC sampler{};
    sampler.Filter = D3D11_FILTER_MIN_MAG_MIP_LINEAR;
    sampler.AddressU = sampler.AddressV = sampler.AddressW = D3D11_TEXTURE_ADDRESS_CLAMP;
    sampler.ComparisonFunc = D3D11_COMPARISON_NEVER;
    sampler.MaxLOD = D3D11_FLOAT32_MAX;
    D3D11_BUFFER_DESC constants{};
    constants.ByteWidth = sizeof(Constants);
    constants.Usage = D3D11_USAGE_DYNAMIC;
    constants.BindFlags = D3D11_BIND_CONSTANT_BUFFER;
    constants.CPUAccessFlags = D3D11_CPU_ACCESS_WRITE;
    made = made && SUCCEEDED(held_.device->CreateRasterizerState(&rasterizer, &held_.rasterizer)) &&
           SUCCEEDED(held_.device->CreateSamplerState(&sampler, &held_.sampler)) &&
           SUCCEEDED(held_.device->CreateBuffer(&constants, nullptr, &held_.constants));
    if (!made) problem = "the graphics driver does not take the drawing states";
    return made;
  }

  // The frame is drawn into a texture of its own and copied when it is shown: so it can be read at any time.
  bool resize(int width, int height) {
    held_.context->OMSetRenderTargets(0, nullptr, nullptr);
    held_.target_view.Reset();
    held_.target.Reset();
    const UINT flags = tearing_ ? static_cast<UINT>(DXGI_SWAP_CHAIN_FLAG_ALLOW_TEARING) : 0;
    const HRESULT result =
        held_.swap_chain->ResizeBuffers(0, static_cast<UINT>(width), static_cast<UINT>(height), DXGI_FORMAT_UNKNOWN, flags);
    if (result == DXGI_ERROR_DEVICE_REMOVED || result == DXGI_ERROR_DEVICE_RESET) lose();
    if (FAILED(result)) return false;
    D3D11_TEXTURE2D_DESC wanted{};
    wanted.Width = static_cast<UINT>(width);
    wanted.Height = static_cast<UINT>(height);
    wanted.MipLevels = wanted.ArraySize = wanted.SampleDesc.Count = 1;
    wanted.Format = DXGI_FORMAT_R8G8B8A8_UNORM;
    wanted.BindFlags = D3D11_BIND_RENDER_TARGET;
    ComPtr<ID3D11Texture2D> target;
    if (FAILED(held_.device->CreateTexture2D(&wanted, nullptr, &target))) return false;
    if (FAILED(held_.device->CreateRenderTargetView(target.Get(), nullptr, &held_.target_view))) return false;
    held_.target = target;
    width_ = width;
    height_ = height;
    return true;
  }

  // Behind what the graphics card may still be reading; from the start again when the buffer is full. The place of the first vertex.
  UINT put_in_stream(const Vertex* vertices, std::size_t count) {
    if (held_.stream == nullptr || count > stream_size_) {
      stream_size_ = std::max<std::size_t>(count, kStreamVertices);
      stream_used_ = stream_size_;
      D3D11_BUFFER_DESC wanted{};
      wanted.ByteWidth = static_cast<UINT>(stream_size_ * sizeof(Vertex));
      wanted.Usage = D3D11_USAGE_DYNAMIC;
      wanted.BindFlags = D3D11_BIND_VERTEX_BUFFER;
      wanted.CPUAccessFlags = D3D11_CPU_ACCESS_WRITE;
      held_.stream.Reset();
      if (FAILED(held_.device->CreateBuffer(&wanted, nullptr, &held_.stream))) return 0;
    }
    const bool is_full = stream_used_ + count > stream_size_;
    if (is_full) stream_used_ = 0;
    D3D11_MAPPED_SUBRESOURCE mapped{};
    if (FAILED(held_.context->Map(held_.stream.Get(), 0, is_full ? D3D11_MAP_WRITE_DISCARD : D3D11_MAP_WRITE_NO_OVERWRITE, 0, &mapped))) {
      held_.stream.Reset();
      return 0;
    }
    std::memcpy(static_cast<Vertex*>(mapped.pData) + stream_used_, vertices, count * sizeof(Vertex));
    held_.context->Unmap(held_.stream.Get(), 0);
    const std::size_t first = stream_used_;
    stream_used_ += count;
    return static_cast<UINT>(first);
  }

  void use(ID3D11Buffer* vertices) {
    const UINT stride = sizeof(Vertex), offset = 0;
    held_.context->IASetVertexBuffers(0, 1, &vertices, &stride, &offset);
  }

  void apply(std::uint32_t texture, const State& state, const Transform& to) {
    D3D11_MAPPED_SUBRESOURCE mapped{};
    if (SUCCEEDED(held_.context->Map(held_.constants.Get(), 0, D3D11_MAP_WRITE_DISCARD, 0, &mapped))) {
      const Constants constants{
          {to.a, to.b, to.c, to.d}, {to.e, to.f}, {static_cast<float>(width_), static_cast<float>(height_)}, {state.field_pixels, 0, 0, 0}};
      std::memcpy(mapped.pData, &constants, sizeof constants);
      held_.context->Unmap(held_.constants.Get(), 0);
    }
    held_.context->OMSetBlendState(held_.blends[static_cast<int>(state.blend)].Get(), nullptr, 0xFFFFFFFF);
    const auto found = textures_.find(texture);
    ID3D11ShaderResourceView* const view = found != textures_.end() ? found->second.Get() : nullptr;
    held_.context->PSSetShaderResources(0, 1, &view);
    const Clip& clip = state.clip;
    const D3D11_RECT cut =
        clip.width < 0 ? D3D11_RECT{0, 0, width_, height_} : D3D11_RECT{clip.x, clip.y, clip.x + clip.width, clip.y + clip.height};
    held_.context->RSSetScissorRects(1, &cut);
  }

  static constexpr std::size_t kStreamVertices = 240000;

  DeviceObjects held_;
  HWND window_;
  bool vsync_, tearing_ = false;
  std::map<std::uint32_t, ComPtr<ID3D11ShaderResourceView>> textures_;
  std::map<std::uint32_t, Mesh> meshes_;
  std::uint32_t last_id_ = 0;
  std::size_t stream_size_ = 0, stream_used_ = 0;  // vertices
  int width_ = 0, height_ = 0;
};

}  // namespace

std::unique_ptr<Backend> create_d3d11(void* window, bool vsync, std::string& problem) {
  auto backend = std::make_unique<D3d11>(static_cast<HWND>(window), vsync);
  if (!backend->prepare(problem)) return nullptr;
  return backend;
}

}  // namespace arena::gpu
