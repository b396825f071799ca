#include "platform/posix/objects.h"

#include <sys/mman.h>
#include <unistd.h>

#include <utility>

namespace platform::posix {

Descriptor::Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(number_, other.number_);
  return *this;
}

Descriptor::~Descriptor() {
  if (number_ >= 0) ::close(number_);
}

Objects& Objects::instance() {
  static Objects& objects = *new Objects;  // outlives every caller, static objects included
  return objects;
}

template <typename Kind, typename Condition>
bool Objects::any(const FileIdentity& identity, Condition condition) const {
  for (const auto& [handle, object] : objects_) {
    const auto* found = std::get_if<std::shared_ptr<Kind>>(&object);
    if (found != nullptr && (*found)->identity == identity && condition(**found)) return true;
  }
  return false;
}

HANDLE Objects::add(Object object) {
  HANDLE handle = reinterpret_cast<HANDLE>(nextHandle_);
  objects_.emplace(handle, std::move(object));
  nextHandle_ += 4;
  return handle;
}

HANDLE Objects::addFile(OpenFile file) {
  const auto shares = [](const OpenFile& sharing, const OpenFile& accessing) {
    return ((accessing.access & GENERIC_READ) == 0 || (sharing.share & FILE_SHARE_READ) != 0) &&
           ((accessing.access & GENERIC_WRITE) == 0 || (sharing.share & FILE_SHARE_WRITE) != 0);
  };
  const Guard guard(mutex_);
  const bool refused = any<OpenFile>(file.identity, [&](const OpenFile& other) {
    return !shares(other, file) || !shares(file, other);
  });
  if (refused) return failWith(ERROR_SHARING_VIOLATION, INVALID_HANDLE_VALUE);
  return add(std::make_shared<OpenFile>(std::move(file)));
}

HANDLE Objects::addMapping(FileMapping mapping) {
  const Guard guard(mutex_);
  return add(std::make_shared<FileMapping>(std::move(mapping)));
}

template <typename Kind>
std::shared_ptr<Kind> Objects::find(HANDLE handle) {
  const Guard guard(mutex_);
  const auto found = objects_.find(handle);
  if (found != objects_.end()) {
    if (const auto* object = std::get_if<std::shared_ptr<Kind>>(&found->second)) return *object;
  }
  return failWith(ERROR_INVALID_HANDLE, std::shared_ptr<Kind>());
}

std::shared_ptr<OpenFile> Objects::file(HANDLE handle) { return find<OpenFile>(handle); }

std::shared_ptr<FileMapping> Objects::mapping(HANDLE handle) { return find<FileMapping>(handle); }

bool Objects::close(HANDLE handle) {
  decltype(objects_)::node_type closed;  // the system closes it when the lock is free again
  const Guard guard(mutex_);
  const auto found = objects_.find(handle);
  if (found == objects_.end()) return false;
  closed = objects_.extract(found);
  return true;
}

void Objects::addView(void* address, SIZE_T size, const FileIdentity& identity) {
  const Guard guard(mutex_);
  views_.emplace(address, View{size, identity});
}

bool Objects::removeView(const void* address) {
  decltype(views_)::node_type removed;
  {
    const Guard guard(mutex_);
    const auto found = views_.find(address);
    if (found == views_.end()) return false;
    removed = views_.extract(found);
  }
  munmap(const_cast<void*>(address), removed.mapped().size);
  return true;
}

bool Objects::isMapped(const FileIdentity& identity) {
  const Guard guard(mutex_);
  for (const auto& [address, view] : views_) {
    if (view.identity == identity) return true;
  }
  return any<FileMapping>(identity, [](const FileMapping&) { return true; });
}

void Objects::count(LiveCounts& live) {
  const Guard guard(mutex_);
  for (const auto& [handle, object] : objects_) {
    const bool isFile = std::holds_alternative<std::shared_ptr<OpenFile>>(object);
    ++(isFile ? live.files : live.mappings);
  }
  live.views += views_.size();
}

}  // namespace platform::posix
