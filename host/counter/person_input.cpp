#include "host/counter/person_input.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>
#include <utility>

namespace basalt::host {

namespace {

// The shortest barcode that is printed on goods. Nobody types as many characters at this pace.
constexpr qsizetype kShortestScan = 8;
constexpr qint64 kMillisecondsEach = 60;
constexpr qint64 kPause = 400;

}  // namespace

PersonInput::PersonInput(int most) {
    setRange(0, most);
}

bool PersonInput::isTooLong() const {
    bool fits = false;
    const qlonglong code = latinDigits(text()).toLongLong(&fits);
    return !text().isEmpty() && (!fits || code > maximum());
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
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        const bool fast = sinceFirst_.isValid() && sinceFirst_.elapsed() <= kMillisecondsEach * burst_.size();
        const QString typed = std::exchange(burst_, {});
        if (typed.size() >= kShortestScan && fast) {
            setValue(before_);
            lineEdit()->setText(textFromValue(before_));
            if (onScan) onScan(typed);
            return;
        }
        if (isTooLong()) {
            refuse();
            return;
        }
        PersianSpinBox::keyPressEvent(event);
        settled_ = value();
        return;
    }
    const bool plain = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
    if (plain && !event->text().isEmpty() && event->text()[0].isPrint()) {
        if (burst_.isEmpty() || sinceLast_.elapsed() > kPause) {
            burst_.clear();
            before_ = isTooLong() ? settled_ : value();
            sinceFirst_.start();
        }
        burst_ += event->text();
        sinceLast_.start();
    } else if (!event->text().isEmpty()) {
        burst_.clear();  // a scanner corrects nothing
    }
    PersianSpinBox::keyPressEvent(event);
}

void PersonInput::focusInEvent(QFocusEvent* event) {
    settled_ = value();
    burst_.clear();
    PersianSpinBox::focusInEvent(event);
}

void PersonInput::focusOutEvent(QFocusEvent* event) {
    burst_.clear();
    if (event->reason() != Qt::PopupFocusReason && isTooLong()) {
        refuse();
        const QSignalBlocker quiet(this);  // the code has not changed
        PersianSpinBox::focusOutEvent(event);
        return;
    }
    PersianSpinBox::focusOutEvent(event);
}

}  // namespace basalt::host
