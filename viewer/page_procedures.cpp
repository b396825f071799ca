#include "viewer/page_procedures.h"

namespace viewer {

DialogState& dialogState() noexcept {
  static DialogState state;
  return state;
}

HGLOBAL propertiesOf(const platform::LockedGlobal& fileData) noexcept {
  const auto* record = fileData.as<host::FileDataRecord>();
  return record != nullptr ? property::propertyRecordOf(*record) : nullptr;
}

DLGPROC pageProcedure(PageKind kind) noexcept {
  static constexpr DLGPROC procedures[] = {generalPage, cameraDataPage, exifPage, gpsPage,
                                           iptcPage};
  static_assert(std::size(procedures) == pageKinds);
  return procedures[static_cast<std::size_t>(kind)];
}

}  // namespace viewer
