#pragma once

#include <QByteArray>
#include <QString>

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

private:
    KeyAndCertificate m_authority;
};
