#include <QtTest>

/** Every text that a player sees is translated, and keeps what is put into it. */
class TestTranslations : public QObject
{
    Q_OBJECT

private:
    static QStringList placeholders(const QString& text)
    {
        static const QRegularExpression placeholder("%\\d|%n|\\{1\\}|%L\\d");
        QStringList found;
        for (auto match = placeholder.globalMatch(text); match.hasNext();)
            found << match.next().captured();
        found.sort();
        return found;
    }

private slots:
    void areComplete_data()
    {
        QTest::addColumn<int>("pluralForms");
        QTest::newRow("de") << 2;
        QTest::newRow("fr") << 2;
        QTest::newRow("ja") << 1;
        QTest::newRow("ru") << 3;
    }
    void areComplete()
    {
        QFETCH(int, pluralForms);
        const auto name = QStringLiteral("velkorlauncher_%1.ts").arg(QTest::currentDataTag());
        const QTemporaryDir folder;
        const auto copy = folder.filePath(name);
        QVERIFY(QFile::copy(QStringLiteral(VELKOR_SOURCE "/resources/translations/") + name, copy));
        // What the sources say now; texts that are new have no translation yet.
        QCOMPARE(QProcess::execute("lupdate", {"-silent", "-no-obsolete", "-locations", "none",
                                               VELKOR_SOURCE "/src", "-ts", copy}),
                 0);
        QFile file(copy);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);
        QStringList problems;
        QString source;
        int texts = 0;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (xml.name() == QLatin1String("source")) {
                source = xml.readElementText();
            } else if (xml.name() == QLatin1String("translation")) {
                ++texts;
                if (xml.attributes().hasAttribute("type"))
                    problems << "Not translated: " + source;
                const auto text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
                if (source.contains("%n")) {
                    if (text.count("%n") != pluralForms)
                        problems << "Plural forms are missing: " + source;
                } else if (placeholders(text) != placeholders(source)) {
                    problems << "Placeholders differ: " + source;
                }
            }
        }
        QVERIFY(!xml.hasError());
        QVERIFY(texts > 200);
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    }
};

QTEST_GUILESS_MAIN(TestTranslations)
#include "tst_translations.moc"
