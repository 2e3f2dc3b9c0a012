// Codes and workstation numbers between clients of one database: in one process, in threads, and in processes that die.
#include <gmock/gmock.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <array>
#include <barrier>
#include <chrono>
#include <csignal>
#include <functional>
#include <set>
#include <thread>

#include "tests/host_services/demo_database.h"
#include "tests/support/small_files.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr auto kNextCode =
    "select isnull(Max(Code),0)+1 from (select isnull(Max(Code),0) as Code from CostLevel WHERE CostType = 1UNION ALL "
    "Select MAX(CAST(Code AS BIGINT)) as Code FROM CodeLock_TBL WHERE Status = 114) T1";

Value nextCode(Session& session) {
    return rowsOf(session, kNextCode).column(0).valueAt(0);
}

std::vector<std::string> lockRows(Session& session) {
    return linesOf(session, "SELECT Status, Code, Slot, Owner FROM dbo.CodeLock_TBL ORDER BY Status, Code, Slot");
}

class CodeLocksTest : public DemoFileTest {
protected:
    CodeLocksTest() {
        first.signInAs(1);
        second.signInAs(2);
    }

    std::unique_ptr<Session> firstSession = openDatabase(path());
    std::unique_ptr<Session> secondSession = openDatabase(path());
    FixedClock clock{{.year = 2026, .month = 11, .day = 21, .hour = 9}};
    ReferenceHost first{*firstSession, workstation("دفتر")};
    ReferenceHost second{*secondSession, workstation("صندوق ۲")};
};

TEST_F(CodeLocksTest, clientsHaveNumbersOfTheirOwn) {
    EXPECT_NE(first.IniOptions().LockOwner, 0);
    EXPECT_NE(first.IniOptions().LockOwner, second.IniOptions().LockOwner);
    EXPECT_EQ(first.IniOptions().WorkstationName, "دفتر");
    EXPECT_EQ(first.IniOptions().LockOwner, first.IniOptions().LockOwner);
}

TEST_F(CodeLocksTest, aHeldCodeIsInUseForOthersOnly) {
    const int mine = first.IniOptions().LockOwner;
    const int theirs = second.IniOptions().LockOwner;
    CodeLock lock = first.codeLocks().hold("3", spPriceLevels);
    EXPECT_TRUE(lock.held());
    EXPECT_FALSE(first.LocateLockCode_SoftwarePart("3", spPriceLevels, mine, false));
    EXPECT_TRUE(first.LocateLockCode_SoftwarePart("3", spPriceLevels, mine, true));
    EXPECT_TRUE(second.LocateLockCode_SoftwarePart("3", spPriceLevels, theirs, false));
    EXPECT_FALSE(second.LocateLockCode_SoftwarePart("3", spDiscountLevels, theirs, false));
    EXPECT_FALSE(second.LocateLockCode_SoftwarePart("33", spPriceLevels, theirs, true));
    lock.release();
    EXPECT_FALSE(lock.held());
    EXPECT_FALSE(second.LocateLockCode_SoftwarePart("3", spPriceLevels, theirs, true));
}

TEST_F(CodeLocksTest, nobodyWaitsForACodeToBeReleased) {
    CodeLock lock = first.codeLocks().hold("3", spPriceLevels);
    CodeLock other = first.codeLocks().hold("4", spPriceLevels);
    const int theirs = second.IniOptions().LockOwner;
    secondSession->begin();
    const auto start = std::chrono::steady_clock::now();
    lock.release();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_FALSE(lock.held());
    EXPECT_THAT(lockRows(*secondSession), SizeIs(2));
    EXPECT_TRUE(second.LocateLockCode_SoftwarePart("3", spPriceLevels, theirs, false)) << "as long as the other writes";
    secondSession->rollback();

    other.release();
    EXPECT_THAT(lockRows(*secondSession), IsEmpty()) << "both, now that it can be done";
    EXPECT_EQ(linesOf(*firstSession, "SELECT @@LOCK_TIMEOUT"), std::vector<std::string>{"-1"});
}

