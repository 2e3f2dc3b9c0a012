#include "host/desktop/database_start.h"

#include <filesystem>
#include <system_error>

#include "host/engines/open_database.h"
#include "host/services/deploy.h"
#include "host/services/message_catalogue.h"
#include "host/services/path_text.h"

namespace basalt::host {
namespace {

bool fileIsMissing(const DatabaseUrl& url) {
    if (url.engine != EngineKind::Embedded || url.inMemory()) return false;
    std::error_code ignored;
    return !std::filesystem::exists(pathFromText(url.target), ignored);
}

std::string problemTitle(ErrorCategory category) {
    switch (category) {
        case ErrorCategory::Busy:
            return "پایگاه داده در دست برنامهٔ دیگری است";
        case ErrorCategory::Corrupt:
            return "پروندهٔ پایگاه داده آسیب دیده است";
        case ErrorCategory::DiskFull:
            return "جای خالی روی دیسک نمانده است";
        case ErrorCategory::Version:
            return "این پایگاه داده از نسخهٔ تازه‌تری از برنامه است";
        default:
            return "پایگاه داده باز نشد";
    }
}

}  // namespace

OpenedDatabase openForDesktop(const DatabaseUrl& url, StartOptions options) {
    OpenedDatabase opened;
    if (options.createMissing && fileIsMissing(url)) {
        createDatabase(url, true);
        opened.notice = "نخستین اجرای برنامه است؛ یک پایگاه دادهٔ نمایشی برایتان ساخته شد.";
    }
    opened.session = openDatabase(url);
    switch (schemaState(*opened.session)) {
        case SchemaState::Current:
            break;
        case SchemaState::Older:
            deployDatabase(*opened.session);
            opened.notice = "پایگاه داده به نسخهٔ این برنامه به‌روز شد.";
            break;
        case SchemaState::Missing:
            throw ForeignDatabase(url.display() + " holds none of this program's tables");
    }
    return opened;
}

DatabaseProblem describeProblem(const std::exception& error) {
    // The formatter would cut the sentences to pieces.
    // clang-format off
    if (dynamic_cast<const MissingDatabase*>(&error))
        return {"پروندهٔ پایگاه داده پیدا نشد", "شاید جابه‌جا یا پاک شده باشد. پروندهٔ دیگری برگزینید یا یک پایگاه دادهٔ نمایشی بسازید."};
    if (dynamic_cast<const ForeignDatabase*>(&error))
        return {"این پرونده، پایگاه دادهٔ بازالت نیست", "پروندهٔ دیگری برگزینید یا یک پایگاه دادهٔ نمایشی بسازید."};
    if (dynamic_cast<const FileExists*>(&error))
        return {"پایگاه داده ساخته نشد", "پرونده‌ای با این نام هست. نام دیگری برگزینید."};
    if (dynamic_cast<const DatabaseRemains*>(&error))
        return {"پایگاه داده ساخته نشد", "از پایگاه دادهٔ پیشین با این نام، پرونده‌ای به جا مانده که شاید آخرین نوشته‌های آن را دارد. آن را جابه‌جا کنید یا نام دیگری برگزینید."};
    // clang-format on
    const MessageCatalogue catalogue;
    const auto* failure = dynamic_cast<const DatabaseError*>(&error);
    return {problemTitle(failure ? failure->category() : ErrorCategory::Other), catalogue.errorText(error)};
}

}  // namespace basalt::host
