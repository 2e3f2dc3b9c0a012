#include "host/screens/cut_text.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QStyleOptionComboBox>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "host/screens/wrapped_text.h"
#include "package/screens/tool_tip.h"

namespace basalt::host {
namespace {

constexpr int kCellPadding = 22;  // of a view's cell, both sides together

bool fits(const QWidget& widget, const QString& text, int width) {
    return widget.fontMetrics().horizontalAdvance(text) <= width;
}

// Whether what stands on the lines that have room is all of the text.
bool fitsWrapped(const QLabel& label) {
    const QRect room = label.contentsRect();
    const int lines = std::max(1, room.height() / label.fontMetrics().lineSpacing());
    QString shown = wrappedLines(label.text(), label.font(), room.width(), lines).join(QString());
    QString whole = label.text();
    return shown.remove(QLatin1Char(' ')) == whole.remove(QLatin1Char(' '));
}

QString cutIn(const QLabel& label) {
    if (label.text().contains(QLatin1Char('\n'))) return {};
    if (label.wordWrap()) return fitsWrapped(label) ? QString() : label.text();
    return fits(label, label.text(), label.contentsRect().width()) ? QString() : label.text();
}

QString cutIn(const QComboBox& combo) {
    QStyleOptionComboBox option;
    option.initFrom(&combo);
    option.editable = combo.isEditable();
    const QRect room =
        combo.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo);
    return fits(combo, combo.currentText(), room.width() - 2) ? QString() : combo.currentText();
}

// The view or header whose inside the widget is.
template <class View>
View* viewAround(QWidget& widget) {
    auto* view = qobject_cast<View*>(widget.parentWidget());
    return view && view->viewport() == &widget ? view : nullptr;
}

QString cutIn(const QHeaderView& header, const QPoint& position) {
    const int section = header.logicalIndexAt(position);
    if (section < 0 || !header.model()) return {};
    QString title = header.model()->headerData(section, header.orientation()).toString();
    if (header.defaultAlignment() & static_cast<Qt::Alignment>(static_cast<int>(Qt::TextWordWrap))) return title;
    return fits(header, title, header.sectionSize(section) - 12) ? QString() : title;
}

QString cutIn(const QAbstractItemView& view, const QPoint& position) {
    const QModelIndex index = view.indexAt(position);
    if (!index.isValid() || index.data(Qt::ToolTipRole).isValid()) return {};
    const QString text = index.data().toString();
    const QRect seen = view.visualRect(index) & view.viewport()->rect();
    return fits(view, text, seen.width() - kCellPadding) ? QString() : text;
}

class CutTexts final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::ToolTip) return false;
        auto* widget = qobject_cast<QWidget*>(watched);
        if (!widget || !widget->toolTip().isEmpty()) return false;
        const auto& help = *static_cast<QHelpEvent*>(event);
        const QString text = cutTextAt(*widget, help.pos());
        if (text.isEmpty()) return false;
        QToolTip::showText(help.globalPos(), plainToolTip(text), widget);
        return true;
    }
};

}  // namespace

QString cutTextAt(QWidget& widget, const QPoint& position) {
    if (const auto* label = qobject_cast<QLabel*>(&widget)) return cutIn(*label);
    if (const auto* combo = qobject_cast<QComboBox*>(&widget)) return cutIn(*combo);
    if (const auto* header = viewAround<QHeaderView>(widget)) return cutIn(*header, position);
    if (const auto* view = viewAround<QAbstractItemView>(widget)) return cutIn(*view, position);
    return {};
}

void showCutTexts(QApplication& application) {
    static bool shown = false;
    if (std::exchange(shown, true)) return;
    application.installEventFilter(new CutTexts(&application));
}

}  // namespace basalt::host
