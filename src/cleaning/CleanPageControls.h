#pragma once

#include "cleaning/CleanResultTree.h"
#include "cleaning/CleanStyledText.h"

#include <QString>

namespace brightsweep {

/// What the controls of the clean page show; images by name.
struct CleanPageControls {
    struct Button {
        bool enabled = true;
        bool hidden = false;
        QString image;
    };

    Button cleanButton{false, false, QStringLiteral("clean_d.png")};
    Button oneListCleanButton{false, true, QStringLiteral("clean_cj_d.png")};
    Button scanButton;
    Button backButton;
    Button stopScanBtn;
    bool outlineEnabled = true;
    /// "Stopping…", while the run that was stopped ends.
    bool stopTextShown = false;
    bool scanProgressShown = true;
    CleanStyledText stateTextField;
    bool stateTextHidden = true;
    QString trashFileNumTF = QStringLiteral("0");
    TickState allSelect = TickState::None;
    /// Free space before and after the last clean; empty before the first.
    QString freeSpaceLine;
};

/// What the row of the left list lets the page show.
struct CleanPageParts {
    int row = 0;
    bool v3MainView = true; ///< the six overview rows
    int box = -1;           ///< the category whose list is shown, -1 for none
    bool uninstallTextField = false;
    bool diskSizeView = false;
    bool stateLine = true; ///< unless it is hidden anyway
};

/// What the results panel has to say when there is nothing to list.
enum class CleanOutcome { None, Found, NothingFound, Stopped, Cleaned };

} // namespace brightsweep
