// Which columns a grid shows, and in which order.
#pragma once

#include <QDialog>
#include <QListWidget>
#include <vector>

namespace basalt::host {

struct ColumnChoice {
    int column = 0;
    QString title;
    bool visible = true;
};

class ColumnChooser final : public QDialog {
public:
    ColumnChooser(const std::vector<ColumnChoice>& choices, QWidget* parent);

    // In the order that the user gave them. At least one is visible.
    [[nodiscard]] std::vector<ColumnChoice> choices() const;

private:
    void move(int distance);
    void showState();

    QListWidget* list_;
    QWidget* up_;
    QWidget* down_;
    QWidget* accept_;
};

}  // namespace basalt::host
