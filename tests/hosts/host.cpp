#include "tests/hosts/host.h"

#include <cstdlib>

#include "platform/console/console.h"
#include "tests/support/file_bytes.h"
#include "tests/support/memory_folder.h"

namespace hosts {
namespace {

class Folder {
 public:
  Folder() {
    support::keepTemporaryFilesInMemory();
    std::string name = (std::filesystem::temp_directory_path() / "kf-hosts-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
    setenv("KFIO_INI", (path_ / "settings.ini").c_str(), 1);
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

const Folder& folder() {
  static const Folder made;
  return made;
}

}  // namespace

const fiohost::Session& session() {
  static const Folder& settingsToo = folder();
  static const fiohost::Session loaded;
  static_cast<void>(settingsToo);
  return loaded;
}

std::string fileNamed(const std::string& name) { return (folder().path() / name).string(); }

void writeFile(const std::string& name, const Bytes& content) {
  support::writeFile(fileNamed(name), content);
}

Bytes readFile(const std::string& name) { return support::readFile(fileNamed(name)); }

Record::Record(fiohost::Family family, const std::string& name)
    : handle_(session()
                  .plugin.describe(family, platform::widePath(fileNamed(name)))
                  .fileData.release()) {
  namePath(name);
}

Record::Record(std::size_t size, host::u32 tag)
    : handle_(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size)) {
  constexpr std::size_t tagOffset = sizeof(host::FileDataRecord);
  const platform::LockedGlobal lock(handle_);
  if (size < tagOffset + sizeof tag) return;
  std::memcpy(static_cast<host::u8*>(lock.address()) + tagOffset, &tag, sizeof tag);
}

Record::~Record() {
  if (HGLOBAL held = properties()) session().utilities.freeProperty(held);
  GlobalFree(handle_);
}

HGLOBAL Record::properties() const {
  HGLOBAL held = nullptr;
  with<host::FileDataRecord>([&](const host::FileDataRecord& record) {
    held = reinterpret_cast<HGLOBAL>(record.propertyRecord);
  });
  return held;
}

void Record::setProperties(HGLOBAL properties) const {
  with<host::FileDataRecord>([&](host::FileDataRecord& record) {
    record.propertyRecord = reinterpret_cast<host::u64>(properties);
  });
}

void Record::namePath(const std::string& name) {
  path_ = platform::widePath(fileNamed(name));
  with<host::FileDataRecord>([&](host::FileDataRecord& record) {
    record.pathFlags = host::pathFlagWide;
    record.widePath = reinterpret_cast<host::u64>(path_.c_str());
  });
}

}  // namespace hosts
