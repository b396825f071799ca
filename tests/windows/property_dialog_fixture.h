// The property dialog of the built plug-in, open on a thread of its own.
#pragma once

#include <memory>

#include "tests/windows/property_files.h"
#include "tests/windows/real_plugin.h"
#include "tests/windows/sheet.h"

namespace test {

inline constexpr MetadataKinds everything = {true, true, true, true};

class PropertyDialogTest : public testing::Test {
 protected:
  void open(const MetadataKinds& kinds, int flags = 0) {
    scratch_ = std::make_unique<ScratchFile>(jpegWith(kinds));
    file_ = std::make_unique<DescribedFile>(scratch_->path());
    show(flags);
  }
  void show(int flags = 0, int extraPages = 0, void* extra = nullptr) {
    thread_ = std::make_unique<DialogThread>([=, this] {
      auto* showProperty = entry<host::ShowPropertyEntry>(host::ordinalShowProperty);
      return showProperty(nullptr, file_->handle(), extraPages, extra, flags);
    });
    if (!sheet().window()) throw std::runtime_error("the dialog does not open");
  }
  // The path must outlive the dialog.
  void setPath(wchar_t* path) {
    file_->with([&](host::FileDataRecord& record) {
      record.pathFlags = host::pathFlagWide;
      record.widePath = reinterpret_cast<host::u64>(path);
    });
  }
  [[nodiscard]] Sheet sheet() const { return Sheet(*thread_); }
  [[nodiscard]] DWORD threadId() const { return thread_->threadId(); }
  int result() { return thread_->result(); }
  int close() {
    sheet().cancel();
    return result();
  }
  // Of the file data and its property record.
  [[nodiscard]] unsigned locks() const {
    return (GlobalFlags(file_->handle()) & GMEM_LOCKCOUNT) +
           (GlobalFlags(file_->properties()) & GMEM_LOCKCOUNT);
  }

  std::unique_ptr<ScratchFile> scratch_;
  std::unique_ptr<DescribedFile> file_;

 private:
  std::unique_ptr<DialogThread> thread_;
};

}  // namespace test
