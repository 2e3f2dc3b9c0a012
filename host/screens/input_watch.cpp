#include "host/screens/input_watch.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTextEdit>

namespace basalt::host {

void InputWatch::add(QWidget& form) {
    for (QWidget* widget : form.findChildren<QWidget*>()) {
        if (known_.contains(widget)) continue;
        known_.insert(widget);
        watch(widget);
    }
}

void InputWatch::watch(QWidget* input) {
    const auto changed = [this] { tell(); };
    // Edits inside spin boxes and combo boxes are line edits too, so typing there is seen here.
    if (auto* line = qobject_cast<QLineEdit*>(input)) {
        QObject::connect(line, &QLineEdit::textEdited, &connections_, changed);
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(input)) {
        QObject::connect(plain, &QPlainTextEdit::textChanged, &connections_, changed);
    } else if (auto* rich = qobject_cast<QTextEdit*>(input)) {
        QObject::connect(rich, &QTextEdit::textChanged, &connections_, changed);
    } else if (auto* combo = qobject_cast<QComboBox*>(input)) {
        QObject::connect(combo, &QComboBox::currentIndexChanged, &connections_, changed);
    } else if (auto* whole = qobject_cast<QSpinBox*>(input)) {
        QObject::connect(whole, &QSpinBox::valueChanged, &connections_, changed);
    } else if (auto* real = qobject_cast<QDoubleSpinBox*>(input)) {
        QObject::connect(real, &QDoubleSpinBox::valueChanged, &connections_, changed);
    } else if (auto* moment = qobject_cast<QDateTimeEdit*>(input)) {
        QObject::connect(moment, &QDateTimeEdit::dateTimeChanged, &connections_, changed);
    } else if (auto* button = qobject_cast<QAbstractButton*>(input)) {
        QObject::connect(button, &QAbstractButton::toggled, &connections_, changed);
    }
}

}  // namespace basalt::host
