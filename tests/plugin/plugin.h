// The loaded plug-in and the records that tests hand to it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "host/format_info.h"
#include "host/mpo.h"
#include "host/plugin_entries.h"
#include "host/property_record.h"
#include "platform/global_memory.h"
#include "tests/plugin/doubles/doubles.h"

namespace test {

// The module, loaded once for the whole program.
HMODULE pluginModule();

template <typename Entry>
Entry* entry(host::PluginOrdinal ordinal) {
  FARPROC found = GetProcAddress(pluginModule(), MAKEINTRESOURCEA(ordinal));
  return reinterpret_cast<Entry*>(reinterpret_cast<void*>(found));
}

// Doubles at their defaults before, nothing left behind after.
class PluginTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(pluginModule(), nullptr);
    doubles::state().reset();
  }
};

using doubles::Doubles;
inline Doubles& the() { return doubles::state(); }

// Calls whose name begins with one of the prefixes, in order.
std::vector<std::string> callsOf(std::initializer_list<const char*> prefixes);

// A report as (code, site, unit, source, position).
std::vector<std::vector<int>> reportedErrors();

// A file-data record of a chosen size; its property record is freed with it.
class FileData {
 public:
  explicit FileData(std::size_t size = sizeof(host::JpegFileData))
      : handle_(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size)) {}
  explicit FileData(HGLOBAL handle) : handle_(handle) {}
  FileData(const FileData&) = delete;
  FileData& operator=(const FileData&) = delete;
  ~FileData() {
    if (handle_ == nullptr || handle_ == allOnes()) return;
    if (GlobalSize(handle_) >= sizeof(host::FileDataRecord)) doubles::freeProperty(properties());
    GlobalFree(handle_);
  }

  static HGLOBAL allOnes() { return reinterpret_cast<HGLOBAL>(~std::uintptr_t{0}); }

  HGLOBAL handle() const { return handle_; }

  // Runs use on the locked record.
  template <typename Record = host::JpegFileData, typename Use>
  auto with(Use use) const {
    platform::LockedGlobal lock(handle_);
    if (!lock) std::abort();
    return use(*static_cast<Record*>(lock.address()));
  }
  std::vector<host::u8> bytes() const {
    platform::LockedGlobal lock(handle_);
    const auto* first = static_cast<const host::u8*>(lock.address());
    return {first, first + lock.size()};
  }
  HGLOBAL properties() const {
    return with<host::FileDataRecord>(
        [](auto& record) { return reinterpret_cast<HGLOBAL>(record.propertyRecord); });
  }
  bool unlocked() const { return (GlobalFlags(handle_) & GMEM_LOCKCOUNT) == 0; }

 private:
  HGLOBAL handle_;
};

// A number as it stands in a record's bytes.
template <typename Number>
Number at(const std::vector<host::u8>& bytes, std::size_t offset) {
  Number value{};
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

// A copied property field with its data block.
struct Field {
  host::PropertyField descriptor;
  std::vector<host::u8> block;
};
std::vector<Field> fieldsOf(HGLOBAL propertyRecord);

// The payload of an EXIF segment: the orientation, little-endian. Field id 4009.
inline std::string orientationSegment() {
  using namespace std::string_literals;
  return "Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0\0\0\0\0"s;
}

// An APPn segment as the codec reports it.
struct Segment {
  host::u16 appNumber;
  std::string payload;
  host::u32 offset = 100;
};
host::u32 report(const host::CodecCallback& callback, const Segment& segment,
                 host::u32 event = host::eventSegment);

}  // namespace test
