#include "host/counter/amount_dialog.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>
#include <utility>

#include "ado/error.h"
#include "host/counter/counter_scanner.h"
#include "host/screens/number_typing.h"
#include "host/screens/persian_digits.h"
#include "host/screens/persian_inputs.h"
#include "package/numbers.h"

namespace basalt::host {

namespace {

constexpr qsizetype kMostDecimals = 12;  // the ledger keeps fewer

// Nobody sells that many pieces at a counter, nor types decimals that make a barcode.
bool isScan(const QString& typed) {
    const auto point = std::find_if(typed.rbegin(), typed.rend(), [](QChar c) { return !c.isDigit(); });
    return point - typed.rbegin() > (point == typed.rend() ? kShortestBarcode - 1 : kMostDecimals);
}

// As the ledger will have it.
std::optional<Extended> numberIn(const QString& typed) {
    const auto plain = plainAmount(typed);
    if (!plain) return std::nullopt;
    try {
        return asStored(StrToFloat_VRO(plain->toStdString()));
    } catch (const DatabaseError& error) {
        if (error.category() != ErrorCategory::Conversion) throw;
        return std::nullopt;
    }
}

}  // namespace

AmountDialog::AmountDialog(const QString& place, const CounterLine& line, KnowsScan knows, QWidget* parent)
    : QDialog(parent),
      price_(line.price),
      shown_(amountText(line.amount)),
      burst_(kShortestScan, kShortestBarcode - 1) {
    burst_.knows = std::move(knows);
    setObjectName(QStringLiteral("Amount_FRM"));
    setWindowTitle(QStringLiteral("مقدار سطر"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(12);
    auto* title = new QLabel(QStringLiteral("%1: «%2»").arg(place, screenText(QString::fromStdString(line.name))));
    title->setObjectName(QStringLiteral("Line_LBL"));
    title->setTextFormat(Qt::PlainText);
    title->setWordWrap(true);
    layout->addWidget(title);
    auto* row = new QHBoxLayout;
    auto* label = new QLabel(QStringLiteral("مقدار"));
    label->setProperty("kind", QStringLiteral("field"));
    input_ = new QLineEdit(shown_);
    input_->setObjectName(QStringLiteral("Amount_EDT"));
    input_->setAccessibleName(QStringLiteral("مقدار"));
    readFromRight(*input_);
    input_->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    input_->installEventFilter(this);
    input_->selectAll();
    label->setBuddy(input_);
    auto* unit = new QLabel(screenText(QString::fromStdString(line.unit)));
    unit->setTextFormat(Qt::PlainText);
    row->addWidget(label);
    row->addWidget(input_, 1);
    row->addWidget(unit);
    layout->addLayout(row);
    error_ = new QLabel;
    error_->setObjectName(QStringLiteral("Error_LBL"));
    error_->setTextFormat(Qt::PlainText);
    error_->setProperty("kind", QStringLiteral("problem"));
    layout->addWidget(error_);
    auto* buttons = new QHBoxLayout;
    auto* submit = new QPushButton(QStringLiteral("تأیید \u2066Enter\u2069"));
    submit->setObjectName(QStringLiteral("Submit_BTN"));
    submit->setProperty("kind", QStringLiteral("primary"));
    submit->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("انصراف \u2066Esc\u2069"));
    cancel->setObjectName(QStringLiteral("Cancel_BTN"));
    for (QWidget* each : {submit, cancel})
        each->installEventFilter(this);
    buttons->addStretch();
    buttons->addWidget(submit);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    QObject::connect(submit, &QPushButton::clicked, this, [this] { accept(); });
    QObject::connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    QObject::connect(input_, &QLineEdit::textEdited, error_, &QLabel::clear);
    input_->setFocus();
}

void AmountDialog::giveWayTo(const QString& scan) {
    scanned_ = scan;
    reject();
}

bool AmountDialog::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
    auto& key = static_cast<QKeyEvent&>(*event);
    if (watched != input_) {
        // On a button a scan would be lost, and its Enter would press it.
        const bool plain = (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
        if (!plain || key.key() == Qt::Key_Space || key.text().isEmpty() || !key.text()[0].isPrint()) return false;
        input_->setFocus();
        QCoreApplication::sendEvent(input_, &key);
        return true;
    }
    const auto scan = burst_.endedBy(key, input_->text());
    if (!scan) return false;
    const QString typed = scan->before.trimmed();
    if (!typed.isEmpty() && typed != shown_) {
        QString fault;
        amount_ = read(typed, fault);
        if (!amount_) dropped_ = QStringLiteral("«%1» به کار نرفت: %2").arg(typed, fault);
    }
    giveWayTo(scan->text);
    return true;
}

std::optional<Extended> AmountDialog::read(const QString& typed, QString& fault) const {
    const auto amount = numberIn(typed);
    if (amount && *amount > 0 && fitsInvoice(*amount, price_)) return amount;
    fault =
        amount && *amount > 0
            ? QStringLiteral("این مقدار بزرگ‌تر از آن است که در فاکتور بیاید.")
            : QStringLiteral("مقدار باید عددی بزرگ‌تر از صفر باشد.");
    return std::nullopt;
}

void AmountDialog::accept() {
    const QString typed = input_->text().trimmed();
    if (isScan(typed)) {
        giveWayTo(typed);
        return;
    }
    QString fault;
    amount_ = read(typed, fault);
    if (!amount_) {
        error_->setText(fault);
        input_->setFocus();
        input_->selectAll();
        return;
    }
    QDialog::accept();
}

}  // namespace basalt::host
