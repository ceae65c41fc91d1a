#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

/** Modules may include only what their folder's target_link_libraries names, directly or through others. */
class TestArrows : public QObject
{
    Q_OBJECT

private:
    using Arrows = QMap<QString, QSet<QString>>;
    static constexpr auto source = VELKOR_SOURCE "/src";

    static Arrows declaredArrows()
    {
        static const QRegularExpression library(QStringLiteral("\\bvelkor_(\\w+)"));
        static const QRegularExpression link(QStringLiteral("target_link_libraries\\(([^)]*)\\)"));
        Arrows arrows;
        const auto modules = QDir(source).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const auto& module : modules) {
            const auto cmake =
                QString::fromUtf8(readSample(QStringLiteral("%1/%2/CMakeLists.txt").arg(source, module)));
            auto& targets = arrows[module];
            for (auto call = link.globalMatch(cmake); call.hasNext();) {
                for (auto name = library.globalMatch(call.next().captured(1)); name.hasNext();)
                    targets.insert(name.next().captured(1));
            }
            targets.remove(module);
        }
        return arrows;
    }

    static QSet<QString> reachable(const Arrows& arrows, const QString& module)
    {
        QSet<QString> seen;
        QStringList open{module};
        while (!open.isEmpty()) {
            for (const auto& next : arrows.value(open.takeFirst())) {
                if (!seen.contains(next)) {
                    seen.insert(next);
                    open << next;
                }
            }
        }
        return seen;
    }

private slots:
    void includesFollowTheArrows()
    {
        static const QRegularExpression include(QStringLiteral("^#include \"(\\w+)/"),
                                                QRegularExpression::MultilineOption);
        const auto arrows = declaredArrows();
        QVERIFY(arrows.size() >= 9);
        QStringList wrong;
        for (const auto& module : arrows.keys()) {
            auto allowed = reachable(arrows, module);
            QVERIFY2(!allowed.contains(module), qPrintable(module + " depends on itself"));
            allowed.insert(module);
            const auto files = readFolder(QStringLiteral("%1/%2").arg(source, module));
            for (auto file = files.begin(); file != files.end(); ++file) {
                for (auto match = include.globalMatch(QString::fromUtf8(file.value())); match.hasNext();) {
                    const auto used = match.next().captured(1);
                    if (!allowed.contains(used))
                        wrong << QStringLiteral("%1/%2 includes %3").arg(module, file.key(), used);
                }
            }
        }
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join('\n')));
    }
};

VELKOR_TEST_MAIN(TestArrows)
#include "tst_arrows.moc"
