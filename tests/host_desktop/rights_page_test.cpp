#include "host/desktop/rights_page.h"

#include <QHeaderView>

#include "host/services/host_parts.h"
#include "tests/host_desktop/desktop_test.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RightsOnPage : public DesktopTest {
protected:
    RightsOnPage() { open(1); }
    ~RightsOnPage() override { page.reset(); }

    void open(int user) {
        host.signInAs(user);
        page = std::make_unique<RightsPage>(context());
        page->resize(900, 600);
        showActive(*page);
        page->enter();
    }
    [[nodiscard]] QListWidget& users() const { return control<QListWidget>(*page, "Users_LST"); }
    [[nodiscard]] QTableView& table() const { return control<QTableView>(*page, "Rights_GRD"); }
    // By keyboard, as everything here: from the user who is there to the one of that row.
    void goToUser(int row) {
        users().setFocus();
        while (users().currentRow() != row)
            QTest::keyClick(&users(), users().currentRow() < row ? Qt::Key_Down : Qt::Key_Up);
        QCoreApplication::processEvents();
    }
    [[nodiscard]] QModelIndex cell(const QString& part, const QString& permission) const {
        const QAbstractItemModel& model = *table().model();
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.headerData(row, Qt::Vertical).toString() != part) continue;
            for (int column = 0; column < model.columnCount(); ++column)
                if (model.headerData(column, Qt::Horizontal).toString() == permission) return model.index(row, column);
        }
        ADD_FAILURE() << "no " << permission.toStdString() << " of " << part.toStdString();
        return {};
    }
    [[nodiscard]] bool ticked(const QString& part, const QString& permission) const {
        return cell(part, permission).data(Qt::CheckStateRole).toInt() == Qt::Checked;
    }
    void press(const QString& part, const QString& permission) {
        table().setFocus();
        table().setCurrentIndex(cell(part, permission));
        QTest::keyClick(&table(), Qt::Key_Space);
    }
    [[nodiscard]] bool saveIsPossible() const { return control(*page, "SaveRights_BTN").isEnabled(); }
    [[nodiscard]] std::vector<std::string> rules() {
        return linesOf(*session,
                       "SELECT UserCode, SoftwarePart, Permission, Allowed FROM dbo.HostUserPermissions "
                       "ORDER BY SoftwarePart, Permission");
    }

    std::unique_ptr<RightsPage> page;
};

TEST_F(RightsOnPage, areShownByUser) {
    EXPECT_TRUE(users().hasFocus());
    EXPECT_EQ(users().currentItem()->text(), "مریم رستمی");
    EXPECT_TRUE(ticked("سطوح قیمت", "حذف")) << "a manager holds everything";
    EXPECT_EQ(shown(*page, "RightsNote_LBL"),
              "مدیر همهٔ دسترسی‌ها را دارد و چیزی از او گرفته نمی‌شود.");
    goToUser(1);
    EXPECT_TRUE(ticked("سطوح قیمت", "مشاهده"));
    EXPECT_FALSE(ticked("سطوح قیمت", "ویرایش"));
    EXPECT_FALSE(cell("سطوح قیمت", "فعال و غیرفعال کردن").data(Qt::CheckStateRole).isValid()) << "nothing to give";
    EXPECT_FALSE(ticked("لیست‌های انتخابی", "فعال و غیرفعال کردن"));
    EXPECT_EQ(cell("سطوح قیمت", "مشاهده").data(Qt::AccessibleTextRole).toString().toStdString(),
              "مشاهده در سطوح قیمت: دارد");
    EXPECT_EQ(table().accessibleName().toStdString(), "دسترسی‌های علی کریمی");
    EXPECT_FALSE(saveIsPossible());
}

TEST_F(RightsOnPage, areGivenAndTakenByKeyboardAndLogged) {
    goToUser(1);
    press("سطوح قیمت", "ویرایش");
    press("سطوح قیمت", "مشاهده");
    EXPECT_EQ(cell("سطوح قیمت", "ویرایش").data().toString().toStdString(), "ویژه");
    EXPECT_EQ(cell("سطوح قیمت", "مشاهده").data(Qt::AccessibleTextRole).toString().toStdString(),
              "مشاهده در سطوح قیمت: ندارد، ویژه");
    EXPECT_THAT(rules(), IsEmpty()) << "not before they are saved";
    EXPECT_TRUE(saveIsPossible());
    QTest::keyClick(&table(), Qt::Key_F3);
    EXPECT_THAT(rules(), ElementsAre("2|114|2|True", "2|114|6|False"));
    EXPECT_EQ(shown(*page, "RightsState_LBL"), "دسترسی‌های علی کریمی ذخیره شد.");
    EXPECT_FALSE(saveIsPossible());
    EXPECT_EQ(users().currentRow(), 1);
    EXPECT_EQ(table().currentIndex(), cell("سطوح قیمت", "مشاهده")) << "the work goes on where it was";
    const UserLogEntry entry = host.userLog().latest(1).at(0);
    EXPECT_EQ(entry.part, hpUsers);
    EXPECT_EQ(entry.userCode, 1);
    EXPECT_TRUE(entry.text.starts_with("علی کریمی: «")) << entry.text;
    press("سطوح قیمت", "ویرایش");
    EXPECT_EQ(shown(*page, "RightsState_LBL"), "");
}

