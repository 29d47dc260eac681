#pragma once

#include "diskusage/AllDir.h"

namespace brightsweep {

/// The node of every size tree in this program; it draws on the ChartCanvas in use.
class W32AllDir final : public AllDir {
public:
    /// The root of a new tree. FreeAll() ends it.
    static W32AllDir *newRoot();

    AllDir *newAllDir() override;
    /// Takes two matrices off their stacks and draws nothing; the texts reach no screen.
    void StatusMessage(const char *path, const char *hint) override;
    void DrawSector(double start, double sweep, double inner, double outer, bool selected) override;

private:
    W32AllDir() = default;
    ~W32AllDir() override = default;
};

} // namespace brightsweep
