// The pages of the property dialog: viewers only. One dialog at a time is open.
#pragma once

#include "viewer/page_list.h"

namespace viewer {

// What the pages of the open dialog share.
struct DialogState {
  int flags = 0;          // of the call that opened the dialog
  bool modified = false;  // set by a page that changed the record; none of these does
};
[[nodiscard]] DialogState& dialogState() noexcept;

// The property record of locked file data; null when there is none.
[[nodiscard]] HGLOBAL propertiesOf(const platform::LockedGlobal& fileData) noexcept;

// The dialog procedure of a page. WM_INITDIALOG brings the file-data handle as lParam.
[[nodiscard]] DLGPROC pageProcedure(PageKind kind) noexcept;

INT_PTR CALLBACK generalPage(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
INT_PTR CALLBACK cameraDataPage(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
INT_PTR CALLBACK exifPage(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
INT_PTR CALLBACK gpsPage(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
INT_PTR CALLBACK iptcPage(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

}  // namespace viewer
