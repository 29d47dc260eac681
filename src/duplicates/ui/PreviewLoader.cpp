#include "duplicates/ui/PreviewLoader.h"

#include "core/ThreadWorker.h"
#include "foundation/Identity.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"

#include <QCryptographicHash>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <chrono>
#include <ratio>
#include <utility>

namespace brightsweep {

namespace {

using Steady = std::chrono::steady_clock;

constexpr qint64 mostRead = 64 << 20;
constexpr int mostMemory = 64; // MiB
constexpr std::chrono::seconds patience{1};

// Pictures that a file is taken for by its content; whatever else a plugin could read is not.
constexpr std::array formats = {"jpeg", "png", "gif", "bmp", "webp", "tiff", "ico"};

// A file that ends with an error when a decoder has had it for too long, or has read too much.
class LimitedFile : public QIODevice {
public:
    explicit LimitedFile(FileDescriptor file)
        : m_file(std::move(file)), m_end(Steady::now() + patience) {
        const auto attributes = Platform::current().files->fileAttributes(m_file);
        m_size = attributes ? qint64(attributes->size) : 0;
        open(ReadOnly | Unbuffered);
    }

    qint64 size() const override { return m_size; }

protected:
    qint64 readData(char *data, qint64 most) override {
        if (Steady::now() > m_end || m_read > mostRead)
            return -1;
        const auto read = Platform::current().files->readAt(m_file, data, std::size_t(most),
                                                            std::uint64_t(pos()));
        m_read += read ? qint64(*read) : 0;
        return read ? qint64(*read) : -1;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    FileDescriptor m_file;
    Steady::time_point m_end;
    qint64 m_size = 0;
    qint64 m_read = 0;
};

struct Picture {
    QImage image;
    QString uri;  ///< of the file that a thumbnail shows
    QString time; ///< of that file's last change, in seconds
};

Picture readPicture(const std::filesystem::path &path, QSize box) {
    auto file = Platform::current().files->openFile(path);
    if (!file)
        return {};
    LimitedFile device(std::move(*file));
    QImageReader reader(&device);
    reader.setDecideFormatFromContent(true);
    if (std::find(formats.begin(), formats.end(), reader.format()) == formats.end())
        return {};
    reader.setAutoTransform(true);
    const QSize whole = reader.size();
    const bool turns = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize room = turns ? box.transposed() : box;
    if (whole.width() > room.width() || whole.height() > room.height())
        reader.setScaledSize(whole.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1}));
    return {reader.read(), reader.text(QStringLiteral("Thumb::URI")),
            reader.text(QStringLiteral("Thumb::MTime"))};
}

// By the freedesktop document on thumbnails: found by the digest of the file's URI, and good while
// the file has not changed since.
QImage cachedThumbnail(const std::filesystem::path &path, const FileFacts &facts, QSize box) {
    const QByteArray uri =
        "file://" + QByteArray::fromStdString(path.native()).toPercentEncoding("/!$&'()*+,:=@");
    const QByteArray name = QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex() + ".png";
    const auto folder = environmentFolder("XDG_CACHE_HOME", ".cache") / "thumbnails";
    const QString time = QString::number(facts.modified / std::nano::den);
    for (const char *const kind : {"x-large", "large", "normal"}) {
        const Picture found = readPicture(folder / kind / name.toStdString(), box);
        if (!found.image.isNull() && found.time == time && found.uri == QLatin1String(uri))
            return found.image;
    }
    return {};
}

} // namespace

PreviewLoader::PreviewLoader(QObject *parent) : QObject(parent) {
    QImageReader::setAllocationLimit(mostMemory);
}

PreviewLoader::~PreviewLoader() {
    if (m_worker)
        m_worker->abandon();
}

void PreviewLoader::load(const std::filesystem::path &path, QSize box) {
    m_wanted = {path, box};
    if (!m_worker)
        start();
}

void PreviewLoader::start() {
    m_looksAt = m_wanted;
    m_worker =
        ThreadWorker::workOn(this, &PreviewLoader::look, m_looksAt, &PreviewLoader::hasLooked);
}

void PreviewLoader::look(Wish wish) {
    m_facts = factsOf(wish.path);
    m_picture = {};
    if (!m_facts.isFile || !m_facts.isLocal)
        return;
    m_picture = readPicture(wish.path, wish.box).image;
    if (m_picture.isNull())
        m_picture = cachedThumbnail(wish.path, m_facts, wish.box);
}

void PreviewLoader::hasLooked() {
    m_worker.reset();
    if (m_wanted == m_looksAt)
        Q_EMIT loaded(m_looksAt.path, m_facts, m_picture);
    else if (!m_wanted.path.empty())
        start();
}

} // namespace brightsweep
