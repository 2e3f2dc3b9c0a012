#include "host/screens/print_setting_memory.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

#include "host/services/print_column_store.h"
#include "host/services/sql_access.h"

namespace basalt::host {
namespace {

template <class Choice>
Choice kept(const QJsonValue& value, Choice last, Choice otherwise) {
    const int number = value.toInt(-1);
    return number < 0 || number > static_cast<int>(last) ? otherwise : static_cast<Choice>(number);
}

}  // namespace

const std::string& printSettingName(const TPrintColumn& column) {
    return column.SettingName.empty() ? column.FieldName : column.SettingName;
}

TPrintSetting PrintSettingMemory::recall(const TPrintSettingRequest& request) {
    requestTitle_ = request.Title;
    const std::string text = host_.formOptions().load(host_.UserInfo().Code, key()).value_or("");
    const QJsonObject own = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
    TPrintSetting setting{
        .Title = own.value(QStringLiteral("title")).toString(QString::fromStdString(request.Title)).toStdString(),
        .Columns = request.Columns,
        .Paper = kept(own.value(QStringLiteral("paper")), TPrintPaper::Letter, request.Paper),
        .Orientation =
            kept(own.value(QStringLiteral("orientation")), TPrintOrientation::Landscape, request.Orientation)};

    const auto everybodys = PrintColumnStore(host_.session()).visible(report_);
    for (TPrintColumn& column : setting.Columns)
        if (const auto row = everybodys.find(printSettingName(column)); row != everybodys.end())
            column.Visible = row->second;

    auto next = setting.Columns.begin();
    for (const auto& entry : own.value(QStringLiteral("columns")).toArray()) {
        const std::string name = entry.toObject().value(QStringLiteral("name")).toString().toStdString();
        const auto found = std::find_if(next, setting.Columns.end(),
                                        [&](const TPrintColumn& column) { return printSettingName(column) == name; });
        if (found == setting.Columns.end()) continue;
        if (everybodys.contains(name))
            found->Visible = entry.toObject().value(QStringLiteral("visible")).toBool(found->Visible);
        std::rotate(next, found, found + 1);
        ++next;
    }
    return setting;
}

void PrintSettingMemory::keep(const TPrintSetting& setting) {
    QJsonArray columns;
    for (const TPrintColumn& column : setting.Columns)
        columns.append(QJsonObject{{QStringLiteral("name"), QString::fromStdString(printSettingName(column))},
                                   {QStringLiteral("visible"), column.Visible}});
    QJsonObject own{{QStringLiteral("paper"), static_cast<int>(setting.Paper)},
                    {QStringLiteral("orientation"), static_cast<int>(setting.Orientation)},
                    {QStringLiteral("columns"), columns}};
    // A title that the user left alone follows the report's.
    if (setting.Title != requestTitle_) own.insert(QStringLiteral("title"), QString::fromStdString(setting.Title));

    HostTransaction transaction(host_.session());
    host_.formOptions().save(host_.UserInfo().Code, key(),
                             QJsonDocument(own).toJson(QJsonDocument::Compact).toStdString());
    PrintColumnStore store(host_.session());
    for (const TPrintColumn& column : setting.Columns)
        store.keep(report_, {printSettingName(column), column.Title, column.Visible});
    transaction.commit();
}

}  // namespace basalt::host
