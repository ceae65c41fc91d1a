#include "servers/fulldownload.h"

#include "index/indexfile.h"
#include "settings/settings.h"
#include "tasks/scheduler.h"

#include <QtConcurrent>

FullDownload::FullDownload(MakeTask makeTask, QObject* parent)
    : QObject(parent), m_makeTask(std::move(makeTask))
{
    connect(&m_watcher, &QFutureWatcher<IndexPtr>::finished, this, &FullDownload::onIndexLoaded);
}

FullDownload::~FullDownload() { m_watcher.waitForFinished(); }

void FullDownload::start(const QString& indexFile)
{
    m_running = true;
    m_watcher.setFuture(QtConcurrent::run(getIndexFromFile, indexFile));
}

void FullDownload::onIndexLoaded()
{
    const auto index = m_watcher.result();
    m_index.set(index);
    if (!Settings::instance()->shouldDownloadEverything() || !index) {
        end(false);
        return;
    }
    auto* task = m_makeTask(index);
    connect(task, &Task::finished, this, [this](Task* finished) {
        finished->deleteLater();
        end(true);
    });
    emit Scheduler::instance()->schedule(QStringLiteral("background"), task);
}

void FullDownload::end(bool began)
{
    m_running = false;
    emit ended(began);
}
