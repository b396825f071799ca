// The pages that list EXIF and GPS fields: formatted values in the list, the raw one in the box.
#include "exif/value_rows.h"
#include "viewer/field_page.h"

namespace viewer {
namespace {

constexpr int tagListId = 3081;

// What differs between the two.
struct TagPageKind {
  FieldListLayout layout;
  bool (*build)(exif::DefinitionSet& set) noexcept;
  int (*fill)(const exif::DefinitionSet& set, const property::PropertyRecord& record,
              exif::ValueRows& rows) noexcept;
  int (*text)(const exif::DefinitionSet& set, int row, exif::TextDirection direction,
              exif::DisplayText& text, const property::PropertyRecord& record) noexcept;
};

constexpr TagPageKind exifKind = {
    {tagListId, 140, 250},
    [](exif::DefinitionSet& set) noexcept { return set.buildExif(exif::primaryGroup); },
    exif::fillExifRows,
    exif::exifRowText};
constexpr TagPageKind gpsKind = {{tagListId, 140, 140},
                                 [](exif::DefinitionSet& set) noexcept { return set.buildGps(); },
                                 exif::fillGpsRows,
                                 exif::gpsRowText};

class TagPage : public FieldPage {
 public:
  TagPage(HWND page, HGLOBAL fileData, const TagPageKind& kind)
      : FieldPage(page, fileData, kind.layout), kind_(kind) {}

 private:
  std::vector<FieldRow> loadRows() override {
    std::vector<FieldRow> rows;
    if (!kind_.build(set_) || kind_.fill(set_, properties(), values_) == 0) return rows;
    for (const exif::ValueRow& value : values_) {
      rows.push_back({std::string(value.label.view()), std::string(value.value.view())});
    }
    return rows;
  }
  std::string rawText(std::size_t row) const override {
    exif::DisplayText text;
    kind_.text(set_, values_[row].definitionRow, exif::TextDirection::fieldToText, text,
               properties());
    return std::string(text.view());
  }

  const TagPageKind& kind_;
  exif::DefinitionSet set_;
  exif::ValueRows values_;  // with the definition row of every list row
};

template <const TagPageKind& kind>
std::unique_ptr<FieldPage> makeTagPage(HWND page, HGLOBAL fileData) {
  return std::make_unique<TagPage>(page, fileData, kind);
}

}  // namespace

INT_PTR CALLBACK exifPage(HWND page, UINT message, WPARAM, LPARAM lParam) noexcept {
  return answerFieldPage(PageKind::exif, makeTagPage<exifKind>, page, message, lParam);
}

INT_PTR CALLBACK gpsPage(HWND page, UINT message, WPARAM, LPARAM lParam) noexcept {
  return answerFieldPage(PageKind::gps, makeTagPage<gpsKind>, page, message, lParam);
}

}  // namespace viewer
