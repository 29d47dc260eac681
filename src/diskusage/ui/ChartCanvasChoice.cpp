#include "diskusage/ui/ChartCanvasChoice.h"

#include "diskusage/ui/OffscreenGl.h"
#include "foundation/Log.h"
#include "foundation/SmallFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <filesystem>

namespace brightsweep {

namespace {

constexpr std::chrono::seconds patience{10};
constexpr char card[] = "card";
constexpr char none[] = "none";

// The nodes that a program can draw with; their times change with driver and boot.
std::string renderNodes() {
    std::string nodes;
    const QDir folder(QStringLiteral("/dev/dri"));
    for (const QFileInfo &node : folder.entryInfoList({QStringLiteral("renderD*")}, QDir::System))
        nodes += node.fileName().toStdString() + " " +
                 std::to_string(node.lastModified().toSecsSinceEpoch()) + "\n";
    return nodes;
}

std::filesystem::path answerFile() {
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    return folder.isEmpty() ? std::filesystem::path()
                            : std::filesystem::path(folder.toStdString()) / "brightsweep-canvas";
}

} // namespace

ChartCanvasChoice &ChartCanvasChoice::shared() {
    // Never destroyed: the process ends without destructors.
    static auto *const choice = new ChartCanvasChoice;
    return *choice;
}

ChartCanvasChoice::ChartCanvasChoice() = default;
ChartCanvasChoice::~ChartCanvasChoice() = default;

void ChartCanvasChoice::begin() {
    if (m_isKnown || m_child)
        return;
    const std::string nodes = renderNodes();
    if (nodes.empty())
        return choose(false);
    const auto kept = answerFile().empty()
                          ? Result<std::string>(std::errc::no_such_file_or_directory)
                          : readSmallFile(answerFile());
    if (kept && kept->starts_with(nodes))
        return choose(kept->substr(nodes.size()) == card);
    m_child = std::make_unique<QProcess>();
    connect(m_child.get(), &QProcess::finished, this, &ChartCanvasChoice::answered);
    connect(m_child.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            answered();
    });
    m_child->start(QCoreApplication::applicationFilePath(),
                   {QLatin1String(probeChartCanvasArgument)});
    QTimer::singleShot(patience, m_child.get(), &QProcess::kill);
}

void ChartCanvasChoice::answered() {
    if (!m_child)
        return;
    const std::string answer = m_child->readAllStandardOutput().trimmed().toStdString();
    m_child.release()->deleteLater();
    if (!answerFile().empty())
        writeSmallFile(answerFile(), renderNodes() + (answer == card ? card : none));
    choose(answer == card);
}

void ChartCanvasChoice::choose(bool gl) {
    m_isKnown = true;
    if (gl)
        m_gl = OffscreenGl::make();
    NSLog("Ring chart: %@", name());
    Q_EMIT changed();
}

QString ChartCanvasChoice::name() const {
    return m_gl ? QStringLiteral("OpenGL, %1").arg(m_gl->renderer()) : QStringLiteral("QPainter");
}

int ChartCanvasChoice::probe() {
    const auto gl = OffscreenGl::make();
    std::puts(gl && !gl->isSoftware() ? card : none);
    std::fflush(stdout);
    return 0;
}

} // namespace brightsweep
