#include "host/screens/marked_statement.h"

#include <gtest/gtest.h>

#include <QTextBlock>

#include "host/screens/theme.h"

namespace basalt::host {
namespace {

struct MarkCase {
    const char* name;
    const char* message;
    const char* text;
    const char* marked;
};

class Marked : public ::testing::TestWithParam<MarkCase> {};

TEST_P(Marked, areTheWordsAboveTheMarks) {
    const MarkedStatement marked = markedStatement(QString::fromUtf8(GetParam().message));
    EXPECT_EQ(marked.text.toStdString(), GetParam().text);
    EXPECT_EQ(marked.text.mid(marked.begin, marked.length).toStdString(), GetParam().marked);
}

INSTANTIATE_TEST_SUITE_P(
    Messages, Marked,
    ::testing::Values(MarkCase{"aWord",
                               "Invalid column name 'Nam'.\nLine 1, column 8:\nselect Nam from Level\n       ^^^",
                               "Invalid column name 'Nam'.\nLine 1, column 8:\nselect Nam from Level", "Nam"},
                      MarkCase{"theFirstWord", "Incorrect syntax near 'selec'.\nLine 2, column 1:\nselec 1\n^^^^^",
                               "Incorrect syntax near 'selec'.\nLine 2, column 1:\nselec 1", "selec"},
                      MarkCase{"behindPersian",
                               "x\nLine 1, column 26:\nselect * from T where N = 'قیمت عمده' andd 1=1\n"
                               "                                      ^^^^",
                               "x\nLine 1, column 26:\nselect * from T where N = 'قیمت عمده' andd 1=1", "andd"},
                      MarkCase{"aPersianWord", "x\nLine 1, column 8:\nselect قیمت from T\n       ^^^^",
                               "x\nLine 1, column 8:\nselect قیمت from T", "قیمت"},
                      MarkCase{"behindJoinersAndVowels",
                               "x\nLine 1, column 18:\nN'می‌شُد' = here\n          ^^^^",
                               "x\nLine 1, column 18:\nN'می‌شُد' = here", "here"},
                      MarkCase{"behindWideOnes", "x\nLine 1, column 6:\nN'本😀' here\n        ^^^^",
                               "x\nLine 1, column 6:\nN'本😀' here", "here"},
                      MarkCase{"behindTheEnd", "x\nLine 1, column 12:\nselect 1 +\n          ^",
                               "x\nLine 1, column 12:\nselect 1 +", "+"},
                      MarkCase{"anEmptyLine", "x\nLine 1, column 1:\n\n^", "x\nLine 1, column 1:\n", ""},
                      MarkCase{"withMoreBelow", "x\nLine 1, column 1:\nselec 1\n^^^^^\nmore",
                               "x\nLine 1, column 1:\nselec 1\nmore", "selec"},
                      MarkCase{"noMarks", "Conversion failed.", "Conversion failed.", ""},
                      MarkCase{"marksOfNothing", "a\nb\n  ^^", "a\nb\n  ^^", ""}, MarkCase{"nothing", "", "", ""}),
    [](const auto& each) { return each.param.name; });

TEST(MarkedStatements, areShownFromTheLeftWithTheWordsUnderlined) {
    QPlainTextEdit edit;
    edit.setLayoutDirection(Qt::RightToLeft);
    showMarked(edit, QStringLiteral("x\nLine 1, column 1:\nقیمت select\n     ^^^^^^"));
    EXPECT_EQ(edit.layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(edit.document()->defaultTextOption().textDirection(), Qt::LeftToRight);
    ASSERT_EQ(edit.extraSelections().size(), 1);
    EXPECT_EQ(edit.extraSelections().at(0).cursor.selectedText(), "select");
    EXPECT_EQ(edit.extraSelections().at(0).format.underlineStyle(), QTextCharFormat::WaveUnderline);
    EXPECT_EQ(edit.extraSelections().at(0).format.background().color(), themeColors().dangerSoft);
    showMarked(edit, QStringLiteral("another"));
    EXPECT_EQ(edit.toPlainText(), "another");
    EXPECT_TRUE(edit.extraSelections().isEmpty());
}

}  // namespace
}  // namespace basalt::host