TEST_F(RightsOnPage, haveTheRoomThatTheirTextsNeed) {
    goToUser(1);
    press("دسته بندی و منطقه بندی", "ویرایش");
    const QAbstractItemView& view = table();
    for (const char* permission : {"مشاهده", "ویرایش", "فعال و غیرفعال کردن"}) {
        const int column = cell("لیست‌های انتخابی", permission).column();
        EXPECT_GE(table().columnWidth(column), view.sizeHintForColumn(column)) << permission;
    }
    EXPECT_GE(table().verticalHeader()->width(), table().verticalHeader()->sizeHint().width());
}

TEST_F(RightsOnPage, areReachedByTabAndClick) {
    goToUser(1);
    QTest::keyClick(&users(), Qt::Key_Tab);
    EXPECT_TRUE(table().hasFocus());
    const QRect box = table().visualRect(cell("سطوح قیمت", "حذف"));
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, box.center());
    EXPECT_TRUE(ticked("سطوح قیمت", "حذف"));
    EXPECT_EQ(table().currentIndex(), cell("سطوح قیمت", "حذف"));
    QTest::keyClick(&table(), Qt::Key_Space);
    EXPECT_FALSE(ticked("سطوح قیمت", "حذف")) << "the keys go on where the mouse was";
    QTest::keyClick(&table(), Qt::Key_Space);
    EXPECT_TRUE(ticked("سطوح قیمت", "حذف"));
    QTest::keyClick(&table(), Qt::Key_Tab);
    EXPECT_TRUE(control(*page, "SaveRights_BTN").hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_THAT(rules(), ElementsAre("2|114|3|True"));
    EXPECT_TRUE(table().hasFocus());
}

TEST_F(RightsOnPage, thatAreAsBeforeAreNoChange) {
    goToUser(1);
    press("سطوح قیمت", "ویرایش");
    press("سطوح قیمت", "ویرایش");
    EXPECT_FALSE(saveIsPossible());
    press("سطوح قیمت", "ویرایش");
    click(*page, "UndoRights_BTN");
    EXPECT_FALSE(ticked("سطوح قیمت", "ویرایش"));
    EXPECT_FALSE(saveIsPossible());
    EXPECT_TRUE(page->mayLeave());
}

TEST_F(RightsOnPage, ofAManagerCannotBeTaken) {
    press("کاربران و دسترسی‌ها", "ویرایش");
    press("سطوح قیمت", "حذف");
    EXPECT_TRUE(ticked("کاربران و دسترسی‌ها", "ویرایش"));
    EXPECT_TRUE(ticked("سطوح قیمت", "حذف"));
    EXPECT_FALSE(saveIsPossible());
}

TEST_F(RightsOnPage, toThisPageAreNotTakenFromOneself) {
    host.permissions().allow(2, hpUsers, prOpen, true);
    host.permissions().allow(2, hpUsers, prEdit, true);
    open(2);
    goToUser(1);
    press("کاربران و دسترسی‌ها", "مشاهده");
    press("کاربران و دسترسی‌ها", "ویرایش");
    EXPECT_TRUE(ticked("کاربران و دسترسی‌ها", "مشاهده"));
    EXPECT_TRUE(ticked("کاربران و دسترسی‌ها", "ویرایش"));
    EXPECT_FALSE(saveIsPossible());
    EXPECT_EQ(cell("کاربران و دسترسی‌ها", "ویرایش").data(Qt::ToolTipRole).toString().toStdString(),
              "کسی نمی‌تواند دسترسی به همین صفحه را از خودش بگیرد.");
    press("کاربران و دسترسی‌ها", "حذف");
    EXPECT_TRUE(saveIsPossible()) << "others can be changed";
}

TEST_F(RightsOnPage, areOnlyLookedAtWithoutThePermission) {
    host.permissions().allow(2, hpUsers, prOpen, true);
    open(2);
    goToUser(1);
    press("سطوح قیمت", "ویرایش");
    EXPECT_FALSE(ticked("سطوح قیمت", "ویرایش"));
    EXPECT_EQ(
        shown(*page, "RightsNote_LBL"),
        "شما دسترسی‌ها را می‌بینید، اما اجازهٔ تغییر آن‌ها را ندارید.");
}

