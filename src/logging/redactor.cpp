#include "logging/redactor.h"

#include <QProcessEnvironment>
#include <QUrl>

#include <algorithm>

static constexpr int minEnvironmentSecret = 4;

/** As a whole, and what is the same of it wherever it stands in a longer text. */
static QStringList base64Forms(const QByteArray& value)
{
    constexpr int shortestPart = 6;
    QStringList forms;
    for (const auto alphabet : {QByteArray::Base64Encoding, QByteArray::Base64UrlEncoding}) {
        forms << QString::fromLatin1(value.toBase64(alphabet | QByteArray::OmitTrailingEquals));
        for (int shift = 0; shift < 3; ++shift) {
            const int first = shift == 0 ? 0 : shift + 1;
            const int end = (shift + value.size()) * 8 / 6;
            const auto text = (QByteArray(shift, 'x') + value).toBase64(alphabet);
            if (end - first >= shortestPart)
                forms << QString::fromLatin1(text.mid(first, end - first));
        }
    }
    return forms;
}

void Redactor::addSecret(const QString& value)
{
    if (value.isEmpty())
        return;
    const auto utf8 = value.toUtf8();
    const QStringList forms =
        QStringList{value, QString::fromLatin1(QUrl::toPercentEncoding(value)),
                    QString::fromLatin1(utf8.toHex()), QString::fromLatin1(utf8.toHex().toUpper())} +
        base64Forms(utf8);
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
    for (const auto& name : names)
        addSecretOfVariable(name, environment.value(name));
}

void Redactor::addSecretOfVariable(const QString& name, const QString& value)
{
    const auto upper = name.toUpper();
    const bool secret = upper.contains(QLatin1String("TOKEN")) || upper.contains(QLatin1String("SECRET")) ||
                        upper.contains(QLatin1String("PASSWORD")) || upper.contains(QLatin1String("KEY"));
    if (secret && value.size() >= minEnvironmentSecret)
        addSecret(value);
}

QString Redactor::redact(const QString& text) const
{
    const QMutexLocker lock(&m_mutex);
    QString result = text;
    for (const auto& form : m_forms)
        result.replace(form, QLatin1String("[redacted]"));
    return result;
}
