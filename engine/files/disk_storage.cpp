// A folder of the disk. No link below it is followed: each folder on the way is opened from the one before.
#include <algorithm>
#include <filesystem>
#include <utility>

#include "engine/files/paths.h"
#include "engine/files/storage.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#endif

namespace arena::files {
namespace {

constexpr const char* kLockName = "~lock";
constexpr std::size_t kPiece = 1 << 20;  // bytes that are read or written at once

#ifndef _WIN32
// A file or folder that is open.
class Opened {
 public:
  explicit Opened(int number = -1) : number_(number) {}
  Opened(Opened&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Opened& operator=(Opened&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Opened() {
    if (number_ >= 0) close(number_);
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }

 private:
  int number_;
};

Storage::Outcome outcome_of(int failure) {
  switch (failure) {
    case ENOENT:
    case ENOTDIR: return Storage::Outcome::kMissing;
    case ENOSPC:
    case EDQUOT: return Storage::Outcome::kFull;
    default: return Storage::Outcome::kRefused;
  }
}
Storage::Outcome outcome_of_call(int result) { return result == 0 ? Storage::Outcome::kDone : outcome_of(errno); }

class FolderStorage final : public Storage {
 public:
  explicit FolderStorage(std::filesystem::path root) : root_(std::move(root)) {}

  Outcome read(const std::string& name, std::string& into) override {
    const Place place = find(name);
    if (!place.folder) return place.outcome;
    const Opened file(openat(place.folder.number(), place.leaf.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file) return outcome_of(errno);
    struct stat facts {};
    if (fstat(file.number(), &facts) != 0 || !S_ISREG(facts.st_mode) || facts.st_size > kLargestFile) return Outcome::kRefused;
    into.resize(static_cast<std::size_t>(facts.st_size));
    std::size_t filled = 0;
    while (filled < into.size()) {
      const ssize_t got = ::read(file.number(), into.data() + filled, std::min(kPiece, into.size() - filled));
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) return Outcome::kRefused;
      if (got == 0) break;
      filled += static_cast<std::size_t>(got);
      tell(filled, into.size());
    }
    into.resize(filled);
    return Outcome::kDone;
  }
  // What had the name goes first: a link, of whatever kind, is never written through.
  Outcome write(const std::string& name, std::string_view bytes) override {
    if (!make_root()) return Outcome::kRefused;
    const Place place = find(name);
    if (!place.folder) return place.outcome;
    unlinkat(place.folder.number(), place.leaf.c_str(), 0);
    const Opened file(openat(place.folder.number(), place.leaf.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
    if (!file) return outcome_of(errno);
    for (std::size_t written = 0; written < bytes.size(); tell(written, bytes.size())) {
      const ssize_t taken = ::write(file.number(), bytes.data() + written, std::min(kPiece, bytes.size() - written));
      if (taken < 0 && errno != EINTR) return outcome_of(errno);
      if (taken > 0) written += static_cast<std::size_t>(taken);
    }
    return Outcome::kDone;
  }
  Outcome sync(const std::string& name) override {
    const Place place = find(name);
    if (!place.folder) return place.outcome;
    const Opened file(openat(place.folder.number(), place.leaf.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    return file ? outcome_of_call(fsync(file.number())) : outcome_of(errno);
  }
  Outcome rename(const std::string& from, const std::string& to) override {
    const Place before = find(from), after = find(to);
    if (!before.folder || !after.folder) return before.folder ? after.outcome : before.outcome;
    return outcome_of_call(renameat(before.folder.number(), before.leaf.c_str(), after.folder.number(), after.leaf.c_str()));
  }
  Outcome remove(const std::string& name) override {
    const Place place = find(name);
    return place.folder ? outcome_of_call(unlinkat(place.folder.number(), place.leaf.c_str(), 0)) : place.outcome;
  }
  Outcome make_folder(const std::string& name) override {
    if (!make_root()) return Outcome::kRefused;
    const Place place = find(name);
    if (!place.folder) return place.outcome;
    if (mkdirat(place.folder.number(), place.leaf.c_str(), 0755) == 0) return Outcome::kDone;
    return errno == EEXIST && facts(name).is_folder() ? Outcome::kDone : outcome_of(errno);
  }
  Outcome remove_folder(const std::string& name) override {
    const Place place = find(name);
    return place.folder ? outcome_of_call(unlinkat(place.folder.number(), place.leaf.c_str(), AT_REMOVEDIR)) : place.outcome;
  }
  Outcome sync_folder(const std::string& name) override {
    const Opened folder = open_folder(name);
    return folder ? outcome_of_call(fsync(folder.number())) : outcome_of(errno);
  }
  Facts facts(const std::string& name) override {
    Facts found;
    const Place place = find(name);
    struct stat known {};
    const bool is_root = name.empty();
    if (!place.folder || (is_root ? fstat(place.folder.number(), &known)
                                  : fstatat(place.folder.number(), place.leaf.c_str(), &known, AT_SYMLINK_NOFOLLOW)) != 0)
      return found;
    if (!S_ISREG(known.st_mode) && !S_ISDIR(known.st_mode)) return found;
    found.is_there = true;
    found.seconds = known.st_mtime;
    found.size = S_ISREG(known.st_mode) ? static_cast<std::int64_t>(known.st_size) : 0;
    found.attributes = (S_ISDIR(known.st_mode) ? kFolder : 0) | ((known.st_mode & S_IWUSR) == 0 ? kReadOnly : 0);
    if (place.leaf.starts_with('.')) found.attributes |= kHidden;
    return found;
  }
  // What is hidden is told by the name here.
  Outcome set_attributes(const std::string& name, std::int32_t attributes) override {
    const Place place = find(name);
    if (!place.folder) return place.outcome;
    const Opened file(openat(place.folder.number(), place.leaf.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    return file ? outcome_of_call(fchmod(file.number(), (attributes & kReadOnly) != 0 ? 0444 : 0644)) : outcome_of(errno);
  }
  std::vector<Entry> list(const std::string& folder) override {
    std::vector<Entry> found;
    Opened opened = open_folder(folder);
    DIR* const entries = opened ? fdopendir(dup(opened.number())) : nullptr;
    if (entries == nullptr) return found;
    while (const dirent* const each = readdir(entries)) {
      const std::string name = each->d_name;
      if (name == "." || name == "..") continue;
      struct stat known {};
      if (fstatat(opened.number(), each->d_name, &known, AT_SYMLINK_NOFOLLOW) != 0) continue;
      if (S_ISREG(known.st_mode) || S_ISDIR(known.st_mode)) found.push_back({name, S_ISDIR(known.st_mode)});
    }
    closedir(entries);
    return found;
  }
  bool lock() override {
    if (lock_) return true;
    if (!make_root()) return false;
    Opened file(open((root_ / kLockName).c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0644));
    if (!file || flock(file.number(), LOCK_EX | LOCK_NB) != 0) return false;
    lock_ = std::move(file);
    return true;
  }

 private:
  struct Place {
    Opened folder;
    std::string leaf;
    Outcome outcome = Outcome::kDone;  // where there is no such folder
  };
  void tell(std::size_t done, std::size_t total) {
    if (on_progress) on_progress(static_cast<std::int64_t>(done), static_cast<std::int64_t>(total));
  }
  bool make_root() {
    std::error_code failure;
    if (root_.empty()) return false;
    std::filesystem::create_directories(root_, failure);
    return !failure;
  }
  Opened open_folder(const std::string& name) const {
    if (root_.empty()) {
      errno = ENOENT;
      return Opened();
    }
    Opened folder(open(root_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (std::size_t begin = 0; folder && begin < name.size();) {
      const std::size_t end = std::min(name.find('/', begin), name.size());
      folder = Opened(openat(folder.number(), name.substr(begin, end - begin).c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
      begin = end + 1;
    }
    return folder;
  }
  Place find(const std::string& name) const {
    const std::size_t slash = name.rfind('/');
    const bool is_inside = slash != std::string::npos;
    Place place{open_folder(is_inside ? name.substr(0, slash) : ""), is_inside ? name.substr(slash + 1) : name};
    if (!place.folder) place.outcome = outcome_of(errno);
    return place;
  }
  const std::filesystem::path root_;
  Opened lock_;
};
#else
class Opened {
 public:
  explicit Opened(HANDLE handle = INVALID_HANDLE_VALUE) : handle_(handle) {}
  Opened(Opened&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
  Opened& operator=(Opened&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Opened() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE handle() const { return handle_; }

 private:
  HANDLE handle_;
};

Storage::Outcome last_outcome() {
  switch (GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND: return Storage::Outcome::kMissing;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: return Storage::Outcome::kFull;
    default: return Storage::Outcome::kRefused;
  }
}
Storage::Outcome outcome_of_call(BOOL result) { return result != 0 ? Storage::Outcome::kDone : last_outcome(); }

class FolderStorage final : public Storage {
 public:
  explicit FolderStorage(std::filesystem::path root) : root_(std::move(root)) {}

  Outcome read(const std::string& name, std::string& into) override {
    if (leads_out(name)) return Outcome::kRefused;
    const Opened file(CreateFileW(path(name).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return last_outcome();
    LARGE_INTEGER size{};
    if (GetFileType(file.handle()) != FILE_TYPE_DISK || GetFileSizeEx(file.handle(), &size) == 0 || size.QuadPart > kLargestFile)
      return Outcome::kRefused;
    into.resize(static_cast<std::size_t>(size.QuadPart));
    std::size_t filled = 0;
    for (DWORD got = 1; got > 0 && filled < into.size(); tell(filled, into.size())) {
      const DWORD wanted = static_cast<DWORD>(std::min(kPiece, into.size() - filled));
      if (ReadFile(file.handle(), into.data() + filled, wanted, &got, nullptr) == 0) return Outcome::kRefused;
      filled += got;
    }
    into.resize(filled);
    return Outcome::kDone;
  }
  Outcome write(const std::string& name, std::string_view bytes) override {
    if (!make_root() || leads_out(name) || bytes.size() > static_cast<std::size_t>(kLargestFile)) return Outcome::kRefused;
    DeleteFileW(path(name).c_str());
    const Opened file(CreateFileW(path(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return last_outcome();
    for (std::size_t written = 0; written < bytes.size(); tell(written, bytes.size())) {
      DWORD taken = 0;
      const DWORD piece = static_cast<DWORD>(std::min(kPiece, bytes.size() - written));
      if (WriteFile(file.handle(), bytes.data() + written, piece, &taken, nullptr) == 0) return last_outcome();
      if (taken == 0) return Outcome::kFull;
      written += taken;
    }
    return Outcome::kDone;
  }
  Outcome sync(const std::string& name) override {
    const Opened file(
        CreateFileW(path(name).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file ? outcome_of_call(FlushFileBuffers(file.handle())) : last_outcome();
  }
  Outcome rename(const std::string& from, const std::string& to) override {
    if (leads_out(from) || leads_out(to)) return Outcome::kRefused;
    return outcome_of_call(MoveFileExW(path(from).c_str(), path(to).c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
  }
  Outcome remove(const std::string& name) override {
    return leads_out(name) ? Outcome::kRefused : outcome_of_call(DeleteFileW(path(name).c_str()));
  }
  Outcome make_folder(const std::string& name) override {
    if (!make_root() || leads_out(name)) return Outcome::kRefused;
    return facts(name).is_folder() ? Outcome::kDone : outcome_of_call(CreateDirectoryW(path(name).c_str(), nullptr));
  }
  Outcome remove_folder(const std::string& name) override {
    return leads_out(name) ? Outcome::kRefused : outcome_of_call(RemoveDirectoryW(path(name).c_str()));
  }
  // The system keeps its folders in order by itself.
  Outcome sync_folder(const std::string&) override { return Outcome::kDone; }
  Facts facts(const std::string& name) override {
    Facts found;
    WIN32_FILE_ATTRIBUTE_DATA known{};
    if (root_.empty() || leads_out(name) || GetFileAttributesExW(path(name).c_str(), GetFileExInfoStandard, &known) == 0) return found;
    found.is_there = true;
    found.size = static_cast<std::int64_t>(static_cast<std::uint64_t>(known.nFileSizeHigh) << 32 | known.nFileSizeLow);
    const auto hundred_nanoseconds =
        static_cast<std::uint64_t>(known.ftLastWriteTime.dwHighDateTime) << 32 | known.ftLastWriteTime.dwLowDateTime;
    found.seconds = static_cast<std::int64_t>(hundred_nanoseconds / 10000000) - 11644473600;  // they are counted from 1601 on
    found.attributes = ((known.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0 ? kReadOnly : 0) |
                       ((known.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0 ? kHidden : 0) |
                       ((known.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? kFolder : 0);
    return found;
  }
  Outcome set_attributes(const std::string& name, std::int32_t attributes) override {
    if (leads_out(name)) return Outcome::kRefused;
    const DWORD wanted =
        ((attributes & kReadOnly) != 0 ? FILE_ATTRIBUTE_READONLY : 0u) | ((attributes & kHidden) != 0 ? FILE_ATTRIBUTE_HIDDEN : 0u);
    return outcome_of_call(SetFileAttributesW(path(name).c_str(), wanted != 0 ? wanted : FILE_ATTRIBUTE_NORMAL));
  }
  std::vector<Entry> list(const std::string& folder) override {
    std::vector<Entry> found;
    if (root_.empty() || leads_out(folder)) return found;
    std::error_code failure;
    for (const auto& each : std::filesystem::directory_iterator(path(folder), failure)) {
      std::error_code ignored;
      found.push_back({utf8_of(each.path().filename()), each.is_directory(ignored)});
    }
    return found;
  }
  bool lock() override {
    if (lock_) return true;
    if (!make_root()) return false;
    lock_ = Opened(
        CreateFileW((root_ / kLockName).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    return static_cast<bool>(lock_);
  }

 private:
  void tell(std::size_t done, std::size_t total) {
    if (on_progress) on_progress(static_cast<std::int64_t>(done), static_cast<std::int64_t>(total));
  }
  std::filesystem::path path(const std::string& name) const { return name.empty() ? root_ : root_ / path_of(name); }
  bool make_root() {
    std::error_code failure;
    if (root_.empty()) return false;
    std::filesystem::create_directories(root_, failure);
    return !failure;
  }
  // Whether a part of it is a link of some kind.
  bool leads_out(const std::string& name) const {
    for (std::size_t end = 0; end < name.size();) {
      end = std::min(name.find('/', end == 0 ? 0 : end + 1), name.size());
      const DWORD attributes = GetFileAttributesW(path(name.substr(0, end)).c_str());
      if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return true;
    }
    return false;
  }
  const std::filesystem::path root_;
  Opened lock_;
};
#endif

}  // namespace

std::unique_ptr<Storage> folder_storage(const std::string& utf8_path) { return std::make_unique<FolderStorage>(path_of(utf8_path)); }

}  // namespace arena::files
