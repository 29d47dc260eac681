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
    return std::make_shared<AppItems>(image, name, path, bundleID, bundleVersion, fileSize, date,
                                      isSystemAppStr, fileSizeNum);
}

} // namespace brightsweep
