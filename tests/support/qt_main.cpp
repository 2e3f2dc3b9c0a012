// main() of the widget tests: one QApplication for the whole program, right to left as on the customers' desktops.
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // Listing the tests needs no display either, and is done before ctest can set the environment.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setLayoutDirection(Qt::RightToLeft);
    return RUN_ALL_TESTS();
}
