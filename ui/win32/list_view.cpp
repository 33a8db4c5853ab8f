#include <algorithm>
#include <utility>

#include "system/windows/utf16.h"
#include "ui/win32/widgets.h"

namespace vok::windows {
namespace {

void PaintHeader(HDC canvas, RECT area, const std::wstring& text, int margin) {
  ::FillRect(canvas, &area, ::GetSysColorBrush(COLOR_BTNFACE));
  ::SetBkMode(canvas, TRANSPARENT);
  ::SetTextColor(canvas, ::GetSysColor(COLOR_BTNTEXT));
  area.left += margin;
  ::DrawTextW(canvas, text.c_str(), -1, &area,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}

/// The window asks for the texts that it draws; it keeps none. The first column is drawn once more,
/// over the others, so that it stays in sight.
class ListViewWidget : public Widget {
 public:
  using Widget::Widget;
  /// The window may live on for a moment.
  ~ListViewWidget() override {
    for (const HWND part : {Header(), window()}) ::RemoveWindowSubclass(part, Scrolls, 0);
  }

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
    asked_ = Drawn(
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
    for (const HWND part : {window(), Header()}) {
      ::SetWindowSubclass(part, Scrolls, 0, reinterpret_cast<DWORD_PTR>(this));
    }
  }
  HWND Header() const { return reinterpret_cast<HWND>(Send(LVM_GETHEADER)); }

  static LRESULT CALLBACK Scrolls(HWND part, UINT message, WPARAM wparam, LPARAM lparam,
                                  UINT_PTR id, DWORD_PTR self) {
    const LRESULT result = ::DefSubclassProc(part, message, wparam, lparam);
    auto& list = *reinterpret_cast<ListViewWidget*>(self);
    if (message == WM_NCDESTROY) {
      ::RemoveWindowSubclass(part, Scrolls, id);
    } else if (message == WM_PAINT) {
      list.PaintCaptions(part);
    } else {
      list.FollowScrolling();
    }
    return result;
  }

  /// The system has moved what was drawn, the captions with it.
  void FollowScrolling() {
    const int scrolled = ::GetScrollPos(window(), SB_HORZ);
    if (std::exchange(scrolled_, scrolled) == scrolled) return;
    ::InvalidateRect(window(), nullptr, FALSE);
    ::InvalidateRect(Header(), nullptr, FALSE);
  }

  void PaintCaptions(HWND part) const {
    if (headers_.empty()) return;
    const HDC canvas = ::GetDC(part);
    const HGDIOBJ before = ::SelectObject(canvas, metrics_->font());
    const int width = static_cast<int>(Send(LVM_GETCOLUMNWIDTH, 0));
    const int margin = metrics_->Across(3);
    if (part == window()) {
      PaintRows(canvas, width, margin);
    } else if (scrolled_ > 0) {
      RECT title{};
      ::GetClientRect(part, &title);
      PaintHeader(canvas, {scrolled_, 0, scrolled_ + width, title.bottom}, Drawn(headers_[0]),
                  margin);
    }
    ::SelectObject(canvas, before);
    ::ReleaseDC(part, canvas);
  }

  void PaintRows(HDC canvas, int width, int margin) const {
    const auto first = static_cast<std::size_t>(Send(LVM_GETTOPINDEX));
    const auto seen = static_cast<std::size_t>(Send(LVM_GETCOUNTPERPAGE)) + 1;
    for (std::size_t row = first; row < std::min(first + seen, rows_.size()); ++row) {
      RECT line{LVIR_BOUNDS, 0, 0, 0};
      Send(LVM_GETITEMRECT, row, reinterpret_cast<LPARAM>(&line));
      const int grid = 1;
      PaintHeader(canvas, {0, line.top, width - grid, line.bottom - grid}, Drawn(CellText(row, 0)),
                  margin);
    }
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
      // Figures are flush right in every language. In a window from right to left that is "left".
      column.fmt = item.IsNumber && !BeginsFromRight() ? LVCFMT_RIGHT : LVCFMT_LEFT;
      column.pszText = text.data();
      Send(LVM_INSERTCOLUMNW, headers_.size(), reinterpret_cast<LPARAM>(&column));
      headers_.push_back(item.Text);
    }
  }

  void SizeColumns() const {
    constexpr int kMostLetters = 40;
    const int captions = control_.Width > 0 ? control_.Width / 2 : kMostLetters;
    for (std::size_t column = 0; column < headers_.size(); ++column) {
      int widest = metrics_->WidthOf(Drawn(headers_[column]));
      for (std::size_t row = 0; row < rows_.size(); ++row) {
        widest = std::max(widest, metrics_->WidthOf(Drawn(CellText(row, column))));
      }
      const int most = metrics_->Letters(column == 0 ? captions : kMostLetters);
      const int width = std::min(widest, most) + metrics_->Across(10);
      Send(LVM_SETCOLUMNWIDTH, column, width);
    }
  }

  const Metrics* metrics_ = nullptr;
  std::vector<std::string> headers_;            ///< as shown
  std::vector<std::vector<std::string>> rows_;  ///< as shown
  std::wstring asked_;                          ///< the text that the window draws next
  int scrolled_ = 0;                            ///< to the side, in pixels
};

}  // namespace

std::unique_ptr<Widget> MakeListView(Control& control) {
  return std::make_unique<ListViewWidget>(control);
}

}  // namespace vok::windows
