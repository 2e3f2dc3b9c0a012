#include "host/counter/layout_list.h"

#include <QApplication>
#include <QStyle>
#include <algorithm>

#include "host/screens/persian_digits.h"
#include "package/screens/tool_tip.h"

namespace basalt::host {

namespace {

constexpr int kTitleRole = Qt::UserRole;
constexpr int kRestRole = Qt::UserRole + 1;
constexpr int kPaintersMargins = 8;  // what a style keeps free beside a text, on both sides together

}  // namespace

QListWidgetItem* newLayoutRow(const BarcodeLayout& layout) {
    const QString rest = QStringLiteral(" — %1 (%2 رقمی)")
                             .arg(persianDigits(QString::fromStdString(layout.constantCode)),
                                  persianDigits(QString::number(layout.digitCount)));
    auto* row = new QListWidgetItem(nameOf(layout) + rest);
    row->setData(kTitleRole, nameOf(layout));
    row->setData(kRestRole, rest);
    row->setToolTip(plainToolTip(row->text()));
    return row;
}

void LayoutRowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    if (!option->rect.isValid()) return;
    const QStyle* style = option->widget ? option->widget->style() : QApplication::style();
    const QRect text = style->subElementRect(QStyle::SE_ItemViewItemText, option, option->widget);
    const QString rest = index.data(kRestRole).toString();
    const int room = text.width() - kPaintersMargins - option->fontMetrics.horizontalAdvance(rest);
    option->text =
        option->fontMetrics.elidedText(index.data(kTitleRole).toString(), Qt::ElideRight, std::max(room, 0)) + rest;
}

}  // namespace basalt::host
