// Throughput of VXCryptor's block loop and base64 conversion against the same libcrypto
// calls made directly, and the overhead between them. Prints figures; never fails on speed.
#include "VXCryptor.h"

#include <QElapsedTimer>

#include <openssl/bio.h>
#include <openssl/buffer.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

QByteArray pemOf(EVP_PKEY *key, bool isPrivate)
{
    BIO *bio = BIO_new(BIO_s_mem());
    if (isPrivate)
        PEM_write_bio_PrivateKey(bio, key, nullptr, nullptr, 0, nullptr, nullptr);
    else
        PEM_write_bio_PUBKEY(bio, key);
    char *text = nullptr;
    const long length = BIO_get_mem_data(bio, &text);
    QByteArray pem(text, length);
    BIO_free(bio);
    return pem;
}

// Best of several rounds, in seconds; the work repeats until a round lasts long enough
// to be measured.
double bestSeconds(const std::function<void()> &work, int rounds = 7)
{
    int repeat = 1;
    for (;;) {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < repeat; ++i)
            work();
        if (timer.nsecsElapsed() > 20'000'000 || repeat > (1 << 20))
            break;
        repeat *= 2;
    }
    double best = 1e30;
    for (int r = 0; r < rounds; ++r) {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < repeat; ++i)
            work();
        best = std::min(best, double(timer.nsecsElapsed()) / 1e9 / repeat);
    }
    return best;
}

void report(const char *what, qsizetype bytes, double ours, double direct)
{
    const double mb = double(bytes) / (1024.0 * 1024.0);
    std::printf("%-26s VXCryptor %9.2f MiB/s   direct %9.2f MiB/s   overhead %+6.2f %%\n", what,
                mb / ours, mb / direct, (ours / direct - 1.0) * 100.0);
}

volatile size_t sink = 0;

} // namespace

int main()
{
    EVP_PKEY *pkey = EVP_RSA_gen(1024);
    RSA *rsa = EVP_PKEY_get1_RSA(pkey);
    const auto publicKey =
        VXCryptor::initWithRSAKeyFromString(QString::fromLatin1(pemOf(pkey, false)), 1);
    const auto privateKey =
        VXCryptor::initWithRSAKeyFromString(QString::fromLatin1(pemOf(pkey, true)), 1);
    if (!rsa || !publicKey || !privateKey) {
        std::fprintf(stderr, "no key\n");
        return 1;
    }
    const int k = RSA_size(rsa);
    const int p = k - 12;

    QByteArray plain(64 * 1024, Qt::Uninitialized);
    for (qsizetype i = 0; i < plain.size(); ++i)
        plain[i] = char(i * 131 + 7);
    const qsizetype blocks = (plain.size() + p - 1) / p;
    const QByteArray cipher = publicKey->encryptData(plain).value();

    std::printf("RSA-1024, PKCS #1 v1.5, %lld plain bytes in %lld blocks; best of 7 rounds\n",
                static_cast<long long>(plain.size()), static_cast<long long>(blocks));

    const double encryptOurs =
        bestSeconds([&] { sink = sink + publicKey->encryptData(plain)->size(); });
    const double encryptDirect = bestSeconds([&] {
        QByteArray out(k * blocks, '\0');
        auto *dst = reinterpret_cast<unsigned char *>(out.data());
        const auto *src = reinterpret_cast<const unsigned char *>(plain.constData());
        for (qsizetype pos = 0; pos < plain.size(); pos += p) {
            const int len = int(std::min<qsizetype>(p, plain.size() - pos));
            dst += RSA_public_encrypt(len, src + pos, dst, rsa, RSA_PKCS1_PADDING);
        }
        sink = sink + out.size();
    });
    report("encrypt (public key)", plain.size(), encryptOurs, encryptDirect);

    const double decryptOurs =
        bestSeconds([&] { sink = sink + privateKey->decryptData(cipher)->size(); }, 3);
    const double decryptDirect = bestSeconds(
        [&] {
            QByteArray out(p * blocks, '\0');
            auto *dst = reinterpret_cast<unsigned char *>(out.data());
            const auto *src = reinterpret_cast<const unsigned char *>(cipher.constData());
            int total = 0;
            for (qsizetype b = 0; b < blocks; ++b) {
                const int n =
                    RSA_private_decrypt(k, src + b * k, dst + total, rsa, RSA_PKCS1_PADDING);
                total += n;
            }
            out.resize(total);
            sink = sink + out.size();
        },
        3);
    report("decrypt (private key)", plain.size(), decryptOurs, decryptDirect);

    QByteArray large(8 * 1024 * 1024, Qt::Uninitialized);
    for (qsizetype i = 0; i < large.size(); ++i)
        large[i] = char(i * 7 + (i >> 9));
    const QString text = VXCryptor::base64FromData(large).value();
    const QByteArray ascii = text.toLatin1();

    const double encodeOurs =
        bestSeconds([&] { sink = sink + VXCryptor::base64FromData(large)->size(); });
    const double encodeDirect = bestSeconds([&] {
        BIO *b64 = BIO_new(BIO_f_base64());
        BIO *mem = BIO_new(BIO_s_mem());
        BIO_set_flags(b64, BIO_FLAGS_BASE64_NO_NL);
        BIO *chain = BIO_push(b64, mem);
        BIO_write(chain, large.constData(), int(large.size()));
        (void)BIO_flush(chain);
        char *out = nullptr;
        const long length = BIO_get_mem_data(mem, &out);
        sink = sink + QString::fromLatin1(out, length).size();
        BIO_free_all(chain);
    });
    report("base64 encode", large.size(), encodeOurs, encodeDirect);

    const double decodeOurs =
        bestSeconds([&] { sink = sink + VXCryptor::dataFromBase64(text)->size(); });
    const double decodeDirect = bestSeconds([&] {
        const QByteArray bytes = text.toLatin1();
        BIO *mem = BIO_new_mem_buf(bytes.constData(), int(bytes.size()));
        BIO *b64 = BIO_new(BIO_f_base64());
        BIO_set_flags(b64, BIO_FLAGS_BASE64_NO_NL);
        BIO *chain = BIO_push(b64, mem);
        QByteArray out;
        char piece[256];
        int n = 0;
        while ((n = BIO_read(chain, piece, int(sizeof piece))) > 0)
            out.append(piece, n);
        sink = sink + out.size();
        BIO_free_all(chain);
    });
    report("base64 decode", large.size(), decodeOurs, decodeDirect);

    RSA_free(rsa);
    EVP_PKEY_free(pkey);
    return 0;
}
