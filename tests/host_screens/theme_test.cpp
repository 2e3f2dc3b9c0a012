// Controls of right-to-left screens: where their arrows are, and that their lists show what they hold.
#include "host/screens/theme.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QSpinBox>
#include <QStyleOptionComboBox>
#include <QStyleOptionSpinBox>

#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

class Theme : public ScreenTest {
protected:
    Theme() { applyTheme(*qApp); }

    template <class Box>
    static void show(Box& box, Qt::LayoutDirection direction) {
        box.setLayoutDirection(direction);
        box.resize(160, box.sizeHint().height());
        box.show();
    }
    static void fill(QComboBox& box, int entries) {
        for (int i = 0; i < entries; ++i)
            box.addItem(QStringLiteral("انبار %1").arg(i));
    }
};

TEST_F(Theme, arrowsStandBehindTheText) {
    for (const Qt::LayoutDirection direction : {Qt::RightToLeft, Qt::LeftToRight}) {
        const bool mirrored = direction == Qt::RightToLeft;
        QComboBox box;
        fill(box, 2);
        show(box, direction);
        QStyleOptionComboBox option;
        option.initFrom(&box);
        const auto of = [&](QStyle::SubControl part) {
            return box.style()->subControlRect(QStyle::CC_ComboBox, &option, part, &box);
        };
        const QRect text = of(QStyle::SC_ComboBoxEditField);
        const QRect arrow = of(QStyle::SC_ComboBoxArrow);
        EXPECT_EQ(arrow.center().x() < text.center().x(), mirrored);
        EXPECT_FALSE(arrow.intersects(text));
        EXPECT_GE(text.width(), box.fontMetrics().horizontalAdvance(box.currentText()));

        QSpinBox number;
        number.setMaximum(999);
        show(number, direction);
        QStyleOptionSpinBox spin;
        spin.initFrom(&number);
        spin.buttonSymbols = number.buttonSymbols();
        for (const QStyle::SubControl part : {QStyle::SC_SpinBoxUp, QStyle::SC_SpinBoxDown}) {
            const QRect button = number.style()->subControlRect(QStyle::CC_SpinBox, &spin, part, &number);
            EXPECT_EQ(button.center().x() < number.width() / 2, mirrored);
        }
    }
}

TEST_F(Theme, listsOfBoxesShowUpToTenEntriesWhole) {
    for (const int entries : {1, 2, 3, 4, 10}) {
        QComboBox box;
        fill(box, entries);
        box.setCurrentIndex(entries / 2);
        show(box, Qt::RightToLeft);
        box.showPopup();
        QApplication::processEvents();
        QAbstractItemView& list = *box.view();
        const QRect last = list.visualRect(list.model()->index(entries - 1, 0));
        const QRect first = list.visualRect(list.model()->index(0, 0));
        EXPECT_EQ(first.top(), 0) << entries;
        EXPECT_GE(list.viewport()->height(), last.bottom() + 1) << entries;
        EXPECT_LT(list.viewport()->height(), last.bottom() + first.height()) << entries;
        box.hidePopup();
    }
}

}  // namespace
}  // namespace basalt::host
