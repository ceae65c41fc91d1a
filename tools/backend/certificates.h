#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>

/** A key and its certificate, both as PEM. */
struct KeyAndCertificate {
    QByteArray key;
    QByteArray certificate;
};

/** A certificate authority of its own, made on the spot; for servers on this machine. */
class CertificateAuthority
{
public:
    CertificateAuthority();

    QByteArray certificate() const { return m_authority.certificate; }

    /** A server certificate for 127.0.0.1 and localhost. Throws std::runtime_error when the library fails. */
    KeyAndCertificate issueForLoopback() const;
    /** One for other names ("DNS:…,IP:…") or another time; a negative time has passed already. */
    KeyAndCertificate issue(const char* names, std::chrono::seconds validFor) const;
    /** The authority's own, signed by itself. */
    KeyAndCertificate identity() const { return m_authority; }

private:
    KeyAndCertificate m_authority;
};
