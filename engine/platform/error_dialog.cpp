// The box that tells a player why the program ends.
#include "engine/platform/window.h"

#ifdef _WIN32
#include <windows.h>

#include <cstring>
#include <filesystem>
#else
#include <SDL.h>
#endif

namespace arena::platform {

#ifdef _WIN32
namespace {

std::wstring shown_text;

std::wstring wide(const std::string& text) { return std::filesystem::path(std::u8string(text.begin(), text.end())).wstring(); }

void copy_shown_text() {
  const std::size_t bytes = (shown_text.size() + 1) * sizeof(wchar_t);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
  if (memory == nullptr || OpenClipboard(nullptr) == 0) return;
  std::memcpy(GlobalLock(memory), shown_text.c_str(), bytes);
  GlobalUnlock(memory);
  EmptyClipboard();
  SetClipboardData(CF_UNICODETEXT, memory);  // the clipboard's from here on
  CloseClipboard();
}

// Windows' own box copies on Ctrl+C, with lines around the text; not every system that runs Windows programs does.
LRESULT CALLBACK see_message(int code, WPARAM unused, LPARAM about) {
  const MSG* const message = reinterpret_cast<const MSG*>(about);
  const bool copies = code == MSGF_DIALOGBOX && message->message == WM_KEYDOWN && message->wParam == 'C' && GetKeyState(VK_CONTROL) < 0;
  if (!copies) return CallNextHookEx(nullptr, code, unused, about);
  copy_shown_text();
  return 1;
}

}  // namespace

void show_error_dialog(const std::string& title, const std::string& text) {
  shown_text = wide(text);
  const HHOOK hook = SetWindowsHookExW(WH_MSGFILTER, see_message, nullptr, GetCurrentThreadId());
  MessageBoxW(nullptr, shown_text.c_str(), wide(title).c_str(), MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
  if (hook != nullptr) UnhookWindowsHookEx(hook);
}
#else
void show_error_dialog(const std::string& title, const std::string& text) {
  SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_ERROR, title.c_str(), text.c_str(), nullptr);
}
#endif

}  // namespace arena::platform
