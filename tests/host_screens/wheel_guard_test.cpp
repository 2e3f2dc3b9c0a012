// The wheel of the mouse changes no input that it only passes over.
#include "host/screens/wheel_guard.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QListView>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "host/screens/persian_inputs.h"
#include "host/screens/theme.h"
#include "tests/host_screens/screen_test.h"
#include "tests/support/wheel.h"

namespace basalt::host {
namespace {

// Inputs in a scroll area that has something to scroll.
class WheelGuard : public ScreenTest {
protected:
    WheelGuard() {
        applyTheme(*qApp);
        for (int i = 0; i < 40; ++i)
            combo->addItem(QStringLiteral("انبار %1").arg(i));
        combo->setCurrentIndex(5);
        editable->addItems({QStringLiteral("0.25"), QStringLiteral("0.5"), QStringLiteral("1")});
        editable->setEditable(true);
        editable->setCurrentIndex(1);
        spin->setRange(0, 99);
        spin->setValue(20);
        fraction->setValue(2.5);
        auto* inside = new QWidget;
        auto* column = new QVBoxLayout(inside);
        for (QWidget* each : std::initializer_list<QWidget*>{other, combo, editable, spin, fraction})
            column->addWidget(each);
        column->addStretch();
        inside->setMinimumHeight(2000);
        area.setWidget(inside);
        area.setWidgetResizable(true);
        area.resize(300, 400);
        area.show();
        area.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&area));
        other->setFocus();
    }
    // How far a step over the widget has scrolled; where it was is restored.
    int scrolledOver(QWidget& input) {
        QScrollBar& bar = *area.verticalScrollBar();
        const int before = bar.value();
        turnWheel(input);
        const int moved = bar.value() - before;
        bar.setValue(before);
        return moved;
    }

    QScrollArea area;
    QLineEdit* other = new QLineEdit;
    QComboBox* combo = new QComboBox;
    QComboBox* editable = new QComboBox;
    PersianSpinBox* spin = new PersianSpinBox;
    QDoubleSpinBox* fraction = new QDoubleSpinBox;
};

TEST_F(WheelGuard, scrollsOverInputsThatHaveNoFocusAndLeavesThemAsTheyAre) {
    for (QWidget* input : std::initializer_list<QWidget*>{combo, editable, spin, fraction}) {
        EXPECT_GT(scrolledOver(*input), 0) << input->metaObject()->className();
        EXPECT_TRUE(other->hasFocus()) << input->metaObject()->className();
        turnWheel(*input, 1);
    }
    EXPECT_EQ(combo->currentIndex(), 5);
    EXPECT_EQ(editable->currentText(), "0.5");
    EXPECT_EQ(spin->value(), 20);
    EXPECT_EQ(fraction->value(), 2.5);
}

TEST_F(WheelGuard, turnsNoClosedComboEvenWithTheFocus) {
    for (QComboBox* each : {combo, editable}) {
        each->setFocus();
        ASSERT_TRUE(each->hasFocus());
        const QString before = each->currentText();
        EXPECT_GT(scrolledOver(*each), 0);
        EXPECT_EQ(each->currentText(), before);
    }
}

TEST_F(WheelGuard, turnsNoSpinBoxEvenWithTheFocus) {
    spin->setFocus();
    ASSERT_TRUE(spin->hasFocus());
    EXPECT_GT(scrolledOver(*spin), 0);
    EXPECT_EQ(spin->value(), 20);
    fraction->setFocus();
    ASSERT_TRUE(fraction->hasFocus());
    EXPECT_GT(scrolledOver(*fraction), 0);
    turnWheel(*fraction, 2);
    EXPECT_EQ(fraction->value(), 2.5);
}

TEST_F(WheelGuard, scrollsAnOpenList) {
    combo->setMaxVisibleItems(5);
    combo->showPopup();
    QScrollBar& bar = *combo->view()->verticalScrollBar();
    bar.setValue(0);
    ASSERT_GT(bar.maximum(), 0);
    turnWheel(*combo->view()->viewport(), -2);
    EXPECT_GT(bar.value(), 0);
    EXPECT_EQ(combo->currentIndex(), 5);
    combo->hidePopup();
}

}  // namespace
}  // namespace basalt::host
