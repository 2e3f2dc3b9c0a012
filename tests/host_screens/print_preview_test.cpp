// Pages before they are printed.
#include "host/screens/print_preview.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPrinterInfo>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QToolButton>

#include "host/screens/page_view.h"
#include "host/screens/printer_dialog.h"
#include "tests/host_screens/demo_screens.h"
#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

// A page a hundred dots of ink: its number tells how dark the page is.
class Numbered final : public PrintDocument {
public:
    explicit Numbered(int pages) : pages_(pages) {}
    [[nodiscard]] QString title() const override { return name; }
    int layOut(const QPageLayout& paper) override {
        layouts.push_back(paper);
        return paper.orientation() == QPageLayout::Landscape ? 2 * pages_ : pages_;
    }
    void paintPage(QPainter& painter, int page) const override {
        painted.push_back(page);
        painter.fillRect(QRect(0, 0, kPageDpi, kPageDpi), Qt::black);
    }

    QString name = QStringLiteral("فهرست");
    std::vector<QPageLayout> layouts;
    mutable std::vector<int> painted;

private:
    int pages_;
};

class Previews : public ScreenTest {
protected:
    void show() {
        preview = std::make_unique<PrintPreview>(screens.context(), document, pageLayout(), nullptr);
        preview->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(preview.get()));
        view = control<PageView>(*preview, "Page_PNL");
    }
    void press(const QKeySequence& key) {
        QWidget* focused = QApplication::focusWidget();
        QTest::keyClick(focused ? focused : preview.get(), key[0].key(), key[0].keyboardModifiers());
    }
    [[nodiscard]] std::string pageText() {
        return control<QSpinBox>(*preview, "Page_SPN")->text().toStdString() + " " +
               control<QLabel>(*preview, "PageCount_LBL")->text().toStdString();
    }

    Numbered document{3};
    std::unique_ptr<PrintPreview> preview;
    PageView* view = nullptr;
};

TEST_F(Previews, areNoWiderForALongTitle) {
    document.name = QString(60, QLatin1Char('a')) + QStringLiteral(" گزارش").repeated(40);
    show();
    EXPECT_LE(preview->minimumSizeHint().width(), 980);
    EXPECT_LE(preview->width(), 980);
    EXPECT_TRUE(control<QLabel>(*preview, "Title_LBL")->text().endsWith(QStringLiteral("گزارش")));
}

TEST_F(Previews, turnThePagesByKeysAndButtons) {
    show();
    EXPECT_EQ(QApplication::focusWidget(), view);
    EXPECT_EQ(pageText(), "۱ از ۳");
    EXPECT_FALSE(control<QToolButton>(*preview, "PreviousPage_BTN")->isEnabled());
    QTest::mouseClick(control<QToolButton>(*preview, "NextPage_BTN"), Qt::LeftButton);
    EXPECT_EQ(pageText(), "۲ از ۳");
    view->setFocus();
    press(QKeySequence(Qt::Key_End));
    EXPECT_EQ(pageText(), "۳ از ۳");
    EXPECT_FALSE(control<QToolButton>(*preview, "NextPage_BTN")->isEnabled());
    press(QKeySequence(Qt::Key_Home));
    EXPECT_EQ(pageText(), "۱ از ۳");
    press(QKeySequence(QStringLiteral("Ctrl+PgDown")));
    EXPECT_EQ(pageText(), "۲ از ۳");
    auto* number = control<QSpinBox>(*preview, "Page_SPN");
    number->setFocus();
    number->selectAll();
    QTest::keyClicks(number, "3");
    press(QKeySequence(Qt::Key_Return));
    EXPECT_EQ(view->page(), 2);
    EXPECT_TRUE(preview->isVisible());
}

TEST_F(Previews, pageDownReadsOnBehindTheEndOfThePage) {
    show();
    view->setFit(PageView::Fit::Size, 200);
    ASSERT_GT(view->verticalScrollBar()->maximum(), 0);
    press(QKeySequence(Qt::Key_PageDown));
    EXPECT_EQ(view->page(), 0);
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
    press(QKeySequence(Qt::Key_PageDown));
    EXPECT_EQ(view->page(), 1);
    EXPECT_EQ(view->verticalScrollBar()->value(), 0);
    press(QKeySequence(Qt::Key_PageUp));
    EXPECT_EQ(view->page(), 0);
    EXPECT_EQ(view->verticalScrollBar()->value(), view->verticalScrollBar()->maximum());
}

TEST_F(Previews, sizesAreChosenAndTold) {
    show();
    auto* size = control<QComboBox>(*preview, "Zoom_CMB");
    EXPECT_EQ(size->currentText().toStdString(), "پهنای صفحه");
    view->setFit(PageView::Fit::Size, 100);
    EXPECT_EQ(size->currentText().toStdString(), "۱۰۰٪");
    press(QKeySequence(QStringLiteral("Ctrl++")));
    EXPECT_EQ(view->percent(), 125);
    press(QKeySequence(QStringLiteral("Ctrl+-")));
    press(QKeySequence(QStringLiteral("Ctrl+-")));
    EXPECT_EQ(size->currentText().toStdString(), "۷۵٪");
    size->setCurrentIndex(1);
    emit size->activated(1);
    EXPECT_EQ(view->verticalScrollBar()->maximum(), 0) << "a whole page needs no scrolling";
    press(QKeySequence(QStringLiteral("Ctrl+0")));
    EXPECT_EQ(view->fit(), PageView::Fit::Width);
}