TEST_F(CodeLocksTest, aCodeThatCouldNotBeReleasedIsToldAndTriedAgain) {
    int told = 0;
    first.codeLocks().onUnreleased([&told] { ++told; });
    CodeLock lock = first.codeLocks().hold("3", spPriceLevels);
    secondSession->begin();
    lock.release();
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(first.codeLocks().retryReleases()) << "the other still writes";
    secondSession->rollback();
    firstSession->begin();
    EXPECT_FALSE(first.codeLocks().retryReleases()) << "the end of the transaction could undo it";
    firstSession->rollback();
    EXPECT_TRUE(first.codeLocks().retryReleases());
    EXPECT_THAT(lockRows(*secondSession), IsEmpty());
    EXPECT_EQ(told, 1);
}

TEST_F(CodeLocksTest, aCodeThatCannotBeReleasedForWantOfRoomIsReleasedLater) {
    CodeLock lock = first.codeLocks().hold("3", spPriceLevels);
    {
        const test::SmallFiles full(1);
        lock.release();
    }
    EXPECT_FALSE(lock.held());
    EXPECT_THAT(lockRows(*secondSession), SizeIs(1));
    const CodeLock other = first.codeLocks().hold("4", spPriceLevels);
    EXPECT_THAT(lockRows(*secondSession), ElementsAre(::testing::StartsWith("114|4|")));
}

TEST_F(CodeLocksTest, aLayoutThatCannotBeSavedNowIsSavedLater) {
    FormOptionStore& forms = first.formOptions();
    secondSession->begin();
    const auto start = std::chrono::steady_clock::now();
    forms.saveSoon(1, "14", "{\"width\":700}");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_EQ(forms.load(1, "14"), "{\"width\":700}");
    EXPECT_EQ(second.formOptions().load(1, "14"), std::nullopt);
    forms.saveSoon(1, "14", "{\"width\":701}");
    secondSession->rollback();

    forms.saveSoon(1, "27", "{}");
    EXPECT_EQ(second.formOptions().load(1, "14"), "{\"width\":701}");
    EXPECT_EQ(second.formOptions().load(1, "27"), "{}");
}

TEST_F(CodeLocksTest, theLastLayoutsAreSavedWhenTheClientEnds) {
    {
        ReferenceHost leaving(*firstSession, workstation("انبار"));
        secondSession->begin();
        leaving.formOptions().saveSoon(1, "14", "{}");
        secondSession->rollback();
    }
    EXPECT_EQ(second.formOptions().load(1, "14"), "{}");
    EXPECT_THROW(first.formOptions().saveSoon(999, "14", "{}"), DatabaseError) << "there is no such user";
    EXPECT_NO_THROW(first.formOptions().saveRest()) << "it is not tried again";
}

TEST_F(CodeLocksTest, rowsOfOtherProgramsCountAsInUse) {
    execute(*firstSession, "INSERT INTO CodeLock_TBL (Code, Status) VALUES (7, 114)");
    EXPECT_TRUE(first.LocateLockCode_SoftwarePart("7", spPriceLevels, first.IniOptions().LockOwner, false));
}

TEST_F(CodeLocksTest, numbersAreHeldHoweverTheyAreWritten) {
    execute(*firstSession,
            "INSERT INTO dbo.CodeLock_TBL (Code, Status, WorkstationName) VALUES (N'07', 114, N'انبار'), "
            "(N' 8 ', 114, N'انبار'), (N'A9', 114, N'انبار')");
    for (const char* const code : {"7", "8", "A9"}) {
        EXPECT_TRUE(first.LocateLockCode_SoftwarePart(code, spPriceLevels, first.IniOptions().LockOwner, false))
            << code;
        EXPECT_THAT(first.codeLocks().others(code, spPriceLevels), SizeIs(1)) << code;
    }
    for (const char* const code : {"70", "9", "A09", "", "0"})
        EXPECT_FALSE(first.LocateLockCode_SoftwarePart(code, spPriceLevels, first.IniOptions().LockOwner, false))
            << code;
    EXPECT_FALSE(first.LocateLockCode_SoftwarePart("7", spTags, first.IniOptions().LockOwner, false));
}

