// Inputs that show digits as Persian ones, whatever keyboard layout they were typed under.
//
//   auto* start = new PersianSpinBox;               // value() is a number as ever
//   edit->setValidator(new PersianDigitsShown(edit));
//   readFromRight(*edit);                           // where its hint stands
//   latinDigits(edit->text())                       // what is stored and compared
#pragma once

#include <QFocusEvent>
#include <QLineEdit>
#include <QSpinBox>
#include <QValidator>

#include "host/screens/persian_digits.h"

namespace basalt::host {

// Its text and its caret stand on the right also while it is empty, when there is no text yet to tell the direction.
inline void readFromRight(QLineEdit& edit) {
    edit.setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
}

class PersianSpinBox : public QSpinBox {
public:
    explicit PersianSpinBox(QWidget* parent = nullptr) : QSpinBox(parent) {
        // As the other inputs of numbers have it.
        setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
    }

    // A size may as well be the largest one when more is typed: without the digit too many a small one would be left.
    // Not so a code, which would be another's.
    void takeTooMuchAsMost() { tooMuchIsMost_ = true; }

protected:
    // What is typed replaces the number: nobody means 9 before the 0 that is there.
    void focusInEvent(QFocusEvent* event) override {
        QSpinBox::focusInEvent(event);
        selectAll();
        // Behind the click, too, which puts the cursor somewhere.
        if (event->reason() == Qt::MouseFocusReason)
            QMetaObject::invokeMethod(this, &QSpinBox::selectAll, Qt::QueuedConnection);
    }
    [[nodiscard]] QString textFromValue(int value) const override { return persianDigits(QString::number(value)); }
    // Emptied, it is none: the number that was there before would come back unseen.
    [[nodiscard]] int valueFromText(const QString& text) const override {
        if (isNone(text)) return 0;
        return QSpinBox::valueFromText(latinDigits(text));
    }
    QValidator::State validate(QString& text, int& cursor) const override {
        if (isNone(text)) return QValidator::Acceptable;
        QString latin = latinDigits(text);
        if (tooMuchIsMost_ && isTooLarge(latin)) {
            latin = QString::number(maximum());
            cursor = static_cast<int>(latin.size());
        }
        const QValidator::State state = QSpinBox::validate(latin, cursor);
        text = persianDigits(latin);
        return state;
    }

private:
    [[nodiscard]] bool isTooLarge(const QString& latin) const {
        constexpr int kMostDigits = 18;
        const QString number = latin.trimmed().left(kMostDigits);
        bool isNumber = false;
        return number.toLongLong(&isNumber) > maximum() && isNumber;
    }
    [[nodiscard]] bool isNone(const QString& text) const {
        return text.trimmed().isEmpty() && minimum() <= 0 && maximum() >= 0;
    }

    bool tooMuchIsMost_ = false;
};

// Takes any text.
class PersianDigitsShown final : public QValidator {
public:
    using QValidator::QValidator;
    State validate(QString& text, int& /*cursor*/) const override {
        text = persianDigits(latinDigits(text));
        return Acceptable;
    }
};

}  // namespace basalt::host
