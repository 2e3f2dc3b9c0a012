#include "host/desktop/log_page.h"

#include "host/screens/print_document.h"
#include "host/screens/smart_grid.h"
#include "tests/host_desktop/desktop_test.h"
#include "tests/host_screens/painted_text.h"

namespace basalt::host {
namespace {

// Notes what a preview shows first.
class NotedPreview final : public OutputServices {
public:
    std::optional<QString> chooseFile(QWidget*, const QString&, const QString&, const QString&) override { return {}; }
    void preview(ScreenContext&, QWidget*, PrintDocument& document, const QPageLayout& paper) override {
        title = document.title();
        document.layOut(paper);
        PaintedText page;
        QPainter painter(&page);
        document.paintPage(painter, 0);
        painter.end();
        text = page.text();
    }
    QString title;
    QString text;
};

class Log : public DesktopTest {
protected:
    Log() {
        session->run("DELETE FROM dbo.HostUserLog");
        host.signInAs(2);
        clock.set({.year = 2026, .month = 11, .day = 19});
        host.SetUserEvent(spTags, prInsert, "12", false, true);
        host.signInAs(1);
        clock.set({.year = 2026, .month = 11, .day = 21});
        host.SetUserEvent(spPriceLevels, prEdit, "3", false, true);
        host.SetUserEvent(spDiscountLevels, prEdit, "4", false, true);
        page = std::make_unique<LogPage>(context());
        showActive(*page);
        page->enter();
    }
    // The codes of the entries shown, from the top.
    [[nodiscard]] std::string codes() const {
        auto& grid = dynamic_cast<TSmartDBGrid_VRO&>(control(*page, "Log_GRD"));
        const QAbstractItemModel& model = *grid.View()->model();
        int column = 0;
        while (grid.Column(column).FieldName != "Text")
            ++column;
        QStringList texts;
        for (int row = 0; row < model.rowCount(); ++row)
            texts << model.index(row, column).data().toString();
        return texts.join(' ').toStdString();
    }

    std::unique_ptr<LogPage> page;
};

TEST_F(Log, showsTheLatestEntryFirst) {
    EXPECT_EQ(codes(), "۴ ۳ ۱۲");
    EXPECT_EQ(shown(*page, "LogCount_LBL"), "۳ رویداد");
}

TEST_F(Log, isNarrowedByUser) {
    type(*page, "LogSearch_FRM", "كريمي");  // typed on an Arabic keyboard
    EXPECT_TRUE(QTest::qWaitFor([&] { return codes() == "۱۲"; })) << codes();
    type(*page, "LogSearch_FRM", "");
    EXPECT_TRUE(QTest::qWaitFor([&] { return codes() == "۴ ۳ ۱۲"; })) << codes();
}

TEST_F(Log, isNarrowedByPart) {
    auto& parts = control<QComboBox>(*page, "Part_CMB");
    parts.setCurrentIndex(parts.findText("سطوح قیمت"));
    EXPECT_EQ(codes(), "۳");
    EXPECT_EQ(shown(*page, "LogCount_LBL"), "۱ رویداد");
}

TEST_F(Log, isNarrowedByDays) {
    type(*page, "DateTo_EDT", "۱۴۰۵/۰۸/۲۹");
    EXPECT_EQ(codes(), "۱۲");
    type(*page, "DateTo_EDT", "");
    type(*page, "DateFrom_EDT", "1405-8-30");
    EXPECT_EQ(codes(), "۴ ۳");
}

TEST_F(Log, marksADayThatDoesNotExist) {
    type(*page, "DateFrom_EDT", "1405/12/30");
    EXPECT_TRUE(control(*page, "DateFrom_EDT").property("wrong").toBool());
    EXPECT_EQ(codes(), "۴ ۳ ۱۲");
    EXPECT_EQ(shown(*page, "DateProblem_LBL"), "تاریخ درستی نیست و در جستجو نیامد؛ آن را مانند ۱۴۰۵/۰۸/۳۰ بنویسید.");
    type(*page, "DateFrom_EDT", "1405/08/30");
    EXPECT_FALSE(control(*page, "DateFrom_EDT").property("wrong").toBool());
    EXPECT_EQ(shown(*page, "DateProblem_LBL"), "(hidden)");
}

TEST_F(Log, daysThatWereTypedReadAsThoseOfTheList) {
    type(*page, "DateTo_EDT", "14050829");
    EXPECT_EQ(codes(), "۱۲");
    control(*page, "DateFrom_EDT").setFocus();
    EXPECT_EQ(control<QLineEdit>(*page, "DateTo_EDT").text(), "۱۴۰۵/۰۸/۲۹");
    EXPECT_EQ(codes(), "۱۲");
}

TEST_F(Log, aPrintTellsWhatTheLogIsNarrowedTo) {
    NotedPreview output;
    screens.setOutput(output);
    auto& parts = control<QComboBox>(*page, "Part_CMB");
    parts.setCurrentIndex(parts.findText("سطوح قیمت"));
    type(*page, "DateTo_EDT", "14050830");
    dynamic_cast<SmartGrid&>(control(*page, "Log_GRD")).print();
    EXPECT_EQ(output.title.toStdString(), "گزارش عملکرد کاربران");
    // Painted run by run: the digits of the day before the words on their right.
    EXPECT_TRUE(output.text.contains("۱۴۰۵/۰۸/۳۰جستجو: بخش «سطوح قیمت»، تاریخ تا")) << output.text.toStdString();
}

TEST_F(Log, isReadAnewOnRequest) {
    host.SetUserEvent(spPriceLevels, prEdit, "9", false, true);
    EXPECT_EQ(codes(), "۴ ۳ ۱۲");
    QTest::keyClick(&control(*page, "DateTo_EDT"), Qt::Key_F5);
    EXPECT_EQ(codes(), "۹ ۴ ۳ ۱۲");
}

TEST_F(Log, survivesAQuoteInTheSearch) {
    type(*page, "LogSearch_FRM", "o'neil] %_");
    EXPECT_TRUE(QTest::qWaitFor([&] { return codes().empty(); })) << codes();
    EXPECT_TRUE(takeMessages().empty());
}

}  // namespace
}  // namespace basalt::host