TEST_F(CodeLocksTest, aRecordMayBeOpenTwiceAndSaysWhoElseHasIt) {
    first.setClock(clock);
    const CodeLock mine = first.codeLocks().hold("3", spPriceLevels);
    EXPECT_THAT(first.codeLocks().others("3", spPriceLevels), IsEmpty());
    {
        const CodeLock theirs = second.codeLocks().hold("3", spPriceLevels);
        const auto others = second.codeLocks().others("3", spPriceLevels);
        ASSERT_THAT(others, SizeIs(1));
        EXPECT_EQ(others[0].userName, "مریم رستمی");
        EXPECT_EQ(others[0].workstationName, "دفتر");
        EXPECT_EQ(others[0].lockDate, "1405/08/30 09:00:00");
        EXPECT_THAT(first.codeLocks().others("3", spPriceLevels), SizeIs(1));
    }
    EXPECT_THAT(first.codeLocks().others("3", spPriceLevels), IsEmpty());
    EXPECT_TRUE(mine.held());
}

TEST_F(CodeLocksTest, movingALockKeepsItAndAssigningReleasesTheOld) {
    CodeLock lock = first.codeLocks().hold("3", spPriceLevels);
    CodeLock moved = std::move(lock);
    EXPECT_EQ(moved.code(), "3");
    EXPECT_THAT(lockRows(*firstSession), SizeIs(1));
    moved = first.codeLocks().hold("4", spPriceLevels);
    const std::string owner = std::to_string(first.IniOptions().LockOwner);
    EXPECT_THAT(lockRows(*firstSession), ElementsAre("114|4|0|" + owner));
    moved = CodeLock();
    EXPECT_THAT(lockRows(*firstSession), IsEmpty());
}

TEST_F(CodeLocksTest, newCodesGoUpWhileOthersAreHeld) {
    const CodeLock one = first.codeLocks().holdNew(spPriceLevels, [&] { return nextCode(*firstSession); });
    const CodeLock two = second.codeLocks().holdNew(spPriceLevels, [&] { return nextCode(*secondSession); });
    EXPECT_EQ(one.code(), "11");
    EXPECT_EQ(two.code(), "12");
    EXPECT_EQ(toInt64(two.value()), 12);
}

TEST_F(CodeLocksTest, aCodeTakenMeanwhileIsAskedForAgain) {
    const CodeLock theirs = second.codeLocks().hold("11", spPriceLevels);
    int asked = 0;
    const CodeLock mine =
        first.codeLocks().holdNew(spPriceLevels, [&] { return Value{std::int64_t{asked++ == 0 ? 11 : 12}}; });
    EXPECT_EQ(mine.code(), "12");
    EXPECT_EQ(asked, 2);
}

TEST_F(CodeLocksTest, anEndlessCollisionIsAnErrorAndLeavesNothing) {
    const CodeLock theirs = second.codeLocks().hold("11", spPriceLevels);
    try {
        static_cast<void>(first.codeLocks().holdNew(spPriceLevels, [] { return Value{std::int64_t{11}}; }));
        FAIL() << "a held code was taken";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Busy);
    }
    EXPECT_FALSE(firstSession->inTransaction());
    EXPECT_THAT(lockRows(*firstSession), SizeIs(1));
}

TEST_F(CodeLocksTest, anErrorWhileAskingLeavesNoTransaction) {
    EXPECT_THROW(static_cast<void>(first.codeLocks().holdNew(spPriceLevels, []() -> Value { throw UsageError("x"); })),
                 UsageError);
    EXPECT_FALSE(firstSession->inTransaction());
}

TEST_F(CodeLocksTest, aHostThatGoesAwayGivesBackWhatItHeld) {
    int owner = 0;
    {
        const auto session = openDatabase(path());
        ReferenceHost third(*session, workstation("سوم"));
        owner = third.IniOptions().LockOwner;
        execute(*session, "INSERT INTO CodeLock_TBL (Code, Status, Owner) VALUES (9, 114, ?)", {std::int64_t{owner}});
    }
    EXPECT_THAT(lockRows(*firstSession), IsEmpty());
    EXPECT_EQ(first.IniOptions().LockOwner, owner) << "a number that was given back is given again";
}

