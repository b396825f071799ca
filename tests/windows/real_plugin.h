// Files described by the built plug-in with its real companions.
#pragma once

#include <cstdlib>
#include <cstring>

#include "host/file_data.h"
#include "host/plugin_entries.h"
#include "platform/global_memory.h"
#include "tests/companions/loaded_plugin.h"
#include "tests/support/scratch_file.h"

namespace test {

// A JPEG file's record, freed with its property record.
class DescribedFile {
 public:
  template <typename Use>
  auto with(Use use) const {
    const platform::LockedGlobal lock(handle_);
    if (!lock) std::abort();
    return use(*static_cast<host::FileDataRecord*>(lock.address()));
  }

  explicit DescribedFile(const std::string& path)
      : handle_(entry<host::JpgGetFileDataEntry>(host::ordinalJpgGetFileData)(0, path.c_str())) {
    EXPECT_NE(GlobalSize(handle_), 0U) << path;
    with([&](host::FileDataRecord& record) { std::strcpy(record.ansiPath, path.c_str()); });
  }
  DescribedFile(const DescribedFile&) = delete;
  DescribedFile& operator=(const DescribedFile&) = delete;
  ~DescribedFile() {
    with([](host::FileDataRecord& record) {
      plugin().util.function<void(HGLOBAL)>("kfioFreeProperty")(
          reinterpret_cast<HGLOBAL>(record.propertyRecord));
    });
    GlobalFree(handle_);
  }

  [[nodiscard]] HGLOBAL handle() const { return handle_; }
  [[nodiscard]] HGLOBAL properties() const {
    return with([](auto& record) { return reinterpret_cast<HGLOBAL>(record.propertyRecord); });
  }

 private:
  HGLOBAL handle_;
};

}  // namespace test
