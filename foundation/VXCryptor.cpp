// This file alone is built with OPENSSL_API_COMPAT=0x10100000L and without deprecation
// warnings (see foundation/CMakeLists.txt): the cryptor is defined in terms of the
// low-level RSA calls (RSA_public_encrypt and friends, PEM_read_bio_RSA_PUBKEY), which
// OpenSSL 3 keeps but marks deprecated.
#include "VXCryptor.h"

#include "VXLog.h"

#include <openssl/bio.h>
#include <openssl/buffer.h>
#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/rsa.h>

#include <climits>
#include <cstring>
#include <vector>

namespace {

// OpenSSL 3 dropped the SSLv23 padding mode; its old constant still selects it here and
// the padding is built on top of raw RSA below.
constexpr int kSSLv23Padding = 2;
// PKCS #1 type 2 padding needs 3 framing bytes and at least 8 padding bytes.
constexpr int kType2Overhead = 11;
constexpr int kRollbackMarkerLength = 8;

QString errorText(unsigned long code)
{
    char buffer[256]; // the size ERR_error_string() writes into
    ERR_error_string_n(code, buffer, sizeof buffer);
    return QString::fromLatin1(buffer);
}

QString reasonText(unsigned long code)
{
    const char *reason = ERR_reason_error_string(code);
    // printf's rendering of a null %s, which is what the log line always showed.
    return reason ? QString::fromLatin1(reason) : QStringLiteral("(null)");
}

// Two separate pops: the full text of the oldest error, the reason of the next one.
void logEncryptError()
{
    const QString full = errorText(ERR_get_error());
    const QString reason = reasonText(ERR_get_error());
    VXLog(QStringLiteral("Encrypt error: %1 (%2)").arg(full, reason));
}

// SSLv23 padding is PKCS #1 type 2 padding whose last eight padding bytes are 0x03, the
// marker by which an SSLv3-capable peer detects a rollback to SSLv2.
int sslv23PublicEncrypt(int flen, const unsigned char *from, unsigned char *to, RSA *rsa, int)
{
    const int k = RSA_size(rsa);
    if (flen < 0 || flen > k - kType2Overhead) {
        ERR_raise(ERR_LIB_RSA, RSA_R_DATA_TOO_LARGE_FOR_KEY_SIZE);
        return -1;
    }
    std::vector<unsigned char> em(size_t(k), 0);
    const int padLength = k - 3 - flen;
    unsigned char *pad = em.data() + 2;
    em[1] = 2;
    if (RAND_bytes(pad, padLength) != 1)
        return -1;
    for (int i = 0; i < padLength; ++i) {
        while (pad[i] == 0) {
            if (RAND_bytes(pad + i, 1) != 1)
                return -1;
        }
    }
    std::memset(pad + padLength - kRollbackMarkerLength, 3, kRollbackMarkerLength);
    pad[padLength] = 0;
    if (flen > 0)
        std::memcpy(pad + padLength + 1, from, size_t(flen));
    const int written = RSA_public_encrypt(k, em.data(), to, rsa, RSA_NO_PADDING);
    OPENSSL_cleanse(em.data(), em.size());
    return written;
}

int sslv23PrivateDecrypt(int flen, const unsigned char *from, unsigned char *to, RSA *rsa, int)
{
    const int k = RSA_size(rsa);
    std::vector<unsigned char> em(size_t(k), 0);
    int result = -1;
    const int n = RSA_private_decrypt(flen, from, em.data(), rsa, RSA_NO_PADDING);
    if (n < 0)
        return -1;
    if (n != k || k < kType2Overhead) {
        ERR_raise(ERR_LIB_RSA, RSA_R_DATA_TOO_SMALL);
    } else if (em[0] != 0 || em[1] != 2) {
        ERR_raise(ERR_LIB_RSA, RSA_R_BLOCK_TYPE_IS_NOT_02);
    } else {
        int zero = 2;
        while (zero < k && em[size_t(zero)] != 0)
            ++zero;
        const int padLength = zero - 2;
        if (zero == k || padLength < kRollbackMarkerLength) {
            ERR_raise(ERR_LIB_RSA, RSA_R_BAD_PAD_BYTE_COUNT);
        } else {
            int markers = 0;
            for (int i = zero - kRollbackMarkerLength; i < zero; ++i)
                markers += em[size_t(i)] == 3 ? 1 : 0;
            if (markers == kRollbackMarkerLength) {
                ERR_raise(ERR_LIB_RSA, RSA_R_SSLV3_ROLLBACK_ATTACK);
            } else {
                result = k - zero - 1;
                if (result > 0)
                    std::memcpy(to, em.data() + zero + 1, size_t(result));
            }
        }
    }
    OPENSSL_cleanse(em.data(), em.size());
    return result;
}

// The padding only ever existed for public-key encryption and private-key decryption.
int sslv23Unsupported(int, const unsigned char *, unsigned char *, RSA *, int)
{
    ERR_raise(ERR_LIB_RSA, RSA_R_UNKNOWN_PADDING_TYPE);
    return -1;
}

struct BioChain
{
    BIO *top = nullptr;
    ~BioChain() { BIO_free_all(top); }
};

} // namespace

