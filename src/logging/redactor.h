#pragma once

#include <QMutex>
#include <QString>
#include <QStringList>

/**
 * Knows the secrets of this run and replaces them by "[redacted]" in texts, also where they stand
 * percent-encoded, in Base64 (also as part of a longer text) or in hexadecimal. May be used from any thread.
 */
class Redactor
{
public:
    /** From now on the value is a secret; empty values are ignored. */
    void addSecret(const QString& value);

    /**
     * Takes the values of all environment variables whose names contain TOKEN, SECRET, PASSWORD or KEY.
     * Values of fewer than four characters ("1", "yes") would only tear holes into ordinary texts and stay as
     * they are.
     */
    void addSecretsOfEnvironment();
    /** The same for one variable. */
    void addSecretOfVariable(const QString& name, const QString& value);

    QString redact(const QString& text) const;

private:
    mutable QMutex m_mutex;
    QStringList m_forms; // longest first, so that no secret is left half when another is part of it
};
