#include "tools/backend/certificates.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <memory>
#include <stdexcept>

namespace
{
template <typename T, void (*release)(T*)>
struct Releaser {
    void operator()(T* object) const { release(object); }
};
using Key = std::unique_ptr<EVP_PKEY, Releaser<EVP_PKEY, EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Releaser<X509, X509_free>>;
using Buffer = std::unique_ptr<BIO, Releaser<BIO, BIO_free_all>>;
using Extension = std::unique_ptr<X509_EXTENSION, Releaser<X509_EXTENSION, X509_EXTENSION_free>>;

constexpr auto loopbackNames = "DNS:localhost,IP:127.0.0.1";
constexpr std::chrono::hours usualValidity(30 * 24);

void require(bool success, const char* what)
{
    if (!success)
        throw std::runtime_error(what);
}

template <typename Write>
QByteArray toPem(const Write& write)
{
    const Buffer buffer(BIO_new(BIO_s_mem()));
    require(write(buffer.get()) == 1, "PEM could not be written");
    char* data = nullptr;
    const auto size = BIO_get_mem_data(buffer.get(), &data);
    return QByteArray(data, static_cast<int>(size));
}

KeyAndCertificate toPem(const Key& key, const Certificate& certificate)
{
    return {toPem([&](BIO* bio) {
                return PEM_write_bio_PrivateKey(bio, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
            }),
            toPem([&](BIO* bio) { return PEM_write_bio_X509(bio, certificate.get()); })};
}

void addExtension(X509* certificate, X509* issuer, int nid, const char* value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, nid, value));
    require(extension && X509_add_ext(certificate, extension.get(), -1) == 1, "extension");
}

Certificate newCertificate(const Key& key, const char* commonName, std::chrono::seconds validFor)
{
    Certificate certificate(X509_new());
    require(certificate != nullptr, "certificate");
    X509_set_version(certificate.get(), 2);
    uint64_t serial = 0;
    RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial);
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate.get()), serial >> 1U);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -24L * 3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), static_cast<long>(validFor.count()));
    X509_set_pubkey(certificate.get(), key.get());
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>(commonName), -1, -1, 0);
    return certificate;
}

Key readKey(const QByteArray& pem)
{
    const Buffer buffer(BIO_new_mem_buf(pem.constData(), pem.size()));
    return Key(PEM_read_bio_PrivateKey(buffer.get(), nullptr, nullptr, nullptr));
}

Certificate readCertificate(const QByteArray& pem)
{
    const Buffer buffer(BIO_new_mem_buf(pem.constData(), pem.size()));
    return Certificate(PEM_read_bio_X509(buffer.get(), nullptr, nullptr, nullptr));
}
} // namespace

CertificateAuthority::CertificateAuthority()
{
    const Key key(EVP_EC_gen("P-256"));
    require(key != nullptr, "key");
    const auto certificate = newCertificate(key, "Velkor local test authority", usualValidity);
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(certificate.get()));
    addExtension(certificate.get(), certificate.get(), NID_basic_constraints, "critical,CA:TRUE");
    addExtension(certificate.get(), certificate.get(), NID_key_usage, "critical,keyCertSign,cRLSign");
    addExtension(certificate.get(), certificate.get(), NID_subject_alt_name, loopbackNames);
    require(X509_sign(certificate.get(), key.get(), EVP_sha256()) > 0, "signature");
    m_authority = toPem(key, certificate);
}

KeyAndCertificate CertificateAuthority::issueForLoopback() const
{
    return issue(loopbackNames, usualValidity);
}

KeyAndCertificate CertificateAuthority::issue(const char* names, std::chrono::seconds validFor) const
{
    const auto authorityKey = readKey(m_authority.key);
    const auto authority = readCertificate(m_authority.certificate);
    const Key key(EVP_EC_gen("P-256"));
    require(key != nullptr, "key");
    const auto certificate = newCertificate(key, "Velkor local server", validFor);
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(authority.get()));
    addExtension(certificate.get(), authority.get(), NID_basic_constraints, "CA:FALSE");
    addExtension(certificate.get(), authority.get(), NID_ext_key_usage, "serverAuth");
    addExtension(certificate.get(), authority.get(), NID_subject_alt_name, names);
    require(X509_sign(certificate.get(), authorityKey.get(), EVP_sha256()) > 0, "signature");
    return toPem(key, certificate);
}
