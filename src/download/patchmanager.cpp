#include "download/patchmanager.h"

#include "cache/wholefile.h"
#include "download/bspatch.h"
#include "download/inflater.h"
#include "index/serverindexlookup.h"
#include "settings/settings.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QElapsedTimer>
#include <QFile>
#include <QtEndian>

#include <cstring>
#include <limits>

namespace
{
const QByteArray magic = QByteArrayLiteral("QZMPATCH");
constexpr qint32 supportedVersion = 1;
constexpr int headerSize = 12;
constexpr qint64 controlSize = 24;
constexpr size_t maxSize = std::numeric_limits<int>::max() - 64;

/**
 * Whether records of so many bytes can make up the new file: all of it has to be in them. The room for
 * control numbers is generous, no maker of patches needs as much; more than that is not worth its memory.
 */
bool isPlausibleBody(qint64 bodySize, qint64 newSize)
{
    constexpr qint64 slack = 1 << 20;
    return newSize == 0 || (bodySize >= newSize + controlSize && bodySize <= 2 * newSize + slack);
}

PatchStream streamOf(const QByteArray& body)
{
    return {[next = body.constData(), left = body.size()](char* to, int length) mutable {
        if (length < 0 || length > left)
            return false;
        std::memcpy(to, next, static_cast<size_t>(length));
        next += length;
        left -= length;
        return true;
    }};
}

bool applyBody(const QByteArray& oldContent, const QByteArray& patch, QByteArray* newContent)
{
    const char* block = patch.constData() + headerSize;
    const auto blockSize = static_cast<size_t>(patch.size() - headerSize);
    if (!isPlausibleBody(Inflater::announcedLength(block, blockSize), newContent->size()))
        return false;
    const auto body = Inflater().inflate(block, blockSize);
    if (body.isNull())
        return false;
    return bspatch(oldContent.constData(), oldContent.size(), newContent->data(), newContent->size(),
                   streamOf(body)) == 0;
}
} // namespace

PatchManager* PatchManager::instance()
{
    static PatchManager manager;
    return &manager;
}

void PatchManager::setBaseIndex()
{
    const auto index =
        m_lookup ? m_lookup->installedIndex(Settings::instance()->getMainServerName()) : IndexPtr();
    m_base = index ? std::make_unique<IndexMap>(index) : nullptr;
}

IndexEntryPtr PatchManager::getPatchBase(const IndexEntryPtr& entry) const
{
    const auto base = m_base ? m_base->value(entry->name) : IndexEntryPtr();
    return base && base->checksum != entry->checksum ? base : IndexEntryPtr();
}

QByteArray PatchManager::rebuild(const QByteArray& oldContent, const QByteArray& patch, size_t newSize,
                                 const QString& checksum)
{
    if (!patch.startsWith(magic)) {
        qWarning() << "Not a valid patch file";
        return {};
    }
    if (patch.size() < headerSize ||
        qFromLittleEndian<qint32>(patch.constData() + magic.size()) != supportedVersion) {
        qWarning() << "Unrecognized version of patch file";
        return {};
    }
    QByteArray content;
    if (newSize <= maxSize)
        content = QByteArray(static_cast<int>(newSize), Qt::Uninitialized);
    if (content.isNull() || !applyBody(oldContent, patch, &content)) {
        qWarning() << "Failed applying patch";
        return {};
    }
    if (QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex()) != checksum) {
        qWarning() << "Checksum does not match after applying patch";
        return {};
    }
    return content;
}

bool PatchManager::applyPatch(const QString& basePath, const QString& targetPath, size_t newSize,
                              const QString& checksum, QFile* patchFile)
{
    QElapsedTimer timer;
    timer.start();
    QFile base(basePath);
    if (!base.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << "Couldn't read base file for patching:" << basePath << base.errorString();
        return false;
    }
    try {
        patchFile->seek(0);
        const auto content = rebuild(base.readAll(), patchFile->readAll(), newSize, checksum);
        QString error;
        if (content.isNull())
            return false;
        if (!writeWholeFile(targetPath, content, &error)) {
            qWarning().noquote() << "Couldn't write the patched file" << targetPath << error;
            return false;
        }
    } catch (const std::bad_alloc&) {
        qWarning() << "Failed applying patch, the memory does not suffice";
        return false;
    }
    qDebug() << "applyPatch took" << timer.elapsed() << "ms";
    return true;
}

void PatchManager::resetStats()
{
    m_requested = 0;
    m_applied = 0;
    m_failed = 0;
}

void PatchManager::logStats(const QString& name) const
{
    if (m_requested == 0)
        qDebug().noquote() << "No patches requested";
    else
        qDebug().noquote() << "Patched" << m_applied << "files out of" << m_requested << "requested ("
                           << m_failed << "failed ) -" << name;
}
