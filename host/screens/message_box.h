// A message with its buttons, right to left, answered by mouse or keyboard.
//
//   MessageBox box({.title = "حذف", .text = "…", .buttons = {TMessageButton::Yes, TMessageButton::No}}, catalogue,
//   parent); if (box.ask() == mrYes) ...
//
// A text that half of the screen does not hold is scrolled; the buttons are always in sight.
//
// Escape and closing the window give the refusing button where there is one (Cancel, else No), else OK. What a scanner
// types answers nothing. Escape pressed twice closes the box only (escape_rest.h).
#pragma once

#include <QDialog>
#include <QPlainTextEdit>

#include "host/screens/scan_guard.h"
#include "host/services/message_catalogue.h"

namespace basalt::host {

struct MessageBoxContent {
    enum class Mood { Note, Question, Warning, Error };

    QString title;
    QString text;
    QString detail;  // for support; shown on demand
    Mood mood = Mood::Note;
    TMessageButtons buttons{TMessageButton::Ok};
    TMessageButton defaultButton = TMessageButton::Ok;
};

class MessageBox final : public QDialog {
public:
    MessageBox(const MessageBoxContent& content, const MessageCatalogue& catalogue, QWidget* parent);

    // Shows the box until it is answered; a TModalResult.
    [[nodiscard]] int ask();

    void reject() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QWidget* heading(const MessageBoxContent& content);
    [[nodiscard]] QWidget* detailPart(const QString& detail);
    [[nodiscard]] QWidget* buttonRow(const MessageBoxContent& content, const MessageCatalogue& catalogue);

    ScanGuard guard_;
    int answer_ = mrNone;
    int refusal_ = mrNone;
};

}  // namespace basalt::host
