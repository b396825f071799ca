// What the handles of files and mappings stand for.
#pragma once

#include <sys/stat.h>

#include <map>
#include <memory>
#include <mutex>
#include <variant>

#include "platform/posix/diagnostics.h"
#include "platform/posix/errors.h"

namespace platform::posix {

// Owns a file descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) noexcept : number_(number) {}
  Descriptor(Descriptor&& other) noexcept;
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor();

  explicit operator bool() const noexcept { return number_ >= 0; }
  [[nodiscard]] int get() const noexcept { return number_; }

 private:
  int number_ = -1;
};

// Which file it is, whatever the path.
struct FileIdentity {
  dev_t device = 0;
  ino_t number = 0;

  explicit FileIdentity(const struct stat& status) noexcept
      : device(status.st_dev), number(status.st_ino) {}
  bool operator==(const FileIdentity&) const = default;
};

struct OpenFile {
  Descriptor descriptor;
  FileIdentity identity;
  DWORD access;  // GENERIC_ bits
  DWORD share;   // FILE_SHARE_ bits
};

struct FileMapping {
  Descriptor descriptor;
  FileIdentity identity;
  ULONGLONG size;
};

// The live handles and views of the process, and the rules between those of one file.
class Objects {
 public:
  [[nodiscard]] static Objects& instance();

  // The handle of a file, or INVALID_HANDLE_VALUE (ERROR_SHARING_VIOLATION) when its access or
  // its share mode is against that of a handle to the same file.
  [[nodiscard]] HANDLE addFile(OpenFile file);
  [[nodiscard]] HANDLE addMapping(FileMapping mapping);
  // The object of a handle, kept alive while it is used. Null (ERROR_INVALID_HANDLE) for a handle
  // that is not live or stands for something else.
  [[nodiscard]] std::shared_ptr<OpenFile> file(HANDLE handle);
  [[nodiscard]] std::shared_ptr<FileMapping> mapping(HANDLE handle);
  [[nodiscard]] bool close(HANDLE handle);

  void addView(void* address, SIZE_T size, const FileIdentity& identity);
  // Unmaps the view at the address; false when there is none.
  [[nodiscard]] bool removeView(const void* address);

  // Whether a mapping or a view keeps the file from being cut.
  [[nodiscard]] bool isMapped(const FileIdentity& identity);

  // The counts of files, mappings and views.
  void count(LiveCounts& live);

 private:
  using Guard = std::lock_guard<std::mutex>;
  using Object = std::variant<std::shared_ptr<OpenFile>, std::shared_ptr<FileMapping>>;

  struct View {
    SIZE_T size;
    FileIdentity identity;
  };

  [[nodiscard]] HANDLE add(Object object);
  template <typename Kind>
  [[nodiscard]] std::shared_ptr<Kind> find(HANDLE handle);
  template <typename Kind, typename Condition>
  [[nodiscard]] bool any(const FileIdentity& identity, Condition condition) const;

  std::mutex mutex_;
  std::map<HANDLE, Object> objects_;
  std::map<const void*, View> views_;
  UINT_PTR nextHandle_ = 4;  // a multiple of 4, used once
};

}  // namespace platform::posix
