#include "host/services/system_errors.h"

#include <array>
#include <cerrno>
#include <string_view>

#include "host/services/isolated_text.h"

namespace basalt::host {

namespace {

struct ReasonText {
    std::errc reason;
    std::string_view text;
};

// The formatter counts bytes of joined letters as columns and would cut the sentences to pieces.
// clang-format off
constexpr std::array kFileErrors = {
    ReasonText{std::errc::no_space_on_device, "روی دیسک جای خالی نمانده است."},
    ReasonText{std::errc::permission_denied, "اجازهٔ نوشتن در این جا را ندارید."},
    ReasonText{std::errc::operation_not_permitted, "سیستم نوشتن روی آنچه در این جا هست را نمی‌پذیرد."},
    ReasonText{std::errc::read_only_file_system, "این دیسک فقط‌خواندنی است."},
    ReasonText{std::errc::filename_too_long, "نام پرونده بلندتر از آن است که دیسک می‌پذیرد."},
    ReasonText{std::errc::invalid_argument, "دیسک چنین نامی را نمی‌پذیرد."},
    ReasonText{std::errc::no_such_file_or_directory, "پوشهٔ آن پیدا نشد."},
    ReasonText{std::errc::not_a_directory, "پوشهٔ آن پیدا نشد."},
    ReasonText{std::errc::is_a_directory, "پوشه‌ای با همین نام هست."},
    ReasonText{std::errc::file_exists, "پرونده‌ای با همین نام هست."},
    ReasonText{std::errc::file_too_large, "پرونده بزرگ‌تر از آن است که دیسک می‌پذیرد."},
    ReasonText{std::errc::too_many_symbolic_link_levels, "پیوندهای این نام به پرونده‌ای نمی‌رسند."},
    ReasonText{std::errc::too_many_links, "دیسک جای نام دیگری در این پوشه ندارد."},
    ReasonText{std::errc::too_many_files_open, "برنامه پرونده‌های بازِ بسیار دارد. چند پنجره را ببندید و دوباره تلاش کنید."},
    ReasonText{std::errc::too_many_files_open_in_system, "سیستم پرونده‌های بازِ بسیار دارد. چند برنامه را ببندید و دوباره تلاش کنید."},
    ReasonText{std::errc::not_enough_memory, "حافظهٔ کافی برای این کار نیست."},
    ReasonText{std::errc::device_or_resource_busy, "برنامهٔ دیگری آن را در دست دارد."},
    ReasonText{std::errc::text_file_busy, "برنامهٔ دیگری آن را در دست دارد."},
    ReasonText{std::errc::no_such_device, "این دیسک در دسترس نیست."},
    ReasonText{std::errc::no_such_device_or_address, "این دیسک در دسترس نیست."},
    ReasonText{std::errc::timed_out, "این دیسک به‌موقع پاسخ نداد."},
    ReasonText{std::errc::io_error, "دیسک هنگام خواندن یا نوشتن خطا داد."},
};

constexpr std::array kProgramErrors = {
    ReasonText{std::errc::permission_denied, "اجازهٔ اجرای آن را ندارید."},
    ReasonText{std::errc::operation_not_permitted, "سیستم اجرای آن را نمی‌پذیرد."},
    ReasonText{std::errc::no_such_file_or_directory, "چیزی که این برنامه برای اجرا لازم دارد پیدا نشد."},
    ReasonText{std::errc::executable_format_error, "این پرونده برنامه‌ای برای این سیستم نیست."},
    ReasonText{std::errc::text_file_busy, "برنامهٔ دیگری آن را در دست دارد."},
    ReasonText{std::errc::argument_list_too_long, "آنچه به برنامه داده می‌شود بلندتر از آن است که سیستم می‌پذیرد."},
    ReasonText{std::errc::not_enough_memory, "حافظهٔ کافی برای این کار نیست."},
    ReasonText{std::errc::resource_unavailable_try_again, "سیستم اکنون برنامهٔ دیگری نمی‌پذیرد. چند برنامه را ببندید و دوباره تلاش کنید."},
    ReasonText{std::errc::too_many_files_open, "برنامه پرونده‌های بازِ بسیار دارد. چند پنجره را ببندید و دوباره تلاش کنید."},
    ReasonText{std::errc::too_many_files_open_in_system, "سیستم پرونده‌های بازِ بسیار دارد. چند برنامه را ببندید و دوباره تلاش کنید."},
    ReasonText{std::errc::io_error, "دیسک هنگام خواندن برنامه خطا داد."},
};

// The standard names no such condition, and not every system knows it.
bool isQuotaExceeded(const std::error_code& reason) {
#ifdef EDQUOT
    return reason == std::error_condition(EDQUOT, std::generic_category());
#else
    return false;
#endif
}

}  // namespace

std::string fileErrorSentence(const std::error_code& reason) {
    if (isQuotaExceeded(reason)) return "سهم شما از دیسک پر شده است.";
    for (const ReasonText& known : kFileErrors) {
        if (reason == known.reason) return std::string(known.text);
    }
    return "پاسخ سیستم: " + readFromLeft(reason.message());
}

std::string programErrorSentence(std::string_view systemWords) {
    for (const ReasonText& known : kProgramErrors) {
        if (systemWords.ends_with(std::make_error_code(known.reason).message())) return std::string(known.text);
    }
    return {};
}

// clang-format on

}  // namespace basalt::host
