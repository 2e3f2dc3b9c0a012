// Picking a good: the search narrows the list, and says when it finds nothing.
#include "host/price_editor/good_picker.h"

#include <gmock/gmock.h>

#include <QScrollBar>
#include <QTest>

#include "tests/host_screens/demo_screens.h"

namespace basalt::host {
namespace {

class Picker : public DemoScreens {
protected:
    Picker() { picker.show(); }
    template <class Control>
    Control& control(const char* name) {
        auto* found = picker.findChild<Control*>(QString::fromLatin1(name));
        if (found == nullptr) throw std::logic_error(std::string("there is no ") + name);
        return *found;
    }
    void search(const char* text) { control<QLineEdit>("GoodSearch_EDT").setText(QString::fromUtf8(text)); }
    QListWidget& goods() { return control<QListWidget>("Goods_LST"); }
    QLabel& notice() { return control<QLabel>("NoGoods_LBL"); }

    GoodPicker picker{screens.context(), nullptr};
};

TEST_F(Picker, aSearchThatFindsNothingSaysSoAndIsClearedByItsButton) {
    const int all = goods().count();
    EXPECT_TRUE(goods().isVisible());
    EXPECT_FALSE(notice().isVisible());
    search("  کالای ناپیدا ");
    EXPECT_FALSE(goods().isVisible());
    ASSERT_TRUE(notice().isVisible());
    EXPECT_EQ(notice().text().toStdString(),
              "کالایی با «کالای ناپیدا» پیدا نشد.\nبرای دیدن همهٔ کالاها جستجو را پاک کنید.");
    EXPECT_FALSE(control<QPushButton>("Ok_BTN").isEnabled());
    EXPECT_EQ(picker.goodCode(), 0);
    QTest::mouseClick(&control<QPushButton>("ClearSearch_BTN"), Qt::LeftButton);
    EXPECT_EQ(control<QLineEdit>("GoodSearch_EDT").text(), "");
    EXPECT_EQ(goods().count(), all);
    EXPECT_TRUE(goods().isVisible());
    EXPECT_FALSE(notice().isVisible());
    EXPECT_TRUE(control<QPushButton>("Ok_BTN").isEnabled());
}

TEST_F(Picker, aNameWithoutRoomEndsInDotsAndItsToolTipIsWhole) {
    const QString name = QString::fromUtf8("برنج هاشمی ").repeated(13).trimmed();
    execute(*session, "UPDATE dbo.GoodInf SET Name = ? WHERE Code = 7", {Value(name.toStdString())});
    search("7");
    ASSERT_EQ(picker.goodCode(), 7);
    EXPECT_EQ(goods().visualItemRect(goods().currentItem()).width(), goods().viewport()->width())
        << "a row is as wide as the list, so that its text is cut with dots";
    EXPECT_FALSE(goods().horizontalScrollBar()->isVisible());
    EXPECT_EQ(goods().textElideMode(), Qt::ElideRight);
    EXPECT_EQ(goods().currentItem()->toolTip(), "<p dir=\"auto\">" + name + "</p>");
}

TEST_F(Picker, thereIsAReasonWhyNothingCanBeChosen) {
    search("کالای ناپیدا");
    EXPECT_EQ(control<QPushButton>("Ok_BTN").accessibleDescription(), "فهرست خالی است.");
    search("");
    EXPECT_EQ(control<QPushButton>("Ok_BTN").accessibleDescription(), "");
}

TEST_F(Picker, escapeLeadsBackToTheGoodsAndThenOut) {
    search("کالای ناپیدا");
    QTest::keyClick(&control<QLineEdit>("GoodSearch_EDT"), Qt::Key_Escape);
    EXPECT_TRUE(picker.isVisible());
    EXPECT_TRUE(goods().isVisible());
    EXPECT_EQ(control<QLineEdit>("GoodSearch_EDT").text(), "");
    QTest::keyClick(&control<QLineEdit>("GoodSearch_EDT"), Qt::Key_Escape);
    EXPECT_FALSE(picker.isVisible());
}

TEST_F(Picker, numbersInNamesHaveTheDigitsOfTheScreen) {
    execute(*session, "INSERT INTO GoodInf (Code, Name) VALUES (8057, N'شیر 3 درصد A4')");
    search("8057");
    ASSERT_GE(goods().count(), 1);
    EXPECT_EQ(goods().item(0)->text().toStdString(), "۸۰۵۷   شیر ۳ درصد A4");
}

// Two hundred goods that have 57 in their names or barcodes, all of them before good 8057 by their codes.
TEST_F(Picker, aGoodIsReachedByItsCodeHoweverManyOthersMatch) {
    execute(*session,
            "WITH N AS (SELECT 1 AS n UNION ALL SELECT n + 1 FROM N WHERE n < 250) "
            "INSERT INTO GoodInf (Code, Name, AbbName) SELECT 1000 + n, N'پیچ 8057 نمرهٔ ' + CAST(n AS nvarchar(10)), "
            "N'!99805700' + CAST(n AS nvarchar(10)) FROM N OPTION (MAXRECURSION 300); "
            "INSERT INTO GoodInf (Code, Name) VALUES (8057, N'همان که می‌خواهیم')");
    for (const char* typed : {"8057", "۸۰۵۷", "٨٠٥٧", "  8057 ", " ۸۰۵۷\u00A0", "08057"}) {
        search(typed);
        EXPECT_EQ(picker.goodCode(), 8057) << typed;
        EXPECT_EQ(goods().currentRow(), 0) << typed;
        EXPECT_EQ(goods().count(), std::string(typed) == "08057" ? 1 : 200) << typed;
    }
    // The next key of a longer code leads on to other goods.
    search("80570");
    EXPECT_NE(picker.goodCode(), 8057);
}

TEST_F(Picker, whatWasMeantComesBeforeWhatOnlyHasItSomewhere) {
    execute(*session,
            "INSERT INTO GoodInf (Code, Name, AbbName) VALUES "
            "(7001, N'جعبهٔ 9900', N'!111'), (7002, N'9900 برگی', N'!222'), (7003, N'کیف', N'!5599001'), "
            "(7004, N'کفش', N'!333!99005'), (7005, N'کلاه', N'!444!9900'), (7006, N'شال', N'!۹۹۰۰!555'), "
            "(7007, N'9900', NULL), (9900, N'ساعت', NULL), (99001, N'عینک', NULL)");
    const auto found = [&] {
        std::vector<int> codes;
        for (int row = 0; row < goods().count(); ++row)
            codes.push_back(goods().item(row)->data(Qt::UserRole).toInt());
        return codes;
    };
    for (const char* typed : {"9900", " ۹۹۰۰"}) {
        search(typed);
        EXPECT_EQ(found(), (std::vector<int>{9900, 7005, 7006, 7007, 7002, 7004, 99001, 7001, 7003})) << typed;
    }
    // A barcode of more digits than codes have.
    execute(*session,
            "INSERT INTO GoodInf (Code, Name, AbbName) VALUES (6001, N'نخست', N'!62610010000180'), "
            "(6002, N'دوم', N'!6261001000018')");
    search("6261001000018");
    EXPECT_EQ(found(), (std::vector<int>{6002, 6001}));
    // A name that begins with it comes before one that goes on with it; quotes and signs of patterns are letters.
    execute(*session, "INSERT INTO GoodInf (Code, Name) VALUES (6003, N'نو O''x%[a'), (6004, N'o''X%[a یک')");
    search(" O'x%[a ");
    EXPECT_EQ(found(), (std::vector<int>{6004, 6003}));
}

TEST_F(Picker, enterOpensTheGoodWhoseCodeWasTyped) {
    auto& input = control<QLineEdit>("GoodSearch_EDT");
    QTest::keyClicks(&input, QStringLiteral("7"));
    QTest::keyClick(&input, Qt::Key_Return);
    EXPECT_EQ(picker.result(), QDialog::Accepted);
    EXPECT_EQ(picker.goodCode(), 7);
}

TEST_F(Picker, aSearchThatFailsIsToldAndTheGoodsStay) {
    const int all = goods().count();
    execute(*session, "DROP INDEX IX_GoodInf_AbbName ON dbo.GoodInf ALTER TABLE dbo.GoodInf DROP COLUMN AbbName");
    messages.expect("DatabaseError");
    search("شیر");
    EXPECT_EQ(goods().count(), all);
    EXPECT_TRUE(picker.isVisible());
}

TEST(EmptyCompany, hasNoGoodsAndNoSearchToClear) {
    const auto session = embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
    deployDatabase(*session);
    ReferenceHost host{*session, testOptions()};
    HostScreenServices screens{host};
    GoodPicker picker{screens.context(), nullptr};
    picker.show();
    EXPECT_EQ(picker.findChild<QLabel*>("NoGoods_LBL")->text().toStdString(), "هنوز کالایی تعریف نشده است.");
    EXPECT_TRUE(picker.findChild<QLabel*>("NoGoods_LBL")->isVisible());
    EXPECT_FALSE(picker.findChild<QPushButton*>("ClearSearch_BTN")->isVisible());
}

// Goods enough for a search that takes its time.
class SlowPicker : public Picker {
protected:
    SlowPicker() {
        execute(
            *session,
            "WITH N AS (SELECT 1 AS n UNION ALL SELECT n + 1 FROM N WHERE n < 200) "
            "INSERT INTO GoodInf (Code, Name) SELECT 100000 + A.n * 200 + B.n, N'مهره' FROM N AS A CROSS JOIN N AS B "
            "OPTION (MAXRECURSION 300)");
        picker.activateWindow();
        input.setFocus();
    }
    // Types the first digit, and the rest while it is being searched for.
    void typeDuringTheSearch(const char* rest, int last) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&picker));
        screens.busyNotice().setPatience(0);
        bool pressed = false;
        WhenBusy busy([&](QWidget&) {
            if (std::exchange(pressed, true)) return;
            for (const char* digit = rest; *digit != '\0'; ++digit)
                QTest::sendKeyEvent(QTest::Click, picker.windowHandle(), static_cast<Qt::Key>(*digit),
                                    QString(QLatin1Char(*digit)), Qt::NoModifier);
            QTest::sendKeyEvent(QTest::Click, picker.windowHandle(), static_cast<Qt::Key>(last), QString(),
                                Qt::NoModifier);
        });
        type(&input, QStringLiteral("1"));
        EXPECT_TRUE(pressed);
        neverBusy(screens);
    }

    QLineEdit& input = control<QLineEdit>("GoodSearch_EDT");
};

