#include "host/services/message_texts.h"

#include <array>

namespace basalt::host {

namespace {

// The formatter counts bytes of joined letters as columns and would cut the sentences to pieces.
// clang-format off
constexpr std::array kOperations = {
    MessageText{"MsgRequiredField", 0, "ورود اطلاعات", "«%1» را وارد کنید.", {}},
    MessageText{"MsgRepeatedField", 0, "اطلاعات تکراری", "%2 دیگری با همین %1 ثبت شده است. لطفاً %1 دیگری وارد کنید.", {}},
    MessageText{"MsgDeleteRow", 0, "حذف", "آیا از حذف این سطر مطمئن هستید؟", {}},
    MessageText{"MsgDeleteItem", 0, "حذف", "آیا از حذف این %1 مطمئن هستید؟", {}},
    MessageText{"MSGInUse", 0, "در حال استفاده", "این %1 در جای دیگری باز است و اکنون نمی‌توان آن را حذف کرد. پس از بسته شدن آن دوباره تلاش کنید.", {}},
    MessageText{"MsgHasSubRecords", 0, "حذف ممکن نیست", "این %1 در بخش‌های دیگر برنامه به کار رفته است و حذف نشد. ابتدا موارد وابسته به آن را حذف کنید.", {}},
    MessageText{"DeleteDefault", 0, "مورد پیش‌فرض", "این %1 از موارد پیش‌فرض برنامه است و %2 آن ممکن نیست.", {}},
    MessageText{"NotEditable", 0, "ویرایش ممکن نیست", "«%1» قابل ویرایش نیست.", {}},
    MessageText{"MsgNotSelected", 0, "انتخاب نشده", "«%1» انتخاب نشده است.", {}},
    MessageText{"MsgUnsavedChanges", 0, "تغییرات ذخیره نشده", "تغییرات این فرم ذخیره نشده است. آیا پیش از %1 ذخیره شود؟", "تغییرات این فرم ذخیره نشده است. آیا پیش از خروج ذخیره شود؟"},
    MessageText{"MsgUnsavedInvoice", 0, "فاکتور ثبت نشده", "فاکتوری که در پیشخوان است ثبت نشده است. آیا پیش از %1 ثبت شود؟ با «خیر» کنار گذاشته می‌شود.", {}},
    MessageText{"MsgLayoutUseless", 0, "ذخیره نشد", "این الگو ذخیره نشد، چون هیچ بارکدی با آن درست خوانده نمی‌شود:\n%1", {}},
    MessageText{"MsgSaveAnyway", 0, "ذخیره با این حال", "شاید این الگو آن نباشد که می‌خواهید:\n%1\nبا این حال ذخیره شود؟", {}},
    MessageText{"MsgNotANumber", 0, "ورود اطلاعات", "«%2» برای «%1» عدد نیست. یک عدد وارد کنید.", {}},
    MessageText{"MsgOutOfRange", 0, "ورود اطلاعات", "«%1» باید از %2 تا %3 باشد.", {}},
    MessageText{"MsgTooManyDigits", 0, "ورود اطلاعات", "«%2» برای «%1» بیش از آن رقم دارد که بی‌کم‌وکاست ذخیره شود. آن را با رقم‌های کمتری وارد کنید.", {}},
    MessageText{"MsgPercentOutOfRange", 0, "ورود اطلاعات", "«%1» درصدی از قیمت است و باید از %2٪ تا %3٪ باشد. مبلغ تخفیف را به درصد بنویسید.", {}},
    MessageText{"MsgFractionOfAmount", 0, "ورود اطلاعات", "«%2» برای «%1» پذیرفته نشد، چون مبلغ‌ها اعشار ندارند. اگر میان هزارگان ممیز گذاشته‌اید، آن را بردارید؛ اگر مبلغ اعشار دارد، نخست «تعداد رقم اعشار مبالغ» را در تنظیمات بیشتر کنید.", {}},
    MessageText{"MsgTooManyDecimals", 0, "ورود اطلاعات", "«%2» برای «%1» پذیرفته نشد، چون مبلغ‌ها بیش از %3 رقم اعشار ندارند. آن را گرد کنید، یا نخست «تعداد رقم اعشار مبالغ» را در تنظیمات بیشتر کنید.", {}},
    MessageText{"MsgTooLong", 0, "ورود اطلاعات", "%1", {}},
    MessageText{"MsgNoSuchGood", 0, "کالا یافت نشد", "کالایی با کد %1 تعریف نشده است.", {}},
    MessageText{"MsgRecordGone", 0, "رکورد یافت نشد", "رکوردی با این کد در این بخش یافت نشد؛ شاید حذف شده یا از نوع دیگری است. فهرست را به‌روز کنید.", {}},
    MessageText{"MsgGoodGone", 0, "کالا یافت نشد", "کالای «%1» در این میان حذف شده است و چیزی ذخیره نشد. این پنجره را بدون ذخیره ببندید.", {}},
    MessageText{"MsgPriceChanged", 0, "تغییر هم‌زمان", "%1 را در این میان کاربر دیگری تغییر داده است و چیزی ذخیره نشد. آیا آنچه اکنون ذخیره شده است به جای نوشتهٔ شما نشان داده شود؟ دیگر تغییرهای شما می‌مانند.", {}},
    MessageText{"MsgUserGone", 0, "کاربر یافت نشد", "این کاربر در این میان حذف شده است و چیزی ذخیره نشد.", {}},
    MessageText{"MsgRecordChanged", 0, "تغییر هم‌زمان", "این رکورد را در این میان کس دیگری تغییر داده است و چیزی ذخیره نشد. اکنون همان که ذخیره شده است نشان داده می‌شود؛ اگر لازم است دوباره تغییرش دهید.", {}},
    MessageText{"MsgOpenElsewhere", 0, "باز در جای دیگر", "این رکورد را %1 در «%2» هم باز کرده است.", "این رکورد در جای دیگری هم باز است."},
    MessageText{"MsgOpenAtWorkstation", 0, "باز در جای دیگر", "این رکورد در ایستگاه «%1» هم باز است.", {}},
    MessageText{"MsgOpenByUser", 0, "باز در جای دیگر", "این رکورد را %1 هم باز کرده است.", {}},
    MessageText{"MsgTakePersonsPrices", 0, "قیمت‌های شخص", "قیمت‌های این شخص با قیمت سطرهایی که پیش از این خوانده‌اید فرق دارد. آیا قیمت آن‌ها از نو گرفته شود؟", {}},
    MessageText{"MsgProgramMissing", 0, "برنامه پیدا نشد", "برنامهٔ «%1» در هیچ‌یک از این پوشه‌ها نیست:\n%2\nآن را در یکی از آن‌ها نصب کنید و دوباره تلاش کنید.", {}},
    MessageText{"MsgProgramFailed", 0, "برنامه اجرا نشد", "برنامهٔ «%1» اجرا نشد. %2", {}},
    MessageText{"HavePermission", 0, "دسترسی ندارید", "شما اجازهٔ «%2» در بخش «%1» را ندارید. برای گرفتن این دسترسی به مدیر سیستم مراجعه کنید.", {}},
    MessageText{"ShowFlashMessage", 0, "توجه", "%1", {}},
    MessageText{"ShowMessage", 0, "پیام", "%1", {}},
    MessageText{"DatabaseError", 0, "خطای پایگاه داده", "%1", {}},
    MessageText{"ProgramError", 0, "خطای برنامه", "%1", {}},
    MessageText{"OutputError", 0, "چاپ و خروجی", "%1", {}},
    MessageText{"OptionsError", 0, "تنظیمات ایستگاه", "%1", {}},
};

constexpr std::array kNumbers = {
    // The answer that deletes is No: the question is whether to leave it.
    MessageText{{}, 10006, "در حال استفاده", "این %1 برای کالاها یا اشخاص به کار رفته است. آیا از حذف آن صرف‌نظر می‌کنید؟", {}},
    MessageText{{}, 10010, "ورود اطلاعات", "«%1» نمی‌تواند %2 باشد.", {}},
    MessageText{{}, 10027, "جابه‌جایی ممکن نیست", "یک دسته نمی‌تواند زیر خودش یا %1 خودش قرار بگیرد.", {}},
    MessageText{{}, 10031, "ورود اطلاعات", "برای «%1» %2 پذیرفته نمی‌شود. یک عدد وارد کنید.", {}},
    MessageText{{}, 10152, "کالا یافت نشد", "کالایی با این بارکد تعریف نشده است.", {}},
    MessageText{{}, 10322, "حداکثر سطح", "دسته‌بندی حداکثر سه سطح دارد و زیر این شاخه نمی‌توان شاخهٔ دیگری قرار داد.", {}},
    MessageText{{}, 20091, "موجودی منفی", "با ثبت این سند موجودی منفی می‌شود:\n%1\nآیا ادامه می‌دهید؟", "با ثبت این سند موجودی برخی کالاها منفی می‌شود. آیا ادامه می‌دهید؟"},
    MessageText{{}, 20149, "دستهٔ پیش‌فرض", "این شاخه برای یک یا چند کاربر فعال شده است. آیا با این حال حذف شود؟", {}},
    MessageText{{}, 30055, "موجودی کافی نیست", "سند ثبت نشد، چون موجودی کافی نیست:\n%1", "موجودی برخی کالاهای این سند کافی نیست و سند ثبت نشد."},
};

}  // namespace

const MessageText* findOperationText(std::string_view operation) {
    for (const MessageText& text : kOperations) {
        if (text.operation == operation) return &text;
    }
    return nullptr;
}

const MessageText* findNumberText(int number) {
    for (const MessageText& text : kNumbers) {
        if (text.number == number) return &text;
    }
    return nullptr;
}

std::string_view errorSentence(ErrorCategory category) {
    switch (category) {
        case ErrorCategory::Syntax:
            return "پایگاه داده دستور برنامه را نفهمید و چیزی تغییر نکرد. این پیام را با جزئیات آن به پشتیبانی بدهید.";
        case ErrorCategory::NotFound:
            return "جدول یا رویه‌ای که برنامه لازم دارد در پایگاه داده نیست. پایگاه داده را به‌روز کنید یا با پشتیبانی تماس بگیرید.";
        case ErrorCategory::Constraint:
            return "این تغییر با اطلاعات دیگر سازگار نیست و ذخیره نشد؛ شاید کد تکراری است یا مورد دیگری به آن وابسته است.";
        case ErrorCategory::Conversion:
            return "یکی از مقدارها از نوع درست نیست یا از محدودهٔ مجاز بیرون است. مقدار را اصلاح کنید و دوباره تلاش کنید.";
        case ErrorCategory::Truncation:
            return "یکی از متن‌ها از اندازهٔ مجاز بلندتر است و چیزی ذخیره نشد. متن را کوتاه‌تر کنید.";
        case ErrorCategory::Busy:
            return "پایگاه داده در دست کاربر دیگری است. چند لحظه صبر کنید و دوباره تلاش کنید.";
        case ErrorCategory::Conflict:
            return "این رکورد را کاربر دیگری در همین فاصله تغییر داده یا حذف کرده است و تغییر شما ذخیره نشد. فهرست را به‌روز کنید، یا این پنجره را ببندید و دوباره باز کنید، و از نو ویرایش کنید.";
        case ErrorCategory::Connection:
            return "ارتباط با پایگاه داده برقرار نیست. شبکه و سرور را بررسی کنید و برنامه را دوباره باز کنید.";
        case ErrorCategory::Corrupt:
            return "پروندهٔ پایگاه داده خراب است یا پایگاه داده نیست. نسخهٔ پشتیبان را با دستور basalt db restore برگردانید یا پروندهٔ دیگری انتخاب کنید.";
        case ErrorCategory::DiskFull:
            return "فضای خالی دیسک تمام شده و چیزی ذخیره نشد. فضا آزاد کنید و دوباره تلاش کنید.";
        case ErrorCategory::Version:
            return "این پایگاه داده با نسخهٔ تازه‌تری از برنامه ساخته شده است. برنامه را به‌روز کنید یا پایگاه دادهٔ دیگری انتخاب کنید.";
        case ErrorCategory::Limit:
            return "درخواست از اندازه‌ای که پایگاه داده می‌پذیرد بزرگ‌تر است. محدودهٔ جستجو را کوچک‌تر کنید.";
        case ErrorCategory::Other:
            break;
    }
    return "پایگاه داده درخواست را انجام نداد و چیزی ذخیره نشد. دوباره تلاش کنید و اگر تکرار شد جزئیات را به پشتیبانی بدهید.";
}

std::string_view numberedErrorSentence(int nativeCode) {
    constexpr int kFileReplaced = 5173;
    if (nativeCode == kFileReplaced)
        return "پروندهٔ پایگاه داده در میان کار حذف یا جابه‌جا شده است و چیزی ذخیره نشد. همهٔ پنجره‌های برنامه را ببندید؛ سپس همان پرونده را به جای خود برگردانید، از نو آغاز کنید یا نسخهٔ پشتیبان را با دستور basalt db restore برگردانید. پیش از آن که پشتیبانی را دستی به آنجا رونویسی کنید، پرونده‌های «-wal» و «-shm» کنار آن را پاک کنید.";
    return {};
}

std::string_view tooLongSentence(bool limitKnown) {
    if (!limitKnown) return "متن «%1» از اندازهٔ مجاز بلندتر است و چیزی ذخیره نشد. آن را کوتاه‌تر کنید.";
    return "«%1» حداکثر %2 نویسه می‌پذیرد؛ متن شما %3 نویسه دارد و چیزی ذخیره نشد. آن را کوتاه‌تر کنید.";
}

// clang-format on

}  // namespace basalt::host