TEST_F(RightsOnPage, areNotStoredWhenThePermissionIsGoneMeanwhile) {
    host.permissions().allow(2, hpUsers, prOpen, true);
    host.permissions().allow(2, hpUsers, prEdit, true);
    open(2);
    goToUser(1);
    press("سطوح قیمت", "ویرایش");
    host.permissions().allow(2, hpUsers, prEdit, false);
    click(*page, "SaveRights_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("HavePermission('کاربران و دسترسی‌ها', 'ویرایش')"));
    EXPECT_FALSE(host.permissions().holds(2, spPriceLevels, prEdit));
}

TEST_F(RightsOnPage, changedElsewhereAreToldAndShown) {
    goToUser(1);
    press("سطوح قیمت", "ویرایش");
    press("سطوح قیمت", "حذف");
    host.permissions().allow(2, spPriceLevels, prEdit, true);
    click(*page, "SaveRights_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgRecordChanged()"));
    EXPECT_THAT(rules(), ElementsAre("2|114|2|True"));
    EXPECT_TRUE(ticked("سطوح قیمت", "ویرایش"));
    EXPECT_FALSE(ticked("سطوح قیمت", "حذف")) << "what is stored";
    EXPECT_FALSE(saveIsPossible());
}

TEST_F(RightsOnPage, ofAUserWhoIsGoneAreTold) {
    goToUser(1);
    press("سطوح قیمت", "ویرایش");
    execute(*session, "DELETE FROM dbo.HostUsers WHERE Code = 2");
    click(*page, "SaveRights_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgUserGone()"));
    EXPECT_EQ(users().count(), 1);
    EXPECT_EQ(users().currentItem()->text(), "مریم رستمی");
}

TEST_F(RightsOnPage, ofAUserWhoIsGoneBeforeTheyAreSavedLeadToTheOneInTheTable) {
    goToUser(1);
    press("سطوح قیمت", "ویرایش");
    execute(*session, "DELETE FROM dbo.HostUsers WHERE Code = 2");
    messages.answers = {mrYes};
    goToUser(0);
    EXPECT_THAT(takeMessages(), ElementsAre("MsgUnsavedChanges('رفتن به کاربر دیگر')", "MsgUserGone()"));
    ASSERT_TRUE(users().currentItem());
    EXPECT_EQ(users().currentItem()->text(), "مریم رستمی");
}

struct LeavingCase {
    const char* name;
    int answer;
    int row;  // of the user who is shown then
    std::vector<std::string> rules;
};

class LeavingRights : public RightsOnPage, public ::testing::WithParamInterface<LeavingCase> {};

TEST_P(LeavingRights, unsavedOnesAreAskedFor) {
    goToUser(1);
    press("سطوح قیمت", "ویرایش");
    messages.answers = {GetParam().answer};
    goToUser(0);
    EXPECT_THAT(takeMessages(), ElementsAre("MsgUnsavedChanges('رفتن به کاربر دیگر')"));
    EXPECT_EQ(users().currentRow(), GetParam().row);
    EXPECT_EQ(table().accessibleName(), GetParam().row == 0 ? "دسترسی‌های مریم رستمی"
                                                            : "دسترسی‌های علی کریمی");
    EXPECT_EQ(saveIsPossible(), GetParam().row == 1);
    EXPECT_EQ(rules(), GetParam().rules);
}

INSTANTIATE_TEST_SUITE_P(Answers, LeavingRights,
                         ::testing::Values(LeavingCase{"saved", mrYes, 0, {"2|114|2|True"}},
                                           LeavingCase{"dropped", mrNo, 0, {}}, LeavingCase{"stayed", mrCancel, 1, {}}),
                         [](const auto& each) { return each.param.name; });

TEST_F(RightsOnPage, unsavedAreAskedForWhenThePageIsLeft) {
    goToUser(1);
    press("سطوح قیمت", "ویرایش");
    messages.answers = {mrCancel};
    EXPECT_FALSE(page->mayLeave());
    EXPECT_TRUE(ticked("سطوح قیمت", "ویرایش"));
    messages.answers = {mrNo};
    EXPECT_TRUE(page->mayLeave());
    EXPECT_FALSE(ticked("سطوح قیمت", "ویرایش"));
    EXPECT_THAT(takeMessages(), ElementsAre("MsgUnsavedChanges()", "MsgUnsavedChanges()"));
}

TEST_F(RightsOnPage, ofAUserWhoMayNotSignInAreMarked) {
    execute(*session, "UPDATE dbo.HostUsers SET Enabled = 0 WHERE Code = 2");
    page->enter();
    EXPECT_EQ(users().item(1)->text().toStdString(), "علی کریمی (غیرفعال)");
}

}  // namespace
}  // namespace basalt::host
