// One category of the picker's chips. A click, Space or Enter, Delete and Backspace take it away.
#pragma once

#include <QToolButton>
#include <functional>

namespace basalt::host {

class CategoryChip final : public QToolButton {
public:
    CategoryChip(const QString& objectName, QWidget* parent);

    // `last` is the lowest of the chips, which goes alone.
    void setCategory(const QString& name, bool last);

    std::function<void()> OnTake;

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace basalt::host
