// A short note near the lower edge of a window, which waits for no answer and goes away by itself.
#pragma once

#include <QFrame>
#include <QLabel>
#include <QTimer>

namespace basalt::host {

class Toast final : public QFrame {
public:
    // Shows the text on the window for a while; a note that is still there is replaced. 0 picks a time by the length.
    static void show(QWidget* window, const QString& text, int milliseconds = 0);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit Toast(QWidget* window);
    void place();

    QLabel* label_;
    QTimer timer_;
};

}  // namespace basalt::host
