// A host whose utility library has no tag tables: what needs a definition set is not stored, and
// everything else is there as always.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

#include "host/file_data.h"
#include "host/plugin_entries.h"
#include "host/property_record.h"
#include "platform/global_memory.h"
#include "tests/companions/loaded_module.h"
#include "tests/heap/heap_model.h"
#include "tests/support/tiff_builder.h"

namespace {

using test::LoadedModule;

// Loaded first, so that the plug-in finds them by name.
struct Plugin {
  explicit Plugin(const std::string& utilities) : util(utilities) {}
  LoadedModule resources{"KFRES.DLL"};
  LoadedModule common{"fio/k32Comm.dll"};
  LoadedModule util;
  LoadedModule exif{"fio/kExifLib.dll"};
  LoadedModule codec{"fio/klibjpg.dll"};
  LoadedModule module{"fio/K32JPG.FIO"};
};

support::Bytes picture() {
  support::TiffBuilder tiff;
  tiff.ifd0().text(0x010F, "Maker").shorts(0x0112, {6});
  tiff.exif().rationals(0x829A, {{1, 250}});
  tiff.gps().text(1, "N");
  const support::Bytes title = {'8',  'B', 'I', 'M', 4, 4,   0,   0,  0, 0, 0, 8,  //
                                0x1C, 2,   5,   0,   3, 'a', 'b', 'c'};
  const test::ModelHeap heap = {false, {{0x0816, test::texts({"IMG.JPG"})}}};
  return support::JpegBuilder()
      .exif(tiff.build())
      .cameraHeap(heap.build())
      .photoshop(title)
      .build();
}

class PictureFile {
 public:
  PictureFile() {
    const support::Bytes bytes = picture();
    FILE* file = std::fopen(name, "wb");
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
  }
  PictureFile(const PictureFile&) = delete;
  PictureFile& operator=(const PictureFile&) = delete;
  ~PictureFile() { std::remove(name); }

  static constexpr const char* name = "tables_missing_test.jpg";
};

std::vector<int> idsOf(HGLOBAL properties) {
  const platform::LockedGlobal lock(properties);
  const auto* header = lock.as<host::PropertyHeader>();
  if (header == nullptr) return {};
  const auto* fields = reinterpret_cast<const host::PropertyField*>(header + 1);
  std::vector<int> ids;
  for (int i = 0; i < header->fieldCount; ++i) ids.push_back(fields[i].fieldId);
  return ids;
}

// The ids of the fields that the plug-in takes from the picture, in order.
std::vector<int> idsWith(const std::string& utilities) {
  const Plugin plugin(utilities);
  const PictureFile file;
  const auto describe =
      plugin.module.function<host::JpgGetFileDataEntry>(host::ordinalJpgGetFileData);
  const HGLOBAL data = describe(0, PictureFile::name);
  {
    const platform::LockedGlobal lock(data);
    auto* record = lock.as<host::FileDataRecord>();
    EXPECT_NE(record, nullptr);
    if (record != nullptr) std::strcpy(record->ansiPath, PictureFile::name);
  }
  HGLOBAL properties = nullptr;
  EXPECT_EQ(
      plugin.module.function<host::GetPropertyEntry>(host::ordinalGetProperty)(data, &properties),
      1);
  EXPECT_EQ(GlobalFlags(data) & GMEM_LOCKCOUNT, 0U);
  std::vector<int> ids = idsOf(properties);
  plugin.util.function<void(HGLOBAL)>("kfioFreeProperty")(properties);
  GlobalFree(data);
  return ids;
}

TEST(TablesMissing, FieldsOfDirectoriesAndDatasetsAreNotStoredAndTheHeapIs) {
  EXPECT_THAT(idsWith("../tests/tables_missing_test/fio/kFioUtil.dll"),
              testing::ElementsAre(3999, 5297, 5000, 2004, 5000, 2201 + 2834));
}

}  // namespace
