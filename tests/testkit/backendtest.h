#pragma once

#include "settings/settings.h"
#include "tests/testkit/sample.h"
#include "tools/backend/localbackend.h"

#include <QtTest>

/** A backend with an empty tree that this process trusts, and the settings that lead to it. */
class BackendFixture
{
public:
    /** Fails the test when the backend cannot start. Settings::instance() uses it from then on. */
    BackendFixture()
        : m_backend(m_tree.path(), m_state.filePath(QStringLiteral("state")),
                    QStringLiteral(VELKOR_SOURCE "/tools/demo/page"))
    {
        QString error;
        const bool started =
            m_backend.start(&error) && m_backend.writeDeployment({{QStringLiteral("delayScale"), 0.001}});
        qputenv("VELKOR_DEPLOYMENT_FILE", QFile::encodeName(m_backend.deploymentFile()));
        const auto deployment = started ? Deployment::load(&error) : std::nullopt;
        if (!deployment || !deployment->trustExtraCertificates(&error))
            qFatal("No backend: %s", qPrintable(error));
        Settings::useDeployment(*deployment);
        Settings::instance();
    }

    SampleTree& tree() { return m_tree; }
    LocalBackend& backend() { return m_backend; }
    HttpsServer& content() { return m_backend.content(); }
    QString baseUrl() { return QStringLiteral("https://127.0.0.1:%1/").arg(content().port()); }
    /** How many requests for the path have been answered. */
    int requestsFor(const QString& path)
    {
        int count = 0;
        for (const auto& logged : content().requests())
            count += logged.request.path == path ? 1 : 0;
        return count;
    }
    void reset()
    {
        content().faults().clear();
        content().clearRequests();
        m_backend.reports().clearRequests();
    }

private:
    SampleTree m_tree;
    QTemporaryDir m_state;
    LocalBackend m_backend;
};
