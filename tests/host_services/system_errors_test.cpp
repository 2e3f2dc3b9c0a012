#include "host/services/system_errors.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace basalt::host {
namespace {

std::error_code numbered(int number) {
    return {number, std::generic_category()};
}

TEST(FileErrors, areToldInTheUsersWords) {
    const auto sentence = [](int number) { return fileErrorSentence(numbered(number)); };
    // clang-format off
    EXPECT_EQ(sentence(ENOSPC), "روی دیسک جای خالی نمانده است.");
    EXPECT_EQ(sentence(EACCES), "اجازهٔ نوشتن در این جا را ندارید.");
    EXPECT_EQ(sentence(EROFS), "این دیسک فقط‌خواندنی است.");
    EXPECT_EQ(sentence(ENAMETOOLONG), "نام پرونده بلندتر از آن است که دیسک می‌پذیرد.");
    EXPECT_EQ(sentence(EINVAL), "دیسک چنین نامی را نمی‌پذیرد.");
    EXPECT_EQ(sentence(ENOENT), "پوشهٔ آن پیدا نشد.");
    EXPECT_EQ(sentence(ENOTDIR), "پوشهٔ آن پیدا نشد.");
    EXPECT_EQ(sentence(EISDIR), "پوشه‌ای با همین نام هست.");
    EXPECT_EQ(sentence(EEXIST), "پرونده‌ای با همین نام هست.");
    EXPECT_EQ(sentence(EMFILE), "برنامه پرونده‌های بازِ بسیار دارد. چند پنجره را ببندید و دوباره تلاش کنید.");
    EXPECT_EQ(sentence(ENFILE), "سیستم پرونده‌های بازِ بسیار دارد. چند برنامه را ببندید و دوباره تلاش کنید.");
    EXPECT_EQ(sentence(ENOMEM), "حافظهٔ کافی برای این کار نیست.");
    EXPECT_EQ(sentence(ETXTBSY), "برنامهٔ دیگری آن را در دست دارد.");
    EXPECT_EQ(sentence(ENODEV), "این دیسک در دسترس نیست.");
    EXPECT_EQ(sentence(EIO), "دیسک هنگام خواندن یا نوشتن خطا داد.");
#ifdef EDQUOT
    EXPECT_EQ(sentence(EDQUOT), "سهم شما از دیسک پر شده است.");
#endif
    // clang-format on
}

TEST(ProgramErrors, areToldInTheUsersWords) {
    const auto sentence = [](int number) { return programErrorSentence("/opt/a: " + numbered(number).message()); };
    EXPECT_EQ(sentence(EACCES), "اجازهٔ اجرای آن را ندارید.");
    EXPECT_EQ(sentence(ENOENT), "چیزی که این برنامه برای اجرا لازم دارد پیدا نشد.");
    EXPECT_EQ(sentence(ENOEXEC), "این پرونده برنامه‌ای برای این سیستم نیست.");
    EXPECT_EQ(sentence(ENOMEM), "حافظهٔ کافی برای این کار نیست.");
    EXPECT_EQ(sentence(EMLINK), "") << "no reason that a program does not start for";
    EXPECT_EQ(programErrorSentence(""), "");
}

TEST(FileErrors, othersAreToldInTheSystemsWordsInTheirOwnDirection) {
    const std::error_code other = std::make_error_code(std::errc::no_link);
    EXPECT_EQ(fileErrorSentence(other), "پاسخ سیستم: \u2066" + other.message() + "\u2069");
}

}  // namespace
}  // namespace basalt::host
