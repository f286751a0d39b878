// ValueDelegate: lets the second column of a list be edited, and only that.
#pragma once

#include <QtWidgets/QStyledItemDelegate>

namespace brindle::map {

class ValueDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        const QModelIndex value = index.siblingAtColumn(1);
        return index.column() == 1 ? QStyledItemDelegate::createEditor(parent, option, value) : nullptr;
    }
};

}  // namespace brindle::map
