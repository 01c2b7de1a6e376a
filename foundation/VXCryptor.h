#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>
#include <Quorvelle/Foundation/PropertyValue.h>

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

// Encrypts and decrypts buffers of any length with one RSA key given as PEM text, cutting
// them into RSA-sized blocks, and converts between bytes and one-line base64 text.
//
// A public key encrypts with the public key and recovers data that the private key
// encrypted; a private key does the reverse. The chunk lengths are single bytes on
// purpose: the block arithmetic is meant for keys of at most 255 modulus bytes (a 1024-bit
// key gives 128). Larger keys wrap (2048 bits gives 0); no RSA block is then processed at
// all: encryption and decryption give std::nullopt instead of writing past a block.
//
// nil is std::nullopt throughout. One cryptor is used by one thread at a time.
struct rsa_st;

class QV_FOUNDATION_EXPORT VXCryptor
{
public:
    // Padding argument: 1 PKCS #1 v1.5, 2 OAEP, 3 SSLv23, anything else none.
    static std::unique_ptr<VXCryptor> initWithRSAKeyFromString(const QString &pem, int padding);
    ~VXCryptor();
    VXCryptor(const VXCryptor &) = delete;
    VXCryptor &operator=(const VXCryptor &) = delete;

    // Output length is encryptedChunkLength × ceil(n / decryptedChunkLength), never trimmed.
    std::optional<QByteArray> encryptData(const QByteArray &data) const;
    // Whole encrypted blocks only; trailing bytes short of a block are ignored.
    std::optional<QByteArray> decryptData(const QByteArray &data) const;
    std::optional<QString> encryptBase64(const QByteArray &data) const;
    std::optional<QByteArray> decryptBase64(const QString &base64) const;
    // A value that is not a string gives std::nullopt.
    std::optional<QByteArray> decryptBase64(const PropertyValue &base64) const;

    // One line, no line breaks; empty input gives std::nullopt.
    static std::optional<QString> base64FromData(const QByteArray &data);
    // Line feeds are dropped before decoding (carriage returns are not); empty input gives
    // std::nullopt, text without valid base64 an empty array.
    static std::optional<QByteArray> dataFromBase64(const QString &base64);

    int options() const;
    quint8 decryptedChunkLength() const;
    quint8 encryptedChunkLength() const;

    using CryptFunc = int (*)(int flen, const unsigned char *from, unsigned char *to, rsa_st *rsa,
                              int padding);

private:
    VXCryptor();
    bool blockArithmeticFits() const;

    struct Private;
    std::unique_ptr<Private> d;
};
