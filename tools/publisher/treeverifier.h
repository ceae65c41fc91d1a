#pragma once

#include <QJsonDocument>
#include <QSet>
#include <QString>
#include <QStringList>

/** Checks a published tree: announced builds and Wine versions, their indexes, every file that these name,
 * bundles, and patches. */
class TreeVerifier
{
public:
    explicit TreeVerifier(const QString& tree);

    /** What is wrong, a line each; empty when the tree is in order. */
    QStringList verify();

    int checkedFiles() const { return m_checked.size() + m_chunks + m_patches; }

private:
    QJsonDocument readJson(const QString& fileName) const;
    void verifyAnnouncement(const QString& fileName);
    void verifyWineVersions(const QString& fileName);
    void verifyLauncher(const QString& fileName);
    void verifyIndex(const QString& path, const QString& what);
    void verifyContents();
    void verifyBundles();
    void verifyPatches();

    const QString m_tree;
    QStringList m_problems;
    QSet<QString> m_checked; // cached names
    int m_chunks = 0;
    int m_patches = 0;
    struct Expected {
        QString cachedName;
        QString md5;
        qint64 size;
        QString what;
    };
    QVector<Expected> m_expected;
};
