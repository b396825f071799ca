#include "tests/fault/entry_bench.h"

#include <cstdlib>
#include <cstring>
#include <ctime>

#include "host/mpo.h"
#include "host/property_record.h"
#include "platform/console/console.h"
#include "tests/fault/faults.h"

namespace fault {
namespace {

using host::i64;
using host::u32;
using host::u64;
using host::u8;

EntryBench* current = nullptr;  // the read callback is handed nothing of the host's

constexpr std::size_t bytesPerPixel = 3;
constexpr host::i32 previewSide = 40;  // large enough for its JPEG to be smaller than its pixels
constexpr u32 imagesWritten = 2;

bool refuses() { return strike(Resource::calls); }

template <typename Record, typename Use>
void with(HGLOBAL handle, Use use) {
  const platform::LockedGlobal lock(handle);
  if (auto* record = lock.as<Record>()) use(*record);
}

template <typename Use>
void eachField(HGLOBAL properties, Use use) {
  with<host::PropertyHeader>(properties, [&](host::PropertyHeader& header) {
    auto* fields = reinterpret_cast<host::PropertyField*>(&header + 1);
    for (int index = 0; index < header.fieldCount; ++index) use(fields[index]);
  });
}

}  // namespace

EntryBench::EntryBench()
    : wideJpegPath(platform::widePath(jpegPath)),
      wideMpoPath(platform::widePath(mpoPath)),
      plugin_(fiohost::pluginFolder() / "K32JPG.FIO") {
  static_cast<void>(::setenv("KFIO_INI", scratch.file("settings.ini").c_str(), 1));
  scratch.write("settings.ini", support::bytesOf("[kfio]\r\n"));
  scratch.write("in.jpg", picture());
  scratch.write("in.mpo", multiPicture(2));
  for (u8*& row : rows_) row = row_;
  current = this;
}

EntryBench::~EntryBench() {
  takeBack();
  forget();
  current = nullptr;
}

void EntryBench::describe(fiohost::Family family, const std::string& name) {
  forget();
  tzset();  // the C library keeps the zone's name from one conversion to the next
  path_ = platform::widePath(scratch.file(name));
  record_ = session.plugin.describe(family, path_).fileData.release();
  with<host::FileDataRecord>(record_, [&](host::FileDataRecord& record) {
    record.pathFlags = host::pathFlagWide;
    record.widePath = reinterpret_cast<u64>(path_.c_str());
  });
  request = {1, {}, 0, {}, 0, 0};
}

void EntryBench::nameOutput(const std::string& name) {
  path_ = platform::widePath(scratch.file(name));
  with<host::FileDataRecord>(record_, [&](host::FileDataRecord& record) {
    record.widePath = reinterpret_cast<u64>(path_.c_str());
  });
}

void EntryBench::loadProperties() { session.plugin.loadProperties(record_); }

HGLOBAL EntryBench::properties() const {
  HGLOBAL found = nullptr;
  with<host::FileDataRecord>(record_, [&](host::FileDataRecord& record) {
    found = reinterpret_cast<HGLOBAL>(record.propertyRecord);
  });
  return found;
}

void EntryBench::forgetExifSegment() {
  eachField(properties(), [](host::PropertyField& field) {
    if (field.fieldId != host::fieldExifSegment) return;
    field.fieldId = host::fieldRawSegment;
    field.sourceGroup = 0;
  });
}

void EntryBench::wantPreview(host::i32 marker) {
  with<host::FileDataRecord>(record_, [&](host::FileDataRecord& record) {
    record.previewMarker = marker;
    record.previewBitsPerPixel = 24;
    record.previewWidth = previewSide;
    record.previewHeight = previewSide;
  });
}

void EntryBench::call(const std::function<i64()>& entry) {
  delivered_ = 0;
  session.reports.clear();
  reply_.result = entry();
  reply_.code = session.reports.code();
}

i64 EntryBench::take(HGLOBAL made) {
  if (reinterpret_cast<u64>(made) == host::fileNotServed) return -1;
  made_ = made;
  return made != nullptr ? 1 : 0;
}

void EntryBench::takeBack() {
  HGLOBAL property = nullptr;
  with<host::FileDataRecord>(made_, [&](host::FileDataRecord& record) {
    property = reinterpret_cast<HGLOBAL>(record.propertyRecord);
  });
  if (property != nullptr) session.utilities.freeProperty(property);
  if (made_ != nullptr) GlobalFree(made_);
  made_ = nullptr;
}

void EntryBench::forget() {
  if (record_ == nullptr) return;
  if (HGLOBAL property = properties()) session.utilities.freeProperty(property);
  GlobalFree(record_);
  record_ = nullptr;
}

// FNV-1a.
void EntryBench::note(const u8* bytes, std::size_t count) {
  constexpr u64 prime = 0x100000001B3;
  for (std::size_t at = 0; at < count; ++at) delivered_ = (delivered_ ^ bytes[at]) * prime + 1;
}

u8* EntryBench::ownRow(u32 row) {
  for (std::size_t at = 0; at < longestRow; ++at) row_[at] = static_cast<u8>(at * 3 + row * 7);
  return row_;
}

int EntryBench::onRows(host::ReadRequest*, u64, u32 first, u32 width, u32 count, u8** rows,
                       host::u16, host::i32, u32) {
  if (refuses()) return current->refusal;
  current->note(reinterpret_cast<const u8*>(&first), sizeof first);
  for (u32 row = 0; row < count; ++row) current->note(rows[row], width * bytesPerPixel);
  return 1;
}

void* EntryBench::rowSource(void* context, u64, u32 first, u32, u32 count, u32, host::i32,
                            host::i32) {
  auto& self = *static_cast<EntryBench*>(context);
  if (refuses() || count > mostRows) return nullptr;
  static_cast<void>(self.ownRow(first));
  return self.rows_;
}

void* EntryBench::mpoRow(void* user, u32, u32, u32 first, u32, int, int, u32) {
  return refuses() ? nullptr : static_cast<EntryBench*>(user)->ownRow(first);
}

int EntryBench::onRequest(int action, void* record, void* context, HGLOBAL) {
  auto& self = *static_cast<EntryBench*>(context);
  if (refuses()) return self.refusal;
  if (action == host::requestQuestion) {
    const auto& question = *static_cast<host::ImageRequest*>(record);
    if (question.question == host::questionCount) {
      *reinterpret_cast<host::MpoCountAnswer*>(question.answer) = {imagesWritten, 0};
    }
  } else if (action == host::requestRows) {
    const auto& rows = *static_cast<host::RowRequest*>(record);
    self.note(reinterpret_cast<const u8*>(rows.rows), rows.rowDistance);
  } else if (action == host::requestRowSource) {
    auto& rows = *static_cast<host::RowRequest*>(record);
    rows.rows = reinterpret_cast<u64>(self.ownRow(rows.firstRow));
  }
  return 1;
}

}  // namespace fault
