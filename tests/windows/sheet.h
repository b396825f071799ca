// The open property dialog: its tabs, pages and lists as a user sees them.
#pragma once

#include "platform/common_controls.h"
#include "tests/windows/support/dialog_thread.h"
#include "tests/windows/support/polling.h"

namespace test {

class ListView {
 public:
  explicit ListView(Window window) : window_(window) {}
  [[nodiscard]] const Window& window() const { return window_; }
  [[nodiscard]] int rows() const { return static_cast<int>(window_.send(LVM_GETITEMCOUNT)); }
  [[nodiscard]] std::string text(int row, int column) const;
  [[nodiscard]] std::string title(int column) const;
  [[nodiscard]] int columnWidth(int column) const;
  [[nodiscard]] int icon(int row) const;
  // As a press of the mouse on a row.
  void clickRow(int row) const;

 private:
  Window window_;
};

class TreeView {
 public:
  explicit TreeView(Window window) : window_(window) {}
  [[nodiscard]] const Window& window() const { return window_; }
  [[nodiscard]] HTREEITEM root() const { return next(nullptr, TVGN_ROOT); }
  [[nodiscard]] HTREEITEM next(HTREEITEM item, WPARAM relation) const;
  [[nodiscard]] std::string text(HTREEITEM item) const;
  [[nodiscard]] LPARAM parameter(HTREEITEM item) const;
  // The first item with that text, depth first; null when there is none.
  [[nodiscard]] HTREEITEM find(const std::string& name) const { return findBelow(root(), name); }
  void select(HTREEITEM item) const;

 private:
  [[nodiscard]] HTREEITEM findBelow(HTREEITEM item, const std::string& name) const;
  Window window_;
};

class Sheet {
 public:
  explicit Sheet(const DialogThread& thread) : window_(thread.dialog()) {}
  [[nodiscard]] const Window& window() const { return window_; }
  [[nodiscard]] std::vector<std::string> titles() const;
  // Brings a page to the front.
  Window page(int index) const;
  [[nodiscard]] Window currentPage() const;
  [[nodiscard]] int currentIndex() const;
  [[nodiscard]] Window tabs() const;
  void ok() const { window_.control(IDOK).click(); }
  void cancel() const { window_.control(IDCANCEL).click(); }

 private:
  Window window_;
};

}  // namespace test
