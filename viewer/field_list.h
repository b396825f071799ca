// The list control of a page: two columns in report view.
#pragma once

#include <vector>

#include "platform/system.h"
#include "viewer/field_rows.h"

namespace viewer {

struct FieldListLayout {
  int controlId;
  int nameWidth;   // pixels at 96 dots per inch
  int valueWidth;  // the same
};

class FieldList {
 public:
  FieldList(HWND page, const FieldListLayout& layout) noexcept
      : layout_(layout), window_(GetDlgItem(page, layout.controlId)) {}

  // Adds both columns, under the titles of strings 750 and 751. False when one cannot be had.
  [[nodiscard]] bool addColumns() const;
  void addRows(const std::vector<FieldRow>& rows) const;

  // The first selected row; noRow when none is.
  static constexpr int noRow = -1;
  [[nodiscard]] int selectedRow() const noexcept;

  // What a notification asks the page for.
  enum class Request { none, showValue, copyRow, copyPage };
  [[nodiscard]] Request requestOf(const NMHDR& notification) const noexcept;

 private:
  FieldListLayout layout_;
  HWND window_;
};

}  // namespace viewer
