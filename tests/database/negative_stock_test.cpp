#include <gmock/gmock.h>

#include <map>
#include <random>
#include <set>

#include "tests/database/company.h"

namespace basalt::host {
namespace {

using ::testing::IsEmpty;

struct Answer {
    std::int64_t result;
    std::string names;
    std::string codes;

    friend bool operator==(const Answer&, const Answer&) = default;
    friend void PrintTo(const Answer& answer, std::ostream* out) {
        *out << answer.result << " [" << answer.names << "] [" << answer.codes << "]";
    }
};

// Stock of good 5: store 1 gets 10 on day 1, gives 4 on day 10 and gets 20 on day 20; store 2 gets 3 on day 1.
class NegativeStock : public SmallCompany {
protected:
    NegativeStock() {
        move(5, 1, "1405/01/01", 1, "10");
        move(5, 2, "1405/01/01", 1, "3");
        move(6, 1, "1405/01/02", 2, "7");
        move(5, 1, "1405/01/10", 3, "-4");
        move(5, 1, "1405/01/20", 4, "20");
    }

    Answer check(const std::string& lines, const std::string& date, std::int64_t document = 0,
                 std::int64_t negativeType = 0) {
        const std::vector<Argument> arguments = {
            {"@NegativeType", negativeType},   {"@SelectQuery", lines},     {"@Date", date},
            {"@globalID", document},           {"@StoreTransition", false}, {"@NegProductNames", Null{}, true},
            {"@NegProductCodes", Null{}, true}};
        const CallResult call = session->call("CheckNegativeInventory_SP", arguments);
        Answer answer{call.returnValue, "?", "?"};
        for (const Argument& output : call.outputs) {
            const auto* text = std::get_if<std::string>(&output.value);
            (output.name == "@NegProductNames" ? answer.names : answer.codes) = text ? *text : "null";
        }
        return answer;
    }

    // "date" is what a new database says.
    void numberDocuments(const std::string& how) {
        session->run("UPDATE dbo.HostSettings SET Value = N'" + how + "' WHERE Name = N'LedgerNumbering'");
    }

    static std::string line(int good, int store, const std::string& amount) {
        return "SELECT " + std::to_string(good) + " AS Code, " + std::to_string(store) + " AS Anbar, " + amount +
               " AS Mogodi";
    }

