#include <algorithm>

#include "system/windows/utf16.h"
#include "ui/win32/widgets.h"

namespace vok::windows {
namespace {

/// The window asks for the texts that it draws; it keeps none.
class ListViewWidget : public Widget {
 public:
  using Widget::Widget;

  void SetMetrics(const Metrics& metrics) override {
    metrics_ = &metrics;
    Widget::SetMetrics(metrics);
    SizeColumns();
  }
  Extent Least(const Metrics& metrics) const override {
    constexpr int kUsualLetters = 30;
    const int letters = control_.Width > 0 ? control_.Width : kUsualLetters;
    return {metrics.Letters(letters) + ::GetSystemMetrics(SM_CXVSCROLL),
            (control_.Height + 1) * metrics.Down(11) + metrics.Pixels(8)};
  }

  void OnNotify(NMHDR& header) override {
    if (header.code != LVN_GETDISPINFOW) return;
    LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(header).item;
    if ((item.mask & LVIF_TEXT) == 0) return;
    asked_ = Utf16(
        CellText(static_cast<std::size_t>(item.iItem), static_cast<std::size_t>(item.iSubItem)));
    item.pszText = asked_.data();
  }

 private:
  Kind WindowKind() const override {
    return {WC_LISTVIEWW,
            WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_SINGLESEL |
                LVS_NOSORTHEADER,
            WS_EX_CLIENTEDGE};
  }
  void Created() override {
    constexpr LPARAM kStyle = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES;
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, kStyle);
  }

  std::string CellText(std::size_t row, std::size_t column) const {
    if (row >= control_.Rows.size() || column >= control_.Rows[row].size()) return {};
    return control_.Rows[row][column];
  }

  void Write() override {
    const bool other_columns = !std::equal(
        headers_.begin(), headers_.end(), control_.Items.begin(), control_.Items.end(),
        [](const std::string& shown, const ControlItem& item) { return shown == item.Text; });
    if (!other_columns && rows_ == control_.Rows) return;
    if (other_columns) WriteColumns();
    rows_ = control_.Rows;
    Send(LVM_SETITEMCOUNT, rows_.size());
    SizeColumns();
    ::InvalidateRect(window(), nullptr, TRUE);
  }

  void WriteColumns() {
    while (Send(LVM_DELETECOLUMN) != FALSE) continue;
    headers_.clear();
    for (const ControlItem& item : control_.Items) {
      std::wstring text = Utf16(item.Text);
      LVCOLUMNW column{};
      column.mask = LVCF_TEXT | LVCF_FMT;
      column.fmt = item.IsNumber ? LVCFMT_RIGHT : LVCFMT_LEFT;
      column.pszText = text.data();
      Send(LVM_INSERTCOLUMNW, headers_.size(), reinterpret_cast<LPARAM>(&column));
      headers_.push_back(item.Text);
    }
  }

  void SizeColumns() const {
    constexpr int kMostLetters = 40;
    for (std::size_t column = 0; column < headers_.size(); ++column) {
      int widest = metrics_->WidthOf(Utf16(headers_[column]));
      for (std::size_t row = 0; row < rows_.size(); ++row) {
        widest = std::max(widest, metrics_->WidthOf(Utf16(CellText(row, column))));
      }
      const int width = std::min(widest, metrics_->Letters(kMostLetters)) + metrics_->Across(10);
      Send(LVM_SETCOLUMNWIDTH, column, width);
    }
  }

  const Metrics* metrics_ = nullptr;
  std::vector<std::string> headers_;            ///< as shown
  std::vector<std::vector<std::string>> rows_;  ///< as shown
  std::wstring asked_;                          ///< the text that the window draws next
};

}  // namespace

std::unique_ptr<Widget> MakeListView(Control& control) {
  return std::make_unique<ListViewWidget>(control);
}

}  // namespace vok::windows
