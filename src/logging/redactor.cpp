#include "logging/redactor.h"

#include <QProcessEnvironment>
#include <QUrl>

#include <algorithm>

static constexpr int minEnvironmentSecret = 4;

void Redactor::addSecret(const QString& value)
{
    if (value.isEmpty())
        return;
    const auto utf8 = value.toUtf8();
    const QStringList forms{value, QString::fromLatin1(QUrl::toPercentEncoding(value)),
                            QString::fromLatin1(utf8.toHex()), QString::fromLatin1(utf8.toHex().toUpper()),
                            QString::fromLatin1(utf8.toBase64(QByteArray::OmitTrailingEquals))};
    const QMutexLocker lock(&m_mutex);
    m_forms += forms;
    m_forms.removeDuplicates();
    std::stable_sort(m_forms.begin(), m_forms.end(),
                     [](const QString& a, const QString& b) { return a.size() > b.size(); });
}

void Redactor::addSecretsOfEnvironment()
{
    const auto environment = QProcessEnvironment::systemEnvironment();
    const auto names = environment.keys();
    for (const auto& name : names) {
        const auto upper = name.toUpper();
        const bool secret = upper.contains(QLatin1String("TOKEN")) ||
                            upper.contains(QLatin1String("SECRET")) ||
                            upper.contains(QLatin1String("PASSWORD")) || upper.contains(QLatin1String("KEY"));
        const auto value = environment.value(name);
        if (secret && value.size() >= minEnvironmentSecret)
            addSecret(value);
    }
}

QString Redactor::redact(const QString& text) const
{
    const QMutexLocker lock(&m_mutex);
    QString result = text;
    for (const auto& form : m_forms)
        result.replace(form, QLatin1String("[redacted]"));
    return result;
}