TEST_F(Previews, otherPaperIsLaidOutAnew) {
    show();
    view->setPage(2);
    press(QKeySequence(QStringLiteral("Ctrl+L")));
    EXPECT_EQ(document.layouts.back().orientation(), QPageLayout::Landscape);
    EXPECT_EQ(pageText(), "۱ از ۶");
    auto* paper = control<QComboBox>(*preview, "PreviewPaper_CMB");
    paper->setCurrentIndex(1);
    emit paper->activated(1);
    EXPECT_EQ(document.layouts.back().pageSize().id(), QPageSize::A5);
    EXPECT_EQ(document.layouts.back().orientation(), QPageLayout::Landscape);
}

TEST_F(Previews, showInkWhereThePageHasIt) {
    show();
    view->setFit(PageView::Fit::Page);
    const QImage seen = view->viewport()->grab().toImage();
    ASSERT_FALSE(document.painted.empty());
    int dark = 0;
    for (int y = 0; y < seen.height(); ++y)
        for (int x = 0; x < seen.width(); ++x)
            dark += qGray(seen.pixel(x, y)) < 16 ? 1 : 0;
    // An inch square at the size of paper.
    const double inch = 96 * view->percent() / 100.0;
    EXPECT_NEAR(dark, inch * inch, inch * 4);
}

TEST_F(Previews, aPdfHasThePaperThatIsSeen) {
    show();
    QTemporaryDir folder;
    const QString path = folder.filePath("pages.pdf");
    output.files.emplace_back(path);
    press(QKeySequence(QStringLiteral("Ctrl+L")));
    press(QKeySequence(QStringLiteral("Ctrl+S")));
    EXPECT_EQ(output.asked, std::vector<QString>{QStringLiteral("خروجی PDF|فهرست.pdf")});
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().count("/Type /Page\n"), 6);
}

TEST_F(Previews, withoutAPrinterPrintingSaysSo) {
    if (!QPrinterInfo::availablePrinterNames().isEmpty()) GTEST_SKIP() << "this computer has a printer";
    show();
    messages.expect("OutputError");
    press(QKeySequence(QStringLiteral("Ctrl+P")));
    EXPECT_TRUE(preview->isVisible());
}

TEST_F(Previews, escapeLeaves) {
    show();
    press(QKeySequence(Qt::Key_Escape));
    EXPECT_FALSE(preview->isVisible());
}

class PreviewsOfUsers : public DemoScreens {
protected:
    void show() {
        preview = std::make_unique<PrintPreview>(screens.context(), document, pageLayout(), nullptr);
        preview->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(preview.get()));
    }

    Numbered document{1};
    std::unique_ptr<PrintPreview> preview;
};

TEST_F(PreviewsOfUsers, haveTheSizeThatTheirUserGaveThem) {
    show();
    const QSize usual = preview->size();
    const QSize given(usual.width() - 60, usual.height() - 40);
    preview->resize(given);
    QTest::mouseClick(control<SmartButton>(*preview, "Exit_BTN"), Qt::LeftButton);
    EXPECT_FALSE(preview->isVisible());
    show();
    EXPECT_EQ(preview->size(), given);
    preview->close();
    // Whoever signs in instead has given it none.
    host.signInAs(2);
    show();
    EXPECT_EQ(preview->size(), usual);
    preview->close();
    host.signInAs(1);
    show();
    EXPECT_EQ(preview->size(), given);
}

// What is printed is at hand already.
TEST_F(PreviewsOfUsers, doNotNeedTheDatabase) {
    execute(*session, "DROP TABLE HostFormOptions");
    show();
    preview->resize(preview->size() - QSize(60, 40));
    QTest::keyClick(preview.get(), Qt::Key_Escape);
    EXPECT_FALSE(preview->isVisible());
}

TEST(PrinterChoices, nameThePages) {
    PrinterDialog dialog(9, 4, nullptr);
    EXPECT_EQ(dialog.firstPage(), 0);
    EXPECT_EQ(dialog.lastPage(), 8);
    control<QRadioButton>(dialog, "CurrentPage_RDB")->click();
    EXPECT_EQ(dialog.firstPage(), 4);
    EXPECT_EQ(dialog.lastPage(), 4);
    // Who names pages wants those, in whatever order.
    control<QSpinBox>(dialog, "FromPage_SPN")->setValue(7);
    control<QSpinBox>(dialog, "ToPage_SPN")->setValue(2);
    EXPECT_EQ(dialog.firstPage(), 1);
    EXPECT_EQ(dialog.lastPage(), 6);
    EXPECT_EQ(dialog.copies(), 1);
}

}  // namespace
}  // namespace basalt::host
