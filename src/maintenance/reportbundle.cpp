#include "maintenance/reportbundle.h"

#include "maintenance/installationstate.h"
#include "settings/settings.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QtConcurrent>

#include <zip.h>

namespace
{
/** Of a longer log, the end is taken. */
constexpr qint64 longestLog = 2 << 20;

QByteArray endOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    if (file.size() > longestLog) {
        file.seek(file.size() - longestLog);
        file.readLine(); // the first one is not whole
    }
    return file.readAll();
}

ReportPart makePart(const QString& name, const QString& text)
{
    return {name, withoutPersonalData(text).toUtf8()};
}

// Secrets may have become known after a line was written.
QVector<ReportPart> logsIn(const QString& path)
{
    QVector<ReportPart> parts;
    const QDir folder(path);
    const auto names =
        folder.entryList({QStringLiteral("launcherlog-*.txt")}, QDir::Files, QDir::Name | QDir::Reversed);
    for (const auto& name : names)
        parts << makePart(QStringLiteral("logs/") + name, QString::fromUtf8(endOf(folder.filePath(name))));
    return parts;
}

/** The bytes of a zip archive; empty, with an error, when it cannot be made. */
QByteArray zipOf(const QVector<ReportPart>& parts, QString* error)
{
    zip_error_t cause;
    zip_error_init(&cause);
    auto* source = zip_source_buffer_create(nullptr, 0, 0, &cause);
    auto* archive = source ? zip_open_from_source(source, ZIP_TRUNCATE, &cause) : nullptr;
    if (!archive) {
        *error = QString::fromUtf8(zip_error_strerror(&cause));
        if (source)
            zip_source_free(source);
        return {};
    }
    zip_source_keep(source); // it is read after the archive has been closed
    bool complete = true;
    for (const auto& part : parts) {
        auto* content = zip_source_buffer(archive, part.content.constData(),
                                          static_cast<zip_uint64_t>(part.content.size()), 0);
        if (zip_file_add(archive, part.name.toUtf8().constData(), content, ZIP_FL_ENC_UTF_8) < 0) {
            zip_source_free(content);
            complete = false;
        }
    }
    QByteArray bytes;
    if (!complete || zip_close(archive) != 0) {
        *error = QString::fromUtf8(zip_error_strerror(zip_get_error(archive)));
        zip_discard(archive);
    } else if (zip_source_open(source) == 0) {
        zip_stat_t stat;
        zip_source_stat(source, &stat);
        bytes.resize(static_cast<int>(stat.size));
        if (zip_source_read(source, bytes.data(), stat.size) != static_cast<zip_int64_t>(stat.size))
            bytes.clear();
        zip_source_close(source);
    }
    zip_source_free(source);
    return bytes;
}
} // namespace

ReportBundle::ReportBundle(QObject* parent) : QObject(parent)
{
    connect(&m_diagnostics, &Diagnostics::finished, this, &ReportBundle::partDone);
    connect(&m_state, &QFutureWatcher<QVector<ReportPart>>::finished, this, &ReportBundle::partDone);
}

ReportBundle::~ReportBundle() { m_state.waitForFinished(); }

void ReportBundle::gather(const Diagnostics::Plan& plan)
{
    m_pending = 2;
    const QVector<QPair<QString, QString>> texts{{QStringLiteral("versions.txt"), describeVersions()},
                                                 {QStringLiteral("servers.txt"), describeServers()},
                                                 {QStringLiteral("settings.txt"), describeSettings()}};
    m_state.setFuture(QtConcurrent::run([texts, folder = Settings::instance()->getLauncherLogsFolder()] {
        QVector<ReportPart> parts;
        for (const auto& [name, text] : texts)
            parts << makePart(name, text);
        return parts + logsIn(folder);
    }));
    m_diagnostics.start(plan);
}

void ReportBundle::partDone()
{
    if (--m_pending > 0)
        return;
    m_parts = m_state.result();
    m_parts << makePart(QStringLiteral("diagnostics.txt"), m_diagnostics.text());
    qInfo() << "The report holds" << m_parts.size() << "parts";
    emit finished();
}

QString ReportBundle::write(const QString& path, const QVector<ReportPart>& parts)
{
    QString error;
    const auto bytes = zipOf(parts, &error);
    if (bytes.isEmpty())
        return tr("The report could not be made: %1").arg(error);
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return {};
    return tr("%1 could not be written: %2").arg(QDir::toNativeSeparators(path), file.errorString());
}
