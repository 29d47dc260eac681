#include "cleaning/CustomComInfoView.h"

#include "core/UtilityFunction.h"

#include <cstring>

namespace brightsweep {

namespace {

// A text that fills its field has no end of its own.
template <std::size_t width>
QString text(const char (&field)[width]) {
    return QString::fromUtf8(field, qsizetype(::strnlen(field, width)));
}

} // namespace

CustomComInfoView::CustomComInfoView() {
    SysInfo systemInfo{};
    getSysInfo(&systemInfo);
    const struct {
        const char *image;
        const char *title;
        QString value;
    } rows[] = {
        {"model_identifier.png", QT_TRID_NOOP("Model Identifier:"), text(systemInfo.Model)},
        {"cpu_vendor.png", QT_TRID_NOOP("CPU Vendor:"), text(systemInfo.CpuVendor)},
        {"cpu_brand.png", QT_TRID_NOOP("CPU Brand:"), text(systemInfo.CpuBrandString)},
        {"memory.png", QT_TRID_NOOP("Memory:"),
         UtilityFunction::formatValue(systemInfo.TotalMem, 1024)},
        {"os_type.png", QT_TRID_NOOP("OS Type:"), text(systemInfo.OSType)},
        {"os_rdease.png", QT_TRID_NOOP("OS Release:"), text(systemInfo.OSVersion)},
        {"hostname.png", QT_TRID_NOOP("Hostname:"), text(systemInfo.Hostname)},
    };
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        m_rows[row].iconImage = QLatin1String(rows[row].image);
        m_rows[row].titleText = QLatin1String(rows[row].title);
        m_rows[row].valueText = rows[row].value;
    }
}

} // namespace brightsweep
