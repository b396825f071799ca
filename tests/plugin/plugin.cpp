#include "tests/plugin/plugin.h"

namespace test {

HMODULE pluginModule() {
  static const HMODULE module = [] {
    doubles::state().reset();
    return LoadLibraryA(KF_PLUGIN_PATH);
  }();
  return module;
}

std::vector<std::string> callsOf(std::initializer_list<const char*> prefixes) {
  std::vector<std::string> found;
  for (const std::string& call : the().calls) {
    for (const char* prefix : prefixes) {
      if (call.rfind(prefix, 0) == 0) {
        found.push_back(call);
        break;
      }
    }
  }
  return found;
}

std::vector<std::vector<int>> reportedErrors() {
  std::vector<std::vector<int>> errors;
  for (const host::ErrorReport& report : the().reports) {
    EXPECT_EQ(report.owner, 0);
    errors.push_back({report.code, report.site, report.unit, report.source, report.position});
  }
  return errors;
}

std::vector<Field> fieldsOf(HGLOBAL propertyRecord) {
  std::vector<Field> fields;
  if (propertyRecord == nullptr) return fields;
  platform::LockedGlobal lock(propertyRecord);
  const auto* header = static_cast<const host::PropertyHeader*>(lock.address());
  const auto* first = reinterpret_cast<const host::PropertyField*>(header + 1);
  for (int index = 0; index < header->fieldCount; ++index) {
    Field field{first[index], {}};
    if (field.descriptor.valueKind == host::kindBlock && field.descriptor.data != 0) {
      const auto* data = reinterpret_cast<const host::u8*>(field.descriptor.data);
      field.block.assign(data, data + field.descriptor.dataSize);
    }
    fields.push_back(field);
  }
  return fields;
}

host::u32 report(const host::CodecCallback& callback, const Segment& segment, host::u32 event) {
  host::SegmentRecord record = {};
  record.kind = 1;
  record.appNumber = segment.appNumber;
  record.payloadOffset = segment.offset;
  record.payloadLength = static_cast<host::i32>(segment.payload.size());
  record.payload = reinterpret_cast<const host::u8*>(segment.payload.data());
  return callback.callback(callback.context, event, 0, &record);
}

}  // namespace test
