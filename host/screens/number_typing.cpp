#include "host/screens/number_typing.h"

#include <QAbstractSpinBox>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSpinBox>
#include <QToolTip>
#include <utility>

#include "host/screens/persian_digits.h"

namespace basalt::host {
namespace {

enum class NumberKind { None, Whole, Decimal };

NumberKind kindOf(const QLineEdit& edit) {
    if (qobject_cast<const QDoubleSpinBox*>(edit.parent())) return NumberKind::Decimal;
    if (qobject_cast<const QAbstractSpinBox*>(edit.parent())) return NumberKind::Whole;
    const Qt::InputMethodHints hints = edit.inputMethodHints();
    if (hints & Qt::ImhDigitsOnly) return NumberKind::Whole;
    if (hints & (Qt::ImhFormattedNumbersOnly | Qt::ImhPreferNumbers)) return NumberKind::Decimal;
    return NumberKind::None;
}

// The edit of an input, which may be a part of it; null for anything else.
QLineEdit* editOf(QObject* input) {
    if (auto* edit = qobject_cast<QLineEdit*>(input)) return edit;
    return qobject_cast<QAbstractSpinBox*>(input) ? input->findChild<QLineEdit*>() : nullptr;
}

QString refusal(const QLineEdit& edit) {
    if (const auto* whole = qobject_cast<const QSpinBox*>(edit.parent()))
        return persianDigits(
            QStringLiteral("این‌جا تنها عددی از %1 تا %2 پذیرفته می‌شود.")
                .arg(whole->minimum())
                .arg(whole->maximum()));
    return QStringLiteral("این‌جا تنها عدد پذیرفته می‌شود.");
}

class NumberTyping final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FocusIn) tellRefusals(watched);
        if (event->type() != QEvent::KeyPress || replacing_) return false;
        QLineEdit* edit = editOf(watched);
        if (!edit || edit->isReadOnly()) return false;
        const NumberKind kind = kindOf(*edit);
        if (kind == NumberKind::None) return false;
        auto& key = *static_cast<QKeyEvent*>(event);
        if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return false;
        const QString text = typedNumber(key.text(), kind == NumberKind::Decimal);
        if (text == key.text()) return false;
        QKeyEvent replaced(QEvent::KeyPress, key.key(), key.modifiers(), text, key.isAutoRepeat());
        replaced.setTimestamp(key.timestamp());
        replacing_ = true;
        QCoreApplication::sendEvent(watched, &replaced);
        replacing_ = false;
        event->setAccepted(replaced.isAccepted());
        return true;
    }

private:
    // A key or a paste that the input does not take would otherwise seem lost, or half of it taken.
    void tellRefusals(QObject* input) {
        const QLineEdit* edit = editOf(input);
        if (edit && kindOf(*edit) != NumberKind::None)
            connect(edit, &QLineEdit::inputRejected, this, &NumberTyping::refused, Qt::UniqueConnection);
    }
    void refused() {
        auto* edit = qobject_cast<QLineEdit*>(sender());
        QToolTip::showText(edit->mapToGlobal(QPoint(0, edit->height())), refusal(*edit), edit);
    }

    bool replacing_ = false;
};

}  // namespace

QString typedNumber(QString text, bool decimals) {
    if (decimals) {
        const QChar mark = showsPersianDigits() ? QChar(u'\u066B') : QChar(u'.');
        for (const char16_t typed : {u'.', u'/', u'\u066B'})
            text.replace(QChar(typed), mark);
    }
    return persianDigits(latinDigits(std::move(text)));
}

std::optional<QString> plainAmount(const QString& text) {
    static const QRegularExpression number(QRegularExpression::anchoredPattern(
        QStringLiteral("-?(?=[0-9]|[./\u066B][0-9])"
                       "(?:[0-9]*|[1-9][0-9]{0,2}([,\u066C\u060C])[0-9]{3}(?:\\1[0-9]{3})*)"
                       "(?:[./\u066B][0-9]*)?")));
    QString plain = latinDigits(text.trimmed());
    const QRegularExpressionMatch match = number.match(plain);
    if (!match.hasMatch()) return std::nullopt;
    if (match.hasCaptured(1)) plain.remove(match.captured(1));
    for (const char16_t mark : {u'/', u'\u066B'})
        plain.replace(QChar(mark), QLatin1Char('.'));
    // Half may be typed without its nought, and two with a mark that nothing follows.
    if (plain.endsWith(QLatin1Char('.'))) plain.chop(1);
    const qsizetype first = plain.startsWith(QLatin1Char('-')) ? 1 : 0;
    if (plain.at(first) == QLatin1Char('.')) plain.insert(first, QLatin1Char('0'));
    return plain;
}

// By its letters: it may have more digits than any number of a list.
QString groupedAmount(const QString& plain) {
    constexpr qsizetype kGroup = 3;
    QString sign;
    QString whole = plain;
    if (whole.startsWith(QLatin1Char('-'))) {
        sign = QStringLiteral("-");
        whole.remove(0, 1);
    }
    QString fraction;
    if (const qsizetype point = whole.indexOf(QLatin1Char('.')); point >= 0) {
        fraction = whole.mid(point + 1);
        whole.truncate(point);
    }
    while (fraction.endsWith(QLatin1Char('0')))
        fraction.chop(1);
    while (whole.size() > 1 && whole.startsWith(QLatin1Char('0')))
        whole.remove(0, 1);
    if (whole.isEmpty()) whole = QStringLiteral("0");
    for (qsizetype at = whole.size() - kGroup; at > 0; at -= kGroup)
        whole.insert(at, QLatin1Char(','));
    return sign + whole + (fraction.isEmpty() ? QString() : QLatin1Char('.') + fraction);
}

void watchNumberTyping(QApplication& application) {
    static bool watching = false;
    if (std::exchange(watching, true)) return;
    application.installEventFilter(new NumberTyping(&application));
}

}  // namespace basalt::host
