#include "cli/Commands.h"
#include "cli/JsonWriter.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/VolumeSource.h"
#include "volumes/VolumesInfo.h"
#include "volumes/VolumesManager.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>

namespace brightsweep::cli {

namespace {

// How long one listing waits for services and servers that have not answered yet.
constexpr int settleMilliseconds = 1500;

// By VolumeType.
constexpr std::array typeWords = {"Local", "External", "Optical", "Network", "Disk image"};

std::vector<DSVolumeInfo> settledVolumes() {
    VolumesInfo volumes;
    Platform::current().volumes->settle(settleMilliseconds);
    return volumes.getAllVolsInfo();
}

std::string joined(const std::vector<std::string> &names) {
    std::string text;
    for (const std::string &name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

std::string reasonOf(const EjectResult &result) {
    std::string reason = result.message.substr(0, result.message.find_last_not_of("\r\n") + 1);
    if (!result.holders.empty())
        reason += (reason.empty() ? "" : "; ") + ("held by " + joined(result.holders));
    return reason;
}

void configure(QCommandLineParser &parser) {
    parser.addOption({QStringLiteral("all"), QStringLiteral("Every volume that can be ejected.")});
    parser.addPositionalArgument(QStringLiteral("eject"),
                                 QStringLiteral("Ejects instead of listing."),
                                 QStringLiteral("[eject REF|--all]"));
}

std::string listAsJson(const std::vector<DSVolumeInfo> &volumes) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("volumes");
    json.key("volumes").beginArray();
    for (const DSVolumeInfo &volume : volumes) {
        json.beginObject();
        json.key("refNumber").value(volume.volRefNumber);
        json.key("name").value(volume.volumeName);
        json.path("root", volume.volRootDir);
        json.key("type").value(volume.volType);
        json.key("typeName").value(DSVolumeInfo::sectionKey(volume.volType));
        json.key("total").value(volume.totalSpace);
        json.key("free").value(volume.freeSpace);
        json.key("totalBytes").value(volume.nTotalSize);
        json.key("freeBytes").value(volume.nFreeSize);
        json.key("canEject").value(volume.bCanEject);
        json.key("default").value(volume.bIsDefaultVol);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.take();
}

std::string listAsTable(const std::vector<DSVolumeInfo> &volumes) {
    Table table({true, false, false, true, true, false, false});
    table.row({"Ref", "Name", "Type", "Free", "Total", "Eject", "Root"});
    for (const DSVolumeInfo &volume : volumes) {
        table.row({std::to_string(volume.volRefNumber), volume.volumeName.toStdString(),
                   typeWords[std::size_t(volume.volType)], volume.freeSpace.toStdString(),
                   volume.totalSpace.toStdString(), volume.bCanEject ? "yes" : "no",
                   volume.volRootDir.native()});
    }
    return table.text();
}

std::string ejectsAsJson(const std::vector<VolumeEjectAttempt> &attempts) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("volumes");
    const auto array = [&](const char *name, bool failed) {
        json.key(name).beginArray();
        for (const VolumeEjectAttempt &attempt : attempts) {
            if ((attempt.result.status != 0) != failed)
                continue;
            json.beginObject();
            json.key("refNumber").value(attempt.refNumber);
            if (attempt.result.driveStays)
                json.key("driveStays").value(true);
            if (failed || attempt.result.driveStays) {
                json.key("status").value(attempt.result.status);
                json.key("error").value(paths::text(attempt.result.message));
            }
            if (failed) {
                json.key("holders").beginArray();
                for (const std::string &holder : attempt.result.holders)
                    json.value(paths::text(holder));
                json.endArray();
            }
            json.endObject();
        }
        json.endArray();
    };
    array("ejected", false);
    array("failed", true);
    json.endObject();
    return json.take();
}

int report(const std::vector<VolumeEjectAttempt> &attempts, Output &output) {
    std::string text;
    std::size_t failed = 0;
    for (const VolumeEjectAttempt &attempt : attempts) {
        const std::string number = std::to_string(attempt.refNumber);
        const bool isEjected = attempt.result.status == 0;
        if (isEjected)
            text += "Volume " + number +
                    (attempt.result.driveStays ? " is unmounted\n" : " is ejected\n");
        else
            ++failed;
        if (attempt.result.driveStays)
            output.warning("Volume " + number +
                           " is unmounted, but its drive stays: " + reasonOf(attempt.result));
        else if (!isEjected)
            output.warning("Volume " + number + " stays: " + reasonOf(attempt.result));
    }
    if (!output.data(output.json ? ejectsAsJson(attempts) : text))
        return Failed;
    if (failed == 0)
        return Done;
    return failed == attempts.size() ? Failed : PartlyFailed;
}

int eject(const QStringList &arguments, bool all, Output &output) {
    VolumesManager manager;
    if (all) {
        if (arguments.size() != 1)
            return output.usage("Write `brightsweep-cli volumes eject --all` without a number.");
        settledVolumes();
        if (manager.ejectAllVolumes() < 0)
            output.warning("There is no volume that can be ejected.");
        return report(manager.lastEjects(), output);
    }
    const std::string text = arguments.size() == 2 ? argumentBytes(arguments[1]) : std::string();
    const char *const end = text.data() + text.size();
    std::int16_t reference = 0;
    const auto read = std::from_chars(text.data(), end, reference);
    if (read.ec != std::errc() || read.ptr != end || reference <= 0)
        return output.usage("Write `brightsweep-cli volumes eject REF` with a number of the first "
                            "column of `brightsweep-cli volumes`, or --all.");
    settledVolumes();
    manager.ejectSingleVolume(reference);
    return report(manager.lastEjects(), output);
}

int run(const QCommandLineParser &parser, Output &output) {
    const QStringList arguments = parser.positionalArguments();
    const bool all = parser.isSet(QStringLiteral("all"));
    if (!arguments.isEmpty() && arguments.constFirst() == QLatin1String("eject"))
        return eject(arguments, all, output);
    if (!arguments.isEmpty() || all)
        return output.usage("Write `brightsweep-cli volumes`, or `brightsweep-cli volumes eject` "
                            "with a number or --all.");
    const auto volumes = settledVolumes();
    return output.data(output.json ? listAsJson(volumes) : listAsTable(volumes)) ? Done : Failed;
}

} // namespace

const Command volumesCommand = {"volumes", "The mounted volumes, and ejecting them", configure,
                                run};

} // namespace brightsweep::cli
