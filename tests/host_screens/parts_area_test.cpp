// Parts of a form that stand side by side or below each other.
#include "host/screens/parts_area.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QScrollBar>
#include <QtTest>

namespace basalt::host {
namespace {

class Parts : public ::testing::Test {
protected:
    Parts() {
        for (QWidget* part : {&first, &second}) {
            part->setMinimumSize(200, 100);
            area.addPart(part, 1);
        }
        area.addHead(&head);
        head.setFixedHeight(30);
    }
    ~Parts() override {
        for (QWidget* widget : {&first, &second, &head})
            widget->setParent(nullptr);
    }
    void show(int width, int height) {
        area.resize(width, height);
        area.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&area));
        QCoreApplication::processEvents();
    }
    [[nodiscard]] QPoint place(const QWidget& part) const { return part.mapTo(area.widget(), QPoint()); }

    PartsArea area;
    QWidget first;
    QWidget second;
    QWidget head;
};

TEST_F(Parts, standSideBySideWhereThereIsRoom) {
    show(460, 200);
    EXPECT_TRUE(area.isSideBySide());
    EXPECT_EQ(place(first).y(), place(second).y());
    EXPECT_LT(place(head).y(), place(first).y());
    EXPECT_EQ(area.horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(area.verticalScrollBar()->maximum(), 0);
}

TEST_F(Parts, standBelowEachOtherInANarrowWindowAndAreScrolled) {
    show(400, 150);
    EXPECT_FALSE(area.isSideBySide());
    EXPECT_GE(place(second).y(), place(first).y() + 100);
    EXPECT_EQ(area.horizontalScrollBar()->maximum(), 0) << "nothing is out of reach to the side";
    EXPECT_GT(area.verticalScrollBar()->maximum(), 0);
    show(600, 150);
    EXPECT_TRUE(area.isSideBySide());
}

TEST_F(Parts, moveWhenOneOfThemComesToNeedMore) {
    show(460, 200);
    ASSERT_TRUE(area.isSideBySide());
    first.setMinimumWidth(300);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !area.isSideBySide(); }));
}

}  // namespace
}  // namespace basalt::host
