#include "host/screens/print_setting_memory.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <iterator>

#include "host/screens/kept_order.h"
#include "host/services/print_column_store.h"
#include "host/services/sql_access.h"

namespace basalt::host {
namespace {

template <class Choice>
Choice kept(const QJsonValue& value, Choice last, Choice otherwise) {
    const int number = value.toInt(-1);
    return number < 0 || number > static_cast<int>(last) ? otherwise : static_cast<Choice>(number);
}

// False when the user's columns stand as the report had them.
constexpr QLatin1String kOrdered("ordered");

std::vector<std::string> namesOf(const std::vector<TPrintColumn>& columns) {
    std::vector<std::string> names;
    std::transform(columns.begin(), columns.end(), std::back_inserter(names), printSettingName);
    return names;
}

bool isBlank(const std::string& text) {
    return text.find_first_not_of(' ') == std::string::npos;
}

// The columns as they were chosen now, between those of the former choice that were not on offer: the report may show
// them the next time, at the place that they had.
QJsonArray merged(const QJsonArray& former, const std::vector<TPrintColumn>& chosen) {
    const auto isChosen = [&](const QString& name) {
        return std::any_of(chosen.begin(), chosen.end(),
                           [&](const TPrintColumn& column) { return printSettingName(column) == name.toStdString(); });
    };
    const auto entry = [](const TPrintColumn& column) {
        return QJsonObject{{QStringLiteral("name"), QString::fromStdString(printSettingName(column))},
                           {QStringLiteral("visible"), column.Visible}};
    };
    QJsonArray columns;
    auto next = chosen.begin();
    for (const auto& kept : former) {
        if (!isChosen(kept.toObject().value(QStringLiteral("name")).toString())) {
            columns.append(kept);
        } else if (next != chosen.end()) {
            columns.append(entry(*next++));
        }
    }
    for (; next != chosen.end(); ++next)
        columns.append(entry(*next));
    return columns;
}

}  // namespace

const std::string& printSettingName(const TPrintColumn& column) {
    return column.SettingName.empty() ? column.FieldName : column.SettingName;
}

TPrintSetting PrintSettingMemory::recall(const TPrintSettingRequest& request) {
    requestTitle_ = request.Title;
    const QJsonObject own = this->own();
    const std::string title = own.value(QStringLiteral("title")).toString().toStdString();
    TPrintSetting setting{.Title = isBlank(title) ? request.Title : title,
                          .Columns = request.Columns,
                          .Paper = kept(own.value(QStringLiteral("paper")), TPrintPaper::Letter, request.Paper),
                          .Orientation = kept(own.value(QStringLiteral("orientation")), TPrintOrientation::Landscape,
                                              request.Orientation)};

    const auto everybodys = PrintColumnStore(host_.session()).visible(report_);
    for (TPrintColumn& column : setting.Columns)
        if (const auto row = everybodys.find(printSettingName(column)); row != everybodys.end())
            column.Visible = row->second;

    const auto count = static_cast<int>(setting.Columns.size());
    const auto indexOf = [&](const std::string& name) {
        const auto found = std::find_if(setting.Columns.begin(), setting.Columns.end(),
                                        [&](const TPrintColumn& column) { return printSettingName(column) == name; });
        return static_cast<int>(found - setting.Columns.begin());
    };
    std::vector<int> order;
    for (const auto& entry : own.value(QStringLiteral("columns")).toArray()) {
        const std::string name = entry.toObject().value(QStringLiteral("name")).toString().toStdString();
        const int index = indexOf(name);
        if (index == count) continue;
        TPrintColumn& column = setting.Columns[static_cast<std::size_t>(index)];
        if (everybodys.contains(name))
            column.Visible = entry.toObject().value(QStringLiteral("visible")).toBool(column.Visible);
        order.push_back(index);
    }
    requestOrder_ = recalledOrder_ = namesOf(setting.Columns);
    ordered_ = own.value(kOrdered).toBool(!order.empty());
    if (!ordered_) return setting;
    std::vector<TPrintColumn> ordered;
    for (const int index : keptOrder(order, count))
        ordered.push_back(setting.Columns[static_cast<std::size_t>(index)]);
    setting.Columns = std::move(ordered);
    recalledOrder_ = namesOf(setting.Columns);
    return setting;
}

QJsonObject PrintSettingMemory::own() const {
    const std::string text = host_.formOptions().load(host_.UserInfo().Code, key()).value_or("");
    return QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
}

void PrintSettingMemory::keep(const TPrintSetting& setting) {
    const QJsonArray columns = merged(own().value(QStringLiteral("columns")).toArray(), setting.Columns);
    QJsonObject own{{QStringLiteral("paper"), static_cast<int>(setting.Paper)},
                    {QStringLiteral("orientation"), static_cast<int>(setting.Orientation)},
                    {QStringLiteral("columns"), columns}};
    // An order that the user never touched, or has put back, follows the report's.
    const std::vector<std::string> order = namesOf(setting.Columns);
    own.insert(kOrdered, order == recalledOrder_ ? ordered_ : order != requestOrder_);
    // A title that the user left alone, or took away, follows the report's.
    if (!isBlank(setting.Title) && setting.Title != requestTitle_)
        own.insert(QStringLiteral("title"), QString::fromStdString(setting.Title));

    HostTransaction transaction(host_.session());
    host_.formOptions().save(host_.UserInfo().Code, key(),
                             QJsonDocument(own).toJson(QJsonDocument::Compact).toStdString());
    PrintColumnStore store(host_.session());
    for (const TPrintColumn& column : setting.Columns)
        store.keep(report_, {printSettingName(column), column.Title, column.Visible});
    transaction.commit();
}

}  // namespace basalt::host
