// A label of one line that makes no window wider: three dots stand for what has no room, text() stays whole, and a tool
// tip shows it, unless the label has one of its own.
#pragma once

#include <QLabel>

namespace basalt::host {

class ElidedLabel final : public QLabel {
public:
    using QLabel::QLabel;
    // Where the dots stand; at the end when nothing is said.
    void setElideMode(Qt::TextElideMode mode) { mode_ = mode; }
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QString shownText() const;

    Qt::TextElideMode mode_ = Qt::ElideRight;
};

}  // namespace basalt::host
