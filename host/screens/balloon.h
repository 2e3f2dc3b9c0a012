// A short warning at a control, above all windows. It waits for no answer and goes away by itself, or when it is
// clicked.
//
//   Balloon::show(grid, "بیش از ده ستون جا نمی‌شود");
//
// A dialog that opens meanwhile does not take it away: what it says may be about that dialog.
#pragma once

#include <QLabel>
#include <QTimer>

namespace basalt::host {

class Balloon final : public QLabel {
public:
    // Shows the text below the control for a while, in place of one that its window still shows. 0 is the usual time.
    static void show(QWidget& control, const QString& text, int milliseconds = 0);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit Balloon(QWidget& control);
    void pointAt(const QWidget& control);

    QWidget& control_;
    QTimer timer_;
};

}  // namespace basalt::host
