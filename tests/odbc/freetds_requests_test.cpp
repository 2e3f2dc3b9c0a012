// What the session sends through FreeTDS: values, procedure calls, questions to the catalog.
#include "freetds.h"

namespace basalt::odbc {
namespace {

namespace tds = test::tds;
using test::errorOf;
using test::FreeTds;
using test::TdsParameter;
using test::TdsReply;
using test::TdsRequest;
using test::TdsType;
using testing::ElementsAre;

TEST_F(FreeTds, valuesTravelAsParameters) {
    server_.answer(TdsReply().doneInProcedure(1).returnStatus(0).doneProcedure());
    const std::vector<Value> values = {true,
                                       std::int64_t{-7},
                                       1.5,
                                       *Decimal::parse("-12.50"),
                                       std::string("سلام '?"),
                                       Bytes{1, 2},
                                       *parseDateTime("2024-03-20 10:15:00.123"),
                                       *parseDateTime("2024-03-20 10:15:00.1234567"),
                                       Null{},
                                       std::string(),
                                       std::string(100000, 'x'),
                                       Bytes(9000, 0xAB)};
    const BatchResult result =
        session().run("update T set A = ?, B = '?' where C in (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)", values);
    EXPECT_EQ(affectedRows(result), 1);
    ASSERT_THAT(sent(), ElementsAre("sp_executesql"));
    const std::vector<TdsParameter> all = server_.requests().at(0).parameters;
    EXPECT_EQ(all.at(0).value,
              "update T set A = @P1, B = '?' where C in (@P2, @P3, @P4, @P5, @P6, @P7, @P8, @P9, @P10, @P11, @P12)");
    EXPECT_EQ(
        all.at(1).value,
        "@P1 BIT,@P2 BIGINT,@P3 FLOAT,@P4 DECIMAL(38,2),@P5 NVARCHAR(4000),@P6 VARBINARY(8000),@P7 NVARCHAR(4000),"
        "@P8 NVARCHAR(4000),@P9 NVARCHAR(4000),@P10 NVARCHAR(4000),@P11 NVARCHAR(MAX),@P12 VARBINARY(MAX)");
    std::vector<std::string> bound;
    for (std::size_t i = 2; i < all.size(); ++i)
        bound.push_back(all[i].value.substr(0, 30));
    EXPECT_THAT(bound, ElementsAre("0x01", "-7", "0x000000000000F83F", "-12.50", "سلام '?", "0x0102",
                                   "2024-03-20T10:15:00.123", "2024-03-20T10:15:00.1234567", "NULL", "",
                                   std::string(30, 'x'), "0x" + std::string("ABABABABABABABABABABABABABAB")));
    EXPECT_EQ(all.at(12).value.size(), 100000U);
    EXPECT_EQ(all.at(13).value.size(), 2U + 2U * 9000U);
}

// What a data set sends for a new record with a number of the table's own. The driver keeps the count to itself.
TEST_F(FreeTds, theNewNumberOfAnInsertComesBack) {
    server_.answer(TdsReply()
                       .doneInProcedure(1)
                       .columns({tds::decimal("", 38, 0)})
                       .row({Decimal(17, 0)})
                       .doneInProcedure(1)
                       .returnStatus(0)
                       .doneProcedure());
    const std::vector<Value> values = {std::string("عمده")};
    const BatchResult result = session().run("INSERT INTO [T] ([Name]) VALUES (?); SELECT SCOPE_IDENTITY()", values);
    ASSERT_EQ(result.results.size(), 1U);
    EXPECT_EQ(toText(result.results[0].rows.value().column(0).valueAt(0)), "17");
}

// The texts of the module that call procedures by themselves, in all forms.
TEST_F(FreeTds, textsThatCallProceduresArriveAsTheyAre) {
    const std::vector<std::string> texts = {"EXEC GoodParticularInfo_SP 1",
                                            "exec p 1, N'متن'",
                                            "exec p 'x'",
                                            "exec p",
                                            "exec p @A = 1",
                                            "exec p 1; select 2"};
    for (const std::string& text : texts) {
        server_.answer(TdsReply()
                           .columns({tds::integer("A")})
                           .row({std::int64_t{1}})
                           .doneInProcedure(1)
                           .returnStatus(0)
                           .doneProcedure());
        const BatchResult result = session().run(text);
        EXPECT_EQ(result.results.at(0).rows.value().column(0).intAt(0), 1) << text;
    }
    EXPECT_EQ(sent(), texts);
}

// The driver's own doing: "{call p(...)}" becomes the same call in T-SQL or in the protocol.
TEST_F(FreeTds, callsInBracesAreCalls) {
    server_.answer(TdsReply().doneInProcedure(1).returnStatus(0).doneProcedure());
    server_.answer(TdsReply().doneInProcedure(1).returnStatus(0).doneProcedure());
    session().run("{call p(5)}");
    session().run("{call p('x', N'ی')}");
    ASSERT_THAT(sent(), ElementsAre("p", "exec p 'x', N'ی' "));
    EXPECT_EQ(server_.requests().at(0).kind, TdsRequest::Procedure);
    EXPECT_THAT(server_.requests().at(0).parameters,
                ElementsAre(TdsParameter{.name = "", .type = "int", .value = "5", .output = false}));
}

class FreeTdsProcedures : public FreeTds {
protected:
    void SetUp() override {
        FreeTds::SetUp();
        if (IsSkipped()) return;
        const auto text = [](const char* value) { return Value(std::string(value)); };
        const auto number = [](std::int64_t value) { return Value(value); };
        description_.columns({tds::nvarchar("name", 128)})
            .row({text("OfferCost")})
            .done(1, true)
            .columns({tds::nvarchar("name", 128), tds::nvarchar("", 128), tds::integer("max_length", 2),
                      tds::integer("precision", 1), tds::integer("scale", 1), tds::bit("is_output"),
                      tds::bit("has_default_value")})
            .row({text("@Good"), text("int"), number(4), number(10), number(0), false, false})
            .row({text("@Cost"), text("decimal"), number(9), number(18), number(3), true, false})
            .row({text("@Name"), text("nvarchar"), number(100), number(0), number(0), true, false})
            .row({text("@Time"), text("datetime"), number(8), number(23), number(3), true, false})
            .row({text("@Long"), text("nvarchar"), number(-1), number(0), number(0), true, false})
            .row({text("@Active"), text("bit"), number(1), number(1), number(0), false, false})
            .done(6);
    }

