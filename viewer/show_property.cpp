// The property dialog: the module's pages, then the caller's, in the host's frame.
#include <cstring>
#include <limits>
#include <new>

#include "frame/error_report.h"
#include "frame/module.h"
#include "host/kfioutil.h"
#include "host/plugin_entries.h"
#include "host/property_pages.h"
#include "platform/global_memory.h"
#include "viewer/page_procedures.h"
#include "viewer/tree_list.h"

// An export of this module that lies below.
extern "C" int kfDLLGetProperty(HGLOBAL fileData, HGLOBAL* out) noexcept;

namespace viewer {
namespace {

using host::PropertyDialogHeader;
using host::PropertyPage;
using host::u32;
using host::u64;

constexpr int failed = -1;
constexpr frame::ErrorSource propertyErrors{870, 872};
constexpr host::i32 showPosition = 955;
constexpr UINT captionString = 770;

// The page shown last, as the frame leaves it in the header.
u32 lastPage = 0;

// A block of the dialog, locked until it is freed.
class DialogBlock {
 public:
  explicit DialogBlock(u64 size) noexcept
      : block_(platform::movableZeroed, size), lock_(block_.get()) {}
  explicit operator bool() const noexcept { return static_cast<bool>(lock_); }
  template <typename Element>
  [[nodiscard]] Element* as() const noexcept {
    return static_cast<Element*>(lock_.address());
  }

 private:
  platform::OwnedGlobal block_;
  platform::LockedGlobal lock_;
};

struct ExtraPages {
  const void* records;
  u64 count;
};

// What the frame is called with.
struct Dialog {
  HWND owner;
  HGLOBAL fileData;
  ExtraPages extra;
  int flags;
};

void fillPage(PropertyPage& page, const PageDefinition& definition, DLGPROC procedure,
              char* title) noexcept {
  const HMODULE resources = frame::resourceLibrary();
  LoadStringA(resources, definition.titleString, title, host::propertyTitleLength);
  page.size = host::propertyPageSizeWord;
  page.resources = reinterpret_cast<u64>(resources);
  page.templateId = definition.templateId;
  page.title = reinterpret_cast<u64>(title);
  page.procedure = reinterpret_cast<u64>(procedure);
}

int runFrame(const Dialog& dialog, int pageCount, PropertyPage* pages) noexcept {
  PropertyDialogHeader header = {};
  header.size = sizeof header;
  header.fileData = reinterpret_cast<u64>(dialog.fileData);
  LoadStringA(frame::resourceLibrary(), captionString, header.caption, sizeof header.caption);
  header.lastPage = lastPage;
  dialogState().modified = false;
  const int result = kFioShowProperty(dialog.owner, &header, pageCount, pages, dialog.flags);
  lastPage = header.lastPage;
  unregisterTreeListClasses();
  return dialogResult(result, dialogState().modified);
}

int show(const Dialog& dialog) {
  const std::vector<PageDefinition> own = pagesOf(dialog.fileData);
  const u64 count = own.size() + dialog.extra.count;
  if (count > std::numeric_limits<int>::max()) return failed;
  const DialogBlock pageBlock(count * host::propertyPageSizeWord);
  const DialogBlock procedureBlock(own.size() * sizeof(DLGPROC));
  const DialogBlock titleBlock((own.size() + 1) * host::propertyTitleLength);
  if (!pageBlock || !procedureBlock || !titleBlock) return failed;
  auto* pages = pageBlock.as<PropertyPage>();
  auto* procedures = procedureBlock.as<DLGPROC>();
  for (std::size_t slot = 0; slot < own.size(); ++slot) {
    procedures[slot] = pageProcedure(own[slot].kind);
    fillPage(pages[slot], own[slot], procedures[slot],
             titleBlock.as<char>() + slot * host::propertyTitleLength);
  }
  if (dialog.extra.count != 0) {
    std::memcpy(pages + own.size(), dialog.extra.records, dialog.extra.count * sizeof *pages);
  }
  return runFrame(dialog, static_cast<int>(count), pages);
}

int showProperty(const Dialog& dialog) noexcept {
  if (!platform::LockedGlobal(dialog.fileData)) return 0;
  HGLOBAL properties = nullptr;
  kfDLLGetProperty(dialog.fileData, &properties);
  dialogState().flags = dialog.flags;
  int result = failed;
  try {
    result = show(dialog);
  } catch (const std::bad_alloc&) {
    // Told below, as every failure.
  }
  if (result == failed) {
    frame::reportError(host::errorMemoryOrOutput, propertyErrors, showPosition);
  }
  return result;
}

}  // namespace
}  // namespace viewer

extern "C" {

int kfDLLShowProperty(HWND owner, HGLOBAL fileData, int extraPages, void* extra,
                      int flags) noexcept {
  const bool hasExtra = extraPages > 0 && extra != nullptr;
  const host::u64 count = hasExtra ? static_cast<host::u64>(extraPages) : 0;
  return viewer::showProperty({owner, fileData, {extra, count}, flags});
}

int kfJpgShowDlgFileData(host::u64, HWND owner, HGLOBAL fileData) noexcept {
  return kfDLLShowProperty(owner, fileData, 0, nullptr, 0);
}
}
