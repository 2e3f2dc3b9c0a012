// A list of columns to tick and to bring into order.
#pragma once

#include <QListWidget>
#include <QPushButton>
#include <QWidget>
#include <functional>
#include <vector>

namespace basalt::host {

struct ColumnChoice {
    int column = 0;
    QString title;
    bool visible = true;
};

class ColumnList final : public QWidget {
public:
    ColumnList(const std::vector<ColumnChoice>& choices, const QString& accessibleName, QWidget* parent);

    // In the order that the user gave them, with their titles as they are shown.
    [[nodiscard]] std::vector<ColumnChoice> choices() const;
    [[nodiscard]] bool anyVisible() const;

    std::function<void()> onChange;

private:
    void move(int distance);
    void showState();

    QListWidget* list_;
    QPushButton* up_;
    QPushButton* down_;
};

}  // namespace basalt::host
