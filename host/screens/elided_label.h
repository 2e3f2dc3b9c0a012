// A label of one line that makes no window wider: what has no room ends in three dots, and text() stays whole.
#pragma once

#include <QLabel>

namespace basalt::host {

class ElidedLabel final : public QLabel {
public:
    using QLabel::QLabel;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace basalt::host