struct VXCryptor::Private
{
    rsa_st *key = nullptr;
    CryptFunc encryptFunc = nullptr;
    CryptFunc decryptFunc = nullptr;
    void (*freeKeyFunc)(rsa_st *) = nullptr;
    int _options = 0;
    quint8 _decryptedChunkLength = 0;
    quint8 _encryptedChunkLength = 0;
};

VXCryptor::VXCryptor() : d(std::make_unique<Private>()) {}

int VXCryptor::options() const
{
    return d->_options;
}

quint8 VXCryptor::decryptedChunkLength() const
{
    return d->_decryptedChunkLength;
}

quint8 VXCryptor::encryptedChunkLength() const
{
    return d->_encryptedChunkLength;
}

std::unique_ptr<VXCryptor> VXCryptor::initWithRSAKeyFromString(const QString &pem, int padding)
{
    std::unique_ptr<VXCryptor> cryptor(new VXCryptor);
    switch (padding) {
    case 1:
        cryptor->d->_options = RSA_PKCS1_PADDING;
        break;
    case 2:
        cryptor->d->_options = RSA_PKCS1_OAEP_PADDING;
        break;
    case 3:
        cryptor->d->_options = kSSLv23Padding;
        break;
    default:
        cryptor->d->_options = RSA_NO_PADDING;
        break;
    }
    const bool sslv23 = cryptor->d->_options == kSSLv23Padding;

    // The length is the text's character count; for PEM (ASCII) that is the byte count.
    const QByteArray utf8 = pem.toUtf8();
    const int length = int(qMin<qsizetype>(qMin<qsizetype>(pem.size(), utf8.size()), INT_MAX));
    BIO *bio = BIO_new_mem_buf(utf8.constData(), length);
    if (!bio) {
        VXLog(QStringLiteral("Could not get BIO"));
        return nullptr;
    }

    if (pem.contains(QLatin1String("PUBLIC"))) {
        cryptor->d->key = PEM_read_bio_RSA_PUBKEY(bio, nullptr, nullptr, nullptr);
        cryptor->d->encryptFunc = sslv23 ? sslv23PublicEncrypt : RSA_public_encrypt;
        cryptor->d->decryptFunc = sslv23 ? sslv23Unsupported : RSA_public_decrypt;
    } else if (pem.contains(QLatin1String("PRIVATE"))) {
        cryptor->d->key = PEM_read_bio_RSAPrivateKey(bio, nullptr, nullptr, nullptr);
        cryptor->d->encryptFunc = sslv23 ? sslv23Unsupported : RSA_private_encrypt;
        cryptor->d->decryptFunc = sslv23 ? sslv23PrivateDecrypt : RSA_private_decrypt;
    }

    if (!cryptor->d->key) {
        VXLog(QStringLiteral("Could not get RSA key"));
        logEncryptError();
        BIO_free(bio);
        return nullptr;
    }

    const quint8 modulusSize = quint8(RSA_size(cryptor->d->key)); // wraps above 255 bytes
    cryptor->d->_encryptedChunkLength = modulusSize;
    cryptor->d->_decryptedChunkLength = modulusSize;
    if (cryptor->d->_options == RSA_PKCS1_PADDING)
        cryptor->d->_decryptedChunkLength = quint8(modulusSize - 12);
    else if (cryptor->d->_options == RSA_PKCS1_OAEP_PADDING)
        cryptor->d->_decryptedChunkLength = quint8(modulusSize - 42);
    cryptor->d->freeKeyFunc = RSA_free;
    BIO_free(bio);
    return cryptor;
}

VXCryptor::~VXCryptor()
{
    if (d->freeKeyFunc && d->key)
        d->freeKeyFunc(d->key);
}

// Every RSA call writes a whole modulus; the one-byte block lengths only describe it for
// moduli of at most 255 bytes. With a wrapped length no block call is made at all.
bool VXCryptor::blockArithmeticFits() const
{
    return d->_encryptedChunkLength != 0 && int(d->_encryptedChunkLength) == RSA_size(d->key);
}

std::optional<QByteArray> VXCryptor::encryptData(const QByteArray &data) const
{
    const qsizetype p = d->_decryptedChunkLength;
    const qsizetype c = d->_encryptedChunkLength;
    if (p == 0)
        return std::nullopt;
    const qsizetype n = data.size();
    const qsizetype blocks = n / p + (n % p ? 1 : 0);
    QByteArray output(c * blocks, '\0');
    if (n == 0)
        return output;
    if (!blockArithmeticFits())
        return std::nullopt;

    const auto *in = reinterpret_cast<const unsigned char *>(data.constData());
    auto *out = reinterpret_cast<unsigned char *>(output.data());
    qsizetype written = 0;
    for (qsizetype position = 0; position < n; position += p) {
        const int length = int(qMin(p, n - position));
        const int result =
            d->encryptFunc(length, in + position, out + written, d->key, d->_options);
        if (result < 0) {
            ERR_load_ERR_strings();
            ERR_load_RSA_strings();
            logEncryptError();
            return std::nullopt;
        }
        written += result;
    }
    return output;
}

