// The fields that the plug-in takes from one picture, with libraries that a test puts in the place
// of the distribution's.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "host/file_data.h"
#include "host/plugin_entries.h"
#include "host/property_record.h"
#include "platform/global_memory.h"
#include "tests/companions/loaded_module.h"
#include "tests/heap/heap_model.h"
#include "tests/support/scratch_file.h"
#include "tests/support/tiff_builder.h"

namespace test {

// Paths below the distribution's folder.
struct Libraries {
  std::string resources = "KFRES.DLL";
  std::string utilities = "fio/kFioUtil.dll";
};

// Loaded first, so that the plug-in finds them by name.
struct ReplacedPlugin {
  explicit ReplacedPlugin(const Libraries& libraries)
      : resources(libraries.resources), util(libraries.utilities) {}
  LoadedModule resources;
  LoadedModule common{"fio/k32Comm.dll"};
  LoadedModule util;
  LoadedModule exif{"fio/kExifLib.dll"};
  LoadedModule codec{"fio/klibjpg.dll"};
  LoadedModule module{"fio/K32JPG.FIO"};
};

inline support::Bytes pictureOfAllKinds() {
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

inline std::vector<host::PropertyField> copyFields(HGLOBAL properties) {
  const platform::LockedGlobal lock(properties);
  const auto* header = lock.as<host::PropertyHeader>();
  if (header == nullptr) return {};
  const auto* first = reinterpret_cast<const host::PropertyField*>(header + 1);
  return {first, first + header->fieldCount};
}

// One set of libraries a process: the plug-in never unloads what it has found by name.
// The descriptors in order; their blocks are gone.
inline std::vector<host::PropertyField> fieldsWith(const Libraries& libraries) {
  const ReplacedPlugin plugin(libraries);
  const ScratchFile file(pictureOfAllKinds());
  const auto describe =
      plugin.module.function<host::JpgGetFileDataEntry>(host::ordinalJpgGetFileData);
  const HGLOBAL data = describe(0, file.path().c_str());
  {
    const platform::LockedGlobal lock(data);
    auto* record = lock.as<host::FileDataRecord>();
    EXPECT_NE(record, nullptr);
    if (record != nullptr) std::strcpy(record->ansiPath, file.path().c_str());
  }
  HGLOBAL properties = nullptr;
  EXPECT_EQ(
      plugin.module.function<host::GetPropertyEntry>(host::ordinalGetProperty)(data, &properties),
      1);
  EXPECT_EQ(GlobalFlags(data) & GMEM_LOCKCOUNT, 0U);
  std::vector<host::PropertyField> fields = copyFields(properties);
  plugin.util.function<void(HGLOBAL)>("kfioFreeProperty")(properties);
  GlobalFree(data);
  return fields;
}

}  // namespace test
