#include "cli/Processes.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

#include <csignal>

namespace {

/// Returns "event.field" of each line of the document, and its type.
QMap<QString, QString> documentedFields() {
    const QString text = QString::fromUtf8(contents(ZRK_SOURCE_FOLDER "/docs/json.md"));
    static const QRegularExpression kRow("^\\| `(\\w+)` \\| `(\\w+)` \\| (\\w+) \\|",
                                         QRegularExpression::MultilineOption);
    QMap<QString, QString> fields;
    for (auto rows = kRow.globalMatch(text); rows.hasNext();) {
        const auto row = rows.next();
        fields.insert(row.captured(1) + '.' + row.captured(2), row.captured(3));
    }
    return fields;
}

QString typeName(const QJsonValue& value) {
    return value.isDouble() ? "number" : value.isArray() ? "array" : value.isBool() ? "boolean" : "string";
}

/// Adds "event.field" of the object, and of the objects in its arrays.
void noteFields(const QString& event, const QJsonObject& object, const QMap<QString, QString>& documented,
                QSet<QString>& seen) {
    for (const QString& field : object.keys()) {
        const QJsonValue value = object.value(field);
        if (field == "event" || field == "time" || field == "label" || field == "port")
            continue;
        const QString name = event + '.' + field;
        seen += name;
        EXPECT_TRUE(value.isNull() || documented.value(name) == typeName(value)) << name.toStdString();
        for (const QJsonValue element : value.toArray()) {
            if (element.isObject())
                noteFields(field, element.toObject(), documented, seen);
        }
    }
}

TEST(Json, IsPrintedAsTheDocumentHasIt) {
    const auto documented = documentedFields();
    ASSERT_GT(documented.size(), 20);
    const SampleImages images;
    const BoardProcess board("--unpaced --verbose --bootid-interval 5 --patience 0 --answer-delay 0.02 "
                             "--version-text P1");
    const QString label = images.on(board.device(), "--line-rate 0 ").replace("--port ", "--port b1=") +
                          "--line-rate 11520 -j ";
    const struct {
        QString arguments;
        const char* reason;
        const char* limit;
        const char* text; // of the result
    } runs[] = {
        {label + "-v load start expect zrk> --start-timeout 600 --on-wait \"sleep 2\"", // a wait to report
         "done", "", "Done in "},
        {label + "flash", "done", "", "Done in "},
        {label + "flash --dry-run", "done", "", "Nothing was sent."},
        {label + "expect never --expect-timeout 0.1", "limit_reached", "expect-timeout",
         "--expect-timeout ran out: \"never\" did not come within 0.1 s."},
        {"-j --ini " + images.ini() + " --port /nonexistent load", "port_not_opened", "", "Error"},
        {"-qj", "usage", "", "No step given"},
        {"-j ports --com 8=tcp:rack:2001", "done", "", "Done in "},
    };
    QSet<QString> seen;
    static const QRegularExpression kTime("^20\\d\\d-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z$");
    for (const auto& oneRun : runs) {
        SCOPED_TRACE(oneRun.arguments.toStdString());
        board.signal(SIGUSR1); // its power
        CliRun run(oneRun.arguments);
        const int status = run.status();
        QJsonObject object;
        for (const QByteArray& line : run.output().trimmed().split('\n')) {
            const bool isFirst = object.isEmpty();
            object = QJsonDocument::fromJson(line).object();
            const QString event = object.value("event").toString();
            EXPECT_EQ(event == "begin", isFirst);
            EXPECT_TRUE(object.value("time").toString().contains(kTime)) << line.toStdString();
            if (oneRun.arguments.contains("b1=") && !isFirst) {
                EXPECT_EQ(object.value("label"), "b1") << line.toStdString();
                EXPECT_EQ(object.value("port"), board.device()) << line.toStdString();
            }
            noteFields(event, object, documented, seen);
        }
        EXPECT_EQ(object.value("event"), "result");
        EXPECT_EQ(object.value("status"), status);
        EXPECT_EQ(object.value("reason"), oneRun.reason);
        EXPECT_EQ(object.value("limit").toString(), oneRun.limit);
        EXPECT_TRUE(object.value("text").toString().startsWith(oneRun.text))
            << object.value("text").toString().toStdString();
    }
    QStringList missing;
    for (const QString& name : documented.keys())
        missing += seen.contains(name) ? QString() : name;
    missing.removeAll(QString());
    EXPECT_EQ(missing.join(' ').toStdString(), "dropped.events prompt.text");
}

} // namespace
