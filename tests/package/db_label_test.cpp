// The label that shows a field of the current row.
#include "package/screens/db_label.h"

#include <gtest/gtest.h>

#include <QImage>

#include "ado/query.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

class DBText : public ::testing::Test {
protected:
    DBText() {
        label.SetDataSource(&source);
        label.SetFieldName("Comment");
        label.resize(300, label.sizeHint().height());
        label.show();
    }
    void show(const std::string& comment) {
        ColumnInfo column;
        column.name = "Comment";
        column.type = FieldType::Text;
        column.size = 4000;
        RowSet rows({column});
        rows.column(0).appendText(comment);
        rows.finishRow();
        session.expect("select Comment from CostLevel", std::move(rows));
        query.Close();
        query.SQL = "select Comment from CostLevel";
        query.Open();
    }
    // How many lines have ink in them.
    [[nodiscard]] int paintedLines() {
        const QImage picture = label.grab().toImage();
        const int height = label.fontMetrics().lineSpacing();
        int lines = 0;
        for (int top = 0; top + height <= picture.height(); top += height) {
            bool ink = false;
            for (int y = top; y < top + height; ++y)
                for (int x = 0; x < picture.width(); ++x)
                    ink = ink || picture.pixelColor(x, y) != picture.pixelColor(0, 0);
            lines += ink ? 1 : 0;
        }
        return lines;
    }

    ScriptedSession session;
    TADOConnection connection{session};
    TADOQuery query{connection, "List_QUR"};
    TDataSource source{&query};
    TDBText label;
};

TEST_F(DBText, aShortTextStandsOnOneLine) {
    show("صنف");
    EXPECT_EQ(paintedLines(), 1);
    EXPECT_EQ(label.toolTip(), "");
}

TEST_F(DBText, aLongTextEndsOnTheThirdLineAndIsWholeInTheToolTip) {
    std::string text;
    for (int i = 0; i < 60; ++i)
        text += "مغازه‌داران <b>صنف</b> ";
    show(text);
    EXPECT_EQ(paintedLines(), 3);
    EXPECT_EQ(label.text().toStdString(), text);
    EXPECT_TRUE(label.toolTip().contains(QStringLiteral("مغازه‌داران &lt;b&gt;صنف&lt;/b&gt;")))
        << label.toolTip().toStdString();
    EXPECT_EQ(label.height(), label.sizeHint().height()) << "the label does not grow with the text";
    show("صنف");
    EXPECT_EQ(label.toolTip(), "");
}

TEST_F(DBText, aLowerLabelHasFewerLines) {
    show("یک\nدو\nسه");
    EXPECT_EQ(label.toolTip(), "");
    label.resize(300, label.minimumSizeHint().height());
    EXPECT_EQ(paintedLines(), 1);
    EXPECT_EQ(label.toolTip(), "") << "short lines stand behind each other";
    label.resize(20, label.height());
    EXPECT_EQ(paintedLines(), 1);
    EXPECT_NE(label.toolTip(), "");
}

TEST_F(DBText, aWiderLabelShowsMore) {
    show(
        "یک دو سه چهار پنج شش هفت هشت نه ده یازده دوازده سیزده چهارده پانزده شانزده هفده هجده نوزده بیست "
        "بیست‌ویک "
        "بیست‌ودو بیست‌وسه بیست‌وچهار بیست‌وپنج");
    label.resize(120, label.height());
    EXPECT_NE(label.toolTip(), "");
    label.resize(2000, label.height());
    EXPECT_EQ(label.toolTip(), "");
}

TEST_F(DBText, linesOfTheTextAreKept) {
    show("یک\r\nدو\nسه");
    EXPECT_EQ(paintedLines(), 3);
    EXPECT_EQ(label.toolTip(), "");
    show("یک\nدو\nسه\nچهار");
    EXPECT_EQ(paintedLines(), 3);
}

TEST_F(DBText, showsNothingWithoutARow) {
    EXPECT_EQ(label.text(), "");
    show("صنف");
    query.Close();
    EXPECT_EQ(label.text(), "");
    EXPECT_EQ(paintedLines(), 0);
}

}  // namespace
}  // namespace basalt
