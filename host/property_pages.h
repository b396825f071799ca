// The records by which a plug-in describes the pages of a property dialog to the host's frame.
#pragma once

#include "host/types.h"

namespace host {

#pragma pack(push, 1)

struct PropertyPage {
  u32 size;  // propertyPageSizeWord
  u8 gap4[4];
  u64 resources;   // module with the template
  u32 templateId;  // dialog template
  u8 gap20[4];
  u64 title;      // address of a NUL-terminated ANSI text
  u64 procedure;  // dialog procedure; WM_INITDIALOG brings the file-data handle as lParam
};

struct PropertyDialogHeader {
  u32 size;  // 72
  u8 gap4[4];
  u64 fileData;  // global memory handle
  char caption[48];
  u32 lastPage;  // page shown last, from 0: the frame opens there and notes it when it closes
  u8 gap68[4];
};

#pragma pack(pop)

// The word that every page carries, though a page has 40 bytes; pages lie 40 bytes apart.
inline constexpr u32 propertyPageSizeWord = 72;
inline constexpr std::size_t propertyTitleLength = 260;  // bytes, the NUL included

HOST_FIELD_AT(PropertyPage, size, 0);
HOST_FIELD_AT(PropertyPage, resources, 8);
HOST_FIELD_AT(PropertyPage, templateId, 16);
HOST_FIELD_AT(PropertyPage, title, 24);
HOST_FIELD_AT(PropertyPage, procedure, 32);
HOST_RECORD_SIZE(PropertyPage, 40);
HOST_FIELD_AT(PropertyDialogHeader, size, 0);
HOST_FIELD_AT(PropertyDialogHeader, fileData, 8);
HOST_FIELD_AT(PropertyDialogHeader, caption, 16);
HOST_FIELD_AT(PropertyDialogHeader, lastPage, 64);
HOST_RECORD_SIZE(PropertyDialogHeader, 72);

}  // namespace host