TEST_F(CodeLocksTest, clientsOfOtherMachinesAreLeftAlone) {
    execute(*firstSession,
            "INSERT INTO dbo.HostWorkstations (Owner, MachineName, WorkstationName, ProcessId, ProcessStarted) "
            "VALUES (50, N'a-machine-far-away', N'دور', 1, N'x')");
    execute(*firstSession, "INSERT INTO CodeLock_TBL (Code, Status, Owner) VALUES (9, 114, 50)");
    EXPECT_EQ(first.IniOptions().LockOwner, 51);
    EXPECT_THAT(lockRows(*firstSession), ElementsAre("114|9|0|50"));
}

TEST_F(CodeLocksTest, aProcessNumberGivenAgainIsNotTakenForTheOldProcess) {
    const ProcessIdentity self = currentProcess();
    EXPECT_TRUE(mayBeAlive(self));
    ProcessIdentity earlier = self;
    earlier.started = "before the last start:1";
    EXPECT_FALSE(mayBeAlive(earlier));
    earlier.machine = "a-machine-far-away";
    EXPECT_TRUE(mayBeAlive(earlier));
}

TEST_F(CodeLocksTest, machinesOfOneNameAreToldApart) {
    const std::string mark = machineMark("vm", "0123456789abcdef0123456789abcdef");
    EXPECT_NE(mark, machineMark("vm", "0123456789abcdef0123456789abcdee"));
    EXPECT_NE(mark, machineMark("vm2", "0123456789abcdef0123456789abcdef"));
    EXPECT_EQ(mark, machineMark("vm", "0123456789abcdef0123456789abcdef"));
    EXPECT_THAT(mark, ::testing::MatchesRegex("vm#[0-9a-f]+"));
    EXPECT_EQ(mark.find("0123456789abcdef"), std::string::npos) << "the id is nobody else's business";
    EXPECT_EQ(machineMark("vm", ""), "vm");
    EXPECT_THAT(machineMark(std::string(300, 'n'), "id"), SizeIs(100)) << "as the column holds";
    EXPECT_THAT(machineMark(std::string(300, 'n'), ""), SizeIs(100));
}

TEST_F(CodeLocksTest, aClientOfAnotherMachineOfThisNameKeepsItsNumberAndItsCodes) {
    ProcessIdentity gone = currentProcess();
    gone.started = "before the last start:1";
    const auto theirs = openDatabase(path());
    ProcessIdentity other = gone;
    other.machine = machineMark(other.machine.substr(0, other.machine.find('#')), "the id of the other");
    ReferenceHost otherMachine(*theirs, {.workstationName = "دور", .persistOptions = false, .process = other});
    otherMachine.signInAs(1);
    const CodeLock lock = otherMachine.codeLocks().hold("3", spPriceLevels);
    EXPECT_EQ(otherMachine.IniOptions().LockOwner, 1);

    EXPECT_EQ(first.IniOptions().LockOwner, 2);
    EXPECT_TRUE(first.LocateLockCode_SoftwarePart("3", spPriceLevels, 2, false));
    EXPECT_THAT(lockRows(*firstSession), ElementsAre("114|3|0|1"));
}

TEST_F(CodeLocksTest, aProcessThatTheSystemSaysNothingOfMayBeAlive) {
    ProcessIdentity silent = currentProcess();
    silent.id = 999'999'999;  // beyond the highest number that a process can have
    EXPECT_FALSE(mayBeAlive(silent));
    const std::string mark = silent.started;
    silent.started.clear();
    EXPECT_TRUE(mayBeAlive(silent));
    // "boot:space:start": another space of processes in the same run of the machine.
    const std::size_t space = mark.find(':') + 1;
    silent.started = mark.substr(0, space) + "1" + mark.substr(mark.find(':', space));
    EXPECT_TRUE(mayBeAlive(silent));
}

