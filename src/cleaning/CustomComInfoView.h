#pragma once

#include <QString>

#include <array>

namespace brightsweep {

/// A row of the facts of the machine; the image by name.
struct ComputerInfoCell {
    QString iconImage;
    QString titleText;
    QString valueText;
    QString cellBgImage = QStringLiteral("mymac_cellbg.png");
};

/// The table of the machine's facts, read once when it is made. A fact that cannot be read is
/// empty.
class CustomComInfoView {
public:
    CustomComInfoView();

    const std::array<ComputerInfoCell, 7> &rows() const { return m_rows; }

private:
    std::array<ComputerInfoCell, 7> m_rows;
};

} // namespace brightsweep
