#include "host/screens/search_edit.h"

#include <QRegularExpressionValidator>
#include <QStyle>

#include "host/screens/persian_digits.h"
#include "host/screens/persian_inputs.h"

namespace basalt::host {
namespace {
const QString kDigits = QStringLiteral("[0-9\u06F0-\u06F9\u0660-\u0669]*");
const QString kAmount =
    QStringLiteral("-?[0-9\u06F0-\u06F9\u0660-\u0669,\u066C\u060C]*([.\u066B][0-9\u06F0-\u06F9\u0660-\u0669]*)?");
constexpr int kLongestInput = 200;

// Digits are shown as in other inputs of numbers, whatever keyboard layout they were typed under.
class NumberValidator final : public QRegularExpressionValidator {
public:
    using QRegularExpressionValidator::QRegularExpressionValidator;
    State validate(QString& text, int& cursor) const override {
        text = persianDigits(latinDigits(text));
        return QRegularExpressionValidator::validate(text, cursor);
    }
};

// Takes any text, and shows it as the list shows what is found.
class TextValidator final : public QValidator {
public:
    using QValidator::QValidator;
    State validate(QString& text, int& /*cursor*/) const override {
        text = screenText(latinDigits(text));
        return Acceptable;
    }
};

}  // namespace

SearchEdit::SearchEdit(const QString& objectName, QWidget* parent) : InnerControl<QLineEdit>(parent) {
    setObjectName(objectName);
    setMaxLength(kLongestInput);
    setClearButtonEnabled(true);
    readFromRight(*this);
}

void SearchEdit::setDataType(TSearchDataType type) {
    delete validator();
    if (type != TSearchDataType::Text) {
        const QString& pattern = type == TSearchDataType::Digits ? kDigits : kAmount;
        setValidator(new NumberValidator(QRegularExpression(pattern), this));
        if (!hasAcceptableInput()) clear();
    } else {
        setValidator(new TextValidator(this));
    }
    setInputMethodHints(type == TSearchDataType::Text ? Qt::ImhNone : Qt::ImhPreferNumbers);
}

void SearchEdit::setUnfinished(bool unfinished) {
    if (unfinished == unfinished_) return;
    unfinished_ = unfinished;
    const QString hint =
        unfinished
            ? QStringLiteral(
                  "عدد هنوز کامل نیست؛ فهرست تا آن هنگام تغییر نمی‌کند.")
            : QString();
    setToolTip(hint);
    setAccessibleDescription(hint);
    setProperty("unfinished", unfinished);
    // The style sheet looks at a property only when it is applied anew.
    style()->unpolish(this);
    style()->polish(this);
}

}  // namespace basalt::host