TEST_F(CodeLocksTest, signingInFreesWhatAKilledClientHeld) {
    ProcessIdentity gone = currentProcess();
    gone.started = "before the last start:1";
    execute(*firstSession,
            "INSERT INTO dbo.HostWorkstations (Owner, MachineName, WorkstationName, ProcessId, ProcessStarted) "
            "VALUES (50, ?, N'صندوق', ?, ?)",
            {gone.machine, gone.id, gone.started});
    execute(*firstSession, "INSERT INTO CodeLock_TBL (Code, Status, Owner) VALUES (11, 114, 50)");
    EXPECT_FALSE(first.signIn("manager", "wrong"));
    EXPECT_THAT(lockRows(*firstSession), SizeIs(1));
    EXPECT_TRUE(first.signIn("manager", "manager"));
    EXPECT_THAT(lockRows(*firstSession), IsEmpty());
    EXPECT_EQ(toInt64(nextCode(*firstSession)), 11);
}

TEST_F(CodeLocksTest, threadsNeverGetTheSameCode) {
    constexpr int kThreads = 4;
    constexpr int kEach = 10;
    std::barrier everybodyHasTheirs(kThreads);
    std::array<std::vector<std::string>, kThreads> codes;
    std::vector<std::thread> threads;
    for (auto& mine : codes) {
        threads.emplace_back([&, this] {
            const auto session = openDatabase(path());
            ReferenceHost host(*session, workstation("نخ"));
            std::vector<CodeLock> locks;
            for (int i = 0; i < kEach; ++i) {
                locks.push_back(host.codeLocks().holdNew(spPriceLevels, [&] { return nextCode(*session); }));
                mine.push_back(locks.back().code());
            }
            everybodyHasTheirs.arrive_and_wait();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::set<std::string> all;
    for (const auto& mine : codes)
        all.insert(mine.begin(), mine.end());
    EXPECT_EQ(all.size(), std::size_t{kThreads} * kEach);
    EXPECT_THAT(lockRows(*firstSession), IsEmpty());
}

// A child process that does its part, says so, and stays until it is killed.
class Client {
public:
    // `part` returns the text to say.
    explicit Client(const std::function<std::string()>& part) {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
        id_ = fork();
        if (id_ == 0) {
            close(ends[0]);
            std::string text;
            try {
                text = part();
            } catch (const std::exception& error) {
                text = std::string("failed: ") + error.what();
            }
            text += '\n';
            if (write(ends[1], text.data(), text.size()) < 0) _exit(1);
            while (true)
                pause();
        }
        close(ends[1]);
        reading_ = ends[0];
    }
    ~Client() {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
        close(reading_);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    [[nodiscard]] std::string said() const {
        std::string text;
        for (char c = 0; read(reading_, &c, 1) == 1 && c != '\n';)
            text += c;
        return text;
    }
    // Dead at once, and not yet asked for its status by anybody.
    void killNow() const {
        kill(id_, SIGKILL);
        siginfo_t info{};
        waitid(P_PID, static_cast<id_t>(id_), &info, WEXITED | WNOWAIT);
    }

private:
    pid_t id_ = 0;
    int reading_ = -1;
};

class ProcessesTest : public DemoFileTest {
protected:
    // Takes new codes and keeps them; says them.
    std::function<std::string()> taking(int count) {
        return [count, path = path()] {
            auto* session = openDatabase(path).release();  // kept until the process is killed
            auto* host = new ReferenceHost(*session, workstation("فرآیند"));
            auto* locks = new std::vector<CodeLock>;
            std::string codes;
            for (int i = 0; i < count; ++i) {
                locks->push_back(host->codeLocks().holdNew(spPriceLevels, [&] { return nextCode(*session); }));
                codes += locks->back().code() + " ";
            }
            return codes;
        };
    }
};

TEST_F(ProcessesTest, neverGetTheSameCode) {
    constexpr int kProcesses = 4;
    constexpr int kEach = 8;
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < kProcesses; ++i)
        clients.push_back(std::make_unique<Client>(taking(kEach)));
    std::set<int> codes;
    for (const auto& client : clients) {
        std::istringstream said(client->said());
        for (int code = 0; said >> code;)
            EXPECT_TRUE(codes.insert(code).second) << code;
        EXPECT_TRUE(said.eof());
    }
    EXPECT_THAT(codes, SizeIs(kProcesses * kEach));
    EXPECT_EQ(*codes.begin(), 11);
}

TEST_F(ProcessesTest, whatAKilledClientHeldIsFreeAtTheNextStart) {
    const Client client(taking(2));
    ASSERT_EQ(client.said(), "11 12 ");
    const auto session = openDatabase(path());
    {
        ReferenceHost meanwhile(*session, workstation("دوم"));
        EXPECT_EQ(meanwhile.IniOptions().LockOwner, 2);
        EXPECT_THAT(lockRows(*session), ElementsAre("114|11|0|1", "114|12|0|1")) << "the other client lives";
    }
    client.killNow();
    ReferenceHost after(*session, workstation("سوم"));
    EXPECT_EQ(after.IniOptions().LockOwner, 1);
    EXPECT_THAT(lockRows(*session), IsEmpty());
}

TEST_F(ProcessesTest, aClientThatWasRunningMeanwhileFindsTheCodeFreeToo) {
    const Client client(taking(1));
    ASSERT_EQ(client.said(), "11 ");
    const auto session = openDatabase(path());
    ReferenceHost host(*session, workstation("دوم"));
    const int owner = host.IniOptions().LockOwner;
    EXPECT_TRUE(host.LocateLockCode_SoftwarePart("11", spPriceLevels, owner, false));
    client.killNow();
    EXPECT_FALSE(host.LocateLockCode_SoftwarePart("11", spPriceLevels, owner, false));
    EXPECT_THAT(lockRows(*session), IsEmpty());
}

// In a container of its own: its processes have numbers of their own, and it sees none of those outside.
// Empty when the system does not let one be made here.
std::string inOwnProcessNamespace(const std::function<std::string()>& part) {
    if (unshare((geteuid() == 0 ? 0 : CLONE_NEWUSER) | CLONE_NEWPID | CLONE_NEWNS) != 0) return {};
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
    const pid_t first = fork();
    if (first == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        static_cast<void>(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr));
        // Without it the processes outside are seen under numbers that mean others here.
        static_cast<void>(mount("proc", "/proc", "proc", 0, nullptr));
        const std::string text = part() + "\n";
        if (write(ends[1], text.data(), text.size()) < 0) _exit(1);
        while (true)
            pause();
    }
    close(ends[1]);
    std::string text;
    for (char c = 0; read(ends[0], &c, 1) == 1 && c != '\n';)
        text += c;
    return text;
}

TEST_F(ProcessesTest, ofAnotherContainerAreNeverTakenForKilled) {
    const Client outside(taking(1));
    ASSERT_EQ(outside.said(), "11 ");
    const Client inside([part = taking(1)] { return inOwnProcessNamespace(part); });
    const std::string said = inside.said();
    if (said.empty()) GTEST_SKIP() << "no process namespace can be made here";
    EXPECT_EQ(said, "12 ");
    const auto session = openDatabase(path());
    EXPECT_THAT(lockRows(*session), ElementsAre("114|11|0|1", "114|12|0|2"));

    ReferenceHost host(*session, workstation("سوم"));
    const int owner = host.IniOptions().LockOwner;
    EXPECT_EQ(owner, 3);
    EXPECT_TRUE(host.LocateLockCode_SoftwarePart("11", spPriceLevels, owner, false));
    EXPECT_TRUE(host.LocateLockCode_SoftwarePart("12", spPriceLevels, owner, false));
}

TEST_F(ProcessesTest, aKilledClientOfThisMachineIsCleanedUpNextToLivingOnes) {
    const Client living(taking(1));
    ASSERT_EQ(living.said(), "11 ");
    const Client killed(taking(1));
    ASSERT_EQ(killed.said(), "12 ");
    killed.killNow();
    const auto session = openDatabase(path());
    ReferenceHost after(*session, workstation("سوم"));
    EXPECT_EQ(after.IniOptions().LockOwner, 2);
    EXPECT_THAT(lockRows(*session), ElementsAre("114|11|0|1"));
}

}  // namespace
}  // namespace basalt::host
