// Controls that flow into further rows where one has no room for all.
#include "host/screens/flow_layout.h"

#include <gtest/gtest.h>

#include <QWidget>

namespace basalt::host {
namespace {

class Flow : public ::testing::Test {
protected:
    Flow() {
        page.setLayout(flow);
        for (QWidget*& part : parts) {
            part = new QWidget;
            part->setFixedSize(100, 20);
            flow->addWidget(part);
        }
    }
    QRect place(int part) const { return parts[part]->geometry(); }

    QWidget page;
    FlowLayout* flow = new FlowLayout(10);
    QWidget* parts[3] = {};
};

TEST_F(Flow, standsInOneRowWhereThereIsRoom) {
    page.setLayoutDirection(Qt::LeftToRight);
    flow->setGeometry({0, 0, 320, 20});
    EXPECT_EQ(place(0), QRect(0, 0, 100, 20));
    EXPECT_EQ(place(2), QRect(220, 0, 100, 20));
    EXPECT_EQ(flow->sizeHint(), QSize(320, 20));
    EXPECT_EQ(flow->heightForWidth(320), 20);
}

TEST_F(Flow, goesOnInAFurtherRowFromTheRight) {
    page.setLayoutDirection(Qt::RightToLeft);
    flow->setGeometry({0, 0, 319, 60});
    EXPECT_EQ(place(0), QRect(219, 0, 100, 20));
    EXPECT_EQ(place(1), QRect(109, 0, 100, 20));
    EXPECT_EQ(place(2), QRect(219, 30, 100, 20));
    EXPECT_EQ(flow->heightForWidth(319), 50);
    EXPECT_EQ(flow->heightForWidth(100), 80);
    EXPECT_EQ(flow->minimumSize(), QSize(100, 20));
}

TEST_F(Flow, aHiddenControlTakesNoRoom) {
    page.setLayoutDirection(Qt::LeftToRight);
    parts[0]->hide();
    flow->setGeometry({0, 0, 210, 20});
    EXPECT_EQ(place(1), QRect(0, 0, 100, 20));
    EXPECT_EQ(place(2), QRect(110, 0, 100, 20));
    EXPECT_EQ(flow->sizeHint(), QSize(210, 20));
}

}  // namespace
}  // namespace basalt::host