    const Answer fine{0, "", ""};
    const Answer sugar{1, "قند", "5"};
    const Answer tea{1, "چای", "6"};
    const Answer bread{1, "نان", "7"};
};

TEST_F(NegativeStock, theLinesMayStandInATemporaryTableOfTheCaller) {
    for (const char* table : {"#DocumentLines", "#NegativeGoods", "#Lines"}) {
        session->run(std::string("CREATE TABLE ") + table +
                     " (Code int, Anbar int, Mogodi decimal(23, 9)) INSERT INTO " + table + " VALUES (5, 1, -7)");
        EXPECT_EQ(check(std::string("SELECT Code, Anbar, Mogodi FROM ") + table, "1405/01/10"), sugar) << table;
        session->run(std::string("DROP TABLE ") + table);
    }
}

TEST_F(NegativeStock, aQueryMayEndInAComment) {
    EXPECT_EQ(check(line(5, 1, "-7") + " -- of sugar", "1405/01/10"), sugar);
    EXPECT_EQ(check(line(5, 1, "-6") + " -- of sugar", "1405/01/10"), fine);
}

TEST_F(NegativeStock, whatIsThereMayGo) {
    EXPECT_EQ(check(line(5, 1, "-26"), "1405/01/25"), fine);
    EXPECT_EQ(check(line(5, 1, "-26.000000001"), "1405/01/25"), sugar);
}

TEST_F(NegativeStock, aLaterMovementHasToStayPossible) {
    // 10 are there on day 5, but 4 of them leave on day 10.
    EXPECT_EQ(check(line(5, 1, "-6"), "1405/01/05"), fine);
    EXPECT_EQ(check(line(5, 1, "-7"), "1405/01/05"), sugar);
}

TEST_F(NegativeStock, whatComesInLaterDoesNotHelp) {
    EXPECT_EQ(check(line(5, 1, "-7"), "1405/01/15"), sugar);
}

TEST_F(NegativeStock, storesAreLookedAtOneByOne) {
    EXPECT_EQ(check(line(5, 2, "-3"), "1405/01/25"), fine);
    EXPECT_EQ(check(line(5, 2, "-4"), "1405/01/25"), sugar);
    EXPECT_EQ(check(line(6, 2, "-1"), "1405/01/25"), tea);
}

TEST_F(NegativeStock, anIssueAndAReceiptOfATransferCountInTheirStores) {
    EXPECT_EQ(check(line(5, 1, "-6") + " UNION ALL " + line(5, 2, "6"), "1405/01/05"), fine);
    EXPECT_EQ(check(line(5, 1, "6") + " UNION ALL " + line(5, 2, "-6"), "1405/01/05"), sugar);
}

TEST_F(NegativeStock, linesOfAGoodInAStoreAddUp) {
    EXPECT_EQ(check(line(5, 2, "-2") + " UNION ALL " + line(5, 2, "-2"), "1405/01/25"), sugar);
    EXPECT_EQ(check(line(5, 2, "-5") + " UNION ALL " + line(5, 2, "2"), "1405/01/25"), fine);
}

TEST_F(NegativeStock, codesThatAreWrittenOtherwiseAreTheSameGood) {
    EXPECT_EQ(check("SELECT '5' AS Code, 1 AS Anbar, -4 AS Mogodi UNION ALL SELECT '05', 1, -4", "1405/01/10"), sugar);
}

TEST_F(NegativeStock, codesAndNamesGoByCode) {
    EXPECT_EQ(
        check(line(6, 1, "-8") + " UNION ALL " + line(7, 1, "-1") + " UNION ALL " + line(5, 1, "-99"), "1405/01/25"),
        (Answer{1, "قند، چای، نان", "5,6,7"}));
}

TEST_F(NegativeStock, anEditedDocumentsOldLinesDoNotCountTwice) {
    // Document 3 took 4 and now takes 10: all that is there.
    EXPECT_EQ(check(line(5, 1, "-10"), "1405/01/10", 3), fine);
    EXPECT_EQ(check(line(5, 1, "-11"), "1405/01/10", 3), sugar);
    // As another document it finds only the 6 that are left.
    EXPECT_EQ(check(line(5, 1, "-10"), "1405/01/10", 9), sugar);
}

TEST_F(NegativeStock, anEditedReceiptMustLeaveEnoughForWhatWentSince) {
    EXPECT_EQ(check(line(5, 1, "4") + " UNION ALL " + line(5, 2, "3"), "1405/01/01", 1), fine);
    EXPECT_EQ(check(line(5, 1, "3") + " UNION ALL " + line(5, 2, "3"), "1405/01/01", 1), sugar);
}

TEST_F(NegativeStock, aGoodThatWasTakenOutOfADocumentIsLookedAtToo) {
    EXPECT_EQ(check(line(5, 2, "3"), "1405/01/01", 1), sugar);
}

TEST_F(NegativeStock, whereNumbersRunOverAllDatesADocumentMayMoveToAnother) {
    numberDocuments("all");
    EXPECT_EQ(check(line(5, 1, "10") + " UNION ALL " + line(5, 2, "3"), "1405/01/09", 1), fine);
    EXPECT_EQ(check(line(5, 1, "10") + " UNION ALL " + line(5, 2, "3"), "1405/01/11", 1), sugar);
    // Document 3, to an earlier date and to a later one: what it took is there for it.
    EXPECT_EQ(check(line(5, 1, "-10"), "1405/01/05", 3), fine);
    EXPECT_EQ(check(line(5, 1, "-11"), "1405/01/05", 3), sugar);
    EXPECT_EQ(check(line(5, 1, "-10"), "1405/01/15", 3), fine);
    EXPECT_EQ(check(line(5, 1, "-11"), "1405/01/15", 3), sugar);
}

TEST_F(NegativeStock, whereNumbersBeginWithEachDateADocumentOfAnotherDateIsAnother) {
    // The receipt of day 1 stays, and there is a second one.
    EXPECT_EQ(check(line(5, 1, "10") + " UNION ALL " + line(5, 2, "3"), "1405/01/11", 1), fine);
    EXPECT_EQ(check(line(5, 1, "-6"), "1405/01/15", 3), fine);
    EXPECT_EQ(check(line(5, 1, "-7"), "1405/01/15", 3), sugar);
}

TEST_F(NegativeStock, withoutAWordOfItsOwnerALedgerNumbersWithinADate) {
    EXPECT_EQ(rows("SELECT Value FROM dbo.HostSettings WHERE Name = N'LedgerNumbering'"),
              std::vector<std::string>{"date"});
    for (const char* change : {"UPDATE dbo.HostSettings SET Value = N'dates' WHERE Name = N'LedgerNumbering'",
                               "DELETE FROM dbo.HostSettings WHERE Name = N'LedgerNumbering'"}) {
        session->run(change);
        EXPECT_EQ(check(line(5, 1, "-6"), "1405/01/15", 3), fine) << change;
        EXPECT_EQ(check(line(5, 1, "-7"), "1405/01/15", 3), sugar) << change;
    }
}

// The number 1 of good 6 is the issue of day 5, and others have it too.
TEST_F(NegativeStock, aNumberOfAnotherDayIsAnotherDocument) {
    move(6, 1, "1405/01/05", 1, "-7");
    // Edited on its own day, to what is there and to more.
    EXPECT_EQ(check(line(6, 1, "-7"), "1405/01/05", 1), fine);
    EXPECT_EQ(check(line(6, 1, "-8"), "1405/01/05", 1), tea);
    // The receipts of day 1, which have the same number, are not taken as gone.
    EXPECT_EQ(check(line(5, 1, "-6"), "1405/01/05", 1), fine);
    // A new one of day 7, which is to get the number 1, and one that only day 2 has: the issue stays where it is.
    EXPECT_EQ(check(line(6, 1, "-7"), "1405/01/07", 1), tea);
    move(7, 1, "1405/01/02", 2, "5");
    EXPECT_EQ(check(line(7, 1, "-6"), "1405/01/06", 2), bread);
    EXPECT_EQ(check(line(7, 1, "-5"), "1405/01/06", 2), fine);
}

TEST_F(NegativeStock, aDocumentOfTwoDatesIsTheOneOfItsDateOrOfBoth) {
    move(6, 1, "1405/01/06", 8, "-3");
    move(6, 1, "1405/01/08", 8, "-4");
    EXPECT_EQ(check(line(6, 1, "-4"), "1405/01/08", 8), fine);
    EXPECT_EQ(check(line(6, 1, "-5"), "1405/01/08", 8), tea);
    numberDocuments("all");
    EXPECT_EQ(check(line(6, 1, "-7"), "1405/01/08", 8), fine);
    EXPECT_EQ(check(line(6, 1, "-8"), "1405/01/08", 8), tea);
}

// Ledgers of one good from which how they number their documents cannot be read.
struct Ambiguous {
    const char* name;
    std::vector<std::tuple<int, int, const char*>> ledger;  // day, number, amount of good 7
    int day;
    int document;
    const char* amount;
    bool allowedWithinADate;
    bool allowedOverAllDates;
    friend void PrintTo(const Ambiguous& each, std::ostream* out) { *out << each.name; }
};

class AmbiguousLedger : public NegativeStock, public ::testing::WithParamInterface<Ambiguous> {
protected:
    AmbiguousLedger() { session->run("DELETE FROM dbo.Kardex"); }
};

TEST_P(AmbiguousLedger, isReadAsItsOwnerSays) {
    const Ambiguous& of = GetParam();
    const auto date = [](int day) { return "1405/02/0" + std::to_string(day); };
    for (const auto& [day, number, amount] : of.ledger)
        move(7, 1, date(day).c_str(), number, amount);
    EXPECT_EQ(check(line(7, 1, of.amount), date(of.day), of.document), of.allowedWithinADate ? fine : bread);
    numberDocuments("all");
    EXPECT_EQ(check(line(7, 1, of.amount), date(of.day), of.document), of.allowedOverAllDates ? fine : bread);
}

INSTANTIATE_TEST_SUITE_P(
    NegativeStock, AmbiguousLedger,
    ::testing::Values(
        // Document 3 of day 2 took ninety; over all dates it is the one that moves to day 3.
        Ambiguous{"theNumberIsOnOneOtherDateAlone",
                  {{1, 0, "100"}, {2, 1, "5"}, {2, 2, "-5"}, {2, 3, "-90"}, {3, 1, "-1"}, {3, 2, "-1"}},
                  3,
                  3,
                  "-50",
                  false,
                  true},
        Ambiguous{"noNumberIsOnTwoDates", {{1, 1, "100"}, {1, 2, "-90"}}, 2, 2, "-50", false, true},
        Ambiguous{"theOnlyDocumentHasTheNumber", {{1, 1, "100"}}, 2, 1, "-5", true, false},
        // Over all dates the goods of document 3 move with it; within a date they would leave twice.
        Ambiguous{"theLowestNumberIsOnTwoDates", {{1, 1, "10"}, {2, 3, "-10"}}, 3, 3, "-10", false, true}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(NegativeStock, aDocumentMovesWholeWhereTheLowestOneStandsOnTwoDates) {
    session->run("DELETE FROM dbo.Kardex");
    move(5, 1, "1405/02/01", 1, "10");
    move(6, 1, "1405/02/02", 1, "10");
    move(5, 1, "1405/02/02", 3, "-10");
    EXPECT_EQ(check(line(5, 1, "-10"), "1405/02/03", 3), sugar);
    numberDocuments("all");
    EXPECT_EQ(check(line(5, 1, "-10"), "1405/02/03", 3), fine);
}

TEST_F(NegativeStock, aNewDocumentHasNothingInTheLedgerYet) {
    for (const char* numbering : {"date", "all"}) {
        numberDocuments(numbering);
        for (const char* number : {"0", "2147483647"}) {
            session->run(std::string("UPDATE dbo.Kardex SET Global_ID = ") + number + " WHERE [Date] = N'1405/01/10'");
            EXPECT_EQ(check(line(5, 1, "-6"), "1405/01/10"), fine) << numbering << ' ' << number;
            EXPECT_EQ(check(line(5, 1, "-7"), "1405/01/10"), sugar) << numbering << ' ' << number;
        }
    }
}

TEST_F(NegativeStock, onOneDayTheOrderOfEntryCounts) {
    move(6, 1, "1405/01/05", 10, "-7");
    move(6, 1, "1405/01/05", 20, "5");
    EXPECT_EQ(check(line(6, 1, "-1"), "1405/01/05", 15), tea);
    EXPECT_EQ(check(line(6, 1, "-1"), "1405/01/05", 25), fine);
    EXPECT_EQ(check(line(6, 1, "-1"), "1405/01/05"), fine);  // a new one comes last
}

TEST_F(NegativeStock, whatWasNegativeBeforeIsNotHeldAgainstWhoImprovesIt) {
    move(7, 1, "1405/01/01", 5, "-10");
    EXPECT_EQ(check(line(7, 1, "4"), "1405/01/25"), fine);
    EXPECT_EQ(check(line(7, 1, "-1"), "1405/01/25"), bread);
    // The same document with the same line again.
    EXPECT_EQ(check(line(7, 1, "-10"), "1405/01/01", 5), fine);
    EXPECT_EQ(check(line(7, 1, "-9"), "1405/01/01", 5), fine);
    EXPECT_EQ(check(line(7, 1, "-11"), "1405/01/01", 5), bread);
}

TEST_F(NegativeStock, withoutLinesNothingIsNegative) {
    EXPECT_EQ(check(line(5, 1, "-99") + " WHERE 1 = 0", "1405/01/25"), fine);
    EXPECT_EQ(check(line(5, 1, "NULL"), "1405/01/25"), fine);
}

TEST_F(NegativeStock, ofAGoodThatIsNotThereThereIsNothing) {
    EXPECT_EQ(check(line(99, 1, "-1"), "1405/01/25"), (Answer{1, "99", "99"}));
    EXPECT_EQ(check(line(99, 1, "-1") + " UNION ALL " + line(5, 1, "-99"), "1405/01/25"),
              (Answer{1, "قند، 99", "5,99"}));
    EXPECT_EQ(check(line(99, 1, "1"), "1405/01/25"), fine);
}

TEST_F(NegativeStock, aLineWithoutAGoodOrAStoreTakesFromNothing) {
    EXPECT_EQ(check("SELECT 5 AS Code, NULL AS Anbar, -1 AS Mogodi", "1405/01/25"), sugar);
    EXPECT_EQ(check("SELECT NULL AS Code, 1 AS Anbar, -5 AS Mogodi", "1405/01/25"), (Answer{1, "", ""}));
    EXPECT_EQ(check("SELECT NULL AS Code, NULL AS Anbar, 5 AS Mogodi UNION ALL SELECT 5, NULL, 0", "1405/01/25"), fine);
}

TEST_F(NegativeStock, warningFindsTheSameAndAllowingLooksAtNothing) {
    EXPECT_EQ(check(line(5, 1, "-99"), "1405/01/25", 0, 1), sugar);
    EXPECT_EQ(check("no query at all", "1405/01/25", 0, 2), fine);
}

TEST_F(NegativeStock, aQueryThatCannotRunIsAnError) {
    EXPECT_THROW(check("SELECT 1 AS Code", "1405/01/25"), DatabaseError);
}

TEST_F(NegativeStock, theCheckLeavesNothingBehind) {
    static_cast<void>(check(line(5, 1, "-99"), "1405/01/25"));
    EXPECT_EQ(rows("SELECT COUNT(*) FROM dbo.Kardex").at(0), "5");
    for (const char* table : {"Lines", "Changes", "Lowered", "Suspects", "Goods"})
        EXPECT_EQ(rows(std::string("SELECT OBJECT_ID('tempdb..#CheckNegativeInventory_") + table + "')").at(0), "NULL");
}

TEST_F(NegativeStock, linesMayComeFromATableOfTheCaller) {
    session->run(
        "CREATE TABLE #Invoice (Good int, Store int, Amount decimal(23, 9)) INSERT INTO #Invoice VALUES (5, 1, 99)");
    EXPECT_EQ(check("SELECT Good AS Code, Store AS Anbar, -Amount AS Mogodi FROM #Invoice", "1405/01/25"), sugar);
}

// Random ledgers and documents, new ones and edited ones, against the rule carried out step by step.
TEST_F(NegativeStock, agreesWithTheRuleOnRandomLedgers) {
    std::mt19937 random(14050101);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const auto day = [](int number) { return "1405/01/0" + std::to_string(number); };
    using Place = std::pair<int, int>;  // day and document
    struct Balance {
        int now = 0, later = 0;
    };
    int refused = 0;
    for (int round = 0; round < 200; ++round) {
        session->run("DELETE FROM dbo.Kardex");
        const bool overAllDates = round % 2 == 0;
        numberDocuments(overAllDates ? "all" : "date");
        const bool edited = below(2) == 0;
        const int place = edited ? 1 + below(9) : 2147483647;
        const int date = 1 + below(6);
        std::map<Place, std::map<std::pair<int, int>, Balance>> changes;
        for (int i = 5 + below(20); i > 0; --i) {
            const int document = 1 + below(9);
            const int good = 5 + below(2);
            const int store = 1 + below(2);
            const int amount = below(12) - 4;
            const int number = 1 + below(6);
            move(good, store, day(number).c_str(), document, std::to_string(amount).c_str());
            Balance& change = changes[{number, document}][{good, store}];
            change.now += amount;
            const bool own = document == place && (overAllDates || number == date);
            if (!own) change.later += amount;
        }
        std::string lines;
        for (int i = 1 + below(3); i > 0; --i) {
            const int good = 5 + below(2);
            const int store = 1 + below(2);
            const int amount = below(14) - 10;
            lines += (lines.empty() ? "" : " UNION ALL ") + line(good, store, std::to_string(amount));
            changes[{date, place}][{good, store}].later += amount;
        }
        std::map<std::pair<int, int>, Balance> balances;
        std::set<std::string> negative;
        for (const auto& [at, moved] : changes) {
            for (const auto& [of, change] : moved) {
                Balance& balance = balances[of];
                balance.now += change.now;
                balance.later += change.later;
                if (balance.later < 0 && balance.later < balance.now) negative.insert(std::to_string(of.first));
            }
        }
        std::string codes;
        for (const std::string& code : negative)
            codes += (codes.empty() ? "" : ",") + code;
        const Answer answer = check(lines, day(date), edited ? place : 0);
        EXPECT_EQ(answer.codes, codes) << "round " << round << ": " << lines;
        EXPECT_EQ(answer.result, negative.empty() ? 0 : 1);
        refused += negative.empty() ? 0 : 1;
    }
    EXPECT_GT(refused, 20);
    EXPECT_LT(refused, 180);
}

}  // namespace
}  // namespace basalt::host
