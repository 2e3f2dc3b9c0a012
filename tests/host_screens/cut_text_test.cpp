// Texts that have no room, and the words under which fields are known.
#include "host/screens/cut_text.h"

#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTextDocument>
#include <QToolTip>

#include "host/screens/field_title.h"
#include "host/screens/theme.h"
#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

const QString kLong = QStringLiteral("کاربران و دسترسی‌های آنان در همه‌ی بخش‌ها");

// Columns of pixels with ink, from the left.
int inked(QWidget& widget) {
    const QImage seen = widget.grab().toImage();
    int columns = 0;
    for (int x = 0; x < seen.width(); ++x) {
        for (int y = 0; y < seen.height(); ++y) {
            if (qGray(seen.pixel(x, y)) > 120) continue;
            ++columns;
            break;
        }
    }
    return columns;
}

TEST(CutTexts, endInAnEllipsisAndShowTheWhole) {
    applyTheme(*qApp);
    QLabel cut(kLong);
    cut.setFixedWidth(120);
    EXPECT_EQ(cutTextAt(cut, {5, 5}), kLong);
    QLabel shortened(cut.fontMetrics().elidedText(kLong, Qt::ElideRight, 120));
    shortened.setFixedWidth(120);
    EXPECT_EQ(inked(cut), inked(shortened));
    QLabel whole(QStringLiteral("بخش"));
    whole.setFixedWidth(120);
    EXPECT_EQ(cutTextAt(whole, {5, 5}), QString());
    QLabel wrapped(kLong);
    wrapped.setWordWrap(true);
    wrapped.setFixedWidth(120);
    wrapped.setFixedHeight(wrapped.heightForWidth(120));
    EXPECT_EQ(cutTextAt(wrapped, {5, 5}), QString());
    wrapped.setFixedHeight(wrapped.fontMetrics().lineSpacing());
    EXPECT_EQ(cutTextAt(wrapped, {5, 5}), kLong);
}

TEST(CutTexts, showWhatLooksLikeMarkupAsItIs) {
    showCutTexts(*qApp);
    const QString name = QStringLiteral("نان & شیر \"تازه\" <b>۱</b> ") + kLong;
    QLabel cut(name);
    cut.setTextFormat(Qt::PlainText);
    cut.setFixedWidth(60);
    QHelpEvent pointed(QEvent::ToolTip, {5, 5}, {5, 5});
    QApplication::sendEvent(&cut, &pointed);
    QTextDocument shown;
    ASSERT_TRUE(Qt::mightBeRichText(QToolTip::text()));
    shown.setHtml(QToolTip::text());
    EXPECT_EQ(shown.toPlainText().toStdString(), name.toStdString());
    QToolTip::hideText();
}

TEST(CutTexts, ofCombosAreKnownToo) {
    applyTheme(*qApp);
    QComboBox combo;
    combo.addItems({QStringLiteral("بخش"), kLong});
    combo.setFixedWidth(150);
    EXPECT_EQ(cutTextAt(combo, {5, 5}), QString());
    combo.setCurrentIndex(1);
    EXPECT_EQ(cutTextAt(combo, {5, 5}), kLong);
}

class FieldTitles : public ScreenTest {};

TEST_F(FieldTitles, areThoseOfInputsOrColumns) {
    QWidget window;
    QLabel label(QStringLiteral("عنوان :"), &window);
    QLineEdit edit(&window);
    edit.setObjectName(QStringLiteral("Name_EDT"));
    label.setBuddy(&edit);
    TSmartDBGrid_VRO* grid = screens.createGrid("Levels_GRD", &window);
    grid->AddColumn({.FieldName = "Comment", .Title = QStringLiteral("توضیحات")});
    EXPECT_EQ(fieldTitle(&window, "name"), "عنوان");
    EXPECT_EQ(fieldTitle(&window, "COMMENT"), "توضیحات");
    EXPECT_EQ(fieldTitle(&window, "AbbName"), "AbbName");
    EXPECT_EQ(fieldTitle(nullptr, "Name"), "Name");
    EXPECT_EQ(inputOf(window, "Name"), &edit);
}

TEST_F(FieldTitles, keepTheSignsThatMarkNoKey) {
    QWidget form;
    QLabel label(QStringLiteral("&عنوان && نشان :"), &form);
    QLineEdit labelled(&form);
    label.setBuddy(&labelled);
    EXPECT_EQ(labelOf(labelled, form).toStdString(), "عنوان & نشان");
    QLineEdit named(&form);
    named.setAccessibleName(QStringLiteral("قیمت ۱ (B&B) :"));
    EXPECT_EQ(labelOf(named, form).toStdString(), "قیمت ۱ (B&B)");
}

}  // namespace
}  // namespace basalt::host
