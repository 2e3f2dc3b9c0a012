// Files that users ask for take their place whole, and what is there gives way only to a whole one.
#include "host/screens/output_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/services/output_error.h"
#include "tests/support/files.h"

namespace basalt::host {
namespace {

using ::testing::HasSubstr;
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
    });
    EXPECT_EQ(read("a.pdf"), "new");
    EXPECT_THAT(names(), UnorderedElementsAre("a.pdf"));
}

TEST_F(Output, aFailureLeavesWhatIsThere) {
    write(place(), "old");
    EXPECT_THROW(writeOutputFile(place(),
                                 [](const QString& draft) {
                                     write(draft, "half");
                                     outputFails(draft, QStringLiteral("no paper"));
                                 }),
                 OutputError);
    EXPECT_EQ(read("a.pdf"), "old");
    EXPECT_THAT(names(), UnorderedElementsAre("a.pdf"));
}

TEST_F(Output, aFolderOfThatNameIsNotReplaced) {
    std::filesystem::create_directory(path("a.pdf"));
    EXPECT_THAT([&] { writeOutputFile(place(), [](const QString& draft) { write(draft, "new"); }); },
                ThrowsMessage<OutputError>(HasSubstr("a.pdf» نوشته نشد: ")));
    EXPECT_THAT(names(), UnorderedElementsAre("a.pdf"));
    EXPECT_TRUE(std::filesystem::is_directory(path("a.pdf")));
}

TEST_F(Output, thereMustBeAFolderForIt) {
    EXPECT_THAT([] { writeOutputFile(QStringLiteral("/nowhere/a.pdf"), [](const QString&) { FAIL(); }); },
                ThrowsMessage<OutputError>(HasSubstr("«/nowhere/a.pdf» نوشته نشد: ")));
}

}  // namespace
}  // namespace basalt::host
