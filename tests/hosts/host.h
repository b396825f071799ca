// A host with the built plug-in and companions, which may hand in and answer what it likes. Nothing
// may be left behind by any of its calls.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "fiohost/session.h"
#include "host/mpo.h"
#include "host/property_record.h"
#include "platform/posix/diagnostics.h"
#include "tests/support/jpeg_builder.h"

namespace hosts {

using support::Bytes;

// The session and the folder are made once and live as long as the program.
[[nodiscard]] const fiohost::Session& session();
[[nodiscard]] std::string fileNamed(const std::string& name);
void writeFile(const std::string& name, const Bytes& content);
[[nodiscard]] Bytes readFile(const std::string& name);

// An entry by its ordinal; every lookup goes through the export list.
template <typename Entry>
[[nodiscard]] Entry* entry(host::PluginOrdinal ordinal) {
  static const fiohost::Module module(fiohost::pluginFolder() / "K32JPG.FIO");
  return module.entry<Entry>(ordinal);
}

// Expects blocks, locks, files, mappings, views and the current directory at its end as they were.
class NothingLeft {
 public:
  NothingLeft() = default;
  NothingLeft(const NothingLeft&) = delete;
  NothingLeft& operator=(const NothingLeft&) = delete;
  ~NothingLeft() {
    EXPECT_TRUE(platform::posix::liveCounts() == counts_) << "something is left";
    EXPECT_EQ(std::filesystem::current_path(), directory_);
  }

 private:
  platform::posix::LiveCounts counts_ = platform::posix::liveCounts();
  std::filesystem::path directory_ = std::filesystem::current_path();
};

// A file-data record of the host's, freed with its property record.
class Record {
 public:
  // As the plug-in describes a file.
  Record(fiohost::Family family, const std::string& name);
  // Of the host's own making.
  Record(std::size_t size, host::u32 tag);
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;
  ~Record();

  [[nodiscard]] HGLOBAL handle() const { return handle_; }
  [[nodiscard]] HGLOBAL properties() const;
  void setProperties(HGLOBAL properties) const;
  // The file that a read takes or a write makes.
  void namePath(const std::string& name);
  [[nodiscard]] bool unlocked() const { return (GlobalFlags(handle_) & GMEM_LOCKCOUNT) == 0; }

  template <typename Type, typename Use>
  void with(Use use) const {
    const platform::LockedGlobal lock(handle_);
    if (auto* record = lock.as<Type>()) use(*record);
  }

 private:
  HGLOBAL handle_;
  std::wstring path_;
};

}  // namespace hosts
