#include "uninstall/AppItems.h"

#include <utility>

namespace brightsweep {

AppItems::AppItems(QString infoDictionary, QString itemName, std::filesystem::path itemPath,
                   QString itemID, QString itemVersion, QString size, QDateTime itemDate,
                   QString itemIsSystemAppStr, std::uint64_t itemFileSizeNum)
    : image(std::move(infoDictionary)),
      name(std::move(itemName)),
      path(std::move(itemPath)),
      bundleID(std::move(itemID)),
      bundleVersion(std::move(itemVersion)),
      fileSize(std::move(size)),
      date(std::move(itemDate)),
      isSystemAppStr(std::move(itemIsSystemAppStr)),
      fileSizeNum(itemFileSizeNum) {}

AppItems::Pointer AppItems::copyWithZone() const {
    auto copy = std::make_shared<AppItems>(image, name, path, bundleID, bundleVersion, fileSize,
                                           date, isSystemAppStr, fileSizeNum);
    copy->application = application;
    return copy;
}

void AppItems::takeFacts(const AppItems &later) {
    image = later.image;
    name = later.name;
    path = later.path;
    bundleID = later.bundleID;
    bundleVersion = later.bundleVersion;
    fileSize = later.fileSize;
    date = later.date;
    isSystemApp = later.isSystemApp;
    isSystemAppStr = later.isSystemAppStr;
    fileSizeNum = later.fileSizeNum;
    isRunning = later.isRunning;
    application = later.application;
}

} // namespace brightsweep
