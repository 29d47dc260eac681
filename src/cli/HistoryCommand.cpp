#include "cli/Commands.h"
#include "cli/JsonWriter.h"
#include "core/DateText.h"
#include "core/ParseFileLog.h"
#include "core/UtilityFunction.h"

namespace brightsweep::cli {

namespace {

void configure(QCommandLineParser &) {}

int run(const QCommandLineParser &parser, Output &output) {
    if (!parser.positionalArguments().isEmpty())
        return output.usage("Write `history` alone; it takes nothing behind it.");
    FileLog record;
    ParseFileLog().readFileLog(QString(), record);
    if (output.json) {
        JsonWriter json;
        json.beginObject();
        json.key("schema").value(1);
        json.key("command").value("history");
        json.key("logName").value(record.logName);
        json.key("date");
        if (record.date.isValid())
            json.value(record.date.toUTC().toString(Qt::ISODate));
        else
            json.nullValue();
        json.key("bytes").value(record.iSize);
        json.endObject();
        return output.data(json.take()) ? Done : Failed;
    }
    Table table({false, false});
    table.row({"Record", record.logName.toStdString()});
    table.row({"Date", record.date.isValid() ? dateText(record.date).toStdString() : "unknown"});
    table.row(
        {"Size", UtilityFunction::convertVolSpace(std::uint64_t(record.iSize)).toStdString()});
    return output.data(table.text()) ? Done : Failed;
}

} // namespace

const Command historyCommand = {"history", "Shows the record of the last clean", configure, run};

} // namespace brightsweep::cli