std::optional<QByteArray> VXCryptor::decryptData(const QByteArray &data) const
{
    if (!blockArithmeticFits())
        return std::nullopt;
    const qsizetype c = d->_encryptedChunkLength;
    const qsizetype blocks = data.size() / c;
    QByteArray output;
    output.reserve(qsizetype(d->_decryptedChunkLength) * blocks);

    // Each block goes through a scratch buffer of a whole modulus: a PKCS #1 block may hold
    // one byte more than the plain block length, and that byte must not land past the end.
    std::vector<unsigned char> block(static_cast<size_t>(c), 0);
    const auto *in = reinterpret_cast<const unsigned char *>(data.constData());
    for (qsizetype i = 0; i < blocks; ++i) {
        const int result = d->decryptFunc(int(c), in + i * c, block.data(), d->key, d->_options);
        if (result < 0) {
            logEncryptError();
            OPENSSL_cleanse(block.data(), block.size());
            return std::nullopt;
        }
        output.append(reinterpret_cast<const char *>(block.data()), result);
    }
    OPENSSL_cleanse(block.data(), block.size());
    return output;
}

std::optional<QString> VXCryptor::encryptBase64(const QByteArray &data) const
{
    const std::optional<QByteArray> encrypted = encryptData(data);
    return encrypted ? base64FromData(*encrypted) : std::nullopt;
}

std::optional<QByteArray> VXCryptor::decryptBase64(const QString &base64) const
{
    const std::optional<QByteArray> decoded = dataFromBase64(base64);
    if (!decoded || decoded->isEmpty())
        return std::nullopt;
    return decryptData(*decoded);
}

std::optional<QByteArray> VXCryptor::decryptBase64(const PropertyValue &base64) const
{
    if (!base64.isString())
        return std::nullopt;
    return decryptBase64(base64.toString());
}

std::optional<QString> VXCryptor::base64FromData(const QByteArray &data)
{
    if (data.isEmpty())
        return std::nullopt;
    BIO *b64 = BIO_new(BIO_f_base64());
    BIO *mem = BIO_new(BIO_s_mem());
    if (!b64 || !mem) {
        BIO_free(b64);
        BIO_free(mem);
        return std::nullopt;
    }
    BIO_set_flags(b64, BIO_FLAGS_BASE64_NO_NL);
    BioChain chain{BIO_push(b64, mem)};

    // BIO_write takes an int; larger buffers go in pieces so nothing is cut off.
    constexpr qsizetype kPiece = qsizetype(INT_MAX / 4 * 3);
    for (qsizetype position = 0; position < data.size();) {
        const int length = int(qMin(kPiece, data.size() - position));
        const int result = BIO_write(chain.top, data.constData() + position, length);
        if (result <= 0)
            return std::nullopt;
        position += result;
    }
    if (BIO_flush(chain.top) != 1)
        return std::nullopt;
    char *text = nullptr;
    const long length = BIO_get_mem_data(mem, &text);
    return QString::fromLatin1(text, qsizetype(length));
}

std::optional<QByteArray> VXCryptor::dataFromBase64(const QString &base64)
{
    if (base64.isEmpty())
        return std::nullopt;
    // Text that is not pure ASCII has no ASCII bytes, so the decoder sees nothing. The
    // units are narrowed and tested in the same pass (an OR over all of them vectorises,
    // unlike an early-exit search), so the text is read only once.
    QByteArray result;
    const auto *units = reinterpret_cast<const char16_t *>(base64.constData());
    const qsizetype size = base64.size();
    QByteArray bytes(size, Qt::Uninitialized);
    char *narrow = bytes.data();
    char16_t allBits = 0;
    for (qsizetype i = 0; i < size; ++i) {
        allBits |= units[i];
        narrow[i] = char(units[i]);
    }
    if (allBits > 0x7f)
        return result;
    // Line feeds go; carriage returns stay.
    if (bytes.contains('\n'))
        bytes.removeIf([](char c) { return c == '\n'; });
    if (bytes.size() > INT_MAX)
        return std::nullopt;
    // Room for the whole output at once instead of growing piece by piece.
    result.reserve(bytes.size() / 4 * 3 + 3);

    BIO *mem = BIO_new_mem_buf(bytes.constData(), int(bytes.size()));
    BIO *b64 = BIO_new(BIO_f_base64());
    if (!b64 || !mem) {
        BIO_free(b64);
        BIO_free(mem);
        return std::nullopt;
    }
    BIO_set_flags(b64, BIO_FLAGS_BASE64_NO_NL);
    BioChain chain{BIO_push(b64, mem)};
    char piece[256];
    int length = 0;
    while ((length = BIO_read(chain.top, piece, int(sizeof piece))) > 0)
        result.append(piece, length);
    return result;
}
