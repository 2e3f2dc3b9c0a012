#include "host/services/message_catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "host/services/message_texts.h"
#include "host/services/output_error.h"

namespace basalt::host {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string textOf(const std::string& operation, std::vector<std::string> arguments) {
    MessageRequest request;
    request.operation = operation;
    request.arguments = std::move(arguments);
    return MessageCatalogue().render(request).text;
}

std::string textOf(int number, std::vector<std::string> arguments) {
    MessageRequest request;
    request.operation = "ShowSmartMessage";
    request.number = number;
    request.arguments = std::move(arguments);
    return MessageCatalogue().render(request).text;
}

TEST(MessageCatalogue, namesTheFieldThatIsMissing) {
    EXPECT_EQ(textOf("MsgRequiredField", {"نام"}), "«نام» را وارد کنید.");
}

TEST(MessageCatalogue, repeatedFieldUsesAWordTwice) {
    EXPECT_EQ(textOf("MsgRepeatedField", {"نام", "سطح قیمتی"}),
              "سطح قیمتی دیگری با همین نام ثبت شده است. لطفاً نام دیگری وارد کنید.");
}

TEST(MessageCatalogue, refusedPermissionSaysWhatAndWhere) {
    const std::string text = textOf("HavePermission", {"سطوح تخفیف", "مشاهده"});
    EXPECT_THAT(text, HasSubstr("«مشاهده»"));
    EXPECT_THAT(text, HasSubstr("«سطوح تخفیف»"));
}

TEST(MessageCatalogue, everyOperationOfTheContractHasASentenceOfItsOwn) {
    std::set<std::string> texts;
    for (const char* operation :
         {"MsgRequiredField", "MsgRepeatedField", "MsgDeleteRow", "MsgDeleteItem", "MSGInUse", "MsgHasSubRecords",
          "DeleteDefault", "NotEditable", "MsgNotSelected", "MsgUnsavedChanges", "MsgUnsavedInvoice", "MsgRecordGone",
          "MsgRecordChanged", "MsgOpenElsewhere", "MsgProgramMissing", "MsgProgramFailed", "MsgTakePersonsPrices",
          "HavePermission"}) {
        const std::string text = textOf(operation, {"الف", "ب"});
        EXPECT_THAT(text, Not(HasSubstr(operation)));
        EXPECT_THAT(text, Not(HasSubstr("%")));
        EXPECT_TRUE(texts.insert(text).second) << operation;
    }
}

TEST(MessageCatalogue, everyNumberOfTheContractHasASentenceOfItsOwn) {
    std::set<std::string> texts;
    for (const int number : {10006, 10010, 10027, 10031, 10152, 10322, 20091, 20149, 30055}) {
        const std::string text = textOf(number, {"الف", "ب"});
        EXPECT_THAT(text, Not(HasSubstr(std::to_string(number))));
        EXPECT_THAT(text, Not(HasSubstr("%")));
        EXPECT_TRUE(texts.insert(text).second) << number;
    }
}

TEST(MessageCatalogue, negativeStockNamesTheGoodsWhenItKnowsThem) {
    EXPECT_THAT(textOf(30055, {"چای، قند"}), HasSubstr("چای، قند"));
    EXPECT_EQ(textOf(30055, {}), "موجودی برخی کالاهای این سند کافی نیست و سند ثبت نشد.");
    EXPECT_THAT(textOf(20091, {}), HasSubstr("آیا ادامه می‌دهید؟"));
}

TEST(MessageCatalogue, missingWordsLeaveNoPlaceholders) {
    EXPECT_EQ(textOf("MsgRequiredField", {}), "«» را وارد کنید.");
}

TEST(MessageCatalogue, placeholdersGoUpToEleven) {
    MessageRequest request;
    request.operation = "ShowTooltipMessage";
    request.arguments = {"%11-%10-%1 100%% %12 %", "a", "2", "3", "4", "5", "6", "7", "8", "9", "j", "k"};
    EXPECT_EQ(MessageCatalogue().render(request).text, "k-j-a 100% a2 %");
}

TEST(MessageCatalogue, unknownMessagesLoseNothing) {
    EXPECT_EQ(textOf("SomethingNew", {"الف", "ب"}), "SomethingNew: الف، ب");
    EXPECT_EQ(textOf(19999, {"الف"}), "پیام 19999: الف");
}

TEST(MessageCatalogue, everyKindOfErrorSaysSomethingElse) {
    const MessageCatalogue catalogue;
    std::set<std::string> texts;
    for (const ErrorCategory category :
         {ErrorCategory::Other, ErrorCategory::Syntax, ErrorCategory::NotFound, ErrorCategory::Constraint,
          ErrorCategory::Conversion, ErrorCategory::Truncation, ErrorCategory::Busy, ErrorCategory::Conflict,
          ErrorCategory::Connection, ErrorCategory::Corrupt, ErrorCategory::DiskFull, ErrorCategory::Version,
          ErrorCategory::Limit}) {
        const std::string text = catalogue.errorText(category);
        EXPECT_FALSE(text.empty());
        EXPECT_TRUE(texts.insert(text).second) << text;
    }
}

TEST(MessageCatalogue, anErrorBecomesAMessageWithItsDetail) {
    const MessageCatalogue catalogue;
    const DatabaseError busy(ErrorCategory::Busy, "HYT00", 1222, "Lock request time out period exceeded.");
    const MessageRequest request = catalogue.errorRequest(busy);
    EXPECT_EQ(request.operation, "DatabaseError");
    EXPECT_EQ(request.kind, MessageKind::Error);
    EXPECT_EQ(request.arguments, (std::vector<std::string>{catalogue.errorText(ErrorCategory::Busy),
                                                           "Lock request time out period exceeded."}));
    EXPECT_EQ(catalogue.render(request).text, catalogue.errorText(ErrorCategory::Busy));
    EXPECT_EQ(catalogue.errorText(OutputError("پرونده نوشته نشد.")), "پرونده نوشته نشد.");
    EXPECT_EQ(catalogue.render(catalogue.errorRequest(OptionsError("نوشته نشد."))).title, "تنظیمات ایستگاه");
    EXPECT_EQ(catalogue.errorRequest(UsageError("x")).operation, "ProgramError");
    EXPECT_FALSE(catalogue.errorRequest(UsageError("x")).isQuestion());
}

TEST(MessageCatalogue, aFileThatIsGoneIsToldAsWhatItIs) {
    const MessageCatalogue catalogue;
    const DatabaseError gone(ErrorCategory::Connection, "08S01", 5173, "The database file was removed.");
    EXPECT_EQ(
        catalogue.errorText(gone),
        "پروندهٔ پایگاه داده در میان کار حذف یا جابه‌جا شده است و چیزی ذخیره نشد. همهٔ پنجره‌های برنامه را ببندید؛ سپس همان پرونده را به جای "
        "خود برگردانید، از نو آغاز کنید یا نسخهٔ پشتیبان را با دستور basalt db restore برگردانید. پیش از آن که پشتیبانی را دستی به آنجا "
        "رونویسی کنید، پرونده‌های «-wal» و «-shm» کنار آن را پاک کنید.");
    EXPECT_EQ(catalogue.errorRequest(gone).arguments.front(), catalogue.errorText(gone));
}

TEST(MessageCatalogue, buttonsArePersian) {
    const MessageCatalogue catalogue;
    EXPECT_EQ(catalogue.buttonText(TMessageButton::Yes), "بله");
    EXPECT_EQ(catalogue.buttonText(TMessageButton::No), "خیر");
    EXPECT_EQ(catalogue.buttonText(TMessageButton::Ok), "تأیید");
    EXPECT_EQ(catalogue.buttonText(TMessageButton::Cancel), "انصراف");
}

}  // namespace
}  // namespace basalt::host
