#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>
#include <Quorvelle/Foundation/PropertyValue.h>

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

struct rsa_st;

/**
 * Encrypts and decrypts buffers of any length with one RSA key given as PEM text, cutting
 * them into RSA-sized blocks, and converts between bytes and one-line base64 text.
 *
 * A public key encrypts with the public key and recovers data that the private key
 * encrypted; a private key does the reverse. The chunk lengths are single bytes on
 * purpose: the block arithmetic is meant for keys of at most 255 modulus bytes (a 1024-bit
 * key gives 128). Larger keys wrap (2048 bits gives 0); no RSA block is then processed at
 * all: encryption and decryption give std::nullopt instead of writing past a block.
 *
 * nil is std::nullopt throughout. One cryptor is used by one thread at a time; separate
 * cryptors may be used at once.
 */
class QV_FOUNDATION_EXPORT VXCryptor
{
public:
    /**
     * A cryptor for the RSA key in the PEM text: a public key when the text says "PUBLIC",
     * a private one when it says "PRIVATE". nullptr (and a line in the system log) when no
     * key can be read. Padding: 1 PKCS #1 v1.5, 2 OAEP, 3 SSLv23, anything else none.
     */
    static std::unique_ptr<VXCryptor> initWithRSAKeyFromString(const QString &pem, int padding);
    /** Frees the key. */
    ~VXCryptor();
    VXCryptor(const VXCryptor &) = delete;
    VXCryptor &operator=(const VXCryptor &) = delete;

    /**
     * Encrypts the data block by block. Output length is encryptedChunkLength() ×
     * ceil(n / decryptedChunkLength()), never trimmed; std::nullopt when a block fails.
     */
    std::optional<QByteArray> encryptData(const QByteArray &data) const;
    /**
     * Decrypts whole encrypted blocks only; trailing bytes short of a block are ignored.
     * std::nullopt when a block fails (wrong key, wrong padding).
     */
    std::optional<QByteArray> decryptData(const QByteArray &data) const;
    /** encryptData(), then base64FromData(): ready for a JSON string or a URL form. */
    std::optional<QString> encryptBase64(const QByteArray &data) const;
    /** dataFromBase64(), then decryptData(). */
    std::optional<QByteArray> decryptBase64(const QString &base64) const;
    /**
     * \overload
     * A value that is not a string gives std::nullopt.
     */
    std::optional<QByteArray> decryptBase64(const PropertyValue &base64) const;

    /** Base64 text of the bytes in one line, no line breaks; empty input gives std::nullopt. */
    static std::optional<QString> base64FromData(const QByteArray &data);
    /**
     * The bytes of base64 text. Line feeds are dropped before decoding (carriage returns are not);
     * empty input gives std::nullopt, text without valid base64 an empty array.
     */
    static std::optional<QByteArray> dataFromBase64(const QString &base64);

    /** The OpenSSL padding constant chosen from the padding argument. */
    int options() const;
    /** Bytes of plain data per block: the modulus size less the padding's overhead. */
    quint8 decryptedChunkLength() const;
    /** Bytes of encrypted data per block: the modulus size (wrapped above 255). */
    quint8 encryptedChunkLength() const;

    /** The shape of OpenSSL's RSA block functions, which the cryptor calls. */
    using CryptFunc = int (*)(int flen, const unsigned char *from, unsigned char *to, rsa_st *rsa,
                              int padding);

private:
    VXCryptor();
    bool blockArithmeticFits() const;

    struct Private;
    std::unique_ptr<Private> d;
};
