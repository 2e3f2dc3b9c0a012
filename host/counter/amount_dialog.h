// Asks for the amount of a line that is sold by piece.
//
//   AmountDialog dialog(place, line, knows, parent);
//   dialog.exec();
//   if (dialog.amount()) invoice.setAmount(index, *dialog.amount());
//   if (!dialog.dropped().isEmpty()) say(dialog.dropped());
//   if (!dialog.scanned().isEmpty()) scan(dialog.scanned());
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <functional>
#include <optional>

#include "host/counter/counter_invoice.h"
#include "host/counter/scan_burst.h"

namespace basalt::host {

class AmountDialog final : public QDialog {
public:
    using KnowsScan = std::function<bool(const QString& text)>;

    // place: how the line is called, "سطر ۳" for one. knows: whether a text is a barcode that means something.
    AmountDialog(const QString& place, const CounterLine& line, KnowsScan knows, QWidget* parent);

    // Tells, and stays, when what is typed is no amount above zero or too much for an invoice. As many digits as
    // barcodes have are one, and so is what comes at the pace of a scanner, which does not know what is on the screen.
    // The dialog then closes; an amount that was typed before the scan counts as if Enter had been pressed.
    void accept() override;

    // In the line's unit; nullopt when it stays as it was.
    [[nodiscard]] std::optional<Extended> amount() const { return amount_; }
    // The barcode that came; empty for none.
    [[nodiscard]] const QString& scanned() const { return scanned_; }
    // Why what was typed before it is not the amount, in a sentence; empty where nothing was, or it is.
    [[nodiscard]] const QString& dropped() const { return dropped_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void giveWayTo(const QString& scan);
    // The amount, or nullopt and why it is none.
    [[nodiscard]] std::optional<Extended> read(const QString& typed, QString& fault) const;

    Extended price_;
    QString shown_;  // the amount that the line has
    std::optional<Extended> amount_;
    QString scanned_;
    QString dropped_;
    ScanBurst burst_;
    QLineEdit* input_ = nullptr;
    QLabel* error_ = nullptr;
};

}  // namespace basalt::host
