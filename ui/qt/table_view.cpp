// A list view: rows of texts that can be read and copied.
#include <QtCore/QAbstractTableModel>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QHeaderView>
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
    return parent.isValid() ? 0 : static_cast<int>(headers_.size());
  }
  QVariant data(const QModelIndex& index, int role) const override {
    const auto column = static_cast<std::size_t>(index.column());
    if (role == Qt::TextAlignmentRole) return AlignmentOf(column);
    const auto& row = rows_[static_cast<std::size_t>(index.row())];
    return role == Qt::DisplayRole && column < row.size() ? Text(row[column]) : QVariant();
  }
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation == Qt::Vertical) return {};
    const auto column = static_cast<std::size_t>(section);
    if (role == Qt::TextAlignmentRole) return AlignmentOf(column);
    return role == Qt::DisplayRole ? Text(headers_[column].Text) : QVariant();
  }

 private:
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
  /// The Tab key leaves the table; "copy" takes the chosen cells as lines of texts between tabs.
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
      if (i > 0) text += QLatin1Char(cells[i].row() == cells[i - 1].row() ? '\t' : '\n');
      text += cells[i].data().toString();
    }
    return text;
  }
};

class TableView : public ControlView {
 public:
  TableView(const Control& control, Table& table)
      : ControlView(table), table_(table), rows_(new Rows(&table)) {
    table.setModel(rows_);
    table.setItemDelegate(new Cells(&table));
    table.setTabKeyNavigation(false);
    table.setWordWrap(false);
    table.verticalHeader()->hide();
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().lineSpacing() + kAroundRow);
    table.horizontalHeader()->setHighlightSections(false);
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

  /// A long text does not push the others out of sight.
  void FitColumns() {
    table_.resizeColumnsToContents();
    const int widest = kWidestColumn * CharacterWidth(table_);
    for (int column = 0; column < rows_->columnCount({}); ++column) {
      if (table_.columnWidth(column) > widest) table_.setColumnWidth(column, widest);
    }
  }
  static constexpr int kWidestColumn = 40;  // characters

  Table& table_;
  Rows* rows_;
};

}  // namespace

std::unique_ptr<ControlView> NewTable(const Control& control, QWidget& parent) {
  return std::make_unique<TableView>(control, *new Table(&parent));
}

}  // namespace vok::qt
