// Picking a good: the search narrows the list, and says when it finds nothing.
#include "host/price_editor/good_picker.h"

#include <gmock/gmock.h>

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

TEST_F(Picker, escapeLeadsBackToTheGoodsAndThenOut) {
    search("کالای ناپیدا");
    QTest::keyClick(&control<QLineEdit>("GoodSearch_EDT"), Qt::Key_Escape);
    EXPECT_TRUE(picker.isVisible());
    EXPECT_TRUE(goods().isVisible());
    EXPECT_EQ(control<QLineEdit>("GoodSearch_EDT").text(), "");
    QTest::keyClick(&control<QLineEdit>("GoodSearch_EDT"), Qt::Key_Escape);
    EXPECT_FALSE(picker.isVisible());
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

}  // namespace
}  // namespace basalt::host
