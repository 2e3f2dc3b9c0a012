// Parts of a form that stand side by side where there is room for them, and below each other where there is not. What
// has no room even so is scrolled.
//
//   auto* inputs = new PartsArea(panel);
//   inputs->addHead(title);
//   inputs->addPart(prices, 4);
//   inputs->addPart(discounts, 3);
#pragma once

#include <QBoxLayout>
#include <QScrollArea>
#include <vector>

namespace basalt::host {

class PartsArea final : public QScrollArea {
public:
    explicit PartsArea(QWidget* parent = nullptr);

    // Above all parts, in the order of the calls.
    void addHead(QWidget* head);
    void addPart(QWidget* part, int stretch);
    [[nodiscard]] bool isSideBySide() const { return parts_->direction() == QBoxLayout::LeftToRight; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();

    QVBoxLayout* whole_;
    QBoxLayout* parts_;
};

}  // namespace basalt::host
