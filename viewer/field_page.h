// What the pages with a list of fields and a value box have in common.
#pragma once

#include <memory>

#include "viewer/field_list.h"
#include "viewer/page_procedures.h"

namespace viewer {

// An open page. The file data and its property record stay locked as long as it lives.
class FieldPage {
 public:
  FieldPage(HWND page, HGLOBAL fileData, const FieldListLayout& layout) noexcept;
  FieldPage(const FieldPage&) = delete;
  FieldPage& operator=(const FieldPage&) = delete;
  virtual ~FieldPage() = default;

  // Makes the value box read-only and fills the list.
  void fill();
  void answer(const NMHDR& notification) const;
  void copyAll() const;
  [[nodiscard]] HWND window() const noexcept { return page_; }

 protected:
  [[nodiscard]] const property::PropertyRecord& properties() const noexcept { return properties_; }

 private:
  [[nodiscard]] virtual std::vector<FieldRow> loadRows() = 0;
  // What the value box shows for a row of the list.
  [[nodiscard]] virtual std::string rawText(std::size_t row) const = 0;

  void showValue() const;
  void copyRow() const;
  [[nodiscard]] bool isRow(int row) const noexcept;

  HWND page_;
  FieldList list_;
  platform::LockedGlobal fileData_;
  property::PropertyRecord properties_;
  std::vector<FieldRow> rows_;
};

using MakeFieldPage = std::unique_ptr<FieldPage>(HWND page, HGLOBAL fileData);

// The dialog procedure of such a page; make creates it.
INT_PTR answerFieldPage(PageKind kind, MakeFieldPage* make, HWND page, UINT message,
                        LPARAM lParam) noexcept;

}  // namespace viewer
