#include "host/screens/qt_texts.h"

#include <QHash>
#include <QTranslator>
#include <utility>

namespace basalt::host {
namespace {

struct QtText {
    const char* source;
    const char* persian;
};

// The formatter counts bytes of joined letters as columns.
// clang-format off
constexpr QtText kTexts[]{
    // File dialog.
    {"Look in:", "پوشه:"},
    {"File &name:", "نام پرونده:"},
    {"Files of type:", "نوع پرونده:"},
    {"Directory:", "پوشه:"},
    {"&Open", "باز کردن"},
    {"&Save", "ذخیره"},
    {"&Choose", "انتخاب"},
    {"&Rename", "تغییر نام"},
    {"&Delete", "حذف"},
    {"&New Folder", "پوشهٔ تازه"},
    {"New Folder", "پوشهٔ تازه"},
    {"Show &hidden files", "نمایش پرونده‌های پنهان"},
    {"Back", "قبلی"},
    {"Go back", "رفتن به پوشهٔ قبلی"},
    {"Forward", "بعدی"},
    {"Go forward", "رفتن به پوشهٔ بعدی"},
    {"Parent Directory", "پوشهٔ بالاتر"},
    {"Go to the parent directory", "رفتن به پوشهٔ بالاتر"},
    {"Create New Folder", "ساختن پوشه"},
    {"Create a New Folder", "ساختن یک پوشهٔ تازه"},
    {"List View", "فهرست"},
    {"Change to list view mode", "نمایش به شکل فهرست"},
    {"Detail View", "جزئیات"},
    {"Change to detail view mode", "نمایش با جزئیات"},
    {"Sidebar", "جاها"},
    {"List of places and bookmarks", "جاها و نشانه‌ها"},
    {"Files", "پرونده‌ها"},
    {"All Files (*)", "همهٔ پرونده‌ها (*)"},
    {"Show ", "نمایش "},
    {"Remove", "برداشتن از فهرست"},
    {"Recent Places", "جاهای اخیر"},
    {"Save As", "ذخیره با نام"},
    {"Open", "باز کردن"},
    {"Find Directory", "یافتن پوشه"},
    {"%1 already exists.\nDo you want to replace it?", "\u200F«\u2068%1\u2069» هست. آیا پروندهٔ تازه جای آن را بگیرد؟"},
    {"%1\nFile not found.\nPlease verify the correct file name was given.", "پروندهٔ «\u2068%1\u2069» یافت نشد. نام آن را بررسی کنید."},
    {"%1\nDirectory not found.\nPlease verify the correct directory name was given.", "پوشهٔ «\u2068%1\u2069» یافت نشد. نام آن را بررسی کنید."},
    {"'%1' is write protected.\nDo you want to delete it anyway?", "\u200F«\u2068%1\u2069» در برابر نوشتن محافظت شده است. آیا با این حال حذف شود؟"},
    {"Are you sure you want to delete '%1'?", "آیا از حذف «\u2068%1\u2069» مطمئن هستید؟"},
    {"Could not delete directory.", "پوشه حذف نشد."},
    {"Name", "نام"},
    {"Size", "اندازه"},
    {"Type", "نوع"},
    {"Kind", "نوع"},
    {"Date Modified", "تاریخ تغییر"},
    {"Computer", "این رایانه"},
    {"My Computer", "این رایانه"},
    {"Drive", "دیسک"},
    {"Folder", "پوشه"},
    {"File", "پرونده"},
    {"%1 File", "پروندهٔ %1"},
    {"Unknown", "ناشناخته"},
    {"Invalid filename", "نام پذیرفته نیست"},
    {"<b>The name \"%1\" cannot be used.</b><p>Try using another name, with fewer characters or no punctuation marks.", "<b>نام «%1» پذیرفته نیست.</b><p>نامی کوتاه‌تر یا بدون نشانه بدهید."},
    // Editing.
    {"&Undo", "بازگرداندن"},
    {"&Redo", "انجام دوباره"},
    {"Cu&t", "برش"},
    {"&Copy", "رونوشت"},
    {"Copy &Link Location", "رونوشت نشانی پیوند"},
    {"&Paste", "چسباندن"},
    {"Delete", "حذف"},
    {"Select All", "گزینش همه"},
    {"&Select All", "گزینش همه"},
    {"Clear", "پاک کردن"},
    {"&Step up", "یکی بیشتر"},
    {"Step &down", "یکی کمتر"},
    {"Insert Unicode control character", "درج نویسهٔ کنترلی"},
    // Scroll bars.
    {"Scroll here", "آمدن به اینجا"},
    {"Top", "بالاترین جا"},
    {"Bottom", "پایین‌ترین جا"},
    {"Left edge", "لبهٔ چپ"},
    {"Right edge", "لبهٔ راست"},
    {"Page up", "یک صفحه بالا"},
    {"Page down", "یک صفحه پایین"},
    {"Page left", "یک صفحه چپ"},
    {"Page right", "یک صفحه راست"},
    {"Scroll up", "کمی بالا"},
    {"Scroll down", "کمی پایین"},
    {"Scroll left", "کمی چپ"},
    {"Scroll right", "کمی راست"},
    // Standard buttons and windows.
    {"OK", "تأیید"},
    {"&OK", "تأیید"},
    {"Save", "ذخیره"},
    {"Save All", "ذخیرهٔ همه"},
    {"&Yes", "بله"},
    {"Yes to &All", "بله به همه"},
    {"&No", "خیر"},
    {"N&o to All", "خیر به همه"},
    {"Abort", "رها کردن"},
    {"Retry", "دوباره"},
    {"Ignore", "نادیده گرفتن"},
    {"Close", "بستن"},
    {"&Close", "بستن"},
    {"Cancel", "انصراف"},
    {"&Cancel", "انصراف"},
    {"Discard", "دور انداختن"},
    {"Help", "راهنما"},
    {"Apply", "اعمال"},
    {"Reset", "بازنشاندن"},
    {"Restore Defaults", "بازگشت به پیش‌فرض"},
    {"Show Details...", "نمایش جزئیات…"},
    {"Hide Details...", "پنهان کردن جزئیات…"},
};
// clang-format on

class QtTexts final : public QTranslator {
public:
    explicit QtTexts(QObject* parent) : QTranslator(parent) {
        for (const QtText& text : kTexts)
            texts_.insert(QByteArray(text.source), QString::fromUtf8(text.persian));
    }
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* context, const char* source, const char*, int) const override {
        // Names of keys stand on the keyboard as they are.
        if (qstrcmp(context, "QShortcut") == 0) return {};
        return texts_.value(QByteArray::fromRawData(source, static_cast<qsizetype>(qstrlen(source))));
    }

private:
    QHash<QByteArray, QString> texts_;
};

}  // namespace

void translateQtTexts(QCoreApplication& application) {
    static bool translated = false;
    if (std::exchange(translated, true)) return;
    QCoreApplication::installTranslator(new QtTexts(&application));
}

}  // namespace basalt::host
