// The plug-in as a host sees it: entry points found by ordinal in the loaded library, nothing else.
#pragma once

#include <optional>

#include "fiohost/module.h"
#include "host/format_info.h"
#include "host/plugin_entries.h"
#include "platform/global_memory.h"

namespace fiohost {

enum class Family { jpeg, mpo };

[[nodiscard]] const char* familyName(Family family);

// What describing a file gave.
struct DescribeResult {
  platform::OwnedGlobal fileData;  // empty when there is none
  bool refused = false;            // all ones: the other family's name, or an unreadable header
};

// Every call throws Failure when the plug-in lacks the entry point.
class Plugin {
 public:
  // Loads K32JPG.FIO from a folder. Throws Failure when that cannot be done.
  explicit Plugin(const std::filesystem::path& folder);

  [[nodiscard]] int formatCount() const;
  // A family's format information, or nothing when the plug-in cannot make it.
  [[nodiscard]] std::optional<host::FormatInfoRecord> formatInfo(Family family) const;
  // Describes the file at a full wide path.
  [[nodiscard]] DescribeResult describe(Family family, const std::wstring& path) const;
  // Delivers pixels to the callback; 1 = done, -1 = stopped, 0 = failed. The file-data record
  // names the file.
  [[nodiscard]] int read(Family family, HGLOBAL fileData, host::ReadRequest* request,
                         host::RowCallback* callback) const;
  // Takes the file's metadata into its record, without its pixels. A file without any is no
  // failure.
  void loadProperties(HGLOBAL fileData) const;
  // Whether this build of the plug-in has dialogs; the native one has none.
  [[nodiscard]] bool hasWindows() const noexcept;
  // Shows the file's properties in a dialog over its owner, null for none, and returns when it is
  // closed. Throws Failure when it cannot be opened.
  void showProperties(HGLOBAL fileData, HWND owner = nullptr) const;
  // Lets the user change the record's save options in such a dialog; they become the settings too.
  // False when the user cancelled.
  [[nodiscard]] bool showSaveOptions(HGLOBAL fileData, HWND owner = nullptr) const;
  // Hands an edited property record back: its camera data is built anew from its fields. The
  // plug-in does not tell whether it could.
  void setProperties(HGLOBAL fileData, HGLOBAL properties) const;
  // Writes the file that the record names; 1 = written, -1 = stopped, 0 = failed.
  [[nodiscard]] int write(HGLOBAL fileData, void* context, host::RowSource* rows) const;
  // Reads the image of that number, from 1, of an MPO record's list; results as of read().
  [[nodiscard]] int readImage(HGLOBAL fileData, host::MPORequestCallback* callback, void* context,
                              host::u32 number) const;
  // Writes one image of a multi-picture file, which the record names; the callback is asked for
  // everything else. Results as of write().
  [[nodiscard]] int writeImage(HGLOBAL fileData, host::MPORequestCallback* callback,
                               void* context) const;

 private:
  Module module_;
};

}  // namespace fiohost
