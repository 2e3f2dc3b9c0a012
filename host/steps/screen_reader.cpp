#include "host/steps/screen_reader.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableView>
#include <QTextDocumentFragment>
#include <QTextEdit>
#include <charconv>
#include <vector>

#include "ado/names.h"
#include "host/screens/persian_digits.h"
#include "host/steps/screen_finder.h"
#include "host/steps/step_failure.h"
#include "package/screens/controls.h"

namespace basalt::host {

namespace {

const TSmartDBGrid_VRO* gridOf(const QWidget& table) {
    for (const QWidget* widget = &table; widget; widget = widget->parentWidget()) {
        if (const auto* grid = dynamic_cast<const TSmartDBGrid_VRO*>(widget)) return grid;
    }
    return nullptr;
}

// The visible columns from the first that is read to the last.
std::vector<int> columnsInOrder(const QAbstractItemView& table) {
    std::vector<int> columns;
    const auto* tableView = qobject_cast<const QTableView*>(&table);
    const int count = table.model() ? table.model()->columnCount() : 0;
    for (int visual = 0; visual < count; ++visual) {
        const int logical = tableView ? tableView->horizontalHeader()->logicalIndex(visual) : visual;
        if (!tableView || !tableView->isColumnHidden(logical)) columns.push_back(logical);
    }
    return columns;
}

int requireColumn(const QAbstractItemView& table, const std::string& column) {
    int number = 0;
    const std::string digits = latinDigits(QString::fromStdString(column)).toStdString();
    const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const std::vector<int> shown = columnsInOrder(table);
    if (failure == std::errc() && end == digits.data() + digits.size()) {
        if (number >= 0 && static_cast<std::size_t>(number) < shown.size())
            return shown[static_cast<std::size_t>(number)];
        throw StepFailure("column " + column, std::to_string(shown.size()) + " columns");
    }
    const TSmartDBGrid_VRO* grid = gridOf(table);
    std::string titles;
    for (const int index : shown) {
        const QString title = table.model()->headerData(index, Qt::Horizontal).toString();
        const std::string field = grid && index < grid->ColumnCount() ? grid->Column(index).FieldName : std::string();
        if (readsAs(title, column) || (!field.empty() && sameName(field, column))) return index;
        titles += (titles.empty() ? "" : ", ") + (field.empty() ? title.toStdString() : field);
    }
    throw StepFailure("column " + column, "the columns " + titles);
}

}  // namespace

namespace {

// As it reads, not as it is marked up.
QString readText(const QLabel& label) {
    const Qt::TextFormat format = label.textFormat();
    const bool isRich = format == Qt::RichText || (format == Qt::AutoText && Qt::mightBeRichText(label.text()));
    return isRich ? QTextDocumentFragment::fromHtml(label.text()).toPlainText() : label.text();
}

}  // namespace

std::optional<QString> ownText(const QWidget& widget) {
    if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) return edit->text();
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) return readText(*label);
    if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) return combo->currentText();
    if (const auto* spin = qobject_cast<const QAbstractSpinBox*>(&widget)) return spin->text();
    if (const auto* plain = qobject_cast<const QPlainTextEdit*>(&widget)) return plain->toPlainText();
    if (const auto* rich = qobject_cast<const QTextEdit*>(&widget)) return rich->toPlainText();
    if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) return group->title();
    if (const auto* button = dynamic_cast<const TSmartButton_VRO*>(&widget))
        return QString::fromStdString(button->Caption());
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) return button->text();
    if (widget.isWindow()) return widget.windowTitle();
    return std::nullopt;
}

QString shownText(const QWidget& widget) {
    if (const std::optional<QString> text = ownText(widget)) return *text;
    for (const QWidget* part : widget.findChildren<QWidget*>()) {
        if (part->isHidden()) continue;
        if (qobject_cast<const QLineEdit*>(part)) return *ownText(*part);
    }
    for (const QWidget* part : widget.findChildren<QWidget*>()) {
        if (part->isHidden()) continue;
        if (const std::optional<QString> text = ownText(*part)) return *text;
    }
    throw StepFailure("a text in " + widget.objectName().toStdString(), "a control without one");
}

QAbstractItemView& requireTable(const std::string& name) {
    QWidget& widget = requireObject(name);
    if (auto* grid = dynamic_cast<TSmartDBGrid_VRO*>(&widget)) return *grid->View();
    if (auto* view = qobject_cast<QAbstractItemView*>(&widget)) return *view;
    if (auto* view = widget.findChild<QAbstractItemView*>()) return *view;
    throw StepFailure("a grid " + name, "another kind of control");
}

QModelIndex requireRow(QAbstractItemView& table, int row) {
    const int count = table.model() ? table.model()->rowCount() : 0;
    if (row >= count) throw StepFailure("row " + std::to_string(row), std::to_string(count) + " rows");
    const std::vector<int> columns = columnsInOrder(table);
    if (columns.empty()) throw StepFailure("a visible column", "none");
    return table.model()->index(row, columns.front());
}

QModelIndex requireCell(const std::string& grid, int row, const std::string& column) {
    QAbstractItemView& table = requireTable(grid);
    const QModelIndex first = requireRow(table, row);
    return first.siblingAtColumn(requireColumn(table, column));
}

bool hasState(const QWidget& widget, ObjectState state) {
    switch (state) {
        case ObjectState::Enabled:
            return widget.isEnabled();
        case ObjectState::Disabled:
            return !widget.isEnabled();
        case ObjectState::Visible:
            return widget.isVisible();
        case ObjectState::Hidden:
            return !widget.isVisible();
        case ObjectState::Focused: {
            const QWidget* focused = focusOn(*widget.window());
            return focused && (focused == &widget || widget.isAncestorOf(focused));
        }
    }
    return false;
}

std::string stateName(ObjectState state) {
    switch (state) {
        case ObjectState::Enabled:
            return "enabled";
        case ObjectState::Disabled:
            return "disabled";
        case ObjectState::Visible:
            return "visible";
        case ObjectState::Hidden:
            return "hidden";
        case ObjectState::Focused:
            return "focused";
    }
    return {};
}

bool readsAs(const QString& shown, const std::string& expected) {
    return plainNumber(shown) == plainNumber(QString::fromStdString(expected));
}

}  // namespace basalt::host