    TdsReply description_;
};

constexpr const char* kDescription =
    "SELECT o.name FROM sys.objects o WHERE o.object_id = OBJECT_ID(N'[OfferCost]') AND o.type IN ('P', 'PC')\n"
    "SELECT p.name, TYPE_NAME(p.system_type_id), p.max_length, p.precision, p.scale, p.is_output, p.has_default_value "
    "FROM sys.parameters p WHERE p.object_id = OBJECT_ID(N'[OfferCost]') AND p.parameter_id > 0 ORDER BY "
    "p.parameter_id";

TEST_F(FreeTdsProcedures, aProcedureIsDescribed) {
    server_.answer(description_);
    const ProcedureInfo info = session().procedure("OfferCost");
    EXPECT_THAT(sent(), ElementsAre(kDescription));
    EXPECT_EQ(info.name, "OfferCost");
    ASSERT_EQ(info.parameters.size(), 6U);
    EXPECT_EQ(info.parameters[0].name, "@Good");
    EXPECT_EQ(info.parameters[0].type.type, FieldType::Integer);
    EXPECT_EQ(info.parameters[0].direction, ParameterDirection::Input);
    EXPECT_EQ(info.parameters[1].direction, ParameterDirection::InputOutput);
    EXPECT_EQ(info.parameters[1].type.precision, 18);
    EXPECT_EQ(info.parameters[1].type.scale, 3);
    EXPECT_EQ(info.parameters[2].type.size, 50);
    EXPECT_EQ(info.parameters[3].type.type, FieldType::DateTime);
    EXPECT_EQ(info.parameters[4].type.size, 0);
    EXPECT_EQ(info.parameters[5].type.type, FieldType::Boolean);
}

TEST_F(FreeTdsProcedures, aMissingProcedureIsNotFound) {
    server_.answer(
        TdsReply().columns({tds::nvarchar("name", 128)}).done(0, true).columns({tds::nvarchar("name", 128)}).done(0));
    const DatabaseError error = errorOf([&] { session().procedure("dbo.It's"); });
    EXPECT_EQ(error.category(), ErrorCategory::NotFound);
    EXPECT_EQ(error.nativeCode(), 2812);
    EXPECT_STREQ(error.what(), "Could not find stored procedure 'dbo.It's'.");
    EXPECT_THAT(sent().at(0), testing::HasSubstr("OBJECT_ID(N'dbo.It''s')"));
}

TEST_F(FreeTdsProcedures, outputsAndReturnValueComeBack) {
    server_.answer(description_);
    server_.answer(
        TdsReply()
            .info(0, "در راه")
            .columns({tds::integer("A")})
            .row({std::int64_t{1}})
            .doneInProcedure(1)
            .doneInProcedure(4)
            .returnStatus(-6)
            .returnValue(1, tds::decimal("@Cost", 18, 3), *Decimal::parse("2.5"))
            .returnValue(2, tds::nvarchar("@Name", 50), std::string("قیمت"))
            .returnValue(3, tds::column("@Time", TdsType::Datetime), *parseDateTime("2024-03-20 10:15:00.997"))
            .returnValue(4, tds::column("@Long", TdsType::NvarcharMax), std::string("بلند"))
            .doneProcedure());
    // In another order than the procedure's.
    const std::vector<Argument> arguments = {{"@long", Null{}, true},
                                             {"@Cost", std::string("1.5"), true},
                                             {"@Good", std::int64_t{5}, false},
                                             {"@Name", Null{}, true},
                                             {"@Time", *parseDateTime("2024-03-20"), true}};
    const CallResult result = session().call("OfferCost", arguments);
    EXPECT_EQ(result.returnValue, -6);
    EXPECT_EQ(result.batch.results.at(0).rows.value().column(0).intAt(0), 1);
    EXPECT_THAT(result.batch.messages, ElementsAre("در راه"));
    std::vector<std::string> outputs;
    for (const Argument& output : result.outputs)
        outputs.push_back(output.name + "=" + toText(output.value));
    EXPECT_THAT(outputs, ElementsAre("@long=بلند", "@Cost=2.500", "@Name=قیمت", "@Time=2024-03-20 10:15:00.997"));
    EXPECT_THAT(sent(), ElementsAre(kDescription, "OfferCost"));
    EXPECT_THAT(server_.requests().at(1).parameters,
                ElementsAre(TdsParameter{"", "int", "5", false}, TdsParameter{"", "decimal(18,3)", "1.500", true},
                            TdsParameter{"", "nvarchar(50)", "NULL", true}, testing::Field(&TdsParameter::output, true),
                            TdsParameter{"", "nvarchar(max)", "NULL", true}));
}

TEST_F(FreeTdsProcedures, anOutputIsNullAgainAndALongOneIsWhole) {
    const std::string text = "ی" + std::string(20000, 'x');
    server_.answer(description_);
    server_.answer(TdsReply()
                       .returnStatus(0)
                       .returnValue(1, tds::decimal("@Cost", 18, 3), Null{})
                       .returnValue(2, tds::nvarchar("@Name", 50), std::string())
                       .returnValue(3, tds::column("@Time", TdsType::Datetime), Null{})
                       .returnValue(4, tds::column("@Long", TdsType::NvarcharMax), text)
                       .doneProcedure());
    const std::vector<Argument> arguments = {{"@Good", std::int64_t{5}, false},
                                             {"@Cost", std::int64_t{1}, true},
                                             {"@Name", std::string("a"), true},
                                             {"@Time", Null{}, true},
                                             {"@Long", std::string("b"), true}};
    const CallResult result = session().call("OfferCost", arguments);
    EXPECT_EQ(result.outputs.at(0).value, Value(Null{}));
    EXPECT_EQ(result.outputs.at(1).value, Value(std::string()));
    EXPECT_EQ(result.outputs.at(2).value, Value(Null{}));
    EXPECT_TRUE(result.outputs.at(3).value == Value(text));
}

TEST_F(FreeTdsProcedures, anOutputThatIsTooLongIsNeverCut) {
    server_.answer(description_);
    server_.answer(TdsReply()
                       .returnStatus(0)
                       .returnValue(4, tds::column("@Long", TdsType::NvarcharMax), std::string(40000, 'x'))
                       .doneProcedure());
    server_.answer(TdsReply().done(1));
    const std::vector<Argument> arguments = {{"@Good", std::int64_t{5}, false},
                                             {"@Cost", Null{}, false},
                                             {"@Name", Null{}, false},
                                             {"@Time", Null{}, false},
                                             {"@Long", Null{}, true}};
    const DatabaseError error = errorOf([&] { session().call("OfferCost", arguments); });
    EXPECT_EQ(error.category(), ErrorCategory::Truncation);
    EXPECT_STREQ(error.what(), "the value of @Long is longer than the parameter that receives it");
    session().run("next");
}

TEST_F(FreeTdsProcedures, whatIsLeftOutBetweenOthersTakesItsDefault) {
    server_.answer(description_);
    server_.answer(TdsReply()
                       .columns({tds::integer("A")})
                       .row({std::int64_t{1}})
                       .doneInProcedure(1)
                       .columns({tds::integer(""), tds::nvarchar("", 50), tds::column("", TdsType::NvarcharMax)})
                       .row({std::int64_t{3}, std::string("قیمت"), Null{}})
                       .doneInProcedure(1)
                       .returnStatus(0)
                       .doneProcedure());
    const std::vector<Argument> arguments = {{"@Active", true, false},
                                             {"@Long", std::string("x"), true},
                                             {"@Good", std::int64_t{5}, false},
                                             {"@Name", Null{}, true}};
    const CallResult result = session().call("OfferCost", arguments);
    ASSERT_THAT(sent(), ElementsAre(kDescription, "sp_executesql"));
    const std::vector<TdsParameter> all = server_.requests().at(1).parameters;
    EXPECT_EQ(all.at(0).value,
              "DECLARE @basalt_return int, @basalt_1 nvarchar(50) = @P1, @basalt_2 nvarchar(max) = @P2\n"
              "EXEC @basalt_return = OfferCost @Good = @P3, @Name = @basalt_1 OUTPUT, @Long = @basalt_2 OUTPUT, "
              "@Active = @P4\n"
              "SELECT @basalt_return, @basalt_1, @basalt_2");
    EXPECT_EQ(all.at(1).value, "@P1 NVARCHAR(50),@P2 NVARCHAR(MAX),@P3 INT,@P4 BIT");
    EXPECT_EQ(all.at(4).value, "5");
    EXPECT_EQ(result.returnValue, 3);
    ASSERT_EQ(result.outputs.size(), 2U);
    EXPECT_EQ(result.outputs[0].name, "@Long");
    EXPECT_EQ(result.outputs[0].value, Value(Null{}));
    EXPECT_EQ(toText(result.outputs[1].value), "قیمت");
    ASSERT_EQ(result.batch.results.size(), 1U);
    EXPECT_EQ(result.batch.results[0].rows.value().column(0).intAt(0), 1);
}

// Texts go as nvarchar, which holds 4000 characters at the most.
TEST_F(FreeTds, aParameterOfVarchar8000TakesTheLongForm) {
    server_.answer(TdsReply()
                       .columns({tds::nvarchar("name", 128)})
                       .row({std::string("P")})
                       .done(1, true)
                       .columns({tds::nvarchar("name", 128), tds::nvarchar("", 128), tds::integer("max_length", 2),
                                 tds::integer("precision", 1), tds::integer("scale", 1), tds::bit("is_output"),
                                 tds::bit("has_default_value")})
                       .row({std::string("@Codes"), std::string("varchar"), std::int64_t{8000}, std::int64_t{0},
                             std::int64_t{0}, false, false})
                       .row({std::string("@Out"), std::string("varchar"), std::int64_t{8000}, std::int64_t{0},
                             std::int64_t{0}, true, false})
                       .done(2));
    const std::string longText(7000, 'x');
    server_.answer(
        TdsReply().returnStatus(0).returnValue(2, tds::column("@Out", TdsType::NvarcharMax), longText).doneProcedure());
    const std::vector<Argument> arguments = {{"@Codes", std::string("1,2"), false}, {"@Out", Null{}, true}};
    const CallResult result = session().call("P", arguments);
    EXPECT_THAT(server_.requests().at(1).parameters, ElementsAre(TdsParameter{"", "nvarchar(max)", "1,2", false},
                                                                 TdsParameter{"", "nvarchar(max)", "NULL", true}));
    EXPECT_EQ(result.outputs.at(0).value, Value(longText));
}

TEST_F(FreeTdsProcedures, aValueOfAnotherKindIsLeftToTheServer) {
    server_.answer(description_);
    server_.answer(
        TdsReply().error(8114, 16, "Error converting data type nvarchar to int.").returnStatus(-6).doneProcedure(true));
    const std::vector<Argument> arguments = {{"@Good", std::string("سلام"), false}};
    EXPECT_EQ(errorOf([&] { session().call("OfferCost", arguments); }).nativeCode(), 8114);
    EXPECT_THAT(server_.requests().at(1).parameters, ElementsAre(TdsParameter{"", "nvarchar(4000)", "سلام", false}));
}

TEST_F(FreeTdsProcedures, itIsDescribedOnceForItsCallsAndAnewAfterAnError) {
    server_.answer(description_);
    for (int i = 0; i < 2; ++i)
        server_.answer(TdsReply().returnStatus(0).doneProcedure());
    server_.answer(TdsReply()
                       .error(201, 16, "Procedure or function 'OfferCost' expects parameter '@Kind'.")
                       .returnStatus(-4)
                       .doneProcedure(true));
    server_.answer(description_);
    server_.answer(TdsReply().returnStatus(1).doneProcedure());
    const std::vector<Argument> arguments = {{"@Good", std::int64_t{5}, false}};
    session().call("OfferCost", arguments);
    session().call("offercost", arguments);
    EXPECT_EQ(errorOf([&] { session().call("OfferCost", arguments); }).nativeCode(), 201);
    EXPECT_EQ(session().call("OfferCost", arguments).returnValue, 1);
    EXPECT_THAT(sent(), ElementsAre(kDescription, "OfferCost", "offercost", "OfferCost", kDescription, "OfferCost"));
}

TEST_F(FreeTdsProcedures, anUnknownArgumentIsRefusedBeforeAnythingIsSent) {
    server_.answer(description_);
    const std::vector<Argument> arguments = {{"@Nothing", std::int64_t{5}, false}};
    const DatabaseError error = errorOf([&] { session().call("OfferCost", arguments); });
    EXPECT_EQ(error.nativeCode(), 8145);
    EXPECT_STREQ(error.what(), "@Nothing is not a parameter for procedure OfferCost.");
    EXPECT_THAT(sent(), ElementsAre(kDescription));
}

TdsReply tableAnswer() {
    const auto text = [](const char* value) { return Value(std::string(value)); };
    const auto number = [](std::int64_t value) { return Value(value); };
    return TdsReply()
        .columns({tds::nvarchar("name", 128)})
        .row({text("Goods")})
        .done(1, true)
        .columns({tds::nvarchar("name", 128), tds::nvarchar("", 128), tds::integer("max_length", 2),
                  tds::integer("precision", 1), tds::integer("scale", 1), tds::bit("is_nullable"),
                  tds::bit("is_identity")})
        .row({text("Code"), text("int"), number(4), number(10), number(0), false, true})
        .row({text("Name"), text("nvarchar"), number(200), number(0), number(0), true, false})
        .row({text("Price"), text("money"), number(8), number(19), number(4), true, false})
        .row({text("Kind"), text("char"), number(3), number(0), number(0), true, false})
        .row({text("Picture"), text("varbinary"), number(-1), number(0), number(0), true, false})
        .done(5, true)
        .columns({tds::nvarchar("name", 128)})
        .row({text("Kind")})
        .row({text("Code")})
        .done(2);
}

TEST_F(FreeTds, aTableIsDescribed) {
    server_.answer(tableAnswer());
    const TableInfo table = session().table("Goods");
    EXPECT_THAT(
        sent(),
        ElementsAre(
            "SELECT o.name FROM sys.objects o WHERE o.object_id = OBJECT_ID(N'[Goods]') AND o.type IN ('U', 'V')\n"
            "SELECT c.name, TYPE_NAME(c.system_type_id), c.max_length, c.precision, c.scale, c.is_nullable, "
            "c.is_identity FROM sys.columns c WHERE c.object_id = OBJECT_ID(N'[Goods]') ORDER BY c.column_id\n"
            "SELECT c.name FROM sys.indexes i INNER JOIN sys.index_columns k ON k.object_id = i.object_id AND "
            "k.index_id = i.index_id INNER JOIN sys.columns c ON c.object_id = k.object_id AND c.column_id = "
            "k.column_id WHERE i.is_primary_key = 1 AND i.object_id = OBJECT_ID(N'[Goods]') ORDER BY "
            "k.key_ordinal"));
    EXPECT_EQ(table.name, "Goods");
    EXPECT_THAT(table.key, ElementsAre("Kind", "Code"));
    ASSERT_EQ(table.columns.size(), 5U);
    EXPECT_TRUE(table.columns[0].identity);
    EXPECT_FALSE(table.columns[0].nullable);
    EXPECT_EQ(table.columns[0].baseTable, "Goods");
    EXPECT_EQ(table.columns[1].size, 100);
    EXPECT_EQ(table.columns[1].baseColumn, "Name");
    EXPECT_EQ(table.columns[2].type, FieldType::Decimal);
    EXPECT_EQ(table.columns[2].scale, 4);
    EXPECT_TRUE(table.columns[3].fixedLength);
    EXPECT_EQ(table.columns[4].type, FieldType::Binary);
    EXPECT_EQ(table.columns[4].size, 0);
}

TEST_F(FreeTds, aTemporaryTableIsLookedForWhereItLives) {
    server_.answer(tableAnswer());
    EXPECT_EQ(session().table("#Goods").name, "#Goods");
    EXPECT_THAT(sent().at(0), testing::StartsWith("SELECT o.name FROM tempdb.sys.objects o WHERE o.object_id = "
                                                  "OBJECT_ID(N'tempdb..[#Goods]') AND o.type IN ('U', 'V')\n"));
}

TEST_F(FreeTds, aMissingTableIsNotFound) {
    server_.answer(TdsReply()
                       .columns({tds::nvarchar("name", 128)})
                       .done(0, true)
                       .columns({tds::nvarchar("name", 128)})
                       .done(0, true)
                       .columns({tds::nvarchar("name", 128)})
                       .done(0));
    const DatabaseError error = errorOf([&] { session().table("Nothing"); });
    EXPECT_EQ(error.category(), ErrorCategory::NotFound);
    EXPECT_EQ(error.nativeCode(), 208);
    EXPECT_STREQ(error.what(), "Invalid object name 'Nothing'.");
}

}  // namespace
}  // namespace basalt::odbc
