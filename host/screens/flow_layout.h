// Controls side by side as long as there is room, and then in a further row, in the direction of reading.
//
//   auto* row = new FlowLayout(8);
//   row->addWidget(save);
//   page.addLayout(row);
#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace basalt::host {

class FlowLayout final : public QLayout {
public:
    // The pixels between controls and between rows.
    explicit FlowLayout(int spacing);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    [[nodiscard]] QLayoutItem* takeAt(int index) override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override { return place(QRect(0, 0, width, 0), false); }
    // All in one row.
    [[nodiscard]] QSize sizeHint() const override;
    // Each in a row of its own.
    [[nodiscard]] QSize minimumSize() const override;
    void setGeometry(const QRect& area) override;

private:
    // The height that the rows take; moves the controls there when they are to be moved.
    int place(const QRect& area, bool move) const;

    std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace basalt::host