TEST_F(SlowPicker, whatIsTypedDuringASearchIsLookedForBeforeEnterTakesIt) {
    typeDuringTheSearch("23456", Qt::Key_Return);
    QTRY_VERIFY(!picker.isVisible());
    EXPECT_EQ(picker.result(), QDialog::Accepted);
    EXPECT_EQ(picker.goodCode(), 123456);
}

TEST_F(SlowPicker, aSearchGivenUpIsMadeUpForByEnter) {
    typeDuringTheSearch("23456", Qt::Key_Escape);
    QTRY_COMPARE(input.text().toStdString(), "123456");
    EXPECT_TRUE(picker.isVisible());
    QTest::keyClick(&input, Qt::Key_Return);
    EXPECT_EQ(picker.result(), QDialog::Accepted);
    EXPECT_EQ(picker.goodCode(), 123456);
}

TEST_F(Picker, enterTakesNothingOfAListThatIsNotThatOfTheText) {
    search("7");
    ASSERT_EQ(picker.goodCode(), 7);
    execute(*session, "DROP INDEX IX_GoodInf_AbbName ON dbo.GoodInf ALTER TABLE dbo.GoodInf DROP COLUMN AbbName");
    messages.expect("DatabaseError");
    search("8");
    EXPECT_EQ(
        control<QLabel>("GoodCount_LBL").text().toStdString(),
        "این‌ها کالاهای جستجوی پیشین‌اند؛ برای جستجو Enter را بزنید");
    messages.expect("DatabaseError");
    QTest::keyClick(&control<QLineEdit>("GoodSearch_EDT"), Qt::Key_Return);
    EXPECT_TRUE(picker.isVisible());
    // Not the one that is double-clicked there either.
    messages.expect("DatabaseError");
    emit goods().itemActivated(goods().currentItem());
    EXPECT_TRUE(picker.isVisible());
    execute(*session, "ALTER TABLE dbo.GoodInf ADD AbbName nvarchar(200)");
    QTest::keyClick(&control<QLineEdit>("GoodSearch_EDT"), Qt::Key_Return);
    EXPECT_FALSE(picker.isVisible());
    EXPECT_EQ(picker.goodCode(), 8);
}

}  // namespace
}  // namespace basalt::host
