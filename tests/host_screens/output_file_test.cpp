// Files that users ask for take their place whole, and what is there gives way only to a whole one.
#include "host/screens/output_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>

#include "host/services/output_error.h"
#include "tests/support/files.h"
#ifndef _WIN32
#include "tests/support/small_files.h"
#endif

namespace basalt::host {
namespace {

using ::testing::EndsWith;
using ::testing::ThrowsMessage;
using ::testing::UnorderedElementsAre;

class Output : public test::Files {
protected:
    [[nodiscard]] QString place() const { return QString::fromStdString(path("a.pdf").string()); }
    static void write(const QString& file, const std::string& bytes) { Files::write(file.toStdString(), bytes); }
};

TEST_F(Output, replacesWhatIsThereWhenItIsWhole) {
    write(place(), "old");
    writeOutputFile(place(), [&](const QString& draft) {
        write(draft, "new");
        EXPECT_EQ(read("a.pdf"), "old");
        return true;
    });
    EXPECT_EQ(read("a.pdf"), "new");
    EXPECT_THAT(names(), UnorderedElementsAre("a.pdf"));
}

TEST_F(Output, aFailureLeavesWhatIsThere) {
    write(place(), "old");
    const auto writeHalf = [](const QString& draft) {
        write(draft, "half");
        return false;
    };
    EXPECT_THROW(writeOutputFile(place(), writeHalf), OutputError);
    EXPECT_EQ(read("a.pdf"), "old");
    EXPECT_THAT(names(), UnorderedElementsAre("a.pdf"));
}

#ifndef _WIN32
TEST_F(Output, theReasonIsAskedOfTheDiskWhenTheWriterTellsNone) {
    const auto writeBeyond = [](const QString& draft) {
        write(draft, std::string(8192, 'a'));
        return false;
    };
    const test::SmallFiles full(4096);
    EXPECT_THAT(
        [&] { writeOutputFile(place(), writeBeyond); },
        ThrowsMessage<OutputError>(EndsWith(
            "a.pdf\u2069» نوشته نشد: پرونده بزرگ‌تر از آن است که دیسک می‌پذیرد.")));
}

TEST_F(Output, theReasonIsTheWritersWhereTheDiskHasRoomAgain) {
    const auto giveUp = [](const QString&) {
        errno = ENOSPC;
        return false;
    };
    EXPECT_THAT([&] { writeOutputFile(place(), giveUp); },
                ThrowsMessage<OutputError>(EndsWith("a.pdf\u2069» نوشته نشد: روی دیسک جای خالی نمانده است.")));
}
#endif

TEST_F(Output, aFolderOfThatNameIsNotReplaced) {
    std::filesystem::create_directory(path("a.pdf"));
    const auto never = [](const QString&) -> bool { throw std::logic_error("there is no place for it"); };
    EXPECT_THAT([&] { writeOutputFile(place(), never); },
                ThrowsMessage<OutputError>(
                    EndsWith("a.pdf\u2069» نوشته نشد: پوشه‌ای با همین نام هست.")));
    EXPECT_THAT(names(), UnorderedElementsAre("a.pdf"));
    EXPECT_TRUE(std::filesystem::is_directory(path("a.pdf")));
}

TEST_F(Output, thereMustBeAFolderForIt) {
    const auto never = [](const QString&) -> bool { throw std::logic_error("there is no place for it"); };
    EXPECT_THAT([&] { writeOutputFile(QStringLiteral("/nowhere/a.pdf"), never); },
                ThrowsMessage<OutputError>("پروندهٔ «\u2066/nowhere/a.pdf\u2069» نوشته نشد: پوشهٔ آن پیدا نشد."));
}

}  // namespace
}  // namespace basalt::host
