#include "host/screens/field_title.h"

#include <QLabel>

#include "ado/names.h"
#include "package/screens/controls.h"

namespace basalt::host {
namespace {

// A label of an input marks its key by an & and writes one that is meant as two.
QString withoutMnemonic(const QString& label) {
    QString words;
    for (qsizetype i = 0; i < label.size(); ++i) {
        if (label.at(i) == QLatin1Char('&') && ++i == label.size()) break;
        words += label.at(i);
    }
    return words;
}

QString withoutColon(QString label) {
    label = label.trimmed();
    while (label.endsWith(QLatin1Char(':')))
        label.chop(1);
    return label.trimmed();
}

}  // namespace

QString labelOf(const QWidget& input, const QWidget& form) {
    for (const QLabel* label : form.findChildren<QLabel*>())
        if (label->buddy() == &input) return withoutColon(withoutMnemonic(label->text()));
    return withoutColon(input.accessibleName());
}

QWidget* inputOf(const QWidget& window, const std::string& field) {
    for (QWidget* input : window.findChildren<QWidget*>()) {
        const std::string name = input->objectName().toStdString();
        for (const char* ending : {"_EDT", "_MEM", "_CMB"})
            if (sameName(name, field + ending)) return input;
    }
    return nullptr;
}

std::string fieldTitle(const QWidget* window, const std::string& field) {
    if (!window) return field;
    if (const QWidget* input = inputOf(*window, field)) {
        const QString label = labelOf(*input, *window);
        if (!label.isEmpty()) return label.toStdString();
    }
    for (const QWidget* part : window->findChildren<QWidget*>()) {
        const auto* grid = dynamic_cast<const TSmartDBGrid_VRO*>(part);
        for (int column = 0; grid && column < grid->ColumnCount(); ++column)
            if (sameName(grid->Column(column).FieldName, field)) return grid->Column(column).Title.toStdString();
    }
    return field;
}

}  // namespace basalt::host
