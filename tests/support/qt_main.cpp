// main() of the widget tests: one QApplication for the whole program, right to left as on the customers' desktops.
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setLayoutDirection(Qt::RightToLeft);
    return RUN_ALL_TESTS();
}
