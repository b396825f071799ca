// The page that lists IPTC fields.
#include "viewer/field_page.h"

namespace viewer {
namespace {

constexpr FieldListLayout iptcList = {3082, 140, 140};

class IptcPage : public FieldPage {
 public:
  IptcPage(HWND page, HGLOBAL fileData) noexcept : FieldPage(page, fileData, iptcList) {}

 private:
  std::vector<FieldRow> loadRows() override { return iptcRows(properties().fields()); }
  std::string rawText(std::size_t row) const override {
    return iptcBoxText(properties().fields(), row);
  }
};

std::unique_ptr<FieldPage> makeIptcPage(HWND page, HGLOBAL fileData) {
  return std::make_unique<IptcPage>(page, fileData);
}

}  // namespace

INT_PTR CALLBACK iptcPage(HWND page, UINT message, WPARAM, LPARAM lParam) noexcept {
  return answerFieldPage(PageKind::iptc, makeIptcPage, page, message, lParam);
}

}  // namespace viewer
