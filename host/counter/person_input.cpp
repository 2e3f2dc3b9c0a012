#include "host/counter/person_input.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>

namespace basalt::host {

PersonInput::PersonInput(int most) : burst_(kShortestBarcode, QString::number(most).size()) {
    burst_.knows = [this](const QString& text) { return knowsScan && knowsScan(text); };
    setRange(0, most);
}

bool PersonInput::isTooLong() const {
    bool fits = false;
    const qlonglong code = latinDigits(text()).toLongLong(&fits);
    return !text().isEmpty() && (!fits || code > maximum());
}

int PersonInput::codeOf(const QString& text) const {
    if (text.isEmpty()) return 0;
    bool fits = false;
    const int code = latinDigits(text).toInt(&fits);
    return fits && code <= maximum() ? code : settled_;
}

QValidator::State PersonInput::validate(QString& text, int& cursor) const {
    const QValidator::State state = PersianSpinBox::validate(text, cursor);
    const auto isDigit = [](QChar c) { return c.isDigit(); };
    // Too long so far: cut short it would be another person's.
    if (state == QValidator::Invalid && !text.isEmpty() && std::all_of(text.begin(), text.end(), isDigit))
        return QValidator::Intermediate;
    return state;
}

void PersonInput::refuse() {
    const QString typed = text();
    setValue(settled_);
    // The same number again would leave the text.
    lineEdit()->setText(textFromValue(settled_));
    selectAll();
    if (onTooLong) onTooLong(typed);
}

void PersonInput::keyPressEvent(QKeyEvent* event) {
    const auto scan = burst_.endedBy(*event, text());
    if (scan && !(scan->maybeTyped && !burst_.knows(scan->text))) {
        const int before = codeOf(scan->before);
        setValue(before);
        lineEdit()->setText(textFromValue(before));
        if (onScan) onScan(scan->text);
        return;
    }
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (isTooLong()) {
            refuse();
            return;
        }
        PersianSpinBox::keyPressEvent(event);
        settled_ = value();
        return;
    }
    PersianSpinBox::keyPressEvent(event);
}

void PersonInput::focusInEvent(QFocusEvent* event) {
    settled_ = value();
    burst_.forget();
    PersianSpinBox::focusInEvent(event);
}

void PersonInput::focusOutEvent(QFocusEvent* event) {
    burst_.forget();
    if (event->reason() != Qt::PopupFocusReason && isTooLong()) {
        refuse();
        const QSignalBlocker quiet(this);  // the code has not changed
        PersianSpinBox::focusOutEvent(event);
        return;
    }
    PersianSpinBox::focusOutEvent(event);
}

}  // namespace basalt::host
