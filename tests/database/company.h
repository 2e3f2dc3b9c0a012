// A company small enough to work its figures out by hand: three goods, two stores, three persons.
#pragma once

#include "tests/database/test_database.h"
#include "tests/host_services/demo_database.h"

namespace basalt::host {

class SmallCompany : public ::testing::Test {
protected:
    SmallCompany() {
        deployDatabase(*session);
        session->run("DELETE FROM dbo.Units DELETE FROM dbo.Stores DELETE FROM dbo.CostLevel");
        session->run(
            "INSERT INTO dbo.Units (Code, Name) VALUES (1, N'عدد'), (2, N'کارتن')\n"
            "INSERT INTO dbo.Stores (Code, Name) VALUES (1, N'مرکزی'), (2, N'فروشگاه')\n"
            "INSERT INTO dbo.CostLevel (Code, Name, CostType) VALUES (0, N'همه', 1), (1, N'خرده', 1), (2, N'عمده', 1), "
            "(3, N'همکار', 1), (2, N'تخفیف', 3)\n"
            "INSERT INTO dbo.GoodInf (Code, Name, Unit, Unit2) VALUES (5, N'قند', 1, 2), (6, N'چای', 1, NULL), "
            "(7, N'نان', NULL, NULL)\n"
            "INSERT INTO dbo.GoodCostDiscount (GoodCode, CostLevel_Sell_1, CostLevel_Sell_2, CostLevel_Sell_3, "
            "CostLevel_Sell_4, CostLevel_Buy_1, CostLevel_Buy_2, Default_CostLevel_Sell_Number, "
            "Default_CostLevel_Buy_Number) VALUES (5, 1000, 900, 800, 700, 600, 550.5, 1, 2)\n"
            "INSERT INTO dbo.GoodCostDiscount (GoodCode, CostLevel_Sell_1) VALUES (6, 2000)\n"
            "INSERT INTO dbo.PerInf (Code, FullName) VALUES (10, N'علی احمدی'), (11, N'مریم نوری'), (12, N'حسن "
            "باقری')\n"
            "INSERT INTO dbo.costlist ([Type], [Status], TypeCode, CostLevelCode, [Default]) VALUES (1, 0, 10, 3, 1)\n"
            "INSERT INTO dbo.Currencies (Code, Name, Rate, Decimals) VALUES (2, N'دلار', 300, 2)");
    }

    [[nodiscard]] std::vector<std::string> rows(const std::string& sql) { return linesOf(*session, sql); }

    // A movement of a good in the ledger.
    void move(int good, int store, const char* date, int document, const char* amount, const char* unitPrice = "NULL",
              int operation = 2) {
        session->run(
            "INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad, Fi, OperationType, OperationCode) "
            "VALUES (" +
            std::to_string(good) + ", " + std::to_string(store) + ", N'" + date + "', " + std::to_string(document) +
            ", " + amount + ", " + unitPrice + ", " + std::to_string(operation) + ", " + std::to_string(document) +
            ")");
    }

    TestDatabase database;
    Session* const session = &database.session();
};

}  // namespace basalt::host
