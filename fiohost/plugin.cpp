#include "fiohost/plugin.h"

#include "fiohost/failure.h"

namespace fiohost {

const char* familyName(Family family) { return family == Family::jpeg ? "JPEG" : "MPO"; }

Plugin::Plugin(const std::filesystem::path& folder) : module_(folder / "K32JPG.FIO") {}

int Plugin::formatCount() const {
  return module_.entry<host::GetFileFmtNumEntry>(host::ordinalGetFileFmtNum)();
}

std::optional<host::FormatInfoRecord> Plugin::formatInfo(Family family) const {
  const WORD ordinal =
      family == Family::jpeg ? host::ordinalJpgGetFormatInfo : host::ordinalMPOGetFormatInfo;
  const platform::OwnedGlobal block(module_.entry<host::GetFormatInfoEntry>(ordinal)());
  const platform::LockedGlobal lock(block.get());
  const auto* record = lock.as<host::FormatInfoRecord>();
  if (record == nullptr) return std::nullopt;
  return *record;
}

DescribeResult Plugin::describe(Family family, const std::wstring& path) const {
  host::DescribeParameters parameters = {0, path.c_str(), 0};
  if (family == Family::jpeg) {
    module_.entry<host::JpgFIOActionEntry>(host::ordinalJpgFIOAction)(0, host::actionDescribe,
                                                                      &parameters);
  } else {
    module_.entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(nullptr, host::actionDescribe,
                                                                      &parameters, nullptr, 0);
  }
  DescribeResult result;
  result.refused = parameters.result == host::fileNotServed;
  if (!result.refused) {
    result.fileData = platform::OwnedGlobal(reinterpret_cast<HGLOBAL>(parameters.result));
  }
  return result;
}

int Plugin::read(Family family, HGLOBAL fileData, host::ReadRequest* request,
                 host::RowCallback* callback) const {
  if (family == Family::mpo) {
    return module_.entry<host::MPOFileReadEntry>(host::ordinalMPOFileRead)(
        nullptr, nullptr, fileData, request, callback);
  }
  return module_.entry<host::JpgFileReadEntry>(host::ordinalJpgFileRead)(0, nullptr, fileData,
                                                                         request, callback);
}

void Plugin::loadProperties(HGLOBAL fileData) const {
  HGLOBAL ignored = nullptr;
  module_.entry<host::GetPropertyEntry>(host::ordinalGetProperty)(fileData, &ignored);
}

bool Plugin::hasWindows() const noexcept { return module_.has(host::ordinalShowProperty); }

void Plugin::showProperties(HGLOBAL fileData, HWND owner) const {
  constexpr int failed = -1;
  auto* show = module_.entry<host::ShowPropertyEntry>(host::ordinalShowProperty);
  if (show(owner, fileData, 0, nullptr, 0) == failed) {
    throw Failure("the property dialog cannot be opened", "see that there is a display");
  }
}

bool Plugin::showSaveOptions(HGLOBAL fileData, HWND owner) const {
  auto* show = module_.entry<host::JpgShowDlgEntry>(host::ordinalJpgShowDlgSaveOption);
  return show(0, owner, fileData) == 1;
}

void Plugin::setProperties(HGLOBAL fileData, HGLOBAL properties) const {
  module_.entry<host::SetPropertyEntry>(host::ordinalSetProperty)(fileData, properties);
}

int Plugin::write(HGLOBAL fileData, void* context, host::RowSource* rows) const {
  return module_.entry<host::JpgFileWriteEntry>(host::ordinalJpgFileWrite)(nullptr, fileData,
                                                                           context, rows);
}

int Plugin::readImage(HGLOBAL fileData, host::MPORequestCallback* callback, void* context,
                      host::u32 number) const {
  return module_.entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(
      fileData, host::actionReadImages, reinterpret_cast<void*>(callback), context,
      static_cast<int>(number));
}

int Plugin::writeImage(HGLOBAL fileData, host::MPORequestCallback* callback, void* context) const {
  return module_.entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(
      fileData, host::actionWriteImage, reinterpret_cast<void*>(callback), context, 0);
}

}  // namespace fiohost
