#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include "settings/deployment.h"

/**
 * A home folder of its own for one test program: settings, data and logs go there. Make it before the
 * application object; it ends with it.
 */
class TemporaryHome
{
public:
    TemporaryHome();

    QString path() const { return m_folder.path(); }
    QString file(const QString& relativePath) const { return m_folder.filePath(relativePath); }

private:
    QTemporaryDir m_folder;
};

/** A deployment whose hosts exist nowhere. */
Deployment sampleDeployment();
