// The table inside a grid: selection by rows, movement by keyboard, a word where there are no rows.
#pragma once

#include <QTableView>

#include "host/screens/inner_control.h"

namespace basalt::host {

class GridModel;

class GridView final : public InnerControl<QTableView> {
public:
    GridView(GridModel& model, QWidget* parent);

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;

private:
    void followFont();
    void keepTopRowWhole();

    const GridModel& rows_;
};

}  // namespace basalt::host
