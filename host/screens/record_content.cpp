#include "host/screens/record_content.h"

#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <optional>

#include "host/screens/field_title.h"
#include "host/screens/persian_digits.h"

namespace basalt::host {
namespace {

std::optional<QString> textOf(const QWidget* input) {
    if (const auto* combo = qobject_cast<const QComboBox*>(input)) return combo->currentText();
    if (const auto* spin = qobject_cast<const QAbstractSpinBox*>(input)) return spin->text();
    if (const auto* plain = qobject_cast<const QPlainTextEdit*>(input)) return plain->toPlainText();
    if (const auto* check = qobject_cast<const QCheckBox*>(input))
        return check->isChecked() ? QStringLiteral("بله") : QStringLiteral("خیر");
    const auto* line = qobject_cast<const QLineEdit*>(input);
    // The edit inside a combo or spin box is not an input of its own.
    const bool inner = line && (qobject_cast<const QComboBox*>(line->parent()) ||
                                qobject_cast<const QAbstractSpinBox*>(line->parent()));
    if (line && !inner) return line->text();
    return std::nullopt;
}

}  // namespace

RecordContent::RecordContent(QString title, const QWidget& form) : title_(std::move(title)) {
    columns_ = {{QStringLiteral("عنوان"), FieldType::Text, {}, 160},
                {QStringLiteral("مقدار"), FieldType::Text, {}, 440}};
    for (const QLabel* label : form.findChildren<QLabel*>())
        if (label->property(kHeadingProperty).toBool() && label->isVisibleTo(&form)) heading_.push_back(label->text());
    for (const QWidget* input : form.findChildren<QWidget*>()) {
        const std::optional<QString> text = textOf(input);
        if (!text || !input->isVisibleTo(&form)) continue;
        const QString label = labelOf(*input, form);
        if (!label.isEmpty()) lines_.push_back({label, *text});
    }
}

Value RecordContent::value(int row, int column) const {
    const Line& line = lines_[static_cast<std::size_t>(row)];
    return (column == 0 ? line.label : line.text).toStdString();
}

QString RecordContent::shown(int row, int column) const {
    const Line& line = lines_[static_cast<std::size_t>(row)];
    return screenText(column == 0 ? line.label : line.text);
}

}  // namespace basalt::host
