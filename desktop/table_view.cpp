#include "desktop/table_view.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QTableView>

#include "desktop/qt_text.h"

namespace kelvane {

namespace {

/// The control's rows as they are: nothing is made for those that nobody looks at.
class Table_model : public QAbstractTableModel {
  public:
    Table_model(const Table& table, QObject* parent) : QAbstractTableModel(parent), table_(table) {}

    void renew() {
        beginResetModel();
        endResetModel();
    }
    [[nodiscard]] int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(table_.rows().size());
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(table_.columns().size());
    }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole && role != Qt::ToolTipRole) {
            return {};
        }
        const auto& row = table_.rows().at(static_cast<std::size_t>(index.row()));
        const auto column = static_cast<std::size_t>(index.column());
        if (column >= row.size()) {
            return {};
        }
        const QString text = to_screen(row[column]);
        return role == Qt::ToolTipRole ? tool_tip_of(text) : text;
    }
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override {
        if (role != Qt::DisplayRole || orientation != Qt::Horizontal) {
            return {};
        }
        return to_screen(table_.columns().at(static_cast<std::size_t>(section)));
    }

  private:
    const Table& table_;
};

}  // namespace

void bind(Table& control, QTableView& widget) {
    widget.setObjectName(to_screen(control.name()));
    widget.setAccessibleName(without_access_key(to_screen(control.caption())));
    auto* model = new Table_model(control, &widget);
    widget.setModel(model);
    widget.setSelectionBehavior(QAbstractItemView::SelectRows);
    widget.setEditTriggers(QAbstractItemView::NoEditTriggers);
    widget.setTabKeyNavigation(false);
    widget.setWordWrap(false);
    widget.verticalHeader()->hide();
    widget.horizontalHeader()->setStretchLastSection(true);
    control.observe([model] { model->renew(); });
    QObject::connect(&widget, &QObject::destroyed, [&control] { control.observe({}); });
}

}  // namespace kelvane
