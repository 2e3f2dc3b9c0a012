#include "goods/scale_unt.h"

#include "package/borrowed.h"
#include "package/messages.h"
#include "package/services.h"

namespace basalt {

namespace {

constexpr int kGroups = 20;
constexpr int kHidden = 0;
constexpr const char* kAgent = "ScaleAgentApp.exe";
constexpr const char* kLibrary = "ScaleAgent.dll";
constexpr const char* kRegister = "GoodInfo_Register";
constexpr std::size_t kBehindTheLastPart = 13;  // all of "UNION ALL " and the line ends around it but the first

std::string inDoubleQuotes(const std::string& text) {
    return '"' + text + '"';
}

// Whether it runs is the host's to tell: the selection goes on with the next key either way.
void startAgent(const std::string& parameters) {
    (void)Programs().start(
        {.verb = "open", .file = kAgent, .parameters = parameters, .directory = {}, .show = kHidden});
}

// The keys of the scales that mean one of the goods. Each group's items stand in a column of their own.
std::string keysStatement(const std::string& codes) {
    std::string statement;
    for (int number = 1; number <= kGroups; ++number) {
        const std::string group = std::to_string(number);
        statement +=
            " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode "
            " , sc.ipRange, items.costlevel_Type, sg.GroupNo  "
            " FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = " +
            group + " JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group" + group +
            " WHERE Group" + group + " IN (" + codes +
            ") "
            "\n\r"
            "UNION ALL "
            "\n\r";
    }
    statement.erase(statement.size() - kBehindTheLastPart);
    return statement;
}

// The blanks inside the quotes of the second name and of the barcode are the agent's layout.
std::string agentParameters(TDataSet& key, bool last) {
    const auto field = [&key](const char* name) { return key.FieldByName(name).AsString(); };
    return field("GoodCode") + " \"" + field("Name1") + "\" \"" + field("Name2") + " \"  " + field("Price") + "  " +
           field("ItemType") + " \"" + field("BarCode") + " \"  " + field("PLU") + "  " + field("IP") + "  " +
           (last ? "1" : "0");
}

}  // namespace

void GoodInf_SendToScale(const std::string& codes, TScaleType scaleType) {
    if (scaleType == 0) {
        startAgent(inDoubleQuotes(DM().ADOConnection1.ConnectionString) + ' ' + inDoubleQuotes(codes));
        return;
    }
    const Borrowed<TADOQuery> keys(DM().SharedQuery);
    keys->SQL = keysStatement(codes);
    keys->Open();
    for (keys->First(); !keys->Eof(); keys->Next())
        startAgent(agentParameters(*keys, keys->RecNo() == keys->RecordCount()));
}

}  // namespace basalt

std::int32_t BASALT_STDCALL GoodInfo_ScaleAgent(std::int32_t GoodCode, const char16_t* Name1, const char16_t* Name2,
                                                std::int32_t Price, std::int32_t ItemType, std::int32_t AlterPrice,
                                                const char16_t* Barcode, std::int32_t ItemCode, std::int32_t Section,
                                                const char16_t* PLU, std::int32_t ScaleIP) {
    using namespace basalt;
    const auto library = Programs().load(kLibrary);
    if (!library) {
        ShowMessage(inDoubleQuotes(kLibrary) + " DLL File not found / not loaded");
        return 0;
    }
    const auto function = reinterpret_cast<TGoodInfoScaleAgent>(library->find(kRegister));
    if (function == nullptr) {
        ShowMessage(inDoubleQuotes(kRegister) + " Method not found in the DLL");
        return 0;
    }
    return function(GoodCode, Name1, Name2, Price, ItemType, AlterPrice, Barcode, ItemCode, Section, PLU, ScaleIP);
}
