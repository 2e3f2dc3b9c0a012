// A label of one line that makes no window wider: three dots stand for what has no room, and text() stays whole.
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
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::TextElideMode mode_ = Qt::ElideRight;
};

}  // namespace basalt::host
