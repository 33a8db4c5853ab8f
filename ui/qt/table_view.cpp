// A list view: rows of texts that can be read and copied. Its first column is the header of its
// rows, which stays in sight.
#include <QtCore/QAbstractTableModel>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QStyledItemDelegate>
#include <QtWidgets/QTableView>

#include "ui/qt/control_view.h"
#include "ui/qt/sized.h"

namespace vok::qt {
namespace {

/// The rows as they were drawn last.
class Rows : public QAbstractTableModel {
 public:
  using QAbstractTableModel::QAbstractTableModel;

  /// True when they are others now.
  bool Show(const Control& control) {
    if (rows_ == control.Rows && SameHeaders(control)) return false;
    beginResetModel();
    rows_ = control.Rows;
    headers_ = control.Items;
    endResetModel();
    return true;
  }
  int rowCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
  }
  int columnCount(const QModelIndex& parent) const override {
    return parent.isValid() || headers_.empty() ? 0 : static_cast<int>(headers_.size()) - 1;
  }
  QVariant data(const QModelIndex& index, int role) const override {
    const auto column = static_cast<std::size_t>(index.column()) + 1;
    if (role == Qt::TextAlignmentRole) return AlignmentOf(column);
    return role == Qt::DisplayRole ? TextAt(index.row(), column) : QVariant();
  }
  /// The whole text of a header is its tool tip, too, as it may be cut.
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    const bool of_row = orientation == Qt::Vertical;
    const std::size_t column = of_row ? 0 : static_cast<std::size_t>(section) + 1;
    if (role == Qt::TextAlignmentRole && !of_row) return AlignmentOf(column);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
    return of_row ? TextAt(section, 0) : QVariant(Text(headers_[column].Text));
  }
  QString Title() const { return headers_.empty() ? QString() : Text(headers_[0].Text); }

 private:
  QVariant TextAt(int position, std::size_t column) const {
    const auto& row = rows_[static_cast<std::size_t>(position)];
    return column < row.size() ? Text(row[column]) : QVariant();
  }
  QVariant AlignmentOf(std::size_t column) const {
    const auto side = headers_[column].IsNumber ? Qt::AlignRight : Qt::AlignLeft;
    return QVariant::fromValue(side | Qt::AlignVCenter);
  }
  bool SameHeaders(const Control& control) const {
    return std::equal(headers_.begin(), headers_.end(), control.Items.begin(), control.Items.end(),
                      [](const ControlItem& a, const ControlItem& b) {
                        return a.Text == b.Text && a.IsNumber == b.IsNumber;
                      });
  }

  std::vector<std::vector<std::string>> rows_;
  std::vector<ControlItem> headers_;
};

/// Numbers are read from the left in every language.
class Cells : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const auto side = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt());
    if ((side & Qt::AlignRight) == 0) return;
    option->direction = Qt::LeftToRight;
    option->displayAlignment = side | Qt::AlignAbsolute;
  }
};

class Table : public Sized<QTableView> {
 public:
  using Sized<QTableView>::Sized;

 protected:
  /// The Tab key leaves the table; "copy" takes the chosen cells as lines of texts between tabs,
  /// whole rows with their headers.
  void keyPressEvent(QKeyEvent* event) override {
    if (event->matches(QKeySequence::Copy)) {
      QGuiApplication::clipboard()->setText(Chosen());
    } else {
      QTableView::keyPressEvent(event);
    }
  }

 private:
  QString Chosen() const {
    QModelIndexList cells = selectionModel()->selectedIndexes();
    std::sort(cells.begin(), cells.end());
    QString text;
    for (int i = 0; i < cells.size(); ++i) {
      const int row = cells[i].row();
      const bool is_first = i == 0 || cells[i - 1].row() != row;
      if (i > 0) text += QLatin1Char(is_first ? '\n' : '\t');
      if (is_first && selectionModel()->isRowSelected(row, QModelIndex())) {
        text += model()->headerData(row, Qt::Vertical).toString() + QLatin1Char('\t');
      }
      text += cells[i].data().toString();
    }
    return text;
  }
};

class TableView : public ControlView {
 public:
  TableView(const Control& control, Table& table)
      : ControlView(table), table_(table), rows_(new Rows(&table)), title_(new QLabel(&table)) {
    table.setModel(rows_);
    table.setItemDelegate(new Cells(&table));
    table.setTabKeyNavigation(false);
    table.setWordWrap(false);
    QHeaderView& captions = *table.verticalHeader();
    captions.setDefaultSectionSize(table.fontMetrics().lineSpacing() + kAroundRow);
    captions.setSectionResizeMode(QHeaderView::Fixed);
    captions.setMaximumWidth(TextWidth(control, table) / 2);
    captions.setTextElideMode(Qt::ElideRight);
    captions.setHighlightSections(false);
    captions.setDefaultAlignment(Qt::AlignVCenter | Qt::AlignAbsolute |
                                 (table.isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft));
    table.horizontalHeader()->setHighlightSections(false);
    PutTitleInCorner();
    const int rows = control.Height * table.verticalHeader()->defaultSectionSize();
    table.setMinimumSize(
        TextWidth(control, table),
        rows + table.horizontalHeader()->sizeHint().height() + 2 * table.frameWidth());
  }
  void Draw(const Control& control) override {
    if (rows_->Show(control)) FitColumns();
  }

 private:
  static constexpr int kAroundRow = 4;

  /// Above the captions there is nothing but a button that chooses all cells.
  void PutTitleInCorner() {
    auto* corner = table_.findChild<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly);
    if (corner == nullptr) return;
    auto* inside = new QHBoxLayout(corner);
    inside->setContentsMargins(kAroundRow, 0, kAroundRow, 0);
    inside->addWidget(title_);
    title_->setAttribute(Qt::WA_TransparentForMouseEvents);
  }

  /// A long text does not push the others out of sight.
  void FitColumns() {
    title_->setText(rows_->Title());
    table_.verticalHeader()->setMinimumWidth(title_->sizeHint().width() + 2 * kAroundRow);
    table_.resizeColumnsToContents();
    const int widest = kWidestColumn * CharacterWidth(table_);
    for (int column = 0; column < rows_->columnCount({}); ++column) {
      if (table_.columnWidth(column) > widest) table_.setColumnWidth(column, widest);
    }
  }
  static constexpr int kWidestColumn = 40;  // characters

  Table& table_;
  Rows* rows_;
  QLabel* title_;  ///< of the captions
};

}  // namespace

std::unique_ptr<ControlView> NewTable(const Control& control, QWidget& parent) {
  return std::make_unique<TableView>(control, *new Table(&parent));
}

}  // namespace vok::qt
