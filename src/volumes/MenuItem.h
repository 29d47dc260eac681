#pragma once

#include <QString>

#include <cstdint>
#include <filesystem>

namespace brightsweep {

/// The storage of the memory's row, and the tag of a row that ignores clicks.
inline constexpr int memoryStorage = 5;
inline constexpr int tagWithoutClicks = 5;

/// One row of the menu: a volume or the memory, with what it shows and by which rules. A value;
/// StatusMenu holds the rows and tells when one has changed.
class MenuItem {
public:
    int myStorage = 0; ///< a VolumeType, or memoryStorage
    int ViewTag = 0;   ///< the place of the volume in the enumeration, or 5 for the memory
    /// By which a refresh finds the row again: the volume's number, or "5" for the memory.
    QString title;
    QString volumeSize; ///< the row's name, in spite of what it is called
    QString icon;       ///< an icon of the theme for a volume, an image for the memory
    QString u64TotalSpace;
    QString u64FreeSpace;
    std::uint64_t nTotalSize = 0;
    std::uint64_t nFreeSize = 0;
    std::int16_t volRefNumber = 0;
    std::int32_t volType = -1;
    std::filesystem::path volRootDir;
    bool bCanEject = false;
    bool bIsDefaultVol = false;
    /// The percentage of free space at and below which the row warns, as text.
    QString errorValue;
    bool clicked = false;    ///< the mouse is inside
    bool isEjecting = false; ///< an eject of the volume is under way
    QString prograssImage;   ///< what getPrograssImage() gave last
    QString toolTip;         ///< plain text
    QString note;            ///< stands in the place of the figures; empty as a rule

    bool isMemory() const { return myStorage == memoryStorage; }
    /// A row whose tag is 5 ignores clicks: the memory's, and the sixth volume's.
    bool answersClicks() const { return ViewTag != tagWithoutClicks; }
    /// What stands in the place of the free space: "Ejecting…" while an eject lasts, else the note.
    QString stateText() const;
    /// stateText() is the free space.
    bool showsFigures() const { return !isEjecting && note.isEmpty(); }
    /// The image of the eject button.
    QString ejectImage() const;
    /// "%d.png" with the used percentage, or its warning form "%d-1.png"; empty where there is
    /// nothing to show.
    QString getPrograssImage() const;
    void setPrograssImage() { prograssImage = getPrograssImage(); }
    /// The test of the free percentage alone.
    bool getWarningValue() const;
    /// The row's text is red: getWarningValue() on a storage that warns.
    bool warns() const;

    /// False for optical, network and disk image storage.
    static bool storageWarns(int storage);

    /// True when both look the same, so that nothing has to be drawn again.
    bool looksLike(const MenuItem &other) const;
};

} // namespace brightsweep
