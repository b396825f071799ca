#include "viewer/page_list.h"

#include "property/segment_map.h"

namespace viewer {
namespace {

constexpr PageDefinition definitions[] = {
    {PageKind::general, 796, 791}, {PageKind::cameraData, 797, 792}, {PageKind::exif, 798, 793},
    {PageKind::gps, 798, 794},     {PageKind::iptc, 799, 795},
};
static_assert(std::size(definitions) == pageKinds);

bool heapNoted(void* record, std::size_t size) noexcept {
  const property::SegmentMap map(record, size);
  return map && map.place(map.layout().heap).present != 0;
}

bool isPresent(PageKind kind, bool hasHeap, property::Fields fields) noexcept {
  switch (kind) {
    case PageKind::cameraData:
      return hasHeap;
    case PageKind::exif:
      return property::countExifFields(fields) != 0;
    case PageKind::gps:
      return property::countGpsFields(fields) != 0;
    case PageKind::iptc:
      return property::countIptcFields(fields) != 0;
    default:
      return true;
  }
}

}  // namespace

std::vector<PageDefinition> pagesOf(HGLOBAL fileData) {
  const platform::LockedGlobal lock(fileData);
  const auto* record = lock.as<host::FileDataRecord>();
  if (!lock) return {};
  const property::PropertyRecord properties(record != nullptr ? property::propertyRecordOf(*record)
                                                              : nullptr);
  const bool hasHeap = properties.header() != nullptr && heapNoted(lock.address(), lock.size());
  std::vector<PageDefinition> pages;
  for (const PageDefinition& page : definitions) {
    if (isPresent(page.kind, hasHeap, properties.fields())) pages.push_back(page);
  }
  return pages;
}

std::size_t optionalPageCount(HGLOBAL fileData) {
  const std::size_t pages = pagesOf(fileData).size();
  return pages > 0 ? pages - 1 : 0;
}

}  // namespace viewer
